#include "lcr/rule_edit.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <utility>

#include "ctlfile/digits.h"
#include "ctlfile/reader.h"
#include "lcr/lcr_messages.h"
#include "lcr/rule_file.h"
#include "lcr/time_range.h"
#include "platform/ascii.h"
#include "users/week_days.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kOffpeak = "OFFPEAK";
constexpr std::string_view kPeak = "PEAK";
constexpr int kMostPages = 100;
constexpr int kEndOfDay = 24;

// Whether a field holds at most two digits and a number below the limit; a message says when not.
bool CheckField(MessageId<2> fault, std::string_view name, const std::string& text, int limit) {
    const std::optional<int> number = ParseDigits(text);
    if (number && text.size() <= 2 && *number < limit) return true;
    ShowError(fault, name, text);
    return false;
}

struct EnteredTime {
    std::string_view Word; // "AFTER" or "BEFORE"
    TimeField Hour;
    TimeField Minute;

    [[nodiscard]] bool IsLeftOut(const RuleTime& time) const { return (time.*Hour + time.*Minute).empty(); }
    [[nodiscard]] bool IsFine(const RuleTime& time, TimeField& wrong) const {
        wrong = Hour;
        if (!CheckField(kNotAnHour, Word, time.*Hour, kEndOfDay)) return false;
        wrong = Minute;
        return CheckField(kNotMinutes, Word, time.*Minute, 60);
    }
    [[nodiscard]] std::string Clock(const RuleTime& time) const {
        return FormatText("%.2d:%.2d", ParseDigits(time.*Hour).value_or(0), ParseDigits(time.*Minute).value_or(0));
    }
};
constexpr EnteredTime kAfter = {"AFTER", &RuleTime::AfterHour, &RuleTime::AfterMinute};
constexpr EnteredTime kBefore = {"BEFORE", &RuleTime::BeforeHour, &RuleTime::BeforeMinute};

std::string TwoDigits(int number) { return FormatText("%.2d", number); }

std::optional<std::string> MakeSpecificText(const RuleTime& time, TimeField& wrong) {
    std::string text;
    for (const WeekDay& day : kWeekDays)
        if ((time.Days & day.Bit) != 0) text.append(day.Word).append(" ");
    for (const EnteredTime& entered : {kAfter, kBefore}) {
        if (entered.IsLeftOut(time)) continue;
        if (!entered.IsFine(time, wrong)) return {};
        text.append(entered.Word).append(" ").append(entered.Clock(time)).append(" ");
    }
    // Without AFTER the period starts at midnight.
    if (!kBefore.IsLeftOut(time) && kAfter.Clock(time) == kBefore.Clock(time)) {
        wrong = kBefore.Hour;
        ShowError(kTimesAreEqual, kBefore.Clock(time));
        return {};
    }
    if (!text.empty()) return text;
    wrong = nullptr;
    ShowError(kTimeIsEmpty);
    return {};
}

// Joins texts by a comma and a blank; "(any)" without any.
std::string Listed(const std::vector<std::string>& texts) {
    std::string list;
    for (const std::string& text : texts) list.append(list.empty() ? "" : ", ").append(text);
    return list.empty() ? std::string(kAnyValue) : list;
}

std::string DestinationWords(const RoutingRule& rule, const Destinations& places) {
    std::vector<std::string> words;
    for (const RuleDestination& destination : rule.Destinations) {
        const std::string value(KeyValue(destination.Line).value_or(""));
        words.push_back(IsRegion(destination) ? FindRegionName(places, value) : FindDestinationName(places, value));
    }
    return Listed(words);
}

std::string PriorityWords(const RoutingRule& rule) {
    if (IsAnyPriority(rule.Priorities)) return std::string(kAnyValue);
    const auto words = WordsOfPriorities(rule.Priorities, kPriorityNames);
    return Listed({words.begin(), words.end()});
}

std::string SizeWords(const RoutingRule& rule) {
    const std::optional<RuleSize> size = ShowSize(rule.Size);
    if (!size) return rule.Size.String();
    switch (size->Which) {
    case RuleSize::Choice::Any: break;
    case RuleSize::Choice::Large: return size->Pages + " pages or more";
    case RuleSize::Choice::Small: return size->Pages + " pages or less";
    }
    return std::string(kAnyValue);
}

std::string TextOr(std::string_view text, std::string_view otherwise) {
    return std::string(text.empty() ? otherwise : text);
}

// Whether the rule may be kept although it has no criteria.
bool CheckWithoutCriteria(const RoutingRule& rule) {
    if (!rule.Servers.empty())
        return AskFilled(kCaptionOfWarning, BoxIcon::Warning, FillMessage(kKeepRuleForAll), BoxButtons::OkCancel);
    ShowError(kRuleSelectsNothing);
    return false;
}

bool CheckDescription(const RuleList& rules, std::optional<std::size_t> position, const RoutingRule& edited) {
    for (std::size_t i = 0; i < rules.size(); ++i) {
        if (i == position || !EqualFolded(rules[i].Description, edited.Description)) continue;
        ShowError(kDescriptionInUse);
        return false;
    }
    return true;
}

bool IsUnchanged(const RuleList& rules, std::optional<std::size_t> position, const RoutingRule& edited) {
    return IsSameRule(edited, position ? rules[*position] : RoutingRule());
}

// What is wrong with a changed rule, after its message.
RuleField FindFault(const RuleList& rules, std::optional<std::size_t> position, RoutingRule& edited) {
    if (!HasCriteria(edited) && !CheckWithoutCriteria(edited)) return RuleField::Criteria;
    if (HasCriteria(edited) && !CheckServers(edited)) return RuleField::Servers;
    if (edited.Description.IsEmpty()) edited.Description = kNoDescription; // as its written line reads back
    if (!CheckDescription(rules, position, edited)) return RuleField::Description;
    if (IsKeptByFile(edited)) return RuleField::Nothing;
    ShowError(kRuleReadsDifferently, edited.Description.View());
    return RuleField::Description;
}

} // namespace

std::optional<std::string> MakeTimeText(const RuleTime& time, TimeField& wrong) {
    switch (time.When) {
    case RuleTime::Choice::Any: return "";
    case RuleTime::Choice::Offpeak: return std::string(kOffpeak);
    case RuleTime::Choice::Peak: return std::string(kPeak);
    case RuleTime::Choice::Specific: break;
    }
    return MakeSpecificText(time, wrong);
}

std::optional<RuleTime> ShowTime(std::string_view text) {
    text = TrimBlanks(text);
    if (text.empty()) return RuleTime();
    if (EqualFolded(text, kOffpeak)) return RuleTime{RuleTime::Choice::Offpeak};
    if (EqualFolded(text, kPeak)) return RuleTime{RuleTime::Choice::Peak};
    const std::optional<TimeRange> range = ParseTimeRange(text);
    if (!range || !IsValidSendTime(text)) return {};
    RuleTime time{RuleTime::Choice::Specific, range->Days};
    const bool hasTimes = range->FromHour != 0 || range->FromMinute != 0 || range->ToHour != 0 || range->ToMinute != 0;
    const bool isToEndOfDay = range->ToHour == kEndOfDay && range->ToMinute == 0;
    if (!hasTimes) return time;
    // A period from midnight may have been given by its end alone.
    if (isToEndOfDay || UpperText(text).find("AFTER") != std::string::npos) {
        time.AfterHour = TwoDigits(range->FromHour);
        time.AfterMinute = TwoDigits(range->FromMinute);
    }
    if (isToEndOfDay) return time;
    time.BeforeHour = TwoDigits(range->ToHour);
    time.BeforeMinute = TwoDigits(range->ToMinute);
    return time;
}

std::optional<std::string> MakeSizeText(const RuleSize& size) {
    if (size.Which == RuleSize::Choice::Any) return "";
    const std::optional<int> pages = ParseDigits(size.Pages);
    const bool isLarge = size.Which == RuleSize::Choice::Large;
    if (isLarge && pages && *pages < 2) {
        ShowWarning(kOnePageIsAnySize);
        return "";
    }
    if (!pages || *pages < 1 || *pages > kMostPages) {
        ShowError(kNotPages, size.Pages);
        return {};
    }
    return FormatText(isLarge ? "PAGES GE %d" : "PAGES LE %d", *pages);
}

std::optional<RuleSize> ShowSize(std::string_view text) {
    if (text.empty()) return RuleSize();
    for (const auto& [prefix, which] :
         {std::pair("PAGES GE ", RuleSize::Choice::Large), std::pair("PAGES LE ", RuleSize::Choice::Small)}) {
        if (!StartsWithFolded(text, prefix)) continue;
        const std::optional<int> pages = ParseDigits(text.substr(std::string_view(prefix).size()));
        if (pages && *pages >= 1 && *pages <= kMostPages) return RuleSize{which, std::to_string(*pages)};
    }
    return {};
}

void GroupDestinations(RoutingRule& rule) {
    std::vector<RuleDestination> grouped;
    const auto kindOf = [](const RuleDestination& one) { return one.Line.substr(0, one.Line.find(':')); };
    for (const RuleDestination& first : rule.Destinations) {
        const auto isOfKind = [&](const RuleDestination& one) { return EqualFolded(kindOf(one), kindOf(first)); };
        if (std::ranges::any_of(grouped, isOfKind)) continue;
        std::ranges::copy_if(rule.Destinations, std::back_inserter(grouped), isOfKind);
    }
    rule.Destinations = std::move(grouped);
}

std::vector<std::string> ShowServers(const RoutingRule& rule) {
    std::vector<std::string> names = rule.Servers;
    if (rule.AllowsLocalServer) names.emplace_back(kLocalServerName);
    return names;
}

void SetServers(RoutingRule& rule, std::span<const std::string> names) {
    rule.Servers.clear();
    rule.AllowsLocalServer = false;
    for (const std::string& name : names) {
        if (name == kLocalServerName)
            rule.AllowsLocalServer = true;
        else
            rule.Servers.push_back(name);
    }
}

bool CheckServers(const RoutingRule& rule) {
    if (!rule.Servers.empty() || rule.AllowsLocalServer) return true;
    ShowError(kSelectSomeServers);
    return false;
}

RuleCheck CheckRule(const RuleList& rules, std::optional<std::size_t> position, RoutingRule& edited,
                    const RuleNames& names, RuleLeaving leaving, RuleField& wrong) {
    wrong = RuleField::Nothing;
    CheckReferences(edited, names);
    if (IsUnchanged(rules, position, edited)) return RuleCheck::Unchanged;
    if (leaving == RuleLeaving::PreviousOrNext && !AskQuestion(kKeepRuleChanges)) return RuleCheck::Discarded;
    wrong = FindFault(rules, position, edited);
    return wrong == RuleField::Nothing ? RuleCheck::Fine : RuleCheck::Refused;
}

RuleCheck ChangeRule(RuleList& rules, std::optional<std::size_t> position, RoutingRule edited) {
    if (!position && edited.Description.IsEmpty()) {
        ShowError(kRuleNeedsDescription);
        return RuleCheck::Refused;
    }
    if (IsUnchanged(rules, position, edited)) return RuleCheck::Unchanged;
    if (FindFault(rules, position, edited) != RuleField::Nothing) return RuleCheck::Refused;
    if (position)
        rules[*position] = edited;
    else
        rules.push_back(edited);
    return RuleCheck::Fine;
}

std::vector<SummaryLine> SummarizeRule(const RoutingRule& rule, const Destinations& places) {
    return {
        {"Description", TextOr(rule.Description, kNoDescription)},
        {"Destinations", DestinationWords(rule, places)},
        {"Priority", PriorityWords(rule)},
        {"Users", Listed(rule.Users)},
        {"Time", TextOr(rule.Time, kAnyValue)},
        {"Size", SizeWords(rule)},
        {"Servers", Listed(ShowServers(rule))},
    };
}

} // namespace bv
