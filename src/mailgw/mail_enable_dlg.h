// The box in which users of the mail system are let send.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace bv {

// Runs the box; it begins with that server user or profile, if one is given. The e-mail name of the first one that was
// enabled; none when it was cancelled.
std::optional<std::string> EnableMailUsersByDialog(HWND owner, const std::string& serverUser);

INT_PTR CALLBACK MailUserEnableDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
