// Doing what changes files or starts programs, or only showing it.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "console/session.h"

namespace bv::console {

// Runs an action that says itself why it fails, and returns the exit status. With --json prints the last status text
// as {"status": TEXT}.
//
// With --dry-run the action sees files that take its writing but keep it in memory, and starts no program. Then
// prints a unified diff of each file that would have changed and the command line of each program that would have
// been started; with --json {"changes": [{"path": PATH, "diff": TEXT}...], "starts": [TEXT...]}.
int Perform(const Session& session, const std::function<bool()>& action);

// What is to change in a file; before or afterwards it may not be there. The CR of a CR LF line end is not shown; a
// line that ends in LF alone is marked with
// "^J". Passwords are shown as eight asterisks unless they are to be revealed, with "(new)" behind one that was not
// there before.
std::string UnifiedDiff(const Session& session, const std::string& path, const std::optional<std::string>& before,
                        const std::optional<std::string>& after);

} // namespace bv::console
