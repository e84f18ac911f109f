// The dialog of inward routing: the rules of the three kinds, and who gets a received fax by them.
#pragma once

#include <windows.h>

namespace bv {

// Runs the dialog over its owner.
void ConfigureRouting(HWND owner);

INT_PTR CALLBACK ConfigRoutingDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
