// Routing rules in memory. A rule hands faxes that meet its criteria to the servers that it names; a criterion that it
// leaves empty is met by every fax. The order of the rules is the administrator's and counts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/fixed_text.h"
#include "lcr/priority.h"

namespace bv {

struct RuleDestination {
    // What the line refers to: a region, a country, or a country, "/" and an area. Empty until the references have
    // been checked.
    std::string Key;
    std::string Line; // "Region: EU", "Country: UK" or "Area: UK/LON", as read

    // A line is all there is to a destination.
    friend bool operator==(const RuleDestination& a, const RuleDestination& b) { return a.Line == b.Line; }
};

inline constexpr std::string_view kRegionKey = "Region:";
inline constexpr std::string_view kCountryKey = "Country:";
inline constexpr std::string_view kAreaKey = "Area:";
inline constexpr std::string_view kPriorityKey = "Priority:";
inline constexpr std::string_view kServerKey = "Server:";
inline constexpr std::string_view kDestinationKeys[] = {kRegionKey, kCountryKey, kAreaKey};
inline constexpr std::string_view kNoDescription = "(no description)";

struct RoutingRule {
    FixedText<99> Description; // unique among the rules, in any case
    std::vector<RuleDestination> Destinations;
    std::vector<std::string> Users;
    std::vector<std::string> Servers; // identifiers of remote servers
    bool AllowsLocalServer = false;
    std::vector<std::string> OtherLines; // lines of its paragraph that say nothing to this program
    FixedText<99> Time;                  // PEAK, OFFPEAK or words of time
    FixedText<99> Size;                  // PAGES LE n or PAGES GE n
    std::uint8_t Priorities = 0;

    friend bool operator==(const RoutingRule&, const RoutingRule&) = default;
};

using RuleList = std::vector<RoutingRule>;

// Whether the rule has a destination, user, priority, time or size.
bool HasCriteria(const RoutingRule& rule);

// Whether the rules are the same but for blanks at the end of their times, which a file does not give back.
bool IsSameRule(const RoutingRule& a, const RoutingRule& b);

// Moves a rule to the place before or after it. False, with nothing done, for the first and the last rule.
bool MoveRuleUp(RuleList& rules, std::size_t position);
bool MoveRuleDown(RuleList& rules, std::size_t position);

} // namespace bv
