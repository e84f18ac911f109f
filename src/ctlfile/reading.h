// Opening control files for reading, and knowing that they were read, with a message when not.
#pragma once

#include <string>

#include "ctlfile/control_stream.h"

namespace bv {

// Opens a control file for reading; without one, message 413 has been shown.
ControlStream OpenForReading(const std::string& path, OpenTimeout timeout = kDefaultTimeout);

// To be asked when a file has been read: a search that found nothing may have met a fault half-way. False after
// message 9011.
bool WasRead(const ControlStream& stream);

} // namespace bv
