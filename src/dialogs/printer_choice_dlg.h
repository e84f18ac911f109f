// The dialog in which a printer is chosen.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace bv {

// Opens it over its owner, with the printer of that name selected. The name of the chosen one; none when it is
// cancelled.
std::optional<std::string> ChoosePrinter(HWND owner, const std::string& name);

INT_PTR CALLBACK SelectPrinterDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
