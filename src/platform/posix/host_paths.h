// From the Windows paths that the rest of the program speaks to those of this system.
#pragma once

#include <optional>
#include <string>

namespace bv::platform {

// The host's path of a Windows path. Every name is taken as it stands when it is there, else in any case; names
// that are not there at all stay as given. A path that begins with "/" is the host's own; a drive without a
// directory ("F:X") means the drive's root; a path without drive or share lies under the current directory. None
// for an empty path, one with a NUL in it, and a drive or share that is not mapped.
std::optional<std::string> ToHostPath(const std::string& path);

} // namespace bv::platform
