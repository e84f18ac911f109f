#include "lcr/rule_actions.h"

#include <algorithm>
#include <utility>

#include "ctlfile/digits.h"
#include "lcr/lcr_messages.h"
#include "lcr/rule_file.h"
#include "lcr/rule_values.h"
#include "platform/ascii.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

// What numbers rules have.
std::string RuleNumbers(std::size_t count) {
    if (count == 0) return "there are no rules";
    return count == 1 ? "there is one rule" : FormatText("there are rules 1 to %d", count);
}

RuleCheck MoveBetween(RuleList& rules, std::size_t from, std::size_t to) {
    if (from == to) return RuleCheck::Unchanged;
    for (; from < to; ++from) MoveRuleDown(rules, from);
    for (; from > to; --from) MoveRuleUp(rules, from);
    return RuleCheck::Fine;
}

} // namespace

bool EditRules(LostNames lost, const RuleChange& change) {
    RuleEdit edit;
    if (!LoadRuleNames(edit.Names)) return false;
    std::optional<OpenedRules> opened = CheckNoPendingRules() ? OpenRules() : std::nullopt;
    if (!opened) return false;
    edit.Rules = std::move(opened->Rules);
    const RuleCheck check = change(edit);
    if (check != RuleCheck::Fine) return check == RuleCheck::Unchanged;
    return DropLostReferences(edit.Rules, edit.Names, lost) && SaveRules(edit.Rules, opened->Stamp);
}

bool CheckNoPendingRules() {
    if (LookForPendingRules() != PendingRules::Whole) return true;
    ShowError(kUnsavedRuleChanges, PendingRulesPath());
    return false;
}

std::optional<std::size_t> FindRule(const RuleList& rules, std::string_view number) {
    const auto found = static_cast<std::size_t>(ParseDigits(number).value_or(0));
    if (found >= 1 && found <= rules.size()) return found - 1;
    ShowError(kFaultOfRule, number, RuleNumbers(rules.size()));
    return {};
}

RuleCheck EnterRule(RuleEdit& edit, std::optional<std::size_t> place, const EnteredValues& values) {
    RoutingRule rule = place ? edit.Rules[*place] : RoutingRule();
    for (const auto& [key, value] : values) {
        if (!EnterRuleValue(rule, key, value, edit.Names)) return RuleCheck::Refused;
    }
    return ChangeRule(edit.Rules, place, std::move(rule));
}

RuleCheck RemoveRule(RuleList& rules, std::size_t place) {
    rules.erase(rules.begin() + static_cast<std::ptrdiff_t>(place));
    return RuleCheck::Fine;
}

RuleCheck MoveRule(RuleList& rules, std::size_t place, std::string_view to) {
    if (EqualFolded(to, "up")) return MoveBetween(rules, place, place - (place == 0 ? 0 : 1));
    if (EqualFolded(to, "down")) return MoveBetween(rules, place, std::min(place + 1, rules.size() - 1));
    const std::optional<std::size_t> target = FindRule(rules, to);
    return target ? MoveBetween(rules, place, *target) : RuleCheck::Refused;
}

} // namespace bv
