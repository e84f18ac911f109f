// Completion scripts for shells, made by walking the command line's definition.
#include <CLI/CLI.hpp>

#include "console/command_line.h"

namespace bv::console {
namespace {

// Finds the areas and verbs among the words before the cursor, and offers what may follow them: options behind a
// "-", else verbs or file names. Paths below AREA and VERB are looked up in the functions that precede it.
constexpr std::string_view kBashFunction = R"(_bvctl() {
    local word=${COMP_WORDS[COMP_CWORD]} command='' words at
    for ((at = 1; at < COMP_CWORD; ++at)); do
        if _bvctl_is_command "${command:+$command }${COMP_WORDS[at]}"; then
            command="${command:+$command }${COMP_WORDS[at]}"
        fi
    done
    COMPREPLY=()
    words=$(_bvctl_words "$command")
    if [[ $word == -* ]]; then
        words=$(_bvctl_options "$command")
    elif [[ $words == FILE ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -F _bvctl bvctl
)";

constexpr std::string_view kZshStart = "autoload -U +X compinit && compinit\n"
                                       "autoload -U +X bashcompinit && bashcompinit\n";

// A command with the path that leads to it: "file get".
struct Entry {
    std::string Path;
    const CLI::App* Command;
};

void Collect(const CLI::App* command, const std::string& path, std::vector<Entry>& entries) {
    entries.push_back({path, command});
    for (const CLI::App* below : command->get_subcommands({}))
        Collect(below, path.empty() ? below->get_name() : path + ' ' + below->get_name(), entries);
}

// The names of the options, without the help that every command has.
std::string OptionNames(const CLI::App* command) {
    std::string names;
    for (const CLI::Option* option : command->get_options()) {
        const bool repeated = command->get_parent() != nullptr && option == command->get_help_ptr();
        for (const std::string& name : option->get_lnames())
            if (!repeated) names += " --" + name;
    }
    return names;
}

// What may follow the command besides options: its verbs, or FILE for names of files.
std::string FollowingWords(const CLI::App* command) {
    std::string words;
    for (const CLI::App* below : command->get_subcommands({})) words += (words.empty() ? "" : " ") + below->get_name();
    if (!words.empty()) return words;
    return command->get_option_no_throw("FILE") != nullptr ? "FILE" : "";
}

template <class Words>
std::string CaseFunction(const std::string& name, const std::vector<Entry>& entries, Words wordsOf) {
    std::string text = name + "() {\n    case $1 in\n";
    for (const Entry& entry : entries) text += "    '" + entry.Path + "') echo '" + wordsOf(entry) + "' ;;\n";
    return text + "    esac\n}\n";
}

std::string IsCommandFunction(const std::vector<Entry>& entries) {
    std::string patterns;
    for (const Entry& entry : entries)
        if (!entry.Path.empty()) patterns += (patterns.empty() ? "'" : " | '") + entry.Path + '\'';
    return "_bvctl_is_command() {\n    case $1 in\n    " + patterns + ") return 0 ;;\n    esac\n    return 1\n}\n";
}

std::string BashScript() {
    const Program program = DefineProgram();
    std::vector<Entry> entries;
    Collect(program.get(), "", entries);
    const std::string globals = OptionNames(program.get());
    const auto words = [](const Entry& entry) { return FollowingWords(entry.Command); };
    const auto options = [&](const Entry& entry) {
        return (entry.Path.empty() ? "" : OptionNames(entry.Command)) + globals;
    };
    return IsCommandFunction(entries) + CaseFunction("_bvctl_words", entries, words) +
           CaseFunction("_bvctl_options", entries, options) + std::string(kBashFunction);
}

int PrintCompletion(Session& session, const Arguments& arguments) {
    const std::string& shell = arguments["SHELL"];
    if (shell != "bash" && shell != "zsh") return session.WrongUsage("SHELL is bash or zsh");
    if (shell == "zsh") session.Streams.PrintResult(kZshStart);
    session.Streams.PrintResult(BashScript());
    return kExitDone;
}

constexpr Verb kVerbs[] = {{
    .Parameters = {{{"SHELL", "bash or zsh"}}},
    .Example = "bash > ~/.local/share/bash-completion/completions/bvctl",
    .Run = PrintCompletion,
}};

} // namespace

const Area kCompletionArea = {"completion", "Print a completion script for a shell", kVerbs, kServerOptions};

} // namespace bv::console
