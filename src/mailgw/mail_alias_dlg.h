// The box of the expression by which mail users get account names.
#pragma once

#include <windows.h>

namespace bv {

// Runs the box. Whether there is another expression now.
bool ChooseAccountExpression(HWND owner);

INT_PTR CALLBACK MailUserAliasDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
