#include <gmock/gmock.h>

#include "dialling/fake_telephony.h"
#include "dialling/tele_translate.h"
#include "dialling/telephony.h"

namespace bv {
namespace {

using test::TelephonySession;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(TelephonyTranslation, TakesTheLocationsOwnCodesOff) {
    const std::tuple<const char*, const char*, const char*, std::size_t, const char*> cases[] = {
        // local code, long-distance code, dialled, limit, expected
        {"9", "8", "9 123", 40, "123"},
        {"9", "8", "8  123", 40, "123"},
        {"9", "8", "98 123", 40, "8 123"}, // one only
        {"9", "98", "98 123", 40, "8 123"},
        {"", "8", "8123", 40, "123"},
        {"", "", " 123", 40, "123"},
        {"9", "8", "7123", 40, "7123"},
        {"9", "8", "", 40, ""},
        {"9", "8", "9", 40, ""},
        {"9,", "8", "9, 0171 1234567", 6, "0171 1"},
    };
    for (const auto& [local, distance, dialled, limit, expected] : cases) {
        TelephonySession fake;
        fake.Locations[0].LocalAccess = local;
        fake.Locations[0].LongDistanceAccess = distance;
        fake.Dialled = {{"+1", dialled}};
        EXPECT_EQ(TAPIGetDialProps(nullptr, ""), kDone);
        std::string dialable = "old";
        EXPECT_EQ(TAPITranslate("+1", dialable, limit), kDone);
        EXPECT_EQ(dialable, expected) << dialled;
        EXPECT_THAT(fake.Server.Front.Said, IsEmpty());
    }
}

TEST(TelephonyTranslation, IsFetchedInTwoTriesAndReadWithinBounds) {
    TelephonySession fake;
    fake.Dialled = {{"+1", "01711234567"}};
    std::string dialable;
    EXPECT_EQ(TAPITranslate("+1", dialable, 40), kDone);
    EXPECT_EQ(dialable, "01711234567");
    // 40 bytes of words, the two texts and their terminators.
    EXPECT_THAT(fake.Calls,
                ElementsAre("translate 77 0 65540 0 0 +1", "  given 40", "translate 77 0 65540 0 0 +1", "  given 70"));
    for (const std::uint32_t offset : {70U, 0xFFFFFFFFU}) {
        fake.Nonsense = {{"lineTranslateAddress", 4, offset}};
        EXPECT_EQ(TAPITranslate("+1", dialable, 40), kDone);
        EXPECT_EQ(dialable, "");
    }
    fake.Nonsense = {{"lineTranslateAddress", 1, 0x7FFFFFFF}};
    EXPECT_EQ(TAPITranslate("+1", dialable, 40), kTapiNoMemory);
    EXPECT_THAT(fake.Server.Front.Said, IsEmpty());
    fake.Results["lineTranslateAddress"] = 0x8000002D;
    dialable = "old";
    EXPECT_EQ(TAPITranslate("+1", dialable, 40), kTapiCallFailed);
    EXPECT_EQ(dialable, "");
    EXPECT_THAT(fake.Server.Front.Said, ElementsAre("status 1: TAPI reports 'Invalid location specified'"));
}

TEST(TelephonyTranslation, IsComparedFromTheRight) {
    const std::tuple<const char*, std::size_t, const char*, std::size_t, std::size_t> cases[] = {
        // address, digits, dialled, start, count
        {"+44 (171) 1234567", 12, "00 44-171-1234567", 3, 12},
        {"+44 (171) 1234567", 10, "01711234567", 1, 10},
        {"+44 (171) 1234567", 10, "1234567", 0, 7},
        {"+44 (171) 1234567", 10, "9991234567", 3, 7},
        {"+44 (171) 1234567", 99, "0441711234567", 1, 12}, // no further than the plus sign
        {"1+2", 99, "12", 1, 1},
        {"+44", 99, "", 0, 0},
        {"+44", 99, "45 ", 3, 0},
        {"+44", 0, "44", 2, 0},
        {"+44", 2, "(4)(4)", 1, 2},
    };
    for (const auto& [address, digits, dialled, start, count] : cases) {
        TelephonySession fake;
        fake.Dialled = {{address, dialled}};
        TranslationMatch match;
        EXPECT_EQ(CompareTAPITranslationOutput(address, digits, match), kDone);
        EXPECT_EQ(match.Output, dialled);
        EXPECT_EQ(match.Start, start) << address << " " << dialled;
        EXPECT_EQ(match.Count, count) << address << " " << dialled;
    }
}

struct Conversion {
    std::string Number;
    std::string Address; // that is asked for, or empty
    std::string Dialled;
    StatusCode Status;
    std::string Dialable;
};

const std::string k40 = "1234567890123456789012345678901234567890";

void ExpectConversions(TelephonySession& fake, std::initializer_list<Conversion> cases) {
    for (const Conversion& c : cases) {
        SCOPED_TRACE(c.Number);
        fake.TakeCalls();
        fake.Dialled = {{c.Address, c.Dialled}};
        TelephoneNumber dialable = "old";
        EXPECT_EQ(TAPIMakeDialable(c.Number, dialable, "F:\\COUNTRY.INI"), c.Status);
        EXPECT_EQ(dialable.View(), c.Dialable);
        const std::string asked = "translate 77 0 65540 0 0 " + c.Address;
        for (const std::string& call : fake.Calls) EXPECT_TRUE(!call.starts_with("translate") || call == asked) << call;
        EXPECT_EQ(std::ranges::count(fake.Calls, asked) != 0, !c.Address.empty());
    }
}

TEST(TelephonyNumber, IsMadeDialable) {
    TelephonySession fake;
    fake.Server.Put("F:\\COUNTRY.INI", "[COUNTRIES]\n44: UK, \"x\", 7\n");
    const std::string d38 = k40.substr(0, 38);
    const std::string d39 = k40.substr(0, 39);
    const std::string d41 = k40 + "1";
    const std::string spaced = "(" + k40 + ") - ";
    const std::string foreign39 = "+" + k40.substr(0, 39);
    const std::string foreign38 = "+" + k40.substr(0, 38);
    const std::string foreign38Dialled = "00" + k40.substr(0, 38);
    const std::string afterForeign = "00" + k40.substr(0, 38);
    const std::string cut38 = d38 + ":1";
    ExpectConversions(fake, {
                                {"+44 (171) 1234567:12", "+44 (171) 1234567", "123 4567", kDone, "1234567:12"},
                                {"+1 (206) 5551234", "+1 (206) 5551234", "001 206 555-1234", kDone, "0012065551234"},
                                {"1234567", "+44(171)1234567", "1234567", kDone, "1234567"},
                                {"0181 123 4567:a:b", "+44(181)1234567", "0 (181) 123.4567", kDone, "01811234567:a:b"},
                                {"+44 171 1234567", "+44(171)1234567", "1234567", kDone, "1234567"},
                                {"00441711234567", "+44(171)1234567", "[1]{2}", kDone, "12"},
                                {"+33 1 23456789", "", "", kDone, "0033123456789"},
                                {"+33-1-234:5", "", "", kDone, "00331234:5"},
                                {" +33 (1) 2", "", "", kDone, "003312"},
                                {"0033 1 23456789:7", "", "", kDone, "0033123456789:7"},
                                {"+", "", "", kDone, "00"},
                                {"", "+44(171)", "", kDone, ""},
                                {":5", "+44(171)", "", kDone, ":5"},
                                {"1234567", "+44(171)1234567", k40, kDone, k40},
                                {"1234567", "+44(171)1234567", spaced, kDone, k40},
                                {"1234567", "+44(171)1234567", d41, kNumberTooLong, ""},
                                {"1234567:12", "+44(171)1234567", d38, kDone, cut38},
                                {"1234567:12", "+44(171)1234567", d39, kDone, d39},
                                {foreign39, "", "", kNumberTooLong, ""},
                                {foreign38, "", "", kDone, foreign38Dialled},
                            });
}

TEST(TelephonyNumber, OfOver40CharactersIsRefusedBeforeAnythingIsAsked) {
    TelephonySession fake;
    TelephoneNumber dialable = "old";
    EXPECT_EQ(TAPIMakeDialable(k40 + "1", dialable, ""), kNumberTooLong);
    EXPECT_EQ(TAPIMakeDialable("1:" + k40, dialable, ""), kNumberTooLong);
    EXPECT_EQ(dialable, "");
    EXPECT_THAT(fake.Calls, IsEmpty());
    // The international form is longer than what was typed.
    EXPECT_EQ(TAPIMakeDialable(k40, dialable, ""), kNumberTooLong);
    EXPECT_EQ(std::ranges::count(fake.Calls, "caps 77 65540"), 2);
    EXPECT_THAT(fake.Server.Front.Said, IsEmpty());
}

// Without an international prefix every number is taken for one that is typed with it.
TEST(TelephonyNumber, IsLeftAloneWithoutAnInternationalPrefix) {
    TelephonySession fake;
    fake.Countries[0].International = "EFG";
    ExpectConversions(fake, {
                                {"0171 1234567", "", "", kDone, "01711234567"},
                                {"+44 171 1234567", "", "", kDone, "+441711234567"},
                                {"+33 1 2", "", "", kDone, "3312"},
                                {"44 171 1234567", "+44(171)441711234567", "5", kDone, "5"},
                            });
}

TEST(TelephonyNumber, IsMadeInternational) {
    TelephonySession fake;
    fake.Server.Put("F:\\COUNTRY.INI", "[COUNTRIES]\n44: UK, \"x\", 7\n");
    TelephoneNumber number;
    EXPECT_EQ(TAPIMakeInternational("0181 123-4567:9", number, "F:\\COUNTRY.INI"), kDone);
    EXPECT_EQ(number, "+441811234567:9");
    EXPECT_EQ(TAPIMakeInternational("1234567", number, ""), kDone);
    EXPECT_EQ(number, "+441711234567");
}

} // namespace
} // namespace bv
