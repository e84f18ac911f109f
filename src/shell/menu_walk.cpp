#include "shell/menu_walk.h"

#include "platform/files.h"
#include "shell/server_paths.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr MenuStep kStay{MenuEntry::Quit, false};

MenuStep EndOfWalk(StartupOptions& options) {
    options.SettingsChanged = false;
    return {MenuEntry::Quit, true};
}

} // namespace

MenuStep FirstStep(const StartupOptions& options) {
    if (options.InstallerModeD) return {MenuEntry::Devices, true};
    if (options.InstallerModeM) return {MenuEntry::Settings, true};
    return {MenuEntry::Users, options.InstallerModeA};
}

MenuStep NextStep(MenuEntry closed, StartupOptions& options) {
    if (options.InstallerModeM) return EndOfWalk(options);
    if (!options.InstallerModeA && !options.InstallerModeD && !options.InstallerModeU) return kStay;
    switch (closed) {
    case MenuEntry::Users: return options.InstallerModeD ? kStay : MenuStep{MenuEntry::Devices, true};
    case MenuEntry::Devices: return {MenuEntry::Settings, true};
    case MenuEntry::Settings: return EndOfWalk(options);
    default: return kStay;
    }
}

void LeaveMenu(const StartupOptions& options) {
    platform::Files().Delete(DatabaseFile("LOCAL.TMP"));
    platform::Files().Delete(DatabaseFile("PRIMARY.TMP"));
    if (options.SettingsChanged && !options.InstallerModeA && !options.InstallerModeU) ShowWarning(kRestartNeeded);
}

} // namespace bv
