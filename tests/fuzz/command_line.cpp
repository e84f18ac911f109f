// The switches of the command line, against a machine that sees one character at a time.

#include "fuzz/fuzz.h"
#include "shell/startup.h"

namespace bv::fuzz {
namespace {

enum class State { Between, Switch, BehindA };

struct Parsed {
    int Fault = 0;
    int Function = 0;
    std::string Modes; // letters in the order they came
};

Parsed Parse(std::string_view commandLine) {
    Parsed parsed;
    State state = State::Between;
    for (const char c : commandLine) {
        if (state == State::BehindA) {
            state = State::Between;
        } else if (state == State::Between && (c == '-' || c == '/')) {
            state = State::Switch;
        } else if (state == State::Between && (c == ' ' || c == '\t' || c == '\r' || c == '\n')) {
            continue;
        } else if (state == State::Between) {
            parsed.Fault = 5236;
            return parsed;
        } else if (c >= '1' && c <= '5') {
            parsed.Function = c - '0';
            state = State::Between;
        } else if (const std::size_t mode = std::string_view("ADMUadmu").find(c); mode < 8) {
            parsed.Modes += "ADMU"[mode % 4];
            state = parsed.Modes.back() == 'A' ? State::BehindA : State::Between;
        } else {
            parsed.Fault = 5235;
            return parsed;
        }
    }
    if (state == State::Switch) parsed.Fault = 5235;
    return parsed;
}

} // namespace

void TryInput(std::string_view commandLine) {
    StartupOptions options;
    const int fault = ParseCommandLine(commandLine, options);
    const Parsed expected = Parse(commandLine);
    const auto has = [&expected](char mode) { return expected.Modes.find(mode) != std::string::npos; };
    Require(fault == expected.Fault, "fault");
    Require(options.StartFunction == expected.Function, "start function");
    Require(options.InstallerModeA == has('A') && options.InstallerModeD == has('D'), "modes A and D");
    Require(options.InstallerModeM == has('M') && options.InstallerModeU == has('U'), "modes M and U");
    Require(options.HelpFile.IsEmpty() && !options.SettingsChanged, "nothing else changes");
}

} // namespace bv::fuzz
