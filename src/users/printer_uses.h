// Where the user list refers to printers.
#pragma once

#include <optional>
#include <vector>

#include "shell/name_set.h"
#include "shell/uses.h"

namespace bv {

// The keys of users, of groups and of their default records that name one of the printers. None after 413 or 9011.
std::optional<std::vector<Use>> FindListPrinterUses(const NameSet& printers);

// Makes the change to them, in one rewrite for users and one for groups; bins and papers stay as they are. False after
// a message of ChangeUserRecords or of the list.
bool ChangeListPrinterUses(const NameSet& printers, const UseChange& change);

} // namespace bv
