#include "ctlfile/dates.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "ctlfile/open_retry.h"
#include "platform/files.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr std::int64_t kMinute = 60;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;
constexpr std::int64_t kStandardOffset = 8 * kHour; // behind universal time
constexpr std::int64_t kDaylightOffset = 7 * kHour;

constexpr std::array<std::string_view, 12> kMonths = {"January",   "February", "March",    "April",
                                                      "May",       "June",     "July",     "August",
                                                      "September", "October",  "November", "December"};
constexpr std::array<std::string_view, 7> kDays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                   "Thursday", "Friday", "Saturday"};

constexpr std::int64_t FloorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

// Days since 1970 of a date of the proleptic Gregorian calendar, and back: H. Hinnant, "chrono-Compatible Low-Level
// Date Algorithms" (days_from_civil, civil_from_days). Years are counted from March, so that leap days come last.
constexpr std::int64_t DaysOf(std::int64_t year, std::int64_t month, std::int64_t day) {
    year += FloorDivide(month - 1, 12);
    month = (month - 1) - FloorDivide(month - 1, 12) * 12 + 1;
    if (month <= 2) --year;
    const std::int64_t era = FloorDivide(year, 400);
    const std::int64_t yearOfEra = year - era * 400;
    const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

struct Date {
    std::int64_t Year;
    std::int64_t Month;
    std::int64_t Day;
};

constexpr Date DateOf(std::int64_t days) {
    const std::int64_t shifted = days + 719468;
    const std::int64_t era = FloorDivide(shifted, 146097);
    const std::int64_t dayOfEra = shifted - era * 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const std::int64_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    const std::int64_t year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
    return {year, month, dayOfYear - (153 * monthFromMarch + 2) / 5 + 1};
}

constexpr int WeekdayOf(std::int64_t days) {
    const std::int64_t fromSunday = days + 4; // 1 January 1970 was a Thursday
    return static_cast<int>(fromSunday - FloorDivide(fromSunday, 7) * 7);
}

// The day of the n-th Sunday of a month.
constexpr std::int64_t SundayOf(std::int64_t year, std::int64_t month, int n) {
    const std::int64_t first = DaysOf(year, month, 1);
    return first + (7 - WeekdayOf(first)) % 7 + std::int64_t{n - 1} * 7;
}

bool IsDaylight(std::int64_t seconds) {
    const std::int64_t year = DateOf(FloorDivide(seconds - kStandardOffset, kDay)).Year;
    const std::int64_t start = SundayOf(year, 3, 2) * kDay + 2 * kHour + kStandardOffset;
    const std::int64_t end = SundayOf(year, 11, 1) * kDay + 2 * kHour + kDaylightOffset;
    return seconds >= start && seconds < end;
}

std::string NameOf(const std::string& localName, std::string_view english, platform::NameStyle style) {
    if (!localName.empty()) return localName;
    return std::string(style == platform::NameStyle::Full ? english : english.substr(0, 3));
}

std::string MonthText(int month, platform::NameStyle style) {
    if (month < 1 || month > 12) return {};
    const auto index = static_cast<std::size_t>(month - 1);
    return NameOf(platform::TheLocale().MonthName(month, style), kMonths[index], style);
}

std::string DayText(int weekday, platform::NameStyle style) {
    if (weekday < 0 || weekday > 6) return {};
    const auto index = static_cast<std::size_t>(weekday);
    return NameOf(platform::TheLocale().DayName(weekday, style), kDays[index], style);
}

// One token of a date picture and what it stands for.
struct PictureToken {
    std::string_view Text;
    std::string (*Output)(const CalendarTime&);
};

std::string TwoDigits(int number) { return FormatText("%.2d", number); }

// Longer tokens stand before the shorter ones that they begin with.
constexpr PictureToken kTokens[] = {
    {"yyyy", [](const CalendarTime& t) { return FormatText("%.4d", t.Year); }},
    {"yy", [](const CalendarTime& t) { return TwoDigits(t.Year % 100); }},
    {"MMMM", [](const CalendarTime& t) { return MonthText(t.Month, platform::NameStyle::Full); }},
    {"MMM", [](const CalendarTime& t) { return MonthText(t.Month, platform::NameStyle::Abbreviated); }},
    {"MM", [](const CalendarTime& t) { return TwoDigits(t.Month); }},
    {"M", [](const CalendarTime& t) { return std::to_string(t.Month); }},
    {"dddd", [](const CalendarTime& t) { return DayText(t.Weekday, platform::NameStyle::Full); }},
    {"ddd", [](const CalendarTime& t) { return DayText(t.Weekday, platform::NameStyle::Abbreviated); }},
    {"dd", [](const CalendarTime& t) { return TwoDigits(t.Day); }},
    {"d", [](const CalendarTime& t) { return std::to_string(t.Day); }},
    {"hh", [](const CalendarTime& t) { return TwoDigits(t.Hours); }},
    {"h", [](const CalendarTime& t) { return std::to_string(t.Hours); }},
    {"mm", [](const CalendarTime& t) { return TwoDigits(t.Minutes); }},
    {"m", [](const CalendarTime& t) { return std::to_string(t.Minutes); }},
    {"ss", [](const CalendarTime& t) { return TwoDigits(t.Seconds); }},
    {"s", [](const CalendarTime& t) { return std::to_string(t.Seconds); }},
};

constexpr bool InRange(int value, int least, int most) { return value >= least && value <= most; }

bool IsValid(const FileDateChange& change) {
    const CalendarTime& to = change.To;
    const bool date =
        (InRange(to.Year, 0, 99) || InRange(to.Year, 1980, 2080)) && InRange(to.Month, 1, 12) && InRange(to.Day, 1, 31);
    const bool time = to.Hours >= 0 && to.Minutes >= 0 && to.Seconds >= 0;
    return (!change.SetDate || date) && (!change.SetTime || time);
}

int FullYear(int year) {
    if (year > 99) return year;
    return year < 80 ? year + 2000 : year + 1900;
}

} // namespace

CalendarTime ToCalendar(std::int64_t seconds) {
    const bool daylight = IsDaylight(seconds);
    const std::int64_t local = seconds - (daylight ? kDaylightOffset : kStandardOffset);
    const std::int64_t days = FloorDivide(local, kDay);
    const std::int64_t rest = local - days * kDay;
    const Date date = DateOf(days);
    CalendarTime time;
    time.Year = static_cast<int>(date.Year);
    time.Month = static_cast<int>(date.Month);
    time.Day = static_cast<int>(date.Day);
    time.Hours = static_cast<int>(rest / kHour);
    time.Minutes = static_cast<int>(rest % kHour / kMinute);
    time.Seconds = static_cast<int>(rest % kMinute);
    time.Weekday = WeekdayOf(days);
    time.Daylight = daylight;
    return time;
}

std::int64_t FromCalendar(const CalendarTime& time) {
    const std::int64_t local =
        DaysOf(time.Year, time.Month, time.Day) * kDay + time.Hours * kHour + time.Minutes * kMinute + time.Seconds;
    const std::int64_t standard = local + kStandardOffset;
    const std::int64_t daylight = local + kDaylightOffset;
    const bool standardFits = !IsDaylight(standard);
    const bool daylightFits = IsDaylight(daylight);
    if (standardFits != daylightFits) return standardFits ? standard : daylight;
    return time.Daylight ? daylight : standard;
}

std::string GetDatePicture(platform::DateStyle style) {
    std::string picture = platform::TheLocale().DatePicture(style);
    if (!picture.empty()) return picture;
    return style == platform::DateStyle::Short ? "dd/MM/yy" : "d MMMM yyyy";
}

std::string FormatDate(std::string_view picture, const CalendarTime& time) {
    std::string out;
    while (!picture.empty()) {
        const char first = picture.front();
        if (first == '\'' || first == '"') {
            const std::string_view quoted = picture.substr(1, picture.find(first, 1) - 1);
            out += quoted;
            picture.remove_prefix(std::min(quoted.size() + 2, picture.size()));
            continue;
        }
        const auto* token =
            std::ranges::find_if(kTokens, [picture](const PictureToken& t) { return picture.starts_with(t.Text); });
        const bool known = token != std::end(kTokens);
        out += known ? token->Output(time) : std::string(1, first);
        picture.remove_prefix(known ? token->Text.size() : 1);
    }
    return out;
}

StatusCode GetFileDateTime(const std::string& path, CalendarTime& time) {
    const std::optional<platform::FileInfo> info = platform::Files().Find(path);
    if (!info) return kFileFailed;
    time = ToCalendar(info->WriteTime);
    return kDone;
}

StatusCode SetFileDateTime(const std::string& path, int timeout, const FileDateChange& change) {
    if (!IsValid(change)) return kDone;
    constexpr platform::OpenRequest alone{platform::Access::ReadWrite, platform::Deny::ReadingAndWriting,
                                          platform::Creation::OpenExisting};
    const std::unique_ptr<platform::File> file = OpenRetrying(path, alone, timeout).Opened;
    if (!file) return kFileFailed;
    const std::optional<std::int64_t> before = file->WriteTime();
    if (!before) return kFileFailed;

    CalendarTime time = ToCalendar(*before);
    if (change.SetDate) {
        time.Year = FullYear(change.To.Year);
        time.Month = change.To.Month;
        time.Day = change.To.Day;
    }
    if (change.SetTime) {
        time.Hours = change.To.Hours;
        time.Minutes = change.To.Minutes;
        time.Seconds = change.To.Seconds;
    }
    const bool set = file->SetWriteTime(FromCalendar(time)) == platform::FileError::None;
    return file->Close() == platform::FileError::None && set ? kDone : kFileFailed;
}

} // namespace bv
