// bvctl again and again in one process, for races.py: starting a process for each verb takes most of a race's time.
//
// Each line of standard input is a command, its arguments parted by tabs. It is answered by a line: the exit status,
// how many bytes of results there were, and the last line of what was said, parted by tabs.
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "console/text_console.h"
#include "mailgw/mail_actions.h"
#include "platform/program.h"

namespace {

std::vector<std::string> Parted(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    std::vector<std::string> parts(1);
    for (const char c : line) {
        if (c == '\t')
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

std::string_view LastLine(std::string_view text) {
    while (text.ends_with('\n')) text.remove_suffix(1);
    return text.substr(text.rfind('\n') + 1);
}

} // namespace

int main() {
    if (!bv::platform::BeginProgram()) return 1;
    bv::FollowUserList();
    bv::test::TextConsole console;
    for (std::string line; std::getline(std::cin, line);) {
        const int status = console.Run(Parted(line));
        std::cout << status << '\t' << console.Results.size() << '\t' << LastLine(console.Notices) << std::endl;
    }
    return 0;
}
