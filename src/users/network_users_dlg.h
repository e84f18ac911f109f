// The dialog that adds accounts of the network to the user list.
#pragma once

#include <windows.h>

namespace bv {

// Runs it over its owner. True when users were added.
bool AddNetworkUsersByDialog(HWND owner);

INT_PTR CALLBACK AddNetworkUsersDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
