// A routing rule's keys on the console: KEY=VALUE, with lists parted by commas.
#pragma once

#include <string_view>

#include "console/output.h"
#include "lcr/rule.h"
#include "lcr/rule_references.h"

namespace bv::console {

// The rule's number, counted from 1, and its keys.
Record RecordOfRule(const RoutingRule& rule, std::size_t number);

// Puts the value of a key into the rule. False, after one line that names both, for what is no key, no value of it, or
// not defined.
bool EnterRuleValue(RoutingRule& rule, std::string_view key, std::string_view value, const RuleNames& names);

// Takes words of priorities, parted by commas; false, after a message, for any other word.
bool EnterPriorities(std::uint8_t& priorities, std::string_view value);

} // namespace bv::console
