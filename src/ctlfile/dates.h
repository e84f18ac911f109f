// Calendar times in the program's fixed zone, date pictures and the times of files.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

#include "ctlfile/status.h"
#include "platform/locale.h"

namespace bv {

// A broken-down time. All of the program's times are in one zone, TZ=PST8PDT, whatever the workstation's: eight hours
// behind universal time, seven from the second Sunday in March to the first Sunday in November, each at 2 o'clock.
// Those are the rules in force since 2007, used for all years and computed here: run-time libraries disagree on them.
struct CalendarTime {
    int Year = 1970;
    int Month = 1; // 1 to 12
    int Day = 1;   // 1 to 31
    int Hours = 0;
    int Minutes = 0;
    int Seconds = 0;
    int Weekday = 4;       // 0 is Sunday
    bool Daylight = false; // daylight saving time
    friend auto operator<=>(const CalendarTime&, const CalendarTime&) = default;
};

// From and to seconds since 1970 in universal time. Fields outside their range carry over (29 February 1999 is
// 1 March); the weekday is ignored. An hour that stands twice is taken by the Daylight field; one that the change
// skips is taken by the offset that the field names.
CalendarTime ToCalendar(std::int64_t seconds);
std::int64_t FromCalendar(const CalendarTime& time);

// The workstation's date picture, or "dd/MM/yy" and "d MMMM yyyy" when it has none.
std::string GetDatePicture(platform::DateStyle style);

// The time by a picture of the tokens yyyy yy MMMM MMM MM M dddd ddd dd d hh h mm m ss s and quoted texts; names in
// the workstation's language, else English. Anything else is copied.
std::string FormatDate(std::string_view picture, const CalendarTime& time);

// The time a file was last written. 0, or -4084 when there is no such file.
StatusCode GetFileDateTime(const std::string& path, CalendarTime& time);

struct FileDateChange {
    bool SetDate = false; // Year 0 to 99 (80 and above in the 1900s) or 1980 to 2080
    bool SetTime = false;
    CalendarTime To;
};

// Changes the date or the time of a file, or both. A field out of range changes nothing and returns 0. A file that
// others hold is tried again until the timeout (seconds) has passed; -4084 then and on any other fault.
StatusCode SetFileDateTime(const std::string& path, int timeout, const FileDateChange& change);

} // namespace bv
