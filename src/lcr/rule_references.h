// What routing rules refer to: users, servers and destinations. A rule that refers to what is no longer defined loses
// that reference when it is loaded.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "lcr/destinations.h"
#include "lcr/rule.h"

namespace bv {

// Names that are looked up without regard to case.
class NameSet {
  public:
    void Add(std::string_view name) { names_.insert(Folded(name)); }
    [[nodiscard]] bool Has(std::string_view name) const { return names_.contains(Folded(name)); }

  private:
    static std::string Folded(std::string_view name);

    std::unordered_set<std::string> names_;
};

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

// Removes the references of the rule, or of all rules, that are not defined, and stores the keys of the destinations.
// Whether any was removed.
bool CheckReferences(RoutingRule& rule, const RuleNames& names);
bool CheckReferences(RuleList& rules, const RuleNames& names);

// Whether a destination's line names a region.
bool IsRegion(const RuleDestination& destination);

} // namespace bv
