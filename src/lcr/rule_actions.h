// The routing rules as a person changes them, each time from the file to the file.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

#include "ctlfile/entered_values.h"
#include "lcr/rule_edit.h"
#include "lcr/rule_references.h"

namespace bv {

// What a change of the rules has at hand.
struct RuleEdit {
    RuleNames Names;
    RuleList Rules;
};
using RuleChange = std::function<RuleCheck(RuleEdit& edit)>;

// Changes the rules and saves them (SaveRules) without the names that are lost, if that is agreed to
// (DropLostReferences); an unchanged list is not saved. One administrator does it at a time (RunLcrEditor). False after
// a message: also 9170 while there are pending changes, about which is to be decided first.
bool EditRules(LostNames lost, const RuleChange& change);

// Whether no changes of the rules wait for their save; false after 9170.
bool CheckNoPendingRules();

// The place of the rule of that number, counted from 1; none after 9184.
std::optional<std::size_t> FindRule(const RuleList& rules, std::string_view number);

// Enters the values into the rule at the place, or into a new one, and takes it into the list (ChangeRule). Refused
// after a message, with the list as it was.
RuleCheck EnterRule(RuleEdit& edit, std::optional<std::size_t> place, const EnteredValues& values);

// Takes a rule out of the list.
RuleCheck RemoveRule(RuleList& rules, std::size_t place);

// Moves a rule to where another one is: to "up" or "down" (beyond either end nothing is done), or to a number.
RuleCheck MoveRule(RuleList& rules, std::size_t place, std::string_view to);

} // namespace bv
