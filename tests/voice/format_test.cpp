#include "voice/format.h"

#include <gtest/gtest.h>

#include "voice/placeholder.h"

namespace bv {
namespace {

TEST(Format, PlaceholdersAreFilledAsPrintfFillsThem) {
    EXPECT_EQ(FormatText("Windows error %d running program '%s'", 2, "edit"), "Windows error 2 running program 'edit'");
    EXPECT_EQ(FormatText("%.2d/%.2d [%5d|%-5d|%05d|%+d]", 3, 12, -42, -42, -42, 42), "03/12 [  -42|-42  |-0042|+42]");
    EXPECT_EQ(FormatText("[%8s|%-8s|%.3s]", "ABC", "ABC", "ABCDEF"), "[     ABC|ABC     |ABC]");
    EXPECT_EQ(FormatText("%x %X %u %i %c%c %ld %hd", 255, 255, 7U, -7, 'o', 'k', 1L, 2), "ff FF 7 -7 ok 1 2");
    EXPECT_EQ(FormatText("100%% of \xE4\xFC %s", "\xDF%s"), "100% of \xE4\xFC \xDF%s");
    EXPECT_EQ(FormatText("%.0d|%d", 0, INT64_MIN), "|-9223372036854775808");
}

TEST(Format, AWrongTextNeitherReadsPastItsValuesNorGrowsWithoutLimit) {
    const std::tuple<const char*, const char*, std::size_t> cases[] = {
        {"%s and %s and %d", "A and %s and %d", 3}, // more placeholders than values
        {"no placeholder", "no placeholder", 0},    // fewer
        {"%d", "A", 1},                             // of the other kind
        {"%c", "A", 1},                             //
        {"%n %p %f %*d %s", "%n %p %f %*d A", 1},   // not taken
        {"%99999999999s", "%99999999999s", 0},      // wider than any field
        {"%.1000s", "%.1000s", 0},                  //
        {"50%", "50%", 0},                          // cut short
        {"%-08.3l", "%-08.3l", 0},                  //
        {"%", "%", 0},                              //
        {"%5%|%s", "%|A", 1},                       // a sign needs no value
    };
    for (const auto& [format, text, places] : cases) {
        EXPECT_EQ(FormatText(format, "A"), text) << format;
        EXPECT_EQ(CountPlaces(format), places) << format;
    }
    EXPECT_EQ(FormatText("%999s", "A").size(), 999U);
    EXPECT_EQ(FormatText("[%s]", 12), "[12]");
}

} // namespace
} // namespace bv
