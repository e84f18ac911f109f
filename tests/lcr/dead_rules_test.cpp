// Rules that can never decide, against a trial of every fax there is, and in a table what only a word tells.
#include "lcr/dead_rules.h"

#include <algorithm>
#include <random>

#include <gmock/gmock.h>

#include "lcr/rule_match.h"
#include "lcr/rule_references.h"
#include "lcr/week_mask.h"

namespace bv::test {
namespace {

const Destinations& Places() {
    static const Destinations kPlaces({{"MIX", "", {"DE", "uk/lon"}}, {"UK", "", {"44"}}, {"NONE", "", {"XX"}}},
                                      {{"UK", "", "44", "0", true, {{"LON", "", {"1*"}}, {"LONDON", "", {"2*"}}}},
                                       {"UKR", "", "380", "0", true, {{"KIEV", "", {"1*"}}}},
                                       {"DE", "", "49", "0"}});
    return kPlaces;
}

constexpr CalendarTime kToday = {2026, 6, 10, 12, 0, 0, 3, true};
const std::vector<std::string> kTimes = {
    "",        "OFFPEAK",     "PEAK",         "SAT SUN", "MON AFTER 08:00 BEFORE 18:00",
    "SAT MON", "AFTER 08:00", "BEFORE 08:00", "never"};
const std::vector<std::string> kSizes = {"", "PAGES GE 1", "PAGES GE 5", "PAGES LE 9", "PAGES LE 0"};
const std::vector<std::string> kLines = {"Country: UK",  "Country: UKR",    "Country: DE",
                                         "Area: UK/LON", "Area: UK/LONDON", "Region: MIX",
                                         "Region: UK",   "Region: NONE",    "Area: UKR/KIEV"};

RoutingRule RuleOf(const std::vector<std::string>& lines, const std::string& size, const std::string& time) {
    RoutingRule rule;
    rule.Size = size;
    rule.Time = time;
    for (const std::string& line : lines) {
        rule.Destinations.push_back({"", line});
        rule.Destinations.back().Key = FindDestinationKey(Places(), rule.Destinations.back()).value();
    }
    return rule;
}

class Dice {
  public:
    std::size_t Below(std::size_t count) { return random_() % count; }
    const std::string& OneOf(const std::vector<std::string>& texts) {
        return texts[Below(2) == 0 ? 0 : Below(texts.size())];
    }
    RoutingRule Rule() {
        std::vector<std::string> lines;
        for (std::size_t count = Below(4); count > 0; --count) lines.push_back(kLines[Below(kLines.size())]);
        RoutingRule rule = RuleOf(lines, OneOf(kSizes), OneOf(kTimes));
        if (Below(3) == 0) rule.Users.emplace_back("ANN");
        if (Below(3) == 0) rule.Users.emplace_back("ben");
        if (Below(3) == 0) rule.Priorities = static_cast<std::uint8_t>(Below(8));
        return rule;
    }

  private:
    std::mt19937 random_{13};
};

std::vector<RuleFilter> AllFaxes() {
    std::vector<RuleFilter> faxes;
    for (const char* number : {"441", "442", "443", "3801", "3802", "49", "1"}) {
        for (const char* user : {"ANN", "BEN", "CAT"}) {
            for (const int pages : {0, 1, 5, 9, 10}) {
                for (const int priority : {1, 2, 4}) {
                    RuleFilter fax;
                    fax.Number = PlaceOfNumber(Places(), number).value_or(NumberPlace{"", "?", {}, {}});
                    fax.User = user;
                    fax.Pages = pages;
                    fax.Priorities = static_cast<std::uint8_t>(priority);
                    for (const int time : {0, 12, 20, 100, 112, 120, 200, 212, 220, 600, 612, 620}) {
                        fax.Weekday = time / 100;
                        fax.Hour = time % 100;
                        faxes.push_back(fax);
                    }
                }
            }
        }
    }
    return faxes;
}

bool Takes(const RoutingRule& rule, RuleFilter fax, const MatchBasis& basis) {
    const Criterion asked[] = {Criterion::Destination, Criterion::User, Criterion::Size, Criterion::Priority,
                               Criterion::Time};
    fax.IsActive = true;
    return std::ranges::all_of(asked, [&](Criterion kind) {
        fax.Kind = kind;
        return RuleMatches(rule, fax, basis);
    });
}

// Of each rule, by trial: the first earlier one that takes all its faxes; or how many rules there are when it takes no
// fax, and one more when it can decide.
std::vector<std::size_t> TriedOut(const RuleList& rules, const std::vector<RuleFilter>& faxes,
                                  const MatchBasis& basis) {
    std::vector<std::vector<bool>> takes(rules.size());
    for (std::size_t i = 0; i < rules.size(); ++i) {
        for (const RuleFilter& fax : faxes) takes[i].push_back(Takes(rules[i], fax, basis));
    }
    std::vector<std::size_t> by;
    for (std::size_t late = 0; late < rules.size(); ++late) {
        const auto covers = [&](const std::vector<bool>& early) {
            for (std::size_t fax = 0; fax < faxes.size(); ++fax)
                if (takes[late][fax] && !early[fax]) return false;
            return true;
        };
        const bool isTaking = std::ranges::find(takes[late], true) != takes[late].end();
        const auto end = takes.begin() + static_cast<std::ptrdiff_t>(late);
        by.push_back(isTaking ? static_cast<std::size_t>(std::find_if(takes.begin(), end, covers) - takes.begin())
                              : rules.size());
        if (isTaking && by.back() == late) by.back() = rules.size() + 1;
    }
    return by;
}

TEST(FindDeadRules, FindsThoseThatNoFaxGetsTo) {
    const MatchBasis basis = {Places(), ParseTimeRange("SAT SUN AFTER 18:00 BEFORE 08:00"), kToday};
    const std::vector<RuleFilter> faxes = AllFaxes();
    Dice dice;
    std::size_t taken = 0;
    std::size_t never = 0;
    for (int set = 0; set < 8; ++set) {
        RuleList rules(8);
        for (RoutingRule& rule : rules) rule = dice.Rule();
        const std::vector<std::size_t> tried = TriedOut(rules, faxes, basis);
        std::vector<std::size_t> found(rules.size(), rules.size() + 1);
        DeadRuleSearch slices(rules, Places(), basis.Offpeak);
        while (slices.Continue(7)) {
        }
        EXPECT_EQ(slices.Found(), FindDeadRules(rules, Places(), basis.Offpeak));
        for (const DeadRule& dead : slices.Found()) {
            found[dead.Rule] = dead.By.value_or(rules.size());
            EXPECT_EQ(dead.By.has_value(), dead.NeverMet.empty());
            ++(dead.By ? taken : never);
        }
        EXPECT_EQ(found, tried) << "set " << set;
    }
    EXPECT_GT(taken, 4U);
    EXPECT_GT(never, 2U);
}

TEST(FindDeadRules, SaysWhy) {
    RuleList rules = {RuleOf({}, "", "OFFPEAK"),        RuleOf({}, "", "offpeak"), RuleOf({}, "", "SAT"),
                      RuleOf({"Region: NONE"}, "", ""), RuleOf({}, "many", ""),    RuleOf({}, "", "whenever")};
    rules[0].Description = "Nights";
    std::vector<std::string> said;
    for (const DeadRule& dead : FindDeadRules(rules, Places(), {})) said.push_back(DescribeDeadRule(rules, dead));
    EXPECT_THAT(said,
                testing::ElementsAre("Rule 1, \"Nights\", takes every fax that this rule would take. It can never "
                                     "decide",
                                     "No fax can meet this rule's destinations. It can never decide",
                                     "No fax can meet this rule's size. It can never decide",
                                     "No fax can meet this rule's time. It can never decide"));
}

} // namespace
} // namespace bv::test
