// Where routing, its links and its destinations refer to a name.
#pragma once

#include <optional>
#include <vector>

#include "lcr/destinations.h"
#include "lcr/rule.h"
#include "shell/name_set.h"
#include "shell/uses.h"

namespace bv {

enum class LcrName { User, Server };

// The rules, and for users the links, that refer to one of the names. None after a message: a file cannot be read.
std::optional<std::vector<Use>> FindLcrUses(LcrName kind, const NameSet& names);

// A rule as such a place; whether the names are all that its criterion has.
Use UseOfRule(const RuleList& rules, const RoutingRule& rule, bool isOnly);

// Make the change to what the rules and the links say of the users. Who calls them holds the edit lock, and has seen
// that no changes of the rules wait for their save (CheckNoPendingRules). False after a message of OpenRules and
// SaveRules, or of LoadLinks and SaveLinks.
bool ChangeRuleUsers(const NameSet& users, const UseChange& change);
bool ChangeLinkAccounts(const NameSet& users, const UseChange& change);

// The references of rules, regions and synonyms that name a place in the one tables and none in the others. None after
// a message.
std::optional<std::vector<Use>> FindLostDestinations(const Destinations& before, const Destinations& after);

} // namespace bv
