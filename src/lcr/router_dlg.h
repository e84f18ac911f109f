// The dialog of the general settings: this server's name, and how faxes of other servers come to it.
#pragma once

#include <windows.h>

#include <string>

#include "lcr/router_settings.h"

namespace bv {

// What the editors of routing ask of areas above it; null for what there is not.
struct LcrServices {
    // Tries the account of the settings, with the password as the file has it, and says what came of it.
    void (*TestLogin)(HWND owner, const RouterSettings& settings) = nullptr;

    // The ID file of the Notes program on this workstation; empty without one.
    std::string (*NotesIdFile)() = nullptr;
};

// Opens it over its owner; without a test of the log-in its button is disabled. The lock is held (RunLcrEditor). True
// when it was ended with OK, and so what was changed is saved.
bool EditRouter(HWND owner, const LcrServices& services);

INT_PTR CALLBACK RouterDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
