#include <algorithm>

#include "console/command_line.h"
#include "console/console.h"
#include "console/session.h"
#include "ctlfile/leftover.h"
#include "ctlfile/open_retry.h"
#include "ctlfile/paths.h"
#include "platform/ascii.h"
#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/files.h"

namespace bv::console {
namespace {

// Seconds that a command waits for a file which another program holds, however often it opens it.
constexpr int kPatience = 10;

bool HasControlCharacter(std::string_view text) {
    return std::ranges::any_of(text, [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; });
}

bool IsDrive(std::string_view text) { return text.size() == 2 && IsLetter(text[0]) && text[1] == ':'; }

bool IsShare(std::string_view text) {
    if (!text.starts_with("\\\\")) return false;
    const std::size_t separator = text.find('\\', 2);
    return separator != std::string_view::npos && separator > 2 && separator + 1 < text.size() &&
           text.find('\\', separator + 1) == std::string_view::npos;
}

// 0 or the exit status, as the rest of the steps before a command.
int MapDrives(const Session& session, const GlobalOptions& global) {
    for (const auto& [place, directory] : global.Drives) {
        if (!IsDrive(place) && !IsShare(place))
            return session.WrongUsage("--drive takes a drive and a directory, as X:=DIR, or a share and a directory, "
                                      "as '\\\\server\\share=DIR'");
        if (!platform::TheEnvironment().WindowsDirectory().empty())
            return session.WrongUsage("--drive: drives are the system's own");
        if (!platform::MapDrive(place, directory))
            return session.Refuse("--drive " + place + ": there is no directory " + directory);
    }
    return 0;
}

int UseIniDirectory(const Session& session, const GlobalOptions& global) {
    if (!global.Ini) return 0;
    const std::string directory = platform::ToWindowsPath(*global.Ini);
    if (directory.find(';') != std::string::npos) return session.WrongUsage("--ini takes one directory, without ';'");
    if (!platform::Files().Find(WithBackslash(directory) + "BRIVANE.INI"))
        return session.Refuse("There is no BRIVANE.INI in directory " + *global.Ini);
    platform::TheEnvironment().SetVariable("BVAXINIT", directory);
    return 0;
}

bool TakesTabs(const Verb& verb, std::string_view parameter) {
    return std::ranges::any_of(
        verb.Parameters, [parameter](const Parameter& known) { return known.Name == parameter && known.TakesTabs; });
}

// Control files are made of lines, so no argument may hold a line end, nor what a line cannot keep.
int CheckTexts(const Session& session, const ParsedCommand& command) {
    for (auto [name, value] : command.Given) {
        if (TakesTabs(*command.Chosen, name)) std::erase(value, '\t');
        if (HasControlCharacter(value))
            return session.Refuse(std::string(name) + " holds a control character, such as a line end");
    }
    return 0;
}

// A dry run says Yes once its files take the writing but keep it in memory, and not before.
Answering AnsweringOf(const GlobalOptions& global) {
    if (global.DryRun) return Answering::No;
    return global.Yes ? Answering::Yes : Answering::ByPerson;
}

int Run(const ParsedCommand& command, Console& console) {
    ConsoleFront front(console, AnsweringOf(command.Global));
    const UseFront installed(front);
    const SharedPatience patience(kPatience);
    Session session{console, front, command.Global.Json, command.Global.DryRun, command.Global.Reveal};
    if (const int fault = CheckTexts(session, command)) return fault;
    if (const int fault = MapDrives(session, command.Global)) return fault;
    if (const int fault = UseIniDirectory(session, command.Global)) return fault;
    return command.Chosen->Run(session, command.Given);
}

} // namespace

int RunConsole(std::span<const std::string> arguments, Console& console) {
    ForgetSaidLeftovers();
    const std::variant<ParsedCommand, Answer> parsed = ParseArguments(arguments);
    if (const ParsedCommand* command = std::get_if<ParsedCommand>(&parsed)) return Run(*command, console);
    const Answer& answer = std::get<Answer>(parsed);
    if (answer.Status == kExitDone)
        console.PrintResult(answer.Text);
    else
        console.PrintNotice(answer.Text);
    return answer.Status;
}

} // namespace bv::console
