// Where routing, its links and its destinations refer to a name.
#pragma once

#include <functional>
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

// Asked, where places refer to what goes or gets another name, what is to become of them: Replace gives them the new
// name. None: nothing is to happen at all.
using AskAboutUses = std::function<std::optional<UseChange>(const std::vector<Use>& uses)>;

// The same in rules that are at hand, and the rules with the change made. One that loses its last server, and is not
// for the local one either, is a use that widens: nobody sends by it then.
std::vector<Use> FindRuleUses(const RuleList& rules, LcrName kind, const NameSet& names);
RuleList ChangeRuleNames(const RuleList& rules, LcrName kind, const NameSet& names, const UseChange& change);

// A rule as such a place; whether the names are all that its criterion has.
Use UseOfRule(const RuleList& rules, const RoutingRule& rule, bool isOnly);

// Make the change to what the rules say of users, and the links. Who calls them holds the edit
// lock, and has seen that no changes of the rules wait for their save (CheckNoPendingRules). False after a message of
// OpenRules and SaveRules, or of LoadLinks and SaveLinks.
bool ChangeRuleUsers(const NameSet& users, const UseChange& change);
bool ChangeLinkAccounts(const NameSet& users, const UseChange& change);

// The references of rules, regions and synonyms that name a place in the one tables and none in the others. None after
// a message.
std::optional<std::vector<Use>> FindLostDestinations(const Destinations& before, const Destinations& after);

} // namespace bv
