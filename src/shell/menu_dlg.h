// The function menu, from which one area at a time is opened.
#pragma once

#include <windows.h>

namespace bv {

// Opens the area of the start function directly, or the function menu, over the main window; returns when it is
// closed. The focus is as before then.
void RunStartFunction(HWND mainWindow);

INT_PTR CALLBACK FunctionDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
