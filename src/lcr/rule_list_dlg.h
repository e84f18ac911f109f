// The dialog of the routing rules: their order, their marks, and which of them decides a fax.
#pragma once

#include <windows.h>

namespace bv {

// Runs the dialog while the caller holds the edit lock. True when it ended with OK.
bool EditRules(HWND owner);

INT_PTR CALLBACK RoutingRuleDisplayDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
