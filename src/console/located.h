// Commands that need to know where the server's files are.
#pragma once

#include "console/commands.h"
#include "shell/server_paths.h"

namespace bv::console {

// The command with the server's paths loaded.
template <Command command>
int Located(Session& session, const Arguments& arguments) {
    return LoadServerPaths() == kDone ? command(session, arguments) : kExitRefused;
}

} // namespace bv::console
