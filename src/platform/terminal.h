// The person at the process's standard streams.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bv::platform {

// Whether standard input and standard error are both a terminal, so that a question can be asked and answered.
bool IsTerminal();

// How many letters a line of the terminal holds that standard output is; none when it is no terminal.
std::optional<std::size_t> TerminalWidth();

// Whether the terminal that standard output is takes the escape sequences of colours.
bool TakesColours();

// Whether it is known how the person's texts are encoded, by the locale or the console's code page, on a terminal and
// in a pipe alike. In the C locale it is not.
bool HasEncoding();

// From and into that encoding; the other side is UTF-8. A text that is not in the encoding is none; a letter that the
// encoding lacks stands as "\u20ac".
std::optional<std::string> FromTerminal(std::string_view text);
std::string ToTerminal(std::string_view utf8);

// The program's arguments without its name: in UTF-8 where the system has them in an encoding of its own, whatever the
// terminal's is, else as they were typed.
std::vector<std::string> ProgramArguments(int count, char** arguments);
bool HasUtf8Arguments();

// While it lives, what is typed on standard input is not shown; without effect where that is no terminal.
class HiddenTyping {
  public:
    HiddenTyping();
    ~HiddenTyping();
    HiddenTyping(const HiddenTyping&) = delete;
    HiddenTyping& operator=(const HiddenTyping&) = delete;

  private:
    struct Mode;
    std::unique_ptr<Mode> before_; // none: nothing to restore
};

} // namespace bv::platform
