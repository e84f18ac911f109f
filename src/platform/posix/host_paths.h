// From the Windows paths that the rest of the program speaks to those of this system.
#pragma once

#include <string>

#include "platform/files.h"

namespace bv::platform {

// A path of the host, or why there is none.
struct HostPath {
    std::string Path;
    FileError Error = FileError::None;

    explicit operator bool() const { return Error == FileError::None; }
    const std::string& operator*() const { return Path; }
    const std::string* operator->() const { return &Path; }
};

// The host's path of a Windows path. Every name is taken as it stands when it is there, else in any case; names
// that are not there at all stay as given. A path that begins with "/" is the host's own; a drive without a
// directory ("F:X") means the drive's root; a path without drive or share lies under the current directory. NotFound
// for an empty path, one with a NUL in it, and a drive or share that is not mapped. Failed when a directory cannot be
// listed, so that nobody can tell whether a name is there in another case: that is not the same as no such name.
HostPath ToHostPath(const std::string& path);

} // namespace bv::platform
