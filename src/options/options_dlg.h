// The dialog of the server's settings.
#pragma once

#include <windows.h>

namespace bv {

// Opens it over its owner; not without settings that could be read.
void ConfigureOptions(HWND owner);

INT_PTR CALLBACK ConfigOptionsDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
