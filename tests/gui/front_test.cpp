// How the Windows program speaks, waits and looks: boxes, the banner, progress, colours, help and resources.
#include "shell/front_dlg.h"

#include <gmock/gmock.h>

#include <commctrl.h>

#include <fstream>

#include "dialogs/colours_dlg.h"
#include "dialogs/dialog_dlg.h"
#include "dialogs/help_dlg.h"
#include "dialogs/layout_dlg.h"
#include "dialogs/progress_dlg.h"
#include "gui/disk_server.h"
#include "gui/gui.h"
#include "resources/ids.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "support/fakes.h"
#include "support/recording_front.h"
#include "voice/messages.h"
#include "voice/strings.h"

namespace bv::gui {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr int kNameField = 101;

// A banner, the front over it, and in front a plain window with a field, which does not look after its focus itself.
class SpeakingFront : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(Banner.Open(SW_SHOWNORMAL));
        WNDCLASSA plain{};
        plain.lpfnWndProc = DefWindowProcA;
        plain.lpszClassName = "PlainWindow";
        RegisterClassA(&plain);
        Window = CreateWindowA("PlainWindow", "in front", WS_POPUP | WS_CAPTION | WS_VISIBLE, 100, 100, 300, 200,
                               Banner.Handle(), nullptr, GetModuleHandleA(nullptr), nullptr);
        Field = CreateWindowA("EDIT", "", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, 10, 100, 20, Window,
                              MenuId(kNameField), GetModuleHandleA(nullptr), nullptr);
        SetActiveWindow(Window);
        SetFocus(Field);
    }
    void TearDown() override { DestroyWindow(Window); }

    static HMENU MenuId(int id) { return reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)); }

    MainWindow Banner;
    WindowsFront Front{Banner};
    UseFront Speaking{Front};
    HWND Window = nullptr;
    HWND Field = nullptr;
};

TEST_F(SpeakingFront, BoxesAreModalOverTheWindowInFrontAndGiveTheFocusBack) {
    RunDriven([] { ShowError(kUnableToOpenFile, "F:\\X.INI"); },
              [&](const Windows& windows) {
                  EXPECT_EQ(windows.WaitBox("Brivane Setup - Error!"), "Unable to open file F:\\X.INI");
                  const HWND box = windows.Box("Brivane Setup - Error!");
                  EXPECT_EQ(GetWindow(box, GW_OWNER), Window);
                  EXPECT_FALSE(IsWindowEnabled(Window));
                  windows.AnswerBox("Brivane Setup - Error!", IDOK);
              });
    EXPECT_TRUE(IsWindowEnabled(Window));
    EXPECT_EQ(GetFocus(), Field);

    RunDriven([] { ShowWarning(kRestartNeeded); },
              [&](const Windows& windows) {
                  EXPECT_THAT(windows.WaitBox("Brivane Setup - Warning!"), HasSubstr("will need to be re-started"));
                  EnableWindow(Field, FALSE);
              });
    EXPECT_NE(GetFocus(), Field) << "a disabled control cannot take the focus back";
}

TEST_F(SpeakingFront, QuestionsAreAnsweredNoByEnter) {
    struct Case {
        std::function<bool()> Ask;
        const char* Caption;
        const char* Text;
        int No = IDNO;
        int Yes = IDYES;
    };
    const Case cases[] = {
        {[] { return AskIgnoreError("Cannot read %s", "A"); }, "Brivane Setup - Error!",
         "Cannot read A - Ignore error and continue?"},
        {[] { return AskContinue("No %s", "B"); }, "Brivane Configuration", "No B - Would you like to continue?"},
        {[] { return AskFilled(kCaptionOfWarning, BoxIcon::Warning, "Keep it?", BoxButtons::OkCancel); },
         "Brivane Setup - Warning!", "Keep it?", IDCANCEL, IDOK},
    };
    for (const Case& one : cases) {
        bool answer = true;
        RunDriven([&] { answer = one.Ask(); },
                  [&](const Windows& windows) {
                      EXPECT_EQ(windows.WaitBox(one.Caption), one.Text);
                      const HWND box = windows.Box(one.Caption);
                      EXPECT_TRUE(Until([&] { return FocusOf(box) == one.No; }));
                      Key(VK_RETURN);
                      EXPECT_TRUE(Until([&] { return !IsWindow(box); }));
                  });
        EXPECT_FALSE(answer) << one.Text;
        RunDriven([&] { answer = one.Ask(); },
                  [&](const Windows& windows) { EXPECT_TRUE(windows.AnswerBox(one.Caption, one.Yes)); });
        EXPECT_TRUE(answer) << one.Text;
    }
}

TEST_F(SpeakingFront, AMissingProgramIsReportedAndInputComesBack) {
    bool started = true;
    RunDriven([&] { started = RunProgram("C:\\missing.exe A B", WaitForProgram::Yes); },
              [&](const Windows& windows) {
                  EXPECT_THAT(windows.WaitBox("Brivane Setup - Error!"),
                              testing::MatchesRegex("Windows error .* running program 'C:.missing.exe A B'"));
                  windows.AnswerBox("Brivane Setup - Error!", IDOK);
              });
    EXPECT_FALSE(started);
    EXPECT_TRUE(IsWindowEnabled(Window));
    EXPECT_EQ(GetFocus(), Field);
}

TEST_F(SpeakingFront, AQuitMessageDuringTheWaitEndsTheProgramWithItsCode) {
    class Endless final : public platform::Process {
      public:
        bool IsRunning() override { return true; }
    } program;
    PostQuitMessage(7);
    EXPECT_TRUE(Front.WaitForEnd(program));
    EndProgram(0); // as the menu does when it returns
    EXPECT_EQ(RunMessageLoop(), 7);
}

TEST_F(SpeakingFront, BannerCoversTheBottomOfTheWorkArea) {
    RECT area{};
    RECT place{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
    GetWindowRect(Banner.Handle(), &place);
    EXPECT_EQ(place.left, area.left);
    EXPECT_EQ(place.right, area.right);
    EXPECT_EQ(place.bottom, area.bottom);
    EXPECT_EQ(place.bottom - place.top, 2 * GetSystemMetrics(SM_CYCAPTION));
    EXPECT_EQ(Text(Banner.Handle()), "Brivane Configuration");
}

TEST_F(SpeakingFront, TheBannerIsTheBottomOfTheInstallersWindowWhateverItsSize) {
    WNDCLASSA plain{};
    plain.lpfnWndProc = DefWindowProcA;
    plain.lpszClassName = "InstallShield_Win";
    RegisterClassA(&plain);
    const HWND installer = CreateWindowA("InstallShield_Win", "Setup", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 30, 40, 500,
                                         400, nullptr, nullptr, nullptr, nullptr);
    Banner.JoinInstaller();
    const auto isBottom = [&] {
        RECT client{};
        GetClientRect(installer, &client);
        const RECT place = PlaceInParent(Banner.Handle());
        return place.left == 0 && place.right == client.right && place.bottom == client.bottom &&
               place.bottom - place.top == 2 * GetSystemMetrics(SM_CYCAPTION);
    };
    EXPECT_EQ(GetAncestor(Banner.Handle(), GA_PARENT), installer);
    EXPECT_EQ(GetWindowLongA(Banner.Handle(), GWL_STYLE) & (WS_POPUP | WS_CHILD), WS_CHILD);
    EXPECT_TRUE(isBottom());
    SetWindowPos(installer, nullptr, 0, 0, 700, 300, SWP_NOMOVE | SWP_NOZORDER);
    for (MSG message; !isBottom() && GetMessageA(&message, nullptr, 0, 0) > 0;) DispatchMessageA(&message);
    SetParent(Banner.Handle(), nullptr);
    DestroyWindow(installer);
}

TEST_F(SpeakingFront, WaitsForFilesShowTheirCursorUntilTheLastIsOver) {
    const HCURSOR arrow = LoadCursor(nullptr, IDC_ARROW);
    SetCursor(arrow);
    {
        const WaitCursor around;
        Front.ShowWait(WaitState::Begins, "");
        Front.ShowWait(WaitState::Ends, "");
        EXPECT_EQ(GetCursor(), LoadCursor(nullptr, IDC_WAIT));
    }
    EXPECT_EQ(GetCursor(), arrow);
}

// The system's button face while it lives.
class ButtonFace {
  public:
    explicit ButtonFace(COLORREF colour) : before_(GetSysColor(COLOR_BTNFACE)) { Set(colour); }
    ~ButtonFace() { Set(before_); }
    ButtonFace(const ButtonFace&) = delete;
    ButtonFace& operator=(const ButtonFace&) = delete;

  private:
    static void Set(COLORREF colour) {
        const INT element = COLOR_BTNFACE;
        SetSysColors(1, &element, &colour);
        RecreateBackgroundBrush();
    }
    COLORREF before_;
};

TEST_F(SpeakingFront, OnlyLightGreyDialogsAreColouredAndNoComboBoxes) {
    const HWND combo = CreateWindowA("COMBOBOX", "", WS_CHILD | CBS_DROPDOWN, 10, 70, 100, 100, Window, nullptr,
                                     GetModuleHandleA(nullptr), nullptr);
    const HDC drawing = GetDC(Window);
    const auto answer = [&](UINT message, HWND control) {
        return ColourDialog({Window, message, reinterpret_cast<WPARAM>(drawing), reinterpret_cast<LPARAM>(control)});
    };
    {
        const ButtonFace grey(RGB(192, 192, 192));
        LOGBRUSH brush{};
        GetObjectA(reinterpret_cast<HBRUSH>(answer(WM_CTLCOLORDLG, Window)), sizeof brush, &brush);
        EXPECT_EQ(brush.lbColor, RGB(192, 192, 192));
        EXPECT_EQ(GetBkColor(drawing), RGB(192, 192, 192));
        EXPECT_NE(answer(WM_CTLCOLOREDIT, Field), 0);
        EXPECT_EQ(answer(WM_CTLCOLOREDIT, combo), 0);
        EXPECT_EQ(answer(WM_COMMAND, Field), 0);
    }
    const ButtonFace other(RGB(192, 192, 193));
    EXPECT_EQ(answer(WM_CTLCOLORDLG, Window), 0);
    ReleaseDC(Window, drawing);
}

TEST_F(SpeakingFront, ProgressCountsAndCancels) {
    std::vector<bool> wentOn;
    std::string shown;
    {
        ProgressBox progress(Window, 20);
        EXPECT_FALSE(IsWindowEnabled(Window));
        wentOn.push_back(progress.Advance(7, "Adding 7 of 20 users", "ANNA & BEN"));
        const HWND box = Windows().Wait("Brivane Setup", ID_PROGRESS_BAR);
        shown = Text(box, ID_PROGRESS_COUNT) + ", " + Text(box, ID_PROGRESS_NAME);
        EXPECT_EQ(SendTo(box, ID_PROGRESS_BAR, PBM_GETPOS), 7);
        EXPECT_EQ(SendTo(box, ID_PROGRESS_BAR, PBM_GETRANGE, FALSE), 20);
        SetForegroundWindow(box);
        PostMessageA(GetDlgItem(box, IDCANCEL), WM_KEYDOWN, VK_RETURN, 0);
        EXPECT_TRUE(progress.Advance(7, "", "")) << "the key was typed at what was in front before";
        Key(VK_ESCAPE);
        EXPECT_TRUE(Until([&] { return !progress.Advance(8, "", ""); }));
    }
    EXPECT_THAT(wentOn, ElementsAre(true));
    EXPECT_EQ(shown, "Adding 7 of 20 users, ANNA & BEN");
    EXPECT_TRUE(IsWindowEnabled(Window));
}

std::vector<std::string> controlCalls;

BOOL WINAPI Register(HINSTANCE) { return controlCalls.emplace_back("register"), TRUE; }
BOOL WINAPI Unregister(HINSTANCE) { return controlCalls.emplace_back("unregister"), TRUE; }
BOOL WINAPI ChangeColour() { return controlCalls.emplace_back("colours"), TRUE; }

// CTL3D32.DLL without its Ctl3dAutoSubclass.
class FakeControls final : public platform::Libraries {
  public:
    bool IsThere = true;

    std::unique_ptr<platform::Library> Load(const std::string&) override { return nullptr; }
    std::unique_ptr<platform::Library> LoadOfSystem(const std::string& name) override {
        controlCalls.push_back("system: " + name);
        return IsThere ? std::make_unique<Loaded>() : nullptr;
    }

  private:
    class Loaded final : public platform::Library {
      public:
        ~Loaded() override { controlCalls.emplace_back("unload"); }
        void (*Entry(const std::string& name))() override {
            if (name == "Ctl3dRegister") return reinterpret_cast<void (*)()>(Register);
            if (name == "Ctl3dUnregister") return reinterpret_cast<void (*)()>(Unregister);
            return name == "Ctl3dColorChange" ? reinterpret_cast<void (*)()>(ChangeColour) : nullptr;
        }
    };
};

TEST_F(SpeakingFront, ThreeDControlsAreOptionalAndHearOfColours) {
    FakeControls library;
    const platform::Substitute<platform::Libraries> standIn(library);
    controlCalls.clear();
    {
        ThreeDControls controls;
        Banner.OnColoursChanged = [&] { controls.ColoursChanged(); };
        Send(Banner.Handle(), WM_SYSCOLORCHANGE);
        SendMessageA(Banner.Handle(), WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>("Colors"));
        SendMessageA(Banner.Handle(), WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>("intl"));
    }
    EXPECT_THAT(controlCalls,
                ElementsAre("system: CTL3D32.DLL", "register", "colours", "colours", "unregister", "unload"));

    library.IsThere = false;
    controlCalls.clear();
    ThreeDControls().ColoursChanged();
    EXPECT_THAT(controlCalls, ElementsAre("system: CTL3D32.DLL"));
    Banner.OnColoursChanged = nullptr;
}

TEST(Help, IsTheHelpFileOrAPageBesideTheProgramOrOnTheServer) {
    const DiskServer server;
    ASSERT_EQ(LoadServerPaths(), kDone);
    const test::TemporaryDirectory& files = server.Files();
    test::FakeEnvironment environment;
    environment.Windows = files.Path("windows");
    environment.Program = files.Path("program");
    const platform::Substitute<platform::Environment> standIn(environment);
    Startup().HelpFile = files.Path("BVSETUP.HLP");

    EXPECT_EQ(FindHelp(100).Kind, HelpKind::None);
    files.Write("SERVER\\help\\100.html", "");
    EXPECT_EQ(FindHelp(100).Path, files.Path("SERVER\\help\\100.html"));
    files.Write("program\\help\\100.html", "");
    EXPECT_EQ(FindHelp(100).Path, files.Path("program\\help\\100.html"));
    files.Write("BVSETUP.HLP", "");
    EXPECT_EQ(FindHelp(100).Kind, HelpKind::Page) << "the system has no viewer for help files";
    files.Write("windows\\WINHLP32.EXE", std::string(11'000, ' '));
    EXPECT_EQ(FindHelp(100).Kind, HelpKind::Page) << "what only says so is no viewer";
    files.Write("windows\\WINHLP32.EXE", std::string(250'000, ' '));
    EXPECT_EQ(FindHelp(100).Kind, HelpKind::HelpFile);
    EXPECT_EQ(FindHelp(100).Path, files.Path("BVSETUP.HLP"));
    Startup() = {};
}

TEST(Help, SaysWhenAPageCannotBeOpened) {
    const DiskServer server;
    test::RecordingFront front;
    ASSERT_EQ(LoadServerPaths(), kDone);
    server.Files().Write("SERVER\\help\\987.html", "");
    ShowHelp(nullptr, 987);
    EXPECT_THAT(front.Said, ElementsAre(HasSubstr("987.html could not be opened (Windows error")));
}

TEST(Help, HasAPageForEachDialogThatTheContentsLeadTo) {
    std::ifstream file(BesideTest("help\\index.html"));
    const std::string contents{std::istreambuf_iterator<char>(file), {}};
    for (const int context : {HELP_MENU,           HELP_COVLET,        HELP_ADD_COVERSHEET,   HELP_COVERSHEET,
                              HELP_ADD_LETTERHEAD, HELP_LETTERHEAD,    HELP_MANY_USERS,       HELP_WHERE_USED,
                              HELP_SELECT_PRINTER, HELP_NETWORK_USERS, HELP_IMPORT,           HELP_USERS,
                              HELP_USER,           HELP_USER_GENERAL,  HELP_USER_PERMISSIONS, HELP_USER_TIMES,
                              HELP_USER_DIAL,      HELP_USER_PRINT,    HELP_USER_MAIL,        HELP_GROUP_GENERAL,
                              HELP_SELECT_USER,    HELP_RULES,         HELP_RULE_FILTER,      HELP_RULE}) {
        EXPECT_EQ(FindHelp(context).Kind, HelpKind::Page) << context;
        EXPECT_THAT(contents, HasSubstr(FormatText("href=\"%d.html\"", context)));
    }
}

TEST(Libraries, OfTheSystemAreNotLookedForBesideTheProgram) {
    EXPECT_TRUE(platform::TheLibraries().Load("recorder.exe"));
    EXPECT_FALSE(platform::TheLibraries().LoadOfSystem("recorder.exe"));
    EXPECT_TRUE(platform::TheLibraries().LoadOfSystem("version.dll"));
}

TEST(Resources, HaveTheIconAtEachSizeThatIsShown) {
    const HRSRC group = FindResourceA(nullptr, "Setup", RT_GROUP_ICON);
    const auto* bytes = static_cast<const BYTE*>(LockResource(LoadResource(nullptr, group)));
    constexpr int kHead = 6;
    constexpr int kEntry = 14;
    std::vector<int> widths; // 256 is written as 0
    for (int i = 0; i < bytes[4]; ++i) widths.push_back(bytes[kHead + kEntry * i]);
    EXPECT_THAT(widths, ElementsAre(16, 20, 24, 32, 40, 48, 64, 0));
}

TEST(Resources, HaveTheEnginesStrings) {
    int strings = 0;
    for (int id = 1; id <= 65535; ++id) {
        char text[1100] = "";
        LoadStringA(nullptr, static_cast<UINT>(id), text, sizeof text);
        ASSERT_EQ(std::string_view(text), FindString(id)) << id;
        if (text[0] != '\0') ++strings;
    }
    EXPECT_GT(strings, 50);
}

} // namespace
} // namespace bv::gui
