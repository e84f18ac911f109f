#include "lcr/fax_entry.h"

#include <algorithm>
#include <cstdint>

#include "ctlfile/key_fields.h"
#include "lcr/lcr_messages.h"
#include "lcr/rule_values.h"
#include "platform/ascii.h"
#include "users/permissions.h"
#include "voice/messages.h"

namespace bv {
namespace {

bool CheckName(std::string_view key, const std::string& name, const NameSet& names) {
    if (name.empty() || names.Has(name)) return true;
    ShowError(kNotDefined, key, name);
    return false;
}

// The reference with the country as its identifier, or a region's identifier, or else the place of a number.
bool EnterDestination(const std::string& given, const Destinations& places, RuleFilter& fax) {
    if (const auto reference = places.Convert(given, ReferenceForm::Identifier)) {
        fax.Destination = *reference;
        return true;
    }
    const RegionEntry* region = places.FindRegion(given);
    if (region != nullptr) {
        fax.Destination = region->Identifier;
        return true;
    }
    if (LooksLikeNumber(given))
        fax.Number = EnterNumber(places, given);
    else
        ShowError(kNoNumberNoPlace, given);
    return fax.Number.has_value();
}

bool EnterPages(const std::string& given, RuleFilter& fax) {
    using Codec = ValueCodec<std::uint16_t>;
    if (const auto fault = FaultOfValue("Pages", Codec::kRule, given)) {
        ShowError("%s", *fault);
        return false;
    }
    std::uint16_t pages = 0;
    Codec::Store(pages, given);
    fax.Pages = pages;
    return true;
}

std::optional<CalendarTime> ParseMoment(std::string_view text) {
    constexpr std::string_view kForm = "0000-00-00 00:00";
    const auto fits = [](char form, char c) { return form == '0' ? IsDigit(c) : form == c; };
    if (text.size() != kForm.size() || !std::ranges::equal(kForm, text, fits)) return {};
    const auto number = [text](std::size_t at, std::size_t size) {
        int value = 0;
        for (const char digit : text.substr(at, size)) value = value * 10 + (digit - '0');
        return value;
    };
    constexpr int kNoon = 12;
    CalendarTime day{number(0, 4), number(5, 2), number(8, 2), kNoon};
    const CalendarTime known = ToCalendar(FromCalendar(day));
    day.Hours = number(11, 2);
    day.Minutes = number(14, 2);
    day.Weekday = known.Weekday;
    const bool isDay = known.Year == day.Year && known.Month == day.Month && known.Day == day.Day;
    if (!isDay || day.Hours > 23 || day.Minutes > 59) return {};
    return day;
}

} // namespace

bool DescribeFax(const FaxDescription& given, const RuleNames& names, RuleFilter& fax) {
    fax.User = given.User.value_or("");
    fax.Server = given.Server.value_or("");
    return CheckName("User", fax.User, names.Users) && CheckName("Server", fax.Server, names.Servers) &&
           EnterPriorities(fax.Priorities, given.Priority.value_or("")) &&
           (!given.Pages || EnterPages(*given.Pages, fax)) &&
           (!given.Destination || EnterDestination(*given.Destination, names.Places, fax));
}

std::optional<TimeRange> EnterTimeRange(std::string_view words) {
    const bool isOffpeak = EqualFolded(words, "OFFPEAK");
    std::optional<TimeRange> range;
    if (isOffpeak)
        range = ReadOffpeak();
    else if (IsValidSendTime(words))
        range = ParseTimeRange(words);
    if (!range && isOffpeak) ShowError(kOffpeakUndetermined);
    if (!range && !isOffpeak) ShowError(kNotATime, words);
    return range;
}

std::optional<CalendarTime> EnterMoment(std::string_view text) {
    const std::optional<CalendarTime> moment = ParseMoment(text);
    if (!moment) ShowError(kNotAMoment, text);
    return moment;
}

std::string MomentText(const CalendarTime& moment) {
    return FormatText("%.4d-%.2d-%.2d %.2d:%.2d", moment.Year, moment.Month, moment.Day, moment.Hours, moment.Minutes);
}

} // namespace bv
