// Users and groups from the console: the list's bytes before, one command, what it says, the bytes after.
#include <gmock/gmock.h>

#include <csignal>
#include <set>
#include <sstream>

#include "console/command_case.h"
#include "console/text_console.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::console {
namespace {

using test::MemoryServer;
using test::Replaced;
using test::TextConsole;
using testing::HasSubstr;
using testing::StartsWith;

const std::string kPath = "F:\\BRIVANE\\B-DB\\USERLIST.INI";
const std::string kHead = "[BRIVANE]\r\nType: UserList\r\n\r\n";
const std::string kDefault = "[USER]\r\nName: (default)\r\nFullname: Def\r\nUrgent: NO\r\nCostCentre: 7\r\n\r\n";
const std::string kAnn = "[USER]\r\nName: ANN\r\nFullname: Ann, \"A\"\r\nGroup: @S\r\nUsername: ann\r\nNetware: ann\r\n"
                         "LanManager: ann\r\nSendTime: AFTER 09:00 BEFORE 17:30  MON\r\n; hers\r\n\r\n";
const std::string kCarl = "[USER]\r\nName: CARL\r\nFullname: \r\nUsername: \r\nNetware: \r\nLanManager: \r\n\r\n";
const std::string kGroups = "[GROUP]\r\nName: @S\r\nFullname: Sales\r\n";
const std::string kList = kHead + kDefault + kAnn + kCarl + kGroups;

struct Scene {
    MemoryServer Server;
    TextConsole Console;

    Scene() {
        Server.Put("C:\\WINDOWS\\BRIVANE.INI", "[SERVER]\r\nAllUserArea: F:\\BRIVANE\\USERS\r\nRequestArea: F:\\R\r\n"
                                               "ServerArea: F:\\BRIVANE\\SERVER\r\nSystemArea: F:\\BRIVANE\r\n");
        Server.Put("F:\\BRIVANE\\B-DB\\SETUP.INI", "[OPTIONS]\r\n");
        Server.Put("F:\\BRIVANE\\B-DB\\USER.INI", "[OPTIONS]\r\n");
        Server.Put(kPath, kList);
    }
    std::string File() { return Server.Get(kPath); }
    bool HasDirectory(const std::string& name) {
        return Server.Files.Find("F:\\BRIVANE\\USERS\\" + name + "\\B-IN").has_value();
    }
};

const test::CommandCase kCases[] = {
    {"user list", 0, "ANN\tAnn, \"A\"\t@S\nCARL\t\t\n", ""},
    {"user list --group @s", 0, "ANN\tAnn, \"A\"\t@S\n", ""},
    {"user list --group @X", 1, "", "Brivane usergroup @X not found\n"},
    {"user list --find aRL", 0, "CARL\t\t\n", ""},
    {"group list --json", 0, "[\n  {\n    \"Name\": \"@S\",\n    \"Fullname\": \"Sales\"\n  }\n]\n", ""},
    {"user show BEN", 1, "", "Brivane user BEN not found\n"},
    // a new user begins with what the default user has
    {"user add BEN 'Fullname=Ben B' group=@s Admin=yes", 0, "", "Added user BEN\n",
     Replaced(kList, kCarl,
              "[USER]\r\nName: BEN\r\nFullname: Ben B\r\nGroup: @s\r\nUsername: \r\nNetware: \r\nLanManager: \r\n"
              "Urgent: NO\r\nAdmin: YES\r\nCostCentre: 7\r\n\r\n\r\n" +
                  kCarl)},
    {"group add @T Fullname=T", 0, "", "Added user group @T\n",
     kList + "\r\n[GROUP]\r\nName: @T\r\nFullname: T\r\nPrintRecdOptions: \r\n"},
    {"user set carl 'Dial=local national3' 'SendTime=after 8:00 fri'", 0, "", "Modified user CARL\n",
     Replaced(kList, kCarl,
              Replaced(kCarl, "LanManager: \r\n",
                       "LanManager: \r\nDial: Local National3\r\nSendTime: AFTER 08:00  FRI\r\n"))},
    {"user set ANN SendTime=", 0, "", "Modified user ANN\n",
     Replaced(kList, "SendTime: AFTER 09:00 BEFORE 17:30  MON\r\n", "")},
    {"user set ANN 'Fullname=Ann, \"A\"' GROUP=@S", 0, "", ""}, // as it was
    {"user delete ann --yes", 0, "", "Deleting directory structure for user ANN\n", Replaced(kList, kAnn, "")},
    {"user delete ann", 1, "", "No (nobody to ask; --yes answers Yes)\n"},
    {"user delete ann Carl --leave", 0, "", "Deleted 2 users\n", kHead + kDefault + kGroups},
    {"user delete ann --leave --take-out", 2, "", "Only one of --take-out, --replace-by and --leave can be given\n"},
    {"group delete @s --take-out", 0, "", "Deleting directory structure for user @S\n",
     Replaced(Replaced(kList, "Group: @S\r\n", ""), kGroups, "")},
    {"where-used group @s", 0, "USERLIST.INI\tuser ANN, Group: @S\tis emptied\n", ""},
    {"where-used printer PRINT-1", 0, "", "printer PRINT-1 is used nowhere\n"},
    {"where-used user CARL", 0, "", "user CARL is used nowhere\n"},
    {"user clone ann DORA Fullname=D --quiet", 0, "", "",
     kList + "\r\n[USER]\r\nName: DORA\r\nFullname: D\r\nGroup: @S\r\nUsername: \r\nNetware: \r\nLanManager: \r\n"
             "SendTime: AFTER 09:00 BEFORE 17:30  MON\r\nCostCentre: 7\r\n\r\n"},
    {"user set ann,CARL Urgent=NO", 0, "", "Users changed: 2\n",
     Replaced(Replaced(kList, "SendTime: ", "Urgent: NO\r\nSendTime: "), kCarl,
              Replaced(kCarl, "LanManager: \r\n", "LanManager: \r\nUrgent: NO\r\n"))},
    {"user set CARL,ann Group=@X", 1, "", "Group: \"@X\" - there is no user group of that name.\n"},
    // refused, with key and value
    {"user add ann", 1, "", "Name: \"ann\" - there is a user or user group of that name already.\n"},
    {"user add BEN Group=@X", 1, "", "Group: \"@X\" - there is no user group of that name.\n"},
    {"user set ANN Group=@X", 1, "", "Group: \"@X\" - there is no user group of that name.\n"},
    {"user set ANN Colour=red", 1, "", "Colour: \"red\" - users have no such key\n"},
    {"group set @S Dial=Local", 1, "", "Dial: \"Local\" - groups have no such key\n"},
    {"group set @S PrintRecdSquash=VERTICAL", 1, "", "PrintRecdSquash: \"VERTICAL\" is not NO or YES\n"},
    {"user set CARL MailName=c@x", 1, "",
     "MailName: \"c@x\" is not kept with the other values; \"\" would come back\n"},
    {"user set ANN Netware=", 1, "", "Netware: \"\" is not kept with the other values; \"ann\" would come back\n"},
    {"user add BEN Netware=joe LanManager=", 1, "",
     "LanManager: \"\" is not kept with the other values; \"joe\" would come back\n"},
    {"user set ANN 'Fullname=Ann '", 1, "", "Fullname: \"Ann \" ends with a blank\n"},
    {"user set CARL Netware=c", 0, "",
     "This changes with it: Username: \"\" to \"c\"\nThis changes with it: LanManager: \"\" to \"c\"\n"
     "Modified user CARL\n",
     Replaced(kList, kCarl, Replaced(kCarl, "Netware: \r\n", "Netware: c\r\n"))},
    {"user set ANN Admin", 2, "", "'Admin' is not of the form KEY=VALUE\n"},
    {"user set ANN Admin=YES admin=NO", 2, "", "admin is given twice\n"},
};

TEST(UserCommand, DoesOneThingAndSaysIt) {
    test::ExpectEach<Scene>(kCases, kList);
    Scene rehearsal;
    EXPECT_EQ(rehearsal.Console.Type("user add BEN --dry-run"), 0);
    EXPECT_FALSE(rehearsal.HasDirectory("BEN"));
    rehearsal.Server.Put("F:\\BRIVANE\\B-DB\\SETUP.INI", "[OPTIONS]\r\nUserGroupIdentifier: g\r\n");
    EXPECT_EQ(rehearsal.Console.Type("user add guy"), 1) << "the server's own mark of groups";
}

TEST(UserCommand, SetsARecordToWhatItReadsAs) {
    const std::string everyDay = "AFTER 18:00  MON TUE WED THU FRI SAT SUN";
    const std::string names = "Username: \r\nNetware: \r\nLanManager: \r\n";
    const struct {
        std::string Lines;
        std::string Value;
        std::string After;
        std::string Notice;
    } rows[] = {
        {"Urgent: maybe\r\nDial: Local\r\nOwn: 1\r\n", "Urgent=YES", names + "Own: 1\r\n", "Modified user ODD\n"},
        {"PrintSentSquash: maybe\r\n", "PrintSentSquash=NO", names, "Modified user ODD\n"},
        {"Urgent: maybe\r\n", "Admin=NO", "Urgent: maybe\r\n", ""},
        {"Admin: yes\r\n", "Admin=YES", "Admin: yes\r\n", ""},
        {"SendTime: " + everyDay + "\r\n", "SendTime=" + everyDay, "SendTime: " + everyDay + "\r\n", ""},
        {"GroupAdmin: maybe\r\n", "Dial=Local", "GroupAdmin: maybe\r\n",
         "Dial: \"Local\" does not count beside the line \"GroupAdmin: maybe\", which lifts every limit\n"},
    };
    for (const auto& [lines, value, after, notice] : rows) {
        SCOPED_TRACE(lines + value);
        const std::string head = "[USER]\r\nName: ODD\r\nFullname: \r\n";
        Scene scene;
        scene.Server.Put(kPath, head + lines);
        EXPECT_EQ(scene.Console.Run({"user", "set", "ODD", value}), lines.starts_with("GroupAdmin") ? 1 : 0);
        EXPECT_EQ(scene.Console.Notices, notice);
        EXPECT_EQ(scene.File(), head + after);
    }
}

// A line of the default user that no row of the table has goes on with new users, and counts.
TEST(UserCommand, ALimitThatTheDefaultUserLiftsIsSaid) {
    Scene scene;
    const std::string list = Replaced(kList, "CostCentre: 7", "GroupAdmin: perhaps");
    scene.Server.Put(kPath, list);
    EXPECT_EQ(scene.Console.Run({"user", "add", "BEN", "Dial=Local"}), 1);
    EXPECT_THAT(scene.Console.Notices,
                testing::EndsWith("Dial: \"Local\" does not count beside the line \"GroupAdmin: perhaps\", which lifts "
                                  "every limit\n"));
    scene.Server.Put("F:\\U.CSV", "Name,Admin,Dial\nBEN,NO,Local\n");
    EXPECT_EQ(scene.Console.Run({"user", "import", "F:\\U.CSV"}), 1);
    EXPECT_THAT(scene.Console.Notices, HasSubstr("F:\\U.CSV, line 2, column 3: Dial: \"Local\" does not count"));
    EXPECT_EQ(scene.File(), list);
}

TEST(UserExport, IsImportedWithoutAChange) {
    Scene scene;
    // values that could not be entered: over a limit, a time that would not be kept, an unknown word
    const std::string odd = "[USER]\r\nName: ODD\r\nFullname: " + std::string(120, 'o') +
                            "\r\nSendTime: AFTER 18:00 MON TUE WED THU FRI SAT SUN\r\nPrintSentSquash: maybe\r\n"
                            "MailName: (x)\r\nGroup: @GONE\r\nUrgent: perhaps\r\nDial:\r\n";
    scene.Server.Put(kPath, kList + odd);
    EXPECT_EQ(scene.Console.Run({"user", "export"}), 0);
    EXPECT_THAT(scene.Console.Results, StartsWith("Name,Fullname,Group,Username,"));
    EXPECT_THAT(scene.Console.Results, HasSubstr("\r\nANN,\"Ann, \"\"A\"\"\",@S,ann,ann,ann,,,,NO,"));
    EXPECT_EQ(scene.Console.Results.find("default"), std::string::npos);
    scene.Server.Put("F:\\U.CSV", "\xEF\xBB\xBF" + scene.Console.Results);
    EXPECT_EQ(scene.Console.Run({"user", "import", "F:\\U.CSV"}), 0);
    EXPECT_EQ(scene.Console.Notices, "Added 0 users, changed 0\n");
    EXPECT_EQ(scene.File(), kList + odd);
}

TEST(UserImport, AddsAndChangesInOneRewrite) {
    Scene scene;
    scene.Server.Put("F:\\U.CSV",
                     "name,Fullname,Group\r\nBEN,\"Ben \"\"B\"\"\",@s\n\ncarl,,@S\r\nANN,\"Ann, \"\"A\"\"\",@S");
    EXPECT_EQ(scene.Console.Run({"user", "import", "F:\\U.CSV", "--dry-run"}), 0);
    EXPECT_EQ(scene.Console.Notices, "Would add user BEN\nWould change user CARL\n    Group: \"\" to \"@S\"\n");
    EXPECT_THAT(scene.Console.Results, HasSubstr("+Name: BEN\n"));
    EXPECT_EQ(scene.File(), kList);

    EXPECT_EQ(scene.Console.Run({"user", "import", "F:\\U.CSV"}), 0);
    EXPECT_EQ(scene.Console.Notices, "Added 1 user, changed 1\n");
    EXPECT_THAT(scene.File(), HasSubstr("Name: BEN\r\nFullname: Ben \"B\"\r\nGroup: @s\r\n"));
    EXPECT_THAT(scene.File(), HasSubstr("Name: CARL\r\nFullname: \r\nGroup: @S\r\n"));
    EXPECT_THAT(scene.File(), HasSubstr(kAnn)) << "not changed, not written";
    EXPECT_TRUE(scene.HasDirectory("BEN"));
    EXPECT_FALSE(scene.HasDirectory("CARL"));
}

TEST(UserImport, TakesWhatSpreadsheetsMake) {
    const std::string added = "Name: BEN\r\nFullname: Zo\xEB, \x80\r\n";
    for (const char* file : {"Name,Fullname\nBEN,\"Zo\xEB, \x80\"\n", "\r\nname;FULLNAME\r\nBEN;Zo\xEB, \x80\r\n",
                             "\xEF\xBB\xBFName;Fullname\r\nBEN;Zo\xC3\xAB, \xE2\x82\xAC\r\n",
                             "SEP=;\r\n\"Fullname\";\"Name\"\r\n\"Zo\xEB, \x80\";\"BEN\"\r\n",
                             "Fullname\tName\nZo\xEB, \x80\tBEN", "sep=\t\nFullname\tName\nZo\xEB, \x80\tBEN"}) {
        SCOPED_TRACE(file);
        Scene scene;
        scene.Server.Put("F:\\U.CSV", file);
        EXPECT_EQ(scene.Console.Run({"user", "import", "F:\\U.CSV"}), 0);
        EXPECT_EQ(scene.Console.Notices, "Added 1 user, changed 0\n");
        EXPECT_THAT(scene.File(), HasSubstr(added));
    }
}

TEST(UserImport, NamesEveryBadRowAndWritesNothing) {
    const struct {
        std::string File;
        std::vector<std::string> Faults;
    } cases[] = {
        {"", {"line 1, column 1: a line with the names of the keys is missing"}},
        {"Fullname\r\nx\r\n", {"line 1, column 1: there is no column Name"}},
        {"Name,Colour,Dial,dial\r\nBEN,1,,\r\n",
         {"line 1, column 2: \"Colour\" is no key of users", "line 1, column 4: Dial is there twice"}},
        {"Name,Admin\r\nBEN\r\n\"a\nb\",YES\r\nben,NO\r\nANN,huh\r\n@s,YES\r\nFINE,NO,\r\n",
         {"line 2, column 1: 1 fields where the first line has 2",
          "line 8, column 3: 3 fields where the first line has 2",
          "line 3, column 1: Name: \"a b\" - the name of a user or group is that of its directory, and no file name "
          "has a control character or one of \\ / : * ? \" < > |.",
          "line 7, column 1: Name: \"@s\" - the name of a user does not begin with @, which marks user groups.",
          "line 6, column 2: Admin: \"huh\" is not YES or NO"}},
        {"Name,Group\r\nBEN,@X\r\nDORA,@S\r\ndora,\r\n",
         {"line 4, column 1: Name: \"dora\" is there twice",
          "line 2, column 2: Group: \"@X\" - there is no user group of that name."}},
        {"Name,Netware,LanManager\nBEN,joe,\nCARL,joe,\n",
         {"line 2, column 3: LanManager: \"\" is not kept with the other values; \"joe\" would come back",
          "line 3, column 3: LanManager: \"\" is not kept with the other values; \"joe\" would come back"}},
        {"sep=|\nName|Admin\n", {"line 1, column 1: the fields can be parted by commas, semicolons or tabs only"}},
        {"\xEF\xBB\xBFName;Fullname\nBEN;\xC5\x81ukasz\nCARL;\xEB\n",
         {"line 2, column 2: the letter U+0141 is not in the code page of the files",
          "line 3, column 2: the text is not UTF-8"}},
        {"Name,Fullname\r\nBEN,\"x", {"line 2, column 2: the quotes are not closed"}},
        {"Name,Fullname\r\nBEN,\"x\"y\r\n", {"line 2, column 2: text follows the closing quote"}},
        {"Name,Fullname\r\nBEN,x\"y\r\n", {"line 2, column 2: a quote stands in a field without quotes"}},
    };
    for (const auto& [file, faults] : cases) {
        SCOPED_TRACE(file);
        Scene scene;
        scene.Server.Put("F:\\U.CSV", file);
        EXPECT_EQ(scene.Console.Run({"user", "import", "F:\\U.CSV"}), 1);
        std::set<std::string> said;
        std::istringstream notices(scene.Console.Notices);
        for (std::string line; std::getline(notices, line);) said.insert(line);
        std::set<std::string> expected;
        for (const std::string& fault : faults) expected.insert("F:\\U.CSV, " + fault);
        EXPECT_EQ(said, expected);
        EXPECT_EQ(scene.File(), kList);
    }
}

// Each look at it takes a second.
class SlowClock final : public platform::Clock {
  public:
    std::int64_t Now() override { return seconds_; }
    std::int64_t Ticks() override { return 1000 * ++seconds_; }
    void Sleep(std::int64_t) override {}

  private:
    std::int64_t seconds_ = 0;
};

// A person who presses Ctrl+C while the third user is being added.
class ImpatientConsole : public TextConsole {
  public:
    bool IsTerminal() override { return true; }
    void PrintNotice(std::string_view text) override {
        if (text.starts_with("\rAdding user 3 of")) std::raise(SIGINT);
        TextConsole::PrintNotice(text);
    }
};

TEST(UserImport, StoppedHalfWayLeavesWholeUsers) {
    Scene scene;
    SlowClock clock;
    const platform::Substitute<platform::Clock> slow(clock);
    scene.Server.Put("F:\\U.CSV", "Name,Admin\nA1,NO\nA2,NO\nA3,NO\nA4,NO\nANN,YES\n");
    ImpatientConsole console;
    EXPECT_EQ(console.Run({"user", "import", "F:\\U.CSV"}), 1);
    EXPECT_THAT(console.Notices, testing::EndsWith("\nStopped: added 2 of 4 users, changed 0 of 1\n"));
    EXPECT_THAT(scene.File(), HasSubstr("Name: A2\r\n"));
    EXPECT_EQ(scene.File().find("Name: A3\r\n"), std::string::npos);
    EXPECT_TRUE(scene.HasDirectory("A2"));
    EXPECT_FALSE(scene.HasDirectory("A3"));
    EXPECT_THAT(scene.File(), HasSubstr(kAnn));
}

} // namespace
} // namespace bv::console
