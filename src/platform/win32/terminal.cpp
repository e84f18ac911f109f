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

struct HiddenTyping::Mode {
    DWORD Settings;
};

HiddenTyping::HiddenTyping() {
    DWORD settings = 0;
    if (GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &settings) == 0) return;
    before_ = std::make_unique<Mode>(Mode{settings});
    SetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), settings & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
}

HiddenTyping::~HiddenTyping() {
    if (before_) SetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), before_->Settings);
}

} // namespace bv::platform
