// Dialling properties and numbers from the console: the file before, one command, what it says, the file after.
#include <gmock/gmock.h>

#include "console/command_case.h"
#include "console/text_console.h"
#include "dialling/fake_telephony.h"
#include "support/texts.h"

namespace bv::console {
namespace {

using test::Replaced;

const std::string kPath = "F:\\BRIVANE\\B-DB\\DIALLING.INI";
const std::string kHead = "[BRIVANE]\nType: DiallingProperties\nRevision: A\n\n[DIALPROPERTIES]\nLocation: London\n\n";
const std::string kLondon = "[LOCATION]\nDescription: London\nCountry: 44\nArea: 171\nNatlAccess: 0\nIntlAccess: 00\n"
                            "DialAreaCode: NO\nDialNatlAccessForLocal: NO\nDisplayNatlAccess: NO\n"
                            "NumberWithoutAreaMaxLen: 7\nDialAsLocal: 181\nDialAsLocal: 1923\n\n";
const std::string kOslo = "[LOCATION]\nDescription: Oslo\nCountry: 47\nArea: \nNatlAccess: \nIntlAccess: 00\n"
                          "DialAreaCode: NO\nDialNatlAccessForLocal: NO\nDisplayNatlAccess: NO\n"
                          "NumberWithoutAreaMaxLen: 0\n\n";
const std::string kFile = kHead + kLondon + kOslo;
const std::string kUpdated = "Updated file " + kPath + "\n";

const test::CommandCase kCases[] = {
    {"dialling show", 0,
     "Location: London\nCountry: 44\nArea: 171\nNatlAccess: 0\nIntlAccess: 00\nDialAreaCode: NO\n"
     "DialNatlAccessForLocal: NO\nDisplayNatlAccess: NO\nNumberWithoutAreaMaxLen: 7\nDialAsLocal: 181,1923\n"
     "DialAsNatl: \n",
     ""},
    {"dialling set area=20 DialAsLocal=1,22 DialAsNatl=9", 0, "", kUpdated,
     Replaced(Replaced(kFile, "171", "20"), "181\nDialAsLocal: 1923\n", "1\nDialAsLocal: 22\nDialAsNatl: 9\n")},
    {"dialling set DialAsLocal=", 0, "", kUpdated, Replaced(kFile, "DialAsLocal: 181\nDialAsLocal: 1923\n", "")},
    {"dialling set location=Oslo NumberWithoutAreaMaxLen=8", 0, "", kUpdated,
     Replaced(Replaced(kFile, "Location: London", "Location: Oslo"), "MaxLen: 0", "MaxLen: 8")},
    {"dialling set Location=Rome Country=39 IntlAccess=00 --yes", 0, "", kUpdated,
     Replaced(kFile, "Location: London", "Location: Rome") + Replaced(Replaced(kOslo, "Oslo", "Rome"), "47", "39")},
    {"dialling set Location=tapi", 0, "", kUpdated, Replaced(kHead, "London", "TAPI")},
    {"dialling set Location=TAPI Area=1", 1, "", "Area: \"1\" - the location TAPI has no keys\n"},
    {"dialling set Country=+44", 1, "", "Country: \"+44\" is not at most 10 digits\n"},
    {"dialling set DialAsNatl=1,,2", 1, "", "DialAsNatl: an empty prefix would begin every number.\n"},
    {"dialling set DialAsNatl=1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,32", 1, "",
     "DialAsNatl: there can be no more than 31 prefixes.\n"},
    {"dialling set Description=X", 1, "", "Description: \"X\" - locations have no such key\n"},
    {"dialling set Location=", 1, "", "Location: \"\" is not a name\n"},
    {"dialling set Area", 2, "", "'Area' is not of the form KEY=VALUE\n"},

    {"dialling location list --json", 0,
     "[\n  {\n    \"Location\": \"London\",\n    \"Country\": \"44\",\n    \"Area\": \"171\",\n    \"Selected\": "
     "true\n  },\n  {\n    \"Location\": \"Oslo\",\n    \"Country\": \"47\",\n    \"Area\": \"\",\n    \"Selected\": "
     "false\n  }\n]\n",
     ""},
    {"dialling location add Rome Country=39 IntlAccess=00", 0, "", kUpdated,
     kFile + Replaced(Replaced(kOslo, "Oslo", "Rome"), "47", "39")},
    {"dialling location add Oslo", 1, "", "There is a location named Oslo already.\n"},
    {"dialling location rename London Leeds", 0, "", kUpdated,
     Replaced(Replaced(kFile, "Location: London", "Location: Leeds"), "ion: London", "ion: Leeds")},
    {"dialling location rename Rome Leeds", 1, "", "There is no location Rome in file " + kPath + ".\n"},
    {"dialling location delete Oslo --yes", 0, "", kUpdated, kHead + kLondon},
    {"dialling location delete Oslo", 1, "", "--yes answers Yes)\n"},
    {"dialling location delete London", 1, "", "Location London is selected. Select another one first.\n"},

    {"number international '0181 123 4567:2'", 0, "+441811234567:2\n", ""},
    {"number dialable '+44 (171) 123-4567' --json", 0, "{\n  \"number\": \"1234567\"\n}\n", ""},
    {"number dialable 12345678901234567890123456789012345678901", 1, "",
     "NUMBER: \"12345678901234567890123456789012345678901\" has, or would have, over 40 characters\n"},
};

struct Scene {
    test::FakeTelephony Telephony;
    test::MemoryServer& Server = Telephony.Server;
    test::TextConsole Console;

    explicit Scene(const std::string& file = kFile) {
        Server.Load();
        if (!file.empty()) Server.Put(kPath, Replaced(file, "\n", "\r\n"));
    }
    std::string File() { return Replaced(Server.Get(kPath), "\r\n", "\n"); }
};

TEST(DiallingCommands, DoOneThingAndSayIt) { test::ExpectEach<Scene>(kCases, kFile); }

TEST(DiallingCommands, AFileWithoutALocationIsSaid) {
    const std::string lost = "File " + kPath + " selects no location, or one that it does not hold\n";
    const std::string away = "Unable to open file " + kPath + "\n";
    const std::tuple<std::string, std::vector<std::string>, int, std::string> cases[] = {
        {"", {"number", "dialable", "1"}, 1, away},
        {kHead, {"number", "explain", "1"}, 1, lost},
        {kHead, {"dialling", "set", "Area=1"}, 1, lost + "Location=NAME selects one, or makes a new one\n"},
        {Replaced(kFile, ": London", ": NoTelNumEdit"), {"number", "dialable", "0 1"}, 0, ""},
    };
    for (const auto& [file, arguments, status, notices] : cases) {
        Scene scene(file);
        EXPECT_EQ(scene.Console.Run(arguments), status);
        EXPECT_EQ(scene.Console.Notices, notices);
        EXPECT_EQ(scene.Console.Results, status == 0 ? "01\n" : "");
        EXPECT_EQ(scene.File(), file.empty() ? "(none)" : file);
    }
    Scene emptyPrefix(Replaced(kFile, "DialAsLocal: 181", "DialAsLocal:"));
    EXPECT_EQ(emptyPrefix.Console.Run({"dialling", "show"}), 0);
    EXPECT_THAT(emptyPrefix.Console.Results, testing::HasSubstr("DialAsLocal: ,1923\n"));
    Scene fresh("");
    EXPECT_EQ(fresh.Console.Run({"dialling", "set", "Location=Oslo", "Country=47", "IntlAccess=00"}), 1);
    EXPECT_THAT(fresh.Console.Notices,
                testing::StartsWith("There is no location Oslo in the file.\n\nMake a new one? "));
    EXPECT_EQ(fresh.File(), "(none)");
    EXPECT_EQ(fresh.Console.Run({"dialling", "set", "Location=Oslo", "Country=47", "IntlAccess=00", "--yes"}), 0);
    EXPECT_EQ(fresh.File(), Replaced(kHead, "London", "Oslo") + kOslo);
}

const std::string kTelephonyFile = Replaced(kHead, "London", "TAPI");

TEST(DiallingCommands, AskTheTelephonyWhereTheFileLeavesItToThat) {
    const std::string refused =
        "TAPI reports 'A specified address is either invalid or not allowed'\nNUMBER: \"7\" - the "
        "telephony service does not translate it\n";
    const std::string tooLong(41, '1');
    const std::tuple<std::string, int, std::string, std::string> cases[] = {
        {"number international '0181 123-4567:9'", 0, "+441811234567:9\n", ""},
        {"number dialable 1234567", 0, "1234567\n", ""},
        {"number dialable 7", 1, "", refused},
        {"number explain 1234567:8", 0,
         "international\tSeparators and suffix are taken off\t1234567\n"
         "international\t5: a local number: +, Country and Area go before\t+441711234567\n"
         "international\tThe suffix is put back\t+441711234567:8\n"
         "dialable\t1: the suffix is set aside\t1234567\n"
         "dialable\t4c: in international form, with the area code in brackets\t+44(171)1234567\n"
         "dialable\tWhat the telephony service would dial\t123-4567\n"
         "dialable\t5: separators are taken off\t1234567\n"
         "dialable\t5: the suffix is put back\t1234567:8\n",
         ""},
        {"dialling show", 0, "Location: TAPI\n", ""},
        {"dialling location telephony", 0,
         "Description: London\nCountry: 44\nArea: 171\nNatlAccess: 0\nIntlAccess: 00\nDialAreaCode: NO\n"
         "DialNatlAccessForLocal: NO\nDisplayNatlAccess: NO\nNumberWithoutAreaMaxLen: 7\nDialAsLocal: \n"
         "DialAsNatl: 555,556\n",
         ""},
    };
    for (const auto& [command, status, results, notices] : cases) {
        SCOPED_TRACE(command);
        Scene scene(kTelephonyFile);
        scene.Server.Put("F:\\BRIVANE\\B-DB\\COUNTRY.INI", "[COUNTRIES]\n44: UK, \"x\", 7\n");
        scene.Telephony.Locations = {{.LocalAccess = "9,", .TollPrefixes = "555,556"}};
        scene.Telephony.Dialled = {{"+44(171)1234567", "9, 123-4567"}, {"+33 (1) 2", "9, 00 33 1 2"}};
        EXPECT_EQ(scene.Console.Type(command), status);
        EXPECT_EQ(scene.Console.Results, results);
        EXPECT_EQ(scene.Console.Notices, notices);
        EXPECT_EQ(scene.File(), kTelephonyFile);
        const std::vector<std::string> calls = scene.Telephony.TakeCalls();
        EXPECT_EQ(calls.empty() ? "freed" : calls.back(), "freed");
        EXPECT_EQ(calls.empty(), command == "dialling show");
    }
}

TEST(DiallingCommands, FallBackToTheFileWithoutTelephony) {
    const std::string noLibrary = "Unable to load DLL 'TAPI32.DLL' (error #126)\n";
    const std::string because = "Unable to retrieve TAPI dialling properties - ";
    const std::string fallen = ". Numbers are converted by the properties of the file, which are all empty.\n";
    for (const bool hasLibrary : {false, true}) {
        Scene scene(kTelephonyFile);
        scene.Telephony.Present = hasLibrary;
        scene.Telephony.Current = 9; // there is none such
        const std::string reason =
            hasLibrary ? because + "general TAPI error" : noLibrary + because + "error with TAPI initialisation";
        EXPECT_EQ(scene.Console.Run({"number", "dialable", "0 1"}), 0);
        EXPECT_EQ(scene.Console.Results, "01\n");
        EXPECT_EQ(scene.Console.Notices, reason + fallen);
        EXPECT_EQ(scene.Console.Run({"dialling", "location", "telephony"}), 1);
        EXPECT_EQ(scene.Console.Results, "");
        EXPECT_EQ(scene.Console.Notices, reason + "\n");
    }
}

TEST(DiallingCommands, AChangeThatWasCutOffIsReadButNotTakenUp) {
    Scene scene("");
    scene.Server.Put("F:\\BRIVANE\\B-DB\\DIALLING.NEW", Replaced(kFile, "\n", "\r\n"));
    EXPECT_EQ(scene.Console.Run({"number", "dialable", "0171 2"}), 0);
    EXPECT_EQ(scene.Console.Results, "2\n");
    EXPECT_THAT(scene.Console.Notices, testing::HasSubstr("cut off"));
    EXPECT_EQ(scene.Console.Run({"--yes", "dialling", "set", "Area=20"}), 1);
    EXPECT_EQ(scene.File(), "(none)");
}

} // namespace
} // namespace bv::console
