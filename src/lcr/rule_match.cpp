#include "lcr/rule_match.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

#include "lcr/rule_references.h"
#include "platform/ascii.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr int kDaysOfWeek = 7;
constexpr int kLastDayOfAll = 28; // every month has it

constexpr std::string_view kIsOpen = "the rule has no such criterion";

Verdict Judge(bool matches, std::string_view whyYes, std::string_view whyNo) {
    return {matches, matches ? whyYes : whyNo};
}

bool Covers(const RuleDestination& destination, const std::string& wanted, const Destinations& places) {
    const std::string& key = destination.Key;
    if (IsRegion(destination)) return StartsWithFolded(key, wanted) || places.RegionContains(key, wanted);
    const bool isArea = key.find('/') != std::string::npos;
    return isArea ? StartsWithFolded(key, wanted) : StartsWithFolded(wanted, key);
}

bool CoversAnyOf(const RuleDestination& destination, const std::vector<std::string>& wanted,
                 const Destinations& places) {
    return std::ranges::any_of(wanted, [&](const auto& place) { return CoversPlace(destination, place, places); });
}

bool HasName(const std::vector<std::string>& names, std::string_view wanted) {
    return std::ranges::any_of(names, [wanted](const std::string& name) { return EqualFolded(name, wanted); });
}

Verdict JudgeDestination(const RoutingRule& rule, const RuleFilter& filter, const Destinations& places) {
    if (rule.Destinations.empty()) return {true, kIsOpen};
    const std::vector<std::string> wanted = filter.Number ? filter.Number->References() : std::vector<std::string>();
    const auto covers = [&](const RuleDestination& one) {
        return filter.Number ? CoversAnyOf(one, wanted, places) : Covers(one, filter.Destination, places);
    };
    return Judge(std::ranges::any_of(rule.Destinations, covers), "one of the rule's destinations covers it",
                 "none of the rule's destinations covers it");
}

Verdict JudgePriority(const RoutingRule& rule, const RuleFilter& filter) {
    if (rule.Priorities == 0) return {true, kIsOpen};
    return Judge((rule.Priorities & filter.Priorities) != 0, "the rule takes this priority",
                 "the rule takes other priorities");
}

Verdict JudgeServer(const RoutingRule& rule, const RuleFilter& filter) {
    if (rule.Servers.empty()) return {false, "the rule names no remote server"};
    return Judge(HasName(rule.Servers, filter.Server), "the rule names this server", "the rule names other servers");
}

Verdict JudgeUser(const RoutingRule& rule, const RuleFilter& filter) {
    if (rule.Users.empty()) return {true, kIsOpen};
    return Judge(HasName(rule.Users, filter.User), "the rule names this user", "the rule names other users");
}

// Takes the first word off the front; empty at the end.
std::string_view TakeWord(std::string_view& text) {
    text = SkipBlanks(text);
    const std::string_view word = text.substr(0, std::min(text.find(' '), text.size()));
    text.remove_prefix(word.size());
    return word;
}

int NumberOf(std::string_view word) {
    int number = 0;
    std::from_chars(word.data(), word.data() + word.size(), number);
    return number;
}

Verdict JudgeSize(const RoutingRule& rule, const RuleFilter& filter) {
    if (rule.Size.IsEmpty()) return {true, kIsOpen};
    const std::optional<PageRange> pages = PagesOfSize(rule.Size);
    if (!pages) return {false, "the rule's size cannot be understood"};
    if (filter.Pages == 0) return {false, "a fax without pages has no size"};
    if (filter.Pages > pages->Most) return {false, "the fax has too many pages"};
    return Judge(filter.Pages >= pages->Least,
                 pages->Most == PageRange().Most ? "the fax is large enough" : "the fax is small enough",
                 "the fax has too few pages");
}

Verdict JudgeTime(const RoutingRule& rule, const RuleFilter& filter, const MatchBasis& basis) {
    if (rule.Time.IsEmpty()) return {true, kIsOpen};
    const std::string words = UpperText(rule.Time);
    const CalendarTime moment = MomentOf(filter, basis.Today);
    const std::int64_t now = SecondsOfMoment(moment);
    // OFFPEAK comes first: PEAK is a part of it.
    if (const bool isOffpeak = words.find("OFFPEAK") != std::string::npos;
        isOffpeak || words.find("PEAK") != std::string::npos) {
        if (!basis.Offpeak) return {false, "the server's off-peak period is not known"};
        const std::int64_t permitted = GetPermittedTime(moment, *basis.Offpeak);
        if (permitted == kNeverPermitted) return {true, "the server's off-peak period never comes"};
        const bool isInPeriod = now >= permitted;
        return {isInPeriod == isOffpeak, isInPeriod ? "it is in the off-peak period" : "it is in peak time"};
    }
    const std::optional<TimeRange> range = ParseTimeRange(words);
    if (!range) return {false, "the rule's time cannot be understood"};
    const std::int64_t permitted = GetPermittedTime(moment, *range);
    if (permitted == kNeverPermitted) return {false, "the rule's time never comes"};
    return Judge(now >= permitted, "it is within the rule's time", "it is outside the rule's time");
}

bool HasCriterion(const RoutingRule& rule, Criterion kind) {
    switch (kind) {
    case Criterion::Destination: return !rule.Destinations.empty();
    case Criterion::Priority: return rule.Priorities != 0;
    case Criterion::Server: return !rule.Servers.empty();
    case Criterion::Size: return !rule.Size.IsEmpty();
    case Criterion::Time: return !rule.Time.IsEmpty();
    case Criterion::User: return !rule.Users.empty();
    }
    return false;
}

} // namespace

bool CoversPlace(const RuleDestination& destination, std::string_view place, const Destinations& places) {
    if (IsRegion(destination)) return places.RegionContains(destination.Key, place);
    const bool isArea = destination.Key.find('/') != std::string::npos;
    return isArea ? EqualFolded(place, destination.Key) : StartsWithFolded(place, destination.Key);
}

std::optional<PageRange> PagesOfSize(std::string_view size) {
    const std::string text = UpperText(size);
    std::string_view rest = text;
    std::string_view word = TakeWord(rest);
    while (!word.empty() && word != "PAGES") word = TakeWord(rest);
    const std::string_view relation = TakeWord(rest);
    const int limit = NumberOf(TakeWord(rest));
    if (limit == 0 || (relation != "LE" && relation != "GE")) return {};
    return relation == "LE" ? PageRange{1, limit} : PageRange{.Least = std::max(limit, 1)};
}

CalendarTime MomentOf(const RuleFilter& filter, const CalendarTime& today) {
    CalendarTime moment = today;
    moment.Day += filter.Weekday - today.Weekday;
    while (moment.Day < 1) moment.Day += kDaysOfWeek;
    while (moment.Day > kLastDayOfAll) moment.Day -= kDaysOfWeek;
    moment.Weekday = filter.Weekday;
    moment.Hours = filter.Hour;
    moment.Minutes = filter.Minute;
    moment.Seconds = 0;
    return moment;
}

Verdict JudgeRule(const RoutingRule& rule, const RuleFilter& filter, const MatchBasis& basis) {
    if (!filter.IsActive) return Judge(HasCriterion(rule, filter.Kind), "the rule has this criterion", kIsOpen);
    switch (filter.Kind) {
    case Criterion::Destination: return JudgeDestination(rule, filter, basis.Places);
    case Criterion::Priority: return JudgePriority(rule, filter);
    case Criterion::Server: return JudgeServer(rule, filter);
    case Criterion::Size: return JudgeSize(rule, filter);
    case Criterion::Time: return JudgeTime(rule, filter, basis);
    case Criterion::User: return JudgeUser(rule, filter);
    }
    return {};
}

const std::pair<Criterion, Verdict>* RuleVerdict::Against() const {
    const auto found = std::ranges::find_if(Criteria, [](const auto& one) { return !one.second.Matches; });
    return found == Criteria.end() ? nullptr : &*found;
}

FaxVerdict JudgeFax(const RuleList& rules, RuleFilter fax, std::span<const Criterion> asked, const MatchBasis& basis) {
    FaxVerdict judged;
    fax.IsActive = true;
    for (const RoutingRule& rule : rules) {
        RuleVerdict verdict;
        for (const Criterion kind : asked) {
            fax.Kind = kind;
            verdict.Criteria.emplace_back(kind, JudgeRule(rule, fax, basis));
        }
        if (verdict.Against() == nullptr && !judged.Deciding) judged.Deciding = judged.Rules.size();
        judged.Rules.push_back(std::move(verdict));
    }
    return judged;
}

std::string DescribeVerdict(const RuleList& rules, const FaxVerdict& verdict) {
    if (!verdict.Deciding) return "No rule decides: the local server sends the fax";
    const RoutingRule& rule = rules[*verdict.Deciding];
    const std::string_view description = rule.Description.IsEmpty() ? kNoDescription : rule.Description.View();
    std::string senders;
    for (const std::string& server : rule.Servers) senders.append(senders.empty() ? "" : ", ").append(server);
    if (!senders.empty()) senders.insert(0, rule.Servers.size() == 1 ? "server " : "one of the servers ");
    if (senders.empty())
        senders = "the local server";
    else if (rule.AllowsLocalServer)
        senders += " or the local server";
    return FormatText("Rule %d \"%s\" decides: %s sends the fax", *verdict.Deciding + 1, description, senders);
}

bool RuleMatches(const RoutingRule& rule, const RuleFilter& filter, const MatchBasis& basis) {
    return JudgeRule(rule, filter, basis).Matches;
}

} // namespace bv
