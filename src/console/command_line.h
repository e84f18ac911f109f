// The command line, defined from the tables of commands.h with CLI11.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "console/commands.h"

namespace CLI {
class App;
}

namespace bv::console {

struct GlobalOptions {
    std::optional<std::string> Ini;                          // directory of BRIVANE.INI
    std::vector<std::pair<std::string, std::string>> Drives; // drive or share, host directory
    bool Json = false;
    bool Yes = false;
    bool DryRun = false;
    bool Reveal = false;
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

// The whole command line: global options, areas, verbs and their parameters.
Program DefineProgram();

} // namespace bv::console
