// Where telephone numbers are, and which destinations of rules cover them.
#include "lcr/number_place.h"

#include <gmock/gmock.h>

#include "lcr/rule_match.h"
#include "lcr/rule_references.h"
#include "support/memory_server.h"

namespace bv::test {
namespace {

const Destinations& Places() {
    static const Destinations kPlaces(
        {{"HOME", "", {"UK/LON", "1"}}, {"EU", "", {"33", "uk/lon"}}, {"NONE", "", {}}},
        {{"UK", "", "44", "0", true, {{"LON", "", {"171*", "20*"}}, {"CITY", "", {"2079*"}}, {"ONE", "", {"999"}}}},
         {"UKR", "", "380", "0"},
         {"FR", "", "33", "0"},
         {"JE", "", "441534", "0"},
         {"US", "", "1", "0"}});
    return kPlaces;
}

// "UK: LON 20*; HOME EU", or nothing.
std::string TextOf(const std::optional<NumberPlace>& place) {
    if (!place) return "";
    std::string text = place->Country + ":";
    for (const auto& [reference, match] : place->Areas) text += ' ' + reference + ' ' + match;
    text += ';';
    for (const std::string& region : place->Regions) text += ' ' + region;
    return text;
}

TEST(PlaceOfNumber, IsTheLongestCodeAndEveryAreaThatMeansIt) {
    const std::pair<const char*, const char*> rows[] = {
        {"+44 (20) 1234-5678:22", "UK: UK/LON 20*; HOME EU"},
        {"442079460018", "UK: UK/LON 20* UK/CITY 2079*; HOME EU"},
        {"+44999", "UK: UK/ONE 999;"},
        {"+449991", "UK:;"},
        {"+44", "UK:;"},
        {"+441534", "JE:;"},
        {"+44153", "UK:;"},
        {"+33 1", "FR:; EU"},
        {"+1", "US:; HOME"},
        {"+81 3", ""},
        {"01", ""}, // national, and not of code 1
        {"+44 20 CITY", ""},
        {"", ""},
    };
    for (const auto& [number, expected] : rows) EXPECT_EQ(TextOf(PlaceOfNumber(Places(), number)), expected) << number;
}

// Beside what a reference would be: an area's rule takes no fax to the rest of its country.
TEST(PlaceOfNumber, IsWhatRulesAreJudgedBy) {
    const std::tuple<const char*, const char*, bool> rows[] = {
        {"Area: UK/LON", "+44 20 1", true},   {"Area: UK/LON", "+44 30 1", false}, {"Area: UK/CITY", "+442079", true},
        {"Area: UK/CITY", "+44 20 1", false}, {"Country: UK", "+44 30 1", true},   {"Country: UK", "+44 20 1", true},
        {"Country: UK", "+33 1", false},      {"Region: HOME", "+44 20 1", true},  {"Region: HOME", "+44 30 1", false},
        {"Country: UK", "+380 1", true}, // its identifier begins the other's
    };
    for (const auto& [line, number, expected] : rows) {
        RoutingRule rule;
        rule.Destinations.push_back({"", line});
        rule.Destinations.back().Key = FindDestinationKey(Places(), rule.Destinations.back()).value();
        RuleFilter fax{Criterion::Destination, true};
        fax.Number = PlaceOfNumber(Places(), number);
        EXPECT_EQ(RuleMatches(rule, fax, {Places(), {}, {}}), expected) << line << " for " << number;
    }
}

TEST(EnterNumber, GoesByTheDiallingProperties) {
    MemoryServer server;
    server.Load();
    EXPECT_EQ(EnterNumber(Places(), "33 1")->Number, "+331");
    EXPECT_FALSE(EnterNumber(Places(), "0181"));
    const std::string nothing = "warning: There are no dialling properties: the number was taken as it stands";
    EXPECT_THAT(server.Front.TakeSaid(),
                testing::ElementsAre(nothing, nothing,
                                     "error: Number 0181 begins with no dialling code of a country that is there"));
    server.Put("F:\\BRIVANE\\B-DB\\DIALLING.INI",
               "[DIALPROPERTIES]\r\nLocation: London\r\n\r\n[LOCATION]\r\nDescription: London\r\n"
               "Country: 44\r\nArea: 20\r\nNatlAccess: 0\r\nIntlAccess: 00\r\nNumberWithoutAreaMaxLen: 8\r\n");
    const std::pair<const char*, const char*> rows[] = {
        {"020 1234", "+44201234: UK/LON (20...), LON, UK; region HOME, EU"},
        {"+44 999", "+44999: UK/ONE (999), ONE, UK"},
        {"+1", "+1: US, US; region HOME"},
        {"+81", "Number +81 begins with no dialling code of a country that is there"},
        {"LON", "\"LON\" is no number and no destination."},
        {" ", ""}};
    NumberSearch search;
    for (const auto& [number, expected] : rows) EXPECT_EQ(search.TextOf(Places(), number), expected) << number;
    EXPECT_EQ(TextOf(EnterNumber(Places(), "00 33 1")), "FR:; EU");
    EXPECT_EQ(TextOf(EnterNumber(Places(), "0171 1234")), "UK: UK/LON 171*; HOME EU");
    EXPECT_THAT(server.Front.TakeSaid(), testing::IsEmpty());
}

} // namespace
} // namespace bv::test
