// The dialogs of users and user groups inside this process, on a copy of the sample server.
#include <windows.h>

#include <commctrl.h>

#include <optional>
#include <set>

#include "dialogs/layout_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "dialogs/status_dlg.h"
#include "gui/dialog_fixture.h"
#include "resources/ids.h"
#include "support/faulty_files.h"
#include "users/many_users_dlg.h"
#include "users/user_details_dlg.h"
#include "users/user_entry.h"
#include "users/user_list_dlg.h"
#include "whereused/where_used_dlg.h"

namespace bv::gui {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kListTitle = "Brivane - users and user groups";
constexpr const char* kDetails = "Brivane user details - ANNA";
constexpr const char* kList = "B-DB\\USERLIST.INI";

class UserDialogs : public DialogFixture {
  protected:
    UserDialogs() : DialogFixture(kList) {}

    void WithList(const std::function<void(HWND, const Windows&)>& drive) {
        static constexpr DialogServices kServices{ShowUses, DeleteByDialog};
        RunDriven([] { ConfigureUsers(nullptr, kServices); },
                  [&](const Windows& windows) { drive(windows.Wait(kListTitle), windows); });
    }
    void WithAnna(const std::function<void(HWND)>& drive) {
        RunDriven([] { EditUserByDialog(nullptr, RecordKind::User, "ANNA"); },
                  [&](const Windows& windows) { drive(windows.Wait(kDetails)); });
    }

    // The lines of one record.
    [[nodiscard]] std::string Record(const std::string& name) const {
        const std::string file = File();
        const std::size_t start = file.find("Name: " + name + "\r\n");
        return start == file.npos ? "(none)" : file.substr(start, file.find("\r\n\r\n", start) - start);
    }
};

enum PageNumber { kGeneral, kPermissions, kTimes, kDial, kPrint, kMail };

struct Setting {
    PageNumber Page;
    int Control;
    const char* Text; // none: a click
    const char* Line; // of the record afterwards; none: another row's
};

TEST_F(UserDialogs, EachPageWritesItsKeysAndNothingElse) {
    constexpr Setting kSettings[] = {
        {kGeneral, ID_USER_FULLNAME, "Anna Müller", "Fullname: Anna M\xFCller"},
        {kGeneral, ID_USER_GROUP, "@SALES", "Group: @SALES"},
        {kGeneral, ID_USER_USERNAME, "amuller", "Username: amuller"},
        {kGeneral, ID_USER_SAME_NAME, nullptr, "Netware: amuller"},
        {kPermissions, ID_PERMISSIONS_DEFAULT, nullptr, "SubmitAny: NO"},
        {kTimes, ID_TIMES + 1, nullptr, nullptr},
        {kTimes, ID_TIMES + 2, "900", nullptr},
        {kTimes, ID_TIMES + 3, "17:30", nullptr},
        {kTimes, ID_TIMES + 11, nullptr, "SendTime: AFTER 09:00 BEFORE 17:30  MON TUE WED THU FRI"},
        {kDial, ID_DIAL_NATIONAL, nullptr, "Dial: Local National International1"},
        {kPrint, ID_PRINT_SENT_DEFAULT, nullptr, nullptr},
        {kPrint, ID_PRINT_SENT_WORDS + 1, nullptr, "PrintSentOptions: MESSAGE"},
        {kPrint, ID_PRINT_PRINTER, "PRINT-2", "PrintSentDevice: PRINT-2"},
        {kPrint, ID_PRINT_RECD_WORDS + 2, nullptr, "PrintRecdOptions: STATUS MESSAGE DELETE"},
        {kMail, ID_MAIL_GATEWAY, nullptr, "MailGateway: YES"},
        {kMail, ID_MAIL_NAME, "anna.m@example.com", "MailName: anna.m@example.com"},
    };
    const std::string beforeAnna = Before.substr(0, Before.find("Name: ANNA"));
    const std::string afterAnna = Before.substr(Before.find("Name: BEN"));
    WithAnna([&](HWND dialog) {
        for (const Setting& setting : kSettings)
            Make(ShowPage(dialog, ID_USER_PAGES, setting.Page), {setting.Control, setting.Text});
        Click(dialog, IDOK);
        EXPECT_TRUE(Until([&] { return !IsWindow(dialog); }));
    });
    for (const Setting& setting : kSettings) {
        if (setting.Line == nullptr) continue;
        EXPECT_THAT(Record("ANNA"), HasSubstr(std::string("\r\n") + setting.Line + "\r\n"));
    }
    EXPECT_THAT(Record("ANNA"), HasSubstr("CostCentre: 210"));
    EXPECT_EQ(File().substr(0, beforeAnna.size()), beforeAnna);
    EXPECT_EQ(File().substr(File().find("Name: BEN")), afterAnna);
    EXPECT_THAT(Front.Said, Contains("status 1: Modified user ANNA"));
    EXPECT_TRUE(Startup().SettingsChanged);
}

TEST_F(UserDialogs, FaultsKeepTheirPageAndGetTheFocus) {
    constexpr struct {
        Setting Wrong;
        const char* Message;
    } kFaults[] = {
        {{kGeneral, ID_USER_GROUP, "@NOBODY", nullptr}, "error: Group: \"@NOBODY\" - there is no user group"},
        {{kGeneral, ID_USER_FULLNAME, "Ж", nullptr}, "error: \"?\" holds characters"},
        {{kGeneral, ID_USER_FULLNAME, "Anna ", nullptr}, "error: Fullname: \"Anna \" ends with a blank"},
        {{kMail, ID_MAIL_NAME, "(anna", nullptr}, "error: MailName: \"(anna\" is not"},
        {{kTimes, ID_TIMES + 2, "25:00", nullptr}, "error: SendTime: "},
    };
    for (const auto& [wrong, message] : kFaults) {
        Front.Said.clear();
        WithAnna([&](HWND dialog) {
            const HWND page = ShowPage(dialog, ID_USER_PAGES, wrong.Page);
            if (wrong.Page == kTimes) Send(GetDlgItem(page, ID_TIMES + 1), BM_CLICK);
            Make(page, {wrong.Control, wrong.Text});
            Click(dialog, IDOK);
            EXPECT_TRUE(Until([&] { return !Front.Said.empty() && FocusOf(FrontPage(dialog)) == wrong.Control; }))
                << message;
            EXPECT_EQ(FrontPage(dialog), page);
            Front.Answer = true; // to lose the changes
        });
        EXPECT_THAT(Front.Said, Contains(StartsWith(message)));
        EXPECT_EQ(File(), Before);
    }
}

TEST_F(UserDialogs, OkWithoutAChangeAndCancelWriteNothing) {
    WithAnna([&](HWND dialog) {
        for (int page = kGeneral; page <= kMail; ++page) ShowPage(dialog, ID_USER_PAGES, page);
        Click(dialog, IDOK);
        EXPECT_TRUE(Until([&] { return !IsWindow(dialog); }));
    });
    WithAnna([&](HWND dialog) {
        const HWND page = ShowPage(dialog, ID_USER_PAGES, kPrint);
        Select(page, ID_PRINT_SLOTS, 2);
        EXPECT_TRUE(Until([&] { return Text(page, ID_PRINT_PRINTER) == "PRINT-1"; }));
        Click(dialog, IDCANCEL);
        EXPECT_TRUE(Until([&] { return !IsWindow(dialog); })) << "to look at a printer is no change";
    });
    EXPECT_THAT(Front.Said, Each(StartsWith("wait cursor")));
    Front.Said.clear();
    WithAnna([&](HWND dialog) {
        SetTextOf(FrontPage(dialog), ID_USER_FULLNAME, "Nobody");
        Click(dialog, IDCANCEL);
        EXPECT_TRUE(Says("Lose changes?"));
        EXPECT_TRUE(IsWindow(dialog)) << "although the answer was No";
        Front.Answer = true;
        Click(dialog, IDCANCEL);
        EXPECT_TRUE(Until([&] { return !IsWindow(dialog); }));
    });
    EXPECT_EQ(File(), Before);
    EXPECT_FALSE(Startup().SettingsChanged);
}

TEST_F(UserDialogs, TheListIsWorkedByKeyboard) {
    WithList([&](HWND list, const Windows& windows) {
        const auto counts = [&](const std::string& text) {
            return Until([&] { return Text(list, ID_USERS_COUNT) == text; });
        };
        EXPECT_TRUE(counts("15 of 15 shown, 1 selected"));
        FocusControlOf(list, ID_USERS_LIST);
        Key('F', VK_CONTROL);
        EXPECT_TRUE(Until([&] { return FocusOf(list) == ID_USERS_FILTER; }));
        Type("@sales LENA");
        EXPECT_TRUE(counts("1 of 15 shown, 1 selected"));
        EXPECT_THAT(Entries(list, ID_USERS_LIST), ElementsAre(StartsWith("LENA\tLena, sales\t@SALES\t")));
        Type("q");
        EXPECT_TRUE(counts("Nothing fits the filter \"@sales LENAq\""));
        Key(VK_ESCAPE);
        EXPECT_TRUE(counts("15 of 15 shown, 1 selected"));
        Key(VK_DOWN);
        EXPECT_TRUE(Until([&] { return FocusOf(list) == ID_USERS_LIST; }));
        Key('A', VK_CONTROL);
        EXPECT_TRUE(counts("15 of 15 shown, 15 selected"));
        EXPECT_FALSE(IsEnabled(list, ID_USERS_CLONE));
        Key(VK_END);
        EXPECT_TRUE(counts("15 of 15 shown, 1 selected"));
        Key(VK_HOME);
        EXPECT_TRUE(Until([&] { return Selection(list, ID_USERS_LIST) == 0; }));

        Key(VK_F2);
        HWND details = windows.Wait(kDetails);
        EXPECT_TRUE(Until([&] { return FocusOf(FrontPage(details)) == ID_USER_FULLNAME; }));
        Key(VK_ESCAPE);
        EXPECT_TRUE(Until([&] { return !IsWindow(details); }));

        Key(VK_INSERT);
        details = windows.Wait("Add new user");
        EXPECT_TRUE(Until([&] { return FocusOf(FrontPage(details)) == ID_USER_NAME; }));
        Type("anna");
        Key(VK_RETURN);
        EXPECT_TRUE(Says("\"ANNA\" - there is a user or user group of that name already"));
        Type("adam");
        Key(VK_RETURN);
        EXPECT_TRUE(counts("16 of 16 shown, 1 selected"));
        EXPECT_EQ(Selection(list, ID_USERS_LIST), 0);
        EXPECT_THAT(Record("ADAM"), HasSubstr("SubmitAny: NO")) << "as the default user";
        EXPECT_TRUE(Server.Files().Has("USERS\\ADAM"));

        Front.Said.clear();
        Key(VK_DELETE);
        EXPECT_TRUE(Until([&] { return !Front.Captions.empty(); }));
        EXPECT_TRUE(counts("16 of 16 shown, 1 selected")) << "although the answer was No";
        Front.Answer = true;
        Key(VK_DELETE);
        EXPECT_TRUE(counts("15 of 15 shown, 1 selected"));
        EXPECT_EQ(File(), Before);
    });
}

// What meets OK while a user's details are open; what was typed stays, and is saved when the fault is gone.
TEST_F(UserDialogs, FaultsOfTheListKeepWhatWasTyped) {
    const std::string path = Server.Files().Path(kList);
    HANDLE held = INVALID_HANDLE_VALUE;
    const auto write = [&](const std::string& text) { Write(text); };
    const auto makeTemporary = [&] { CreateDirectoryA(Server.Files().Path("B-DB\\USERLIST.TMP").c_str(), nullptr); };
    const auto removeTemporary = [&] { RemoveDirectoryA(Server.Files().Path("B-DB\\USERLIST.TMP").c_str()); };
    test::FaultyFiles full(platform::Service<platform::FileSystem>::System(), {test::FaultKind::ShortWrite, 2});
    std::optional<platform::Substitute<platform::FileSystem>> useFull;
    constexpr const char* kGone = "error: Brivane user ANNA not found";
    constexpr const char* kUnopened = "error: Unable to open file ";
    const struct {
        const char* What;
        const char* Said;
        std::function<void()> Spoil;
        std::function<void()> Mend;
    } faults[] = {
        {"held for longer than anybody waits", kUnopened,
         [&] { held = CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr); },
         [&] { CloseHandle(held); }},
        {"deleted", kUnopened, [&] { DeleteFileA(path.c_str()); }, [&] { write(Before); }},
        {"emptied", kGone, [&] { write(""); }, [&] { write(Before); }},
        {"another one", kGone, [&] { write("[USER]\r\nName: ZOE\r\n"); }, [&] { write(Before); }},
        {"without room beside it", "error: Unable to create file ", makeTemporary, removeTemporary},
        {"on a full disk", "error: Error writing to file ", [&] { useFull.emplace(full); }, [&] { useFull.reset(); }},
    };
    for (const auto& [what, said, spoil, mend] : faults) {
        SCOPED_TRACE(what);
        write(Before);
        WithAnna([&](HWND dialog) {
            SetTextOf(FrontPage(dialog), ID_USER_FULLNAME, "Anna Mine");
            spoil();
            Front.Said.clear();
            Click(dialog, IDOK);
            EXPECT_TRUE(Says(said)) << what << testing::PrintToString(Front.Said);
            EXPECT_TRUE(Until([&] { return IsWindowEnabled(dialog) != FALSE; }));
            EXPECT_EQ(Text(FrontPage(dialog), ID_USER_FULLNAME), "Anna Mine");
            mend();
            Click(dialog, IDOK);
            EXPECT_TRUE(Until([&] { return !IsWindow(dialog); }));
        });
        EXPECT_THAT(Record("ANNA"), HasSubstr("Fullname: Anna Mine\r\n"));
    }
}

std::string KeyOf(const std::string& tip) { return tip.substr(0, tip.find(':')); }

// The keys of all tooltips of a process.
std::set<std::string> KeysOfTooltips() {
    std::set<std::string> keys;
    const auto take = [](HWND tips, LPARAM data) -> BOOL {
        if (ClassOf(tips) != "tooltips_class32") return TRUE;
        for (WPARAM tool = 0; tool < static_cast<WPARAM>(Send(tips, TTM_GETTOOLCOUNT)); ++tool) {
            char text[1024] = "";
            TOOLINFOA info{};
            info.cbSize = sizeof info;
            info.lpszText = text;
            Send(tips, TTM_ENUMTOOLSA, tool, reinterpret_cast<LPARAM>(&info));
            reinterpret_cast<std::set<std::string>*>(data)->insert(KeyOf(text));
        }
        return TRUE;
    };
    EnumWindows(take, reinterpret_cast<LPARAM>(&keys));
    return keys;
}

std::string KeyOfTip(HWND page, int row) {
    wchar_t text[1024] = L"";
    NMLVGETINFOTIPW tip{};
    tip.hdr = {GetDlgItem(page, ID_PERMISSIONS), ID_PERMISSIONS, LVN_GETINFOTIPW};
    tip.pszText = text;
    tip.cchTextMax = 1024;
    tip.iItem = row;
    Send(page, WM_NOTIFY, ID_PERMISSIONS, reinterpret_cast<LPARAM>(&tip));
    const std::wstring wide = text;
    return KeyOf({wide.begin(), wide.end()});
}

TEST_F(UserDialogs, EveryKeyOfAUserHasATooltip) {
    std::set<std::string> keys;
    WithAnna([&](HWND dialog) {
        for (int page = kGeneral; page <= kMail; ++page) {
            const HWND window = ShowPage(dialog, ID_USER_PAGES, page);
            for (int row = 0; page == kPermissions && row < 6; ++row) keys.insert(KeyOfTip(window, row));
            for (int slot = 0; page == kPrint && slot < 4; ++slot) {
                Select(window, ID_PRINT_SLOTS, slot);
                keys.merge(KeysOfTooltips());
            }
        }
        keys.merge(KeysOfTooltips());
    });
    for (const RecordKey& key : RecordKeys()) {
        if (HasKey(key, RecordKind::User)) {
            EXPECT_THAT(keys, Contains(key.Field.Name()));
        }
    }
}

TEST_F(UserDialogs, TheValueForManyUsersHasTheTooltipOfTheSelectedKey) {
    RunDriven(
        [] {
            ChangeUsersByDialog(nullptr, {"ANNA", "BEN"});
        },
        [&](const Windows& windows) {
            const HWND dialog = windows.Wait("Change 2 users");
            for (const int row : {2, 5}) {
                Select(dialog, ID_MANY_SETTINGS, row);
                const std::string key = KeyOf(Entries(dialog, ID_MANY_SETTINGS)[static_cast<std::size_t>(row)]);
                EXPECT_TRUE(Until([&] { return KeysOfTooltips() == std::set{key.substr(0, key.find('\t'))}; }));
            }
            Click(dialog, IDCANCEL);
        });
}

// The windows whose new text the system was told of, on the dialogs' thread.
std::vector<HWND> toldOf;

TEST_F(UserDialogs, TheStatusLineIsSaid) {
    constexpr DWORD kEvent = EVENT_OBJECT_LIVEREGIONCHANGED;
    const auto note = [](HWINEVENTHOOK, DWORD, HWND window, LONG, LONG, DWORD, DWORD) { toldOf.push_back(window); };
    static constexpr DialogServices kServices{};
    RunDriven(
        [&] {
            const HWINEVENTHOOK hook =
                SetWinEventHook(kEvent, kEvent, nullptr, note, GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT);
            ConfigureUsers(nullptr, kServices);
            UnhookWinEvent(hook);
        },
        [&](const Windows& windows) {
            const HWND line = GetDlgItem(windows.Wait(kListTitle), ID_STATUS_LINE);
            ShowStatusInDialogs(1, "Modified user ANNA");
            EXPECT_EQ(Text(line), "Modified user ANNA");
            EXPECT_TRUE(Until([&] { return std::ranges::find(toldOf, line) != toldOf.end(); }));
        });
}

TEST_F(UserDialogs, TheDetailsAreWorkedByKeyboardAlone) {
    WithAnna([&](HWND dialog) {
        const auto isAt = [&](int control) { return Until([&] { return FocusOf(FrontPage(dialog)) == control; }); };
        SetForegroundWindow(dialog);
        EXPECT_TRUE(isAt(ID_USER_FULLNAME));
        Type("Keys alone");
        Key('O', VK_MENU); // Choose group
        Key(VK_ESCAPE);
        HWND page = ShowPage(dialog, ID_USER_PAGES, kPermissions);
        Key('P', VK_MENU);
        EXPECT_TRUE(isAt(ID_PERMISSIONS));
        Key(VK_SPACE);
        page = ShowPage(dialog, ID_USER_PAGES, kMail);
        Key('G', VK_MENU);
        EXPECT_TRUE(Until([&] { return IsChecked(page, ID_MAIL_GATEWAY); }));
        Key(VK_RETURN);
        EXPECT_TRUE(Until([&] { return !IsWindow(dialog); }));
    });
    EXPECT_THAT(Record("ANNA"), AllOf(HasSubstr("Fullname: Keys alone\r\n"), HasSubstr("MailGateway: YES\r\n"),
                                      HasSubstr("NetworkEdit: NO\r\n")));
}

TEST_F(UserDialogs, ChangesOfSomebodyElseAreKeptOrAskedAbout) {
    const auto replace = [&](const std::string& from, const std::string& to) {
        std::string file = File();
        const std::size_t at = file.find(from, file.find("Name: ANNA"));
        Write(file.replace(at, from.size(), to));
    };
    WithAnna([&](HWND dialog) {
        SetTextOf(FrontPage(dialog), ID_USER_FULLNAME, "Anna Mine");
        SetTextOf(FrontPage(dialog), ID_USER_GROUP, "@SALES");
        replace("Fullname: Anna, accounts", "Fullname: Anna Theirs");
        replace("Username: anna", "Username: theirs");
        Click(dialog, IDOK); // and theirs are kept, as the answer is No
        EXPECT_TRUE(Until([&] { return !IsWindow(dialog); }));
    });
    EXPECT_TRUE(Says("User ANNA was changed by somebody else meanwhile: Fullname: \"Anna Theirs\""));
    EXPECT_THAT(Record("ANNA"), HasSubstr("Fullname: Anna Theirs\r\nGroup: @SALES\r\nUsername: theirs\r\n"));
}

TEST_F(UserDialogs, GroupsShowAndChangeTheirMembers) {
    WithList([&](HWND list, const Windows& windows) {
        Click(list, ID_USERS_SHOW_GROUPS);
        EXPECT_TRUE(Until([&] { return Text(list, ID_USERS_COUNT) == "3 of 3 shown, 1 selected"; }));
        Select(list, ID_USERS_LIST, 1);
        Click(list, ID_USERS_EDIT);
        const HWND details = windows.Wait("Brivane user group details - @SALES");
        const HWND page = FrontPage(details);
        EXPECT_THAT(Entries(page, ID_GROUP_MEMBERS),
                    ElementsAre("CLARA\tClara, sales", StartsWith("DIETER"), "LENA\tLena, sales"));
        Select(page, ID_GROUP_MEMBERS, 0);
        Click(page, ID_GROUP_REMOVE);
        EXPECT_TRUE(Until([&] { return Entries(page, ID_GROUP_MEMBERS).size() == 2; }));
        Click(page, ID_GROUP_ADD);
        const HWND choice = windows.Wait("Choose a user");
        SetTextOf(choice, ID_CHOOSE_FILTER, "anna");
        EXPECT_TRUE(Until([&] { return Entries(choice, ID_CHOOSE_LIST).size() == 1; }));
        Click(choice, IDOK);
        EXPECT_TRUE(Until([&] { return Entries(page, ID_GROUP_MEMBERS).size() == 3; }));
        EXPECT_EQ(File(), Before);
        Click(details, IDOK);
        EXPECT_TRUE(Until([&] { return !IsWindow(details); }));
    });
    EXPECT_THAT(Record("ANNA"), HasSubstr("Group: @SALES\r\n"));
    EXPECT_THAT(Record("CLARA"), Not(HasSubstr("Group: @")));
    EXPECT_THAT(Front.Said, Contains("status 1: Users changed: 2"));
}

// How high a control's font is, and its place in its parent.
std::pair<LONG, RECT> LooksOf(HWND control) {
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HGDIOBJ>(Send(control, WM_GETFONT)), sizeof font, &font);
    return {font.lfHeight, PlaceInParent(control)};
}

// Sends a dialog to a screen of half as much resolution again, and looks whether all in the parent grows by that.
void RaiseDpi(HWND dialog, HWND parent) {
    const auto raised = [](LONG pixels) { return MulDiv(static_cast<int>(pixels), 144, 96); };
    std::vector<std::pair<LONG, RECT>> before;
    for (const HWND control : Children(parent)) before.push_back(LooksOf(control));
    RECT place{};
    GetWindowRect(dialog, &place);
    place = {0, 0, raised(place.right - place.left), raised(place.bottom - place.top)};
    SendMessageA(dialog, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place));
    RECT client{};
    GetClientRect(parent, &client);
    const std::vector<HWND> controls = Children(parent);
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const auto& [height, was] = before[i];
        const auto [newHeight, is] = LooksOf(controls[i]);
        SCOPED_TRACE(ClassOf(controls[i]) + " " + Text(controls[i]));
        EXPECT_NEAR(newHeight, raised(height), 1);
        EXPECT_NEAR(is.left, raised(was.left), 20); // the frame does not grow as the rest does
        EXPECT_NEAR(is.right, raised(was.right), 20);
        EXPECT_LE(is.right, client.right);
        EXPECT_LE(is.bottom, client.bottom);
    }
}

TEST_F(UserDialogs, GrowWithTheScreensResolution) {
    RunDriven([] { ChooseNames(nullptr, kUserNames, true); },
              [](const Windows& windows) {
                  const HWND dialog = windows.Wait("Choose a user");
                  const auto width = [&] { return SendTo(dialog, ID_CHOOSE_LIST, LVM_GETCOLUMNWIDTH, 0); };
                  const LRESULT before = width();
                  RaiseDpi(dialog, dialog);
                  EXPECT_EQ(width(), MulDiv(static_cast<int>(before), 144, 96));
              });
    WithAnna([](HWND dialog) { RaiseDpi(dialog, ShowPage(dialog, ID_USER_PAGES, kPrint)); });
}

} // namespace
} // namespace bv::gui
