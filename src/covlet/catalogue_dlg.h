// The dialog of the installed coversheets and letterheads.
#pragma once

#include <windows.h>

namespace bv {

// Runs the dialog over its owner.
void ConfigureCoversheets(HWND owner);

INT_PTR CALLBACK ConfigCovLetDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
