// Rules, faxes, links and the router's settings as a person gives them: what is refused, and with which words.
#include <gmock/gmock.h>

#include "lcr/fax_entry.h"
#include "lcr/link_actions.h"
#include "lcr/router_actions.h"
#include "lcr/rule_actions.h"
#include "support/memory_server.h"

namespace bv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kBase = "F:\\BRIVANE\\B-DB\\";

struct RoutingServer : MemoryServer {
    RoutingServer() {
        Load();
        Put(kBase + "SETUP.INI",
            "[QUEUEMAN]\r\nOffpeak: AFTER 18:00 BEFORE 08:00\r\n[ROUTER]\r\nLocalServerID: HERE\r\n");
        Put(kBase + "USERLIST.INI", "[USER]\r\nName: ANN\r\n[USER]\r\nName: BEN\r\n");
        Put(kBase + "LINK.INI", "[LINK]\r\nRemoteServerID: LON, \"L\"\r\nLinkType: WAN\r\nRemoteServerAddress: x\r\n"
                                "BrivaneAccountName: U\r\n");
        Put(kBase + "REGION.INI", "[REGIONS]\r\nRegion: EU, \"Europe\"\r\nMatch: UK\r\n");
        Put(kBase + "COUNTRY.INI", "[COUNTRIES]\r\n44: UK, \"Kingdom\", 0\r\n33: FR, \"France\", 0\r\n");
    }
};

struct Refusal {
    std::string Key;
    std::string Value;
    std::string Why; // behind the key and the value
};

std::string Said(const Refusal& refusal) {
    return "error: " + refusal.Key + ": \"" + refusal.Value + "\" " + refusal.Why;
}

const Refusal kRuleRefusals[] = {
    {"Description", std::string(100, 'x'), "is not a text of at most 99 characters"},
    {"User", "CARL", "is not defined"},
    {"Server", "ROM", "is not defined"},
    {"Region", "MARS", "is not defined"},
    {"Area", "UK/LON", "is not defined"},
    {"Area", "UK", "is not a country, / and an area"},
    {"Country", "UK/LON", "is not a country"},
    {"Size", "10", "is not PAGES GE n or PAGES LE n with n from 1 to 100, or nothing"},
    {"Priority", "HIGH", "is not NORMAL, URGENT or BACKGROUND"},
    {"Colour", "red", "- rules have no such key"},
};

TEST(RuleEntry, RefusesWhatNoRuleCanSay) {
    RoutingServer server;
    RuleEdit edit;
    ASSERT_TRUE(LoadRuleNames(edit.Names));
    for (const Refusal& refusal : kRuleRefusals) {
        const EnteredValues values = {{"User", "ANN"}, {"Server", "*"}, {refusal.Key, refusal.Value}};
        EXPECT_EQ(EnterRule(edit, {}, values), RuleCheck::Refused);
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(Said(refusal)));
    }
    EXPECT_THAT(edit.Rules, IsEmpty());
}

TEST(RuleEntry, MovesRulesWithinTheList) {
    RoutingServer server;
    RuleEdit edit;
    ASSERT_TRUE(LoadRuleNames(edit.Names));
    for (const char* name : {"One", "Two", "Three"})
        ASSERT_EQ(EnterRule(edit, {}, {{"Description", name}, {"User", "ANN"}, {"Server", "*"}}), RuleCheck::Fine);
    const struct {
        std::size_t Place;
        std::string To;
        RuleCheck Check;
        std::string Order; // by the first letters
    } moves[] = {
        {0, "down", RuleCheck::Fine, "TwOnTh"},    {2, "up", RuleCheck::Fine, "TwThOn"},
        {0, "up", RuleCheck::Unchanged, "TwThOn"}, {2, "down", RuleCheck::Unchanged, "TwThOn"},
        {2, "1", RuleCheck::Fine, "OnTwTh"},       {1, "2", RuleCheck::Unchanged, "OnTwTh"},
        {0, "4", RuleCheck::Refused, "OnTwTh"},    {0, "far", RuleCheck::Refused, "OnTwTh"},
    };
    for (const auto& move : moves) {
        EXPECT_EQ(MoveRule(edit.Rules, move.Place, move.To), move.Check) << move.To;
        std::string order;
        for (const RoutingRule& rule : edit.Rules) order += rule.Description.String().substr(0, 2);
        EXPECT_EQ(order, move.Order) << move.To;
    }
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Rule: \"4\" - there are rules 1 to 3",
                                                     "error: Rule: \"far\" - there are rules 1 to 3"));
}

TEST(FaxEntry, TakesWhatAFaxCanBe) {
    RoutingServer server;
    RuleNames names;
    ASSERT_TRUE(LoadRuleNames(names));
    const std::pair<FaxDescription, Refusal> cases[] = {
        {{.User = "CARL"}, {"User", "CARL", "is not defined"}},
        {{.Server = "ROM"}, {"Server", "ROM", "is not defined"}},
        {{.Priority = "HIGH"}, {"Priority", "HIGH", "is not NORMAL, URGENT or BACKGROUND"}},
        {{.Pages = "65536"}, {"Pages", "65536", "is not a number from 0 to 65535"}},
    };
    for (const auto& [given, refusal] : cases) {
        RuleFilter fax;
        EXPECT_FALSE(DescribeFax(given, names, fax));
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(Said(refusal)));
    }
    RuleFilter fax;
    EXPECT_TRUE(DescribeFax({"EU", "ben", "lon", "urgent", "65535"}, names, fax));
    EXPECT_EQ(fax.Pages, 65535);

    for (const char* words : {"OFFPEAK", "offpeak", "SAT SUN AFTER 18:00 BEFORE 08:00"})
        EXPECT_TRUE(EnterTimeRange(words)) << words;
    for (const char* moment : {"2026-02-29 12:00", "2026-06-01", "2026-06-01 24:00", "2026-13-01 00:00", "now"})
        EXPECT_FALSE(EnterMoment(moment)) << moment;
    EXPECT_EQ(MomentText(*EnterMoment("2024-02-29 23:59")), "2024-02-29 23:59");
}

const Refusal kLinkRefusals[] = {
    {"LinkDelay", "soon", "is not a time such as 01:30"},
    {"LinkType", "PIGEON", "is not WAN, EMAIL or EMAIL_FAST"},
    {"ReceiveEnabled", "maybe", "is not ON, OFF or nothing"},
    {"Nope", "1", "- links have no such key"},
};

TEST(LinkEntry, RefusesWhatNoLinkCanSay) {
    RoutingServer server;
    LinkEdit edit;
    ASSERT_TRUE(BeginLinkEdit(edit));
    for (const Refusal& refusal : kLinkRefusals) {
        EXPECT_FALSE(ChangeLink(edit, "lon", {{refusal.Key, refusal.Value}}));
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(Said(refusal)));
    }
    EXPECT_FALSE(AddLink(edit, {{"RemoteServerID", "LON"}}));
    EXPECT_FALSE(RemoveLink(edit, "PAR"));
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("error: RemoteServerID: This ID is in use already.  Please enter a unique ID",
                            "error: There is no link PAR"));
    EXPECT_EQ(edit.Links, edit.Before);
}

TEST(RouterEntry, RefusesWhatTheSettingsCannotKeep) {
    RoutingServer server;
    const std::string before = server.Get(kBase + "SETUP.INI");
    const std::pair<EnteredValues, std::string> cases[] = {
        {{{"LocalServerID", ""}},
         "error: LocalServerID: \"\" is not a name of 1 to 19 characters without blanks, commas and quotes"},
        {{{"WanInboxDirectory", "X"}, {"WanInboxPollFreq", "00:00"}},
         "error: WanInboxPollFreq: All intervals must be between 00:01 and 23:59"},
        {{{"Colour", "red"}}, "error: Colour: \"red\" - router settings have no such key"},
    };
    for (const auto& [values, said] : cases) {
        EXPECT_FALSE(EnterRouterSettings(values));
        EXPECT_THAT(server.Front.TakeSaid(), testing::Contains(said));
        EXPECT_EQ(server.Get(kBase + "SETUP.INI"), before);
    }
    server.Put(kBase + "SETUP.INI", "[QUEUEMAN]\r\n");
    EXPECT_FALSE(EnterRouterSettings({{"WanInboxDirectory", "X"}}));
    EXPECT_THAT(server.Front.TakeSaid(),
                testing::Contains("error: LocalServerID: You must enter this server's unique ID"));
}

TEST(RouterEntry, OffersTheNotesIdFileUntilThereIsOne) {
    const std::string notes = "EmailType: LOTUS_NOTES_API\r\nEmailLoginName: \"Fax\"";
    const struct {
        std::string Lines;
        std::string Shown;
        std::string Saved; // once Notes is chosen
    } cases[] = {{"", "N:\\FAX.ID", notes + ", \"N:\\FAX.ID\"\r\n"},
                 {notes + ", \"F:\\OLD.ID\"\r\n", "F:\\OLD.ID", ", \"F:\\OLD.ID\"\r\n"},
                 {"EmailType: MAPI\r\nEmailLoginName: \"Fax\"\r\n", "N:\\FAX.ID", notes + ", \"N:\\FAX.ID\"\r\n"}};
    for (const auto& [lines, shown, saved] : cases) {
        RoutingServer server;
        const std::string before =
            "[ROUTER]\r\nLocalServerID: HERE, \"h\"\r\n" + lines + "EmailInboxPollFreq: 00:10\r\n";
        server.Put(kBase + "SETUP.INI", before);
        RouterEdit edit;
        ASSERT_TRUE(BeginRouterEdit(edit, "N:\\FAX.ID"));
        EXPECT_EQ(edit.Entered.NotesIdFile, shown);
        EXPECT_TRUE(SaveRouterEdit(edit, {}));
        EXPECT_EQ(server.Get(kBase + "SETUP.INI"), before) << "an offer is no change";
        edit.Entered.Email = EmailType::LotusNotes;
        edit.Entered.EmailEnabled = true;
        edit.Entered.EmailLoginName = "Fax";
        EXPECT_TRUE(SaveRouterEdit(edit, {}));
        EXPECT_THAT(server.Get(kBase + "SETUP.INI"), testing::HasSubstr(saved));
    }
}

TEST(RouterEntry, SavesItsChangesOnTopOfThoseOfOthers) {
    RoutingServer server;
    const std::string head = "[ROUTER]\r\nLocalServerID: HERE, \"";
    const std::string dropped = "EmailDeleteInvalidMsg: YES\r\n";
    server.Put(kBase + "SETUP.INI",
               head + "h\"\r\n" + dropped + "WanInboxDirectory: D:\\IN\r\nWanInboxPollFreq: 00:05\r\nMaxHops: 4\r\n");
    RouterEdit edit;
    ASSERT_TRUE(BeginRouterEdit(edit));
    EXPECT_EQ(edit.Entered.EmailPollInterval, (HourMinute{10, 0})) << "is offered";
    EXPECT_TRUE(SaveRouterEdit(edit, {})) << "and nothing has changed";
    EXPECT_THAT(server.Front.TakeSaid(), IsEmpty());

    edit.Entered.LocalServerDescription = "mine";
    edit.Entered.WanPollInterval = {9, 0};
    const std::string theirs =
        head + "h\"\r\n" + dropped + "WanInboxDirectory: E:\\IN\r\nWanInboxPollFreq: 00:07\r\nMaxHops: 4\r\n";
    server.Put(kBase + "SETUP.INI", theirs);
    EXPECT_FALSE(SaveRouterEdit(edit, {}));
    EXPECT_EQ(server.Get(kBase + "SETUP.INI"), theirs);
    server.Front.Answer = true;
    EXPECT_TRUE(SaveRouterEdit(edit, {}));
    EXPECT_EQ(server.Get(kBase + "SETUP.INI"),
              head + "mine\"\r\nWanInboxDirectory: E:\\IN\r\nWanInboxPollFreq: 00:09\r\nMaxHops: 4\r\n");
    EXPECT_THAT(server.Front.TakeSaid(), testing::Contains(testing::HasSubstr(
                                             "changed by somebody else meanwhile: WanInboxPollFreq: \"00:07\"")));

    server.Front.Answer = false;
    server.Put(kBase + "LCRRULES.INI", "[RULE]\r\nDescription: Here\r\nServer: here\r\n");
    for (const auto& [values, said] : std::vector<std::pair<EnteredValues, std::string>>{
             {{{"LocalServerID", "THERE"}}, "rule 1 \"Here\""},
             {{{"WanEnabled", "NO"}, {"EmailLoginName", "Fax"}, {"EmailInboxPollFreq", "00:10"}},
              "which will not work without it: 1."},
             {{{"LocalServerID", "lon"}}, "LocalServerID: lon is the ID of a link."}}) {
        EXPECT_FALSE(EnterRouterSettings(values));
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(testing::HasSubstr(said)));
    }
}

} // namespace
} // namespace bv::test
