#include "dialling/dial_locations.h"

#include <gmock/gmock.h>

#include "dialling/dialling_actions.h"
#include "dialling/dialling_file.h"
#include "dialling/fake_telephony.h"
#include "dialling/number_trial.h"
#include "shell/startup.h"
#include "support/texts.h"

namespace bv {
namespace {

using test::Replaced;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kPath = "F:\\BRIVANE\\B-DB\\DIALLING.INI";
const std::string kHead = "; ours\n[BRIVANE]\nType: DiallingProperties\n[DIALPROPERTIES]\n; chosen by Anna\n";
const std::string kSelect = kHead + "location: London\n\n";
const std::string kLondon =
    "[LOCATION]\nDescription: London\nCountry: 44\nArea: 20\nNatlAccess: 0\nIntlAccess: 00\n"
    "DialAreaCode: NO\nNumberWithoutAreaMaxLen: 8\nDialAsLocal: 1632\nDialAsLocal: 1634\nPause: 2\n"
    "DialAsLocal: 99\n\n";
const std::string kOslo = "[Location] x\n Description: x\ncountry:47\nDescription:Oslo\nColour:\tred \n; hers\n";
const std::string kNameless = "[LOCATION]\nCountry: 1\n";
const std::string kOther = "[OTHER]\nDescription: London\n";
const std::string kAll = kSelect + kLondon + kNameless + kOther + kOslo + kLondon;
const std::string kFresh = "Area: \nNatlAccess: \nIntlAccess: \nDialAreaCode: NO\nDialNatlAccessForLocal: NO\n"
                           "DisplayNatlAccess: NO\nNumberWithoutAreaMaxLen: 0\n\n";

struct DialServer : test::FakeTelephony {
    explicit DialServer(const std::string& text) {
        Server.Load();
        Write(text);
    }
    void Write(const std::string& text) { Server.Put(kPath, Replaced(text, "\n", "\r\n")); }
    std::string File() { return Replaced(Server.Get(kPath), "\r\n", "\n"); }
    DialLocations Read() { return ReadDialLocations().value_or(DialLocations()); }
};

void Set(DialLocations& locations, std::size_t place, std::string_view key, std::string_view value) {
    EXPECT_TRUE(EnterDialValue(locations.Places[place].Now, key, value)) << value;
}

TEST(DialLocations, AreReadAsEachOfThemIsReadAlone) {
    DialServer server(kAll);
    const DialLocations locations = server.Read();
    EXPECT_EQ(locations.Chosen, 0U);
    EXPECT_EQ(locations.Unnamed, 1U);
    ASSERT_EQ(locations.Places.size(), 3U);
    for (const std::size_t place : {0U, 1U}) {
        DialProperties alone;
        const DialProperties& own = locations.Places[place].Now;
        EXPECT_EQ(ReadDialLocation(kPath, own.Description, alone), kDone);
        EXPECT_TRUE(own == alone) << own.Description;
    }
    EXPECT_EQ(ShownName(locations, 2), "London (the name is there already)");
    EXPECT_EQ(PrefixesText(locations.Places[0].Now.DialAsLocal), "1632,1634");
}

TEST(DialLocations, OnlyWhatWasChangedIsWritten) {
    const std::string noTelephony = kHead + "Location: TAPI\n\n";
    const struct {
        std::string Before;
        std::function<void(DialLocations&)> Change;
        std::string After;
    } kCases[] = {
        {kAll, [](auto&) {}, kAll},
        {kAll, [](auto& all) { Set(all, 0, "Area", "171"); },
         Replaced(kAll, kLondon + kNameless, Replaced(kLondon, "20", "171") + kNameless)},
        {kAll,
         [](auto& all) {
             Set(all, 1, "Country", "46");
             Set(all, 1, "DialAsNatl", "1,2");
         },
         Replaced(kAll, kOslo, Replaced(kOslo, "country:47", "Country: 46") + "DialAsNatl: 1\nDialAsNatl: 2\n")},
        {kSelect + kLondon, [](auto& all) { Set(all, 0, "DialAsLocal", ""); },
         kSelect + Replaced(Replaced(kLondon, "DialAsLocal: 1632\nDialAsLocal: 1634\n", ""), "DialAsLocal: 99\n", "")},
        {kSelect + kLondon + kOslo,
         [](auto& all) {
             EXPECT_TRUE(RenamePlace(all, 0, "x"));
             EXPECT_TRUE(RenamePlace(all, 1, "London"));
             EXPECT_TRUE(RenamePlace(all, 0, "Oslo"));
         },
         kHead + "Location: Oslo\n\n" + Replaced(kLondon, "London", "Oslo") +
             Replaced(kOslo, "Description:Oslo", "Description: London")},
        {kAll, [](auto& all) { EXPECT_TRUE(DeletePlace(all, 2)); }, kSelect + kLondon + kNameless + kOther + kOslo},
        {kAll, [](auto& all) { all.Chosen = 1; }, Replaced(kAll, "location: London", "Location: Oslo")},
        {kSelect + kLondon + "x",
         [](auto& all) {
             EXPECT_TRUE(AddPlace(all, "Leeds", 0));
             all.Places[1].Now = {};
             all.Places[1].Now.Description = "Leeds";
         },
         kSelect + kLondon + "x\n\n[LOCATION]\nDescription: Leeds\nCountry: \n" + kFresh},
        {kOslo, [](auto& all) { all.Chosen = 0; }, "[DIALPROPERTIES]\nLocation: Oslo\n\n" + kOslo},
        {kAll, [](auto& all) { all.Mode = kDialTelephony; }, noTelephony},
        {noTelephony, [](auto& all) { all.Mode = kDialNoEditing; }, Replaced(noTelephony, "TAPI", "NoTelNumEdit")},
    };
    for (const auto& [before, change, after] : kCases) {
        DialServer server(before);
        server.Server.Front.Answer = true;
        Startup() = {};
        DialLocations locations = server.Read();
        change(locations);
        EXPECT_EQ(IsChanged(locations), before != after);
        EXPECT_TRUE(SaveDialLocations(locations));
        // The two selections that are none drop more, as of any change of the file.
        EXPECT_EQ(server.File(), locations.Mode == kDialLocation ? after : Replaced(after, "; chosen by Anna\n", ""));
        EXPECT_EQ(Startup().SettingsChanged, before != after);
        EXPECT_FALSE(IsChanged(server.Read()));
    }
}

TEST(DialLocations, AskBeforeParagraphsGo) {
    DialServer server(kAll);
    DialLocations locations = server.Read();
    locations.Mode = kDialNoEditing;
    EXPECT_FALSE(SaveDialLocations(locations));
    EXPECT_THAT(server.Server.Front.TakeSaid(),
                ElementsAre("ask warning: Saving drops these paragraphs from file " + kPath +
                            ":\n\n[LOCATION] London\n[LOCATION]\n[OTHER]\n[Location] x Oslo\n[LOCATION] London\n\n"
                            "Save?"));
    EXPECT_EQ(server.File(), kAll);
}

TEST(DialLocations, AreHeldToTheirRules) {
    DialServer server(kAll);
    DialLocations locations = server.Read();
    for (const std::string name : {"", "tapi", "NOTELNUMEDIT", "Oslo", "a ", "a\tb"}) {
        EXPECT_FALSE(AddPlace(locations, name)) << name;
        EXPECT_FALSE(RenamePlace(locations, 0, name)) << name;
    }
    EXPECT_FALSE(AddPlace(locations, std::string(101, 'x')));
    EXPECT_TRUE(AddPlace(locations, "oslo"));
    EXPECT_FALSE(IsChanged(server.Read()));
    EXPECT_EQ(FaultOfSelection(locations), std::nullopt);
    locations.Chosen = 2;
    EXPECT_EQ(FaultOfSelection(locations), "There is a location named London already.");
    server.Server.Front.Answer = true;
    EXPECT_TRUE(DeletePlace(locations, 2));
    EXPECT_EQ(FaultOfSelection(locations), "Please select a location, or make a new one.");
    EXPECT_FALSE(SaveDialLocations(locations));
    locations.Mode = kDialTelephony;
    EXPECT_FALSE(AddPlace(locations, "Rome"));
    EXPECT_FALSE(DeletePlace(locations, 0));
    EXPECT_EQ(server.File(), kAll);
}

TEST(DialLocations, ChangesOfOthersStay) {
    const std::string theirs = kSelect + Replaced(kLondon, "44", "45") + "[LOCATION]\nDescription: Leeds\n";
    const struct {
        std::string Theirs;
        std::string New; // a location of ours
        bool Answer;
        std::string After; // none: theirs, unchanged
    } kCases[] = {
        {theirs, "Rome", false, ""},
        {theirs, "Leeds", true, ""},
        {theirs, "Rome", true, Replaced(theirs, "20", "171") + "\n[LOCATION]\nDescription: Rome\nCountry: \n" + kFresh},
        {kSelect, "Rome", true,
         kSelect +
             Replaced(Replaced(Replaced(kLondon, "20", "171"), "Pause: 2\nDialAsLocal: 99\n", ""), "NO\nNumber",
                      "NO\nDialNatlAccessForLocal: NO\nDisplayNatlAccess: NO\nNumber") +
             "[LOCATION]\nDescription: Rome\nCountry: \n" + kFresh},
    };
    for (const auto& [meanwhile, added, answer, after] : kCases) {
        DialServer server(kSelect + kLondon);
        server.Server.Front.Answer = answer;
        DialLocations locations = server.Read();
        Set(locations, 0, "Area", "171");
        EXPECT_TRUE(AddPlace(locations, added));
        server.Write(meanwhile);
        server.Server.Front.TakeSaid();
        EXPECT_EQ(SaveDialLocations(locations), !after.empty());
        EXPECT_THAT(server.Server.Front.Said.front(), HasSubstr("was changed by somebody else"));
        EXPECT_EQ(server.File(), after.empty() ? meanwhile : after);
    }
    DialServer server(kSelect + kLondon);
    DialLocations locations = server.Read();
    Set(locations, 0, "Area", "171");
    const ControlStream other = OpenShared(kPath, "r+b");
    EXPECT_FALSE(SaveDialLocations(locations));
    EXPECT_FALSE(ReadDialLocations());
    EXPECT_EQ(server.Server.Front.TakeSaid().back(), "error: Unable to open file " + kPath);
}

TEST(DialLocations, ComeBackWithAFileThatIsGone) {
    DialServer server(kSelect + kLondon + kOslo);
    server.Server.Front.Answer = true;
    DialLocations locations = server.Read();
    locations.Chosen = 1;
    EXPECT_EQ(platform::Files().Delete(kPath), platform::FileError::None);
    EXPECT_TRUE(SaveDialLocations(locations));
    EXPECT_EQ(server.Read().Selected, "Oslo");
    EXPECT_EQ(server.Read().Places.size(), 2U);
}

TEST(NumberTrial, MarksTheStepThatDecides) {
    DialServer server(kAll);
    DialLocations locations = server.Read();
    DialProperties& own = locations.Places[0].Now;
    const auto tried = [&own](const std::string& number) {
        const NumberTrial trial = TryNumber(number, own);
        std::string text = trial.International + "|" + trial.Dialable + "|";
        for (const TrialStep& step : trial.Steps)
            if (step.Decides) text += step.Rule.substr(0, 2);
        return text;
    };
    EXPECT_EQ(tried(""), "||");
    EXPECT_EQ(tried("0181 123:22"), "+44181123:22|0181123:22|4:5b");
    const std::string tooLong = "Number: at most 40 characters, and so what is made of it";
    EXPECT_EQ(tried(std::string(40, '1')), tooLong + "|" + tooLong + "|5:5b");
    EXPECT_EQ(WarningOf(locations, own, kDone),
              "Locations of file " + kPath + " without a name, which are kept as they stand: 1");
    own.IntlAccess = "";
    EXPECT_EQ(WarningOf(locations, own, kDone), "Empty, and so the beginning of every number: IntlAccess");
    own.Mode = locations.Mode = kDialTelephony;
    EXPECT_EQ(tried("1"), "The telephony service does not translate this number|The telephony service does not "
                          "translate this number|");
    EXPECT_THAT(WarningOf(locations, own, kTapiUnavailable), HasSubstr("error with TAPI initialisation"));
    server.Dialled = {{"+44(171)1234567", "9, 123-4567"}};
    const TelephonyUse use("Test");
    EXPECT_EQ(tried("1234567"), "+441711234567|9,1234567|5:Wh");
}

} // namespace
} // namespace bv
