#include "platform/program.h"

#include <windows.h>

#include "platform/out_of_memory.h"

namespace bv::platform {

namespace {

bool IsOpen(HANDLE handle) {
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return false;
    SetLastError(ERROR_SUCCESS);
    return GetFileType(handle) != FILE_TYPE_UNKNOWN || GetLastError() == ERROR_SUCCESS;
}

// The number of a closed handle that the starter passed on would be given to the next file that is opened. The null
// device takes its place, opened the other way round than the stream is used, so that using it is an error.
bool HoldStream(DWORD which, DWORD uselessAccess) {
    if (IsOpen(GetStdHandle(which))) return true;
    const HANDLE null = CreateFileA("NUL", uselessAccess, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    return null != INVALID_HANDLE_VALUE && SetStdHandle(which, null) != 0;
}

} // namespace

bool BeginProgram() {
    InstallEndOfUncaught();
    return HoldStream(STD_INPUT_HANDLE, GENERIC_WRITE) && HoldStream(STD_OUTPUT_HANDLE, GENERIC_READ) &&
           HoldStream(STD_ERROR_HANDLE, GENERIC_READ);
}

void EndWithoutMemory() noexcept {
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), kNoMemory.data(), static_cast<DWORD>(kNoMemory.size()), &written,
              nullptr);
    // This kind of box is made to come up whatever else is lacking.
    if (GetConsoleWindow() == nullptr && written == 0)
        MessageBoxA(nullptr, kNoMemory.data(), nullptr, MB_OK | MB_ICONHAND | MB_SYSTEMMODAL);
    TerminateProcess(GetCurrentProcess(), 1);
    for (;;) {
    }
}

} // namespace bv::platform
