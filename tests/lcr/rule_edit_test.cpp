// Putting a rule together and taking it into the list.
#include "lcr/rule_edit.h"

#include <gmock/gmock.h>

#include "lcr/rule_file.h"
#include "lcr/time_range.h"
#include "support/memory_server.h"

namespace bv::test {
namespace {

using testing::ElementsAre;

TEST(RuleTime, IsMadeOfItsFields) {
    using enum RuleTime::Choice;
    const struct {
        RuleTime Time;
        std::optional<std::string> Text;
        std::string Error;
        TimeField Wrong = nullptr; // the days
        bool IsShownSo = true;     // the text comes back as the same fields
    } rows[] = {
        {{}, "", ""},
        {{Offpeak}, "OFFPEAK", ""},
        {{Peak}, "PEAK", ""},
        {{Any, 127, "99", "x"}, "", "", nullptr, false},
        {{Specific, 127}, "MON TUE WED THU FRI SAT SUN ", ""},
        {{Specific, 65, "18", "00", "08", "00"}, "SAT SUN AFTER 18:00 BEFORE 08:00 ", ""},
        {{Specific, 0, "9", "5", "23", "59"}, "AFTER 09:05 BEFORE 23:59 ", "", nullptr, false},
        {{Specific, 2, "09", "00"}, "MON AFTER 09:00 ", ""},
        {{Specific, 0, "", "", "09", "00"}, "BEFORE 09:00 ", ""},
        {{Specific}, {}, "Time: choose some days, or a time of day"},
        {{Specific, 0, "24", "00", "1", "0"},
         {},
         "AFTER: \"24\" - an hour is a number from 0 to 23",
         &RuleTime::AfterHour},
        {{Specific, 0, "1", "60", "1", "0"},
         {},
         "AFTER: \"60\" - minutes are a number from 0 to 59",
         &RuleTime::AfterMinute},
        {{Specific, 2, "", "", "-1", "0"},
         {},
         "BEFORE: \"-1\" - an hour is a number from 0 to 23",
         &RuleTime::BeforeHour},
        {{Specific, 2, "1", "", "2", "0"},
         {},
         "AFTER: \"\" - minutes are a number from 0 to 59",
         &RuleTime::AfterMinute},
        {{Specific, 2, "", "0"}, {}, "AFTER: \"\" - an hour is a number from 0 to 23", &RuleTime::AfterHour},
        {{Specific, 2, "001", "0"}, {}, "AFTER: \"001\" - an hour is a number from 0 to 23", &RuleTime::AfterHour},
        {{Specific, 2, "08", "0", "8", "00"},
         {},
         "AFTER and BEFORE: \"08:00\" - the two times must not be equal",
         &RuleTime::BeforeHour},
        {{Specific, 2, "", "", "0", "0"},
         {},
         "AFTER and BEFORE: \"00:00\" - the two times must not be equal",
         &RuleTime::BeforeHour},
    };
    for (const auto& row : rows) {
        const MemoryServer server;
        TimeField wrong = nullptr;
        EXPECT_EQ(MakeTimeText(row.Time, wrong), row.Text);
        EXPECT_EQ(server.Front.Said,
                  row.Error.empty() ? std::vector<std::string>() : std::vector{"error: " + row.Error});
        EXPECT_TRUE(row.Text || wrong == row.Wrong) << row.Error;
        if (!row.Text) continue;
        const auto shown = ShowTime(*row.Text);
        ASSERT_TRUE(shown);
        EXPECT_EQ(*shown == row.Time, row.IsShownSo) << *row.Text;
        EXPECT_EQ(ParseTimeRange(MakeTimeText(*shown, wrong).value()), ParseTimeRange(*row.Text)) << *row.Text;
    }
    for (const char* text : {"never", "AFTER 25:00", "AFTER 1:1 BEFORE 1:99", "OFFPEAK MON"})
        EXPECT_EQ(ShowTime(text), std::nullopt) << text;
}

TEST(RuleSize, IsMadeOfItsFields) {
    using enum RuleSize::Choice;
    const std::string any = "warning: Selecting messages of one or more pages is equivalent to selecting messages of "
                            "any size";
    const auto refused = [](const char* pages) {
        return "error: Pages: \"" + std::string(pages) + "\" - a number of pages is from 1 to 100";
    };
    const struct {
        RuleSize Size;
        std::optional<std::string> Text;
        std::string Said;
    } rows[] = {
        {{}, "", ""},
        {{Any, "x"}, "", ""},
        {{Large, "2"}, "PAGES GE 2", ""},
        {{Large, "100"}, "PAGES GE 100", ""},
        {{Small, "1"}, "PAGES LE 1", ""},
        {{Large, "1"}, "", any},
        {{Large, "0"}, "", any},
        {{Large, "101"}, {}, refused("101")},
        {{Small, "0"}, {}, refused("0")},
        {{Small, ""}, {}, refused("")},
        {{Large, "-3"}, {}, refused("-3")},
        {{Small, "99999999999"}, {}, refused("99999999999")},
    };
    for (const auto& row : rows) {
        const MemoryServer server;
        EXPECT_EQ(MakeSizeText(row.Size), row.Text);
        EXPECT_EQ(server.Front.Said, row.Said.empty() ? std::vector<std::string>() : std::vector{row.Said});
        EXPECT_TRUE(!row.Text || row.Text->empty() || ShowSize(*row.Text) == row.Size);
    }
    for (const char* text : {"PAGES LE 0", "PAGES GE 101", "PAGES GE", "PAGES LE 3 "})
        EXPECT_EQ(ShowSize(text), std::nullopt) << text;
}

RoutingRule Named(const char* description) {
    RoutingRule rule;
    rule.Description = description;
    rule.Users = {"ANN"};
    rule.Servers = {"LON"};
    return rule;
}

struct Scene {
    MemoryServer Server;
    RuleNames Names;
    RuleList Rules = {Named("First"), Named("Second")};

    Scene() {
        Server.Load();
        Names.Users.Add("ANN");
        Names.Servers.Add("LON");
    }
};

TEST(CheckRule, ChecksInItsOrder) {
    const std::string keep = "ask question: Keep changes to this rule?";
    const std::string invalid = "error: Invalid rule - you must select some message criteria, or some remote servers";
    const std::string all =
        "confirm warning: You have not selected any message criteria.  This will cause all messages to "
        "be sent via the remote servers selected.  Keep rule?";
    const std::string inUse = "error: This description is in use already.  Please enter a unique description";
    const std::string noServer = "error: You must select some remote servers, or allow the local server to be used";
    const auto kUnchanged = [](RoutingRule&) {};
    using enum RuleCheck;
    const struct {
        void (*Change)(RoutingRule&);
        RuleLeaving Leaving;
        bool Answer;
        RuleCheck Expected;
        std::vector<std::string> Said;
        RuleField Wrong = RuleField::Nothing;
    } rows[] = {
        {kUnchanged, RuleLeaving::Ok, false, Unchanged, {}},
        {kUnchanged, RuleLeaving::PreviousOrNext, false, Unchanged, {}},
        // what is not defined does not count as a change
        {[](RoutingRule& rule) { rule.Users.emplace_back("BEN"); }, RuleLeaving::Ok, false, Unchanged, {}},
        {[](RoutingRule& rule) { rule.Time = " "; }, RuleLeaving::Ok, false, Unchanged, {}},
        {[](RoutingRule& rule) { rule.Time = "PEAK"; }, RuleLeaving::Ok, false, Fine, {}},
        {[](RoutingRule& rule) { rule.Time = "PEAK"; }, RuleLeaving::PreviousOrNext, true, Fine, {keep}},
        {[](RoutingRule& rule) { rule.Time = "PEAK"; }, RuleLeaving::PreviousOrNext, false, Discarded, {keep}},
        {[](RoutingRule& rule) { rule.Description = "SECOND"; }, RuleLeaving::Ok, false, Fine, {}},
        {[](RoutingRule& rule) { rule.Description = "FIRST"; },
         RuleLeaving::Ok,
         true,
         Refused,
         {inUse},
         RuleField::Description},
        {[](RoutingRule& rule) { rule.Users.clear(); }, RuleLeaving::Ok, true, Fine, {all}},
        {[](RoutingRule& rule) { rule.Users = {"BEN"}; }, RuleLeaving::Ok, false, Refused, {all}, RuleField::Criteria},
        {[](RoutingRule& rule) {
             rule.Users.clear();
             rule.Priorities = kEveryPriority;
         },
         RuleLeaving::PreviousOrNext,
         true,
         Fine,
         {keep, all}},
        {[](RoutingRule& rule) {
             rule = Named("First");
             rule.Users.clear();
             rule.Servers.clear();
             rule.AllowsLocalServer = true;
         },
         RuleLeaving::Ok,
         true,
         Refused,
         {invalid},
         RuleField::Criteria},
        {[](RoutingRule& rule) { rule.Servers = {"PAR"}; },
         RuleLeaving::Ok,
         false,
         Refused,
         {noServer},
         RuleField::Servers},
        {[](RoutingRule& rule) { rule.Description = " Second"; },
         RuleLeaving::Ok,
         false,
         Refused,
         {"error: Rule \" Second\": the file would give its lines back differently"},
         RuleField::Description},
        {[](RoutingRule& rule) { rule.Description = ""; }, RuleLeaving::Ok, false, Fine, {}},
    };
    for (const auto& row : rows) {
        Scene scene;
        scene.Server.Front.Answer = row.Answer;
        RoutingRule edited = scene.Rules[1];
        row.Change(edited);
        RuleField wrong = RuleField::Nothing;
        EXPECT_EQ(CheckRule(scene.Rules, 1, edited, scene.Names, row.Leaving, wrong), row.Expected);
        EXPECT_EQ(wrong, row.Wrong);
        EXPECT_EQ(scene.Server.Front.Said, row.Said);
        EXPECT_FALSE(edited.Description.IsEmpty());
    }
}

TEST(RuleServers, AreChosenByName) {
    const MemoryServer server;
    RoutingRule rule = Named("R");
    SetServers(rule, std::vector<std::string>{});
    EXPECT_FALSE(CheckServers(rule));
    EXPECT_THAT(server.Front.Said,
                ElementsAre("error: You must select some remote servers, or allow the local server to be used"));
    SetServers(rule, std::vector<std::string>{"(local server)"});
    EXPECT_TRUE(CheckServers(rule) && rule.AllowsLocalServer && rule.Servers.empty());
    SetServers(rule, std::vector<std::string>{"B", "A"});
    EXPECT_TRUE(CheckServers(rule) && !rule.AllowsLocalServer);
    rule.AllowsLocalServer = true;
    EXPECT_THAT(ShowServers(rule), ElementsAre("B", "A", "(local server)"));
}

TEST(RuleSummary, SaysEachCriterion) {
    const Destinations places({{"EU", "Europe", {}}}, {{"UK", "United Kingdom", "44", "0"}});
    EXPECT_EQ(SummarizeRule({}, places), (std::vector<SummaryLine>{{"Description", "(no description)"},
                                                                   {"Destinations", "(any)"},
                                                                   {"Priority", "(any)"},
                                                                   {"Users", "(any)"},
                                                                   {"Time", "(any)"},
                                                                   {"Size", "(any)"},
                                                                   {"Servers", "(any)"}}));
    RoutingRule rule = Named("R");
    rule.Users = {"ANN", "BEN"};
    rule.AllowsLocalServer = true;
    rule.Priorities = kNormalPriority | kBackgroundPriority;
    rule.Time = "SAT AFTER 18:00 ";
    rule.Size = "PAGES LE 3";
    rule.Destinations = {{"EU", "Region: EU"}, {"UK", "Country: UK"}, {"", "Country: FR"}};
    EXPECT_EQ(SummarizeRule(rule, places),
              (std::vector<SummaryLine>{{"Description", "R"},
                                        {"Destinations", "Europe, United Kingdom, <Not found>"},
                                        {"Priority", "Normal, Background"},
                                        {"Users", "ANN, BEN"},
                                        {"Time", "SAT AFTER 18:00 "},
                                        {"Size", "3 pages or less"},
                                        {"Servers", "LON, (local server)"}}));
    rule.Size = "PAGES GE 3";
    rule.Priorities = kUrgentPriority;
    EXPECT_EQ(SummarizeRule(rule, places)[5].Words, "3 pages or more");
    EXPECT_EQ(SummarizeRule(rule, places)[2].Words, "Urgent");
}

} // namespace
} // namespace bv::test
