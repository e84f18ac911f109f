// The rules' file: what is read of it, what is written, and what is left of it when something fails.
#include "lcr/rule_file.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "lcr/rule_references.h"
#include "shell/startup.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kArea = "F:\\BRIVANE\\B-DB\\";
const std::string kLive = kArea + "LCRRules.ini";
const std::string kPending = kArea + "LCRRules.new";
const std::string kHead = "[BRIVANE]\r\nType: LCRRules\r\nRevision: A\r\n\r\n";

struct Server : MemoryServer {
    Server() { Load(); }
    explicit Server(std::string_view live) {
        Load();
        Put(kLive, live);
    }
};

TEST(RuleFile, IsWrittenInItsOrder) {
    const std::string longLine = "Region: " + std::string(272, 'x');
    const struct {
        const char* Why;
        std::string Read;
        std::string Written;
        bool HasOtherText = false; // which a warning names
    } rows[] = {
        {"everything, in any order and case",
         "[rule] 1\nserver: *\nSERVER:LON\nSize=1\nTime:  sat after 18:00\nPRIORITY: background\npriority: Normal\n"
         "Later: 1\nArea: UK/LON\narea:FR/PAR\nUser: ANN\nuser:ben\nregion:EU\nRegion:  Asia\nDescription: One, two: 3 "
         "\n"
         "Size: pages ge 3\n",
         "[RULE]\r\nDescription: One, two: 3\r\nArea: UK/LON\r\nArea: FR/PAR\r\nregion:EU\r\nRegion: Asia\r\n"
         "User: ANN\r\nUser: ben\r\nSize: pages ge 3\r\nTime: sat after 18:00\r\nPriority: NORMAL\r\n"
         "Priority: BACKGROUND\r\nSize=1\r\nLater: 1\r\nServer: LON\r\nServer: *\r\n\r\n"},
        {"nothing", "[RULE]\n", "[RULE]\r\nDescription: \r\n\r\n"},
        {"an empty description", "[RULE]\nDescription:\n", "[RULE]\r\nDescription: (no description)\r\n\r\n"},
        {"all priorities are any", "[RULE]\nPriority: URGENT\nPriority: NORMAL\nPriority: BACKGROUND\n",
         "[RULE]\r\nDescription: \r\n\r\n"},
        {"unknown priorities go", "[RULE]\nPriority: URGENT\nPriority: HIGH\nPriority: NORMAL \n",
         "[RULE]\r\nDescription: \r\nPriority: NORMAL\r\nPriority: URGENT\r\n\r\n"},
        {"a second block is kept", "[RULE]\nUser: A\nUser: B\nSize: 1\nUser: C\nUser: D\nTime: PEAK\nTime: MON\n",
         "[RULE]\r\nDescription: \r\nUser: A\r\nUser: B\r\nSize: 1\r\nTime: PEAK\r\nUser: C\r\nUser: D\r\n"
         "Time: MON\r\n\r\n"},
        {"comments stand inside blocks, unknown lines end them",
         "[RULE]\n;1\nUser: A\n; 2\n 3\nUser: B\nServer: S\n;4\nServer: *\nCountry: UK\nX\nCountry: FR\n",
         "[RULE]\r\nDescription: \r\nCountry: UK\r\nUser: A\r\nUser: B\r\n;1\r\n; 2\r\n 3\r\n;4\r\nX\r\nCountry: FR\r\n"
         "Server: S\r\nServer: *\r\n\r\n"},
        {"long lines are kept whole", "[RULE]\n" + longLine + "\n" + longLine + "\n;" + std::string(279, 'y') + "\n",
         "[RULE]\r\nDescription: \r\n" + longLine + "\r\n" + longLine + "\r\n;" + std::string(279, 'y') + "\r\n\r\n"},
        {"texts have a limit", "[RULE]\nDescription: " + std::string(101, 'd') + "\n",
         "[RULE]\r\nDescription: " + std::string(99, 'd') + "\r\n\r\n"},
        {"an empty line ends a rule", "[RULE]\nUser: A\n\t\nUser: B\n[RULE]\nUser: C\n[OTHER]\nUser: D\n",
         "[RULE]\r\nDescription: \r\nUser: A\r\n\r\n[RULE]\r\nDescription: \r\nUser: C\r\n\r\n", true},
        {"no rule", std::string("\0\xff[RULE]\n\n x\n", 13), "", true},
    };
    for (const auto& [why, read, written, hasOtherText] : rows) {
        Server server(read);
        const auto rules = OpenRules();
        ASSERT_TRUE(rules) << why;
        EXPECT_EQ(!server.Front.TakeSaid().empty(), hasOtherText) << why;
        EXPECT_TRUE(SaveRules(rules->Rules, rules->Stamp)) << why;
        EXPECT_EQ(server.Get(kLive), kHead + written) << why;
        EXPECT_EQ(server.Get(kPending), "(none)") << why;
        const auto again = OpenRules();
        EXPECT_TRUE(SaveRules(again->Rules, again->Stamp)) << why;
        EXPECT_EQ(server.Get(kLive),
                  kHead + Replaced(written, "Description: \r\n", "Description: (no description)\r\n"));
        EXPECT_THAT(server.Front.Said, IsEmpty());
    }
}

RoutingRule Named(const char* description) {
    RoutingRule rule;
    rule.Description = description;
    return rule;
}

TEST(RuleFile, GivesBackWhatItKeeps) {
    const std::pair<bool, void (*)(RoutingRule&)> rows[] = {
        {true, [](RoutingRule&) {}},
        {true, [](RoutingRule& rule) { rule.Priorities = kEveryPriority; }},
        {true,
         [](RoutingRule& rule) {
             rule.OtherLines = {"; note", " User: B"};
         }},
        {true, [](RoutingRule& rule) { rule.Time = "MON "; }},
        {true, [](RoutingRule& rule) { rule.AllowsLocalServer = true; }},
        {false, [](RoutingRule& rule) { rule.Description = ""; }},
        {false, [](RoutingRule& rule) { rule.Description = "a "; }},
        {false, [](RoutingRule& rule) { rule.OtherLines = {"User: B"}; }},
        {false, [](RoutingRule& rule) { rule.OtherLines = {"Size: 1"}; }},
        {false, [](RoutingRule& rule) { rule.OtherLines = {""}; }},
        {false, [](RoutingRule& rule) { rule.Servers = {"*"}; }},
        {false, [](RoutingRule& rule) { rule.Servers = {std::string(280, 's')}; }},
        {false,
         [](RoutingRule& rule) {
             rule.Destinations = {{"EU", "Region: EU"}, {"UK", "Country: UK"}, {"ASIA", "Region: ASIA"}};
         }},
    };
    for (const auto& [isKept, change] : rows) {
        RoutingRule rule = Named("R");
        rule.Users = {"A"};
        change(rule);
        EXPECT_EQ(IsKeptByFile(rule), isKept) << RuleText(rule);
    }
}

TEST(RuleFile, OffersPendingChanges) {
    const std::string question = "ask question: Some unsaved changes have been found - recover last session?";
    for (const bool answer : {true, false}) {
        Server server(RuleText(Named("live")));
        server.Put(kPending, kHead + RuleText(Named("pending")));
        server.Front.Answer = answer;
        const auto opened = OpenRules();
        ASSERT_TRUE(opened);
        EXPECT_EQ(opened->IsRecovered, answer);
        EXPECT_EQ(opened->Rules, RuleList{Named(answer ? "pending" : "live")});
        EXPECT_EQ(server.Get(kPending) == "(none)", !answer);
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(question));
        EXPECT_THAT(server.Front.Captions, ElementsAre("Brivane Configuration"));
    }
    Server server;
    EXPECT_TRUE(OpenRules()->Rules.empty() && ReadRules()->empty());
    EXPECT_TRUE(KeepRulesPending({Named("1")}));
    EXPECT_FALSE(AbandonRules(true));
    EXPECT_EQ(server.Get(kPending), kHead + RuleText(Named("1")));
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("ask warning: This will mean all changes will be lost.  Lose changes?"));
    EXPECT_EQ(ReadRules(), RuleList{Named("1")});
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("warning: File " + kLive +
                            " is not there: a save of it was cut off.  Its new text is complete in file " + kPending +
                            " and is used"));
    EXPECT_TRUE(AbandonRules(false));
    EXPECT_EQ(server.Get(kPending), "(none)");
    EXPECT_EQ(server.Get(kLive), "(none)");
    EXPECT_THAT(server.Front.Said, IsEmpty());
}

// Neither a file of one line end nor one of something else is what an earlier session has left.
TEST(RuleFile, PassesOverWhatIsNoWholeRuleFile) {
    for (const std::string& text : {std::string("\r\n"), RuleText(Named("x")), kHead + "[RULE]\r\nDescription: x",
                                    Replaced(kHead, "LCRRules", "Country")}) {
        Server server(RuleText(Named("live")));
        server.Put(kPending, text);
        server.Front.Answer = true;
        EXPECT_EQ(OpenRules()->Rules, RuleList{Named("live")});
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(testing::HasSubstr("passed over")));
        EXPECT_FALSE(RecoverPendingRules());
        EXPECT_EQ(server.Get(kLive), RuleText(Named("live")));
    }
}

TEST(RuleFile, IsNotReplacedWhenItIsNoLongerAsItWasRead) {
    Server server(RuleText(Named("old")));
    const auto opened = OpenRules();
    server.Put(kLive, RuleText(Named("theirs")));
    EXPECT_FALSE(SaveRules({Named("mine")}, opened->Stamp));
    EXPECT_EQ(server.Get(kLive), RuleText(Named("theirs")));
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("error: " + kLive + " was changed by somebody else meanwhile, and is not overwritten."));
}

TEST(RuleFile, SaysWhetherItCouldNotBeOpenedOrNotBeWritten) {
    for (const int call : {1, 2}) {
        Server server;
        FaultyFiles files(server.Files, {FaultKind::FailFromThenOn, call, CallKind::Changes});
        const platform::Substitute<platform::FileSystem> substitute(files);
        EXPECT_FALSE(KeepRulesPending({Named("1")}));
        EXPECT_EQ(server.Front.Said.front(),
                  "error: " + (call == 1 ? "File error: couldn't open " : std::string("Error updating file ")) +
                      kPending);
    }
}

TEST(RuleFile, ThatIsHeldIsNotTakenForEmpty) {
    Server server(RuleText(Named("R")));
    const auto other = server.Files.Open(kLive, {platform::Access::ReadWrite, platform::Deny::ReadingAndWriting});
    EXPECT_FALSE(OpenRules());
    EXPECT_FALSE(ReadRules());
    EXPECT_EQ(server.Front.Said, std::vector<std::string>(2, "error: Unable to open file " + kLive));
}

TEST(RuleFile, MarksTheSettingsAsChangedOnceTheyAre) {
    Server server;
    Startup().SettingsChanged = false;
    EXPECT_TRUE(KeepRulesPending({}));
    EXPECT_FALSE(Startup().SettingsChanged);
    EXPECT_TRUE(SaveRules({Named("1")}, {}));
    EXPECT_TRUE(Startup().SettingsChanged);
    Startup().SettingsChanged = false;
}

TEST(Rules, MoveByOnePlace) {
    RuleList rules = {Named("1"), Named("2"), Named("3")};
    EXPECT_FALSE(MoveRuleUp(rules, 0) || MoveRuleDown(rules, 2) || MoveRuleUp(rules, 3) || MoveRuleDown(rules, 7));
    EXPECT_EQ(rules, (RuleList{Named("1"), Named("2"), Named("3")}));
    EXPECT_TRUE(MoveRuleDown(rules, 0) && MoveRuleUp(rules, 2));
    EXPECT_EQ(rules, (RuleList{Named("2"), Named("3"), Named("1")}));
}

TEST(RuleReferences, AreRemovedWhenTheyAreNotDefined) {
    Server server;
    server.Put(kArea + "USERLIST.INI", "[USER]\nName: ann\n[GROUP]\nName: @G\n[user]\nFullname: x\nName: A B \n");
    RuleNames names;
    EXPECT_TRUE(LoadRuleNames(names)); // without links and destinations
    server.Put(kArea + "Region.ini", "[REGIONS]\r\nRegion: UK, \"\"\r\nRegion: EU, \"Europe\"\r\nMatch: UK\r\n");
    server.Put(kArea + "Country.ini", "[COUNTRIES]\r\n44: uk, \"United Kingdom\", 0\r\n");
    server.Put(kArea + "Area44.ini", "[AREAS]\r\nArea: Lon, \"London\"\r\nMatch: 20*\r\n");
    server.Put(kArea + "Link.ini",
               "[BRIVANE]\nType: LinkDatabase\n\n[LINK]\nLinkType: WAN\nremoteserverid: LON, \"London\"\n[LINK]\n"
               "RemoteServerID: \"PAR\"\nRemoteServerID: X\n[OTHER]\nRemoteServerID: Y\n");
    server.Put(kArea + "SETUP.INI", "[ROUTER]\nLocalServerID: HERE, \"H\"\n[ROUTER]\nLocalServerID: Z\n");
    EXPECT_TRUE(LoadRuleNames(names));
    RoutingRule rule;
    rule.Users = {"ANN", "BEN", "a b", "A", "@G", ""};
    rule.Servers = {"lon", "par", "here", "X", "Y", "Z", "London"};
    rule.Destinations = {{"", "region:eu"},    {"", "Region: FR"},  {"", "country: UK"},  {"", "Country: 044"},
                         {"", "Country: EU"},  {"", "Area:UK/LON"}, {"", "Area: 44/Lon"}, {"", "Area: UK/PAR"},
                         {"", "Area: FR/LON"}, {"", "Region:"}};
    RuleList rules = {RoutingRule(), rule, rule};
    EXPECT_EQ(CheckReferences(rules, names).size(), 2U * (4 + 4 + 5));
    EXPECT_EQ(rules[1], rules[2]);
    EXPECT_THAT(rules[1].Users, ElementsAre("ANN", "a b"));
    EXPECT_THAT(rules[1].Servers, ElementsAre("lon", "par", "here"));
    std::string destinations;
    for (const auto& [key, line] : rules[1].Destinations) destinations.append(line).append("=").append(key).append("|");
    EXPECT_EQ(destinations, "region:eu=EU|country: UK=uk|Country: 044=uk|Area:UK/LON=uk/Lon|Area: 44/Lon=uk/Lon|");
    EXPECT_TRUE(CheckReferences(rules, names).empty());

    server.Files.Delete(kArea + "USERLIST.INI");
    EXPECT_FALSE(LoadRuleNames(names));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Unable to open file " + kArea + "USERLIST.INI"));

    // A save of the links that was cut off takes no server from the rules.
    server.Put(kArea + "USERLIST.INI", "[USER]\nName: ANN\n[USER]\nName: A B\n");
    server.Files.Rename(kArea + "Link.ini", kArea + "Link.new");
    RuleNames again;
    EXPECT_TRUE(LoadRuleNames(again));
    EXPECT_TRUE(CheckReferences(rules, again).empty());
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("warning: File " + kArea +
                            "Link.ini is not there: a save of it was cut off.  Its new text is complete in file " +
                            kArea + "Link.new and is used"));
}

} // namespace
} // namespace bv::test
