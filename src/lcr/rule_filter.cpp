#include "lcr/rule_filter.h"

#include <algorithm>
#include <array>
#include <unordered_map>

#include "ctlfile/digits.h"
#include "lcr/lcr_messages.h"
#include "platform/ascii.h"
#include "users/week_days.h"
#include "voice/caught_messages.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr int kMostPages = 100;
constexpr int kHours = 24;
constexpr int kMinutes = 60;

// In the order of Criterion.
constexpr std::array<std::string_view, 6> kNames = {"destination", "priority", "server", "size", "time", "user"};

// Takes "14:30" and "1430".
bool EnterClock(const std::string& text, RuleFilter& fax) {
    std::string digits = text;
    std::erase(digits, ':');
    digits.insert(0, digits.size() < 4 ? 4 - digits.size() : 0, '0');
    const std::string hour = digits.substr(0, digits.size() - 2);
    const std::string minute = digits.substr(digits.size() - 2);
    fax.Hour = ParseDigits(hour).value_or(kHours);
    fax.Minute = ParseDigits(minute).value_or(kMinutes);
    if (fax.Hour >= kHours) ShowError(kNotAnHour, "Time", text);
    if (fax.Hour < kHours && fax.Minute >= kMinutes) ShowError(kNotMinutes, "Time", text);
    return fax.Hour < kHours && fax.Minute < kMinutes;
}

bool CheckPages(const std::string& text) {
    const int pages = ParseDigits(text).value_or(0);
    if (pages >= 1 && pages <= kMostPages) return true;
    ShowError(kNotPages, text);
    return false;
}

std::string ValueOf(const FilterEntry& entry, Criterion kind) {
    switch (kind) {
    case Criterion::Destination: return entry.Fax.Destination.value_or("");
    case Criterion::Priority: return entry.Fax.Priority.value_or("");
    case Criterion::Server: return entry.Fax.Server.value_or("");
    case Criterion::Size: return entry.Fax.Pages.value_or("");
    case Criterion::Time: return entry.Clock;
    case Criterion::User: return entry.Fax.User.value_or("");
    }
    return {};
}

// The fax as the entry has it, with only the values that are asked about and given.
bool Describe(const FilterEntry& entry, const RuleNames& names, RuleFilter& fax) {
    const auto given = [&](Criterion kind) {
        const std::string value = entry.Asks(kind) ? ValueOf(entry, kind) : std::string();
        return value.empty() ? std::nullopt : std::optional(value);
    };
    const FaxDescription described = {given(Criterion::Destination), given(Criterion::User), given(Criterion::Server),
                                      given(Criterion::Priority), given(Criterion::Size)};
    if (described.Pages && !CheckPages(*described.Pages)) return false;
    fax.Weekday = entry.Weekday;
    const std::optional<std::string> clock = given(Criterion::Time);
    return DescribeFax(described, names, fax) && (!clock || EnterClock(*clock, fax));
}

} // namespace

bool FilterEntry::Asks(Criterion kind) const { return std::ranges::find(Asked, kind) != Asked.end(); }

std::optional<std::vector<RuleFilter>> EnterFilter(const FilterEntry& entry, const RuleNames& names) {
    RuleFilter fax;
    if (!Describe(entry, names, fax)) return {};
    std::vector<RuleFilter> filters;
    for (const Criterion kind : entry.Asked) {
        fax.Kind = kind;
        fax.IsActive = !ValueOf(entry, kind).empty();
        filters.push_back(fax);
    }
    return filters;
}

bool MeetsAll(const RoutingRule& rule, const std::vector<RuleFilter>& filters, const MatchBasis& basis) {
    return std::ranges::all_of(filters, [&](const RuleFilter& one) { return RuleMatches(rule, one, basis); });
}

std::string DescribeFilter(const FilterEntry& entry) {
    std::string words;
    for (const Criterion kind : entry.Asked) {
        const std::string_view name = kNames.at(static_cast<std::size_t>(kind));
        std::string value = ValueOf(entry, kind);
        if (kind == Criterion::Time && !value.empty())
            value.insert(0, std::string(kWeekDays[(entry.Weekday + 6) % 7].Word) + " ");
        words.append(words.empty() ? "" : ", ");
        words += value.empty() ? FormatText("has a %s", name) : FormatText("%s %s", name, value);
    }
    return words;
}

std::string_view WhyNot(const RoutingRule& rule, const TriedFax& fax, const MatchBasis& basis) {
    for (const RuleFilter& filter : fax.Filters) {
        const Verdict verdict = JudgeRule(rule, filter, basis);
        if (!verdict.Matches) return verdict.Why;
    }
    return {};
}

TriedFax TryFax(const FilterEntry& entry, const RuleList& rules, const RuleNames& names, const MatchBasis& basis) {
    FilterEntry given = entry;
    std::erase_if(given.Asked, [&](Criterion kind) { return ValueOf(entry, kind).empty(); });
    CaughtMessages caught;
    TriedFax tried;
    std::optional<std::vector<RuleFilter>> filters = EnterFilter(given, names);
    const std::string said = caught.TakeLast();
    if (!filters) {
        tried.Result = said;
        return tried;
    }
    tried.Filters = std::move(*filters);
    std::unordered_map<std::string, bool> times; // there are fewer texts of time than rules, and each is work
    const auto meets = [&](const RoutingRule& rule, const RuleFilter& filter) {
        if (filter.Kind != Criterion::Time) return RuleMatches(rule, filter, basis);
        const auto [time, isNew] = times.try_emplace(rule.Time.String());
        if (isNew) time->second = RuleMatches(rule, filter, basis);
        return time->second;
    };
    const auto found = std::ranges::find_if(rules, [&](const RoutingRule& rule) {
        return std::ranges::all_of(tried.Filters, [&](const RuleFilter& filter) { return meets(rule, filter); });
    });
    if (found != rules.end()) tried.Deciding = static_cast<std::size_t>(found - rules.begin());
    tried.Result = FillMessage(kPredictedFromRules, DescribeVerdict(rules, {{}, tried.Deciding}));
    if (!said.empty()) tried.Result += ". " + said; // of a number that was taken as it stands
    return tried;
}

} // namespace bv
