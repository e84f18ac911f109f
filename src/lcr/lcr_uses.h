// Where routing, its links and its destinations refer to a name.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "lcr/destinations.h"
#include "shell/uses.h"

namespace bv {

enum class LcrName { User, Server };

// The rules, and for a user the links, that refer to the name. None after a message: a file cannot be read.
std::optional<std::vector<Use>> FindLcrUses(LcrName kind, std::string_view name);

// The references of rules, regions and synonyms that name a place in the one tables and none in the others. None after
// a message.
std::optional<std::vector<Use>> FindLostDestinations(const Destinations& before, const Destinations& after);

} // namespace bv
