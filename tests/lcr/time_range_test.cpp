// When faxes may be sent: against a walk along the minutes of a week, and by hand at the changes of daylight saving.
#include "lcr/time_range.h"

#include <gmock/gmock.h>

#include "support/memory_server.h"
#include "voice/format.h"

namespace bv::test {
namespace {

using testing::IsEmpty;

constexpr int kDayMinutes = 24 * 60;
constexpr std::int64_t kSunday = 1767513600; // Sunday 4 January 2026, 0 o'clock in the program's zone
const char* const kDays[] = {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};

std::string TimeText(int minute) { return FormatText("%.2d:%.2d", minute / 60, minute % 60); }

// What the words mean, minute by minute: from 0 o'clock on Sunday the next one that they permit.
std::int64_t NextPermitted(int from, std::uint16_t days, int start, int end) {
    for (int minute = from; minute < from + 8 * kDayMinutes; ++minute) {
        const int inDay = minute % kDayMinutes;
        const bool isWholeDay = (days >> (minute / kDayMinutes % 7) & 1) != 0;
        const bool isInRange = start <= end ? inDay >= start && inDay < end : inDay >= start || inDay < end;
        if (isWholeDay || isInRange) return kSunday + std::int64_t{60} * minute;
    }
    return kNeverPermitted;
}

TEST(PermittedTime, IsTheNextMinuteThatTheWordsAllow) {
    const int times[] = {0, 1, 479, 480, 720, 1080, 1439, kDayMinutes};
    for (const int start : times) {
        for (const int end : times) {
            if (start == kDayMinutes || (end == 0 && start != 0)) continue; // no such words
            for (std::uint16_t days = 0; days < 128; days = static_cast<std::uint16_t>(days + (days < 12 ? 1 : 23))) {
                std::string text;
                if (start != end) text = "after " + TimeText(start) + ",BEFORE " + TimeText(end);
                for (int day = 0; day < 7; ++day) text += (days >> day & 1) != 0 ? std::string(" ") + kDays[day] : "";
                const auto range = ParseTimeRange(text);
                ASSERT_TRUE(range) << text;
                for (int minute = 0; minute < 7 * kDayMinutes; minute += minute % 2 == 0 ? 239 : 1) {
                    const std::int64_t now = kSunday + std::int64_t{60} * minute;
                    EXPECT_EQ(GetPermittedTime(ToCalendar(now), *range), NextPermitted(minute, days, start, end))
                        << text << " at " << minute;
                }
            }
        }
    }
}

TEST(PermittedTime, KeepsTheMomentsSeconds) {
    CalendarTime moment = ToCalendar(kSunday + 59);
    EXPECT_EQ(GetPermittedTime(moment, *ParseTimeRange("SUN")), kSunday + 59);
    EXPECT_EQ(GetPermittedTime(moment, *ParseTimeRange("AFTER 00:01")), kSunday + 60);
}

TEST(PermittedTime, ChangesOfDaylightSaving) {
    const struct {
        CalendarTime Moment;
        const char* Words;
        std::int64_t Expected; // universal time
        bool IsReported;
    } rows[] = {
        // the clock goes from 2 to 3 on Sunday 8 March 2026: a day ahead is 24 hours, so 9 becomes 10
        {{2026, 3, 7, 20, 0, 0, 6}, "AFTER 09:00 BEFORE 17:00", 1772989200, false},
        {{2026, 3, 7, 20, 0, 0, 6}, "SUN", 1772956800, false},
        {{2026, 3, 7, 20, 0, 0, 6}, "MON", 1773043200, false},
        // what the change skips does not exist, and is now
        {{2026, 3, 8, 1, 0, 0, 0}, "AFTER 02:30 BEFORE 05:00", 1772960400, true},
        {{2026, 3, 8, 1, 0, 0, 0}, "AFTER 03:00 BEFORE 05:00", 1772964000, false},
        {{2026, 3, 7, 20, 0, 0, 6}, "AFTER 02:30 BEFORE 05:00", 1772965800, false},
        // over midnight into the change
        {{2026, 3, 8, 1, 30, 0, 0}, "AFTER 22:00 BEFORE 02:30", 1772962200, false},
        {{2026, 3, 8, 4, 0, 0, 0}, "AFTER 22:00 BEFORE 02:30", 1773032400, false},
        // the clock goes back from 2 to 1 on Sunday 1 November 2026: 9 becomes 8
        {{2026, 10, 31, 20, 0, 0, 6, true}, "AFTER 09:00 BEFORE 17:00", 1793548800, false},
        {{2026, 11, 1, 0, 30, 0, 0, true}, "AFTER 01:30 BEFORE 05:00", 1793525400, false},
        {{2026, 11, 1, 1, 30, 0, 0, true}, "AFTER 01:00 BEFORE 05:00", 1793525400, false},
        {{2026, 11, 1, 1, 30, 0, 0, false}, "AFTER 01:00 BEFORE 05:00", 1793525400, false},
        {{2026, 11, 1, 12, 0, 0, 0}, "MON", 1793602800, false},
    };
    for (const auto& [moment, words, expected, isReported] : rows) {
        const MemoryServer server;
        EXPECT_EQ(GetPermittedTime(moment, *ParseTimeRange(words)), expected) << words;
        const std::vector<std::string> said = {"status 1: GetPermittedTime() - invalid time (2)"};
        EXPECT_EQ(server.Front.Said, isReported ? said : std::vector<std::string>()) << words;
    }
}

TEST(PermittedTime, TakesTimesThatNoClockShows) {
    for (const char* words : {"AFTER 99:99", "BEFORE -5:-5", "AFTER 32767:32767 BEFORE 1:1", "AFTER 1:60 BEFORE 2:0"}) {
        const auto range = ParseTimeRange(words);
        ASSERT_TRUE(range) << words;
        EXPECT_GT(GetPermittedTime(ToCalendar(kSunday), *range), 0) << words;
    }
    for (const char* words : {"PEAK", "OFFPEAK", "AFTER", "AFTER MON", "MON AFTER 9", "18:00", "AFTER 9:00 TO 10:00"})
        EXPECT_FALSE(ParseTimeRange(words)) << words;
}

TEST(Offpeak, IsReadFromTheQueuesOptions) {
    const TimeRange range = {18, 0, 8, 0, 65};
    const struct {
        const char* Setup;
        std::optional<TimeRange> Expected;
    } rows[] = {
        {"[queueman]\r\nSendTries: 3\r\noffpeak: SAT SUN AFTER 18:00 BEFORE 08:00 \r\n", range},
        {"[QUEUEMAN]\r\nOffpeak: \r\n", {}},
        {"[QUEUEMAN]\r\nOffpeak: nightly\r\n", {}},
        {"[QUEUEMAN]\r\nOffpeak=SAT\r\n", {}},
        {"[OPTIONS]\r\nOffpeak: SAT\r\n[QUEUEMAN]\r\n", {}},
        {"", {}},
    };
    MemoryServer server;
    server.Load();
    for (const auto& [setup, expected] : rows) {
        server.Put("F:\\BRIVANE\\B-DB\\SETUP.INI", setup);
        EXPECT_EQ(ReadOffpeak(), expected) << setup;
    }
    server.Files.Delete("F:\\BRIVANE\\B-DB\\SETUP.INI");
    EXPECT_EQ(ReadOffpeak(), std::nullopt);
    EXPECT_THAT(server.Front.Said, IsEmpty());
}

} // namespace
} // namespace bv::test
