// The dialling properties: where they come from, the locations of the file, and what becomes of a number by them.
#pragma once

#include <windows.h>

namespace bv {

// Opens the dialog, if the file can be read.
void ConfigureDialling(HWND owner);

INT_PTR CALLBACK DiallingPropertiesDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
