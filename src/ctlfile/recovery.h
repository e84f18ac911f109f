// Putting in place what a save that was cut off has left beside a control file (leftover.h).
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "ctlfile/leftover.h"

namespace bv {

// Whether a text that was left over is to take the place of the file's text.
using AgreeToRecover = std::function<bool(const Leftover& leftover, std::string_view text)>;

// Offers each text that is left over beside the file, the latest first, and puts the first that is agreed to in its
// place: under the file's lock, copied over it as every change is. Beside a file that is gone it is the new text of a
// replacement that was cut off (replaced_file.h), which gets its name. What it replaces is kept beside it, with the
// extension old or, when that is taken, ol2 to ol9. Needs no start-up. Status texts are 9017 and 471.
//
// False, with the file as it was: none was agreed to; or after a message, there is none (9016), a file cannot be
// opened, read or written (413, 9011, 5001, 5002, 5000), or the file has been changed since it was shown (9025).
bool RecoverFile(const std::string& path, const AgreeToRecover& agrees);

// Asks 9015, after warning 9018 for a text that is cut off.
bool AskToRecover(const std::string& path, const Leftover& leftover);

} // namespace bv
