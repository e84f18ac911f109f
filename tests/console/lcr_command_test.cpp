// Least-cost routing from the console: the rules' bytes before, one command, what it says, the bytes after.
#include <gmock/gmock.h>

#include "console/command_case.h"
#include "console/text_console.h"
#include "platform/ascii.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::console {
namespace {

using test::MemoryServer;
using test::Replaced;
using test::TextConsole;
using testing::HasSubstr;

const std::string kArea = "F:\\BRIVANE\\B-DB\\";
const std::string kLive = kArea + "LCRRules.ini";
const std::string kPending = kArea + "LCRRules.new";
const std::string kLock = "F:\\BRIVANE\\B-REQ\\LCREDIT.LOK";
const std::string kHead = "[BRIVANE]\r\nType: LCRRules\r\nRevision: A\r\n\r\n";
const std::string kOne = "[RULE]\r\nDescription: One\r\nRegion: EU\r\nUser: ANN\r\nTime: OFFPEAK\r\n; note\r\n"
                         "Server: LON\r\nServer: *\r\n\r\n";
const std::string kTwo = "[RULE]\r\nDescription: Two\r\nSize: PAGES GE 10\r\nPriority: URGENT\r\nServer: PAR\r\n\r\n";
const std::string kRules = kHead + kOne + kTwo;
const std::string kSetup = "[OPTIONS]\r\n[QUEUEMAN]\r\nOffpeak: SAT SUN AFTER 18:00 BEFORE 08:00\r\n"
                           "[ROUTER]\r\nLocalServerID: HERE, \"Here\"\r\n";

struct Scene {
    MemoryServer Server;
    TextConsole Console;

    Scene() {
        Server.Load();
        Server.Put("F:\\BRIVANE\\B-REQ\\QUEUE", "");
        Server.Put(kArea + "SETUP.INI", kSetup);
        Server.Put(kArea + "USERLIST.INI", "[USER]\r\nName: ANN\r\n[USER]\r\nName: BEN\r\n");
        Server.Put(kArea + "LINK.INI", "[LINK]\r\nRemoteServerID: LON, \"L\"\r\n[LINK]\r\nRemoteServerID: PAR\r\n");
        Server.Put(kArea + "REGION.INI", "[REGIONS]\r\nRegion: EU, \"Europe\"\r\nMatch: UK\r\n");
        Server.Put(kArea + "COUNTRY.INI", "[COUNTRIES]\r\n44: UK, \"Kingdom\", 0\r\n33: FR, \"France\", 0\r\n");
        Server.Put(kLive, kRules);
        Server.Put("F:\\good.csv", "Description,Size\r\nTwo,PAGES GE 20\r\n");
        Server.Put("F:\\bad.csv", "Description,User\r\nTwo,ZOE\r\n");
    }
    std::string File() { return Server.Get(kLive); }
};

const std::string kFirstLine = "1\tOne\tEU\t\t\tANN\t\tOFFPEAK\t\tLON,*\n";

const test::CommandCase kCases[] = {
    {"status", 0, "Enabled: NO\nReady: YES\nMissing: \nLock: free\n", ""},
    {"rules", 0, kFirstLine + "2\tTwo\t\t\t\t\tPAGES GE 10\t\tURGENT\tPAR\n", ""},
    {"show 1", 0,
     "Rule: 1\nDescription: One\nRegion: EU\nCountry: \nArea: \nUser: ANN\nSize: \nTime: OFFPEAK\nPriority: \n"
     "Server: LON,*\nOther lines: ; note\n",
     ""},
    {"show 3", 1, "", "Rule: \"3\" - there are rules 1 to 2\n"},
    {"add Three country=44,FR 'TIME=sat after 8:00 before 17:30' Server=*", 0, "", "Added rule \"Three\"\n",
     kRules + "[RULE]\r\nDescription: Three\r\nCountry: 44\r\nCountry: FR\r\nTime: SAT AFTER 08:00 BEFORE 17:30 \r\n"
              "Server: *\r\n\r\n"},
    {"add '' User=ANN Server=*", 1, "", "Description: \"\" - a rule needs a description\n"},
    {"add Three User=ANN,CARL Server=*", 1, "", "User: \"CARL\" is not defined\n"},
    {"add Three red", 2, "", "'red' is not of the form KEY=VALUE\n"},
    {"set 1 Time= User=ben Priority=background,NORMAL", 0, "", "Changed rule 1\n",
     kHead +
         Replaced(Replaced(kOne, "Time: OFFPEAK", "Priority: NORMAL\r\nPriority: BACKGROUND"), "User: ANN",
                  "User: ben") +
         kTwo},
    {"set 2 'Size=pages ge 1'", 0, "",
     "Selecting messages of one or more pages is equivalent to selecting messages of any size\nChanged rule 2\n",
     Replaced(kRules, "Size: PAGES GE 10\r\n", "")},
    {"set 2 'Size=PAGES GE 10'", 0, "", "Nothing was to be changed\n"},
    {"delete 1", 0, "", "Deleted rule 1\n", kHead + kTwo},
    {"move 1 down", 0, "", "Moved rule 1\n", kHead + kTwo + kOne},
    {"move 1 far", 1, "", "Rule: \"far\" - there are rules 1 to 2\n"},
    {"permitted OFFPEAK --at '2026-06-01 12:00'", 0,
     "At: 2026-06-01 12:00\nPermitted: 2026-06-01 18:00\nSeconds: 1780362000\n", ""},
    {"permitted MON --at '2026-02-29 12:00'", 1, "",
     "Moment: \"2026-02-29 12:00\" is not a moment of the form YYYY-MM-DD hh:mm\n"},
    {"dead", 0, "", ""},
    {"export", 0,
     "Description,Region,Country,Area,User,Size,Time,Priority,Server\r\nOne,EU,,,ANN,,OFFPEAK,,\"LON,*\"\r\n"
     "Two,,,,,PAGES GE 10,,URGENT,PAR\r\n",
     ""},
    {"import 'F:\\good.csv'", 0, "", "Added 0 rules, changed 1\n", kHead + kOne + Replaced(kTwo, "GE 10", "GE 20")},
    {"import 'F:\\bad.csv'", 1, "", "F:\\bad.csv, line 2, column 2: User: \"ZOE\" is not defined\n"},
    {"week", 0,
     [] {
         std::string week;
         for (const std::string day : {"MON", "TUE", "WED", "THU", "FRI"})
             week += day + "\t########..........######\t00:00-08:00 18:00-24:00\n";
         for (const std::string day : {"SAT", "SUN"}) week += day + "\t" + std::string(24, '#') + "\t00:00-24:00\n";
         return week;
     }(),
     ""},
    {"week 3", 1, "", "Rule: \"3\" - there are rules 1 to 2\n"},
    {"match --pages 9 --priority urgent --server par", 0,
     "1\tOne\tServer\tNO\tthe rule names other servers\n"
     "2\tTwo\tSize\tNO\tthe fax has too few pages\n"
     "No rule decides: the local server sends the fax\n",
     ""},
    {"match --destination '+44 181' --user ANN", 0,
     "1\tOne\tall\tYES\tnothing speaks against it\n"
     "Rule 1 \"One\" decides: server LON or the local server sends the fax\n",
     ""},
    {"try --destination nowhere", 1, "", "\"nowhere\" is no number and no destination.\n"},
    {"match --pending --pages 9", 1, "", "There are no unsaved changes of the rules\n"},
    {"match --pages many", 1, "", "Pages: \"many\" is not a number from 0 to 65535\n"},
};

TEST(LcrCommand, DoesWhatItSays) { test::ExpectEach<Scene>(kCases, kRules, "lcr "); }

TEST(LcrCommand, EditsOnlyWithTheLock) {
    Scene scene;
    scene.Server.Put(kLock, "");
    {
        const auto other = scene.Server.Files.Open(kLock, {});
        EXPECT_EQ(scene.Console.Run({"lcr", "delete", "1"}), 1);
        EXPECT_EQ(scene.Console.Notices, "LCR settings are being edited by another user.  Please try again later\n");
        EXPECT_EQ(scene.Server.Clock.Milliseconds, 5000);
        EXPECT_EQ(scene.Server.Get(kLive), kRules);
        EXPECT_EQ(scene.Console.Run({"lcr", "rules"}), 0);
    }
    EXPECT_EQ(scene.Console.Run({"lcr", "delete", "1"}), 0);
    EXPECT_TRUE(scene.Server.Files.Open(kLock, {}).Opened);
}

TEST(LcrCommand, LosesNoPendingChanges) {
    Scene scene;
    scene.Server.Put(kPending, kHead + kTwo);
    EXPECT_EQ(scene.Console.Run({"--yes", "lcr", "move", "1", "down"}), 1);
    EXPECT_EQ(scene.Console.Notices,
              "There are unsaved changes of an earlier session in file " + kPending +
                  ": 'bvctl lcr recover' takes them up, 'bvctl lcr recover --drop' drops them\n");
    EXPECT_EQ(scene.Server.Get(kPending), kHead + kTwo);
    EXPECT_EQ(scene.Console.Run({"lcr", "rules"}), 0);
    EXPECT_THAT(scene.Console.Results, HasSubstr(kFirstLine));
    EXPECT_THAT(scene.Console.Notices, HasSubstr("There are unsaved changes of an earlier session"));
    scene.Server.Files.Delete(kLive);
    EXPECT_EQ(scene.Console.Run({"lcr", "rules"}), 0);
    EXPECT_THAT(scene.Console.Results, HasSubstr("1\tTwo"));
    EXPECT_THAT(scene.Console.Notices, HasSubstr("a save of it was cut off"));
    EXPECT_EQ(scene.Console.Run({"lcr", "set", "1", "User=ANN", "--yes"}), 1);
    EXPECT_EQ(scene.Server.Get(kLive), "(none)");

    for (const bool drops : {true, false}) {
        scene.Server.Put(kLive, kRules);
        scene.Server.Put(kPending, kHead + kTwo);
        EXPECT_EQ(scene.Console.Run({"lcr", "recover", drops ? "--drop" : "--yes"}), 0);
        EXPECT_EQ(scene.Server.Get(kLive), drops ? kRules : kHead + kTwo);
        EXPECT_EQ(scene.Server.Get(kArea + "LCRRules.old"), drops ? "(none)" : kRules);
        EXPECT_EQ(scene.Server.Get(kPending), "(none)");
    }
    EXPECT_EQ(scene.Console.Run({"lcr", "recover"}), 1);
    EXPECT_THAT(scene.Console.Notices, HasSubstr("does not hold a whole text"));
}

// ANN, EU and PAR are gone: what each verb would take out of which rule, and what it says of it.
TEST(LcrCommand, TakesNothingOutOfTheRulesUnasked) {
    const std::string ann =
        "Rule 1 \"One\": User \"ANN\" is no longer defined.  The rule then takes the faxes of every "
        "user.";
    const std::string region =
        "Rule 1 \"One\": Region \"EU\" is no longer defined.  The rule then takes faxes to every "
        "destination.";
    const std::string server =
        "Rule 2 \"Two\": Server \"PAR\" is no longer defined.  No server may send by the rule then.";
    const std::string question = "\nRemove these names from the rules? [y/N] No (nobody to ask; --yes answers Yes)\n";
    const std::string bare = Replaced(Replaced(kOne, "User: ANN\r\n", ""), "Region: EU\r\n", "");
    const std::string barred = Replaced(kTwo, "Server: PAR\r\n", "");
    const std::string both = region + "\n" + ann + "\n" + server;
    const std::string onlyTwo = Replaced(server, "Rule 2", "Rule 1");
    const test::CommandCase cases[] = {
        {"match --user BEN", 0, "", "References that are no longer defined are left out of the rules\n"},
        {"move 2 1", 1, "",
         onlyTwo + "\n" + Replaced(region, "Rule 1", "Rule 2") + "\n" + Replaced(ann, "Rule 1", "Rule 2") + question},
        {"add Three User=BEN Server=*", 1, "", both + question},
        {"set 2 Size=", 1, "", both + question},
        {"set 2 'Size=PAGES GE 10'", 0, "", "Nothing was to be changed\n"}, // nothing changes
        {"delete 1", 1, "", onlyTwo + question},
        {"delete 1 --drop-lost", 0, "", onlyTwo + "\nDeleted rule 1\n", kHead + barred},
        {"delete 2 --yes", 0, "", region + "\n" + ann + "\nDeleted rule 2\n", kHead + bare},
        {"set 1 User=BEN Region= --drop-lost", 0, "", server + "\nChanged rule 1\n",
         kHead + Replaced(bare, "Time:", "User: BEN\r\nTime:") + barred},
    };
    for (const auto& row : cases) {
        Scene scene;
        scene.Server.Put(kArea + "USERLIST.INI", "[USER]\r\nName: BEN\r\n");
        scene.Server.Put(kArea + "REGION.INI", "[REGIONS]\r\n");
        scene.Server.Put(kArea + "LINK.INI", "[LINK]\r\nRemoteServerID: LON, \"L\"\r\n");
        SCOPED_TRACE(row.Command);
        EXPECT_EQ(scene.Console.Type("lcr " + row.Command), row.Status);
        EXPECT_EQ(scene.Console.Notices, row.Notices);
        EXPECT_EQ(scene.Server.Get(kLive), row.After == "(=)" ? kRules : row.After);
    }
}

// A list of names that is there and cannot be read says nothing of what is defined.
TEST(LcrCommand, EndsWithoutItsLists) {
    for (const std::string list : {"USERLIST.INI", "LINK.INI", "REGION.INI", "COUNTRY.INI"}) {
        Scene scene;
        scene.Server.Files.Delete(kArea + list);
        scene.Server.Files.MakeDirectory(kArea + list);
        EXPECT_EQ(scene.Console.Run({"lcr", "move", "1", "down", "--yes"}), 1) << list;
        EXPECT_THAT(UpperText(scene.Console.Notices), HasSubstr(list));
        EXPECT_EQ(scene.Server.Get(kLive), kRules);
    }
}

TEST(LcrCommand, ChangesARuleWithoutADescription) {
    Scene scene;
    scene.Server.Put(kLive, "[RULE]\r\nServer: LON\r\nUser: ANN\r\n");
    EXPECT_EQ(scene.Console.Run({"lcr", "set", "1", "User=ben"}), 0) << scene.Console.Notices;
    EXPECT_EQ(scene.Server.Get(kLive),
              kHead + "[RULE]\r\nDescription: (no description)\r\nUser: ben\r\nServer: LON\r\n\r\n");
}

TEST(LcrCommand, SwitchesRoutingOnWhenItIsReady) {
    Scene scene;
    scene.Server.Files.Delete(kLive);
    EXPECT_EQ(scene.Console.Run({"lcr", "status"}), 0);
    EXPECT_EQ(scene.Console.Results, "Enabled: NO\nReady: YES\nMissing: rules\nLock: free\n");
    EXPECT_EQ(scene.Console.Run({"lcr", "enable"}), 0);
    EXPECT_THAT(scene.Server.Get(kArea + "SETUP.INI"), HasSubstr("LCR: YES"));
    EXPECT_EQ(scene.Console.Run({"lcr", "disable"}), 0);
    scene.Server.Files.Delete(kArea + "LINK.INI");
    EXPECT_EQ(scene.Console.Run({"lcr", "enable"}), 1);
    EXPECT_EQ(scene.Console.Notices, "You must set up some links to remote servers before LCR can be enabled\n");
    EXPECT_EQ(scene.Console.Run({"lcr", "status"}), 0);
    EXPECT_EQ(scene.Console.Results, "Enabled: NO\nReady: NO\nMissing: links\nLock: free\n");
}

TEST(LcrCommand, NeedsTheOffpeakPeriodForTimesAlone) {
    Scene scene;
    scene.Server.Put(kArea + "SETUP.INI", "[OPTIONS]\r\n[QUEUEMAN]\r\nOffpeak: \r\n");
    EXPECT_EQ(scene.Console.Run({"lcr", "match", "--at", "2026-06-06 12:00"}), 1);
    EXPECT_EQ(scene.Console.Notices,
              "Unable to determine system Offpeak time.  Rule filtering will not be available\n");
    EXPECT_EQ(scene.Console.Run({"lcr", "match", "--pages", "9"}), 0);
}

// What a kill in a save of SETUP.INI has left is not put in place on the way to something else.
TEST(LcrCommand, LeavesTheNewSettingsToTheirOwnVerb) {
    Scene scene;
    scene.Server.Files.Rename(kArea + "SETUP.INI", kArea + "Setup.new");
    EXPECT_EQ(scene.Console.Run({"--yes", "lcr", "rules"}), 1);
    EXPECT_EQ(scene.Server.Get(kArea + "Setup.new"), kSetup);
}

} // namespace
} // namespace bv::console
