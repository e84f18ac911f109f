// What a person does to mail users that are listed: the list's bytes before, one action, what it says, its bytes after.
#include <gmock/gmock.h>

#include "mailgw/account_name.h"
#include "mailgw/list_texts.h"
#include "mailgw/mail_actions.h"
#include "mailgw/mail_directory.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_user_edit.h"
#include "mailgw/mail_user_rows.h"
#include "shell/startup.h"
#include "support/memory_server.h"

namespace bv {
namespace {

using test::ListEntry;
using test::MemoryServer;
using test::Prevented;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

const std::string kDirectory = "F:\\BRIVANE\\B-DB\\MAILUSER.DAT";
const std::string kSetup = "F:\\BRIVANE\\B-DB\\SETUP.INI";

std::string ByProfile(const std::string& email, const std::string& account) {
    return ListEntry("PROF", email, (account.empty() ? "" : "EmailBrivname: " + account + "\r\n") + "Profile: YES\r\n");
}

class MailUsers : public testing::Test {
  protected:
    MailUsers() {
        server_.Load();
        server_.Put("F:\\BRIVANE\\B-DB\\USERLIST.INI",
                    "[USER]\r\nName: (def)\r\n[USER]\r\nName: ANN\r\n[USER]\r\nName: BEN\r\n"
                    "[USER]\r\nName: PROF\r\nMailName: *\r\n[GROUP]\r\nName: GRP\r\n");
        Startup().SettingsChanged = false;
        MustDisableInMailSystem() = false;
    }
    ~MailUsers() override { Startup() = {}; }

    MemoryServer server_;
};

TEST_F(MailUsers, AChangedRecordKeepsAllElse) {
    const std::string other = "[USER]\r\n; Ann's\r\nSubAddr:7\r\nemailname:  Ann A\r\nBrivname: ANN\r\nBillTo: 100\r\n";
    const struct {
        std::string Before;
        std::vector<std::pair<MailKey::Index, const char*>> Values;
        std::string After;
        Texts Said;
    } rows[] = {
        {other,
         {{MailKey::SubAddr, "8"}},
         "[USER]\r\n; Ann's\r\nSubAddr: 8\r\nemailname:  Ann A\r\nBrivname: ANN\r\nBillTo: 100\r\n",
         {"status 1: Modified mail user Ann A"}},
        {other,
         {{MailKey::SubAddr, ""}, {MailKey::PrintSent, "YES"}},
         "[USER]\r\n; Ann's\r\nemailname:  Ann A\r\nBrivname: ANN\r\nPrintSent: YES\r\nBillTo: 100\r\n",
         {"status 1: Modified mail user Ann A"}},
        {ListEntry("ANN", "Ann A"),
         {{MailKey::Brivname, "prof"}, {MailKey::EmailBrivname, "AnnA"}},
         ListEntry("PROF", "Ann A", "EmailBrivname: AnnA\r\nProfile: YES\r\n"),
         {"status 1: Modified mail user Ann A"}},
        {ListEntry("GONE", "Ann A"),
         {{MailKey::PrintRecd, "x"}}, // a name as it was is not refused
         ListEntry("GONE", "Ann A", "Profile: NO\r\nPrintRecd: x\r\n"),
         {"status 1: Modified mail user Ann A"}},
        {ListEntry("ANN", "Ann A"), {{MailKey::Brivname, "ANN"}}, ListEntry("ANN", "Ann A"), {}},
        {ListEntry("ANN", "Ann A"),
         {{MailKey::Brivname, "ZOE"}},
         ListEntry("ANN", "Ann A"),
         {"error: Brivane user ZOE not found"}},
        {ByProfile("Ann A", "AnnA") + ByProfile("Ben", "BBen"),
         {{MailKey::EmailBrivname, "bben"}},
         ByProfile("Ann A", "AnnA") + ByProfile("Ben", "BBen"),
         {"error: Account name: \"bben\" is in use."}},
    };
    for (const auto& [before, values, after, said] : rows) {
        server_.Put(test::kMailList, before);
        std::optional<MailUser> user;
        ASSERT_TRUE(ReadListedMailUser(0, user) && user);
        MailUser entered = *user;
        for (const auto& [key, value] : values) EXPECT_EQ(SetMailValue(entered, key, value), std::nullopt);
        SaveMailUser(*user, entered);
        EXPECT_EQ(server_.Get(test::kMailList), after);
        Texts heard = server_.Front.TakeSaid();
        std::erase_if(heard, [](const std::string& text) { return text.find("file ") != text.npos; });
        EXPECT_THAT(heard, ElementsAreArray(said));
    }

    server_.Put(test::kMailList, ListEntry("ANN", "Ann A"));
    std::optional<MailUser> user;
    ASSERT_TRUE(ReadListedMailUser(0, user));
    MailUser entered = *user;
    for (const std::string& text : Texts{" x", "x ", "a\tb", std::string(300, 'x')})
        EXPECT_TRUE(SetMailValue(entered, MailKey::SubAddr, text).has_value()) << text;
    EXPECT_TRUE(SetMailValue(entered, MailKey::Brivname, "").has_value());
    EXPECT_EQ(SetMailValue(entered, MailKey::SubAddr, "1"), std::nullopt);
    server_.Put(test::kMailList, ListEntry("BEN", "Ann A"));
    EXPECT_TRUE(SaveMailUser(*user, entered).has_value());
    EXPECT_EQ(server_.Get(test::kMailList), ListEntry("BEN", "Ann A"));
    EXPECT_THAT(server_.Front.TakeSaid(),
                ElementsAre("error: Ann A was changed by somebody else meanwhile, and is not overwritten."));
}

TEST_F(MailUsers, TheOnesThatAreMeantAreDisabled) {
    const std::string list =
        ListEntry("ANN", "Al") + ListEntry("BEN", "Al") + ListEntry("ANN", "Bo") + ListEntry("(def)", "Cy");
    const struct {
        std::vector<ListedMailUser> Users;
        std::string After;
        std::string Asked;
    } rows[] = {
        {{{"BEN", "Al"}},
         ListEntry("ANN", "Al") + ListEntry("ANN", "Bo") + ListEntry("(def)", "Cy"),
         "Deleting mail user Al - of BEN"},
        {{{"ANN", "Al"}, {"ANN", "Bo"}}, ListEntry("BEN", "Al") + ListEntry("(def)", "Cy"), "Deleting 2 mail users"},
        {{{"ANN", "Bo"}, {"(def)", "Cy"}}, list, "Not allowed to delete default user (def)"},
    };
    for (const auto& [users, after, asked] : rows) {
        server_.Put(test::kMailList, list);
        server_.Front.Answer = true;
        EXPECT_EQ(DisableMailUsers(users), after != list);
        EXPECT_EQ(server_.Get(test::kMailList), after);
        EXPECT_THAT(server_.Front.TakeSaid().front(), testing::HasSubstr(asked));
        server_.Put(test::kMailList, list);
        server_.Front.Answer = false;
        EXPECT_FALSE(DisableMailUsers(users));
        EXPECT_EQ(server_.Get(test::kMailList), list);
        server_.Front.TakeSaid();
    }
}

TEST_F(MailUsers, ManyAreEnabledAtOnceOrNone) {
    using Field = EnableFault::Field;
    const std::string list = ListEntry("ANN", "Bo") + ByProfile("Di", "DDi");
    const struct {
        std::string Server;
        std::vector<NewMailUser> Users;
        std::string After;
        std::string Said; // the first
        std::optional<Field> Fault = {};
        std::size_t Row = 0;
    } rows[] = {
        {"ben",
         {{"Cy", ""}, {"Al", ""}},
         ListEntry("BEN", "Al") + ListEntry("ANN", "Bo") + ListEntry("BEN", "Cy") + ByProfile("Di", "DDi"),
         "status 1: Added 2 mail users"},
        {"PROF",
         {{"Cy", "CCy"}},
         ListEntry("ANN", "Bo") + ByProfile("Cy", "CCy") + ByProfile("Di", "DDi"),
         "status 1: e-mail name - Cy"},
        {"PROF",
         {{"bo", "BBo"}},
         ByProfile("Di", "DDi") + ByProfile("bo", "BBo"),
         "ask question: Mail user bo is in the list already and sends as ANN.\n\nReplace?"},
        {"PROF",
         {{"DI", "DDi"}},
         ListEntry("ANN", "Bo") + ByProfile("DI", "DDi"),
         "ask question: Mail user DI is in the list already and sends as DDi.\n\nReplace?"},
        {"PROF", {{"Cy", "DDi"}}, "", "error: Account name: \"DDi\" is in use.", Field::Account},
        {"BEN", {}, "", "error: Please select a mail user.", Field::List},
        {"", {{"Cy", ""}}, "", "error: Please select a server user.", Field::ServerUser},
        {"ZOE", {{"Cy", ""}}, "", "error: Brivane user ZOE not found", Field::ServerUser},
        {"BEN",
         {{"Cy", ""}, {"a\tb", ""}},
         "",
         "error: Emailname: \"a\tb\" - an e-mail name has 1 to 269 characters, none "
         "of them a control character, and no blank at either end.",
         Field::Emailname,
         1},
        {"PROF", {{"Cy", "CCy"}, {"Ed", "ddi"}}, "", "error: Account name: \"ddi\" is in use.", Field::Account, 1},
        {"PROF", {{"Cy", "GRP"}}, "", "error: Account name: \"GRP\" is in use.", Field::Account},
        {"PROF", {{"Cy", "X"}, {"Ed", "x"}}, "", "error: Account name: \"X\" is in use.", Field::Account},
    };
    server_.Front.Answer = true;
    for (const auto& [server, users, after, said, where, row] : rows) {
        server_.Put(test::kMailList, list);
        const std::optional<EnableFault> fault = EnableMailUsers(server, users);
        EXPECT_EQ(fault.has_value(), where.has_value()) << said;
        EXPECT_TRUE(!fault || (fault->Where == where && fault->User == row)) << said;
        EXPECT_EQ(server_.Get(test::kMailList), after.empty() ? list : after) << said;
        EXPECT_THAT(server_.Front.TakeSaid(), testing::Contains(said));
    }
    server_.Put(test::kMailList, list);
    server_.Front.Answer = false;
    const NewMailUser listed{"Bo", ""};
    EXPECT_TRUE(EnableMailUsers("BEN", {&listed, 1}).has_value());
    EXPECT_EQ(server_.Get(test::kMailList), list);
}

TEST_F(MailUsers, ARenamedPersonKeepsTheRecord) {
    const std::string more = "Profile: NO\r\nSubAddr: 5\r\n";
    const std::string list = ListEntry("ANN", "Al", more) + ListEntry("BEN", "Al") + ListEntry("BEN", "Cy");
    server_.Put(test::kMailList, list);
    EXPECT_FALSE(RenameMailUser({"ANN", "Al"}, "Cy")) << "not agreed";
    EXPECT_EQ(server_.Get(test::kMailList), list);
    server_.Front.Answer = true;
    EXPECT_TRUE(RenameMailUser({"ANN", "Al"}, "Cy"));
    EXPECT_EQ(server_.Get(test::kMailList), ListEntry("BEN", "Al") + ListEntry("ANN", "Cy", more));
    server_.Front.TakeSaid();
    EXPECT_TRUE(RenameMailUser({"ANN", "Cy"}, "CY"));
    EXPECT_THAT(server_.Front.TakeSaid(), ElementsAre(Prevented("ANN"), "status 1: Added mail user CY"));
    EXPECT_EQ(server_.Get(test::kMailList), ListEntry("BEN", "Al") + ListEntry("ANN", "CY", more));
    EXPECT_FALSE(RenameMailUser({"ANN", "Al"}, "Di")) << "is not there any more";
    EXPECT_THAT(server_.Front.TakeSaid(),
                ElementsAre("error: Al was changed by somebody else meanwhile, and is not overwritten."));
    EXPECT_EQ(server_.Get(test::kMailList), ListEntry("BEN", "Al") + ListEntry("ANN", "CY", more));
}

std::string Shown(const RowModel& rows) {
    std::string text;
    for (std::size_t row = 0; row < rows.Count(); ++row)
        for (std::size_t column = 0; column < rows.Columns(); ++column)
            text.append(rows.Text(row, column)).append(column + 1 == rows.Columns() ? "\n" : "|");
    return text;
}

TEST_F(MailUsers, RowsSayWhatWillNotWork) {
    server_.Put(kDirectory, "Archer Ann\tann@x\r\nno address\r\nBo\tbo@x\n");
    server_.Put(test::kMailList, ListEntry("ANN", "Ann Archer") + ListEntry("ZOE", "Bo") + ListEntry("(def)", "bo") +
                                     ByProfile("Di", "") + ByProfile("Ed", "BEN"));
    MailUserRows rows;
    EXPECT_TRUE(rows.Read());
    EXPECT_EQ(Shown(rows), "Ann Archer|ANN|ANN||ann@x|\n"
                           "Bo|ZOE|ZOE||bo@x|no such user ZOE, listed 2 times\n"
                           "bo|(def)|(def)||bo@x|default user, listed 2 times\n"
                           "Di|PROF|PROF|yes||profile without account name, not in the mail system\n"
                           "Ed|BEN|PROF|yes||not in the mail system\n");
    EXPECT_EQ(rows.CountText(), "Mail users: 5, by a profile: 2");
    rows.Show(MailUserShow::OfServerUser, "ben");
    EXPECT_EQ(rows.Count(), 1U);
    EXPECT_EQ(rows.User(0).Emailname, "Ed");
    EXPECT_EQ(rows.Number(0), 4U);
    rows.Show(MailUserShow::Profiles, "");
    EXPECT_EQ(rows.Count(), 2U);
    rows.Show(MailUserShow::Remarks, "");
    EXPECT_EQ(rows.Count(), 4U);
}

TEST_F(MailUsers, PeopleGetAccountsOfTheirOwn) {
    server_.Put(kDirectory, "Smith John\tj@x\r\nSmith Jim\ti@x\r\nBo\tbo@x\r\nBEN\tben@x\r\n");
    server_.Put(test::kMailList, ListEntry("ANN", "Bo"));
    MailPeople people;
    EXPECT_TRUE(people.Read());
    people.Tick(0, true);
    people.Tick(2, true); // is listed
    EXPECT_EQ(people.Ticked().size(), 1U);
    people.GiveAccounts(true, "%1First%Last");
    EXPECT_EQ(Shown(people),
              "Smith John|j@x|JSmith|account name is in use\nSmith Jim|i@x|JSmith|account name is in use\n"
              "Bo|bo@x||in the list, sends as ANN\nBEN|ben@x|BEN|account name is in use\n");
    people.SetAccount(1, "JimS");
    EXPECT_EQ(people.Text(0, kPersonState), "");
    EXPECT_TRUE(people.Add("Extra") && people.Add("bo"));
    EXPECT_FALSE(people.Add(" "));
    EXPECT_TRUE(people.Read());
    Texts ticked;
    for (const NewMailUser& user : people.Ticked()) ticked.push_back(user.Emailname + "=" + user.Account);
    EXPECT_THAT(ticked, ElementsAre("Smith John=JSmith", "Extra=Extra"));
    EXPECT_EQ(people.RowOfTicked(1), 4U);
    EXPECT_EQ(people.RowOfTicked(2), MailPeople::kNone);
}

TEST_F(MailUsers, TheExpressionIsWrittenWhenItIsOne) {
    server_.Put(kSetup, "[OPTIONS]\r\nLCR: NO\r\n[OTHER]\r\nMailUserAlias: x\r\n");
    EXPECT_FALSE(WriteAccountExpression("First"));
    EXPECT_THAT(server_.Front.TakeSaid(), ElementsAre("error: Please select a valid expression"));
    EXPECT_TRUE(WriteAccountExpression("%First%1Last"));
    EXPECT_EQ(server_.Get(kSetup),
              "[OPTIONS]\r\nLCR: NO\r\nMailUserAlias: %First%1Last\r\n\r\n[OTHER]\r\nMailUserAlias: x\r\n");
}

TEST_F(MailUsers, OldListsAndLostUsersAreOfferedARemedy) {
    server_.Put(test::kMailList, ListEntry("ANN", "Al", ""));
    OfferUpgrade();
    EXPECT_EQ(server_.Get(test::kMailList), ListEntry("ANN", "Al", ""));
    server_.Front.Answer = true;
    OfferUpgrade();
    EXPECT_EQ(server_.Get(test::kMailList), ListEntry("ANN", "Al"));
    server_.Front.TakeSaid();
    OfferUpgrade();
    OfferToRemakeUserList(7);
    EXPECT_THAT(server_.Front.TakeSaid(), IsEmpty());
    MustDisableInMailSystem() = true;
    OfferToRemakeUserList(7);
    EXPECT_THAT(server_.Processes.Started, ElementsAre("F:\\BRIVANE\\MAILCONF.EXE -SE -H7"));
    EXPECT_EQ(server_.Front.Said.back(), "error: MAILCONF.EXE has made no list of mail users.");
    EXPECT_FALSE(MustDisableInMailSystem());
}

} // namespace
} // namespace bv
