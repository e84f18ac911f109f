// Where users, user groups and what new ones begin with refer to printers.
#pragma once

#include <optional>
#include <vector>

#include "shell/name_set.h"
#include "shell/uses.h"

namespace bv {

// The keys that name the printers for sent and for received faxes. None after a message of the user list.
std::optional<std::vector<Use>> FindPrinterUses(const NameSet& printers);

// Makes the change to these keys, in one rewrite for users and one for groups. False after a message.
bool ChangePrinterUses(const NameSet& printers, const UseChange& change);

} // namespace bv
