#include "lcr/time_range.h"

#include <utility>

#include "ctlfile/control_stream.h"
#include "ctlfile/file_gate.h"
#include "ctlfile/reader.h"
#include "shell/server_files.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr int kDaysOfWeek = 7;
constexpr std::int64_t kSecondsOfDay = 86400;

using ClockTime = std::pair<int, int>; // hour and minute

// The days to the next one, today included, on which sending is permitted all day long; 7 without any.
int DaysToWholeDay(int weekday, std::uint16_t days) {
    int ahead = 0;
    while (ahead < kDaysOfWeek && (days >> ((weekday + ahead) % kDaysOfWeek) & 1) == 0) ++ahead;
    return ahead;
}

// A time of the moment's day, so many days later.
std::int64_t Target(const CalendarTime& moment, int hour, int minute, int daysAhead) {
    CalendarTime time = moment;
    time.Hours = hour;
    time.Minutes = minute;
    time.Seconds = 0;
    if (const auto seconds = SecondsOf(time)) return *seconds + daysAhead * kSecondsOfDay;
    ShowStatus("GetPermittedTime() - invalid time (2)");
    return SecondsOfMoment(moment);
}

} // namespace

std::optional<TimeRange> ParseTimeRange(std::string_view text) {
    TimeRange range;
    return ParseSendTime(text, range) ? std::optional(range) : std::nullopt;
}

std::optional<TimeRange> ReadOffpeak() {
    ControlStream setup = OpenToRead(PathOf(ServerFile::Setup));
    ControlLine line;
    ControlLine value;
    const bool isFound =
        setup && FindParagraph(setup, "[QUEUEMAN]", line) && GetKeyString(setup, "Offpeak:", value) && !setup.Failed();
    return isFound && !value.IsEmpty() ? ParseTimeRange(value) : std::nullopt;
}

bool PermitsSending(const TimeRange& range, int weekday, int hour, int minute) {
    if ((range.Days >> weekday & 1) != 0) return true;
    const ClockTime now = {hour, minute};
    const ClockTime start = {range.FromHour, range.FromMinute};
    const ClockTime end = {range.ToHour, range.ToMinute};
    return end < start ? now >= start || now < end : now >= start && now < end;
}

std::optional<std::int64_t> SecondsOf(const CalendarTime& time) {
    for (const bool daylight : {false, true}) {
        CalendarTime tried = time;
        tried.Daylight = daylight;
        const std::int64_t seconds = FromCalendar(tried);
        if (ToCalendar(seconds).Daylight == daylight) return seconds;
    }
    return {};
}

std::int64_t SecondsOfMoment(const CalendarTime& moment) { return SecondsOf(moment).value_or(FromCalendar(moment)); }

std::int64_t GetPermittedTime(const CalendarTime& moment, const TimeRange& range) {
    if (PermitsSending(range, moment.Weekday, moment.Hours, moment.Minutes)) return SecondsOfMoment(moment);
    const int daysAhead = DaysToWholeDay(moment.Weekday, range.Days);
    const ClockTime now = {moment.Hours, moment.Minutes};
    const ClockTime start = {range.FromHour, range.FromMinute};
    const ClockTime end = {range.ToHour, range.ToMinute};
    if (start == end) return daysAhead == kDaysOfWeek ? kNeverPermitted : Target(moment, 0, 0, daysAhead);

    const bool runsOverMidnight = end < start;
    if (runsOverMidnight || now < end) return Target(moment, range.FromHour, range.FromMinute, 0);
    if (daysAhead == 1) return Target(moment, 0, 0, 1);
    return Target(moment, range.FromHour, range.FromMinute, 1);
}

} // namespace bv
