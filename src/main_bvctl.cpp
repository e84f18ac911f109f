#include <new>
#include <string>
#include <vector>

#include "console/console.h"
#include "console/standard_console.h"
#include "mailgw/mail_actions.h"
#include "platform/program.h"
#include "platform/terminal.h"

namespace {

int Run(int count, char** arguments) {
    const std::vector<std::string> texts = bv::platform::ProgramArguments(count, arguments);
    bv::FollowUserList();
    bv::console::StandardConsole console;
    const int status = bv::console::RunConsole(texts, console);
    return console.Finish() ? status : bv::console::kExitRefused;
}

} // namespace

int main(int count, char** arguments) {
    if (!bv::platform::BeginProgram()) return bv::console::kExitRefused;
    try {
        return Run(count, arguments);
    } catch (const std::bad_alloc&) {
        bv::platform::EndWithoutMemory();
    }
}
