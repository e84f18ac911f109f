#include "dialling/telephony.h"

#include <gmock/gmock.h>

#include "dialling/fake_telephony.h"
#include "dialling/tele_session.h"

namespace bv {
namespace {

using test::FakeTelephony;
using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;
constexpr std::uint32_t kBadDevice = 0x80000002;
const std::string kBadDeviceSaid =
    "status 1: TAPI reports 'The specified device identifier or line device identifier is invalid'";

StatusCode Start(TapiNegotiation negotiation = TapiNegotiation::WithDevice) {
    return TAPIInit("Setup", nullptr, negotiation);
}

TEST(TelephonyErrors, HaveTheirTextsAndSeverities) {
    const std::string unknown = "Unknown/unspecified error";
    const std::pair<std::uint32_t, std::string> cases[] = {
        {0x80000001,
         "The line cannot be opened due to a persistent condition (e.g. exclusively opened by another process)"},
        {0x8000000C, "The application requested an incompatible API version"},
        {0x80000056, "A telephony service provider which does not support multiple instances is listed more than once. "
                     "Check the Telephony Control Panel settings"},
        {0xFFFFFFFF, unknown},
        {0x7FFFFFFF, unknown},
    };
    test::RecordingFront front;
    for (const auto& [result, text] : cases) {
        TAPIErrorText(static_cast<std::int32_t>(result), 3);
        EXPECT_THAT(front.TakeSaid(), ElementsAre("status 1: TAPI reports '" + text + "'")) << result;
    }
    for (const int severity : {0, 1, 2, 4, 5}) TAPIErrorText(1, severity);
    TAPIErrorText(0, 5);
    EXPECT_THAT(front.Said,
                ElementsAre("warning: TAPI reports '" + unknown + "'", "error: TAPI reports '" + unknown + "'"));
}

TEST(TelephonyInit, OpensOneSessionAndClosesIt) {
    FakeTelephony fake;
    EXPECT_EQ(Start(), kDone);
    EXPECT_EQ(Start(), kDone);
    EXPECT_EQ(Tapi().Session.Version, 0x10004U);
    EXPECT_THAT(fake.TakeCalls(), ElementsAre("load TAPI32.DLL", "initialize Setup own", "negotiate 77", "negotiate 0",
                                              "negotiate 65540", "negotiate 65540"));
    TAPITerm();
    TAPITerm();
    EXPECT_THAT(fake.TakeCalls(), ElementsAre("shutdown 77", "freed"));
    int instance = 0;
    EXPECT_EQ(TAPIInit("Again", &instance, TapiNegotiation::Test), kDone);
    EXPECT_THAT(fake.Calls, ElementsAre("load TAPI32.DLL", "initialize Again given", "caps 77 65540", "  given 44"));
    EXPECT_THAT(fake.Server.Front.Said, IsEmpty());
}

TEST(TelephonyInit, SaysWhatIsMissingAndUndoesEverything) {
    struct Case {
        const char* Missing; // entry, or empty
        const char* Failing; // entry, or empty
        std::uint32_t Result;
        TapiNegotiation Negotiation;
        StatusCode Status;
        Lines Said;
        const char* Shutdown;
    };
    constexpr auto kDevice = TapiNegotiation::WithDevice;
    constexpr auto kTest = TapiNegotiation::Test;
    const auto missing = [](const std::string& name) {
        return Lines{"error: Function " + name + " missing from TAPI DLL"};
    };
    const Case cases[] = {
        {"lineInitialize", "", 0, kDevice, kTapiUnavailable, missing("lineInitialize"), ""},
        {"lineShutdown", "", 0, kDevice, kTapiUnavailable, missing("lineShutdown"), ""},
        {"lineGetTranslateCaps", "", 0, kDevice, kTapiUnavailable, missing("lineGetTranslateCaps"), ""},
        {"lineNegotiateAPIVersion", "", 0, kTest, kTapiUnavailable, missing("lineNegotiateAPIVersion"), ""},
        {"lineGetCountry", "", 0, kDevice, kDone, {}, ""},
        {"lineTranslateDialog", "", 0, kDevice, kTapiUnavailable, missing("lineTranslateDialog"), ""},
        {"lineTranslateAddress", "", 0, kDevice, kTapiUnavailable, missing("lineTranslateAddress"), ""},
        {"", "lineInitialize", kBadDevice, kDevice, kTapiUnavailable, {kBadDeviceSaid}, ""},
        {"", "lineNegotiateAPIVersion", kBadDevice, kDevice, kTapiUnavailable, {kBadDeviceSaid}, "shutdown 77"},
        {"", "lineNegotiateAPIVersion", kBadDevice, kTest, kDone, {}, ""},
        {"", "lineGetTranslateCaps", 0x8000000C, kTest, kTapiUnavailable,
         Lines{"status 1: Unable to negotiate TAPI version number"}, "shutdown 77"},
        {"", "lineGetTranslateCaps", 0x8000004D, kTest, kDone, {}, ""},
        {"", "lineGetTranslateCaps", kBadDevice, kTest, kDone, {}, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.Missing) + " " + c.Failing);
        FakeTelephony fake;
        fake.Missing = {c.Missing};
        if (*c.Failing != '\0') fake.Results[c.Failing] = c.Result;
        EXPECT_EQ(Start(c.Negotiation), c.Status);
        EXPECT_EQ(fake.Server.Front.TakeSaid(), c.Said);
        EXPECT_EQ(std::ranges::count(fake.Calls, "shutdown 77"), *c.Shutdown != '\0' ? 1 : 0);
        EXPECT_EQ(fake.Calls.back() == "freed", c.Status != kDone);
        EXPECT_EQ(std::ranges::count(fake.Calls, "caps 77 65540"), c.Negotiation == kTest && c.Missing[0] == '\0');
        const bool works = c.Status == kDone;
        EXPECT_EQ(TAPISetLocation("1", nullptr), works ? kDone : kTapiNotInitialised);
    }
}

TEST(TelephonyInit, WithoutLibraryOrHandleNothingWorks) {
    FakeTelephony fake;
    const auto all = [] {
        TelephoneNumber number = "stays?";
        DialProperties properties;
        properties.Mode = 9;
        const Lines statuses = {std::to_string(TAPIGetDialProps(&properties, "")),
                                std::to_string(TAPIGetCountrySettings(440, &properties, "")),
                                std::to_string(TAPIMakeDialable("123", number, "")),
                                std::to_string(TAPIMakeInternational("123", number, "")),
                                std::to_string(TAPISetLocation("1", nullptr))};
        EXPECT_EQ(number, "");
        EXPECT_EQ(properties.Mode, 9);
        return statuses;
    };
    fake.Present = false;
    EXPECT_EQ(Start(), kTapiUnavailable);
    EXPECT_THAT(fake.Server.Front.TakeSaid(), ElementsAre("error: Unable to load DLL 'TAPI32.DLL' (error #126)"));
    EXPECT_THAT(all(), testing::Each("-3967"));
    fake.Present = true;
    fake.Line = 0;
    EXPECT_EQ(Start(), kTapiUnavailable);
    EXPECT_THAT(all(), testing::Each("-3967"));
    fake.Line = 77;
    EXPECT_EQ(Start(), kDone);
    Tapi().Session.Line = 0;
    EXPECT_THAT(all(), testing::Each("-3966"));
    EXPECT_THAT(fake.Server.Front.Said, IsEmpty());
}

TEST(TelephonyDialog, IsOpenedForTheAddress) {
    FakeTelephony fake;
    EXPECT_EQ(Start(), kDone);
    fake.TakeCalls();
    EXPECT_EQ(TAPISetLocation("+44 (171) 1", &fake), kDone);
    EXPECT_THAT(fake.Calls, ElementsAre("dialog 77 0 65540 owned +44 (171) 1"));
    fake.Results["lineTranslateDialog"] = kBadDevice;
    EXPECT_EQ(TAPISetLocation("", nullptr), kTapiCallFailed);
    EXPECT_THAT(fake.Server.Front.Said, ElementsAre(kBadDeviceSaid));
}

const std::string kCountryFile = "F:\\COUNTRY.INI";

TEST(TelephonyCountryFile, GivesTheLengthOfLocalNumbers) {
    const std::string none = "warning: Unable to find '[COUNTRIES]' paragraph in file (for TAPI number editing)";
    const std::tuple<std::string, const char*, int, Lines> cases[] = {
        {"[BRIVANE]\r\nType: Country\r\n\r\n[COUNTRIES]\r\n1: US, \"United States\", 7\r\n44: UK, \"United, "
         "Kingdom\", 8\r\n44: UK2, \"x\", 9\r\n",
         "44", 8, Lines{}},
        {"[countries]\n44 : UK, \"x\", 5\n:44: UK, x, 6\n044: UK, x, 6\n44: \"UK\" \"x y\" \"7\"\n", "44", 7, {}},
        {"[COUNTRIES]\n44: UK,,\"x\"   9 10\n", "44", 9, {}},
        {"[COUNTRIES]\n44: UK, \"x\"\n44: UK, \"x\", 9\n", "44", 0, {}},
        {"[COUNTRIES]\n44:\n", "44", 0, {}},
        {"[COUNTRIES]\n44=UK, \"x\", 5\n44: UK, \"x, 5\n", "44", 0, {}},
        {"[COUNTRIES]\n44: UK, x, 65543\n", "44", 7, {}},
        {"[COUNTRIES]\n45: DK, x, 8\n[AREAS]\n44: UK, x, 8\n", "44", 0, {}},
        {"[COUNTRY]\n44: UK, x, 8\n", "44", 0, {none}},
        {"", "44", 0, {none}},
        {"[COUNTRIES]\n: UK, x, 8\n", "", 0, {}},
    };
    test::MemoryServer server;
    for (const auto& [text, code, length, said] : cases) {
        server.Put(kCountryFile, text);
        EXPECT_EQ(GetLocalNumberLen(kCountryFile, code), length) << text;
        EXPECT_EQ(server.Front.TakeSaid(), said) << text;
    }
    EXPECT_EQ(GetLocalNumberLen("", "44"), 0);
    EXPECT_THAT(server.Front.TakeSaid(), IsEmpty());
    EXPECT_EQ(GetLocalNumberLen("F:\\NONE.INI", "44"), 0);
    EXPECT_THAT(server.Front.Said,
                ElementsAre("warning: Unable to find file 'F:\\NONE.INI' (for TAPI number editing)"));
}

} // namespace
} // namespace bv
