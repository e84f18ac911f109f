// The dialogs of least-cost routing inside this process, on a copy of the sample server.
#include <windows.h>

#include <filesystem>

#include "ctlfile/scramble.h"
#include "gui/dialog_fixture.h"
#include "lcr/edit_lock.h"
#include "lcr/lcr_page_dlg.h"
#include "lcr/links_dlg.h"
#include "options/options_dlg.h"
#include "platform/files.h"
#include "resources/ids.h"
#include "support/texts.h"

namespace bv::gui {
namespace {

using test::Replaced;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kSetup = "B-DB\\SETUP.INI";
constexpr const char* kLinks = "B-DB\\LINK.INI";
constexpr const char* kRules = "B-DB\\LCRRULES.INI";
constexpr const char* kDropped = "EmailDeleteInvalidMsg: YES\r\n";

using Changes = std::vector<Entry>;

class LcrDialogs : public DialogFixture {
  protected:
    LcrDialogs() : DialogFixture(kSetup) {}
    void SetUp() override {
        DialogFixture::SetUp();
        Links = File(kLinks);
    }

    void WithRouter(const std::function<void(HWND)>& drive, const LcrServices& services = {}) {
        RunDriven([&] { IsDone = EditRouter(nullptr, services); },
                  [&](const Windows& windows) { drive(windows.Wait("General settings")); });
    }
    void WithLinks(const std::function<void(HWND, const Windows&)>& drive) {
        RunDriven([&] { IsDone = EditLinks(nullptr); },
                  [&](const Windows& windows) { drive(windows.Wait("Links to remote servers"), windows); });
    }
    // The box of a link by its row; of a new one without.
    void WithLink(int row, const std::function<void(HWND list, HWND box)>& drive) {
        constexpr const char* kTitles[] = {"New link", "Link MUNICH", "Link LEEDS", "Link AGENT"};
        WithLinks([&](HWND list, const Windows& windows) {
            if (row >= 0) Select(list, ID_LINKS_LIST, row);
            Click(list, row >= 0 ? ID_LINKS_EDIT : ID_LINKS_ADD);
            drive(list, windows.Wait(kTitles[row + 1]));
        });
    }
    void WithPage(const std::function<void(HWND dialog, HWND page, const Windows&)>& drive) {
        static constexpr AreaPageMaker kPages[] = {[](FieldRecord& options) { return MakeLcrPage(options, {}); }};
        RunDriven([] { ConfigureOptions(nullptr, kPages); },
                  [&](const Windows& windows) {
                      const HWND dialog = windows.Wait("Brivane - server settings");
                      Select(dialog, ID_OPTIONS_LIST, static_cast<int>(OptionPage::LeastCostRouting));
                      Until([&] { return Text(dialog, ID_OPTIONS_TITLE) == "Least-cost routing"; });
                      drive(dialog, FrontPage(dialog), windows);
                  });
    }

    // While it lives, a new text of the file cannot be written.
    struct Blocked {
        std::filesystem::path Place;
        explicit Blocked(std::filesystem::path place) : Place(std::move(place)) {
            std::filesystem::create_directory(Place);
        }
        ~Blocked() { std::filesystem::remove(Place); }
        Blocked(const Blocked&) = delete;
        Blocked& operator=(const Blocked&) = delete;
    };
    // A fault: said, with the focus, and the box stays.
    void ExpectFault(HWND box, const Changes& entries, const std::string& said, int focus) {
        Front.Said.clear();
        Make(box, entries);
        Click(box, IDOK);
        EXPECT_TRUE(Says(said)) << said;
        EXPECT_TRUE(Until([&] { return IsWindowEnabled(box) && FocusOf(box) == focus; })) << said;
        Click(box, IDCANCEL);
        EXPECT_TRUE(IsClosed(box));
    }

    std::string Links;
    bool IsDone = false;
};

TEST_F(LcrDialogs, GeneralSettingsChangeTheirLinesAndNothingElse) {
    const std::string email =
        Before.substr(Before.find("EmailType:"), Before.find("WanInbox") - Before.find("EmailType:"));
    const struct {
        Changes Made;
        std::string From;
        std::string To;
    } kCases[] = {
        {{{ID_ROUTER_ID, "CITY"}}, "ID: LONDON,", "ID: CITY,"},
        {{{ID_ROUTER_DESCRIPTION, "Head office"}}, "LONDON, \"Quillmere London\"", "LONDON, \"Head office\""},
        {{{ID_ROUTER_SYSTEM, nullptr, 1}, {ID_ROUTER_NOTES_ID, "C:\\x.id"}},
         "MAPI_EXCHANGE\r\nEmailLoginName: \"Fax Router\"",
         "LOTUS_NOTES_API\r\nEmailLoginName: \"Fax Router\", \"C:\\x.id\""},
        {{{ID_ROUTER_LOGIN, "Fax"}}, "Fax Router", "Fax"},
        {{{ID_ROUTER_LOGIN, "Fax"}, {ID_ROUTER_PASSWORD, "*gone"}}, "Fax Router", "Fax"},
        {{{ID_ROUTER_EMAIL_POLL, "130"}}, "EmailInboxPollFreq: 00:10", "EmailInboxPollFreq: 01:30"},
        {{{ID_ROUTER_EMAIL, nullptr}}, email, ""},
        {{{ID_ROUTER_INBOX, "D:\\IN"}}, "F:\\BRIVANE\\LCRIN", "D:\\IN"},
        {{{ID_ROUTER_WAN_POLL, "0:30"}}, "WanInboxPollFreq: 00:05", "WanInboxPollFreq: 00:30"},
    };
    Front.Answer = true;
    for (const auto& [entries, from, to] : kCases) {
        Write(Before);
        WithRouter([&](HWND box) {
            EXPECT_EQ(Text(box, ID_ROUTER_PASSWORD), "********");
            Make(box, entries);
            Click(box, IDOK);
            EXPECT_TRUE(IsClosed(box)) << to;
        });
        EXPECT_TRUE(IsDone);
        EXPECT_EQ(File(), Replaced(Replaced(Before, from, to), kDropped, ""));
    }
    EXPECT_THAT(Front.Said, Contains(HasSubstr("Saving removes these lines from file SETUP.INI:\n\nEmailDelete")));
    EXPECT_THAT(Front.Said, Contains(HasSubstr("Links of this kind, which will not work without it: 2.")));
    Write(Before);
    Front.Said.clear();
    WithRouter([](HWND box) { Click(box, IDOK); });
    EXPECT_EQ(File(), Before);
    EXPECT_THAT(Front.Said, Each(StartsWith("wait cursor")));
}

std::string testedPassword;

TEST_F(LcrDialogs, ANewPasswordIsScrambledOnceAndTested) {
    Front.Answer = true;
    WithRouter(
        [](HWND box) {
            EXPECT_EQ(Text(box, ID_ROUTER_NOTES_ID), "N:\\FAX.ID") << "is offered";
            SetTextOf(box, ID_ROUTER_PASSWORD, "hush");
            Click(box, ID_ROUTER_TEST_LOGIN);
            Until([] { return !testedPassword.empty(); });
            Click(box, IDOK);
        },
        {.TestLogin = [](HWND, const RouterSettings& settings) { testedPassword = settings.EmailLoginParams; },
         .NotesIdFile = [] { return std::string("N:\\FAX.ID"); }});
    EXPECT_EQ(UnscrambleText(testedPassword), "hush");
    EXPECT_THAT(File(), HasSubstr("EmailLoginParams: " + testedPassword + "\r\n"));
}

TEST_F(LcrDialogs, GeneralSettingsKeepTheBoxWithAFault) {
    static const std::string longest(60, 'x');
    const std::tuple<Changes, std::string, int> kFaults[] = {
        {{{ID_ROUTER_ID, ""}}, "error: You must enter this server's unique ID", ID_ROUTER_ID},
        {{{ID_ROUTER_ID, "leeds"}}, "error: leeds is the ID of a link.", ID_ROUTER_ID},
        {{{ID_ROUTER_ID, "A B"}}, "error: LocalServerID: \"A B\" is not", ID_ROUTER_ID},
        {{{ID_ROUTER_DESCRIPTION, "Ж"}}, "error: \"?\" holds characters", ID_ROUTER_DESCRIPTION},
        {{{ID_ROUTER_LOGIN, ""}}, "error: You must enter an Email account name", ID_ROUTER_LOGIN},
        {{{ID_ROUTER_PASSWORD, longest.c_str()}}, "error: Unable to encrypt the password", ID_ROUTER_PASSWORD},
        {{{ID_ROUTER_PASSWORD, "*"}}, ": A password that begins with *", ID_ROUTER_PASSWORD},
        {{{ID_ROUTER_EMAIL_POLL, "00:00"}}, "error: All intervals must be", ID_ROUTER_EMAIL_POLL},
        {{{ID_ROUTER_INBOX, ""}}, "error: You must enter a WAN inbox folder", ID_ROUTER_INBOX},
        {{{ID_ROUTER_WAN, nullptr}, {ID_ROUTER_EMAIL, nullptr}}, "error: You must enable Email", ID_ROUTER_EMAIL},
    };
    for (const auto& [entries, said, focus] : kFaults)
        WithRouter([&](HWND box) { ExpectFault(box, entries, said, focus); });
    EXPECT_EQ(File(), Before);

    Front.Answer = true;
    WithRouter([&](HWND box) { // what others write meanwhile stays, and a fault of the file keeps what was typed
        const std::string theirs = Replaced(Before, "WanInboxPollFreq: 00:05", "WanInboxPollFreq: 00:07");
        Write(theirs);
        SetTextOf(box, ID_ROUTER_DESCRIPTION, "Mine");
        {
            const Blocked blocked(Server.Files().HostPath("B-DB\\SETUP.new"));
            Click(box, IDOK);
            EXPECT_TRUE(Says("error: File error: couldn't open"));
        }
        EXPECT_TRUE(Until([&] { return IsWindowEnabled(box) != FALSE; }));
        EXPECT_EQ(Text(box, ID_ROUTER_DESCRIPTION), "Mine");
        Click(box, IDOK);
        EXPECT_TRUE(IsClosed(box));
        EXPECT_EQ(File(), Replaced(Replaced(theirs, "LONDON, \"Quillmere London\"", "LONDON, \"Mine\""), kDropped, ""));
    });
}

TEST_F(LcrDialogs, LinksAreGatheredAndWrittenWithOk) {
    const struct {
        int Row;
        Changes Made;
        std::string From;
        std::string To;
    } kCases[] = {
        {0, {{ID_LINK_DESCRIPTION, "South"}}, "\"B\xFCro M\xFCnchen\"", "\"South\""},
        {1, {{ID_LINK_TYPE, nullptr, 2}}, "LinkType: EMAIL\r\n", "LinkType: EMAIL_FAST\r\n"},
        {0, {{ID_LINK_ADDRESS, "\\\\X\\Y"}}, "\\\\ISAR\\FAX\\LCRIN", "\\\\X\\Y"},
        {0, {{ID_LINK_ACCOUNT, "ANNA"}}, "AccountName: DIETER", "AccountName: ANNA"},
        {0, {{ID_LINK_PASSWORD, "*x"}}, "gauge7", "*x"},
        {0,
         {{ID_LINK_RECEIVE, nullptr}},
         "ReceiveEnabled: ON\r\nSendEnabled: ON\r\nLinkDelay: 00",
         "ReceiveEnabled: OFF\r\nSendEnabled: ON\r\nLinkDelay: 00"},
        {0, {{ID_LINK_SEND, nullptr}}, "SendEnabled: ON\r\nLinkDelay: 00", "SendEnabled: OFF\r\nLinkDelay: 00"},
        {0, {{ID_LINK_DELAY, ""}}, "LinkDelay: 00:10\r\n", ""},
        {0, {{ID_LINK_WATCHDOG, "230"}}, "Freq: 01:00", "Freq: 02:30"},
        {0,
         {{ID_LINK_SENT, nullptr, 2}},
         "URGENT\r\nMaxInboundPriority: NORMAL",
         "BACKGROUND\r\nMaxInboundPriority: NORMAL"},
        {0,
         {{ID_LINK_RECEIVED, nullptr, 1}},
         "Inbound"
         "Priority: NORMAL\r\nRejectHigherPriorityMsg: NO",
         "InboundPriority: URGENT\r\nRejectHigherPriorityMsg: NO"},
        {0,
         {{ID_LINK_REJECT, nullptr}},
         "Priority: NORMAL\r\nRejectHigherPriorityMsg: NO",
         "Priority: NORMAL\r\nRejectHigherPriorityMsg: YES"},
        {0,
         {{ID_LINK_FORGET, nullptr}},
         "RemoteLinkRunNumber: 3.12\r\nLocalLinkRunNumber: 3.9\r\nRemoteLinkStatus: LINKUP\r\nLocalLinkStatus: "
         "LINKUP\r\nConnectionStatus: ON\r\n",
         ""},
    };
    const std::string delay = "LinkDelay: 01:  \r\n"; // of the third link, which any save completes
    const std::string whole = Replaced(Replaced(Links, "AGENT, \"\"", "AGENT, \"AGENT\""), delay,
                                       delay + "MaxOutboundPriority: URGENT\r\nMaxInboundPriority: URGENT\r\n"
                                               "RejectHigherPriorityMsg: NO\r\n");
    for (const auto& [row, entries, from, to] : kCases) {
        Write(kLinks, Links);
        WithLink(row, [&](HWND list, HWND box) {
            Make(box, entries);
            Click(box, IDOK);
            EXPECT_TRUE(IsClosed(box)) << to;
            EXPECT_EQ(File(kLinks), Links);
            Click(list, IDOK);
            EXPECT_TRUE(IsClosed(list)) << to;
        });
        EXPECT_EQ(File(kLinks), Replaced(whole, from, to)) << to;
    }
    Front.Said.clear();
    WithLink(2, [](HWND list, HWND box) { // an unchanged one, although it breaks a rule
        Click(box, IDOK);
        EXPECT_TRUE(IsClosed(box));
        Click(list, IDOK);
    });
    EXPECT_THAT(Front.Said, Each(StartsWith("wait cursor")));
}

TEST_F(LcrDialogs, LinksKeepTheBoxWithAFault) {
    const std::tuple<int, Changes, std::string, int> kFaults[] = {
        {-1, {}, "error: You must enter the Remote server's unique ID", ID_LINK_ID},
        {-1, {{ID_LINK_ID, "leeds"}}, "error: This ID is in use already.", ID_LINK_ID},
        {0, {{ID_LINK_ADDRESS, ""}}, "error: You must enter the remote server's address", ID_LINK_ADDRESS},
        {1, {{ID_LINK_ADDRESS, ""}}, "error: You must specify an address for", ID_LINK_ADDRESS},
        {2, {{ID_LINK_DELAY, "00:01"}}, "error: You must specify a Brivane account", ID_LINK_ACCOUNT},
        {0, {{ID_LINK_DELAY, "soon"}}, "error: LinkDelay: \"soon\" is not a time", ID_LINK_DELAY},
        {0, {{ID_LINK_DELAY, "24:00"}}, "error: Link Delay must be between 00:00", ID_LINK_DELAY},
        {0, {{ID_LINK_WATCHDOG, "00:00"}}, "error: All intervals must be between", ID_LINK_WATCHDOG},
        {-1,
         {{ID_LINK_ID, "NEW"}, {ID_LINK_ADDRESS, "\\\\X\\Y"}, {ID_LINK_ACCOUNT, "ANNA"}},
         "error: You must select the action to be taken",
         ID_LINK_REJECT},
    };
    for (const auto& [row, entries, said, focus] : kFaults)
        WithLink(row, [&](HWND, HWND box) { ExpectFault(box, entries, said, focus); });
    WithLink(0, [&](HWND, HWND box) {
        Make(box, {{ID_LINK_ACCOUNT, "zoe"}});
        Click(box, IDOK);
        EXPECT_TRUE(Says("Brivane user zoe not found.\n\nKeep this account?")) << "and it is answered No";
        EXPECT_TRUE(IsWindow(box));
        Click(box, IDCANCEL);
    });
    EXPECT_EQ(File(kLinks), Links);
}

TEST_F(LcrDialogs, RenamedAndDeletedLinksTakeTheirRulesAlong) {
    const std::string rules = File(kRules);
    Front.Answer = true;
    const auto uses = [](HWND list) { return Entries(list, ID_PLACE_USES_LIST); };
    WithLinks([&](HWND list, const Windows& windows) {
        Select(list, ID_LINKS_LIST, 0);
        Click(list, ID_LINKS_WHERE_USED);
        HWND box = windows.Wait("Where MUNICH is used");
        EXPECT_EQ(uses(box).size(), 2U);
        Click(box, IDOK);
        EXPECT_TRUE(IsClosed(box));
        Click(list, ID_LINKS_EDIT);
        const HWND link = windows.Wait("Link MUNICH");
        SetTextOf(link, ID_LINK_ID, "ISAR");
        Click(link, IDOK);
        box = windows.Wait("Where MUNICH is used");
        EXPECT_THAT(uses(box), Each(testing::EndsWith("becomes ISAR")));
        Click(box, IDOK);
        EXPECT_TRUE(IsClosed(link));
        EXPECT_THAT(Entries(list, ID_LINKS_LIST).at(0), HasSubstr("\t2\t")) << "rules name it";
        Select(list, ID_LINKS_LIST, 1);
        Click(list, ID_LINKS_DELETE);
        box = windows.Wait("Where LEEDS is used");
        EXPECT_EQ(Text(box, ID_PLACE_USES_EMPTIED), "Delete &rules that would lose their last server");
        EXPECT_THAT(uses(box), Each(testing::EndsWith("could then be sent by no server")));
        Click(box, ID_PLACE_USES_EMPTIED);
        EXPECT_TRUE(Until([&] { return uses(box).at(0).ends_with("the entry goes"); }));
        Click(box, IDOK);
        EXPECT_TRUE(Until([&] { return Entries(list, ID_LINKS_LIST).size() == 2; }));
        EXPECT_EQ(File(kRules), rules);
        Click(list, IDOK);
        EXPECT_TRUE(IsClosed(list));
    });
    EXPECT_TRUE(IsDone);
    EXPECT_THAT(File(kLinks), testing::AllOf(HasSubstr("ID: ISAR"), Not(HasSubstr("ID: LEEDS"))));
    const std::size_t second = rules.find("[RULE]\r\nDescription: Long faxes");
    const std::string text = rules.substr(0, second) + rules.substr(rules.find("[RULE]", second + 1));
    EXPECT_EQ(File(kRules), Replaced(text, "Server: MUNICH", "Server: ISAR"));
}

TEST_F(LcrDialogs, LinksAreWorkedByKeyboardAndWatchTheFile) {
    WithLinks([&](HWND list, const Windows& windows) {
        EXPECT_TRUE(Until([&] { return Text(list, ID_LINKS_COUNT) == "3 of 3 shown, 1 selected"; }));
        EXPECT_THAT(Entries(list, ID_LINKS_LIST).at(1),
                    HasSubstr("\tE-mail\tleeds-fax@example.com\ton\ton\t02:05\tLINKSHUTDOWN\t1\t"));
        EXPECT_THAT(Entries(list, ID_LINKS_LIST).at(2), HasSubstr("not set\t01:00\t-\t2\tYou must specify a Brivane"));
        EXPECT_EQ(Text(list, ID_LINKS_HINT), "");
        FocusControlOf(list, ID_LINKS_LIST);
        Key(VK_END);
        EXPECT_TRUE(Until([&] { return Text(list, ID_LINKS_REMARK).starts_with("You must specify a Brivane"); }));
        Key(VK_INSERT);
        HWND box = windows.Wait("New link");
        Make(
            box,
            {{ID_LINK_ID, "NEW"}, {ID_LINK_ADDRESS, "\\\\X\\Y"}, {ID_LINK_ACCOUNT, "ANNA"}, {ID_LINK_REJECT, nullptr}});
        Key(VK_RETURN);
        EXPECT_TRUE(IsClosed(box));
        EXPECT_TRUE(Until([&] { return Selection(list, ID_LINKS_LIST) == 3; }));
        Key(VK_RETURN);
        box = windows.Wait("Link NEW");
        EXPECT_FALSE(IsEnabled(box, ID_LINK_FORGET));
        Key(VK_ESCAPE);
        EXPECT_TRUE(IsClosed(box));
        Key(VK_DELETE);
        EXPECT_TRUE(Until([&] { return Entries(list, ID_LINKS_LIST).size() == 3; }));
        Key(VK_HOME);
        Key(VK_DELETE);
        Click(windows.Wait("Where MUNICH is used"), IDOK);
        EXPECT_TRUE(Until([&] { return IsWindowEnabled(list) && Entries(list, ID_LINKS_LIST).size() == 2; }));
        FocusControlOf(list, ID_LINKS_LIST);
        Key(VK_ESCAPE);
        EXPECT_TRUE(Says("This will mean all changes will be lost.")) << "and it stays";
        Write(kLinks, Replaced(Links, "agent-fax@", "other@"));
        Click(list, IDOK);
        EXPECT_TRUE(Says("LINK.INI was changed by somebody else since it was opened here."));
        Write(kLinks, Replaced(Links, "LINKSHUTDOWN", "LINKUP"));
        Front.Said.clear();
        {
            const Blocked blocked(Server.Files().HostPath("B-DB\\Link.new"));
            Click(list, IDOK);
            EXPECT_TRUE(Says("error: File error: couldn't open")) << "and no question of what the server noted";
        }
        Click(list, IDOK);
        EXPECT_TRUE(IsClosed(list));
        EXPECT_THAT(File(kLinks), testing::AllOf(Not(HasSubstr("MUNICH")), HasSubstr("LocalLinkStatus: LINKUP")));
    });
    EXPECT_TRUE(IsDone);
}

TEST_F(LcrDialogs, ThePageOpensTheEditors) {
    WithPage([&](HWND dialog, HWND page, const Windows& windows) {
        EXPECT_EQ(Text(page, ID_LCR_GENERAL_STATE), "configured: LONDON");
        EXPECT_EQ(Text(page, ID_LCR_LINKS_STATE), "links: 3");
        EXPECT_THAT(Text(page, ID_LCR_RULES_STATE), StartsWith("rules: 5, can never decide: "));
        for (const int button : {ID_LCR_DISABLED, ID_LCR_ENABLED}) {
            Click(page, button);
            const bool isOn = button == ID_LCR_ENABLED;
            for (const int editor : {ID_LCR_GENERAL, ID_LCR_LINKS})
                EXPECT_TRUE(Until([&] { return IsEnabled(page, editor) == isOn; }));
        }
        const std::tuple<int, const char*, const char*> kEditors[] = {
            {ID_LCR_LINKS, "Links to remote servers", "links"},
            {ID_LCR_DESTINATIONS, "Destinations", "destinations"},
            {ID_LCR_RULES, "Routing rules", "rules"}};
        for (const auto& [button, title, what] : kEditors) {
            Click(page, button);
            const HWND opened = windows.Wait(title);
            EXPECT_THAT(FindLcrHolder().value_or(LcrHolder{}).Editor, what);
            Click(opened, IDCANCEL);
            EXPECT_TRUE(IsClosed(opened));
            EXPECT_TRUE(Until([] { return !IsLcrLocked(); })) << what;
        }
        {
            const auto held =
                platform::Files().Open(LcrLockPath(), {platform::Access::ReadWrite, platform::Deny::ReadingAndWriting});
            Click(page, ID_LCR_GENERAL);
            EXPECT_TRUE(Says("error: LCR settings are being edited by another user.  Please try again later"));
        }
        Front.Said.clear();
        const std::filesystem::path requests = std::filesystem::path(LcrLockPath()).parent_path();
        const std::filesystem::path away = requests.parent_path() / "away";
        std::filesystem::rename(requests, away);
        Click(page, ID_LCR_GENERAL);
        EXPECT_TRUE(Says("error: LCR settings are being edited by another user.  Please try again later"));
        EXPECT_TRUE(Says("status 2: The lock file " + LcrLockPath() + " cannot be used"));
        std::filesystem::rename(away, requests);
        Write(Replaced(Before, "[ROUTER]", "[ROUTES]"));
        Click(page, ID_LCR_GENERAL);
        HWND editor = windows.Wait("General settings");
        EXPECT_EQ(Text(editor, ID_ROUTER_WAN_POLL), "00:05");
        EXPECT_THAT(Text(editor, ID_ROUTER_INBOX), HasSubstr("SERVER\\LCRIN\\"));
        Click(editor, IDCANCEL);
        EXPECT_TRUE(Until([&] { return Text(page, ID_LCR_LINKS_STATE) == "needs general settings"; }));
        EXPECT_FALSE(IsEnabled(page, ID_LCR_LINKS));
        EXPECT_FALSE(Startup().SettingsChanged);
        Click(dialog, IDCANCEL);
    });
}

TEST_F(LcrDialogs, ThePageSwitchesRoutingOnWhenItIsReady) {
    const std::string off = Replaced(Before, "LCR: YES", "LCR: NO");
    const std::string rules = File(kRules);
    const std::tuple<std::string, const char*, std::string, int> kLacks[] = {
        {"[ROUTES]", nullptr, "You must configure the General Settings", ID_LCR_GENERAL},
        {"[ROUTER]", kLinks, "You must set up some links", ID_LCR_LINKS},
        {"[ROUTER]", "B-DB\\COUNTRY.INI", "You must set up some fax destination definitions", ID_LCR_DESTINATIONS},
    };
    for (const auto& [header, gone, said, focus] : kLacks) {
        Write(Replaced(off, "[ROUTER]", header));
        const std::string text = gone == nullptr ? "" : File(gone);
        if (gone != nullptr) DeleteFileA(Server.Files().Path(gone).c_str());
        WithPage([&](HWND dialog, HWND page, const Windows&) {
            Click(page, ID_LCR_ENABLED);
            Click(dialog, IDOK);
            EXPECT_TRUE(Says("error: " + said));
            EXPECT_TRUE(Until([&] { return FocusOf(page) == focus; })) << said;
            Front.Answer = true; // to lose the change
            Click(dialog, IDCANCEL);
            EXPECT_TRUE(IsClosed(dialog));
        });
        EXPECT_THAT(File(), HasSubstr("LCR: NO"));
        if (gone != nullptr) Write(gone, text);
    }
    Write(off);
    WithPage([&](HWND dialog, HWND page, const Windows&) {
        Click(page, ID_LCR_ENABLED);
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_THAT(File(), HasSubstr("LCR: YES"));
}

} // namespace
} // namespace bv::gui
