// Destinations, links and the router's settings from the console: files before, one command, what it says, files after.
#include <map>

#include <gmock/gmock.h>

#include "console/command_case.h"
#include "console/text_console.h"
#include "ctlfile/scramble.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::console {
namespace {

using test::Replaced;
using test::TextConsole;

const std::string kBase = "F:\\BRIVANE\\B-DB\\";
const std::string kLock = "LCR settings are being edited by another user.  Please try again later\n";

const std::map<std::string, std::string> kBefore = {
    {"Country.ini",
     "[COUNTRIES]\n44: UK, \"Kingdom\", 0\n33: FR, \"\", x\n41: CH, \"\"\n\n[SYNONYMS]\n; none\n\"New Britain\": 44\n"
     "A: B\nB: a\nUK: FR\nno\nC:\n[X]\nD: UK\n"},
    {"Region.ini", "[REGIONS]\nRegion: EUROPE, \"All\"\nMatch: UK\nRegion: ASIA, \"\"\n"},
    {"Area44.ini", "[AREAS]\nArea: LON, \"London\"\nMatch: 171*\n"},
    {"Setup.ini", "[ROUTER]\nLocalServerID: HERE, \"\"\nEmailLoginParams: sekrit\nWanInboxDirectory: X\n"
                  "WanInboxPollFreq: 00:05\n"},
    {"Link.ini", "[BRIVANE]\nType: LinkDatabase\nRevision: A\n\n[LINK]\nRemoteServerID: A, \"Far\"\nLinkType: WAN\n"
                 "RemoteServerAddress: there\nBrivaneAccountName: U\nLinkPassword: pw\n"
                 "MaxOutboundPriority: URGENT\nMaxInboundPriority: URGENT\nRejectHigherPriorityMsg: NO\n"
                 "LocalLinkStatus: UP\n\n"},
};

struct Case {
    std::string Command;
    int Status;
    std::string Results;
    std::string Notices; // how they end
    std::string File = "Country.ini";
    std::string After = ""; // empty: as before
};

const Case kCases[] = {
    {"destination country list", 0, "UK\tKingdom\t44\t0\nFR\t\t33\tx\nCH\t\t41\t\n", ""},
    {"destination country add US DiallingCode=1 Description=States", 0, "", "Added country US\n", "Country.ini",
     Replaced(kBefore.at("Country.ini"), "\"\"\n\n", "\"\"\n1: US, \"States\", 0\n\n")},
    {"destination country set fr Identifier=F --yes", 0, "", "Modified country F\n", "Country.ini",
     Replaced(Replaced(kBefore.at("Country.ini"), "33: FR, \"\", x\n", ""), "\"\"\n\n", "\"\"\n33: F, \"\", x\n\n")},
    {"destination country set UK DiallingCode=45", 1, "",
     "DiallingCode: \"45\" - the areas of country UK are kept under 44; delete them first\n"},
    {"destination country set CH LastField=0", 0, "", "Modified country CH\n", "Country.ini",
     Replaced(kBefore.at("Country.ini"), "CH, \"\"", "CH, \"\", 0")},
    {"destination country add '' DiallingCode=1", 1, "",
     "Identifier: \"\" is not a name of 1 to 29 characters without blanks, commas, quotes, / and ;\n"},
    {"destination country add uk DiallingCode=1", 1, "",
     "Identifier: \"uk\" - there is a country of that name already\n"},
    {"destination country add X DiallingCode=044", 1, "",
     "DiallingCode: \"044\" is not a dialling code of 1 to 19 digits that does not begin with 0\n"},
    {"destination country delete X", 1, "", "There is no country X\n"},
    {"destination region add EU 'Matches=UK/LON 33' --yes", 0, "", "Added region EU\n", "Region.ini",
     "[REGIONS]\nRegion: EU, \"\"\nMatch: UK/LON\nMatch: 33\nRegion: ASIA, \"\"\n"}, // by its beginning
    {"destination region set ASIA Matches=JP", 1, "", "Matches: \"JP\" is not a country or an area that is there\n",
     "Region.ini"},
    {"destination region delete europe", 0, "", "Deleted region europe\n", "Region.ini",
     "[REGIONS]\nRegion: ASIA, \"\"\n"},
    {"destination area list 44", 0, "LON\tLondon\t171*\n", "", "Area44.ini"},
    {"destination area set uk lon Matches=181", 0, "", "Modified area LON\n", "Area44.ini",
     "[AREAS]\nArea: LON, \"London\"\nMatch: 181\n"},
    {"destination area add FR PAR Matches=1*", 0, "", "Added area PAR\n", "Area33.ini",
     "[BRIVANE]\nType: Area\nRevision: A\n\n[AREAS]\nArea: PAR, \"\"\nMatch: 1*\n"},
    {"destination area add UK X Matches=1x", 1, "", "Matches: \"1x\" is not a number, or the beginning of one and *\n"},
    {"destination area list DE", 1, "", "There is no country DE\n"},
    {"destination contains EUROPE 44/LON", 0, "YES\n", ""},
    {"destination contains NOPE FR", 1, "", "There is no region NOPE\n"},
    {"destination name uk/lon", 0, "London, Kingdom\n", ""},
    {"destination synonym list", 0,
     "New Britain\t44\tNew Britain, see Kingdom\nA\tB\tA, see B\nB\ta\tB, see a\nUK\tFR\tUK, see FR\n", ""},
    {"destination synonym add 'G B' uk/LON", 0, "", "Added other name G B\n", "Country.ini",
     Replaced(kBefore.at("Country.ini"), "C:\n", "C:\nG B: uk/LON\n")},
    {"destination synonym set 'new britain' FR", 0, "", "Modified other name New Britain\n", "Country.ini",
     Replaced(kBefore.at("Country.ini"), "\"New Britain\": 44", "New Britain: FR")},
    {"destination synonym delete a", 0, "", "Deleted other name a\n", "Country.ini",
     Replaced(kBefore.at("Country.ini"), "A: B\n", "")},
    {"destination synonym delete X", 1, "", "There is no other name X\n"},
    {"destination name 'new britain'", 0, "New Britain, see Kingdom\n", ""},
    {"destination name D", 1, "", "There is no destination D\n"},
    {"destination convert uk/lon", 0, "44/LON\n", ""},
    {"destination find '+44 171 1'", 0, "Number: +441711\nCountry: UK\nAreas: UK/LON (171*)\nRegions: EUROPE\n", ""},
    {"destination find +81", 1, "", "Number +81 begins with no dialling code of a country that is there\n"},
    {"destination export", 0,
     "Kind,Country,Identifier,Description,DiallingCode,LastField,Matches\r\ncountry,,UK,Kingdom,44,0,\r\n"
     "area,UK,LON,London,,,171*\r\ncountry,,FR,,33,x,\r\ncountry,,CH,,41,,\r\nregion,,EUROPE,All,,,UK\r\n"
     "region,,ASIA,,,,\r\n",
     ""},
    {"destination import 'F:\\good.csv'", 0, "", "Added 1 destination, changed 0\n", "Area33.ini",
     "[BRIVANE]\nType: Area\nRevision: A\n\n[AREAS]\nArea: PAR, \"\"\nMatch: 1*\n"},
    {"destination import 'F:\\bad.csv'", 1, "",
     "F:\\bad.csv, line 2, column 1: Kind: \"sea\" is not country, area or region\n"},
    {"destination convert 44", 0, "UK\n", ""},

    {"link list", 0, "A\tFar\tWAN\tthere\n", "", "Link.ini"},
    {"link show a", 0,
     "RemoteServerID: A\nDescription: Far\nLinkType: WAN\nRemoteServerAddress: there\nBrivaneAccountName: U\n"
     "LinkPassword: ********\nReceiveEnabled: \nSendEnabled: \nLinkDelay: \nLocalWatchdogFreq: \n"
     "MaxOutboundPriority: URGENT\nMaxInboundPriority: URGENT\nRejectHigherPriorityMsg: NO\n",
     "", "Link.ini"},
    {"link set A LinkDelay=2:5 Description=", 0, "", "Modified link A\n", "Link.ini",
     Replaced(Replaced(kBefore.at("Link.ini"), "Far", "A"), "pw\n", "pw\nLinkDelay: 02: 5\n")},
    {"link set A RemoteServerID=B --yes", 0, "", "Modified link B\n", "Link.ini",
     Replaced(Replaced(kBefore.at("Link.ini"), ": A, ", ": B, "), "LocalLinkStatus: UP\n",
              "RemoteLinkRunNumber: 0.0\nLocalLinkRunNumber: 0.0\nLocalLinkStatus: LINKSHUTDOWN\n"
              "ConnectionStatus: ON\n")},
    {"link set A LinkDelay=soon", 1, "", "LinkDelay: \"soon\" is not a time such as 01:30\n", "Link.ini"},
    {"link delete a", 0, "", "Deleted link A\n", "Link.ini", "[BRIVANE]\nType: LinkDatabase\nRevision: A\n\n"},

    {"router set WanInboxPollFreq=00:00", 1, "", "WanInboxPollFreq: All intervals must be between 00:01 and 23:59\n",
     "Setup.ini"},
    {"router set EmailLoginParams=x", 1, "", "EmailLoginParams: \"********\" is not kept beside the other values\n",
     "Setup.ini"},
    {"router set LocalServerID=THERE", 0, "", "", "Setup.ini",
     "[ROUTER]\nLocalServerID: THERE, \"\"\nWanInboxDirectory: X\nWanInboxPollFreq: 00:05\n"},
};

struct Scene : test::MemoryServer {
    TextConsole Console;
    Scene() {
        Load();
        Put("F:\\BRIVANE\\B-REQ\\QUEUE", "");
        for (const auto& [name, text] : kBefore) PutFile(name, text);
        Put("F:\\good.csv", "Kind,Country,Identifier,Matches\r\narea,FR,PAR,1*\r\n");
        Put("F:\\bad.csv", "Kind,Identifier\r\nsea,MED\r\n");
    }
    void PutFile(const std::string& name, const std::string& text) { Put(kBase + name, Replaced(text, "\n", "\r\n")); }
    std::string GetFile(const std::string& name) { return Replaced(Get(kBase + name), "\r\n", "\n"); }
};

std::string Before(const std::string& name) { return kBefore.contains(name) ? kBefore.at(name) : "(none)"; }

TEST(DestinationCommands, DoOneThingAndSayIt) {
    for (const Case& one : kCases) {
        SCOPED_TRACE(one.Command);
        Scene scene;
        EXPECT_EQ(scene.Console.Type(one.Command), one.Status);
        EXPECT_EQ(scene.Console.Results, one.Results);
        EXPECT_THAT(scene.Console.Notices, testing::EndsWith(one.Notices));
        EXPECT_EQ(scene.GetFile(one.File), one.After.empty() ? Before(one.File) : one.After);
        EXPECT_THAT(scene.Files.List(kBase, "*.ne?"), testing::IsEmpty());
        Scene rehearsal;
        const int status = rehearsal.Console.Type(one.Command + " --dry-run");
        EXPECT_EQ(rehearsal.GetFile(one.File), Before(one.File));
        if (one.After.empty() && test::IsRefused(rehearsal.Console.Notices)) continue;
        EXPECT_EQ(status, one.Status);
    }
}

// What is asked before a name goes that others use, or another one with it; nobody says Yes.
TEST(DestinationCommands, AskBeforeWhatOthersUse) {
    const std::string rules = "[RULE]\nDescription: One\nArea: 44/LON\nServer: A\n\n[RULE]\nDescription: Two\n"
                              "Country: FR\nRegion: ASIA\nServer: A\nServer: HERE\n";
    const std::string goOn = "\n\nGo on? ";
    const std::string one = "\nLCRRULES.INI: rule 1 \"One\"";
    const std::string widened = one + ", which then takes more faxes";
    const std::string two = "\nLCRRULES.INI: rule 2 \"Two\"";
    const std::pair<std::string, std::string> cases[] = {
        {"destination country delete UK",
         "UK is used in:" + widened + "\nREGION.INI: region EUROPE\nCOUNTRY.INI: synonym New Britain" + goOn},
        {"destination country set fr Identifier=F", "FR is used in:" + two + "\nCOUNTRY.INI: synonym UK" + goOn},
        {"destination area delete UK lon", "lon is used in:" + widened + goOn},
        {"destination area set UK lon Identifier=L", "LON is used in:" + widened + goOn},
        {"destination region delete ASIA", "ASIA is used in:" + two + goOn},
        {"destination region add EU", "EU takes the place of EUROPE, which begins with the same name.\n\nReplace it? "},
        {"link delete a", "A is used in:" + one + two + goOn},
        {"link set A RemoteServerID=B", "A is used in:" + one + two + goOn},
    };
    for (const auto& [command, question] : cases) {
        Scene scene;
        scene.PutFile("LCRRules.ini", rules);
        EXPECT_EQ(scene.Console.Type(command), 1);
        EXPECT_EQ(scene.Console.Notices, question + "[y/N] No (nobody to ask; --yes answers Yes)\n");
        for (const auto& [name, text] : kBefore) EXPECT_EQ(scene.GetFile(name), text);
        EXPECT_THAT(scene.Files.List(kBase, "*.ne?"), testing::IsEmpty());
    }
}

TEST(DestinationCommands, TakePasswordsAsTheyAreStored) {
    const Scene clock; // that stands still, so that the scrambled text is always the same
    const std::string scrambled = *ScrambleForPage("hush");
    const std::string set = "router set EmailLoginName=fax EmailInboxPollFreq=00:05 ";
    const std::tuple<std::string, const char*, int, std::string> cases[] = {
        {set + "EmailLoginParams=********", "Setup.ini", 0, "EmailLoginParams: sekrit\n"},
        {set + "--password-stdin", "Setup.ini", 0, "EmailLoginParams: " + scrambled + "\n"},
        {"link set A LinkPassword=********", "Link.ini", 0, "LinkPassword: pw\n"},
        {"link set A --password-stdin", "Link.ini", 0, "LinkPassword: hush\n"},
        {"link add B LinkPassword=********", "Link.ini", 1, kBefore.at("Link.ini")},
        {"link set A 'LinkPassword=x '", "Link.ini", 1, "LinkPassword: pw\n"},
    };
    for (const auto& [command, file, status, line] : cases) {
        SCOPED_TRACE(command);
        Scene scene;
        scene.Console.Input = {"hush"};
        EXPECT_EQ(scene.Console.Type(command), status);
        EXPECT_THAT(scene.Console.Notices, testing::Not(testing::HasSubstr("x ")));
        EXPECT_THAT(scene.GetFile(file), testing::HasSubstr(line));
    }
}

TEST(DestinationCommands, HideWhatIsSecretAndTakeTheLock) {
    Scene scene;
    EXPECT_EQ(scene.Console.Run({"router", "show"}), 0);
    EXPECT_THAT(scene.Console.Results, testing::HasSubstr("EmailLoginParams: ********\n"));
    EXPECT_EQ(scene.Console.Run({"router", "show", "--reveal"}), 0);
    EXPECT_THAT(scene.Console.Results, testing::HasSubstr("EmailLoginParams: sekrit\n"));
    EXPECT_EQ(scene.Console.Run({"link", "show", "A", "--reveal", "--json"}), 0);
    EXPECT_THAT(scene.Console.Results, testing::HasSubstr("\"LinkPassword\": \"pw\""));

    scene.Put("F:\\BRIVANE\\B-REQ\\LCREDIT.LOK", "");
    const auto held = scene.Files.Open("F:\\BRIVANE\\B-REQ\\LCREDIT.LOK",
                                       {platform::Access::Read, platform::Deny::ReadingAndWriting});
    const std::vector<std::string> edits[] = {{"destination", "country", "delete", "UK"},
                                              {"destination", "region", "add", "X"},
                                              {"destination", "area", "set", "UK", "LON", "Matches=1"},
                                              {"link", "delete", "A"},
                                              {"router", "set", "LocalServerID=B"}};
    for (const auto& edit : edits) {
        EXPECT_EQ(scene.Console.Run(edit), 1);
        EXPECT_THAT(scene.Console.Notices, testing::EndsWith(kLock));
    }
    for (const auto& [name, text] : kBefore) EXPECT_EQ(scene.GetFile(name), text);
}

TEST(DestinationCommands, TakeTheAreasOfACodeThatIsAlsoAName) {
    Scene scene;
    scene.PutFile("Country.ini", "[COUNTRIES]\n7: 44, \"\", 0\n44: UK, \"\", 0\n");
    EXPECT_EQ(scene.Console.Run({"destination", "area", "list", "UK"}), 0);
    EXPECT_EQ(scene.Console.Results, "LON\tLondon\t171*\n");
}

TEST(DestinationCommands, EditNoLinksBeforeTheGeneralSettings) {
    Scene scene;
    scene.PutFile("Setup.ini", "[OPTIONS]\n");
    EXPECT_EQ(scene.Console.Run({"link", "delete", "A"}), 1);
    EXPECT_THAT(scene.Console.Notices,
                testing::EndsWith("Unable to load general settings.  Please configure LCR 'General Settings' before "
                                  "proceeding\n"));
    EXPECT_EQ(scene.Console.Run({"router", "show"}), 1);
    EXPECT_EQ(scene.GetFile("Link.ini"), kBefore.at("Link.ini"));
}

} // namespace
} // namespace bv::console
