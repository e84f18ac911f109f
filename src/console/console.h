// The console companion, whole: arguments in, texts and an exit status out.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace bv::console {

// What the companion reads from and prints to: the process's own streams, or a test's.
class Console {
  public:
    virtual ~Console() = default;

    virtual void PrintResult(std::string_view text) = 0; // standard output: results and nothing else
    virtual void PrintNotice(std::string_view text) = 0; // standard error: status texts, errors, questions

    // The next line of standard input, without its line end; none at the end of the input.
    virtual std::optional<std::string> ReadLine() = 0;

    // The same, but what is typed on a terminal is not shown.
    virtual std::optional<std::string> ReadHiddenLine() = 0;

    // Whether a person is there to be asked.
    virtual bool IsTerminal() = 0;

    // Whether it is known how the person's texts are encoded; else bytes are only bytes.
    virtual bool HasEncoding() { return false; }

    // From and into that encoding; the other side is UTF-8. None: the text is not in the encoding.
    virtual std::optional<std::string> Decode(std::string_view text) { return std::string(text); }
    virtual std::string Encode(std::string_view utf8) { return std::string(utf8); }

    // Whether arguments are UTF-8, and not in that encoding.
    virtual bool HasUtf8Arguments() { return false; }

    // How many letters a line holds when results go to a terminal; none when they do not.
    virtual std::optional<std::size_t> Width() { return {}; }

    // Whether results may be coloured.
    virtual bool TakesColours() { return false; }
};

enum ExitStatus {
    kExitDone = 0,
    kExitRefused = 1,    // refused or failed; a message has said why
    kExitWrongUsage = 2, // the arguments make no sense; a message has said why
};

// Does what the arguments (without the program's name) ask for and returns the exit status.
int RunConsole(std::span<const std::string> arguments, Console& console);

} // namespace bv::console
