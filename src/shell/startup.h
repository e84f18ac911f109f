// How the program was started, and the options of the server that the whole program goes by.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ctlfile/control_stream.h"
#include "ctlfile/fixed_text.h"

namespace bv {

inline constexpr std::string_view kProgramVersion = "5.50";

struct StartupOptions {
    FixedText<268> HelpFile;     // full path of BVSETUP.HLP
    int StartFunction = 0;       // 1 users, 2 devices, 3 server settings, 4 inward routing, 5 coversheets; 0 the menu
    bool InstallerModeA = false; // modes in which the server's installer walks through the dialogs
    bool InstallerModeD = false;
    bool InstallerModeM = false;
    bool InstallerModeU = false;
    bool SettingsChanged = false; // the server must be restarted to see what was changed
};

// The one record of the process.
StartupOptions& Startup();

// Puts the command line's switches into the options: "-" or "/" and one of 1 to 5, A, D, M, U. The number of the
// string that names the fault: 5235 for an unknown switch, 5236 for anything else; 0 without a fault.
int ParseCommandLine(std::string_view commandLine, StartupOptions& options);

// The path of the help file: BVSETUP.HLP in the current directory, or, when that is not there or in installer mode A,
// in the server area.
std::string FindHelpFile(const StartupOptions& options);

// Options of the server that steer this program; the defaults stand for what is absent.
struct ServerSwitches {
    bool EnableRouting = true;      // false: the menu has no inward routing
    char UserGroupIdentifier = '@'; // marks the name of a user group; upper case
    bool EnableAutoAdd = false;
};

// Those of the process, read by ReadServerSwitches from "[OPTIONS]" of the open SETUP.INI.
const ServerSwitches& Switches();
void ReadServerSwitches(ControlStream& setupFile);

} // namespace bv
