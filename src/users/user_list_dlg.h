// The dialog of users, user groups and mail user profiles.
#pragma once

#include <windows.h>

#include "dialogs/services_dlg.h"

namespace bv {

// Runs the dialog over its owner.
void ConfigureUsers(HWND owner, const DialogServices& services);

INT_PTR CALLBACK EnumerateUsersDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
