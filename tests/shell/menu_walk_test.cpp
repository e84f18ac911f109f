#include "shell/menu_walk.h"

#include <gtest/gtest.h>

#include <string>

#include "support/memory_server.h"

namespace bv {

void PrintTo(const MenuStep& step, std::ostream* out) {
    *out << "entry " << static_cast<int>(step.Checked) << (step.PressOk ? ", OK pressed" : "");
}

namespace {

// Settings were changed, and the installer modes of those letters are set.
StartupOptions Changed(std::string_view modes) {
    StartupOptions options;
    options.SettingsChanged = true;
    options.InstallerModeA = modes.find('A') != std::string_view::npos;
    options.InstallerModeD = modes.find('D') != std::string_view::npos;
    options.InstallerModeM = modes.find('M') != std::string_view::npos;
    options.InstallerModeU = modes.find('U') != std::string_view::npos;
    return options;
}

TEST(MenuWalk, BeginsWhereTheModeSays) {
    const std::pair<std::string_view, MenuStep> cases[] = {
        {"", {MenuEntry::Users, false}},  {"A", {MenuEntry::Users, true}},    {"D", {MenuEntry::Devices, true}},
        {"U", {MenuEntry::Users, false}}, {"M", {MenuEntry::Settings, true}}, {"AD", {MenuEntry::Devices, true}},
    };
    for (const auto& [modes, step] : cases) EXPECT_EQ(FirstStep(Changed(modes)), step) << '"' << modes << '"';
}

TEST(MenuWalk, GoesOnWhenADialogIsClosed) {
    constexpr MenuStep kQuitByItself{MenuEntry::Quit, true};
    constexpr MenuStep kQuitOffered{MenuEntry::Quit, false};
    constexpr MenuStep kToDevices{MenuEntry::Devices, true};
    constexpr MenuStep kToSettings{MenuEntry::Settings, true};
    struct Case {
        std::string_view Modes;
        MenuEntry Closed;
        MenuStep Next;
    };
    const Case cases[] = {
        {"", MenuEntry::Users, kQuitOffered},      {"", MenuEntry::Settings, kQuitOffered},
        {"A", MenuEntry::Users, kToDevices},       {"A", MenuEntry::Devices, kToSettings},
        {"A", MenuEntry::Settings, kQuitByItself}, {"A", MenuEntry::Coversheets, kQuitOffered},
        {"U", MenuEntry::Users, kToDevices},       {"U", MenuEntry::Settings, kQuitByItself},
        {"D", MenuEntry::Devices, kToSettings},    {"D", MenuEntry::Settings, kQuitByItself},
        {"D", MenuEntry::Users, kQuitOffered},     {"M", MenuEntry::Settings, kQuitByItself},
        {"M", MenuEntry::Users, kQuitByItself},
    };
    for (const Case& one : cases) {
        StartupOptions options = Changed(one.Modes);
        EXPECT_EQ(NextStep(one.Closed, options), one.Next) << one.Modes << " after " << static_cast<int>(one.Closed);
        EXPECT_EQ(options.SettingsChanged, one.Next != kQuitByItself) << one.Modes;
    }
}

TEST(MenuWalk, LeavingDeletesScratchFilesAndWarnsOfTheRestart) {
    const std::string warning = "warning: Brivane server settings have been altered.\n\nThe Brivane server will need "
                                "to be re-started in order for changes to take effect.";
    const std::pair<std::string_view, bool> cases[] = {{"", true}, {"A", false}, {"U", false}, {"D", true}};
    for (const auto& [modes, warns] : cases) {
        test::MemoryServer server;
        server.Load();
        server.Put("F:\\BRIVANE\\B-DB\\LOCAL.TMP", "x");
        server.Put("F:\\BRIVANE\\B-DB\\PRIMARY.TMP", "x");
        LeaveMenu(Changed(modes));
        EXPECT_EQ(server.Get("F:\\BRIVANE\\B-DB\\LOCAL.TMP"), "(none)");
        EXPECT_EQ(server.Get("F:\\BRIVANE\\B-DB\\PRIMARY.TMP"), "(none)");
        EXPECT_EQ(server.Front.TakeSaid(), warns ? std::vector{warning} : std::vector<std::string>{}) << modes;
        LeaveMenu(StartupOptions{});
        EXPECT_TRUE(server.Front.Said.empty()) << "warned without a change";
    }
}

} // namespace
} // namespace bv
