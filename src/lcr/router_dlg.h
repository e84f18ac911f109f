// The dialog of the general settings: this server's name, and how faxes of other servers come to it.
#pragma once

#include <windows.h>

#include "lcr/router_settings.h"

namespace bv {

// Tries the account of the settings, with the password as the file has it, and says what came of it.
using LoginTest = void (*)(HWND owner, const RouterSettings& settings);

// Opens it over its owner; without a test, which the layer above routing has, its button is disabled. The lock is held
// (RunLcrEditor). True when it was ended with OK, and so what was changed is saved.
bool EditRouter(HWND owner, LoginTest test);

INT_PTR CALLBACK RouterDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
