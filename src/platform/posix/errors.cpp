#include "platform/posix/errors.h"

#include <cerrno>

namespace bv::platform {

FileError ErrorOf(int errorNumber) {
    switch (errorNumber) {
    case 0: return FileError::None;
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG: return FileError::NotFound;
    case EACCES:
    case EPERM:
    case EBADF: // writing to a file that was opened for reading
    case EROFS:
    case ETXTBSY:
    case EAGAIN: // a lease or a lock of the file system's own, as some shares have them
    case EBUSY: return FileError::AccessDenied;
    case EEXIST: return FileError::Exists;
    case EISDIR:
    case ENXIO: return FileError::NotAFile; // a socket, or a pipe that nobody reads
    case EFBIG:                             // the largest size that a file may have
    case ENOSPC:
    case EDQUOT: return FileError::DiskFull;
    default: return FileError::Failed;
    }
}

} // namespace bv::platform
