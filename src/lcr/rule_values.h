// The keys of a routing rule: how the file has them, and the values that a person gives, in which lists are parted by
// commas or blanks, and an entry with a blank or a comma stands in quotes.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lcr/rule.h"
#include "lcr/rule_references.h"

namespace bv {

struct RuleKey {
    std::string_view Key; // with its colon
    bool IsList = false;  // a line for each entry; lines of the key that follow the first belong to it
    bool IsPlace = false; // a kind of destination, whose lines stay as they were written, all kinds in one order

    // Takes the value of a line.
    void (*Take)(RoutingRule& rule, std::string_view key, std::string_view value);

    // The values of its lines.
    std::vector<std::string> (*Values)(const RoutingRule& rule, std::string_view key);

    // As EnterRuleValue, by the name without the colon.
    bool (*Enter)(RoutingRule& rule, std::string_view name, std::string_view value, const RuleNames& names);

    [[nodiscard]] std::string_view Name() const { return Key.substr(0, Key.size() - 1); }
};

// In the order in which they are written and shown.
std::span<const RuleKey> RuleKeys();

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
