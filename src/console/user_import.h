// Users from a file of comma-separated values.
#pragma once

#include "console/commands.h"

namespace bv::console {

// Checks every row before anything is written, and says what is wrong with each by line and column. Then adds the users
// that are not in the list and changes those that are, in one rewrite of the list. A person may stop it (Ctrl+C): users
// whose directories are made by then are added whole, and no user is changed. Exit status 1 when not all was done.
int ImportUsers(Session& session, const Arguments& arguments);

} // namespace bv::console
