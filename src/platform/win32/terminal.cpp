#include "platform/terminal.h"

#include <windows.h>

namespace bv::platform {
namespace {

bool IsConsole(DWORD standardHandle) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(standardHandle), &mode) != 0;
}

} // namespace

bool IsTerminal() { return IsConsole(STD_INPUT_HANDLE) && IsConsole(STD_ERROR_HANDLE); }

} // namespace bv::platform
