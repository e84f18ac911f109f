#include "users/many_users.h"

#include <gmock/gmock.h>

#include "support/memory_server.h"
#include "users/user_rows.h"

namespace bv {
namespace {

using test::MemoryServer;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kPath = "F:\\BRIVANE\\B-DB\\USERLIST.INI";
const std::string kList =
    "[GROUP]\r\nName: @A\r\n[USER]\r\nName: (default)\r\n[USER]\r\nName: ANN\r\nGroup: @A\r\nOwn: 1\r\n"
    "Netware: ann\r\nAdmin: YES\r\n[USER]\r\nName: BEN\r\nMailGateway: YES\r\nMailName: *\r\nUrgent: NO\r\n[USER]\r\n"
    "Name: CLARA\r\nGroup: @a\r\n";

class ManyUsers : public testing::Test {
  protected:
    ManyUsers() {
        Server.Load();
        Server.Put(kPath, kList);
    }
    [[nodiscard]] std::vector<std::string> Rows(UserListKind kind) {
        RowTable rows;
        EXPECT_TRUE(ReadUserRows(kind, rows));
        std::vector<std::string> lines(rows.Count());
        for (std::size_t row = 0; row < rows.Count(); ++row)
            for (std::size_t column = 0; column < rows.Columns(); ++column)
                lines[row].append(column == 0 ? "" : "|").append(rows.Text(row, column));
        return lines;
    }

    MemoryServer Server;
};

TEST_F(ManyUsers, AreListedWithWhatTellsThemApart) {
    EXPECT_THAT(Rows(UserListKind::Users), ElementsAre("ANN||@A|ann||Admin|", "BEN||||*|no Urgent|", "CLARA||@a||||"));
    EXPECT_THAT(Rows(UserListKind::Groups), ElementsAre("@A||2|"));
    EXPECT_THAT(Rows(UserListKind::Profiles), ElementsAre("BEN||||*|no Urgent|"));
}

TEST_F(ManyUsers, AreSummarisedByTheMostFrequentValues) {
    const std::vector<std::string> names = {"ANN", "ben", "CLARA"};
    const auto summaries = SummariseUsers(names);
    ASSERT_TRUE(summaries);
    for (const auto& [key, text] : *summaries) {
        const std::string expected = key->Field.Key == "Admin:"       ? "NO 2, YES 1"
                                     : key->Field.Key == "RushToTop:" ? "NO"
                                                                      : text;
        EXPECT_EQ(text, expected) << key->Field.Key;
        EXPECT_NE(key->Field.Key, "Fullname:");
    }
}

TEST_F(ManyUsers, AreChangedInOneRewriteOrNotAtAll) {
    const std::vector<std::string> names = {"ANN", "CLARA"};
    const auto plan = PlanManyUsers(names, {{"Admin", "YES"}, {"Group", ""}});
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->Updates.size(), 2u);
    EXPECT_TRUE(ChangeManyUsers(*plan));
    EXPECT_THAT(Server.Front.TakeSaid(), Contains("status 1: Users changed: 2"));
    EXPECT_THAT(Rows(UserListKind::Users), ElementsAre("ANN|||ann||Admin|", "BEN||||*|no Urgent|", "CLARA|||||Admin|"));
    EXPECT_THAT(Server.Get(kPath), HasSubstr("\r\nOwn: 1\r\n"));

    EXPECT_FALSE(ChangeManyUsers(*plan)) << "they are not as they were looked at any more";
    EXPECT_THAT(Server.Front.TakeSaid(), Contains(HasSubstr("was changed by somebody else meanwhile")));
    const auto faulty = PlanManyUsers(names, {{"Dial", "Everywhere"}});
    ASSERT_TRUE(faulty);
    EXPECT_THAT(faulty->Faults, ElementsAre(HasSubstr("ANN: Dial: \"Everywhere\""), HasSubstr("CLARA: ")));
    EXPECT_FALSE(PlanManyUsers(names, {{"Group", "@NO"}}));
    EXPECT_THAT(Server.Front.TakeSaid(), Contains(HasSubstr("there is no user group of that name")));
    const std::vector<std::string> gone = {"ZOE"};
    EXPECT_FALSE(PlanManyUsers(gone, {{"Admin", "YES"}}));
}

TEST_F(ManyUsers, BecomeMembersAndLeave) {
    const std::vector<std::string> come = {"BEN"};
    const std::vector<std::string> go = {"ANN"};
    EXPECT_TRUE(ChangeMembers("@A", come, go));
    EXPECT_THAT(Rows(UserListKind::Users), ElementsAre("ANN|||ann||Admin|", "BEN||@A||*|no Urgent|", "CLARA||@a||||"));
}

} // namespace
} // namespace bv
