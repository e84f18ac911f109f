// The status line of a dialog: what the banner says, where the person looks.
#pragma once

#include <windows.h>

#include <string>

namespace bv {

// From now on, until it is closed, the dialog's status line follows; a dialog without one is passed over.
void FollowStatus(HWND dialog);

// Shows what the banner's line 1 or 2 says in the open dialogs, and has screen readers say it. False when no dialog
// shows it.
bool ShowStatusInDialogs(int line, const std::string& text);

} // namespace bv
