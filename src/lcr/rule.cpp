#include "lcr/rule.h"

#include <utility>

#include "platform/ascii.h"

namespace bv {

bool HasCriteria(const RoutingRule& rule) {
    return !rule.Destinations.empty() || !rule.Users.empty() || !IsAnyPriority(rule.Priorities) ||
           !rule.Time.IsEmpty() || !rule.Size.IsEmpty();
}

bool IsSameRule(const RoutingRule& a, const RoutingRule& b) {
    RoutingRule other = b;
    if (TrimBlanks(a.Time) == TrimBlanks(b.Time)) other.Time = a.Time;
    return a == other;
}

bool MoveRuleUp(RuleList& rules, std::size_t position) {
    if (position == 0 || position >= rules.size()) return false;
    std::swap(rules[position - 1], rules[position]);
    return true;
}

bool MoveRuleDown(RuleList& rules, std::size_t position) { return MoveRuleUp(rules, position + 1); }

} // namespace bv
