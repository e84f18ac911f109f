#include <gmock/gmock.h>

#include "dialling/fake_telephony.h"
#include "dialling/tele_session.h"
#include "dialling/tele_translate.h"
#include "dialling/telephony.h"

namespace bv {
namespace {

using test::FakeNonsense;
using test::FakeTelephony;
using test::TelephonySession;
using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;
using Nonsense = std::vector<FakeNonsense>;
using Translations = std::map<std::string, std::string>;
constexpr std::uint32_t kBadDevice = 0x80000002;
const std::string kBadDeviceSaid =
    "status 1: TAPI reports 'The specified device identifier or line device identifier is invalid'";

std::string Joined(const DialPrefixes& prefixes) {
    std::string joined;
    for (const DialPrefix& prefix : prefixes) joined += "<" + prefix.String() + ">";
    return joined;
}

// What the country's rules decide: IntlAccess, NatlAccess, Area, and the three flags' letters.
std::string Rules(const DialProperties& properties) {
    return "+" + properties.Country.String() + " " + properties.IntlAccess.String() + " " +
           properties.NatlAccess.String() + " " + properties.Area.String() + " " +
           (properties.DisplayNatlAccess ? "d" : "-") + (properties.DialAreaCode ? "a" : "-") +
           (properties.DialNatlAccessForLocal ? "n" : "-");
}

// 60 characters and more of a text, of which a field keeps fewer.
const std::string kLong(150, 'x');

TEST(TelephonyLocation, IsReadWhole) {
    for (const bool saysTooSmall : {false, true}) {
        TelephonySession fake;
        fake.SaysTooSmall = saysTooSmall;
        fake.Server.Put("F:\\COUNTRY.INI", "[COUNTRIES]\n44: UK, \"United Kingdom\", 7\n");
        fake.Locations = {{.ID = 3, .Name = "Elsewhere", .City = "1"},
                          {.ID = 9,
                           .Name = "London",
                           .City = "0171",
                           .LocalAccess = "9",
                           .LongDistanceAccess = "8",
                           .TollPrefixes = ",555,556,"},
                          {.ID = 9, .Name = "A second of that number"}};
        fake.Current = 9;
        DialProperties properties;
        properties.Area = "old";
        properties.DialAsLocal.Add("old");
        EXPECT_EQ(TAPIGetDialProps(&properties, "F:\\COUNTRY.INI"), kDone);
        EXPECT_EQ(properties.Mode, 3);
        EXPECT_EQ(properties.Description, "London");
        EXPECT_EQ(Rules(properties), "+44 00 0 171 d--");
        EXPECT_EQ(properties.NumberWithoutAreaMaxLen, 7);
        EXPECT_EQ(Joined(properties.DialAsLocal), "");
        EXPECT_EQ(Joined(properties.DialAsNatl), "<><555><556>");
        EXPECT_EQ(Tapi().Location.LocalAccessCode, "9");
        EXPECT_EQ(Tapi().Location.LongDistanceAccessCode, "8");
        EXPECT_EQ(Tapi().Session.CurrentLocationID * 10 + Tapi().Session.LocationCount, 93U);
        EXPECT_EQ(Tapi().Country.CountryName, "United Kingdom");
        // 44 + 3 * 68 bytes of words, then the texts with their terminators.
        EXPECT_THAT(fake.Calls, ElementsAre("caps 77 65540", "  given 44", "caps 77 65540", "  given 332",
                                            "country 440 65540", "  given 24", "country 440 65540", "  given 95"));
        EXPECT_EQ(TAPIGetDialProps(nullptr, ""), kDone);
        EXPECT_THAT(fake.Server.Front.Said, IsEmpty());
    }
}

TEST(TelephonyLocation, CutsWhatIsTooLong) {
    TelephonySession fake;
    fake.Locations = {{.Name = kLong,
                       .CountryCode = 4294967295,
                       .City = "12345678901",
                       .LocalAccess = kLong,
                       .LongDistanceAccess = kLong,
                       .TollPrefixes = "12345678901,2"}};
    fake.Countries = {
        {.Code = 4294967295, .Name = kLong, .SameArea = kLong, .LongDistance = kLong, .International = kLong}};
    DialProperties properties;
    EXPECT_EQ(TAPIGetDialProps(&properties, ""), kDone);
    EXPECT_EQ(properties.Description.View(), kLong.substr(0, 100));
    EXPECT_EQ(Rules(properties), "+4294967295 xxxxxxxxxx xxxxxxxxxx 1234567890 --n");
    EXPECT_EQ(Joined(properties.DialAsNatl), "<1234567890><2>");
    EXPECT_EQ(Tapi().Country.SameArea.Size(), 20U);
    EXPECT_EQ(Tapi().Location.LocalAccessCode.Size(), 10U);
}

TEST(TelephonyLocation, DerivesWhatIsDialledFromTheRules) {
    const std::tuple<const char*, const char*, const char*, const char*, const char*> cases[] = {
        // same area, long distance, international, city, expected
        {"G", "0FG", "00EFG", "0171", "+44 00 0 171 d--"},
        {"0FG", "0FG", "00EFG", "171", "+44 00 0 171 -an"},
        {"FG", "1FG", "011EFG", "206", "+44 011 1 206 -a-"},
        {"  FG", "  1FG", "  011EFG", "1206", "+44 011 1 206 da-"},
        {"  1FG", "  1FG", "EFG", "206", "+44  1 206 -an"},
        {"G", "9G", "10FG", "9", "+44 10 9  d--"},
        {"G", "FG", "7G", "171", "+44 7  171 --n"},
        {"G", "", "", "171", "+44   171 ---"},
        {"0FG", "", "5", "171", "+44 5  171 -a-"},
        {"", "0GF", "0GFE", "", "+44 0GF 0G  ---"},
        {"", "   ", " ", "5", "+44   5 --n"},
    };
    for (const auto& [same, distance, international, city, expected] : cases) {
        TelephonySession fake;
        fake.Locations[0].City = city;
        fake.Countries = {{.SameArea = same, .LongDistance = distance, .International = international}};
        DialProperties properties;
        EXPECT_EQ(TAPIGetDialProps(&properties, ""), kDone);
        EXPECT_EQ(Rules(properties), expected) << same << " " << distance << " " << international;
    }
}

TEST(TelephonyLocation, TakesTheTollPrefixesApart) {
    std::string many;
    std::string thirty;
    for (int i = 10; i < 50; ++i) many += std::to_string(i) + ",";
    for (int i = 10; i < 40; ++i) thirty += "<" + std::to_string(i) + ">";
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"555", "<555>"},
        {",555,556,", "<><555><556>"},
        {"1, , 2 3 ,4", "<1><2 3 ><4>"},
        {",", "<>"},
        {" 1", "< 1>"},
        {"1,,,,,,,,,,2", "<1><2>"},
        {"1,,,,,,,,,,,2", "<1><><2>"}, // ten separators are stepped over
        {many, thirty},
    };
    for (const auto& [list, expected] : cases) {
        TelephonySession fake;
        fake.Locations[0].TollPrefixes = list;
        DialProperties properties;
        EXPECT_EQ(TAPIGetDialProps(&properties, ""), kDone);
        EXPECT_EQ(Joined(properties.DialAsNatl), expected) << list;
    }
}

TEST(TelephonyLocation, SaysThatItCannotBeHad) {
    const std::string caps = "lineGetTranslateCaps";
    const std::tuple<const char*, std::uint32_t, Nonsense, StatusCode, Lines> cases[] = {
        {"current location is none", 0, {{caps, 6, 2}}, kTapiCallFailed, {}},
        {"no locations", 0, {{caps, 3, 0}}, kTapiCallFailed, {}},
        {"call fails", kBadDevice, {}, kTapiCallFailed, {kBadDeviceSaid}},
        {"answers with a request's number", 5, Nonsense{}, kTapiCallFailed,
         Lines{"status 1: TAPI reports 'Unknown/unspecified error'"}},
        {"wants 4 GiB", 0, {{caps, 1, 0xFFFFFFFF}}, kTapiNoMemory, {}},
        {"wants a byte over 16 MiB", 0, {{caps, 1, 0x1000001}}, kTapiNoMemory, {}},
        {"list begins outside", 0, {{caps, 5, 0xFFFFFFFF}}, kTapiCallFailed, {}},
        {"list ends outside", 0, {{caps, 5, 70}}, kTapiCallFailed, {}},
        {"4 milliards of locations", 0, {{caps, 3, 0xFFFFFFFF}, {caps, 6, 2}}, kTapiCallFailed, {}},
    };
    for (const auto& [name, result, nonsense, status, said] : cases) {
        SCOPED_TRACE(name);
        TelephonySession fake;
        if (result != 0) fake.Results[caps] = result;
        fake.Nonsense = nonsense;
        DialProperties properties;
        properties.Description = "old";
        EXPECT_EQ(TAPIGetDialProps(&properties, ""), status);
        EXPECT_EQ(properties.Mode, 3);
        EXPECT_EQ(properties.Description, "");
        EXPECT_EQ(fake.Server.Front.Said, said);
        TelephoneNumber number;
        EXPECT_EQ(TAPIMakeDialable("123", number, ""), status);
    }
}

// Sizes that still ask for more at the second try are not given more; texts outside what was given are empty, and what
// lies between is read as it is.
TEST(TelephonyLocation, ReadsNothingOutsideWhatItGave) {
    constexpr std::size_t kEntry = 11; // the first word of the only location
    const std::string caps = "lineGetTranslateCaps";
    const std::tuple<const char*, Nonsense, const char*, const char*> cases[] = {
        {"name far outside", {{caps, kEntry + 2, 0xFFFFFFF0}}, "", "171"},
        {"name one byte too long", {{caps, kEntry + 1, 31}, {caps, kEntry + 2, 112}}, "", "171"},
        {"name up to its end", {{caps, kEntry + 1, 18}, {caps, kEntry + 2, 112}}, "London", "171"},
        {"size and offset wrap", {{caps, kEntry + 1, 0xFFFFFFFF}, {caps, kEntry + 2, 2}}, "", "171"},
        {"no size", {{caps, kEntry + 1, 0}}, "", "171"},
        {"without terminator", {{caps, kEntry + 1, 3}}, "Lon", "171"},
        {"city outside", {{caps, kEntry + 4, 5000}}, "London", ""},
        {"used size is nonsense", {{caps, 2, 0xFFFFFFFF}, {caps, 0, 0xFFFFFFFF}}, "London", "171"},
        {"more locations than fit", {{caps, 3, 0xFFFFFFFF}, {caps, 4, 0xFFFFFFFF}}, "London", "171"},
    };
    for (const auto& [name, nonsense, description, area] : cases) {
        SCOPED_TRACE(name);
        TelephonySession fake;
        fake.Nonsense = nonsense;
        DialProperties properties;
        EXPECT_EQ(TAPIGetDialProps(&properties, ""), kDone);
        EXPECT_EQ(properties.Description, description);
        EXPECT_EQ(properties.Area, area);
    }
    TelephonySession fake;
    fake.Nonsense = {{caps, 1, 3000}}; // at every try
    DialProperties properties;
    EXPECT_EQ(TAPIGetDialProps(&properties, ""), kDone);
    EXPECT_EQ(std::ranges::count(fake.Calls, "caps 77 65540"), 2);
    EXPECT_EQ(properties.Description, "London");
}

// The translations of the test numbers, and the rules that are deduced from them.
struct Deduction {
    const char* Name;
    std::uint32_t Country;
    const char* City;
    Translations Dialled;
    const char* Rules; // international, long distance, same area
};

TEST(TelephonyRules, AreDeducedFromTranslations) {
    const Deduction cases[] = {
        {"no area code at home", 44, "171",
         Translations{{"+33 (130) 1234567", "00331301234567"},
                      {"+44 (130) 1234567", "0 (130) 123 4567"},
                      {"+44 (171) 1234567", "1234567"}},
         "00EFG|0FG|"},
        {"own country's city with its prefix", 44, "0171",
         Translations{{"+33 (171) 1234567", "00 33-171-1234567"},
                      {"+44 (171) 1234567", "01711234567"},
                      {"+44 (0171) 1234567", "01711234567"}},
         "00EFG|0FG|0FG"},
        {"ten digits at home", 1, "206",
         Translations{{"+44 (171) 1234567", "011441711234567"},
                      {"+1 (171) 1234567", "11711234567"},
                      {"+1 (206) 1234567", "2061234567"}},
         "011EFG|1FG|1FG"},
        {"prefix that repeats the number's digits", 1, "206",
         Translations{{"+44 (171) 1234567", "171 44 171 1234567"},
                      {"+1 (171) 1234567", "171 171 1234567"},
                      {"+1 (206) 1234567", "1234567"}},
         "171EFG|171FG|"},
        {"translations that end in another number", 1, "206",
         Translations{{"+44 (171) 1234567", "0119999999"}, {"+1 (171) 1234567", "234567"}, {"+1 (206) 1234567", ""}},
         "||"},
        {"without a city", 1, "",
         Translations{{"+44 (171) 1234567", "011441711234567"},
                      {"+1 (171) 1234567", "1711234567"},
                      {"+1 () 1234567", "1234567"}},
         "011EFG|FG|"},
    };
    for (const Deduction& c : cases) {
        SCOPED_TRACE(c.Name);
        FakeTelephony fake;
        fake.Missing = {"lineGetCountry"};
        EXPECT_EQ(TAPIInit("Setup", nullptr, TapiNegotiation::WithDevice), kDone);
        fake.Locations = {{.CountryCode = c.Country, .City = c.City, .LocalAccess = "9,", .LongDistanceAccess = "8,"}};
        for (const auto& [address, dialled] : c.Dialled) fake.Dialled[address] = "9, " + dialled;
        EXPECT_EQ(TAPIGetDialProps(nullptr, ""), kDone);
        const TapiCountryRules& rules = Tapi().Country;
        EXPECT_EQ(rules.International.String() + "|" + rules.LongDistance.String() + "|" + rules.SameArea.String(),
                  c.Rules);
        EXPECT_EQ(rules.CountryCode.View(), std::to_string(c.Country));
        EXPECT_EQ(rules.CountryName, "");
        EXPECT_THAT(fake.Server.Front.Said, IsEmpty());
    }
}

TEST(TelephonyRules, AreDeducedWheneverTheLibraryDoesNotGiveThem) {
    const std::string entry = "lineGetCountry";
    const std::tuple<const char*, std::uint32_t, Nonsense, Lines> cases[] = {
        {"call fails", kBadDevice, {}, {kBadDeviceSaid}},   {"no country", 0, {{entry, 3, 0}}, {}},
        {"two countries", 0, {{entry, 3, 2}}, {}},          {"another country", 0, {{entry, 6, 441}}, {}},
        {"entry outside", 0, {{entry, 5, 0xFFFFFFFF}}, {}}, {"entry ends outside", 0, {{entry, 5, 60}}, {}},
        {"wants 4 GiB", 0, {{entry, 1, 0xFFFFFFFF}}, {}},
    };
    for (const auto& [name, result, nonsense, said] : cases) {
        SCOPED_TRACE(name);
        TelephonySession fake;
        if (result != 0) fake.Results[entry] = result;
        fake.Nonsense = nonsense;
        fake.Dialled = {{"+33 (130) 1234567", "99331301234567"},
                        {"+44 (130) 1234567", "71301234567"},
                        {"+44 (171) 1234567", "71711234567"}};
        DialProperties properties;
        EXPECT_EQ(TAPIGetDialProps(&properties, ""), kDone);
        EXPECT_EQ(Rules(properties), "+44 99 7 171 -an");
        EXPECT_EQ(properties.Description, "London");
        EXPECT_EQ(fake.Server.Front.Said, said);
    }
}

TEST(TelephonyRules, OfAnotherCountryStayEmptyAndAFailedTestIsAFailure) {
    TelephonySession fake;
    EXPECT_EQ(TAPIGetDialProps(nullptr, ""), kDone);
    fake.TakeCalls();
    DialProperties properties;
    EXPECT_EQ(TAPIGetCountrySettings(7, &properties, ""), kDone); // the library answers with 440
    EXPECT_EQ(Rules(properties), "+   171 ---");
    EXPECT_EQ(TAPIGetCountrySettings(440, &properties, ""), kDone);
    EXPECT_EQ(Rules(properties), "+44 00 0 171 ---");
    EXPECT_THAT(fake.Server.Front.Said, IsEmpty());
    fake.Countries.clear();
    for (int known = 0; known < 3; ++known) { // one more translation each time
        EXPECT_EQ(TAPIGetDialProps(&properties, ""), kTapiCallFailed);
        EXPECT_THAT(fake.Server.Front.TakeSaid(),
                    ElementsAre("status 1: TAPI reports 'A specified address is either invalid or not allowed'"));
        if (known == 0) fake.Dialled["+33 (130) 1234567"] = "1";
        if (known == 1) fake.Dialled["+44 (130) 1234567"] = "1";
        if (known == 2) fake.Dialled["+44 (171) 1234567"] = "1";
    }
    EXPECT_EQ(TAPIGetDialProps(&properties, ""), kDone);
}

} // namespace
} // namespace bv
