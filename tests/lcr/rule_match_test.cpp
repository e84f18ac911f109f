// Whether a rule's criteria are met, each by a table of what rules say and what faxes are.
#include "lcr/rule_match.h"

#include <gmock/gmock.h>

#include "lcr/rule_references.h"

namespace bv::test {
namespace {

const Destinations& Places() {
    static const Destinations kPlaces({{"EU", "Europe", {"UK", "33/PAR"}}, {"EUROPE", "", {"DE"}}},
                                      {{"UK", "", "44", "0", true, {{"LON", "", {}}, {"MAN", "", {}}}},
                                       {"UKR", "", "380", "0"},
                                       {"FR", "", "33", "0", true, {{"PAR", "", {}}}},
                                       {"DE", "", "49", "0"}});
    return kPlaces;
}

struct Row {
    std::string Rule; // what it says of the criterion
    std::string Fax;
    bool Matches;
};

MatchBasis BasisOf(const char* offpeak) {
    return {Places(), ParseTimeRange(offpeak).value(), {2026, 6, 10, 12, 0, 0, 3, true}};
}

// Splits at commas; nothing of nothing.
std::vector<std::string> Parts(const std::string& text) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(',', at), text.size());
        parts.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

void Expect(const Row& row, const RoutingRule& rule, const RuleFilter& filter, const char* offpeak = "SAT SUN") {
    const Verdict verdict = JudgeRule(rule, filter, BasisOf(offpeak));
    EXPECT_EQ(verdict.Matches, row.Matches) << row.Rule << " for " << row.Fax << ": " << verdict.Why;
    EXPECT_EQ(RuleMatches(rule, filter, BasisOf(offpeak)), row.Matches);
    EXPECT_FALSE(verdict.Why.empty());
}

TEST(RuleMatches, Destinations) {
    const Row rows[] = {
        {"", "UK", true},
        {"Country: uk", "UK/LON", true},
        {"Country: uk", "UK", true},
        {"Country: uk", "UKR", true}, // the identifier's beginning counts
        {"Country: UKR", "UK", false},
        {"Country: DE", "UK/LON", false},
        {"Country: DE,Country: 44", "UK", true},
        {"Area: UK/LON", "UK", true},
        {"Area: uk/lon", "UK/LON", true},
        {"Area: UK/LON", "UK/MAN", false},
        {"Area: UK/LON", "FR/PAR", false},
        {"Region: EU", "UK", true},
        {"Region: EU", "UK/MAN", true},
        {"Region: EU", "FR/PAR", true},
        {"Region: EU", "FR", false},
        {"Region: EU", "DE", false},
        {"Region: europe", "eu", true}, // and a region's
        {"Region: EU", "EUROPE", false},
        {"Area: UK/LON,Region: EU", "FR/PAR", true},
    };
    for (const Row& row : rows) {
        RoutingRule rule;
        for (const std::string& line : Parts(row.Rule)) {
            rule.Destinations.push_back({"", line});
            rule.Destinations.back().Key = FindDestinationKey(Places(), rule.Destinations.back()).value();
        }
        RuleFilter filter{Criterion::Destination, true};
        filter.Destination = row.Fax;
        Expect(row, rule, filter);
        filter.IsActive = false;
        Expect({row.Rule, "anything", !row.Rule.empty()}, rule, filter);
    }
}

TEST(RuleMatches, UsersAndServers) {
    const Row rows[] = {
        {"", "ANN", true},          {"ANN", "ann", true},   {"ANN,BEN", "ben", true},
        {"ANN,BEN", "carl", false}, {"ANN", "ANNA", false}, {"ANNA", "ANN", false},
    };
    for (const Row& row : rows) {
        RoutingRule rule;
        RuleFilter filter{Criterion::User, true};
        filter.User = filter.Server = row.Fax;
        rule.Users = Parts(row.Rule);
        Expect(row, rule, filter);
        // a rule without servers is for none, whatever else it allows
        std::swap(rule.Users, rule.Servers);
        rule.AllowsLocalServer = true;
        filter.Kind = Criterion::Server;
        Expect({row.Rule, row.Fax, row.Matches && !row.Rule.empty()}, rule, filter);
        filter.IsActive = false;
        Expect({row.Rule, "anything", !row.Rule.empty()}, rule, filter);
    }
}

TEST(RuleMatches, Priorities) {
    for (int inRule = 0; inRule < 8; ++inRule) {
        for (int inFax = 0; inFax < 8; ++inFax) {
            RoutingRule rule;
            rule.Priorities = static_cast<std::uint8_t>(inRule);
            RuleFilter filter{Criterion::Priority, true};
            filter.Priorities = static_cast<std::uint8_t>(inFax);
            bool shares = inRule == 0;
            for (const int bit : {1, 2, 4}) shares = shares || (inRule / bit % 2 == 1 && inFax / bit % 2 == 1);
            Expect({std::to_string(inRule), std::to_string(inFax), shares}, rule, filter);
            filter.IsActive = false;
            Expect({std::to_string(inRule), "anything", inRule != 0}, rule, filter);
        }
    }
}

TEST(RuleMatches, Sizes) {
    const Row rows[] = {
        {"", "0", true},
        {"PAGES LE 3", "3", true},
        {"PAGES LE 3", "4", false},
        {"pages ge 3", "3", true},
        {"PAGES GE 3", "2", false},
        {"all  PAGES  GE  3 or more", "3", true},
        {"PAGES GE 1", "0", false},
        {"PAGES LE 0", "1", false},
        {"PAGES GE 0", "1", false},
        {"PAGES LE", "1", false},
        {"PAGES LE x", "1", false},
        {"PAGES EQ 1", "1", false},
        {"LE 3", "1", false},
        {"PAGESLE 3", "1", false},
        {"PAGES PAGES LE 3", "1", false},
        {"PAGES GE 99999999999999999999", "1", false},
    };
    for (const Row& row : rows) {
        RoutingRule rule;
        rule.Size = row.Rule;
        RuleFilter filter{Criterion::Size, true};
        filter.Pages = std::stoi(row.Fax);
        Expect(row, rule, filter);
        filter.IsActive = false;
        Expect({row.Rule, "anything", !row.Rule.empty()}, rule, filter);
    }
}

TEST(RuleMatches, Times) {
    const char* const kNights = "SAT SUN AFTER 18:00 BEFORE 08:00";
    const char* const kNever = "AFTER 10:00 BEFORE 10:00";
    const struct {
        const char* Offpeak;
        Row Case; // the fax is of a weekday, hour and minute
    } rows[] = {
        {kNights, {"", "1 12:00", true}},
        {kNights, {"OFFPEAK", "6 12:00", true}},
        {kNights, {"OFFPEAK", "1 12:00", false}},
        {kNights, {"OFFPEAK", "1 07:59", true}},
        {kNights, {"offpeak", "1 08:00", false}},
        {kNights, {"OFFPEAK", "5 18:00", true}},
        {kNights, {"PEAK", "6 12:00", false}},
        {kNights, {"Peak", "1 12:00", true}},
        {kNights, {"PEAK", "1 07:59", false}},
        {kNever, {"PEAK", "3 12:00", true}},
        {kNever, {"OFFPEAK", "3 12:00", true}},
        {kNights, {"AFTER 10:00 BEFORE 10:00", "3 10:00", false}},
        {kNights, {"after 09:00", "3 09:00", true}},
        {kNights, {"AFTER 09:00", "3 23:59", true}},
        {kNights, {"AFTER 09:00", "3 08:59", false}},
        {kNights, {"BEFORE 09:00", "3 00:00", true}},
        {kNights, {"BEFORE 09:00", "3 09:00", false}},
        {kNights, {"MON", "1 00:00", true}},
        {kNights, {"MON", "0 23:59", false}},
        {kNights, {"TUE AFTER 22:00 BEFORE 06:00 ", "2 12:00", true}},
        {kNights, {"TUE AFTER 22:00 BEFORE 06:00 ", "3 05:59", true}},
        {kNights, {"TUE AFTER 22:00 BEFORE 06:00 ", "3 06:00", false}},
        {kNights, {"whenever", "3 06:00", false}},
        {kNights, {"AFTER noon", "3 13:00", false}},
    };
    for (const auto& [offpeak, row] : rows) {
        RoutingRule rule;
        rule.Time = row.Rule;
        RuleFilter filter{Criterion::Time, true};
        filter.Weekday = row.Fax[0] - '0';
        filter.Hour = std::stoi(row.Fax.substr(2, 2));
        filter.Minute = std::stoi(row.Fax.substr(5, 2));
        Expect(row, rule, filter, offpeak);
        filter.IsActive = false;
        Expect({row.Rule, "anything", !row.Rule.empty()}, rule, filter);
    }
}

// From any day of a month to each weekday, which is the one asked for and a day that every month has.
TEST(JudgeFax, TellsTheRuleThatDecidesAndWhoSends) {
    RuleList rules(3);
    rules[0].Users = {"ANN"};
    rules[0].Servers = {"LON", "PAR"};
    rules[1].Description = "Two";
    rules[1].Users = {"BEN"};
    rules[1].Servers = {"LON"};
    rules[1].AllowsLocalServer = true;
    rules[2].Size = "PAGES GE 10";
    rules[2].AllowsLocalServer = true;
    const struct {
        std::string User;
        int Pages;
        std::string Verdict;
    } rows[] = {
        {"ANN", 10, "Rule 1 \"(no description)\" decides: one of the servers LON, PAR sends the fax"},
        {"ben", 10, "Rule 2 \"Two\" decides: server LON or the local server sends the fax"},
        {"CAT", 10, "Rule 3 \"(no description)\" decides: the local server sends the fax"},
        {"CAT", 9, "No rule decides: the local server sends the fax"},
    };
    for (const auto& [user, pages, expected] : rows) {
        RuleFilter fax;
        fax.User = user;
        fax.Pages = pages;
        const Criterion asked[] = {Criterion::Size, Criterion::User};
        EXPECT_EQ(DescribeVerdict(rules, JudgeFax(rules, fax, asked, BasisOf("SAT SUN"))), expected);
    }
}

TEST(RuleMatches, CountsTheWeekdayFromToday) {
    for (int day = 1; day <= 31; ++day) {
        CalendarTime today{2026, 3, day, 10, 11, 12};
        today = ToCalendar(FromCalendar(today));
        for (int weekday = 0; weekday < 7; ++weekday) {
            RuleFilter filter;
            filter.Weekday = weekday;
            filter.Hour = 20;
            filter.Minute = 21;
            const CalendarTime moment = MomentOf(filter, today);
            const CalendarTime real = ToCalendar(FromCalendar(moment));
            EXPECT_EQ(real.Weekday, weekday);
            EXPECT_EQ(moment.Weekday, weekday);
            EXPECT_TRUE(moment.Day >= 1 && moment.Day <= 28) << moment.Day;
            EXPECT_EQ(real.Month * 10000 + real.Hours * 100 + real.Minutes, 32021);
            EXPECT_EQ(real.Seconds, 0);
            const bool isNear = day + weekday - today.Weekday >= 1 && day + weekday - today.Weekday <= 28;
            EXPECT_TRUE(!isNear || moment.Day == day + weekday - today.Weekday);
        }
    }
}

} // namespace
} // namespace bv::test
