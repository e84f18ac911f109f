// random_input SEED SESSIONS STEPS [AREA]: works in the dialogs at random, with the keyboard and the mouse, on a copy
// of the sample server. Each session has the next seed, and opens the dialog of one area again until the steps are
// done. Prints what it does; ends with 1 when the program does not answer for twenty seconds, when keys would go
// nowhere, or when a dialog cannot be left. Checked indexes and the program's own checks end it at once. To be run by
// hand, for a long time (tools/winrun build/windows/random_input.exe 1 100 300): which key meets which state is never
// the same twice.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "covlet/catalogue_dlg.h"
#include "devices/device_list_dlg.h"
#include "dialling/dialling_dlg.h"
#include "dialling/dialling_page_dlg.h"
#include "dialogs/colours_dlg.h"
#include "gui/disk_server.h"
#include "gui/gui.h"
#include "lcr/destinations_dlg.h"
#include "lcr/edit_lock.h"
#include "lcr/lcr_page_dlg.h"
#include "lcr/links_dlg.h"
#include "lcr/rule_list_dlg.h"
#include "mailgw/gateway_page_dlg.h"
#include "mailgw/mail_boxes_dlg.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_users_dlg.h"
#include "options/options_dlg.h"
#include "resources/ids.h"
#include "routing/inward_dlg.h"
#include "shell/front_dlg.h"
#include "shell/main_window_dlg.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "support/fakes.h"
#include "users/user_list_dlg.h"
#include "whereused/where_used_dlg.h"

namespace bv::gui {
namespace {

constexpr DialogServices kServices{ShowUses, DeleteByDialog, ConfigureMailUsers, PickMailName, CountMailUsers};
constexpr AreaPageMaker kPages[] = {[](FieldRecord& options) { return MakeLcrPage(options, {}); }, MakeDiallingPage,
                                    MakeGatewayPage};

void (*const kAreas[])(HWND owner) = {
    [](HWND owner) { ConfigureUsers(owner, kServices); },
    [](HWND owner) { ConfigureDevices(owner, kServices); },
    [](HWND owner) { ConfigureOptions(owner, kPages); },
    [](HWND owner) { ConfigureRouting(owner); },
    [](HWND owner) { ConfigureCoversheets(owner); },
    [](HWND owner) { EditRules(owner); },
    [](HWND owner) { EditLinks(owner); },
    [](HWND owner) { RunLcrEditor([&] { return EditDestinations(owner); }); },
    [](HWND owner) { ConfigureDialling(owner); },
    [](HWND owner) { ConfigureMailUsers(owner, ""); },
};

constexpr WORD kKeys[] = {VK_TAB,    VK_TAB,   VK_TAB,    VK_DOWN,  VK_DOWN, VK_UP,   VK_LEFT, VK_RIGHT,
                          VK_SPACE,  VK_SPACE, VK_RETURN, VK_F2,    VK_F3,   VK_F4,   VK_F5,   VK_DELETE,
                          VK_INSERT, VK_HOME,  VK_END,    VK_PRIOR, VK_NEXT, VK_BACK, VK_APPS, VK_ESCAPE};
constexpr WORD kControlKeys[] = {'A',   'C',     'V',      'X',     'Z',    'F',       'S',      VK_TAB,
                                 VK_UP, VK_DOWN, VK_SPACE, VK_HOME, VK_END, VK_INSERT, VK_RETURN};
constexpr WORD kMenuKeys[] = {VK_ESCAPE, VK_DOWN, VK_DOWN, VK_RETURN};
const char* const kTexts[] = {
    "ANNA",
    "@SALES",
    "MUNICH",
    "0",
    "1",
    "-1",
    "999999999",
    "+44 20 7946 0018",
    "0181 123 4567:22",
    "12:00-13:00",
    "25:61",
    "01/02/03",
    "YES",
    "*",
    "?",
    "@",
    "A B",
    "x;y,z",
    "F:\\X",
    "[USER]",
    "Name: X",
    "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW"};

constexpr int kBoxText = 0xFFFF; // the control that holds a message box's text

// What a person sees and does; on a thread of its own.
class Person {
  public:
    Person(std::mt19937& chance, int& steps, const std::atomic<bool>& isClosed)
        : chance_(chance), steps_(steps), isClosed_(isClosed) {}

    void Work() {
        while (!isClosed_ && steps_ > 0) {
            Act();
            CheckAnswer();
        }
        Leave();
    }

  private:
    int Below(std::size_t count) { return static_cast<int>(chance_() % count); }
    template <class Values>
    auto OneOf(const Values& values) {
        return values[static_cast<std::size_t>(Below(std::size(values)))];
    }

    [[nodiscard]] bool HasMenu() const {
        return std::ranges::any_of(windows_.All(), [](HWND window) { return ClassOf(window) == "#32768"; });
    }

    // The dialog that has the keyboard, of ours or a message box; none meanwhile.
    [[nodiscard]] HWND Front() const {
        const HWND front = GetForegroundWindow();
        const auto all = windows_.All();
        const bool isOurs = std::ranges::find(all, front) != all.end() && ClassOf(front) == "#32770";
        return isOurs && IsWindowEnabled(front) ? front : nullptr;
    }

    // A dialog of the system's, for files and directories, is left alone: it could delete any file.
    static bool IsForeign(HWND dialog) {
        const auto instance = reinterpret_cast<HMODULE>(GetWindowLongPtrW(dialog, GWLP_HINSTANCE));
        return instance != GetModuleHandleW(nullptr) && GetDlgItem(dialog, kBoxText) == nullptr;
    }

    void Act() {
        HWND front = nullptr;
        const bool isThere = Until([&] {
            front = Front();
            return front != nullptr || isClosed_ || HasMenu();
        });
        if (!isThere) Fail("no dialog has the keyboard");
        if (isClosed_) return;
        --steps_;
        if (HasMenu()) return Press(OneOf(kMenuKeys), 0);
        ShowFront(front);
        if (IsForeign(front)) return Click(front, IDCANCEL);
        CheckFocus();
        const int what = Below(100);
        if (what < 37) return Press(OneOf(kKeys), what == 0 ? VK_SHIFT : 0);
        if (what < 55) return Press(static_cast<WORD>('A' + Below(26)), VK_MENU);
        if (what < 63) return Press(OneOf(kControlKeys), VK_CONTROL);
        if (what < 75) return Enter(OneOf(kTexts));
        ClickOneOf(front, what < 90);
    }

    void ShowFront(HWND front) {
        if (std::exchange(last_, front) == front) return;
        std::printf("-- %s%s%s\n", Text(front).c_str(), GetDlgItem(front, kBoxText) != nullptr ? ": " : "",
                    GetDlgItem(front, kBoxText) != nullptr ? Text(front, kBoxText).c_str() : "");
    }

    static void Press(WORD key, WORD modifier) {
        std::printf("key %02x with %02x\n", key, modifier);
        Key(key, modifier);
    }

    static void Enter(const std::string& text) {
        std::printf("text %s\n", text.c_str());
        Type(text);
    }

    static void Collect(HWND parent, std::vector<HWND>& found) {
        for (const HWND child : Children(parent)) {
            if (!IsWindowVisible(child) || !IsWindowEnabled(child)) continue;
            found.push_back(child);
            Collect(child, found);
        }
    }

    // With the mouse: a button, or somewhere into a list. Help would open a browser.
    void ClickOneOf(HWND dialog, bool isButton) {
        std::vector<HWND> controls;
        Collect(dialog, controls);
        std::erase_if(controls, [&](HWND control) {
            const std::string name = ClassOf(control);
            const bool fits = isButton ? name == "Button" : name == "ListBox" || name == WC_LISTVIEWA;
            return !fits || GetDlgCtrlID(control) == ID_HELP_BUTTON;
        });
        if (controls.empty()) return;
        const HWND control = OneOf(controls);
        RECT area{};
        GetClientRect(control, &area);
        POINT at{std::min<LONG>(area.right / 2, 20),
                 isButton ? area.bottom / 2 : Below(static_cast<std::size_t>(std::max<LONG>(area.bottom, 1)))};
        std::printf("click on %d at %ld, %ld\n", GetDlgCtrlID(control), at.x, at.y);
        ClientToScreen(control, &at);
        SetCursorPos(at.x, at.y);
        INPUT inputs[2]{};
        inputs[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
        inputs[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
        SendInput(2, inputs, sizeof(INPUT));
    }

    // Keys go to a control that is there to be seen and takes them.
    void CheckFocus() {
        const bool isGood = Until([&] {
            const HWND front = Front();
            if (front == nullptr || HasMenu() || isClosed_) return true;
            GUITHREADINFO info{};
            info.cbSize = sizeof info;
            GetGUIThreadInfo(GetWindowThreadProcessId(front, nullptr), &info);
            return info.hwndFocus != nullptr && IsWindowVisible(info.hwndFocus) && IsWindowEnabled(info.hwndFocus);
        });
        if (!isGood) Fail("the focus is nowhere");
    }

    void CheckAnswer() {
        constexpr UINT kPatience = 20000; // milliseconds
        const HWND front = Front();
        DWORD_PTR result = 0;
        if (front != nullptr && SendMessageTimeoutW(front, WM_NULL, 0, 0, SMTO_NORMAL, kPatience, &result) == 0 &&
            IsWindow(front))
            Fail("no answer");
    }

    void Leave() {
        const auto leave = [&] {
            if (HasMenu()) Key(VK_ESCAPE);
            const HWND front = Front();
            if (front == nullptr) return isClosed_.load();
            const bool losesChanges = Text(front, kBoxText).find("Lose changes") != std::string::npos;
            const int button = GetDlgItem(front, IDNO) == nullptr ? IDCANCEL : losesChanges ? IDYES : IDNO;
            PostMessageW(front, WM_COMMAND, static_cast<WPARAM>(button), 0);
            return isClosed_.load();
        };
        if (!Until(leave)) Fail("the dialogs cannot be left");
    }

    [[noreturn]] void Fail(const char* why) const {
        std::printf("FAILED: %s\n", why);
        for (const HWND window : windows_.All()) {
            std::printf("  %s%s: %s\n", IsWindowEnabled(window) != FALSE ? "" : "(disabled) ", Text(window).c_str(),
                        Text(window, kBoxText).c_str());
        }
        std::fflush(stdout);
        TerminateProcess(GetCurrentProcess(), 1);
        std::abort();
    }

    std::mt19937& chance_;
    int& steps_;
    const std::atomic<bool>& isClosed_;
    const Windows windows_;
    HWND last_ = nullptr;
};

bool RunSession(unsigned seed, int steps, int area) {
    std::mt19937 chance(seed);
    const DiskServer server;
    MainWindow window;
    WindowsFront front(window);
    const UseFront speaking(front);
    Startup() = {};
    if (!window.Open(SW_SHOWNORMAL) || LoadServerPaths() != kDone) return false;
    test::FakePrinters printers;
    printers.Lists[""].Printers = {{"Office laser", "PCL 6", "LPT1:", "second floor"}};
    const platform::Substitute<platform::Printers> usePrinters(printers);
    test::FakeNetworkUsers network;
    network.Accounts = {{"jsmith", "John Smith", false, true}, {"anna", "Anna", false, true}};
    const platform::Substitute<platform::NetworkUsers> useNetwork(network);
    const std::size_t which = (area >= 0 ? static_cast<std::size_t>(area) : chance()) % std::size(kAreas);
    std::printf("==== seed %u, area %u\n", seed, static_cast<unsigned>(which));
    while (steps > 0) {
        std::atomic<bool> isClosed = false;
        std::thread driver([&] {
            UseDesktop();
            Person(chance, steps, isClosed).Work();
        });
        kAreas[which](window.Handle());
        isClosed = true;
        driver.join();
        for (MSG message; PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE);) {
        }
    }
    return true;
}

} // namespace
} // namespace bv::gui

int main(int count, char** arguments) {
    if (count != 4 && count != 5) return 2;
    std::setvbuf(stdout, nullptr, _IONBF, 0); // nothing of it is lost in a crash
    bv::gui::MakeDesktop();
    bv::StartCommonControls();
    bv::MainWindow::RegisterWindowClass();
    const auto seed = static_cast<unsigned>(std::atoi(arguments[1]));
    const auto sessions = static_cast<unsigned>(std::atoi(arguments[2]));
    for (unsigned i = 0; i < sessions; ++i)
        if (!bv::gui::RunSession(seed + i, std::atoi(arguments[3]), count == 5 ? std::atoi(arguments[4]) : -1))
            return 1;
    return 0;
}
