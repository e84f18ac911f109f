// Commands that need to know where the server's files are.
#pragma once

#include "console/commands.h"
#include "shell/server_paths.h"
#include "shell/startup.h"

namespace bv::console {

// Loads the server's paths and the options that the whole program goes by. False after a message.
inline bool LoadServer() {
    ControlStream setup;
    if (LoadServerPaths(&setup) != kDone) return false;
    ReadServerSwitches(setup);
    return true;
}

// The command with those loaded.
template <Command command>
int Located(Session& session, const Arguments& arguments) {
    return LoadServer() ? command(session, arguments) : kExitRefused;
}

} // namespace bv::console
