#include "platform/terminal.h"

#include <windows.h>

#include <array>
#include <cstdio>

#include <shellapi.h>

#include "platform/win32/wide_text.h"

namespace bv::platform {
namespace {

bool IsConsole(DWORD standardHandle) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(standardHandle), &mode) != 0;
}

// The code page of a console, or the system's own without one.
UINT PageOf(UINT console) { return console != 0 ? console : GetACP(); }

std::string Utf8Of(std::wstring_view text) { return Narrowed(text, CP_UTF8).value_or(""); }

} // namespace

bool HasEncoding() { return true; }

std::optional<std::string> FromTerminal(std::string_view text) { return Utf8Of(Widened(text, PageOf(GetConsoleCP()))); }

std::string ToTerminal(std::string_view utf8) {
    const UINT page = PageOf(GetConsoleOutputCP());
    const std::wstring wide = Widened(utf8, CP_UTF8);
    if (const auto whole = Narrowed(wide, page)) return *whole;
    std::string text;
    for (const wchar_t& unit : wide) {
        std::array<char, 8> name{};
        std::snprintf(name.data(), name.size(), "\\u%04x", static_cast<unsigned>(unit));
        text += Narrowed({&unit, 1}, page).value_or(name.data());
    }
    return text;
}

std::vector<std::string> ProgramArguments(int, char**) {
    int count = 0;
    LPWSTR* const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; wide != nullptr && i < count; ++i) arguments.push_back(Utf8Of(wide[i]));
    LocalFree(wide);
    return arguments;
}

bool HasUtf8Arguments() { return true; }

std::optional<std::size_t> TerminalWidth() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == 0) return {};
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

bool TakesColours() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(output, &mode) != 0 && SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

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
