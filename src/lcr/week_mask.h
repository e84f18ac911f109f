// The minutes of the week at which a rule applies.
#pragma once

#include <bitset>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lcr/time_range.h"

namespace bv {

inline constexpr int kDaysOfWeek = 7;
inline constexpr int kHoursOfDay = 24;
inline constexpr int kMinutesOfHour = 60;
inline constexpr int kMinutesOfDay = kHoursOfDay * kMinutesOfHour;

using WeekMask = std::bitset<kDaysOfWeek * kMinutesOfDay>; // from Sunday 00:00

WeekMask WeekOf(const TimeRange& range);

// Whether a rule's time goes by the server's off-peak period.
bool NeedsOffpeak(std::string_view time);

// The week of a rule's time, which is the whole one when that is empty. None for a time that cannot be understood, and
// for PEAK and OFFPEAK without a period. Shows nothing.
std::optional<WeekMask> WeekOfTime(std::string_view time, const std::optional<TimeRange>& offpeak);

// The same with the period as it is now; none after 9186 or 9187.
std::optional<WeekMask> EnterWeek(std::string_view time);

// A day of a week as it is shown.
struct ShownDay {
    std::string_view Day; // "MON"
    std::string Hours;    // a character for each: '#' all of it, '+' a part, '.' nothing
    std::string Times;    // "00:00-08:00 18:00-24:00"; empty for a day without any

    friend bool operator==(const ShownDay&, const ShownDay&) = default;
};

// From Monday on.
std::vector<ShownDay> ShowWeek(const WeekMask& week);

// The week in words, days of the same times together: "MON-FRI 00:00-08:00 18:00-24:00, SAT-SUN all day".
std::string WeekInWords(const WeekMask& week);

} // namespace bv
