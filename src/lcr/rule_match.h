// Whether a rule's criteria are met by a fax that somebody describes, one criterion at a time, and why.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ctlfile/dates.h"
#include "lcr/destinations.h"
#include "lcr/number_place.h"
#include "lcr/rule.h"
#include "lcr/time_range.h"

namespace bv {

enum class Criterion { Destination, Priority, Server, Size, Time, User };

// One thing that is known of a fax, and whether it is asked about.
struct RuleFilter {
    Criterion Kind = Criterion::Destination;
    bool IsActive = false;
    std::string Destination = {}; // a reference, the country as its identifier
    std::uint8_t Priorities = 0;  // any of them
    std::string Server = {};      // an identifier
    std::string User = {};
    int Weekday = 0; // 0 is Sunday
    int Hour = 0;
    int Minute = 0;
    int Pages = 0;
    std::optional<NumberPlace> Number = {}; // where the fax goes when that is known, in place of the destination
};

// Whether a rule's destination covers a fax to a number in a place, which is a country's identifier, for a number in
// none of its areas, or a reference of an area.
bool CoversPlace(const RuleDestination& destination, std::string_view place, const Destinations& places);

// The numbers of pages that a rule's size takes; none when it cannot be understood.
struct PageRange {
    int Least = 1;
    int Most = std::numeric_limits<int>::max();
};
std::optional<PageRange> PagesOfSize(std::string_view size);

// What a criterion is judged by beside the fax.
struct MatchBasis {
    const Destinations& Places;
    std::optional<TimeRange> Offpeak; // none: it is not known
    CalendarTime Today;               // the local date, from which the next weekday is counted
};

struct Verdict {
    bool Matches = false;
    std::string_view Why; // a few words
};

// Judges one criterion of a rule whose references have been checked. Of an inactive filter: whether the rule has the
// criterion. A rule without the criterion matches, but for the servers, of which it must name the filter's; that it
// allows the local server does not count.
Verdict JudgeRule(const RoutingRule& rule, const RuleFilter& filter, const MatchBasis& basis);
bool RuleMatches(const RoutingRule& rule, const RuleFilter& filter, const MatchBasis& basis);

// What a rule says of a fax, criterion by criterion.
struct RuleVerdict {
    std::vector<std::pair<Criterion, Verdict>> Criteria;

    // The first criterion that speaks against the rule, with its verdict; null when none does.
    [[nodiscard]] const std::pair<Criterion, Verdict>* Against() const;
};

struct FaxVerdict {
    std::vector<RuleVerdict> Rules;      // by their places
    std::optional<std::size_t> Deciding; // the place of the first rule that nothing speaks against
};

// Judges what is asked about of a fax by every rule, in their order.
FaxVerdict JudgeFax(const RuleList& rules, RuleFilter fax, std::span<const Criterion> asked, const MatchBasis& basis);

// Which rule decides, counted from 1, and who sends the fax, in one line without an end.
std::string DescribeVerdict(const RuleList& rules, const FaxVerdict& verdict);

// The moment that a filter's weekday, hour and minute stand for: near the date, on a day from 1 to 28 of its month.
CalendarTime MomentOf(const RuleFilter& filter, const CalendarTime& today);

} // namespace bv
