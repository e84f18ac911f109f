#include "lcr/week_mask.h"

#include <algorithm>

#include "lcr/lcr_messages.h"
#include "platform/ascii.h"
#include "users/week_days.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kOffpeak = "OFFPEAK";
constexpr std::string_view kAllDayLong = "00:00-24:00";
constexpr std::string_view kPeak = "PEAK"; // a part of the other, which so is looked for first

std::string ClockText(int minute) { return FormatText("%.2d:%.2d", minute / kMinutesOfHour, minute % kMinutesOfHour); }

std::string HoursOf(const WeekMask& week, std::size_t midnight) {
    std::string hours;
    for (int hour = 0; hour < kHoursOfDay; ++hour) {
        int count = 0;
        for (int minute = 0; minute < kMinutesOfHour; ++minute)
            count += week[midnight + static_cast<std::size_t>(hour * kMinutesOfHour + minute)] ? 1 : 0;
        hours += count == 0 ? '.' : count == kMinutesOfHour ? '#' : '+';
    }
    return hours;
}

std::string TimesOf(const WeekMask& week, std::size_t midnight) {
    std::string times;
    bool isIn = false;
    for (int minute = 0; minute <= kMinutesOfDay; ++minute) {
        const bool isNow = minute < kMinutesOfDay && week[midnight + static_cast<std::size_t>(minute)];
        if (isNow && !isIn) times.append(times.empty() ? "" : " ").append(ClockText(minute));
        if (!isNow && isIn) times.append("-").append(ClockText(minute));
        isIn = isNow;
    }
    return times;
}

} // namespace

WeekMask WeekOf(const TimeRange& range) {
    WeekMask week;
    for (std::size_t i = 0; i < week.size(); ++i) {
        const int minute = static_cast<int>(i);
        const int ofDay = minute % kMinutesOfDay;
        week[i] = PermitsSending(range, minute / kMinutesOfDay, ofDay / kMinutesOfHour, ofDay % kMinutesOfHour);
    }
    return week;
}

bool NeedsOffpeak(std::string_view time) { return UpperText(time).find(kPeak) != std::string::npos; }

std::optional<WeekMask> WeekOfTime(std::string_view time, const std::optional<TimeRange>& offpeak) {
    if (time.empty()) return WeekMask().set();
    const std::string words = UpperText(time);
    const std::optional<TimeRange> range = NeedsOffpeak(time) ? offpeak : ParseTimeRange(words);
    if (!range) return {};
    const WeekMask week = WeekOf(*range);
    if (!NeedsOffpeak(time)) return week;
    if (week.none()) return WeekMask().set(); // a period that never comes keeps no fax back
    return words.find(kOffpeak) != std::string::npos ? week : ~week;
}

std::optional<WeekMask> EnterWeek(std::string_view time) {
    const std::optional<WeekMask> week = WeekOfTime(time, ReadOffpeak());
    if (!week && NeedsOffpeak(time)) ShowError(kOffpeakUndetermined);
    if (!week && !NeedsOffpeak(time)) ShowError(kNotATime, time);
    return week;
}

std::vector<ShownDay> ShowWeek(const WeekMask& week) {
    std::vector<ShownDay> days;
    int day = 0; // a mask begins with Sunday
    for (const WeekDay& shown : kWeekDays) {
        day = (day + 1) % kDaysOfWeek;
        const auto midnight = static_cast<std::size_t>(day * kMinutesOfDay);
        days.push_back({shown.Word, HoursOf(week, midnight), TimesOf(week, midnight)});
    }
    return days;
}

std::string WeekInWords(const WeekMask& week) {
    if (week.all()) return FillMessage(kAtAnyTime);
    if (week.none()) return FillMessage(kAtNoTime);
    const std::vector<ShownDay> days = ShowWeek(week);
    std::string words;
    for (auto first = days.begin(); first != days.end();) {
        const auto next = std::find_if(first, days.end(), [&](const auto& day) { return day.Times != first->Times; });
        if (!first->Times.empty()) {
            words.append(words.empty() ? "" : ", ").append(first->Day);
            if (next - first > 1) words.append("-").append(std::prev(next)->Day);
            words.append(" ").append(first->Times == kAllDayLong ? FillMessage(kAllDay) : first->Times);
        }
        first = next;
    }
    return words;
}

} // namespace bv
