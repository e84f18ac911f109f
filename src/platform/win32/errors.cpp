#include "platform/win32/errors.h"

#include <windows.h>

namespace bv::platform {

FileError ErrorOf(unsigned long systemError) {
    switch (systemError) {
    case ERROR_SUCCESS: return FileError::None;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_DIRECTORY: return FileError::NotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_DELETE_PENDING:
    case ERROR_BUSY:
    case ERROR_NETWORK_BUSY:
    case ERROR_PATH_BUSY:
    case ERROR_SHARING_BUFFER_EXCEEDED:
    case ERROR_WRITE_PROTECT: return FileError::AccessDenied;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS: return FileError::Exists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: return FileError::DiskFull;
    default: return FileError::Failed;
    }
}

} // namespace bv::platform
