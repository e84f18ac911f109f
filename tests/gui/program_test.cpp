// BVSETUP.EXE driven from outside, by keyboard, as a person does; then the server's files are read.
#include <gmock/gmock.h>

#include "gui/disk_server.h"
#include "gui/gui.h"
#include "platform/files.h"
#include "resources/ids.h"
#include "voice/format.h"

namespace bv::gui {
namespace {

constexpr const char* kMenuTitle = "Brivane configuration";
constexpr const char* kCatalogueTitle = "Brivane - coversheets and letterheads";
constexpr const char* kDevicesTitle = "Brivane - devices";
constexpr const char* kWarningCaption = "Brivane Setup - Warning!";

std::string Command(const std::string& arguments = "") { return "\"" + BesideTest("BVSETUP.exe") + "\" " + arguments; }

HWND Banner() { return FindWindowA("BrivaneSetup", nullptr); }

class Setup : public testing::Test {
  protected:
    DiskServer Server;
};

// Waits until the dialog is in front with the focus on that control, and so takes keys.
bool FocusMovesTo(HWND dialog, int control) {
    return Until([&] { return FocusOf(dialog) == control && GetForegroundWindow() == dialog; });
}

TEST_F(Setup, LeavesInwardRoutingOutWhereItIsSwitchedOff) {
    Server.Files().Write("B-DB\\SETUP.INI", "[OPTIONS]\r\nEnableRouting: FALSE\r\n");
    const Program setup(Command());
    const HWND menu = setup.Shown().Wait(kMenuTitle);
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(GetDlgItem(menu, ID_MENU_ROUTING), nullptr);
    EXPECT_NE(GetDlgItem(menu, ID_MENU_COVLET), nullptr);
}

TEST_F(Setup, AKeyboardUserAddsDescribesViewsAndDeletesACoversheet) {
    const std::string before = Server.Files().Read(kCoverCatalogue);
    const std::size_t place = before.find("File: ORDER");
    const Program setup(Command());
    const HWND menu = setup.Shown().Wait(kMenuTitle);
    ASSERT_TRUE(FocusMovesTo(menu, ID_MENU_USERS));
    Key('C', VK_MENU);
    ASSERT_TRUE(FocusMovesTo(menu, ID_MENU_COVLET));
    EXPECT_TRUE(IsWindowVisible(Banner()));
    EXPECT_EQ(GetWindow(menu, GW_OWNER), Banner());
    EXPECT_NE(GetDlgItem(menu, ID_MENU_ROUTING), nullptr);
    Key(VK_RETURN);
    const HWND catalogue = setup.Shown().Wait(kCatalogueTitle);
    ASSERT_TRUE(FocusMovesTo(catalogue, ID_COVLET_LIST));

    Key('A', VK_MENU);
    const HWND box = setup.Shown().Wait("Add new coversheet");
    ASSERT_TRUE(FocusMovesTo(box, ID_ITEM_FILE));
    Type("draft");
    Key('D', VK_MENU);
    ASSERT_TRUE(FocusMovesTo(box, ID_ITEM_NEW_DESCRIPTION));
    Type("Rough");
    Key(VK_RETURN);
    ASSERT_TRUE(Until([&] { return Entries(catalogue, ID_COVLET_LIST)[0] == "DRAFT\tRough"; }));
    EXPECT_EQ(Selection(catalogue, ID_COVLET_LIST), 0);
    EXPECT_EQ(Server.Files().Read(kCoverCatalogue), std::string(before).insert(place, "File: DRAFT    \"Rough\"\r\n"));

    Key('R', VK_MENU);
    const HWND details = setup.Shown().Wait("Brivane coversheet details");
    ASSERT_TRUE(FocusMovesTo(details, ID_ITEM_DESCRIPTION));
    Type("Smooth"); // the old description is selected and so replaced
    Key(VK_RETURN);
    ASSERT_TRUE(Until([&] { return Entries(catalogue, ID_COVLET_LIST)[0] == "DRAFT\tSmooth"; }));
    EXPECT_EQ(Server.Files().Read(kCoverCatalogue), std::string(before).insert(place, "File: DRAFT \"Smooth\"\r\n"));

    Key('I', VK_MENU);
    ASSERT_TRUE(FocusMovesTo(catalogue, ID_COVLET_LIST));
    Key(VK_DELETE);
    EXPECT_EQ(setup.Shown().WaitBox("Delete Brivane"), "Deleting coversheet DRAFT - Smooth\n\nAre you sure?");
    Key('Y');
    ASSERT_TRUE(Until([&] { return Entries(catalogue, ID_COVLET_LIST).size() == 5; }));
    EXPECT_EQ(Server.Files().Read(kCoverCatalogue), before);
    EXPECT_FALSE(Server.Files().Has("B-COVER\\MSGDIR.TMP"));

    ASSERT_TRUE(FocusMovesTo(catalogue, ID_COVLET_LIST));
    Key(VK_ESCAPE);
    ASSERT_TRUE(FocusMovesTo(menu, ID_MENU_QUIT));
    Key(VK_RETURN);
    EXPECT_EQ(setup.WaitForEnd(), 0) << "and without a warning, for no setting was changed";
}

TEST_F(Setup, TabGoesThroughWhatCanBeUsed) {
    const Program setup(Command("/5"));
    const HWND catalogue = setup.Shown().Wait(kCatalogueTitle);
    ASSERT_TRUE(FocusMovesTo(catalogue, ID_COVLET_LIST));
    for (const int next : {ID_COVLET_ADD, ID_COVLET_RENAME, ID_COVLET_DELETE, ID_COVLET_EDIT, ID_HELP_BUTTON, IDOK,
                           ID_COVLET_COVERSHEETS, ID_COVLET_LIST}) {
        Key(VK_TAB);
        EXPECT_TRUE(FocusMovesTo(catalogue, next)) << next;
    }
}

TEST_F(Setup, WaitsForTheEditorAndNotForTheViewer) {
    Server.Hold("i386\\covedit");
    Server.Hold("BRIVANE");
    const Program setup(Command("/5"));
    const HWND catalogue = setup.Shown().Wait(kCatalogueTitle);
    Select(catalogue, ID_COVLET_LIST, 1);
    Click(catalogue, ID_COVLET_EDIT);
    EXPECT_EQ(Server.Calls("i386\\covedit"), "PRICES\n");
    EXPECT_EQ(Server.Files().Read("i386\\covedit.zone"), "PST8PDT") << "the zone of the program and what it starts";
    EXPECT_TRUE(Until([&] { return !IsWindowEnabled(catalogue); }));
    Server.Files().Write(kCoverCatalogue, "[DIRECTORY]\r\nFile: NEW \"from the editor\"\r\n");
    Server.Release("i386\\covedit");
    EXPECT_TRUE(Until([&] { return IsWindowEnabled(catalogue) && Entries(catalogue, ID_COVLET_LIST).size() == 1; }));
    EXPECT_TRUE(Until([&] { return GetForegroundWindow() == catalogue; }));

    Click(catalogue, ID_COVLET_LETTERHEADS);
    ASSERT_TRUE(Until([&] { return Entries(catalogue, ID_COVLET_LIST).size() == 2; }));
    Select(catalogue, ID_COVLET_LIST, 0);
    Click(catalogue, ID_COVLET_RENAME);
    const HWND details = setup.Shown().Wait("Brivane letterhead details");
    Click(details, ID_ITEM_VIEW);
    EXPECT_EQ(Server.Calls("BRIVANE"), Server.Files().Path("B-LETTER\\LONDON.G3F") + "\n");
    EXPECT_TRUE(IsWindowEnabled(details));
    Server.Release("BRIVANE");
}

// Closes the window of that title, as its close box does; in the menu goes to where it stands.
bool CloseNext(const Program& setup, std::string_view title) {
    if (title == kWarningCaption) return setup.Shown().AnswerBox(kWarningCaption, IDOK);
    const HWND window = setup.Shown().Wait(std::string(title));
    if (window == nullptr) return false;
    if (title == kMenuTitle) {
        Click(window, IDOK);
        return true;
    }
    PostMessageW(window, WM_CLOSE, 0, 0);
    return Until([&] { return !IsWindow(window); });
}

constexpr const char* kUsersTitle = "Brivane - users and user groups";
constexpr const char* kSettingsTitle = "Brivane - server settings";

TEST_F(Setup, StartFunctionsAndInstallerModesGoThroughTheirDialogs) {
    const std::pair<const char*, std::vector<const char*>> cases[] = {
        {"/2", {kDevicesTitle}},
        {"/3", {kSettingsTitle}},
        {"/A", {kUsersTitle, kDevicesTitle, kSettingsTitle}},
        {"/D", {kDevicesTitle, kSettingsTitle}},
        {"/M", {kSettingsTitle}},
        {"/U", {kMenuTitle, kUsersTitle, kDevicesTitle, kSettingsTitle}},
    };
    for (const auto& [arguments, titles] : cases) {
        SCOPED_TRACE(arguments);
        const Program setup{Command(arguments)};
        for (const char* title : titles) EXPECT_TRUE(CloseNext(setup, title)) << title;
        EXPECT_EQ(setup.WaitForEnd(), 0);
    }
}

TEST_F(Setup, AChangeOfTheSettingsIsRememberedOnQuitting) {
    const Program setup(Command());
    const HWND menu = setup.Shown().Wait(kMenuTitle);
    Click(menu, ID_MENU_SETTINGS);
    Click(menu, IDOK);
    const HWND settings = setup.Shown().Wait(kSettingsTitle);
    SetTextOf(FrontPage(settings), ID_GENERAL_LOG_DAYS, "14");
    Click(settings, IDOK);
    ASSERT_TRUE(Until([&] { return !IsWindow(settings) && IsWindowEnabled(menu); }));
    EXPECT_NE(Server.Files().Read("B-DB\\SETUP.INI").find("LogKeepDays: 14"), std::string::npos);
    EXPECT_TRUE(Until([&] { return IsChecked(menu, ID_MENU_QUIT); }));
    Click(menu, IDOK);
    EXPECT_THAT(setup.Shown().WaitBox(kWarningCaption), testing::HasSubstr("will need to be re-started"));
    EXPECT_TRUE(setup.Shown().AnswerBox(kWarningCaption, IDOK));
    EXPECT_EQ(setup.WaitForEnd(), 0);
}

TEST_F(Setup, AWrongCommandLineEndsTheProgram) {
    const Program setup(Command("/X"));
    EXPECT_EQ(setup.Shown().WaitBox("Brivane Configuration"), "Invalid command line switch");
    EXPECT_EQ(GetWindow(setup.Shown().Box("Brivane Configuration"), GW_OWNER), nullptr);
    EXPECT_EQ(Banner(), nullptr);
    EXPECT_TRUE(setup.Shown().AnswerBox("Brivane Configuration", IDOK));
    EXPECT_EQ(setup.WaitForEnd(), 1);
}

TEST_F(Setup, OfTwoStartsAtTheSameMomentOneRuns) {
    const platform::OpenResult held = platform::Files().Open(
        Server.Files().Path("BRIVANE.INI"), {platform::Access::ReadWrite, platform::Deny::ReadingAndWriting});
    const Program one(Command());
    const Program other(Command());
    EXPECT_TRUE(Until([&] { return one.IsRunning() != other.IsRunning(); })) << "while the first waits for a file";
    EXPECT_EQ((one.IsRunning() ? other : one).WaitForEnd(), 0);
    held.Opened->Close();
    EXPECT_NE((one.IsRunning() ? one : other).Shown().Wait(kMenuTitle), nullptr);
}

TEST_F(Setup, ASecondCopyBringsTheFirstForwardAndEnds) {
    const Program first(Command("/5"));
    const HWND catalogue = first.Shown().Wait(kCatalogueTitle);
    Click(catalogue, ID_COVLET_ADD);
    const HWND box = first.Shown().Wait("Add new coversheet");
    ASSERT_NE(box, nullptr);
    const HWND other =
        CreateWindowA("STATIC", "other", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
    SetForegroundWindow(other);
    ASSERT_EQ(GetForegroundWindow(), other);

    const Program second(Command("/X"));
    EXPECT_EQ(second.WaitForEnd(), 0) << "before it has looked at its command line";
    EXPECT_TRUE(Until([&] { return GetForegroundWindow() == box; }));
    EXPECT_TRUE(first.IsRunning());
    DestroyWindow(other);
}

TEST_F(Setup, TheBannerJoinsTheInstallersWindow) {
    WNDCLASSA installerClass{};
    installerClass.lpfnWndProc = DefWindowProcA;
    installerClass.lpszClassName = "InstallShield_Win";
    RegisterClassA(&installerClass);
    const HWND installer = CreateWindowA("InstallShield_Win", "Setup", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 900, 600,
                                         nullptr, nullptr, nullptr, nullptr);
    const Program setup(Command("/U"));
    EXPECT_TRUE(Until([&] {
        for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) DispatchMessageA(&message);
        return FindWindowExA(installer, nullptr, "BrivaneSetup", nullptr) != nullptr;
    }));
    DestroyWindow(installer);
}

// Has .html documents opened by the stand-in viewer; the system's own registry is left alone outside Wine.
bool OpenPagesWith(const std::string& program) {
    if (GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") == nullptr) return false;
    const auto set = [](const char* key, const std::string& value) {
        return RegSetKeyValueA(HKEY_LOCAL_MACHINE, key, nullptr, REG_SZ, value.c_str(),
                               static_cast<DWORD>(value.size() + 1)) == ERROR_SUCCESS;
    };
    return set("Software\\Classes\\.html", "bvtest") &&
           set("Software\\Classes\\bvtest\\shell\\open\\command", "\"" + program + "\" \"%1\"");
}

TEST_F(Setup, HelpOpensThePageOfTheDialogInFront) {
    if (!OpenPagesWith(Server.Files().Path("BRIVANE.exe"))) GTEST_SKIP() << "would change this system's settings";
    const Program setup(Command());
    std::string opened;
    const auto opens = [&](HWND dialog, int focus, int page) {
        EXPECT_TRUE(FocusMovesTo(dialog, focus)) << page;
        Key(VK_F1);
        opened += BesideTest(FormatText("help\\%d.html\n", page));
        EXPECT_TRUE(Until([&] { return Server.Files().Read("BRIVANE.calls") == opened; })) << page;
        EXPECT_TRUE(FocusMovesTo(dialog, focus)) << page;
    };
    const HWND menu = setup.Shown().Wait(kMenuTitle);
    opens(menu, ID_MENU_USERS, HELP_MENU);
    Key('C', VK_MENU);
    ASSERT_TRUE(FocusMovesTo(menu, ID_MENU_COVLET));
    Key(VK_RETURN);
    const HWND catalogue = setup.Shown().Wait(kCatalogueTitle);
    ASSERT_TRUE(FocusMovesTo(catalogue, ID_COVLET_LIST));
    Key('I', VK_MENU);
    opens(catalogue, ID_COVLET_LIST, HELP_COVLET);

    Click(catalogue, ID_HELP_BUTTON);
    opened += BesideTest(FormatText("help\\%d.html\n", HELP_COVLET));
    EXPECT_TRUE(Until([&] { return Server.Files().Read("BRIVANE.calls") == opened; })) << "the Help button";
}

} // namespace
} // namespace bv::gui
