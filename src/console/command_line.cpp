#include "console/command_line.h"

#include <algorithm>

#include <CLI/CLI.hpp>

#include "shell/startup.h"

namespace bv::console {
namespace {

constexpr const char* kProgramHelp =
    "Configures the Brivane fax server from a console.\n\n"
    "Results go to standard output; status texts, warnings and errors to standard error.\n"
    "Exit status: 0 done, 1 refused or failed (a message says why), 2 wrong usage.\n"
    "Texts are shown and taken as the locale or the console encodes them; the files have them in a code page. A "
    "letter\n"
    "that the code page lacks is refused. In the C locale, and with --raw, bytes pass as they are; JSON is UTF-8.\n"
    "What --ini, --drive and --codepage say may also stand in the variables BVCTL_INI, BVCTL_DRIVE (several parted by\n"
    "';') and BVCTL_CODEPAGE, or as lines 'ini=DIR', 'drive=X:=DIR' and 'codepage=N' in the file\n"
    "~/.config/bvctl.ini ($XDG_CONFIG_HOME/bvctl.ini, %APPDATA%\\bvctl.ini); arguments come first, then variables.\n";

constexpr const char* kProgramFooter =
    "Examples:\n"
    "  bvctl --drive F:=/srv/fax --ini 'F:\\' paths\n"
    "  bvctl file get /srv/fax/BRIVANE/B-DB/SETUP.INI OPTIONS LogFile\n"
    "  bvctl coversheet delete PRICES --dry-run\n\n"
    "'bvctl AREA --help' shows the verbs of an area, 'bvctl AREA VERB --help' how one is used.";

void AddGlobalOptions(CLI::App& program) {
    program.set_help_flag("-h,--help", "Show help; after an area or a verb, about it");
    program.set_version_flag("--version", "bvctl " + std::string(kProgramVersion), "Show the version of bvctl");
    const auto addFlag = [&](const char* name, const std::string& help) {
        program.add_flag(name, help)->disable_flag_override();
    };
    const auto addOption = [&](const char* name, const char* value, const std::string& help) {
        return program.add_option(name, CLI::callback_t{}, help)->option_text(value)->allow_extra_args(false);
    };
    addOption("--ini", "DIR", "Directory of BRIVANE.INI; else it is searched for along BVAXINIT, INIT and PATH");
    addOption("--drive", "X:=DIR", "Where a drive, or a share ('\\\\server\\share=DIR'), lies; repeatable")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    addOption("--codepage", "N", "Code page of the texts in the files; else 1252, on Windows the workstation's own");
    addFlag("--raw", "Let bytes pass as they are, in the files' code page");
    addFlag("--header", "Begin lists with the names of their columns, as on a terminal");
    addFlag("--quiet", "Say nothing of what was done; warnings, errors and questions stay");
    addFlag("--json", "Print results as one JSON document");
    addFlag("--yes", "Answer questions with Yes; else they are asked on a terminal, and answered No elsewhere");
    addFlag("--dry-run", "Write and start nothing; show what would change as a unified diff");
    addFlag("--reveal", "Show passwords as they are stored; else eight asterisks stand for them");
}

void AddParameter(CLI::App& command, const Parameter& parameter) {
    const std::string name(parameter.Name);
    const std::string help(parameter.Help);
    if (parameter.Kind == ParameterKind::Flag) {
        command.add_flag(name, help)->disable_flag_override();
        return;
    }
    const bool repeats = parameter.Kind == ParameterKind::ZeroOrMore || parameter.Kind == ParameterKind::OneOrMore;
    CLI::Option* option = command.add_option(name, CLI::callback_t{}, help)->allow_extra_args(repeats);
    if (repeats) option->expected(1, CLI::detail::expected_max_vector_size);
    // A blank, for an empty text would be filled with the library's own words.
    option->option_text(parameter.ValueName.empty() ? " " : std::string(parameter.ValueName));
    option->required(parameter.Kind == ParameterKind::Required || parameter.Kind == ParameterKind::OneOrMore);
}

void DefineVerb(CLI::App& command, const Verb& verb, const std::string& path) {
    for (const Parameter& parameter : verb.Parameters)
        if (!parameter.Name.empty()) AddParameter(command, parameter);
    command.set_help_flag("-h,--help", "Show this help; 'bvctl --help' shows the global options");
    command.footer(verb.Example.empty() ? "" : "Example:\n  " + path + ' ' + std::string(verb.Example));
}

// What holds verbs: an area, or a group of verbs in one.
void DefineHolder(CLI::App& command, const std::string& path) {
    command.require_subcommand(1);
    command.get_formatter()->label("SUBCOMMAND", "VERB");
    command.footer("'" + path + " VERB --help' shows how a verb is used.");
}

// The subcommand of one word, for a verb or a group of verbs.
CLI::App& AddWord(CLI::App& command, const std::string& word, std::string_view help) {
    return *command.add_subcommand(word, std::string(help))->group("Verbs");
}

void DefineVerbBelow(CLI::App& command, const Verb& verb, std::string_view name, std::string path) {
    const std::size_t blank = name.find(' ');
    const std::string word(name.substr(0, blank));
    path += ' ' + word;
    if (blank == std::string_view::npos) return DefineVerb(AddWord(command, word, verb.Help), verb, path);
    const std::string below(name.substr(blank + 1));
    const std::vector<CLI::App*> known =
        command.get_subcommands([&word](const CLI::App* sub) { return sub->get_name() == word; });
    CLI::App& group = known.empty() ? AddWord(command, word, "With the verbs " + below) : *known.front();
    if (known.empty())
        DefineHolder(group, path);
    else
        group.description(group.get_description() + ", " + below);
    DefineVerbBelow(group, verb, below, path);
}

CLI::App& DefineArea(CLI::App& program, const Area& area) {
    return *program.add_subcommand(std::string(area.Name), std::string(area.Help))->group("Areas");
}

void DefineVerbs(CLI::App& command, const Area& area) {
    const std::string path = "bvctl " + std::string(area.Name);
    if (area.Verbs.front().Name.empty()) return DefineVerb(command, area.Verbs.front(), path);
    DefineHolder(command, path);
    for (const Verb& verb : area.Verbs) DefineVerbBelow(command, verb, verb.Name, path);
}

// The verb that the parsed program names.
const Verb* ChosenVerb(const CLI::App& program) {
    const CLI::App* command = program.get_subcommands().front();
    const Area* area = *std::ranges::find(kAreas, command->get_name(), &Area::Name);
    if (area->Verbs.front().Name.empty()) return area->Verbs.data();
    std::string name;
    for (command = command->get_subcommands().front();; command = command->get_subcommands().front()) {
        name += (name.empty() ? "" : " ") + command->get_name();
        if (command->get_subcommands().empty()) break;
    }
    return &*std::ranges::find(area->Verbs, name, &Verb::Name);
}

// The parsed subcommand that stands last, or the program itself.
const CLI::App* Innermost(const CLI::App& program) {
    const CLI::App* command = &program;
    while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
    return command;
}

Arguments GivenArguments(const CLI::App& command, const Verb& verb) {
    Arguments given;
    for (const Parameter& parameter : verb.Parameters) {
        if (parameter.Name.empty()) continue;
        const CLI::Option* option = command.get_option(std::string(parameter.Name));
        for (const std::string& value : option->results()) given.Add(parameter.Name, value);
    }
    return given;
}

GivenValues ValuesOf(const CLI::App& program, const std::string& name) {
    const std::vector<std::string> values = program[name]->results();
    return {values, values.empty() ? "" : name};
}

GlobalOptions GivenGlobals(const CLI::App& program) {
    GlobalOptions global;
    global.Ini = ValuesOf(program, "--ini");
    global.Drives = ValuesOf(program, "--drive");
    global.CodePage = ValuesOf(program, "--codepage");
    global.Json = program.count("--json") > 0;
    global.Yes = program.count("--yes") > 0;
    global.DryRun = program.count("--dry-run") > 0;
    global.Reveal = program.count("--reveal") > 0;
    global.Raw = program.count("--raw") > 0;
    global.Header = program.count("--header") > 0;
    global.Quiet = program.count("--quiet") > 0;
    return global;
}

// The first global option that was given and means nothing to the verb; empty without one.
std::string UnusedOption(const CLI::App& program) {
    if (ChosenVerb(program)->Change == nullptr && program.count("--dry-run") > 0) return "--dry-run";
    const Area* area = *std::ranges::find(kAreas, program.get_subcommands().front()->get_name(), &Area::Name);
    for (const std::string_view name : area->Unused) {
        if (program.count(std::string(name)) > 0) return std::string(name);
    }
    return {};
}

// "bvctl file get" of the command that stands last.
std::string CommandPath(const CLI::App* command) {
    if (command->get_parent() == nullptr) return command->get_name();
    return CommandPath(command->get_parent()) + ' ' + command->get_name();
}

// What is wrong with arguments that the library has refused, and where help is to be had.
std::string UsageFault(const CLI::App& program, const CLI::ParseError& error) {
    const CLI::App* command = Innermost(program);
    const bool lacksSubcommand = command->get_require_subcommand_min() > 0 && error.get_name() == "RequiredError";
    std::string reason = error.what();
    const std::vector<std::string> unknown = program.remaining(true);
    if (lacksSubcommand && unknown.empty()) reason = command == &program ? "An area is missing" : "A verb is missing";
    if (lacksSubcommand && !unknown.empty()) reason = "There is no '" + unknown.front() + "'";
    const std::string path = CommandPath(command);
    return path + ": " + reason + "\nSee '" + path + " --help'.\n";
}

} // namespace

void DeleteProgram::operator()(CLI::App* program) const { delete program; }

Program DefineProgram(std::optional<std::span<const std::string>> arguments) {
    const auto isWanted = [&](const Area& area) {
        return !arguments || std::ranges::find(*arguments, area.Name) != arguments->end();
    };
    Program program(new CLI::App(kProgramHelp, "bvctl"));
    program->fallthrough();
    program->require_subcommand(1);
    program->footer(kProgramFooter);
    AddGlobalOptions(*program);
    for (const Area* area : kAreas) {
        CLI::App& command = DefineArea(*program, *area);
        if (isWanted(*area)) DefineVerbs(command, *area);
    }
    program->formatter(std::make_shared<CLI::Formatter>());
    program->get_formatter()->label("SUBCOMMAND", "AREA VERB [ARGUMENTS]");
    return program;
}

std::variant<ParsedCommand, Answer> ParseArguments(std::span<const std::string> arguments) {
    const Program program = DefineProgram(arguments);
    if (arguments.empty()) return Answer{program->help(), kExitWrongUsage};
    try {
        program->parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::CallForHelp&) {
        return Answer{program->help()};
    } catch (const CLI::CallForVersion& version) {
        return Answer{std::string(version.what()) + '\n'};
    } catch (const CLI::ParseError& error) {
        return Answer{UsageFault(*program, error), kExitWrongUsage};
    }
    if (const std::string unused = UnusedOption(*program); !unused.empty()) {
        const std::string path = CommandPath(Innermost(*program));
        return Answer{path + ": " + unused + " has no use here\nSee '" + path + " --help'.\n", kExitWrongUsage};
    }
    const Verb* verb = ChosenVerb(*program);
    return ParsedCommand{verb, GivenArguments(*Innermost(*program), *verb), GivenGlobals(*program)};
}

} // namespace bv::console
