// Texts that change by themselves, and that screen readers are to say when they do.
#pragma once

#include <windows.h>

#include <string>

namespace bv {

// Has a text control said from now on; where the system knows no such texts, only its changes are told.
void MakeLive(HWND text);

// Shows another text in such a control at once, and tells of it.
void ShowLiveText(HWND control, const std::string& text);

} // namespace bv
