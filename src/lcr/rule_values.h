// The values of a routing rule as a person gives them, key by key; lists are parted by commas or blanks, and an entry
// with a blank or a comma stands in quotes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lcr/rule.h"
#include "lcr/rule_references.h"

namespace bv {

struct RuleValue {
    std::string_view Key; // "Description", "Region" and so on
    std::string Value;
};

// Every key of a rule with its value.
std::vector<RuleValue> RuleValues(const RoutingRule& rule);

// Puts the value of a key into the rule. The value that the rule has already is taken as it is. False, after one line
// that names both, for what is no key, no value of it, or not defined.
bool EnterRuleValue(RoutingRule& rule, std::string_view key, std::string_view value, const RuleNames& names);

// Takes words of priorities; false, after a message, for any other word.
bool EnterPriorities(std::uint8_t& priorities, std::string_view value);

} // namespace bv
