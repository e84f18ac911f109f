// The dialog of the links to remote servers, which gathers changes and saves them all with OK.
#pragma once

#include <windows.h>

namespace bv {

// Opens it over its owner. The lock is held (RunLcrEditor). True when it was ended with OK, and so what was changed is
// saved.
bool EditLinks(HWND owner);

INT_PTR CALLBACK DisplayAllLinksDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
