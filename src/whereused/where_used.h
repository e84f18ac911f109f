// Where the control files of all areas refer to a name, and the question before the name goes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/uses.h"
#include "users/user_file.h"

namespace bv {

// The places that name a user or a group, beside the user list: rules, links, inward routing, the mail list, devices
// and options. None after a message: a file cannot be read.
std::optional<std::vector<Use>> FindUses(RecordKind kind, std::string_view name);

// Asks, with the places, whether a user or a group that is named elsewhere is to go (AskDespiteUses). False also after
// a message of FindUses.
bool AgreeToDeletion(RecordKind kind, std::string_view name);

} // namespace bv
