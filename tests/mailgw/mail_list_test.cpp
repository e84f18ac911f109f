// The mail list: its bytes before, one action, what it says, its bytes after.
#include "mailgw/mail_list.h"

#include <random>

#include <gmock/gmock.h>

#include "mailgw/list_texts.h"
#include "mailgw/mail_actions.h"
#include "shell/startup.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "users/user_actions.h"

namespace bv {
namespace {

using test::ListEntry;
using test::MemoryServer;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

const std::string kTemporary = "F:\\BRIVANE\\B-DB\\MAILLIST.TMP";
const std::string kUsers = "F:\\BRIVANE\\B-DB\\USERLIST.INI";
const std::string kPrevented = test::Prevented("ANN");

const std::string kRich =
    "[user] of Ann\n Brivname: NONE\r\nprintsent:YES\r\nSubAddr: 7\nEmailname:  Kay K\t\r\n; hers\r\n"
    "Colour: \x01red\r\nPrintRecd: NO  \r\nEmailBrivname: PROF\r\nBrivname: OLD\r\n";
const std::string kHead = "[BRIVANE]\r\nType: x\n\n";

class MailList : public testing::Test {
  protected:
    MailList() {
        server_.Load();
        server_.Put(kUsers, "[USER]\r\nName: (def)\r\nMailName: *\r\n[USER]\r\nName: ANN\r\nMailName: a*\r\n"
                            "[USER]\r\nName: Prof\r\nMailName:  *sales\r\n[GROUP]\r\nName: GRP\r\nMailName: *\r\n"
                            "[USER]\r\nName: BOX\r\nMailName: (x\r\n[USER]\r\nName: box\r\nMailName: *\r\n");
        Startup().SettingsChanged = false;
        MustDisableInMailSystem() = false;
    }
    ~MailList() override { Startup() = {}; }

    MemoryServer server_;
};

TEST_F(MailList, AddingKeepsTheOrderOfBytesAndEverythingElse) {
    const struct {
        std::string Before;
        std::string User;
        std::string Email;
        std::string After;
    } rows[] = {
        {"(none)", "ANN", "b", ListEntry("ANN", "b")},
        {"", "PROF", "b", ListEntry("PROF", "b", "Profile: YES\r\n")},
        {"", "grp", "b", ListEntry("grp", "b")}, // a group is no user
        {"", "BOX", "b", ListEntry("BOX", "b")},
        {"", "(DEF)", "b", ListEntry("(DEF)", "b", "Profile: YES\r\n")},
        {ListEntry("X", "b"), "ANN", "A", ListEntry("ANN", "A") + ListEntry("X", "b")},
        {ListEntry("X", "A") + ListEntry("X", "b"), "ANN", "a",
         ListEntry("X", "A") + ListEntry("ANN", "a") + ListEntry("X", "b")},
        {ListEntry("X", "b") + ListEntry("Y", "c"), "ANN", "b",
         ListEntry("X", "b") + ListEntry("ANN", "b") + ListEntry("Y", "c")},
        {ListEntry("X", "z"), "ANN", "\xE4",
         ListEntry("X", "z") + ListEntry("ANN", "\xE4")}, // bytes above 127 come last
        // the first that is greater counts, also in a list out of order; other paragraphs stay with what is before them
        {kHead + ListEntry("X", "m") + "[OTHER]\r\nk: v\n" + ListEntry("X", "z") + ListEntry("X", "c"), "ANN", "n",
         kHead + ListEntry("X", "m") + "[OTHER]\r\nk: v\n" + ListEntry("ANN", "n") + ListEntry("X", "z") +
             ListEntry("X", "c")},
        {"[USER]\r\nBrivname: no mail name\r\n[USER]\r\nEmailname: c", "ANN", "d",
         "[USER]\r\nBrivname: no mail name\r\n[USER]\r\nEmailname: c\r\n" + ListEntry("ANN", "d")},
    };
    for (const auto& [before, user, email, after] : rows) {
        server_.Files.Delete(test::kMailList);
        if (before != "(none)") server_.Put(test::kMailList, before);
        EXPECT_TRUE(AddMailUser(user, email)) << after;
        EXPECT_EQ(server_.Get(test::kMailList), after);
        EXPECT_EQ(server_.Get(kTemporary), "(none)");
        EXPECT_THAT(server_.Front.TakeSaid(), IsEmpty());
    }
    EXPECT_FALSE(AddMailUser("", "b"));
    EXPECT_FALSE(AddMailUser("ANN", ""));
}

TEST_F(MailList, ReplacingCarriesAlongWhatIsTheGateways) {
    const std::string carried =
        "EmailBrivname: PROF\r\nProfile: NO\r\nSubAddr: 7\r\nPrintRecd: NO\r\nPrintSent: YES\r\n";
    const struct {
        std::string Before;
        std::string User;
        std::string Email;
        std::string After;
        Texts Said;
    } rows[] = {
        {kHead + kRich + ListEntry("X", "x"), "ANN", "Z", kHead + ListEntry("ANN", "Z", carried) + ListEntry("X", "x"),
         Texts{kPrevented}},
        {ListEntry("X", "a") + kRich, "ANN", "Z", ListEntry("ANN", "Z", carried) + ListEntry("X", "a"), {kPrevented}},
        {kRich + ListEntry("X", "z"), "ANN", "zz", ListEntry("X", "z") + ListEntry("ANN", "zz", carried), {kPrevented}},
        {kRich + "[USER]\r\nEmailname: z", "ANN", "zz", "[USER]\r\nEmailname: z\r\n" + ListEntry("ANN", "zz", carried),
         Texts{kPrevented}},
        {kHead + kRich, "ANN", "Z", kHead + ListEntry("ANN", "Z", carried), {kPrevented}},
        // the first of that name alone
        {kRich + ListEntry("X", "KAY K"),
         "ANN",
         "Z",
         ListEntry("X", "KAY K") + ListEntry("ANN", "Z", carried),
         {kPrevented}},
        {ListEntry("X", "x"), "ANN", "Z", ListEntry("ANN", "Z") + ListEntry("X", "x"), {}}, // not there
        {kRich, "(def)", "Z", kRich, {"error: Not allowed to delete default user (def)"}},
    };
    for (const auto& [before, user, email, after, said] : rows) {
        server_.Put(test::kMailList, before);
        EXPECT_EQ(AddMailUser(user, email, "kay k"), user == "ANN");
        EXPECT_EQ(server_.Get(test::kMailList), after);
        EXPECT_THAT(server_.Front.TakeSaid(), ElementsAreArray(said));
    }
}

TEST_F(MailList, DeletingTakesTheFirstRecordOfTheName) {
    const std::string head = kHead + "[USER]\r\nBrivname: without a name\r\n";
    const std::string list = head + kRich + "[OTHER]\r\n" + ListEntry("Y", "kay k");
    const struct {
        std::string User;
        std::string Email;
        MailListOutcome Outcome;
        std::string After;
        Texts Said;
    } rows[] = {
        {"ANN", "KAY K", MailListOutcome::Done, head + "[OTHER]\r\n" + ListEntry("Y", "kay k"), {kPrevented}},
        {"ANN", "KAY", MailListOutcome::NotListed, list,
         Texts{"error: User: 'KAY' (ANN)\n\nThis user must be disabled using the mail system"}},
        {"ANN", "", MailListOutcome::NotListed, list,
         Texts{"error: User: '' (ANN)\n\nThis user must be disabled using the mail system"}},
        {"ANN", "Kay\tK", MailListOutcome::NotListed, list,
         Texts{"error: User: 'Kay' (ANN)\n\nThis user must be disabled using the mail system"}},
        {"(x)", "KAY K", MailListOutcome::Failed, list, {"error: Not allowed to delete default user (x)"}},
    };
    for (const auto& [user, email, outcome, after, said] : rows) {
        server_.Put(test::kMailList, list);
        MustDisableInMailSystem() = false;
        EXPECT_EQ(RemoveMailUser(user, email), outcome);
        EXPECT_EQ(server_.Get(test::kMailList), after);
        EXPECT_THAT(server_.Front.TakeSaid(), ElementsAreArray(said));
        EXPECT_EQ(MustDisableInMailSystem(), outcome == MailListOutcome::NotListed);
    }
    server_.Files.Delete(test::kMailList);
    EXPECT_FALSE(DeleteMailUser("ANN", "KAY K"));
    EXPECT_THAT(server_.Front.TakeSaid(), IsEmpty());
}

TEST_F(MailList, CountsByTheEffectiveServerUser) {
    const auto mapped = [](const std::string& to, const std::string& profile) {
        return ListEntry("ANN", "e", "EmailBrivname: " + to + "\r\n" + profile);
    };
    server_.Put(test::kMailList, ListEntry("ann", "a") + mapped("PROF", "Profile: YES\r\n") +
                                     mapped("PROF", "Profile: off\r\n") + mapped("(none)", "Profile: on\r\n") +
                                     mapped("PROF", "Profile:\r\n") + mapped("PROF", "Profile: perhaps\r\n") +
                                     mapped("PROF", "") + "[USER]\r\n" + ListEntry("ANNA", "x") +
                                     "[GROUP]\r\nBrivname: ANN\r\n");
    EXPECT_EQ(CountMailUsers("Ann"), 5U);
    EXPECT_EQ(CountMailUsers("prof"), 2U);
    EXPECT_EQ(CountMailUsers("AN"), 0U);
    server_.Files.Delete(test::kMailList);
    EXPECT_EQ(CountMailUsers("ANN"), 0U);
}

TEST_F(MailList, TheUpgradeGivesEveryRecordAProfile) {
    const std::string later = "[USER]\r\nEmailname: z\r\nProfile: YES\r\nBrivname: ANN\r\n\r\n; next\r\n";
    const std::string nobody = "[USER]\r\nEmailBrivname: prof\r\nEmailname: q\r\n\r\n[OTHER]\r\nProfile: ?\n";
    const std::string before = kHead + kRich + later + nobody + "[USER]\r\nBrivname: PROF";
    const std::string after =
        kHead + "[user] of Ann\nBrivname: OLD\r\nEmailname: Kay K\r\nEmailBrivname: PROF\r\nProfile: NO\r\n"
                "SubAddr: 7\r\nPrintRecd: NO\r\nPrintSent: YES\r\n Brivname: NONE\r\n; hers\r\nColour: \x01red\r\n\r\n"
                "[USER]\r\nBrivname: ANN\r\nEmailname: z\r\nProfile: NO\r\n\r\n; next\r\n\r\n"
                "[USER]\r\nBrivname: \r\nEmailname: q\r\nEmailBrivname: prof\r\nProfile: YES\r\n\r\n"
                "[OTHER]\r\nProfile: ?\n[USER]\r\nBrivname: PROF\r\nEmailname: \r\nProfile: YES\r\n\r\n";
    const std::pair<std::string, std::string> rows[] = {
        {before, after}, {after, after}, {later + kRich, later + kRich}, // the first has it
        {kHead, kHead},  {"", ""},
    };
    for (const auto& [text, upgraded] : rows) {
        server_.Put(test::kMailList, text);
        EXPECT_TRUE(UpgradeMailList());
        EXPECT_EQ(server_.Get(test::kMailList), upgraded);
    }
    server_.Files.Delete(test::kMailList);
    EXPECT_FALSE(UpgradeMailList());
    EXPECT_THAT(server_.Front.TakeSaid(), ElementsAre("error: Unable to create file " + test::kMailList));
}

// Changes of different e-mail names in one rewrite give what they give one by one, also in a list out of order.
TEST_F(MailList, TakesManyChangesAtOnce) {
    std::mt19937 random(4712);
    const std::string names = "abcdefgh";
    for (int round = 0; round < 100; ++round) {
        std::string before = kHead;
        for (int i = 0; i < 6; ++i)
            before += ListEntry("X", std::string(1, names[random() % 8]), "SubAddr: 7\r\n; note\r\n");
        std::vector<std::string> fresh;
        for (int i = 0; i < 4; ++i) fresh.push_back({"ABxy"[random() % 4], "+-"[random() % 2]});
        const auto name = [&](std::size_t i) { return std::string_view(names).substr(i, 1); };
        const MailUserChange changes[] = {{"ANN", {}, fresh[0]},
                                          {"PROF", name(random() % 2), fresh[1]},
                                          {"ANN", name(2 + random() % 2), {}},
                                          {"BOX", name(4 + random() % 2), fresh[2]},
                                          {"ANN", {}, fresh[3]}};
        server_.Put(test::kMailList, before);
        for (const MailUserChange& change : changes) ChangeMailUsers({&change, 1});
        const std::string oneByOne = server_.Get(test::kMailList);
        const Texts said = server_.Front.TakeSaid();
        server_.Put(test::kMailList, before);
        ChangeMailUsers(changes);
        ASSERT_EQ(server_.Get(test::kMailList), oneByOne) << before;
        EXPECT_THAT(server_.Front.TakeSaid(), ElementsAreArray(said));
    }
}

UserRecord Mailed(std::string_view mailName) {
    UserRecord record;
    record.MailName = mailName;
    return record;
}

bool Follow(std::string_view name, const UserRecord* before, const UserRecord* after) {
    const UserChange change = {name, before, after};
    return FollowUsers({&change, 1});
}

TEST_F(MailList, FollowsTheUserList) {
    const UserRecord none;
    const UserRecord old = Mailed("old");
    const UserRecord same = Mailed("OLD");
    const UserRecord next = Mailed("new");
    const UserRecord profile = Mailed("*");
    const std::string other = ListEntry("OTHER", "m");
    const std::string warned = "warning: Mail users whose faxes go under the name ANN: 1. They stay in the mail list.";
    const std::string notListed = "error: User: 'old' (ANN)\n\nThis user must be disabled using the mail system";
    const struct {
        const char* What;
        const UserRecord* From;
        const UserRecord* To;
        std::string Before;
        std::string After;
        Texts Said = {};
    } rows[] = {
        {"added", nullptr, &old, other, other + ListEntry("ANN", "old")},
        {"added, there", nullptr, &old, ListEntry("ann", "OLD"), ListEntry("ann", "OLD")},
        {"added, of another", nullptr, &old, ListEntry("X", "old"), ListEntry("X", "old") + ListEntry("ANN", "old")},
        {"without a mail name", nullptr, &none, other, other},
        {"a profile", nullptr, &profile, other, other},
        {"got a name", &none, &next, other, other + ListEntry("ANN", "new")},
        {"was a profile", &profile, &next, other, other + ListEntry("ANN", "new")},
        {"lost the name", &old, &none, other + ListEntry("ANN", "old"), other, {kPrevented}},
        {"became a profile", &old, &profile, other + ListEntry("ANN", "old"), other, {kPrevented}},
        {"same name", &old, &same, other, other},
        {"other name", &old, &next, other + ListEntry("ANN", "old"), other + ListEntry("ANN", "new"), {kPrevented}},
        {"other name, not there", &old, &next, other, other + ListEntry("ANN", "new")},
        {"deleted", &old, nullptr, other + ListEntry("ANN", "old"), other, {kPrevented}},
        {"deleted, of another", &old, nullptr, ListEntry("X", "old") + ListEntry("ANN", "old"),
         ListEntry("X", "old") + ListEntry("ANN", "old")},
        {"deleted, not there", &old, nullptr, other, other, {notListed}},
        {"profile deleted", &profile, nullptr, ListEntry("ANN", "x"), ListEntry("ANN", "x"), {warned}},
        {"profile deleted, unused", &profile, nullptr, other, other},
    };
    for (const auto& [what, from, to, before, after, said] : rows) {
        server_.Put(test::kMailList, before);
        EXPECT_TRUE(Follow("ANN", from, to)) << what;
        EXPECT_EQ(server_.Get(test::kMailList), after) << what;
        EXPECT_THAT(server_.Front.TakeSaid(), ElementsAreArray(said)) << what;
    }
    EXPECT_TRUE(Follow("(def)", nullptr, &old));
    server_.Files.Delete(test::kMailList);
    EXPECT_TRUE(Follow("ANN", &old, nullptr));
    EXPECT_THAT(server_.Front.TakeSaid(), IsEmpty());

    server_.Put(test::kMailList, ListEntry("ANN", "old"));
    const ControlStream held = OpenShared(test::kMailList, "r+b");
    EXPECT_FALSE(Follow("ANN", &old, nullptr));
    EXPECT_THAT(server_.Front.TakeSaid(), ElementsAre("error: Unable to open file " + test::kMailList));
}

TEST_F(MailList, IsKeptByTheActionsOnUsers) {
    server_.Put("F:\\BRIVANE\\B-DB\\USER.INI", "[OPTIONS]\r\n");
    FollowUserList();
    UserRecord record = Mailed("iris@x");
    record.MailGateway = true;
    EXPECT_TRUE(AddUser("IRIS", record, RecordKind::User));
    EXPECT_EQ(server_.Get(test::kMailList), ListEntry("IRIS", "iris@x"));
    server_.Front.Answer = true;
    EXPECT_TRUE(DeleteUser("IRIS", RecordKind::User));
    EXPECT_EQ(server_.Get(test::kMailList), "");
    SetMailListHook({});
}

} // namespace
} // namespace bv
