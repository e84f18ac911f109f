// The dialog in which a person says which rules are to be looked at.
#pragma once

#include <windows.h>

#include <optional>

#include "lcr/rule_filter.h"

namespace bv {

// Runs the dialog over an entry. True when that is another one, and can be asked (EnterFilter).
bool EditFilter(HWND owner, const RuleNames& names, FilterEntry& entry);

// Fills a combo box with the days of the week from Monday on, and takes the chosen one; 0 is Sunday. Without any
// chosen, none.
void OfferWeekdays(HWND dialog, int combo);
std::optional<int> ChosenWeekday(HWND dialog, int combo);
void ChooseWeekday(HWND dialog, int combo, int weekday);

INT_PTR CALLBACK RoutingRuleFilterDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
