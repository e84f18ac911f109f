// The dialog of the places that use a name: to look at, or with what is to become of them when the name goes.
#pragma once

#include <windows.h>

#include "dialogs/services_dlg.h"

namespace bv {

// As DialogServices has them.
void ShowUses(HWND owner, NamedThing kind, const std::string& name);
void DeleteByDialog(HWND owner, NamedThing kind, const std::vector<std::string>& names);

INT_PTR CALLBACK WhereUsedDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
