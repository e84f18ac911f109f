// Accounts of the network on their way into the user list.
#include "users/network_accounts.h"

#include <gmock/gmock.h>

#include <functional>

#include "shell/startup.h"
#include "support/memory_server.h"

namespace bv {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string kPath = "F:\\BRIVANE\\B-DB\\USERLIST.INI";
const std::string kList =
    "[USER]\r\nName: (default)\r\nUrgent: NO\r\nColour: blue\r\n"
    "[USER]\r\nName: ANNA\r\nUsername: aborn\r\nAdmin: YES\r\nMailGateway: YES\r\nMailName: a@b\r\n"
    "[USER]\r\nName: JSMITH\r\nNetware: OldSmith\r\n[GROUP]\r\nName: SALES\r\nUsername: group\r\n";

class NetworkUsers : public testing::Test {
  protected:
    NetworkUsers() {
        Server.Load();
        Server.Put(kPath, kList);
        Server.Put("F:\\BRIVANE\\B-DB\\USER.INI", "[OPTIONS]\r\nFrom:\r\n");
        Network.Accounts = {{"jsmith", "John Smith", false, true},
                            {"ABORN", "Anna Born", false, true},
                            {"oldsmith", "", false, true},
                            {"\?\?", "\?", false, false},
                            {"guest", "", true, true}};
    }
    ~NetworkUsers() override { Startup() = {}; }

    NetworkAccounts Read(
        bool unlistedOnly, const std::function<bool(std::size_t)>& goOn = [](std::size_t) { return true; }) {
        NetworkAccounts accounts;
        ListedNames listed;
        EXPECT_TRUE(ReadListedNames(listed));
        accounts.Begin(std::move(listed), unlistedOnly);
        ReadNetworkAccounts("DC1", accounts, goOn);
        return accounts;
    }

    static std::vector<std::string> Rows(const NetworkAccounts& accounts) {
        std::vector<std::string> rows;
        for (std::size_t row = 0; row < accounts.Count(); ++row) {
            std::string& text = rows.emplace_back(accounts.IsTicked(row) ? "x" : "");
            for (std::size_t column : {kAccountName, kAccountUser, kAccountState})
                text.append("|").append(accounts.Text(row, column));
        }
        return rows;
    }

    test::MemoryServer Server;
    test::FakeNetworkUsers Network;
    platform::Substitute<platform::NetworkUsers> Use{Network};
};

TEST_F(NetworkUsers, AreOfferedNamesThatAreFreeAndFit) {
    ListedNames listed;
    ASSERT_TRUE(ReadListedNames(listed));
    UserNameOffers offers(listed);
    constexpr const char* kOffers[][2] = {
        {"kim.lee", "KIMLEE"},
        {"jsmith", "JSMITH2"},
        {"sales", "SALES2"},
        {"johnsmithers", "JOHNSMIT"},
        {"JohnSmithson", "JOHNSMI2"},
        {"con", "CON2"},
        {"@(x)", "X"},
        {"@ .", "NEWUSER"},
        {"johnsmith3", "JOHNSMI3"},
        {"a\tb\"c\\d", "ABCD"},
        {"(default)", "DEFAULT"},
        {"M\xFCller", "M\xFCLLER"},
    };
    for (const auto& [network, offered] : kOffers) EXPECT_EQ(offers.OfferUserName(network), offered);
    std::string last;
    for (int i = 0; i < 120; ++i) last = offers.OfferUserName("manyofthem");
    EXPECT_EQ(last, "MANYO120");
}

TEST_F(NetworkUsers, AreTickedUnlessTheyAreListedOrCannotBeWritten) {
    NetworkAccounts accounts = Read(false);
    accounts.TickAll();
    EXPECT_THAT(Rows(accounts),
                ElementsAre("x|jsmith|JSMITH2|", "|ABORN||is listed as ANNA", "|oldsmith||is listed as JSMITH",
                            StartsWith("|\?\?||cannot be written"), "x|guest|GUEST|account disabled"));
    EXPECT_EQ(accounts.RowOfTicked(1), 4u);
    accounts.ShowUnlistedOnly(true);
    EXPECT_EQ(accounts.Count(), 3u);
    EXPECT_EQ(accounts.RowOfTicked(1), 2u);
    EXPECT_THAT(Server.Front.Said, Contains("status 1: Reading the users of \\\\DC1"));
}

TEST_F(NetworkUsers, AreKeptAsFarAsTheyWereReadWhenThatIsStopped) {
    std::vector<std::size_t> told;
    const auto stopAtTheSecondPage = [&](std::size_t read) {
        told.push_back(read);
        return told.size() < 2;
    };
    EXPECT_EQ(Read(false, stopAtTheSecondPage).Count(), 4u);
    EXPECT_THAT(told, ElementsAre(2u, 4u));
    EXPECT_THAT(Server.Front.Said, Not(Contains(StartsWith("error"))));
}

TEST_F(NetworkUsers, ThatCannotAllBeReadAreKeptAndItIsSaid) {
    Network.Outcome = {5, "Access is denied"};
    EXPECT_EQ(Read(true).Count(), 3u);
    EXPECT_EQ(Server.Front.Said.back(), "error: The users of \\\\DC1 cannot be listed: Access is denied (error 5).");
}

TEST_F(NetworkUsers, AreAllCheckedBeforeOneIsAdded) {
    using Field = NetworkFault::Field;
    const platform::NetworkUser kim{"kim", "Kim", false, true};
    const struct {
        std::vector<NetworkChoice> Choices;
        const char* Group;
        const char* Like;
        Field Where;
        std::size_t Choice;
        const char* Message;
    } kCases[] = {
        {{}, "", "", Field::List, 0, "Tick the users to be added."},
        {{{"KIM", kim}, {"TOOLONGNAME", kim}}, "", "", Field::Name, 1, "Name: \"TOOLONGNAME\" - a name has 1 to 8"},
        {{{"KIM", kim}, {"(KIM", kim}}, "", "", Field::Name, 1, "Name: \"(KIM\" - only the default user's"},
        {{{"A*B", kim}}, "", "", Field::Name, 0, "Name: \"A*B\" - the name of a user or group is that of its"},
        {{{"sales", kim}}, "", "", Field::Name, 0, "Name: \"sales\" - there is a user or user group of that name"},
        {{{"KIM", kim}, {"kim", kim}}, "", "", Field::Name, 1, "Name: \"kim\" - two of the users would have this"},
        {{{"KIM", kim}}, "NOGROUP", "", Field::Group, 0, "Group: \"NOGROUP\" - there is no user group"},
        {{{"KIM", kim}}, "", "NOBODY", Field::Like, 0, "Brivane user NOBODY not found"},
        {{{"KIM", kim}, {"LEE", {std::string(101, 'x'), "", false, true}}}, "", "", Field::Name, 1, "xxx"},
    };
    for (const auto& one : kCases) {
        std::vector<NamedRecord> added;
        const auto fault = PlanNetworkUsers(one.Choices, one.Group, one.Like, added);
        ASSERT_TRUE(fault) << one.Message;
        EXPECT_EQ(fault->Where, one.Where) << one.Message;
        EXPECT_EQ(fault->Choice, one.Choice) << one.Message;
        EXPECT_THAT(Server.Front.Said.back(), StartsWith(std::string("error: ") + one.Message));
    }
    EXPECT_EQ(Server.Get(kPath), kList);
}

TEST_F(NetworkUsers, AreAddedLikeAUserWithTheirNetworkNames) {
    NetworkAccounts accounts = Read(true);
    accounts.TickAll();
    std::vector<NamedRecord> added;
    ASSERT_FALSE(PlanNetworkUsers(accounts.Ticked(), "SALES", "anna", added));
    const auto stopAt = [](std::size_t last) { return [=](std::size_t done) { return done < last; }; };
    EXPECT_EQ(AddNetworkUsers(added, stopAt(1)), 1u);
    EXPECT_EQ(Server.Front.Said.back(), "status 1: Stopped: added 1 of 2, changed 0 of 0");
    const std::string list = Server.Get(kPath);
    const std::string smith = list.substr(list.find("Name: JSMITH2\r\n"), list.rfind("[GROUP]") - list.find("JSMITH2"));
    for (const char* line : {"Fullname: John Smith", "Username: jsmith", "Netware: jsmith", "LanManager: jsmith",
                             "Group: SALES", "Admin: YES", "Colour: blue"})
        EXPECT_THAT(smith, HasSubstr(std::string(line) + "\r\n"));
    EXPECT_THAT(smith, Not(HasSubstr("a@b")));

    ListedNames listed;
    ASSERT_TRUE(ReadListedNames(listed));
    accounts.Relist(std::move(listed));
    EXPECT_THAT(Rows(accounts), ElementsAre(EndsWith("cannot be written in the workstation's code page"),
                                            "x|guest|GUEST|account disabled"));
    ASSERT_FALSE(PlanNetworkUsers(accounts.Ticked(), "", "", added));
    EXPECT_EQ(AddNetworkUsers(added, stopAt(2)), 1u);
    EXPECT_EQ(Server.Front.Said.back(), "status 1: Added 1, changed 0");
    EXPECT_THAT(Server.Get(kPath), HasSubstr("Name: GUEST\r\nFullname: \r\n"));
}

} // namespace
} // namespace bv
