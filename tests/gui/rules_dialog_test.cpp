// The dialogs of the routing rules inside this process, on a copy of the sample server.
#include <windows.h>

#include <commctrl.h>

#include "gui/dialog_fixture.h"
#include "lcr/rule_list_dlg.h"
#include "resources/ids.h"
#include "support/texts.h"
#include "voice/format.h"

namespace bv::gui {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kTitle = "Routing rules";
constexpr const char* kLive = "B-DB\\LCRRULES.INI";
constexpr const char* kPending = "B-DB\\LCRRules.new";

class RuleDialogs : public DialogFixture {
  protected:
    RuleDialogs() : DialogFixture(kLive) {}

    // What the list ended with.
    bool WithList(const std::function<void(HWND, const Windows&)>& drive) {
        bool isDone = false;
        RunDriven([&] { isDone = EditRules(nullptr); },
                  [&](const Windows& windows) { drive(windows.Wait(kTitle), windows); });
        return isDone;
    }
    // The editor of the rule of a row, on a page; of a new one without.
    bool WithRule(int row, int page, const std::function<void(HWND box, HWND front)>& drive) {
        return WithList([&](HWND list, const Windows& windows) {
            if (row >= 0) Select(list, ID_RULES_LIST, row);
            Click(list, row >= 0 ? ID_RULES_EDIT : ID_RULES_NEW);
            const HWND box = windows.Wait(row >= 0 ? FormatText("Routing rule %d of 5", row + 1) : "New routing rule");
            GoToPage(box, page);
            drive(box, FrontPage(box));
            if (IsWindow(list)) Click(list, IDOK);
            Until([&] { return !IsWindow(list); });
        });
    }
    static void GoToPage(HWND box, int page) {
        SetForegroundWindow(box);
        while (SendTo(box, ID_RULE_PAGES, TCM_GETCURSEL) != page) {
            const LRESULT now = SendTo(box, ID_RULE_PAGES, TCM_GETCURSEL);
            Key(VK_TAB, VK_CONTROL);
            if (!Until([&] { return SendTo(box, ID_RULE_PAGES, TCM_GETCURSEL) != now; })) return;
        }
    }
};

std::vector<std::string> Column(HWND list, std::size_t column) {
    std::vector<std::string> cells;
    for (const std::string& row : Entries(list, ID_RULES_LIST)) {
        std::string rest = row;
        for (std::size_t i = 0; i < column; ++i) rest = rest.substr(rest.find('\t') + 1);
        cells.push_back(rest.substr(0, rest.find('\t')));
    }
    return cells;
}
bool Shows(HWND list, const std::vector<std::string>& numbers) {
    return Until([&] { return Column(list, 0) == numbers; });
}

TEST_F(RuleDialogs, AreWorkedByKeyboard) {
    const bool isDone = WithList([&](HWND list, const Windows& windows) {
        EXPECT_EQ(FocusOf(list), ID_RULES_LIST);
        EXPECT_EQ(Column(list, 1).at(1), "Long faxes to Leeds");
        EXPECT_EQ(Column(list, 2).at(1),
                  "Leeds, United Kingdom, Our stores, £ rate, United Kingdom; CLARA, NICO; 10 pages or "
                  "more");
        EXPECT_EQ(Column(list, 3).at(0), "MUNICH, (local server)");
        EXPECT_FALSE(IsEnabled(list, ID_RULES_UP) || IsEnabled(list, ID_RULES_APPLY));
        Key(VK_DOWN, VK_MENU);
        EXPECT_TRUE(Until([&] { return Selection(list, ID_RULES_LIST) == 1 && IsEnabled(list, ID_RULES_UP); }));
        EXPECT_EQ(Column(list, 1).at(0), "Long faxes to Leeds");
        EXPECT_THAT(File(kPending), HasSubstr("Revision: A\r\n\r\n[RULE]\r\nDescription: Long faxes to Leeds\r\n"));
        EXPECT_EQ(File(kLive), Before);
        Key('Z', VK_CONTROL);
        EXPECT_TRUE(Until([&] { return File(kPending) == "(none)"; }));
        EXPECT_EQ(Selection(list, ID_RULES_LIST), 0);
        Key(VK_DELETE);
        EXPECT_TRUE(Until([&] { return Column(list, 1).size() == 4; }));
        Key('F', VK_CONTROL);
        Type("night");
        EXPECT_TRUE(Until([&] { return Selection(list, ID_RULES_LIST) == 1; }));
        Key(VK_ESCAPE);
        EXPECT_TRUE(Until([&] { return Text(list, ID_RULES_SEARCH).empty(); }));
        FocusControlOf(list, ID_RULES_LIST);
        Key(VK_RETURN);
        HWND box = windows.Wait("Routing rule 2 of 4");
        Key(VK_NEXT, VK_MENU);
        EXPECT_EQ(windows.Wait("Routing rule 3 of 4"), box);
        EXPECT_TRUE(Until([&] { return Text(box, ID_RULE_DESCRIPTION) == "Overseas, evenings and weekends"; }));
        Type("Overseas");
        Key(VK_RETURN);
        EXPECT_TRUE(Until([&] { return !IsWindow(box) && Selection(list, ID_RULES_LIST) == 2; }));
        EXPECT_EQ(Column(list, 1).at(2), "Overseas");
        Key(VK_ESCAPE);
        EXPECT_TRUE(Says("ask warning: This will mean all changes will be lost.  Lose changes?"));
        EXPECT_TRUE(IsEnabled(list, ID_RULES_APPLY));
        Click(list, ID_RULES_APPLY);
        EXPECT_TRUE(Until([&] { return File(kPending) == "(none)" && !IsEnabled(list, ID_RULES_APPLY); }));
        EXPECT_THAT(File(kLive), HasSubstr("Description: Overseas\r\n"));
        FocusControlOf(list, ID_RULES_LIST);
        Key(VK_DELETE);
        EXPECT_TRUE(Until([&] { return File(kPending) != "(none)"; }));
        Front.Answer = true;
        Key(VK_ESCAPE);
        EXPECT_TRUE(Until([&] { return !IsWindow(list); }));
    });
    EXPECT_FALSE(isDone);
    EXPECT_EQ(File(kPending), "(none)");
    EXPECT_THAT(File(kLive), HasSubstr("Description: Overseas\r\nCountry: US\r\n"));
}

TEST_F(RuleDialogs, MarkFilterAndTry) {
    Server.Files().Write(kLive, Before + "[RULE]\r\nDescription: Dead\r\nArea: UK/LDS\r\nUser: NICO\r\nSize: PAGES GE "
                                         "20\r\nServer: MUNICH\r\n\r\n[RULE]\r\nDescription: Lost\r\nUser: "
                                         "ZOE\r\nServer: *\r\n\r\n");
    WithList([&](HWND list, const Windows& windows) {
        EXPECT_TRUE(Says("warning: Some Destinations, Servers or Users"));
        EXPECT_TRUE(Shows(list, {"1", "2", "3", "4", "5", "6 x", "7 !"}));
        Select(list, ID_RULES_LIST, 5);
        EXPECT_TRUE(Until([&] { return Text(list, ID_RULES_REMARK).starts_with("Rule 2, \"Long faxes to Leeds\""); }));
        Click(list, ID_RULES_SET_FILTER);
        const HWND box = windows.Wait("Filter");
        SetTextOf(box, ID_FILTER_USER, "BEN");
        SetTextOf(box, ID_FILTER_PAGES, "x");
        Click(box, IDOK);
        EXPECT_TRUE(Says("error: Pages: \"x\""));
        SetTextOf(box, ID_FILTER_PAGES, "(any)");
        Click(box, IDOK);
        EXPECT_TRUE(Shows(list, {"1", "2", "3", "4", "5 *", "6 x", "7 !"}));
        EXPECT_EQ(Text(list, ID_RULES_FILTER_TEXT), "has a size, user BEN: 1 of 7");
        Click(list, ID_RULES_SHOW_FILTERED);
        EXPECT_TRUE(Shows(list, {"5 *"}));
        EXPECT_FALSE(IsEnabled(list, ID_RULES_UP));
        Click(list, ID_RULES_SHOW_ALL);
        EXPECT_TRUE(Shows(list, {"1", "2", "3", "4", "5", "6 x", "7 !"}));

        SetTextOf(list, ID_RULES_TRY_PAGES, "30");
        SetTextOf(list, ID_RULES_TRY_USER, "nico");
        SetTextOf(list, ID_RULES_TRY_NUMBER, "UK/LDS");
        EXPECT_TRUE(Shows(list, {"1", "2 >", "3", "4", "5", "6 x", "7 !"}));
        EXPECT_EQ(Text(list, ID_RULES_RESULT),
                  "Rule 2 \"Long faxes to Leeds\" decides: server LEEDS sends the fax. Predicted from the rules alone");
        Select(list, ID_RULES_LIST, 0);
        EXPECT_TRUE(Until([&] {
            return Text(list, ID_RULES_REMARK) ==
                   "Rule 1 does not take the fax that is tried: none of the rule's destinations covers it";
        }));
        SetTextOf(list, ID_RULES_TRY_NUMBER, "nowhere");
        EXPECT_TRUE(
            Until([&] { return Text(list, ID_RULES_RESULT) == "\"nowhere\" is no number and no destination."; }));
        Click(list, IDOK); // the lost user counts as a change
        EXPECT_TRUE(Says("These rules have lost their last destination, user or server"));
        EXPECT_TRUE(IsWindow(list));
        Front.Answer = true;
        Click(list, IDCANCEL);
        EXPECT_TRUE(Until([&] { return !IsWindow(list); }));
    });
    std::string setup = Server.Files().Read("B-DB\\SETUP.INI");
    Server.Files().Write("B-DB\\SETUP.INI", test::Replaced(setup, "Offpeak:", "Onpeak:"));
    Server.Files().Write(kLive, Before);
    WithList([&](HWND list, const Windows&) {
        EXPECT_TRUE(Says("Unable to determine system Offpeak time.  Rule filtering will not be available"));
        for (const int control : {ID_RULES_SHOW_MARKED, ID_RULES_SHOW_FILTERED, ID_RULES_SET_FILTER})
            EXPECT_FALSE(IsEnabled(list, control));
    });
}

TEST_F(RuleDialogs, PagesChangeTheirLinesAndNothingElse) {
    const struct {
        int Row;
        int Page;
        std::vector<Entry> Entries;
        int List; // a row of it is selected first
        int Selected;
        std::string From;
        std::string To;
    } kCases[] = {
        {0, 1, {{ID_RULE_PLACES_REMOVE, nullptr}}, ID_RULE_PLACES_CHOSEN, 0, "Region: ALPS\r\n", ""},
        {0,
         1,
         {{ID_RULE_PLACES_TAKE, nullptr}},
         ID_RULE_PLACES_AVAILABLE,
         0,
         "Country: DE\r\n",
         "Region: HOME\r\nCountry: DE\r\n"},
        {2, 2, {{ID_PRIORITY_BACKGROUND, nullptr}}, 0, 0, "Priority: BACKGROUND\r\n", ""},
        {2, 2, {{ID_PRIORITY_URGENT, nullptr}}, 0, 0, "Priority: NORMAL\r\nPriority: BACKGROUND\r\n", ""},
        {1, 3, {{ID_RULE_USERS_REMOVE, nullptr}}, ID_RULE_USERS_CHOSEN, 0, "User: CLARA\r\n", ""},
        {2, 4, {{ID_RULE_TIME_PEAK, nullptr}}, 0, 0, "OFFPEAK", "PEAK"},
        {3,
         4,
         {{ID_RULE_TIME_DAYS, nullptr}, {ID_RULE_AFTER_HOUR, "9"}},
         0,
         0,
         "SAT SUN AFTER 18:00 BEFORE 08:00",
         "MON SAT SUN AFTER 09:00 BEFORE 08:00 "},
        {1, 5, {{ID_RULE_SIZE_LARGE_PAGES, "100"}}, 0, 0, "GE 10", "GE 100"},
        {4, 5, {{ID_RULE_SIZE_LARGE, nullptr}, {ID_RULE_SIZE_LARGE_PAGES, "1"}}, 0, 0, "Size: PAGES LE 2\r\n", ""},
        {4,
         6,
         {{ID_SERVERS_ALL, nullptr}},
         0,
         0,
         "URGENT\r\nServer: *",
         "URGENT\r\nServer: MUNICH\r\nServer: LEEDS\r\nServer: AGENT\r\nServer: *"},
    };
    for (const auto& [row, page, entries, list, selected, from, to] : kCases) {
        Server.Files().Write(kLive, Before);
        EXPECT_TRUE(WithRule(row, page, [&, list = list, selected = selected](HWND box, HWND front) {
            if (list != 0) Select(front, list, selected);
            Make(front, entries);
            Click(box, IDOK);
            EXPECT_TRUE(Until([&] { return !IsWindow(box); })) << to;
            Front.Answer = true; // so that no dialog stays
        }));
        std::string after = Before;
        EXPECT_EQ(File(kLive), after.replace(after.find(from), from.size(), to));
    }
    Server.Files().Write(kLive, Before);
    for (int page = 0; page < 7; ++page)
        WithRule(page % 5, page, [&](HWND box, HWND) {
            Click(box, IDOK);
            EXPECT_TRUE(Until([&] { return !IsWindow(box); }));
        });
    EXPECT_EQ(File(kLive), Before) << "looked at and ended with OK";
}

TEST_F(RuleDialogs, FaultsKeepThePageAndGetTheFocus) {
    const struct {
        int Page;
        std::vector<Entry> Entries;
        std::string Description;
        std::string Said;
        int Focus;
    } kFaults[] = {
        {1,
         {},
         "x",
         "error: Invalid rule - you must select some message criteria, or some remote servers",
         ID_RULE_PLACES_AVAILABLE},
        {2,
         {{ID_PRIORITY_ONLY, nullptr}, {ID_PRIORITY_URGENT, nullptr}},
         "x",
         "error: You must select some remote servers",
         ID_SERVERS_LIST},
        {6,
         {{ID_SERVERS_ALL, nullptr}},
         "x",
         "confirm warning: You have not selected any message criteria.",
         ID_RULE_PLACES_AVAILABLE},
        {4,
         {{ID_RULE_TIME_SPECIFIC, nullptr}, {ID_RULE_AFTER_HOUR, "24"}, {ID_RULE_AFTER_MINUTE, "0"}},
         "x",
         "error: AFTER: \"24\"",
         ID_RULE_AFTER_HOUR},
        {4, {{ID_RULE_TIME_SPECIFIC, nullptr}}, "x", "error: Time: choose some days", ID_RULE_TIME_DAYS},
        {5,
         {{ID_RULE_SIZE_SMALL, nullptr}, {ID_RULE_SIZE_SMALL_PAGES, "101"}},
         "x",
         "error: Pages: \"101\"",
         ID_RULE_SIZE_SMALL_PAGES},
    };
    for (const auto& [page, entries, description, said, focus] : kFaults) {
        Front.Said.clear();
        WithRule(-1, page, [&, focus = focus](HWND box, HWND front) {
            SetTextOf(box, ID_RULE_DESCRIPTION, description);
            Make(front, entries);
            Click(box, IDOK);
            EXPECT_TRUE(Until([&] { return !Front.Said.empty() && FocusOf(FrontPage(box)) == focus; })) << said;
            EXPECT_TRUE(Says(said)) << said;
            Front.Answer = true;
            Click(box, IDCANCEL);
            EXPECT_TRUE(Until([&] { return !IsWindow(box); }));
            Front.Answer = false;
        });
        EXPECT_EQ(File(kLive), Before);
    }
    WithRule(0, 0, [&](HWND box, HWND) {
        SetTextOf(box, ID_RULE_DESCRIPTION, "EUROPE AT NIGHT");
        Click(box, ID_RULE_NEXT);
        EXPECT_TRUE(Says("ask question: Keep changes to this rule?")) << "No goes on without them";
        EXPECT_TRUE(Until([&] { return Text(box, ID_RULE_DESCRIPTION) == "Long faxes to Leeds"; }));
        SetTextOf(box, ID_RULE_DESCRIPTION, "EUROPE AT NIGHT");
        Front.Said.clear();
        Click(box, IDOK);
        EXPECT_TRUE(Says("error: This description is in use already.  Please enter a unique description"));
        EXPECT_TRUE(Until([&] { return FocusOf(box) == ID_RULE_DESCRIPTION; }));
        Front.Answer = true;
        Click(box, IDCANCEL);
        EXPECT_TRUE(Until([&] { return !IsWindow(box); }));
    });
    EXPECT_EQ(File(kLive), Before);
}

} // namespace
} // namespace bv::gui
