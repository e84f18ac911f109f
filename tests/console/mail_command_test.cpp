// The mail gateway's verbs: one command, what it says, and the mail list's bytes after it.
#include <gmock/gmock.h>

#include "console/command_case.h"
#include "console/text_console.h"
#include "platform/environment.h"
#include "support/memory_server.h"
#include "support/temporary_directory.h"

namespace bv::console {
namespace {

using test::MemoryServer;
using test::TextConsole;

const std::string kList = "F:\\BRIVANE\\B-DB\\MAILLIST.INI";
const std::string kAnn = "[USER]\r\nBrivname: ANN\r\nEmailname: Ann A\r\nProfile: NO\r\n\r\n";
const std::string kCarl = "[USER]\r\nBrivname: CARL\r\nEmailname: Carl C\r\nEmailBrivname: PROF\r\nProfile: YES\r\n"
                          "SubAddr: 5\r\n\r\n";
const std::string kBoth = kAnn + kCarl;
const std::string kBen = "[USER]\r\nBrivname: Prof\r\nEmailname: Ben\r\nProfile: YES\r\n\r\n";
const std::string kPrevented = "Brivane user %s prevented from using gateway for send messages\n";
const std::string kBadName = "Emailname: \"%s\" - an e-mail name has 1 to 269 characters, none of them a control "
                             "character, and no blank at either end.\n";

std::string Of(std::string text, const std::string& name) { return text.replace(text.find("%s"), 2, name); }

const std::string k269(269, 'x');
const test::CommandCase kCases[] = {
    {"mail-user list", 0, "Ann A\tANN\tNO\nCarl C\tPROF\tYES\n", ""},
    {"mail-user list --user prof", 0, "Carl C\tPROF\tYES\n", ""},
    {"mail-user list --user PROF --json", 0,
     "[\n  {\n    \"Emailname\": \"Carl C\",\n    \"User\": \"PROF\",\n    \"Profile\": true,\n"
     "    \"Brivname\": \"CARL\",\n    \"EmailBrivname\": \"PROF\",\n    \"SubAddr\": \"5\",\n"
     "    \"PrintRecd\": \"\",\n    \"PrintSent\": \"\"\n  }\n]\n",
     ""},
    {"mail-user count ann", 0, "1\n", ""},
    {"mail-user add PROF Ben", 0, "", "Added mail user Ben\n", kAnn + kBen + kCarl},
    {"mail-user add ann Ben --replace 'carl c'", 0, "", Of(kPrevented, "ANN") + "Added mail user Ben\n",
     kAnn + "[USER]\r\nBrivname: ANN\r\nEmailname: Ben\r\nEmailBrivname: PROF\r\nProfile: NO\r\nSubAddr: 5\r\n\r\n"},
    {"mail-user delete ann 'ann a'", 0, "", Of(kPrevented, "ann"), kCarl},
    {"mail-user upgrade", 0, "", ""},
    {"mail-user list --directory", 0, "Archer Ann\tann@x\t\n", ""},
    {"mail-user set 'carl c' SubAddr=6 printsent=YES", 0, "", "Modified mail user Carl C\n",
     kAnn + "[USER]\r\nBrivname: CARL\r\nEmailname: Carl C\r\nEmailBrivname: PROF\r\nProfile: NO\r\nSubAddr: 6\r\n"
            "PrintSent: YES\r\n\r\n"},
    {"mail-user names", 0, "Archer Ann\tAnnA\t\n", ""},
    {"mail-user lookup 'Ann Archer'", 0, "ann@x\n", ""},
    {"mail-name 'Smith John'", 0, "JohnS\n", ""},
    {"mail-name 'Smith John\tx y' --expression %1First%Last", 0, "JSmith\n", ""},
    // refused
    {"mail-user delete BEN 'ann a'", 1, "",
     "Mail user Ann A sends under the name ANN, not BEN.\n\nDelete it? [y/N] No (nobody to ask; --yes answers Yes)\n"},
    {"mail-user add BEN Ben", 1, "", "Brivane user BEN not found\n"},
    {"mail-user add ANN " + k269 + "y", 1, "", Of(kBadName, k269 + "y")},
    {"mail-user add ANN ' Ben'", 1, "", Of(kBadName, " Ben")},
    {"mail-user add ANN Ben --replace B", 1, "", "Emailname: \"B\" is not in the mail list\n"},
    {"mail-user set 'Ann A' Colour=red", 1, "", "Colour: \"red\" - mail users have no such key\n"},
    {"mail-user set 'Ann A' Emailname=x", 1, "", "Emailname: \"x\" cannot be kept in the mail list.\n"},
    {"mail-user set Nobody SubAddr=1", 1, "", "Emailname: \"Nobody\" is not in the mail list\n"},
    {"mail-user expression First", 1, "", "Please select a valid expression\n"},
    {"mail test", 1, "No mail system is chosen\n", "No mail system is chosen\n"},
    {"mail-user lookup Bob", 1, "", "Mail user Bob not found\n"},
    {"mail-name 'Smith John' --expression First", 1, "", "Expression: \"First\" - Please select a valid expression\n"},
};

struct Scene {
    MemoryServer Server;
    TextConsole Console;

    Scene() {
        Server.Load();
        Server.Put("F:\\BRIVANE\\B-DB\\SETUP.INI", "[OPTIONS]\r\nMailUserAlias: %First%1Last\r\n");
        Server.Put("F:\\BRIVANE\\B-DB\\USERLIST.INI", "[USER]\r\nName: (def)\r\n[USER]\r\nName: ANN\r\n"
                                                      "[USER]\r\nName: Prof\r\nMailName: *\r\n");
        Server.Put("F:\\BRIVANE\\B-DB\\MAILUSER.DAT", "Archer Ann\tann@x\r\n");
        Server.Put(kList, kBoth);
    }
    std::string File() { return Server.Get(kList); }
};

TEST(MailCommand, DoesAndSaysWhatIsAsked) { test::ExpectEach<Scene>(kCases, kBoth); }

TEST(MailCommand, TheAddressesAreMadeByTheCompanionProgram) {
    Scene scene;
    EXPECT_EQ(scene.Console.Run({"mail-user", "refresh"}), 0);
    EXPECT_THAT(scene.Server.Processes.Started, testing::IsEmpty());
    EXPECT_EQ(scene.Console.Run({"mail-user", "refresh", "--force", "--dry-run"}), 0);
    EXPECT_EQ(scene.Console.Results, "Would start F:\\BRIVANE\\MAILCONF.EXE -SE -H0\n");
    EXPECT_EQ(scene.Console.Run({"mail-user", "refresh", "--force"}), 1) << "it makes nothing";
    EXPECT_THAT(scene.Server.Processes.Started, testing::ElementsAre("F:\\BRIVANE\\MAILCONF.EXE -SE -H0"));
    scene.Server.Files.Delete("F:\\BRIVANE\\B-DB\\MAILUSER.DAT");
    EXPECT_EQ(scene.Console.Run({"mail-user", "refresh"}), 1);
    EXPECT_THAT(scene.Console.Notices, testing::EndsWith("\nMAILCONF.EXE has made no list of mail users.\n"));
}

} // namespace
} // namespace bv::console
