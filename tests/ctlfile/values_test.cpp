// Dates, scrambled passwords and records.
#include <gtest/gtest.h>
#include <set>
#include <vector>

#include "ctlfile/dates.h"
#include "ctlfile/key_fields.h"
#include "ctlfile/reader.h"
#include "ctlfile/records.h"
#include "ctlfile/scramble.h"
#include "memory_disk.h"
#include "platform/locale.h"
#include "support/fakes.h"

namespace bv::test {
namespace {

CalendarTime At(int year, int month, int day, int hours = 0, int minutes = 0, int seconds = 0) {
    CalendarTime time;
    time.Year = year;
    time.Month = month;
    time.Day = day;
    time.Hours = hours;
    time.Minutes = minutes;
    time.Seconds = seconds;
    return time;
}

TEST(Calendar, KnowsItsZone) {
    const struct {
        std::int64_t Seconds; // universal time, by `date -d @N` with TZ=PST8PDT,M3.2.0,M11.1.0
        CalendarTime Time;
    } cases[] = {
        {0, {1969, 12, 31, 16, 0, 0, 3, false}},        {-2208988800, {1899, 12, 31, 16, 0, 0, 0, false}},
        {951811200, {2000, 2, 29, 0, 0, 0, 2, false}},  {1173607199, {2007, 3, 11, 1, 59, 59, 0, false}},
        {1173607200, {2007, 3, 11, 3, 0, 0, 0, true}},  {1194166799, {2007, 11, 4, 1, 59, 59, 0, true}},
        {1194166800, {2007, 11, 4, 1, 0, 0, 0, false}}, {4107542399, {2100, 2, 28, 15, 59, 59, 0, false}},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(ToCalendar(one.Seconds), one.Time) << one.Seconds;
        EXPECT_EQ(FromCalendar(one.Time), one.Seconds);
    }
    for (std::int64_t seconds = -3'000'000'000; seconds < 5'000'000'000; seconds += 1'234'567) {
        ASSERT_EQ(FromCalendar(ToCalendar(seconds)), seconds);
    }
    EXPECT_EQ(ToCalendar(FromCalendar(At(1999, 2, 29))), ToCalendar(FromCalendar(At(1999, 3, 1))));
    EXPECT_EQ(ToCalendar(FromCalendar(At(2001, 12, 31, 24))).Year, 2002);
    EXPECT_EQ(ToCalendar(FromCalendar(At(2007, 3, 11, 2, 30))).Hours, 3) << "an hour that the change skips";
}

class TestLocale final : public platform::Locale {
  public:
    std::string DatePicture(platform::DateStyle style) override {
        return style == platform::DateStyle::Short ? "" : "d. MMMM yyyy";
    }
    std::string MonthName(int month, platform::NameStyle style) override {
        if (month != 3) return "";
        return style == platform::NameStyle::Full ? "M\xE4rz" : "M\xE4r";
    }
    std::string DayName(int, platform::NameStyle) override { return ""; }
};

TEST(DatePicture, IsFilledToken) {
    TestLocale locale;
    const platform::Substitute<platform::Locale> use(locale);
    EXPECT_EQ(GetDatePicture(platform::DateStyle::Short), "dd/MM/yy");
    EXPECT_EQ(GetDatePicture(platform::DateStyle::Long), "d. MMMM yyyy");
    CalendarTime time = At(2001, 3, 5, 7, 8, 9);
    time.Weekday = 1;
    const struct {
        const char* Picture;
        const char* Text;
    } cases[] = {
        {"dd/MM/yy", "05/03/01"},
        {"d. MMMM yyyy", "5. M\xE4rz 2001"},
        {"dddd, MMM d", "Monday, M\xE4r 5"},
        {"ddd h:m:s hh:mm:ss", "Mon 7:8:9 07:08:09"},
        {"'day' d \"of M\" M", "day 5 of M 3"},
        {"yyyyy Q", "2001y Q"},
        {"'unclosed d", "unclosed d"},
        {"''d", "5"},
        {"", ""},
    };
    for (const auto& one : cases) EXPECT_EQ(FormatDate(one.Picture, time), one.Text) << one.Picture;
    time.Month = 13;
    EXPECT_EQ(FormatDate("MMM", time), "");
    EXPECT_EQ(FormatDate("MMMM", At(1999, 4, 1)), "April") << "English where the locale has no name";
}

TEST(FileDate, IsSetByItsRules) {
    const MemoryDisk disk;
    FakeClock clock;
    const platform::Substitute<platform::Clock> useClock(clock);
    const std::string path = "C:\\A.TXT";
    MemoryDisk::Put(path, "x");
    CalendarTime time;
    const auto set = [&](bool date, bool clockTime, const CalendarTime& to) {
        const StatusCode status = SetFileDateTime(path, 3, {date, clockTime, to});
        EXPECT_EQ(GetFileDateTime(path, time), kDone);
        return status;
    };
    EXPECT_EQ(set(true, true, At(1995, 6, 7, 8, 9, 10)), kDone);
    EXPECT_EQ(FormatDate("yyyyMMdd hhmmss", time), "19950607 080910");
    EXPECT_EQ(set(true, false, At(99, 2, 29, 1, 2, 3)), kDone);
    EXPECT_EQ(FormatDate("yyyyMMdd hhmmss", time), "19990301 080910");
    EXPECT_EQ(set(false, true, At(0, 0, 0, 23, 0, 1)), kDone);
    EXPECT_EQ(set(true, false, At(5, 1, 1)), kDone);
    EXPECT_EQ(FormatDate("yyyyMMdd hhmmss", time), "20050101 230001");
    const CalendarTime refused[] = {At(150, 1, 1), At(2081, 1, 1), At(1979, 1, 1), At(99, 0, 1), At(99, 1, 32)};
    for (const CalendarTime& to : refused) {
        EXPECT_EQ(set(true, true, to), kDone);
        EXPECT_EQ(FormatDate("yyyyMMdd", time), "20050101") << to.Year;
    }
    EXPECT_EQ(set(false, true, At(0, 0, 0, -1)), kDone);
    EXPECT_EQ(time.Hours, 23);

    EXPECT_EQ(SetFileDateTime("C:\\MISSING", 3, {true, false, At(99, 1, 1)}), kFileFailed);
    EXPECT_EQ(GetFileDateTime("C:\\MISSING", time), kFileFailed);
    const ControlStream holder = OpenShared(path, "r+b");
    EXPECT_EQ(SetFileDateTime(path, 3, {true, false, At(99, 1, 1)}), kFileFailed);
    EXPECT_GE(clock.Milliseconds, 3000) << "it was tried until the time had passed";
    EXPECT_LT(clock.Milliseconds, 3200);
}

TEST(Scramble, MatchesTheStoredForm) {
    FakeClock clock;
    const platform::Substitute<platform::Clock> use(clock);
    clock.Milliseconds = 1'000'000'123; // seed 123
    // Computed apart from this program, by a few lines of another language.
    EXPECT_EQ(ScrambleText("gauge7", 32), "ebggghgigfgsghgehrgsgidthihuhb");
    EXPECT_EQ(ScrambleText("", 16), "ebggghgigfgfhj");
}

TEST(Scramble, ComesBackFromEverySeedAndSize) {
    FakeClock clock;
    const platform::Substitute<platform::Clock> use(clock);
    std::set<std::string> texts;
    for (int seed = 0; seed < 1000; ++seed) {
        clock.Milliseconds = seed;
        const std::string password = std::string("p\xFF\x01 ").append(static_cast<std::size_t>(seed) % 40, 'z');
        const std::optional<std::string> text = ScrambleForPage(password);
        ASSERT_TRUE(text) << seed;
        EXPECT_EQ(text->size(), StoredLetters(password.size()));
        EXPECT_EQ(UnscrambleText(*text), password);
        EXPECT_EQ(FaultOfValue("Password", {ValueRule::Form::ScrambledPassword}, *text), std::nullopt);
        EXPECT_EQ(text->find_first_not_of("abcdefghijrstuvw"), std::string::npos);
        texts.insert(*text);
    }
    EXPECT_EQ(texts.size(), 1000U);

    const struct {
        std::size_t Length;
        std::size_t Letters;
    } pages[] = {{0, 30}, {9, 30}, {10, 60}, {24, 60}, {25, 90}, {39, 90}, {40, 100}, {99, 100}};
    for (const auto& page : pages) EXPECT_EQ(StoredLetters(page.Length), page.Letters) << page.Length;
}

TEST(Scramble, RefusesWhatDoesNotFit) {
    EXPECT_TRUE(ScrambleText("12345678", 30));
    EXPECT_FALSE(ScrambleText("123456789", 30));
    EXPECT_TRUE(ScrambleText("123456789", 32));
    EXPECT_TRUE(ScrambleText("", 199));
    EXPECT_FALSE(ScrambleText("", 200));
    EXPECT_FALSE(ScrambleText(std::string(100, 'x'), 199));

    const std::string whole = *ScrambleForPage("secret");
    EXPECT_EQ(UnscrambleText(whole + "q"), "secret") << "an odd letter at the end";
    EXPECT_EQ(UnscrambleText(whole, 6), "secret");
    EXPECT_FALSE(UnscrambleText(whole, 5));
    EXPECT_FALSE(UnscrambleText(whole.substr(0, 10))) << "no whole header";
    EXPECT_FALSE(UnscrambleText(whole.substr(0, 16))) << "fewer characters than its header says";
    EXPECT_FALSE(UnscrambleText("")) << "nothing stored";
    EXPECT_FALSE(UnscrambleText("********"));
    EXPECT_FALSE(UnscrambleText(whole + std::string(400, 'a')));
}

TEST(Records, AreWalkedInOnePass) {
    const MemoryDisk disk;
    MemoryDisk::Put("C:\\U.INI", "Name: outside\r\n[USER]\r\nName: ANN\r\nFullname:\tAnn\x01"
                                 "A\r\nName: second\r\n\r\n"
                                 "[GROUP]\r\nName: G\r\n[user] x\r\nfullname:\r\n;Name: no\r\n Name: no\r\n[USER]");
    ControlStream stream = OpenShared("C:\\U.INI", "rb");
    constexpr std::string_view kKeys[] = {"Name:", "Fullname:"};
    RecordWalker walker(stream, "[USER]", kKeys);
    struct Seen {
        bool HasName;
        std::string Name;
        bool HasFull;
        std::string Full;
        bool operator==(const Seen&) const = default;
    };
    std::vector<Seen> seen;
    FixedText<20> name;
    FixedText<20> full;
    while (walker.Next()) {
        const bool hasName = walker.Get(0, name);
        const bool hasFull = walker.Get(1, full);
        seen.push_back({hasName, name.String(), hasFull, full.String()});
        EXPECT_EQ(stream.Seen(walker.Start(), 1), "[");
    }
    const std::vector<Seen> expected = {{true, "ANN", true, "Ann A"}, {false, "", true, ""}, {false, "", false, ""}};
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(walker.End(), *stream.Length());
}

} // namespace
} // namespace bv::test
