#include "dialling/numbers.h"

#include <gmock/gmock.h>

#include <functional>

#include "dialling/dialling_file.h"
#include "shell/server_files.h"
#include "support/memory_server.h"

namespace bv {
namespace {

using testing::ElementsAre;

// London, as the administrator there would have it.
DialProperties London() {
    DialProperties own;
    own.Mode = kDialLocation;
    own.Country = "44";
    own.Area = "171";
    own.NatlAccess = "0";
    own.IntlAccess = "00";
    own.NumberWithoutAreaMaxLen = 7;
    return own;
}

using Edit = std::function<void(DialProperties&)>;
const Edit kAsItIs = [](DialProperties&) {};
const Edit kAreaCode = [](DialProperties& own) { own.DialAreaCode = true; };
const Edit kNationally = [](DialProperties& own) { own.DialAreaCode = own.DialNatlAccessForLocal = true; };
const Edit kLists = [](DialProperties& own) {
    own.DialAsLocal.Add("181");
    own.DialAsLocal.Add("1923");
    own.DialAsNatl.Add("9");
    own.DialAsNatl.Add("83");
};
const Edit kNoIntl = [](DialProperties& own) { own.IntlAccess.Clear(); };
const Edit kNoNatl = [](DialProperties& own) { own.NatlAccess.Clear(); };
const Edit kNoLimit = [](DialProperties& own) { own.NumberWithoutAreaMaxLen = 0; };
const Edit kNoArea = [](DialProperties& own) { own.Area.Clear(); };
const Edit kNoCountry = [](DialProperties& own) { own.Country.Clear(); };
const Edit kEmptyEntry = [](DialProperties& own) { own.DialAsNatl.Add(""); };
const Edit kNothing = [](DialProperties& own) { own = {}; };

struct Case {
    const Edit& Change;
    std::string Number;
    std::string International;
    std::string Dialable;
};

const std::string k36(36, '3');
const std::string k38(38, '3');
const std::string k39(39, '3');
const std::string k40(40, '3');

const Case kCases[] = {
    {kAsItIs, "1234567", "+441711234567", "1234567"},
    {kAsItIs, "0181 123 4567", "+441811234567", "01811234567"},
    {kAsItIs, "+44 (171) 123-4567", "+441711234567", "1234567"},
    {kAsItIs, "+44 0171 123-4567", "+4401711234567", "1234567"},
    {kAsItIs, "+33 1 23456789", "+33123456789", "0033123456789"},
    {kAsItIs, "0033123456789", "+33123456789", "0033123456789"},
    {kAsItIs, "00441711234567", "+441711234567", "1234567"},
    {kAsItIs, "004418112", "+4418112", "018112"},
    {kAsItIs, "01711234567:22", "+441711234567:22", "1234567:22"},
    {kAsItIs, "18112345678", "+4418112345678", "018112345678"}, // longer than local, so national
    {kAsItIs, "17112345", "+4417112345", "12345"},
    {kAsItIs, "[1]{2}(3) 4-5.6", "+44171123456", "123456"},
    {kAsItIs, "1/2#", "+441711/2#", "1/2#"},
    {kAsItIs, "", "+44171", ""},
    {kAsItIs, ":9 9:8", "+44171:9 9:8", ":9 9:8"},
    {kAsItIs, "+", "+", "00"},
    {kAsItIs, "0", "+44", "0"}, // a national number with nothing in it
    {kAreaCode, "1234567", "+441711234567", "1711234567"},
    {kAreaCode, "0171 1234567", "+441711234567", "1711234567"},
    {kNationally, "1234567", "+441711234567", "01711234567"},
    {kLists, "0181 1234567", "+441811234567", "1811234567"},
    {kLists, "01923 123456", "+441923123456", "1923123456"},
    {kLists, "0192 123456", "+44192123456", "0192123456"},
    {kLists, "9123456", "+441719123456", "01719123456"},
    {kLists, "0171 8312345", "+441718312345", "01718312345"},
    {kLists, "8212345", "+441718212345", "8212345"},
    {kLists, "1812345", "+441711812345", "1812345"}, // of the own area, so that DialAsLocal does not count
    {kEmptyEntry, "1234567", "+441711234567", "01711234567"},
    {kNoIntl, "1234567", "+441711234567", "1234567"},
    {kNoIntl, "0181 1234567", "+441811234567", "01811234567"}, // 3a: as it stands
    {kNoIntl, "441711234567", "+44441711234567", "1234567"},
    {kNoIntl, "+33 1", "+331", "331"},
    {kNoNatl, "0181 1234567", "+4401811234567", "01811234567"}, // longer than local
    {kNoNatl, "181 1234567", "+441811234567", "1811234567"},
    {kNoLimit, "18112345678", "+4417118112345678", "18112345678"},
    {kNoLimit, "017118112345678", "+4417118112345678", "18112345678"},
    {kNoArea, "0181 1234567", "+441811234567", "1811234567"},
    {kNoCountry, "+33 1", "+331", "0331"},
    {kNoCountry, "0033 1", "+331", "0331"},
    {kNothing, "+44 1", "+441", "441"},
    {kNothing, "0181 1", "+01811", "01811"},

    {kNothing, k40, "(too long)", k40},
    {kNothing, k39, "+" + k39, k39},
    {kNothing, k40 + "3", "(too long)", "(too long)"},
    {kNothing, " " + k40.substr(0, 39) + "-", "+" + k39, k39},
    {kAsItIs, "+33" + k38, "(too long)", "(too long)"},
    {kAsItIs, "+33" + k36, "+33" + k36, "0033" + k36},
    {kAsItIs, "+33" + k36 + "3", "+33" + k36 + "3", "(too long)"},
    {kAsItIs, "0033" + k36, "+33" + k36, "0033" + k36},
    {kAsItIs, "0181" + k36, "(too long)", "0181" + k36},
    {kNothing, k36 + ":123", "+" + k36, k36 + ":123"}, // 36 and 3 are under 40, 37 and 3 are not
    {kNothing, k36 + ":1234", "+" + k36, k36},
    {kNothing, "1:" + k38, "+1", "1:" + k38},
    {kNothing, "1:" + k39, "+1", "1"},
};

std::string Converted(StatusCode status, const TelephoneNumber& number) {
    EXPECT_TRUE(status == kDone || number.IsEmpty());
    if (status == kDone) return number.String();
    return status == kNumberTooLong ? "(too long)" : std::to_string(status);
}

TEST(Numbers, GoByTheDiallingProperties) {
    for (const Case& one : kCases) {
        DialProperties own = London();
        one.Change(own);
        TelephoneNumber number = "left over";
        EXPECT_EQ(Converted(MakeInternationalNumber(one.Number, number, own), number), one.International) << one.Number;
        number = "left over";
        EXPECT_EQ(Converted(MakeDialableNumber(one.Number, number, own), number), one.Dialable) << one.Number;
    }
}

TEST(Numbers, ArePartedAtTheFirstColonAndCutToTheirPlaces) {
    FixedText<3> suffix;
    FixedText<5> main;
    StripNumber("(1) 2.3-4{5}6:7 8:9", suffix, main);
    EXPECT_EQ(suffix, "7 8");
    EXPECT_EQ(main, "12345");
    StripNumber("1+ 2\t", suffix, main);
    EXPECT_EQ(suffix, "");
    EXPECT_EQ(main, "1+2\t");
}

TEST(Numbers, ATraceNamesTheRulesInTheirOrder) {
    const auto dial = [](std::string_view number, const Edit& change) {
        DialProperties own = London();
        change(own);
        TelephoneNumber result;
        NumberTrace trace;
        MakeDialableNumber(number, result, own, &trace);
        std::vector<std::string> lines;
        for (const auto& [rule, after, decides] : trace)
            lines.push_back(std::string(rule.substr(0, rule.find(':'))) + "=" + after);
        return lines;
    };
    const std::string strip = "Separators and suffix are taken off=";
    EXPECT_THAT(dial("+44 0171-9:2", kLists), ElementsAre(strip + "+4401719", "2a=01719", "4=1719", "5a=9", "6=01719",
                                                          "The suffix is put back=01719:2"));
    EXPECT_THAT(dial("12", kAreaCode), ElementsAre(strip + "12", "3b=12", "5=12", "6=17112"));
    EXPECT_THAT(dial("12345678", kAsItIs),
                ElementsAre(strip + "12345678", "3b=12345678", "4=12345678", "5b=012345678"));
    EXPECT_THAT(dial("0044181", kLists), ElementsAre(strip + "0044181", "3a=181", "5b=181"));
    EXPECT_THAT(dial("0033", kLists), ElementsAre(strip + "0033", "3a=0033"));
    EXPECT_THAT(dial("+1" + k40.substr(0, 38), kLists),
                ElementsAre(strip + "+1" + k38, testing::StartsWith("2b="), "Over 40 characters="));
}

TEST(Numbers, TheLoadedPropertiesAreThoseOfTheFile) {
    test::MemoryServer server;
    server.Load();
    TelephoneNumber number;
    const auto both = [&number] {
        const std::string international = Converted(MakeInternationalNumber("0 1", number), number);
        return international + " " + Converted(MakeDialableNumber("0 1", number), number);
    };
    const auto read = [&server](const std::string& location) {
        server.Put(PathOf(ServerFile::Dialling), "[DIALPROPERTIES]\r\nLocation: " + location +
                                                     "\r\n[LOCATION]\r\nDescription: L\r\n" +
                                                     "Country: 44\r\nIntlAccess: 00\r\nNatlAccess: 0\r\nArea: 2\r\n");
        return ReadDiallingProperties(PathOf(ServerFile::Dialling));
    };
    EXPECT_EQ(ReadDiallingProperties(PathOf(ServerFile::Dialling)), -4090);
    EXPECT_EQ(both(), "-3983 -3983");
    EXPECT_EQ(read("L"), 0);
    EXPECT_EQ(both(), "+441 01");
    EXPECT_EQ(read("M"), -4059);
    EXPECT_EQ(both(), "-3983 -3983");
    EXPECT_EQ(GetDialProperties().Country, "");
    EXPECT_EQ(read("notelnumedit"), -3980);
    EXPECT_EQ(both(), "+01 01") << "by properties that are all empty";
    EXPECT_EQ(read("tapi"), 0);
    EXPECT_EQ(GetDialProperties().Mode, 3);
}

} // namespace
} // namespace bv
