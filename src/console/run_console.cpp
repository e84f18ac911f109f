#include <algorithm>
#include <charconv>
#include <utility>

#include "console/command_line.h"
#include "console/console.h"
#include "console/session.h"
#include "console/user_settings.h"
#include "ctlfile/leftover.h"
#include "ctlfile/open_retry.h"
#include "ctlfile/paths.h"
#include "platform/ascii.h"
#include "platform/code_page.h"
#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "shell/server_paths.h"
#include "voice/format.h"

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
int ChooseCodePage(const Session& session, const GlobalOptions& global) {
    platform::UseCodePage(0);
    for (const std::string& text : global.CodePage.Values) {
        unsigned number = 0;
        const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
        const bool isNumber = fault == std::errc() && end == text.data() + text.size() && number > 0;
        if (!isNumber)
            return session.WrongUsage(global.CodePage.From + ": \"" + text + "\" is not the number of a code page");
        if (!platform::UseCodePage(number))
            return session.Refuse(global.CodePage.From + ": " + text +
                                  " is no code page that this system knows and whose letters are a byte each");
    }
    return 0;
}

int MapDrive(const Session& session, const std::string& text) {
    const std::size_t sign = text.find('=');
    const std::string place = text.substr(0, sign);
    const std::string directory = sign == std::string::npos ? "" : text.substr(sign + 1);
    if (directory.empty() || (!IsDrive(place) && !IsShare(place)))
        return session.WrongUsage("--drive takes a drive and a directory, as X:=DIR, or a share and a directory, "
                                  "as '\\\\server\\share=DIR'");
    if (!platform::TheEnvironment().WindowsDirectory().empty())
        return session.WrongUsage("--drive: drives are the system's own");
    if (platform::MapDrive(place, directory)) return 0;
    session.Streams.PrintAsGiven(directory, directory);
    return session.Refuse("--drive " + place + ": there is no directory " + directory);
}

int MapDrives(const Session& session, const GlobalOptions& global) {
    for (const std::string& drive : global.Drives.Values) {
        if (const int fault = MapDrive(session, drive)) return fault;
    }
    return 0;
}

int UseIniDirectory(const Session& session, const GlobalOptions& global) {
    if (global.Ini.Values.empty()) return 0;
    std::string directory = global.Ini.Values.front();
    if (const std::string fault = session.Streams.TakePath(directory); !fault.empty())
        return session.Refuse(global.Ini.From + ": " + fault);
    if (directory.find(';') != std::string::npos)
        return session.WrongUsage(global.Ini.From + " takes one directory, without ';'");
    if (!platform::Files().Find(WithBackslash(directory).append(kIniFile)))
        return session.Refuse(FormatText("There is no %s in directory %s", kIniFile, directory));
    platform::TheEnvironment().SetVariable("BVAXINIT", directory);
    return 0;
}

// The parameter of that name as the verb defines it.
const Parameter& ParameterOf(const Verb& verb, std::string_view name) {
    return *std::ranges::find(verb.Parameters, name, &Parameter::Name);
}

// Takes the arguments as the engine has texts. Control files are made of lines, so none may hold a line end, nor what a
// line cannot keep.
int TakeTexts(const Session& session, const Verb& verb, Arguments& given) {
    for (auto& [name, value] : given) {
        const Parameter& parameter = ParameterOf(verb, name);
        std::string checked = value;
        if (parameter.TakesTabs) std::erase(checked, '\t');
        if (HasControlCharacter(checked))
            return session.Refuse(std::string(name) + " holds a control character, such as a line end");
        const std::string fault =
            parameter.IsPath ? session.Streams.TakePath(value) : session.Streams.TakeArgument(value);
        if (!fault.empty()) return session.Refuse(std::string(name) + ": " + fault);
    }
    return 0;
}

// A dry run says Yes once its files take the writing but keep it in memory, and not before.
Answering AnsweringOf(const GlobalOptions& global) {
    if (global.DryRun) return Answering::No;
    return global.Yes ? Answering::Yes : Answering::ByPerson;
}

int Run(ParsedCommand command, Console& console) {
    GlobalOptions& global = command.Global;
    TextStreams streams(console, global.Raw);
    ConsoleFront front(streams, AnsweringOf(global));
    const UseFront installed(front);
    const SharedPatience patience(kPatience);
    Session session{streams, front, global, global.Json, global.DryRun, global.Reveal, global.Header, global.Quiet};
    if (const std::string fault = FillGlobalOptions(global); !fault.empty()) return session.Refuse(fault);
    session.SayWhatIsDone();
    if (const int fault = ChooseCodePage(session, global)) return fault;
    if (const int fault = MapDrives(session, global)) return fault;
    if (const int fault = UseIniDirectory(session, global)) return fault;
    if (const int fault = TakeTexts(session, *command.Chosen, command.Given)) return fault;
    return command.Chosen->Action()(session, command.Given);
}

} // namespace

int RunConsole(std::span<const std::string> arguments, Console& console) {
    ForgetSaidLeftovers();
    std::variant<ParsedCommand, Answer> parsed = ParseArguments(arguments);
    if (ParsedCommand* command = std::get_if<ParsedCommand>(&parsed)) return Run(std::move(*command), console);
    const Answer& answer = std::get<Answer>(parsed);
    if (answer.Status == kExitDone)
        console.PrintResult(PrintableText(answer.Text));
    else
        console.PrintNotice(PrintableText(answer.Text));
    return answer.Status;
}

} // namespace bv::console
