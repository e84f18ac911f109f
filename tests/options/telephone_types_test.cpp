#include "options/telephone_types.h"

#include <gmock/gmock.h>

#include "devices/setup_text.h"

namespace bv {
namespace {

using test::SetupServer;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kUpdating = "status 1: Updating file " + test::kSetupFile;
const std::string kUpdated = "status 1: Updated file " + test::kSetupFile;

TEST(TelephoneTypes, WordsAndCodes) {
    std::string words;
    for (TelephoneTypeCode code = 0; code <= 20; ++code) words += TelephoneTypeWord(code) + " ";
    EXPECT_EQ(words, "Local Local National1 National2 National3 National4 National5 National6 National7 National8 "
                     "National9 International1 International2 International3 International4 International5 "
                     "International6 International7 International8 International9 Local ");
    const std::pair<const char*, int> cases[] = {
        {"local", 1},           {"National", 2},        {"NATIONAL1", 2},       {"National2", 3},
        {"National9", 10},      {"International", 11},  {"International1", 12}, {"international2", 12},
        {"International3", 13}, {"International9", 19}, {"Local1", 0},          {"National0", 0},
        {"National10", 0},      {"Nationalx", 0},       {"International0", 0},  {"", 0},
    };
    for (const auto& [word, code] : cases) EXPECT_EQ(ParseTelephoneType(word).value_or(0), code) << word;
}

TEST(TelephoneTypes, AreReadUpToTheFirstLineOfAnotherForm) {
    const std::string q = "[QUEUEMAN]\n";
    const std::string line = "TelnumType: Local \"x\"\n";
    std::string twenty;
    for (int i = 0; i < 20; ++i) twenty += line;
    const std::tuple<std::string, std::size_t, bool> cases[] = {
        {"", 0, true},
        {"[A]\n" + line, 0, true},
        {q + "k: v\n" + line + "\n; " + line + line + "[QUEUEMAN]\n" + line, 2, true},
        {q + "telnumtype:local,\"x\" more\n", 1, true},
        {q + line + "TelnumType: Local x\n" + line, 1, false},
        {q + line + "TelnumType: Local \"x\n" + line, 1, false},
        {q + line + "TelnumType: Local \"\n", 1, false},
        {q + line + "TelnumType: Local\n", 1, false},
        {q + line + "TelnumType:\n", 1, false},
        {q + line + "TelnumType: Global \"x\"\n", 1, false},
        {q + twenty, 20, true},
        {q + twenty + line, 20, false},
    };
    for (const auto& [text, count, good] : cases) {
        SetupServer server(text);
        TelephoneTypes types(3);
        EXPECT_EQ(LoadTelephoneTypes(types), good) << text;
        EXPECT_EQ(types, TelephoneTypes(count, {1, "x"})) << text;
    }
}

TEST(TelephoneTypes, ReplaceTheOldOnesInThePlaceOfTheFirst) {
    const TelephoneTypes list = {{1, "London"}, {11, "B\xFCro \x80"}, {77, "Odd"}, {0, "end"}, {2, "behind it"}};
    const std::string lines = "TelnumType: Local           \"London\"\n"
                              "TelnumType: International1  \"B\xFCro \x80\"\n"
                              "TelnumType: Local           \"Odd\"\n";
    const std::pair<std::string, std::string> cases[] = {
        {"", "[QUEUEMAN]\n" + lines},
        {"[A]\nk: v", "[A]\nk: v\n\n[QUEUEMAN]\n" + lines},
        {"[A]\n\n", "[A]\n\n[QUEUEMAN]\n" + lines},
        {"[queueman] x\n\nk: v\n\n; c\n\n\n[B]\nk: v\n", "[queueman] x\nk: v\n; c\n" + lines + "\n[B]\nk: v\n"},
        {"[QUEUEMAN]\na: 1\nTelnumType: bad\nb: 2\ntelnumtype: Local \"x\"\n; TelnumType: c\n[QUEUEMAN]\nTelnumType: "
         "x\n",
         "[QUEUEMAN]\na: 1\n" + lines + "b: 2\n; TelnumType: c\n\n[QUEUEMAN]\nTelnumType: x\n"},
    };
    for (const auto& [before, after] : cases) {
        SetupServer server(before);
        TelephoneTypes saved;
        EXPECT_TRUE(SaveTelephoneTypes(list, saved));
        EXPECT_EQ(server.GetSetup(), after);
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(kUpdating, kUpdated));
        EXPECT_TRUE(Startup().SettingsChanged);
        EXPECT_TRUE(SaveTelephoneTypes(list, saved));
        EXPECT_THAT(server.Front.Said, IsEmpty());
        EXPECT_TRUE(SaveTelephoneTypes({}, saved));
        EXPECT_EQ(server.GetSetup().find("London"), std::string::npos);
    }
}

TEST(TelephoneTypes, ADescriptionStandsInQuotes) {
    EXPECT_EQ(FaultOfTypeDescription(std::string(100, 'x')), std::nullopt);
    EXPECT_EQ(FaultOfTypeDescription(""), std::nullopt);
    EXPECT_EQ(FaultOfTypeDescription("a\"b"),
              "TelnumType: \"a\"b\" is not a text of at most 100 characters without quotes");
    EXPECT_NE(FaultOfTypeDescription(std::string(101, 'x')), std::nullopt);
    EXPECT_NE(FaultOfTypeDescription("a\tb"), std::nullopt);
}

} // namespace
} // namespace bv
