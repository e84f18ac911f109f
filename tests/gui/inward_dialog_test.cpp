// The dialogs of inward routing inside this process, on a copy of the sample server.
#include <windows.h>

#include "gui/dialog_fixture.h"
#include "resources/ids.h"
#include "routing/inward_dlg.h"

namespace bv::gui {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kTitle = "Brivane - automatic inward routing";
constexpr const char* kRouting = "B-DB\\ROUTING.INI";

class InwardDialogs : public DialogFixture {
  protected:
    InwardDialogs() : DialogFixture(kRouting) {}

    void WithList(const std::function<void(HWND, const Windows&)>& drive) {
        RunDriven([] { ConfigureRouting(nullptr); },
                  [&](const Windows& windows) { drive(windows.Wait(kTitle), windows); });
    }
    // The box of a rule of a kind, by its row; of a new one without.
    void WithBox(int kind, int row, const std::function<void(HWND list, HWND box)>& drive) {
        WithList([&](HWND list, const Windows& windows) {
            SendTo(list, kind, BM_CLICK);
            Until([&] { return IsEnabled(list, ID_INWARD_EDIT); });
            if (row >= 0) Select(list, ID_INWARD_LIST, row);
            Click(list, row >= 0 ? ID_INWARD_EDIT : ID_INWARD_ADD);
            const std::string what = kind == ID_INWARD_SENDERS         ? "sender rule"
                                     : kind == ID_INWARD_SUB_ADDRESSES ? "sub-address rule"
                                                                       : "forwarding rule";
            std::string title = row >= 0 ? what : "Add new " + what;
            title[0] = static_cast<char>(std::toupper(title[0]));
            drive(list, windows.Wait(title));
        });
    }
};

bool Counts(HWND list, const std::string& text) {
    return Until([&] { return Text(list, ID_INWARD_COUNT) == text; });
}

TEST_F(InwardDialogs, AreWorkedByKeyboard) {
    WithList([&](HWND list, const Windows& windows) {
        EXPECT_TRUE(Counts(list, "5 of 5 shown, 1 selected"));
        EXPECT_EQ(Text(list, ID_INWARD_FORWARDS), "&Forwarding (3)");
        EXPECT_THAT(Entries(list, ID_INWARD_LIST), Contains("+33 199 00 55 66\tAtelier Exemple\t(no rules)\t\t"));
        FocusControlOf(list, ID_INWARD_SENDERS);
        Key(VK_DOWN);
        EXPECT_TRUE(Counts(list, "4 of 4 shown, 1 selected"));
        FocusControlOf(list, ID_INWARD_LIST);
        Key(VK_INSERT);
        HWND box = windows.Wait("Add new sub-address rule");
        Type("*7");
        Key(VK_TAB);
        Type("ben");
        Key(VK_RETURN);
        EXPECT_TRUE(Counts(list, "5 of 5 shown, 1 selected"));
        EXPECT_EQ(Selection(list, ID_INWARD_LIST), 4);
        EXPECT_THAT(File(), HasSubstr("\r\n\\*7: BEN\r\n"));
        for (const WORD key : {WORD{VK_RETURN}, WORD{VK_F2}}) {
            Key(key);
            box = windows.Wait("Sub-address rule");
            EXPECT_EQ(Text(box, ID_SUB_ADDRESS), "*7");
            Key(VK_ESCAPE);
            EXPECT_TRUE(Until([&] { return !IsWindow(box); }));
        }
        Key(VK_DELETE);
        EXPECT_TRUE(Says("Deleting sub-address rule *7 - to BEN"));
        EXPECT_TRUE(Counts(list, "5 of 5 shown, 1 selected")) << "although the answer was No";
        Front.Answer = true;
        Key(VK_DELETE);
        EXPECT_TRUE(Counts(list, "4 of 4 shown, 1 selected"));
        EXPECT_THAT(File(), Not(HasSubstr("*7")));

        Write("[BRIVANE]\r\nType: RoutingInit\r\nRevision: A\r\n[FORWARD]\r\n");
        Key(VK_F5);
        EXPECT_TRUE(Says("No Sub-address rules in routing file."));
        EXPECT_TRUE(IsEnabled(list, ID_INWARD_ADD)) << "the first rule makes the paragraph";
        Write("[OTHER]\r\n");
        Key(VK_F5);
        EXPECT_TRUE(Counts(list, "The list could not be read. F5 reads it again"));
        EXPECT_FALSE(IsEnabled(list, ID_INWARD_ADD));
    });
}

TEST_F(InwardDialogs, TellWhoGetsAFaxAndWhatWillNotWork) {
    Server.Files().Write("B-DB\\SETUP.INI",
                         Server.Files().Read("B-DB\\SETUP.INI") + "\r\n[QUEUEMAN]\r\nRouteSubAddr: NO\r\n");
    Write(Before + "\r\n[FORWARD]\r\n");
    WithList([&](HWND list, const Windows&) {
        SetTextOf(list, ID_INWARD_TRY_SENDER, "44 20 79460150");
        EXPECT_TRUE(Until([&] { return Text(list, ID_INWARD_RESULT) == "By sender: RECEPT."; }));
        SetTextOf(list, ID_INWARD_TRY_ADDRESSEE, "anna");
        SetTextOf(list, ID_INWARD_TRY_SUB_ADDRESS, "102");
        EXPECT_TRUE(Until([&] { return Text(list, ID_INWARD_RESULT) == "By sub-address 102: BEN. By sender: EVA."; }));
        SetTextOf(list, ID_INWARD_FILTER, "no such user");
        EXPECT_TRUE(Counts(list, "Nothing fits the filter \"no such user\""));
        std::string users = Server.Files().Read("B-DB\\USERLIST.INI");
        Server.Files().Write("B-DB\\USERLIST.INI", users.replace(users.find("Name: NICO"), 10, "Name: NICK"));
        SendMessageA(list, WM_ACTIVATE, WA_ACTIVE, 0);
        EXPECT_TRUE(Counts(list, "1 of 5 shown, 1 selected"));
        EXPECT_THAT(Entries(list, ID_INWARD_LIST), Contains(HasSubstr("\tNICO\tno such user NICO")));
        EXPECT_EQ(Text(list, ID_INWARD_UNUSED), "");
    });
}

TEST_F(InwardDialogs, BoxesChangeTheirLinesAndNothingElse) {
    const struct {
        int Kind;
        int Row;
        std::vector<Entry> Entries;
        std::string From;
        std::string To;
    } kCases[] = {
        {ID_INWARD_SENDERS,
         3,
         {{ID_SENDER_ORGANISATION, "Grange"}, {ID_SENDER_ADDRESSEE, "(unaddressed)"}, {ID_SENDER_USER, "eva"}},
         "\"Grange Works\"\r\nFRANK: NICO\r\n",
         "\"Grange\"\r\n\\(unaddressed): EVA\r\n"},
        {ID_INWARD_SENDERS, 3, {{ID_SENDER_ID, "Works 2"}}, "@GRANGEWORKS: \"GRANGE WORKS\"", "@WORKS2: \"Works 2\""},
        {ID_INWARD_SENDERS,
         4,
         {{ID_SENDER_ADDRESSEE, "@sales"}, {ID_SENDER_USER, "BEN"}},
         "\"Atelier Exemple\"\r\n",
         "\"Atelier Exemple\"\r\n\\@SALES: BEN\r\n"},
        {ID_INWARD_SUB_ADDRESSES, 1, {{ID_SUB_ADDRESS, "103"}, {ID_SUB_ADDRESS_USER, "EVA"}}, "102: BEN", "103: EVA"},
        {ID_INWARD_FORWARDS,
         0,
         {{ID_FORWARD_TARGET, "EVA"}, {ID_FORWARD_COPY, nullptr}},
         "\"FRANK\" DELETE",
         "\"EVA\" "},
        {ID_INWARD_FORWARDS,
         1,
         {{ID_FORWARD_USER, "ben"}, {ID_FORWARD_MOVE, nullptr}},
         "temp1: \"\" LAN-ANY \"RECEPT\" ",
         "BEN: \"\" LAN-ANY \"RECEPT\" DELETE"},
    };
    for (const auto& [kind, row, entries, from, to] : kCases) {
        Write(Before);
        WithBox(kind, row, [&](HWND, HWND box) {
            Make(box, entries);
            Click(box, IDOK);
            EXPECT_TRUE(Until([&] { return !IsWindow(box); })) << to;
        });
        std::string after = Before;
        EXPECT_EQ(File(), after.replace(after.find(from), from.size(), to));
    }
}

TEST_F(InwardDialogs, FaultsKeepTheBoxAndGetTheFocus) {
    const struct {
        int Kind;
        std::vector<Entry> Entries;
        std::string Said;
        int Focus;
    } kFaults[] = {
        {ID_INWARD_SENDERS, {{ID_SENDER_ID, "+"}}, "error: Sender identifier: \"+\" - ", ID_SENDER_ID},
        {ID_INWARD_SENDERS, {{ID_SENDER_ID, "Ж"}}, "error: \"?\" holds characters", ID_SENDER_ID},
        {ID_INWARD_SENDERS,
         {{ID_SENDER_ID, "1"}, {ID_SENDER_ORGANISATION, "a\"b"}},
         "error: Organisation: ",
         ID_SENDER_ORGANISATION},
        {ID_INWARD_SENDERS,
         {{ID_SENDER_ID, "1"}, {ID_SENDER_ADDRESSEE, "zoe"}},
         "error: Brivane user zoe not found",
         ID_SENDER_ADDRESSEE},
        {ID_INWARD_SENDERS, {{ID_SENDER_ID, "1"}}, "error: Brivane user  not found", ID_SENDER_USER},
        {ID_INWARD_SUB_ADDRESSES, {}, "error: Sub-address: please enter one.", ID_SUB_ADDRESS},
        {ID_INWARD_SUB_ADDRESSES,
         {{ID_SUB_ADDRESS, "101"}, {ID_SUB_ADDRESS_USER, "BEN"}},
         "ask question: There is a rule for 101 already: it routes to ANNA.",
         ID_SUB_ADDRESS},
        {ID_INWARD_FORWARDS,
         {{ID_FORWARD_USER, "BEN"}, {ID_FORWARD_TARGET, "BEN"}},
         "error: Forward to: \"BEN\"",
         ID_FORWARD_TARGET},
        {ID_INWARD_FORWARDS,
         {{ID_FORWARD_USER, "LENA"}, {ID_FORWARD_TARGET, "BEN"}},
         "ask question: File ",
         ID_FORWARD_USER},
    };
    for (const auto& [kind, entries, said, focus] : kFaults) {
        Front.Said.clear();
        WithBox(kind, -1, [&](HWND, HWND box) {
            Make(box, entries);
            Click(box, IDOK);
            EXPECT_TRUE(Until([&] { return !Front.Said.empty() && FocusOf(box) == focus; })) << said;
            EXPECT_TRUE(Says(said)) << said;
            Click(box, IDCANCEL);
        });
        EXPECT_EQ(File(), Before);
    }
}

TEST_F(InwardDialogs, TheSendersBoxKnowsWhoIsThere) {
    WithBox(ID_INWARD_SENDERS, -1, [&](HWND, HWND box) {
        EXPECT_EQ(Text(box, ID_SENDER_ADDRESSEE), "(unaddressed)");
        SetTextOf(box, ID_SENDER_ID, "grange-works");
        EXPECT_TRUE(Until([&] { return Text(box, ID_SENDER_ORGANISATION) == "Grange Works"; }));
        EXPECT_EQ(Text(box, ID_SENDER_FILED), "filed as GRANGEWORKS, as is GRANGE WORKS");
        SetTextOf(box, ID_SENDER_ID, "grange-works 2");
        EXPECT_TRUE(Until([&] { return Text(box, ID_SENDER_ORGANISATION).empty(); }));
    });
    for (const int row : {0, 4}) { // a rule, and a record without any
        WithBox(ID_INWARD_SENDERS, row, [&](HWND, HWND box) {
            Click(box, IDOK);
            EXPECT_TRUE(Until([&] { return !IsWindow(box); }));
        });
    }
    EXPECT_EQ(File(), Before);
    EXPECT_FALSE(Startup().SettingsChanged);
}

} // namespace
} // namespace bv::gui
