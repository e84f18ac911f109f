// A console for tests, and the companion run on it.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/console.h"

namespace bv::test {

class TextConsole : public console::Console {
  public:
    std::string Results;
    std::string Notices;
    std::deque<std::string> Input;
    bool Terminal = false;

    void PrintResult(std::string_view text) override { Results += text; }
    void PrintNotice(std::string_view text) override { Notices += text; }
    std::optional<std::string> ReadLine() override {
        if (Input.empty()) return {};
        std::string line = Input.front();
        Input.pop_front();
        return line;
    }
    std::optional<std::string> ReadHiddenLine() override {
        Results += "(hidden)";
        return ReadLine();
    }
    bool IsTerminal() override { return Terminal; }

    int Run(const std::vector<std::string>& arguments) {
        Results.clear();
        Notices.clear();
        return console::RunConsole(arguments, *this);
    }
    // A command as it is typed: words parted by blanks; what has blanks, or nothing, stands in single quotes.
    int Type(std::string_view line) {
        std::vector<std::string> words(1);
        bool isQuoted = false;
        for (const char c : line) {
            if (c == '\'')
                isQuoted = !isQuoted;
            else if (c == ' ' && !isQuoted)
                words.emplace_back();
            else
                words.back() += c;
        }
        return Run(words);
    }
};

} // namespace bv::test
