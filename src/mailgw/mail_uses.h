// Where the mail list refers to users.
#pragma once

#include <optional>
#include <vector>

#include "shell/name_set.h"
#include "shell/uses.h"

namespace bv {

// The records of mail users whose faxes go under one of the names, or whose profile has it. A user's own record, of the
// user's mail name, goes with the user. Without a mail list there are none. None after a message: a file cannot be
// read.
std::optional<std::vector<Use>> FindMailUses(const NameSet& names);

// Makes the change to these records in one rewrite, and to nothing else of the list; records that go with their users
// are left to the deletion. Status 474 for each record that has left; sets SettingsChanged. False after a message of
// EditControlFile.
bool ChangeMailUses(const NameSet& names, const UseChange& change);

} // namespace bv
