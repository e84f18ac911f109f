// Opening control files for reading, and knowing that they were read, with a message when not. Whoever opens one hears
// of a save of it that was cut off (leftover.h).
#pragma once

#include <optional>
#include <string>

#include "ctlfile/control_stream.h"

namespace bv {

// Opens a control file for reading; without one, message 413 has been shown.
ControlStream OpenForReading(const std::string& path, OpenTimeout timeout = kDefaultTimeout);

// The same for a file that need not be there: a stream of no file when it certainly is not. None after message 413.
std::optional<ControlStream> OpenIfThere(const std::string& path, OpenTimeout timeout = kDefaultTimeout);

// To be asked when a file has been read: a search that found nothing may have met a fault half-way. False after
// message 9011.
bool WasRead(const ControlStream& stream);

} // namespace bv
