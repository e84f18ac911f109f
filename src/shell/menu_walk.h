// The way through the function menu: which entry is checked, when the server's installer presses OK, and what
// happens on leaving.
#pragma once

#include "shell/startup.h"

namespace bv {

// The areas by the number of their start function, and the end.
enum class MenuEntry { None, Users, Devices, Settings, InwardRouting, Coversheets, Quit };

struct MenuStep {
    MenuEntry Checked = MenuEntry::None;
    bool PressOk = false; // the installer's walk goes on by itself
    friend bool operator==(const MenuStep&, const MenuStep&) = default;
};

// What the menu opens with. Installer modes D, M and A begin their walk, in this order of precedence, at the devices,
// the server settings and the users.
MenuStep FirstStep(const StartupOptions& options);

// What follows when the dialog of an area has been closed: Quit, and in installer modes A, D and U the walk from users
// to devices to server settings and out. Where the walk ends, SettingsChanged is cleared: the installer starts the
// server itself.
MenuStep NextStep(MenuEntry closed, StartupOptions& options);

// On leaving the menu: deletes the scratch files that printer lists leave in the server's database directory, and shows
// warning 5079 when settings were changed, except in installer modes A and U.
void LeaveMenu(const StartupOptions& options);

} // namespace bv
