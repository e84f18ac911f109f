// What routing rules refer to: users, servers and destinations. A rule that refers to what is no longer defined loses
// that reference when it is loaded to be matched, and when it is saved, if that is agreed to.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lcr/destinations.h"
#include "lcr/rule.h"
#include "shell/name_set.h"

namespace bv {

// The names that rules may refer to.
struct RuleNames {
    NameSet Users;   // "Name:" of each "[USER]" of USERLIST.INI
    NameSet Servers; // "RemoteServerID:" of each "[LINK]" of LINK.INI and "LocalServerID:" of SETUP.INI's "[ROUTER]"
    Destinations Places;
};

// Loads the names from their files; there need not be a LINK.INI. False after a message.
bool LoadRuleNames(RuleNames& names);

// What a destination's line refers to, as the tables have it: "EU", "UK" or "UK/LON". None when it is not defined.
std::optional<std::string> FindDestinationKey(const Destinations& places, const RuleDestination& destination);

// A reference that was removed from a rule because its name is not defined.
struct LostReference {
    std::size_t Rule = 0;  // its place in the list
    std::string_view Kind; // "Region", "Country", "Area", "User" or "Server"
    std::string Name;
    bool IsLast = false; // the rule has no destination, no user or no server left, and so means something else

    friend bool operator==(const LostReference&, const LostReference&) = default;
};

// Removes the references of the rule, or of all rules, that are not defined, and stores the keys of the destinations.
// Returns those removed. Shows nothing.
std::vector<LostReference> CheckReferences(RoutingRule& rule, const RuleNames& names);
std::vector<LostReference> CheckReferences(RuleList& rules, const RuleNames& names);

// A sentence that names the rule and the reference, with another one on what the rule means without it when it was the
// last.
std::string DescribeLoss(const RuleList& rules, const LostReference& lost);

enum class LostNames { Ask, Drop };

// Readies changed rules to be saved: names each reference that is not defined, with what its rule means without it
// (warning 9131 and 9132 to 9134), asks 9135 whether to remove them unless that has been said already, and removes
// them. False, with the rules as they were, when it is not agreed to.
bool DropLostReferences(RuleList& rules, const RuleNames& names, LostNames lost);

// Whether a destination's line names a region.
bool IsRegion(const RuleDestination& destination);

} // namespace bv
