// The command line, defined from the tables of commands.h with CLI11.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "console/commands.h"

namespace CLI {
class App;
}

namespace bv::console {

// The values of an option, and what said them: "--ini", the name of a variable, the path of a file; nothing at all.
struct GivenValues {
    std::vector<std::string> Values;
    std::string From;
};

struct GlobalOptions {
    GivenValues Ini;      // directory of BRIVANE.INI
    GivenValues Drives;   // "X:=DIR"
    GivenValues CodePage; // number of the files' code page
    bool Json = false;
    bool Yes = false;
    bool DryRun = false;
    bool Reveal = false;
    bool Raw = false;
    bool Header = false;
    bool Quiet = false;
};

struct ParsedCommand {
    const Verb* Chosen = nullptr;
    Arguments Given;
    GlobalOptions Global;
};

// What is to be printed instead of running a command.
struct Answer {
    std::string Text;
    ExitStatus Status = kExitDone; // kExitDone: help or the version, asked for; else what is wrong
};

std::variant<ParsedCommand, Answer> ParseArguments(std::span<const std::string> arguments);

// A function object, since only command_line.cpp needs the complete type.
struct DeleteProgram {
    void operator()(CLI::App* program) const;
};
using Program = std::unique_ptr<CLI::App, DeleteProgram>;

// The whole command line: global options, areas, verbs and their parameters. For given arguments only the verbs of
// areas that they may name: defining all of them takes longer than most verbs.
Program DefineProgram(std::optional<std::span<const std::string>> arguments = {});

} // namespace bv::console
