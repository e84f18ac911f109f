// One change of many users.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace bv {

// Asks what is to become otherwise with the users of those names, and changes them.
void ChangeUsersByDialog(HWND owner, const std::vector<std::string>& names);

INT_PTR CALLBACK ConfigManyUsersDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
