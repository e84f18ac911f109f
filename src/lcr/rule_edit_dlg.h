// The dialog of one routing rule, on seven pages.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>

#include "lcr/rule_session.h"

namespace bv {

// Edits the rule at the place, from where a person can go on to the one before and behind it, or a new one without a
// place. What is accepted is in the session, and so waits for its save. The place that was looked at last; none when a
// new rule was not accepted. Remarks tell of a rule what its list knows.
std::optional<std::size_t> EditRuleByDialog(HWND owner, RuleSession& session, std::optional<std::size_t> place,
                                            const std::function<std::string(std::size_t place)>& remarks);

INT_PTR CALLBACK RoutingRuleEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
