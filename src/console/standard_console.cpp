#include "console/standard_console.h"

#include <cstdio>

#include "platform/environment.h"
#include "platform/terminal.h"

namespace bv::console {

namespace {

void Print(std::string_view text, std::FILE* stream) { std::fwrite(text.data(), 1, text.size(), stream); }

} // namespace

void StandardConsole::PrintResult(std::string_view text) { Print(text, stdout); }

void StandardConsole::PrintNotice(std::string_view text) {
    std::fflush(stdout); // on a terminal, notices stand where they belong among the results
    Print(text, stderr);
}

std::optional<std::string> StandardConsole::ReadLine() {
    std::string line;
    int c = std::getc(stdin);
    if (c == EOF) return {};
    for (; c != EOF && c != '\n'; c = std::getc(stdin)) line += static_cast<char>(c);
    if (line.ends_with('\r')) line.pop_back();
    return line;
}

std::optional<std::string> StandardConsole::ReadHiddenLine() {
    const platform::HiddenTyping hidden;
    return ReadLine();
}

bool StandardConsole::IsTerminal() { return platform::IsTerminal(); }

bool StandardConsole::HasEncoding() { return platform::HasEncoding(); }

bool StandardConsole::HasUtf8Arguments() { return platform::HasUtf8Arguments(); }

std::optional<std::string> StandardConsole::Decode(std::string_view text) { return platform::FromTerminal(text); }

std::string StandardConsole::Encode(std::string_view utf8) { return platform::ToTerminal(utf8); }

std::optional<std::size_t> StandardConsole::Width() { return platform::TerminalWidth(); }

bool StandardConsole::TakesColours() {
    return platform::TheEnvironment().Variable("NO_COLOR").value_or("").empty() && platform::TakesColours();
}

bool StandardConsole::Finish() {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return true;
    PrintNotice("Unable to write the results\n");
    return false;
}

} // namespace bv::console
