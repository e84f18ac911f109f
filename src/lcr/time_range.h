// When a fax may be sent: times in words, the server's off-peak period, and the earliest moment that they permit.
//
// A time is given as a list of words: MON to SUN name days on which sending is permitted all day long, AFTER hh:mm
// and BEFORE hh:mm a part of the other days, which may run over midnight. AFTER alone runs to the end of the day.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "ctlfile/dates.h"
#include "users/permissions.h"

namespace bv {

using TimeRange = SendTimeRange;

// The range that words of time give, in any case; none for a text of another form. An empty text is a range that never
// permits sending.
std::optional<TimeRange> ParseTimeRange(std::string_view text);

// The off-peak period: "Offpeak:" of "[QUEUEMAN]" in SETUP.INI. None when the file cannot be read, or the value is
// missing, empty or of another form. Shows nothing.
std::optional<TimeRange> ReadOffpeak();

// Whether the range permits sending at a time of the week; weekday 0 is Sunday.
bool PermitsSending(const TimeRange& range, int weekday, int hour, int minute);

// A local time in seconds since 1970, as standard time or, where that does not fit, as daylight saving time. None for a
// time that a change to daylight saving skips. The Daylight field is ignored.
std::optional<std::int64_t> SecondsOf(const CalendarTime& time);

// The same for any time: one that is skipped is taken by its Daylight field.
std::int64_t SecondsOfMoment(const CalendarTime& moment);

inline constexpr std::int64_t kNeverPermitted = -1;

// The earliest moment, at or after the given one, at which the range permits sending, in seconds since 1970;
// kNeverPermitted when it never does. A day ahead counts as 86400 seconds, across changes of daylight saving, too. When
// the moment found does not exist, status "GetPermittedTime() - invalid time (2)", and the given moment.
std::int64_t GetPermittedTime(const CalendarTime& moment, const TimeRange& range);

} // namespace bv
