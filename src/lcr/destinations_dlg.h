// The dialog of the destinations: countries, areas, regions and other names in a tree, and where a number is.
#pragma once

#include <windows.h>

namespace bv {

// Runs the dialog; whoever calls it holds the edit lock (RunLcrEditor). True when it ended with OK, with what was
// changed saved.
bool EditDestinations(HWND owner);

INT_PTR CALLBACK DestinationsEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
