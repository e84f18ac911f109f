// The dialogs of mail users and the page of the mail gateway inside this process, on a copy of the sample server.
#include <windows.h>

#include <commctrl.h>
#include <filesystem>

#include "gui/dialog_fixture.h"
#include "mailgw/fake_mail.h"
#include "mailgw/gateway_page_dlg.h"
#include "mailgw/mail_alias_dlg.h"
#include "mailgw/mail_boxes_dlg.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_users_dlg.h"
#include "options/options_dlg.h"
#include "platform/files.h"
#include "platform/libraries.h"
#include "resources/ids.h"
#include "support/fakes.h"
#include "users/user_details_dlg.h"

namespace bv::gui {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kTitle = "Brivane - mail users";
constexpr const char* kSetup = "B-DB\\SETUP.INI";

class MailDialogs : public DialogFixture {
  protected:
    MailDialogs() : DialogFixture("B-DB\\MAILLIST.INI") {}
    void SetUp() override {
        DialogFixture::SetUp();
        MustDisableInMailSystem() = false;
    }

    void WithList(const std::string& user, const std::function<void(HWND, const Windows&)>& drive) {
        RunDriven([&] { ConfigureMailUsers(nullptr, user); },
                  [&](const Windows& windows) { drive(windows.Wait(kTitle), windows); });
    }
    // A box that the list opens for a row.
    void WithBox(int row, int button, const std::string& title, const std::function<void(HWND)>& drive) {
        WithList("", [&](HWND list, const Windows& windows) {
            Select(list, ID_MAIL_USERS_LIST, row);
            Click(list, button);
            drive(windows.Wait(title));
        });
    }
};

bool Becomes(HWND dialog, int control, const std::string& text) {
    return Until([&] { return Text(dialog, control) == text; });
}

// An entry of a drop-down list, as by a click.
void Choose(HWND dialog, int combo, int entry) {
    SendTo(dialog, combo, CB_SETCURSEL, static_cast<WPARAM>(entry));
    Send(dialog, WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE), reinterpret_cast<LPARAM>(GetDlgItem(dialog, combo)));
}

TEST_F(MailDialogs, TheListIsWorkedByKeyboard) {
    WithList("", [&](HWND list, const Windows& windows) {
        EXPECT_TRUE(Becomes(list, ID_MAIL_USERS_TOTAL, "Mail users: 6, by a profile: 2"));
        EXPECT_THAT(Entries(list, ID_MAIL_USERS_LIST),
                    Contains("Workshop Petra\tMAILSTD\tMAILSTD\tyes\tpetra@example.com\tprofile without account name"));
        const std::pair<int, const char*> shows[] = {{1, "2 of 2"}, {2, "1 of 1"}, {0, "6 of 6"}};
        for (const auto& [entry, count] : shows) {
            Choose(list, ID_MAIL_USERS_SHOW, entry);
            EXPECT_TRUE(Until([&] { return Text(list, ID_MAIL_USERS_COUNT).starts_with(count); })) << count;
        }
        Select(list, ID_MAIL_USERS_LIST, 0);
        FocusControlOf(list, ID_MAIL_USERS_LIST);
        const std::pair<WORD, const char*> keys[] = {
            {VK_RETURN, "Mail user"}, {VK_F2, "Replace mail user"}, {VK_INSERT, "Enable mail users"}};
        for (const auto& [key, title] : keys) {
            Key(key);
            const HWND box = windows.Wait(title);
            EXPECT_NE(box, nullptr) << title;
            Key(VK_ESCAPE);
            EXPECT_TRUE(IsClosed(box)) << title;
        }
        Key(VK_DELETE);
        EXPECT_TRUE(Says("Deleting mail user Sales Clara - of CLARA"));
        EXPECT_EQ(File(), Before);
        Front.Answer = true;
        Key(VK_DELETE);
        EXPECT_TRUE(Becomes(list, ID_MAIL_USERS_TOTAL, "Mail users: 5, by a profile: 2"));
        EXPECT_THAT(File(), Not(HasSubstr("Sales Clara")));
        Write(Before);
        Key(VK_F5);
        EXPECT_TRUE(Becomes(list, ID_MAIL_USERS_TOTAL, "Mail users: 6, by a profile: 2"));
        Select(list, ID_MAIL_USERS_LIST, 3);
        Write(With("[USER]\r\nBrivname: CLARA\r\nEmailname: Sales Clara\r\nProfile: NO\r\nSubAddr: 201\r\n", ""));
        Key(VK_F5);
        EXPECT_TRUE(Becomes(list, ID_MAIL_USERS_TOTAL, "Mail users: 5, by a profile: 2"));
        EXPECT_EQ(Selection(list, ID_MAIL_USERS_LIST), 2) << "Workshop Petra, whatever has gone before her";
        Front.Answer = false;
        MustDisableInMailSystem() = true;
        Click(list, IDOK);
        EXPECT_TRUE(IsClosed(list));
    });
    EXPECT_TRUE(Says("Make the list of mail users anew now?"));
}

TEST_F(MailDialogs, BoxesChangeTheirRecordAndNothingElse) {
    const struct {
        int Row;
        int Button;
        const char* Title;
        std::vector<Entry> Entries;
        std::string From; // of the list; the same: a fault
        std::string To;
        std::string Said = {};
        int Focus = 0;
    } rows[] = {
        {0,
         ID_MAIL_USERS_EDIT,
         "Mail user",
         {{ID_MAIL_USER_SUB_ADDRESS, "202"}, {ID_MAIL_USER_PRINT_SENT, "NO"}},
         "SubAddr: 201\r\n",
         "SubAddr: 202\r\nPrintSent: NO\r\n"},
        {4, ID_MAIL_USERS_EDIT, "Mail user", {{ID_MAIL_USER_SERVER, "ben"}}, "Brivname: IRIS", "Brivname: BEN"},
        {3, ID_MAIL_USERS_EDIT, "Mail user", {{ID_MAIL_USER_MAKE, nullptr}}, "(none)", "PWorkshop"},
        {0, ID_MAIL_USERS_EDIT, "Mail user", {}, "", ""},
        {0,
         ID_MAIL_USERS_REPLACE,
         "Replace mail user",
         {{ID_REPLACE_NEW, "Sales Klara"}},
         "Sales Clara",
         "Sales Klara"},
        {0,
         ID_MAIL_USERS_EDIT,
         "Mail user",
         {{ID_MAIL_USER_SERVER, "ZOE"}},
         "",
         "",
         "Brivane user ZOE not found",
         ID_MAIL_USER_SERVER},
        {3,
         ID_MAIL_USERS_EDIT,
         "Mail user",
         {{ID_MAIL_USER_ACCOUNT, "BEN"}},
         "",
         "",
         "Account name: \"BEN\" is in use.",
         ID_MAIL_USER_ACCOUNT},
        {0,
         ID_MAIL_USERS_EDIT,
         "Mail user",
         {{ID_MAIL_USER_PRINT_RECD, " x"}},
         "",
         "",
         "PrintRecd: \" x\" cannot",
         ID_MAIL_USER_PRINT_RECD},
        {0,
         ID_MAIL_USERS_REPLACE,
         "Replace mail user",
         {{ID_REPLACE_NEW, "Workshop Petra"}},
         "",
         "",
         "Workshop Petra is in the list already and sends as MAILSTD.",
         ID_REPLACE_NEW},
    };
    for (const auto& [row, button, title, entries, from, to, said, focus] : rows) {
        SCOPED_TRACE(to + said);
        Write(Before);
        Front.Said.clear();
        WithBox(row, button, title, [&](HWND box) {
            Make(box, entries);
            Click(box, IDOK);
            if (said.empty()) {
                EXPECT_TRUE(IsClosed(box));
                return;
            }
            EXPECT_TRUE(Says(said));
            EXPECT_TRUE(Until([&] { return FocusOf(box) == focus; }));
            Click(box, IDCANCEL);
        });
        std::string after = Before;
        if (!from.empty()) after.replace(after.find(from), from.size(), to);
        EXPECT_EQ(File(), after);
    }
}

TEST_F(MailDialogs, BoxesKeepWhatWasTypedWhenTheListCannotBeChanged) {
    const struct {
        int Button;
        const char* Title;
        std::vector<Entry> Entries; // the last one is looked at
        std::string Unopened;
        std::string Changed;
    } kBoxes[] = {
        {ID_MAIL_USERS_EDIT,
         "Mail user",
         {{ID_MAIL_USER_SUB_ADDRESS, "202"}},
         "error: Unable to open file ",
         "error: Sales Clara was changed by somebody else meanwhile, and is not overwritten."},
        {ID_MAIL_USERS_REPLACE,
         "Replace mail user",
         {{ID_REPLACE_NEW, "Sales Klara"}},
         "error: Unable to create file ",
         "error: Sales Clara was changed by somebody else meanwhile, and is not overwritten."},
        {ID_MAIL_USERS_ENABLE,
         "Enable mail users",
         {{ID_ENABLE_NAME, "By hand"},
          {ID_ENABLE_ADD, nullptr},
          {ID_ENABLE_FOR_USER, nullptr},
          {ID_ENABLE_USER, "BEN"}},
         "error: Unable to create file ",
         "ask question: Mail user By hand is in the list already and sends as IRIS.\n\nReplace?"},
    };
    const std::string path = Server.Files().Path("B-DB\\MAILLIST.INI");
    const std::filesystem::path temporary = Server.Files().HostPath("B-DB\\MAILLIST.TMP");
    test::FakeClock clock; // whose waits are over at once
    const platform::Substitute<platform::Clock> use(clock);
    for (const auto& [button, title, entries, unopened, changed] : kBoxes) {
        Write(Before);
        WithBox(0, button, title, [&](HWND box) {
            Make(box, entries);
            const auto expectRefused = [&](const std::string& said) {
                Front.Said.clear();
                Click(box, IDOK);
                EXPECT_TRUE(Says(said)) << title;
                EXPECT_TRUE(Until([&] { return IsWindowEnabled(box); }));
                EXPECT_EQ(Text(box, entries.back().Control), entries.back().Text);
            };
            {
                const auto held = platform::Files().Open(path, {platform::Access::Read, platform::Deny::Writing});
                expectRefused(unopened + path);
            }
            std::filesystem::create_directory(temporary); // so that nothing can be written
            expectRefused("MAILLIST.TMP");
            std::filesystem::remove(temporary);
            EXPECT_EQ(File(), Before);
            Write("[USER]\r\nBrivname: IRIS\r\nEmailname: By hand\r\nProfile: NO\r\n");
            const std::string theirs = File();
            expectRefused(changed);
            EXPECT_EQ(File(), theirs);
            Click(box, IDCANCEL);
        });
    }
}

TEST_F(MailDialogs, PeopleAreEnabledByTicks) {
    WithList("MAILSTD", [&](HWND list, const Windows& windows) {
        EXPECT_TRUE(Until([&] { return Text(list, ID_MAIL_USERS_COUNT).starts_with("1 of 1"); }));
        Click(list, ID_MAIL_USERS_ENABLE);
        const HWND box = windows.Wait("Enable mail users");
        EXPECT_TRUE(IsChecked(box, ID_ENABLE_FOR_PROFILE));
        EXPECT_EQ(Text(box, ID_ENABLE_PROFILE), "MAILSTD");
        EXPECT_FALSE(IsEnabled(box, ID_ENABLE_USER));
        EXPECT_THAT(Entries(box, ID_ENABLE_LIST),
                    Contains("Sales Clara\tclara@example.com\t\tin the list, sends as CLARA"));
        Click(box, IDOK);
        EXPECT_TRUE(Says("error: Please select a mail user."));
        SetTextOf(box, ID_ENABLE_FILTER, "archer");
        SetTextOf(box, ID_ENABLE_FILTER, "nico");
        EXPECT_TRUE(Until([&] { return Entries(box, ID_ENABLE_LIST).size() == 1; }));
        Select(box, ID_ENABLE_LIST, 0);
        FocusControlOf(box, ID_ENABLE_LIST);
        Key(VK_SPACE);
        EXPECT_TRUE(Becomes(box, ID_ENABLE_ACCOUNT, "NDrawing"));
        SetTextOf(box, ID_ENABLE_ACCOUNT, "BEN");
        EXPECT_TRUE(Until([&] { return Entries(box, ID_ENABLE_LIST)[0].ends_with("account name is in use"); }));
        Click(box, IDOK);
        EXPECT_TRUE(Says("error: Account name: \"BEN\" is in use."));
        EXPECT_TRUE(Until([&] { return FocusOf(box) == ID_ENABLE_ACCOUNT; }));
        SetTextOf(box, ID_ENABLE_ACCOUNT, "NicoD");
        SetTextOf(box, ID_ENABLE_NAME, "By hand");
        FocusControlOf(box, ID_ENABLE_NAME);
        Key(VK_RETURN);
        EXPECT_TRUE(Becomes(box, ID_ENABLE_NAME, ""));
        EXPECT_EQ(File(), Before);
        Click(box, IDOK);
        EXPECT_TRUE(IsClosed(box));
    });
    const std::string by = "\r\nProfile: YES\r\n\r\n";
    EXPECT_THAT(File(), HasSubstr("Brivname: MAILSTD\r\nEmailname: By hand\r\nEmailBrivname: hBy" + by));
    EXPECT_THAT(File(), HasSubstr("Brivname: MAILSTD\r\nEmailname: Drawing Nico\r\nEmailBrivname: NicoD" + by));
}

TEST_F(MailDialogs, TheExpressionIsTriedWhileItIsTyped) {
    RunDriven([] { ChooseAccountExpression(nullptr); },
              [&](const Windows& windows) {
                  const HWND box = windows.Wait("Account names of mail users");
                  EXPECT_EQ(Text(box, ID_ALIAS_NAME), "JSmith");
                  EXPECT_FALSE(IsEnabled(box, ID_ALIAS_EXPRESSION));
                  EXPECT_EQ(Text(box, ID_ALIAS_COUNT), "Names that are not unique: 0 of 8");
                  Click(box, ID_ALIAS_FIRST);
                  EXPECT_TRUE(Becomes(box, ID_ALIAS_NAME, "JohnS"));
                  Click(box, ID_ALIAS_OTHER);
                  EXPECT_TRUE(Until([&] { return IsEnabled(box, ID_ALIAS_EXPRESSION); }));
                  SetTextOf(box, ID_ALIAS_EXPRESSION, "none");
                  EXPECT_TRUE(Becomes(box, ID_ALIAS_NAME, "-"));
                  Click(box, IDOK);
                  EXPECT_TRUE(Says("error: Please select a valid expression"));
                  EXPECT_TRUE(Until([&] { return FocusOf(box) == ID_ALIAS_EXPRESSION; }));
                  SetTextOf(box, ID_ALIAS_EXPRESSION, "%1Last");
                  EXPECT_TRUE(Becomes(box, ID_ALIAS_COUNT, "Names that are not unique: 6 of 8"));
                  SetTextOf(box, ID_ALIAS_TRY, "Archer");
                  EXPECT_TRUE(Becomes(box, ID_ALIAS_NAME, "A"));
                  Click(box, IDOK);
                  EXPECT_TRUE(IsClosed(box));
              });
    EXPECT_THAT(Server.Files().Read(kSetup), HasSubstr("MailUserAlias: %1Last\r\n"));
}

TEST_F(MailDialogs, TheUsersPageLooksUpAName) {
    static constexpr DialogServices kServices{nullptr, nullptr, nullptr, PickMailName, CountMailUsers};
    RunDriven([&] { EditUserByDialog(nullptr, RecordKind::User, "CLARA", &kServices); },
              [&](const Windows& windows) {
                  const HWND dialog = windows.Wait("Brivane user details - CLARA");
                  const HWND page = ShowPage(dialog, ID_USER_PAGES, 5);
                  EXPECT_EQ(Text(page, ID_MAIL_HINT), "Mail users under this name: 1");
                  Click(page, ID_MAIL_LOOK_UP);
                  const HWND box = windows.Wait("Choose a mail user");
                  SetTextOf(box, ID_MAIL_NAMES_FILTER, "nico");
                  EXPECT_TRUE(Until([&] { return Entries(box, ID_MAIL_NAMES_LIST).size() == 1; }));
                  Select(box, ID_MAIL_NAMES_LIST, 0);
                  Click(box, IDOK);
                  EXPECT_TRUE(Becomes(page, ID_MAIL_NAME, "Drawing Nico"));
                  Front.Answer = true; // to lose the change
              });
}

// The settings of a server with a mail system, at the page of the mail gateway.
class GatewayPages : public MailDialogs {
  protected:
    void SetUp() override {
        MailDialogs::SetUp();
        Server.Files().Write(kSetup, Server.Files().Read(kSetup) + "\r\n[QUEUEMAN]\r\nMailType: EXCHANGE\r\n");
    }
    static void WithPage(const std::function<void(HWND, HWND, const Windows&)>& drive) {
        static constexpr AreaPageMaker kPages[] = {MakeGatewayPage};
        RunDriven([] { ConfigureOptions(nullptr, kPages); },
                  [&](const Windows& windows) {
                      const HWND dialog = windows.Wait("Brivane - server settings");
                      const int last = static_cast<int>(Entries(dialog, ID_OPTIONS_LIST).size()) - 1;
                      if (Selection(dialog, ID_OPTIONS_LIST) != last) Select(dialog, ID_OPTIONS_LIST, last);
                      Until([&] { return Text(dialog, ID_OPTIONS_TITLE) == "Mail gateway"; });
                      drive(dialog, FrontPage(dialog), windows);
                  });
    }
};

// The tests' own mail library, whose log-on comes back when it may.
class HeldMail final : public platform::Libraries {
  public:
    HeldMail() {
        mayReturn = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        UseMailPartner(&partner_);
    }
    ~HeldMail() override { Release(); }
    HeldMail(const HeldMail&) = delete;
    HeldMail& operator=(const HeldMail&) = delete;
    static void Release() { SetEvent(mayReturn); }
    std::unique_ptr<platform::Library> Load(const std::string&) override { return std::make_unique<Library>(); }

  private:
    struct Library final : platform::Library {
        void (*Entry(const std::string& name))() override {
            const std::vector<test::MailEntry> entries = test::MapiEntries();
            const auto found = std::ranges::find(entries, name, &test::MailEntry::Name);
            return found == entries.end() ? nullptr : found->Entry;
        }
    };
    static mapi::Error Call(const char* entry, const char*) {
        if (entry == std::string("Logon")) WaitForSingleObject(mayReturn, INFINITE);
        return 0;
    }
    static inline HANDLE mayReturn = nullptr;
    test::MailPartner partner_{Call};
    platform::Substitute<platform::Libraries> use_{*this};
};

TEST_F(GatewayPages, ALogInThatHangsIsGivenUpByCancel) {
    HeldMail mail;
    WithPage([&](HWND dialog, HWND page, const Windows& windows) {
        Click(page, ID_GATEWAY_TEST);
        const HWND box = windows.Wait("Brivane Setup", ID_PROGRESS_BAR);
        EXPECT_TRUE(Becomes(box, ID_PROGRESS_COUNT, "Logging into mail system"));
        EXPECT_FALSE(IsWindowEnabled(dialog));
        Click(box, IDCANCEL);
        EXPECT_TRUE(Says("status 1: Given up waiting for the mail system"));
        EXPECT_TRUE(Until([&] { return IsWindowEnabled(dialog) && FocusOf(page) == ID_GATEWAY_TEST; }));
        Click(page, ID_GATEWAY_TEST);
        EXPECT_TRUE(Says("error: The mail system has not come back yet"));
        mail.Release();
        EXPECT_TRUE(Until([&] {
            Send(GetDlgItem(page, ID_GATEWAY_TEST), BM_CLICK);
            return std::ranges::find(Front.Said, "status 1: Logged into the mail system, and out again") !=
                   Front.Said.end();
        }));
        Click(dialog, IDCANCEL);
        EXPECT_TRUE(IsClosed(dialog));
    });
}

TEST_F(GatewayPages, KeepTheirPassword) {
    WithPage([&](HWND dialog, HWND page, const Windows& windows) {
        EXPECT_THAT(Text(page, ID_GATEWAY_LIBRARY), HasSubstr("[Mail] MAPIDLL32"));
        Choose(page, ID_GATEWAY_SYSTEM, 0);
        EXPECT_TRUE(Becomes(page, ID_GATEWAY_LIBRARY, "No mail system is chosen"));
        for (const int control : {ID_GATEWAY_NAME, ID_GATEWAY_PASSWORD, ID_GATEWAY_TEST, ID_GATEWAY_CLEAR})
            EXPECT_FALSE(IsEnabled(page, control)) << control;
        Choose(page, ID_GATEWAY_SYSTEM, 5);
        EXPECT_TRUE(Until([&] { return IsEnabled(page, ID_GATEWAY_TEST); }));
        SetTextOf(page, ID_GATEWAY_NAME, "Fax Gateway");
        SetTextOf(page, ID_GATEWAY_PASSWORD, "secret");
        Click(page, ID_GATEWAY_TEST);
        EXPECT_TRUE(Says("warning: Mail system GATEWAY cannot be tested from this workstation."));
        Click(page, ID_GATEWAY_CLEAR);
        const HWND box = windows.Wait("Clear folders of the mail gateway");
        EXPECT_FALSE(IsEnabled(box, IDOK));
        SetTextOf(box, ID_FOLDER_SUBJECT, "Fax");
        EXPECT_TRUE(Until([&] { return IsEnabled(box, IDOK); }));
        Click(box, IDOK);
        EXPECT_TRUE(Says("Delete all messages with the subject \"Fax\" from folder Outbox?"));
        Click(box, IDCANCEL);
        EXPECT_TRUE(IsClosed(box));
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    const std::string saved = Server.Files().Read(kSetup);
    EXPECT_THAT(saved, HasSubstr("MailLoginName: Fax Gateway\r\n"));
    EXPECT_THAT(saved, Not(HasSubstr("secret")));
    WithPage([&](HWND dialog, HWND page, const Windows&) {
        EXPECT_EQ(Text(page, ID_GATEWAY_NAME), "Fax Gateway");
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_EQ(Server.Files().Read(kSetup), saved);
}

} // namespace
} // namespace bv::gui
