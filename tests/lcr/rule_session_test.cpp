// Editing the rules from their opening to their save: what each step leaves in the two files, and what the list shows.
#include "lcr/rule_session.h"

#include <gmock/gmock.h>

#include "lcr/rule_import.h"
#include "lcr/rule_rows.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kBase = "F:\\BRIVANE\\B-DB\\";
const std::string kHead = "[BRIVANE]\nType: LCRRules\nRevision: A\n\n";
const std::string kOne = "[RULE]\nDescription: One\nCountry: UK\nUser: ANN\nSize: PAGES GE 10\nServer: LON\n\n";
const std::string kTwo = "[RULE]\nDescription: Two\nTime: OFFPEAK\nCostLimit: 5\nServer: *\n\n";
const std::string kThree = "[RULE]\nDescription: Three\nCountry: UK\nUser: ANN\nSize: PAGES GE 20\nServer: LON\n\n";
const std::string kRules = kHead + kOne + kTwo + kThree;
const std::string kNoOffpeak =
    "warning: Unable to determine system Offpeak time.  Rule filtering will not be available";
constexpr CalendarTime kToday = {2026, 6, 10, 12, 0, 0, 3, true};

struct Scene : MemoryServer {
    explicit Scene(const std::string& rules = kRules, bool hasOffpeak = true) {
        Load();
        PutFile("SETUP.INI", std::string("[ROUTER]\nLocalServerID: HERE\n\n") +
                                 (hasOffpeak ? "[QUEUEMAN]\nOffpeak: AFTER 18:00 BEFORE 08:00 SAT SUN\n" : ""));
        PutFile("USERLIST.INI", "[USER]\nName: ANN\n");
        PutFile("LINK.INI", "[LINK]\nRemoteServerID: LON\n");
        PutFile("REGION.INI", "[REGIONS]\n");
        PutFile("COUNTRY.INI", "[COUNTRIES]\n44: UK, \"Kingdom\", 0\n");
        PutFile("LCRRULES.INI", rules);
    }
    void PutFile(const std::string& name, const std::string& text) { Put(kBase + name, Replaced(text, "\n", "\r\n")); }
    std::string Live() { return Replaced(Get(kBase + "LCRRULES.INI"), "\r\n", "\n"); }
    std::string Pending() { return Replaced(Get(kBase + "LCRRULES.NEW"), "\r\n", "\n"); }
};

RuleCheck Rename(RuleSession& session, std::optional<std::size_t> place, const char* description) {
    RoutingRule rule = place ? session.Rules()[*place] : session.Rules()[0];
    rule.Description = description;
    RuleField wrong = RuleField::Nothing;
    return session.Accept(place, rule, RuleLeaving::Ok, wrong);
}

// Each change is in the pending file at once, and taken back by one step; the rules' own file waits for the save.
TEST(RuleSession, KeepsEachChangePendingAndTakesItBack) {
    const std::string four = Replaced(kOne, "One", "Four");
    const struct {
        std::function<bool(RuleSession&)> Change;
        std::string Pending;
        std::optional<std::size_t> UndoneAt;
    } kCases[] = {
        {[](RuleSession& s) { return Rename(s, 1, "Four") == RuleCheck::Fine; },
         kOne + Replaced(kTwo, "Two", "Four") + kThree, 1},
        {[](RuleSession& s) { return Rename(s, {}, "Four") == RuleCheck::Fine; }, kOne + kTwo + kThree + four, 3},
        {[](RuleSession& s) { return s.Delete(1); }, kOne + kThree, 1},
        {[](RuleSession& s) { return s.Clone(0); }, kOne + Replaced(kOne, "One", "One (2)") + kTwo + kThree, 1},
        {[](RuleSession& s) { return s.Move(0, 2); }, kTwo + kThree + kOne, 0},
        {[](RuleSession& s) { return s.Move(2, 0); }, kThree + kOne + kTwo, 2},
        {[](RuleSession& s) { return s.Replace({s.Rules()[1]}); }, kTwo, 0},
    };
    for (const auto& [change, pending, undoneAt] : kCases) {
        Scene scene;
        RuleSession session;
        ASSERT_TRUE(session.Open());
        const RuleList before = session.Rules();
        EXPECT_FALSE(session.IsChanged() || session.CanUndo());
        EXPECT_TRUE(change(session));
        EXPECT_EQ(scene.Pending(), kHead + pending);
        EXPECT_TRUE(session.IsChanged());
        EXPECT_EQ(session.Undo(), undoneAt);
        EXPECT_EQ(session.Rules(), before);
        EXPECT_EQ(scene.Pending(), "(none)") << "there is nothing left to be saved";
        EXPECT_FALSE(session.IsChanged() || session.CanUndo());

        EXPECT_TRUE(change(session));
        EXPECT_EQ(scene.Live(), kRules);
        EXPECT_TRUE(session.Save());
        EXPECT_EQ(scene.Live(), kHead + pending);
        EXPECT_EQ(scene.Pending(), "(none)");
        EXPECT_FALSE(session.IsChanged());
        EXPECT_TRUE(session.Undo());
        EXPECT_TRUE(session.IsChanged()) << "what is saved is undone and saved again";
        EXPECT_TRUE(session.Save());
        EXPECT_EQ(scene.Live(), kRules);
        EXPECT_THAT(scene.Front.Said, Each(StartsWith("status 1: ")));
    }
    Scene scene;
    RuleSession session;
    ASSERT_TRUE(session.Open());
    EXPECT_TRUE(session.Move(0, 3) && session.Move(1, 1)) << "beyond the ends nothing is done";
    EXPECT_FALSE(session.IsChanged());
    for (int i = 0; i < 25; ++i) EXPECT_TRUE(session.Clone(0));
    for (int i = 0; i < 20; ++i) EXPECT_TRUE(session.Undo());
    EXPECT_FALSE(session.Undo());
    EXPECT_EQ(session.Rules().size(), 8U);
    RuleImport import(session);
    const CsvTable table =
        ReadCsvTable("Description,Server,User\nOne,*,ANN\nFive,LON,ANN\n", import.Columns(), "rules");
    EXPECT_EQ(import.Check(table).value().size(), 2U) << "although there are pending changes";
    EXPECT_EQ(import.Apply([](std::size_t) { return true; }), (ImportCounts{1, 1}));
    EXPECT_EQ(session.Rules().size(), 9U);
    EXPECT_TRUE(session.Undo());
    RuleSession::Abandon();
    EXPECT_EQ(scene.Pending(), "(none)");
    EXPECT_EQ(scene.Live(), kRules);
}

TEST(RuleSession, IsAsItWasWhenThePendingFileCannotBeWritten) {
    Scene scene;
    RuleSession session;
    ASSERT_TRUE(session.Open());
    EXPECT_TRUE(session.Delete(0));
    const RuleList before = session.Rules();
    const std::string pending = scene.Pending();
    {
        const platform::OpenResult reader = scene.Files.Open(kBase + "LCRRULES.NEW", {});
        EXPECT_FALSE(session.Undo());
        EXPECT_GE(scene.Clock.Milliseconds, 5'000) << "Windows deletes no file that somebody reads: it is waited for";
    }
    FaultyFiles files(scene.Files, {FaultKind::FailFromThenOn, 1});
    const platform::Substitute<platform::FileSystem> substitute(files);
    const std::function<bool(RuleSession&)> changes[] = {
        [](RuleSession& s) { return Rename(s, 0, "Four") == RuleCheck::Fine; },
        [](RuleSession& s) { return s.Delete(1); },
        [](RuleSession& s) { return s.Clone(0); },
        [](RuleSession& s) { return s.Move(0, 1); },
        [](RuleSession& s) { return s.Undo().has_value(); },
        [](RuleSession& s) { return s.Save(); },
    };
    for (const auto& change : changes) {
        scene.Front.Said.clear();
        EXPECT_FALSE(change(session));
        EXPECT_THAT(scene.Front.Said, testing::Not(IsEmpty()));
        EXPECT_EQ(session.Rules(), before);
        EXPECT_EQ(scene.Pending(), pending);
        EXPECT_TRUE(session.CanUndo());
    }
}

TEST(RuleSession, TellsWhatItFindsOnOpening) {
    const std::string removed = "warning: Some Destinations, Servers or Users in the rules are no longer defined, and "
                                "have been removed.  Select CANCEL on the next dialog to revert";
    const std::string recover = "ask question: Some unsaved changes have been found - recover last session?";
    const struct {
        std::string Rules;
        std::string Pending;
        bool HasOffpeak;
        std::vector<std::string> Said;
        bool IsChanged;
        std::size_t Count;
    } kCases[] = {
        {kRules, "", true, {}, false, 3},
        {kRules, "", false, {kNoOffpeak}, false, 3},
        {kRules, kHead + kOne, false, {kNoOffpeak, recover}, true, 1},
        {kHead + Replaced(kOne, "ANN", "ZOE"), "", true, {removed}, true, 1},
        {kRules, kHead + Replaced(kOne, "ANN", "ZOE"), true, {recover, removed}, true, 1},
    };
    for (const auto& row : kCases) {
        Scene scene(row.Rules, row.HasOffpeak);
        if (!row.Pending.empty()) scene.PutFile("LCRRULES.NEW", row.Pending);
        scene.Front.Answer = true;
        RuleSession session;
        ASSERT_TRUE(session.Open());
        EXPECT_EQ(scene.Front.TakeSaid(), row.Said);
        EXPECT_EQ(session.IsChanged(), row.IsChanged);
        EXPECT_EQ(session.Rules().size(), row.Count);
        EXPECT_EQ(session.Offpeak().has_value(), row.HasOffpeak);
    }
    Scene scene;
    scene.Files.Delete(kBase + "USERLIST.INI");
    EXPECT_FALSE(RuleSession().Open()) << "without names there are no rules to be edited";
}

TEST(RuleSession, AsksBeforeASaveThatTheNextPersonWouldWonderAbout) {
    const std::string lost = "ask warning: These rules have lost their last destination, user or server and mean "
                             "something else now:\n\nRule 1 \"One\": User \"ANN\" is no longer defined.  The rule then "
                             "takes the faxes of every user.";
    Scene scene;
    scene.PutFile("USERLIST.INI", "[USER]\nName: BEN\n");
    RuleSession session;
    ASSERT_TRUE(session.Open());
    EXPECT_THAT(session.LossOf(0), HasSubstr("The rule then takes the faxes of every user."));
    EXPECT_TRUE(session.Move(0, 1));
    EXPECT_EQ(session.LossOf(0), "");
    scene.Front.TakeSaid();
    EXPECT_FALSE(session.Save());
    EXPECT_THAT(scene.Front.TakeSaid(), ElementsAre(HasSubstr(lost)));

    // who has looked at a rule knows what it means
    EXPECT_EQ(Rename(session, 1, "First"), RuleCheck::Fine);
    EXPECT_EQ(session.LossOf(1), "");
    EXPECT_TRUE(session.Delete(2));
    EXPECT_THAT(scene.Front.TakeSaid(), ElementsAre("status 1: Deleted rule \"Three\". Ctrl+Z brings it back"));
    scene.PutFile("LCRRULES.INI", kHead);
    EXPECT_FALSE(session.Save());
    EXPECT_THAT(scene.Front.TakeSaid(),
                ElementsAre(HasSubstr("was changed by somebody else since it was opened here")));
    EXPECT_EQ(scene.Live(), kHead);
    scene.Front.Answer = true;
    scene.PutFile("LINK.INI", "[LINK]\nRemoteServerID: PAR\n"); // meanwhile
    EXPECT_TRUE(session.Save());
    EXPECT_THAT(scene.Front.TakeSaid(),
                ElementsAre(HasSubstr("Server \"LON\" is no longer defined"), HasSubstr("Remove these names"),
                            HasSubstr("Overwrite these changes?")));
    EXPECT_EQ(scene.Live(), kHead + kTwo + "[RULE]\nDescription: First\nCountry: UK\nSize: PAGES GE 10\n\n");
}

std::vector<std::string> RowsOf(const RuleRows& rows) {
    std::vector<std::string> all;
    for (std::size_t row = 0; row < rows.Count(); ++row) {
        std::string text;
        for (std::size_t column = 0; column < kRuleColumns; ++column)
            text.append(column == 0 ? "" : "|").append(rows.Text(row, column));
        all.push_back(text);
    }
    return all;
}

TEST(RuleRows, SayWhatARuleTakesAndWhatIsKnownOfIt) {
    Scene scene(kRules + "[RULE]\nDescription: All\nServer: LON\n\n");
    RuleSession session;
    ASSERT_TRUE(session.Open());
    RuleRows rows(session, kToday);
    EXPECT_THAT(RowsOf(rows), ElementsAre("1|One|Kingdom; ANN; 10 pages or more|LON",
                                          "2|Two|every destination; OFFPEAK|(local server)",
                                          "3|Three|Kingdom; ANN; 20 pages or more|LON", "4|All|every fax|LON"));
    EXPECT_TRUE(rows.LookForDead(0)) << "in no time at all";
    EXPECT_FALSE(rows.LookForDead(1));
    EXPECT_EQ(rows.WhyDead(2), "Rule 1, \"One\", takes every fax that this rule would take. It can never decide");
    rows.SetDeciding(1);
    const FilterEntry entry = {{Criterion::Size, Criterion::User}, {{}, "", {}, {}, "12"}};
    rows.Show(RulesShown::Marked, entry, EnterFilter(entry, session.Names()).value());
    EXPECT_EQ(rows.FilterText(), "size 12, has a user: 1 of 4");
    EXPECT_THAT(RowsOf(rows), ElementsAre(HasSubstr("1 *|"), HasSubstr("2 >|"), HasSubstr("3 x|"), HasSubstr("4|")));
    rows.Show(RulesShown::Filtered, entry, EnterFilter(entry, session.Names()).value());
    EXPECT_EQ(rows.Count(), 1U);
    EXPECT_EQ(rows.RowOf(0), 0U);
    EXPECT_EQ(rows.RowOf(1), std::nullopt);
    EXPECT_TRUE(session.Delete(0));
    rows.Refresh();
    EXPECT_EQ(rows.Count(), 0U);
    rows.Show(RulesShown::All, {}, {});
    EXPECT_EQ(rows.WhyDead(1), "") << "the rule that took its faxes is gone";
    EXPECT_EQ(rows.Find("king 20", 2), 1U);
    EXPECT_EQ(rows.Find("king never", 0), std::nullopt);
    EXPECT_EQ(rows.Find(" ", 0), std::nullopt);
}

TEST(TriedFax, IsJudgedByTheRulesAsTheyAre) {
    Scene scene;
    RuleSession session;
    ASSERT_TRUE(session.Open());
    const RuleRows rows(session, kToday);
    const std::vector<Criterion> all = {Criterion::Destination, Criterion::User, Criterion::Size, Criterion::Priority,
                                        Criterion::Time};
    const struct {
        FaxDescription Fax;
        std::string Clock;
        std::string Result;
        std::string AgainstFirst;
    } kCases[] = {
        {{"UK", "ANN", {}, "Normal", "12"},
         "12:00",
         "Rule 1 \"One\" decides: server LON sends the fax. Predicted from the rules alone",
         ""},
        {{"UK", "ANN", {}, {}, "9"},
         "20:00",
         "Rule 2 \"Two\" decides: the local server sends the fax. Predicted from the rules alone",
         "the fax has too few pages"},
        {{"+44 1", {}, {}, {}, "9"},
         "1200",
         "No rule decides: the local server sends the fax. Predicted from the rules alone",
         "the fax has too few pages"},
        {{"0441", "ANN", {}, {}, {}}, "", "Number 0441 begins with no dialling code of a country that is there", ""},
        {{"mars", {}, {}, {}, {}}, "", "\"mars\" is no number and no destination.", ""},
        {{{}, "ZOE", {}, {}, {}}, "", "User: \"ZOE\" is not defined", ""},
        {{"UK", {}, {}, {}, "101"}, "", "Pages: \"101\" - a number of pages is from 1 to 100", ""},
        {{"UK", {}, {}, {}, {}}, "24:00", "Time: \"24:00\" - an hour is a number from 0 to 23", ""},
        {{"UK", {}, {}, {}, {}}, "8:60", "Time: \"8:60\" - minutes are a number from 0 to 59", ""},
    };
    for (const auto& [fax, clock, result, against] : kCases) {
        const TriedFax tried = TryFax({all, fax, 3, clock}, session.Rules(), session.Names(), rows.Basis());
        EXPECT_EQ(tried.Result, result);
        EXPECT_EQ(WhyNot(session.Rules()[0], tried, rows.Basis()), against);
    }
    EXPECT_THAT(scene.Front.Said, IsEmpty());
}

} // namespace
} // namespace bv::test
