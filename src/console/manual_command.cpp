// The manual page, made by walking the command line's definition.
#include <CLI/CLI.hpp>

#include "console/command_line.h"
#include "shell/startup.h"

namespace bv::console {
namespace {

// The text as groff prints it as it stands.
std::string Escaped(std::string_view text) {
    std::string escaped;
    bool atLineStart = true;
    for (const char c : text) {
        if (atLineStart && (c == '.' || c == '\'')) escaped += "\\&";
        if (c == '\\')
            escaped += "\\e";
        else if (c == '-')
            escaped += "\\-";
        else if (c == '\'')
            escaped += "\\(aq";
        else
            escaped += c;
        atLineStart = c == '\n';
    }
    return escaped;
}

std::string OptionTitle(const CLI::Option* option) {
    std::string title;
    for (const std::string& name : option->get_snames()) title += '-' + name + ", ";
    for (const std::string& name : option->get_lnames()) title += "--" + name;
    if (option->get_positional()) title = option->get_name(true);
    const std::string& value = option->get_option_text();
    return value.empty() || value == " " ? title : title + ' ' + value;
}

// The parameters, or a program's global options, each with its help.
std::string Parameters(const CLI::App* command) {
    std::string page;
    for (const CLI::Option* option : command->get_options()) {
        if (command->get_parent() != nullptr && option == command->get_help_ptr()) continue;
        page += ".TP\n.B " + Escaped(OptionTitle(option)) + '\n' + Escaped(option->get_description()) + '\n';
    }
    return page;
}

// "bvctl file get FILE PARAGRAPH KEY", what may be left out in brackets.
std::string Synopsis(const CLI::App* command, const std::string& path) {
    std::string synopsis = path;
    for (const CLI::Option* option : command->get_options()) {
        if (option == command->get_help_ptr()) continue;
        const std::string title = OptionTitle(option);
        synopsis += option->get_required() ? ' ' + title : " [" + title + ']';
    }
    return synopsis;
}

std::string Footer(const CLI::App* command) {
    return command->get_footer().empty() ? "" : ".PP\n.nf\n" + Escaped(command->get_footer()) + "\n.fi\n";
}

std::string Commands(const CLI::App* command, const std::string& path) {
    std::string page;
    for (const CLI::App* below : command->get_subcommands({})) {
        const std::string here = path + ' ' + below->get_name();
        if (below->get_subcommands({}).empty())
            page += ".SS " + Escaped(Synopsis(below, here)) + '\n' + Escaped(below->get_description()) + ".\n" +
                    Parameters(below) + Footer(below);
        page += Commands(below, here);
    }
    return page;
}

constexpr std::string_view kJsonHelp =
    "With --json a command prints one document, in UTF-8.\n"
    "A list is an array of objects, each with the columns' names that --header shows, or of texts where a list has\n"
    "but one column. What 'show' and its like print is an object of the same names. Texts are strings, numbers are\n"
    "numbers, YES and NO are true and false where they are the program's own, '(none)' is null; values of files'\n"
    "keys are strings as the files have them.\n"
    "A verb that writes prints {\"status\": TEXT}, what it said last. With --dry-run it prints {\"changes\":\n"
    "[{\"path\": PATH, \"diff\": TEXT}...], \"starts\": [TEXT...]}: the files with their differences, and the command\n"
    "lines of programs that would be started.\n"
    "'file list FILE PARAGRAPH' prints [{\"key\": TEXT, \"value\": TEXT or null}...], 'file get' {KEY: TEXT}; 'lcr\n"
    "match' {\"Rule\": NUMBER or null, \"Verdict\": TEXT, \"Criteria\": [{\"Rule\", \"Description\", \"Criterion\",\n"
    "\"Matches\", \"Why\"}...]}.\n"
    "Messages on standard error stay lines of text, and a refused command prints no document.\n";

int PrintManual(Session& session, const Arguments&) {
    const Program program = DefineProgram();
    session.Streams.PrintResult(".TH BVCTL 1 \"\" \"bvctl " + std::string(kProgramVersion) + "\"\n" +
                                ".SH NAME\nbvctl \\- console companion of the Brivane configuration program\n" +
                                ".SH SYNOPSIS\n.B bvctl\n[global options] AREA VERB [arguments]\n" +
                                ".SH DESCRIPTION\n" + Escaped(program->get_description()) + //
                                ".SH GLOBAL OPTIONS\n" + Parameters(program.get()) +        //
                                ".SH COMMANDS\n" + Commands(program.get(), "bvctl") +       //
                                ".SH JSON\n" + Escaped(kJsonHelp) +                         //
                                ".SH EXAMPLES\n" + Footer(program.get()));
    return kExitDone;
}

constexpr Verb kVerbs[] = {{.Example = "> bvctl.1", .Run = PrintManual}};

} // namespace

const Area kManualArea = {"manual", "Print this program's manual page, for man", kVerbs, kServerOptions};

} // namespace bv::console
