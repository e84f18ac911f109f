// Faxes that a person describes by some of their criteria: to look through the rules by, and to try one.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lcr/fax_entry.h"
#include "lcr/rule_match.h"

namespace bv {

// What is asked about, with its values as they are typed. An empty value asks whether a rule has the criterion at all.
struct FilterEntry {
    std::vector<Criterion> Asked = {};
    FaxDescription Fax = {};
    int Weekday = 0;        // 0 is Sunday
    std::string Clock = {}; // "14:30"

    [[nodiscard]] bool Asks(Criterion kind) const;
};

// A filter for each criterion that is asked about. None after a message that names the value: one of DescribeFax, 9165,
// 9161 or 9162.
std::optional<std::vector<RuleFilter>> EnterFilter(const FilterEntry& entry, const RuleNames& names);

// Whether a rule meets all of them.
bool MeetsAll(const RoutingRule& rule, const std::vector<RuleFilter>& filters, const MatchBasis& basis);

// What is asked about in words: "user ANNA, size 12"; "has a size" for a criterion without a value.
std::string DescribeFilter(const FilterEntry& entry);

// A fax that was tried by the rules.
struct TriedFax {
    std::string Result;                  // who decides, "Predicted from the rules alone", or why that cannot be said
    std::optional<std::size_t> Deciding; // the place of the rule
    std::vector<RuleFilter> Filters;     // empty when it cannot be said
};

// Tries the fax; what is not given is not known of it. Shows nothing.
TriedFax TryFax(const FilterEntry& entry, const RuleList& rules, const RuleNames& names, const MatchBasis& basis);

// What speaks first against a rule: "the rule names other users"; empty when nothing does.
std::string_view WhyNot(const RoutingRule& rule, const TriedFax& fax, const MatchBasis& basis);

} // namespace bv
