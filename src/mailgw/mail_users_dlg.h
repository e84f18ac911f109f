// The dialog of mail users: who of the mail system may send faxes, and as whom.
#pragma once

#include <windows.h>

#include <string>

namespace bv {

// Runs the dialog over its owner: with the mail users whose faxes go under a server user's name or, without a name,
// with all.
void ConfigureMailUsers(HWND owner, const std::string& serverUser);

INT_PTR CALLBACK EnumerateHostsDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
