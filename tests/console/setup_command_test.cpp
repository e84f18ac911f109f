// Devices and options from the console: SETUP.INI before, one command, what it says, SETUP.INI after.
#include <gmock/gmock.h>

#include "console/command_case.h"
#include "console/text_console.h"
#include "ctlfile/scramble.h"
#include "devices/setup_text.h"

namespace bv::console {
namespace {

using test::Replaced;
using test::SetupServer;
using test::TextConsole;

const std::string kLists = "[DEVICES]\nDevice: MODEM-1 \"Main\"\nDevice: NETWORK \"Net\"\nDevice: PRINT-1 \"Laser\"\n"
                           "\n[PRINTERS]\nDevice: PRINT-1 \"Laser\"\n\n[SCANNERS]\n\n";
const std::string kPrinter = "[PRINT-1]\nDescription: Laser\nType: PRINT\nPort: none of ours\n\n";
const std::string kQueue = "[QUEUEMAN]\nSendTries:\nSendRetryWait: 60\nMailLoginParams: sekrit\n"
                           "TelnumType: Local           \"Here\"\nTelnumType: International   \"Far\"\n";
const std::string kSetup = kLists + kPrinter + "[MODEM-1]\nType: FCLASS\nSpeaker: on\n\n" + kQueue;
const std::string kTypesSaved = "Updated file " + test::kSetupFile + "\n";

const test::CommandCase kCases[] = {
    {"device list", 0, "MODEM-1\tMain\nPRINT-1\tLaser\n", ""},
    {"device list --fax --network", 0, "MODEM-1\tMain\nNETWORK\tNet\n", ""},
    {"device show print-1", 0, "Name: PRINT-1\nDescription: Laser\nType: PRINT\n", ""},
    {"device show MODEM-2", 1, "", "Device MODEM-2 not found\n"},
    {"device show NETWORK", 1, "", "Device NETWORK has no type that this program knows\n"},
    {"device set print-1 'description=Colour laser'", 0, "", "Modified device PRINT-1\n",
     Replaced(Replaced(kSetup, "\"Laser\"", "\"Colour laser\""), ": Laser", ": Colour laser")},
    {"device set PRINT-1 Description=Laser", 0, "", "Using file F:\\BRIVANE\\B-DB\\SETUP.INI\n"}, // as it was
    {"device add print print Description=B", 0, "PRINT-2\n", "Added device PRINT-2\n",
     Replaced(kSetup, "Device: PRINT-1 \"Laser\"\n", "Device: PRINT-1 \"Laser\"\nDevice: PRINT-2 \"B\"\n") +
         "\n[PRINT-2]\nDescription: B\nType: PRINT\n"},
    {"device clone print-1 Description=C", 0, "PRINT-2\n", "Added device PRINT-2\n",
     Replaced(kSetup, "Device: PRINT-1 \"Laser\"\n", "Device: PRINT-1 \"Laser\"\nDevice: PRINT-2 \"C\"\n") +
         "\n[PRINT-2]\nDescription: C\nType: PRINT\n"},
    {"device clone MODEM-2", 1, "", "Device MODEM-2 not found\n"},
    {"device add P PRINT --count 2 Description=B", 0, "P-1\nP-2\n", "Added device P-2\n",
     Replaced(kSetup, "Device: PRINT-1 \"Laser\"\n",
              "Device: P-1 \"B 1\"\nDevice: P-2 \"B 2\"\nDevice: PRINT-1 \"Laser\"\n") +
         "\n[P-1]\nDescription: B 1\nType: PRINT\n\n[P-2]\nDescription: B 2\nType: PRINT\n"},
    {"device add P PRINT --count 25", 1, "", "How many: \"25\" - at most 24 devices are added at once.\n"},
    {"device delete modem-1 --yes", 0, "", "Deleted device modem-1\n",
     Replaced(kSetup, "Device: MODEM-1 \"Main\"\n", "")},
    {"device delete PRINT-1 --take-out --leave", 2, "",
     "Only one of --take-out, --replace-by and --leave can be given\n"},
    {"device set PRINT-1 Port=COM1", 1, "", "Port: \"COM1\" - PRINT devices have no such key\n"},
    {"device repair PRINT-1 PRINT", 1, "", "Device PRINT-1 has the type PRINT already\n"},
    {"device repair NETWORK GAMMA", 1, "", "Device NETWORK is the network connection and cannot be changed\n"},

    {"where-used printer print-1", 0, "", "printer print-1 is used nowhere\n"},

    {"printer list", 0, "PRINT-1\tLaser\t\n", ""},
    {"printer list --installed --of QUILL", 2, "", "--installed and --of cannot be given together\n"},

    {"option list epstiff", 0,
     "EPSTIFF/AsciiBottomMargin\t2\tdefault\nEPSTIFF/AsciiFormLength\t72\tdefault\n"
     "EPSTIFF/AsciiTopMargin\t2\tdefault\n",
     ""},
    {"option list NOPE", 1, "", "There are no options in a paragraph [NOPE]\n"},
    {"option get queueman/sendtries", 0, "5\n", ""},
    {"option get QUEUEMAN/SendRetryWait --json", 0, "{\n  \"SendRetryWait\": \"60\"\n}\n", ""},
    {"option get QUEUEMAN/MailLoginParams", 0, "********\n", ""},
    {"option get QUEUEMAN/MailLoginParams --reveal", 0, "sekrit\n", ""},
    {"option find 'sent directory'", 0,
     "QUEUEMAN/ArchiveSentPath\tDirectory of sent faxes\tArchiving\ta text of at most 256 characters, else "
     "B-SENT\\ in the server area\n",
     ""},
    {"option find nothing", 1, "", "Nothing fits the filter \"nothing\"\n"},
    {"option set EPSTIFF/AsciiTopMargin=70", 1, "",
     "Margins of 72 lines leave no room on a page of 72 - Would you like to continue? [y/N] No (nobody to ask; --yes "
     "answers Yes)\n"},
    {"option set BSUBMIT/User=NOBODY", 1, "", "Brivane user NOBODY not found\n"},
    {"option set", 2, "", "What is to be set is missing\n"},
    {"option set OPTIONS/MailGatewayV6=YES", 1, "", "OPTIONS/MailGatewayV6 is the server's own and is only read\n"},
    {"option set QUEUEMAN/SendTries=3 QUEUEMAN/Nope=1", 1, "", "There is no option QUEUEMAN/Nope\n"},

    {"option telnum list", 0, "Local\tHere\nInternational1\tFar\n", ""},
    {"option telnum set National=Inland local=There", 0, "",
     "International1 \"Far\" will be read as International2 from now on\nUpdating file " + test::kSetupFile +
         "\nUpdated file " + test::kSetupFile + "\n",
     Replaced(
         kSetup, "Local           \"Here\"\nTelnumType: International   \"Far\"\n",
         "Local           \"There\"\nTelnumType: International1  \"Far\"\nTelnumType: National1       \"Inland\"\n")},
    {"option telnum add International2 Europe", 0, "", kTypesSaved,
     Replaced(kSetup, "TelnumType: International   \"Far\"\n",
              "TelnumType: International1  \"Far\"\nTelnumType: International2  \"Europe\"\n")},
    {"option telnum add Local x", 1, "", "Type: there is a description of Local already.\n"},
    {"option telnum delete INTERNATIONAL1", 0, "", kTypesSaved,
     Replaced(kSetup, "TelnumType: International   \"Far\"\n", "")},
    {"option telnum delete National1", 1, "", "Type: there is no description of National1.\n"},
    {"option telnum down Local", 0, "", kTypesSaved,
     Replaced(kSetup, "Local           \"Here\"\nTelnumType: International   \"Far\"",
              "International1  \"Far\"\nTelnumType: Local           \"Here\"")},
    {"option telnum up Local", 1, "", "Type: Local is the first of the list already.\n"},
    {"option telnum set International=x", 1, "", "International cannot be kept: International2 would come back\n"},
    {"option telnum set National=x National1=y", 1, "", "National1 is given twice\n"},
};

struct Scene {
    SetupServer Server{kSetup};
    TextConsole Console;
    std::string File() { return Server.GetSetup(); }
    Scene() {
        Server.Put("C:\\WINDOWS\\BRIVANE.INI", "[SERVER]\r\nAllUserArea: F:\\BRIVANE\\USERS\r\nRequestArea: F:\\R\r\n"
                                               "ServerArea: F:\\BRIVANE\\SERVER\r\nSystemArea: F:\\BRIVANE\r\n");
        Server.Put("F:\\BRIVANE\\B-DB\\USERLIST.INI", "[USER]\r\nName: ANNA\r\n[GROUP]\r\nName: @SALES\r\n");
    }
};

TEST(SetupCommands, DoOneThingAndSayIt) { test::ExpectEach<Scene>(kCases, kSetup); }

struct OddCase {
    const char* Name;
    std::string Command;
    std::string Before;
    int Status;
    std::string Said; // the last line, or the new device's name
    std::string After;
};

const std::string kNoLists = "\n[PRINTERS]\n\n[SCANNERS]\n\n";
const std::string kBareModem = "[DEVICES]\nDevice: M-1 \"Listed\"\n" + kNoLists;
const std::string kWholePrinter = "[PRINT-2]\nDescription: P\nType: PRINT\n";
const std::string kBareLists = "[DEVICES]\n" + kNoLists;
const std::string kForeign = kBareModem + "[M-1]\nType: ISDN\n";
const std::string kScanner = "[DEVICES]\nDevice: S-1 \"S\"\n\n[PRINTERS]\n\n[SCANNERS]\nDevice: S-1 \"S\"\n\n";

const OddCase kOddCases[] = {
    {"a scanner's name is taken", "device add S PRINT",
     Replaced(kScanner, "[DEVICES]\nDevice: S-1 \"S\"\n", "[DEVICES]\n") + "[S-1]\nType: HP\n", 0, "S-2\n",
     "[DEVICES]\nDevice: S-2 \"\"\n\n[PRINTERS]\nDevice: S-2 \"\"\n\n[SCANNERS]\nDevice: S-1 \"S\"\n\n"
     "[S-1]\nType: HP\n\n[S-2]\nDescription:\nType: PRINT\n"},
    {"a printer without a paragraph gets one, and its place in the lists", "device repair print-2 print",
     "[DEVICES]\nDevice: PRINT-2 \"P\"\n" + kNoLists, 0, "Modified device PRINT-2\n",
     "[DEVICES]\nDevice: PRINT-2 \"P\"\n\n[PRINTERS]\nDevice: PRINT-2 \"P\"\n\n[SCANNERS]\n\n" + kWholePrinter},
    {"a paragraph without a type keeps what it has", "device repair PRINT-2 PRINT",
     "[DEVICES]\nDevice: PRINT-2 \"Listed\"\n\n[PRINTERS]\nDevice: PRINT-2 \"Listed\"\n\n[SCANNERS]\n\n"
     "[PRINT-2]\nDescription: P\nTray: 2\n",
     0, "Modified device PRINT-2\n",
     "[DEVICES]\nDevice: PRINT-2 \"Listed\"\n\n[PRINTERS]\nDevice: PRINT-2 \"Listed\"\n\n[SCANNERS]\n\n"
     "[PRINT-2]\nDescription: P\nTray: 2\nType: PRINT\n"},
    {"a printer goes, and the option that names it is emptied", "device delete PRINT-2 --take-out",
     "[DEVICES]\nDevice: PRINT-2 \"P\"\n\n[PRINTERS]\nDevice: PRINT-2 \"P\"\n\n[SCANNERS]\n\n" + kWholePrinter +
         "\n[PRINTING]\nPrintSentDevice: PRINT-2\n",
     0, "Deleted device PRINT-2\n", kBareLists + kWholePrinter + "\n[PRINTING]\nPrintSentDevice:\n"},
    {"what another program made is not repaired", "device repair M-1 FCLASS", kForeign, 1,
     "Device M-1 has the type ISDN, which this program does not know\n", kForeign},
    {"nor is a scanner", "device repair S-1 GAMMA", kScanner, 1, "Device S-1 is a scanner\n", kScanner},
    {"a description that only the list has otherwise", "device set PRINT-2 Description=P",
     "[DEVICES]\nDevice: PRINT-2 \"\"\n\n[PRINTERS]\nDevice: PRINT-2 \"\"\n\n[SCANNERS]\n\n" + kWholePrinter, 0,
     "Modified device PRINT-2\n",
     "[DEVICES]\nDevice: PRINT-2 \"P\"\n\n[PRINTERS]\nDevice: PRINT-2 \"P\"\n\n[SCANNERS]\n\n" + kWholePrinter},
};

TEST(SetupCommands, MendOddFiles) {
    for (const auto& [name, command, before, status, said, after] : kOddCases) {
        SCOPED_TRACE(name);
        Scene scene;
        scene.Server.PutSetup(before);
        EXPECT_EQ(scene.Console.Type(command), status);
        EXPECT_THAT(scene.Console.Notices + scene.Console.Results, testing::EndsWith(said));
        EXPECT_EQ(scene.Server.GetSetup(), after);
    }
}

TEST(SetupCommands, PrintWordsOfAnotherVersionStayUntilTheKeyIsChanged) {
    Scene scene;
    scene.Console.Run({"option", "set", "OPTIONS/LCR=NO"});
    const std::string whole = scene.Server.GetSetup();
    const std::string odd = Replaced(whole, "PrintRecdOptions:\n", "PrintRecdOptions: STATUS  FOLD\n");
    scene.Server.PutSetup(odd);
    EXPECT_EQ(scene.Console.Run({"option", "get", "PRINTING/PrintRecdOptions"}), 0);
    EXPECT_EQ(scene.Console.Results, "STATUS FOLD\n");
    EXPECT_EQ(scene.Console.Run({"option", "set", "OPTIONS/LCR=YES", "PRINTING/PrintRecdOptions=STATUS FOLD"}), 0);
    EXPECT_EQ(scene.Server.GetSetup(), Replaced(odd, "LCR: NO", "LCR: YES"));
    EXPECT_EQ(scene.Console.Run({"option", "set", "PRINTING/PrintRecdOptions=STATUS FOLD MESSAGE"}), 1);
    EXPECT_EQ(scene.Console.Run({"option", "set", "PRINTING/PrintRecdOptions=STATUS", "OPTIONS/LCR=NO"}), 0);
    EXPECT_EQ(scene.Server.GetSetup(), Replaced(odd, "STATUS  FOLD", "STATUS"));
}

TEST(SetupCommands, ScrambleAPasswordThatIsGiven) {
    const std::string stored = "MailLoginParams: sekrit\n";
    const std::string key = "QUEUEMAN/MailLoginParams";
    const std::string warning = key + ": a password among the arguments can be seen by others; use standard input\n";
    const Scene clock; // that stands still, so that the scrambled text is always the same
    const std::string scrambled = *ScrambleForPage("hush");
    const std::tuple<const char*, std::vector<std::string>, std::deque<std::string>, int, std::string, std::string>
        cases[] = {
            {"among the arguments", {key + "=hush"}, {}, 0, warning, "MailLoginParams: " + scrambled + "\n"},
            {"on standard input", {"--password-stdin"}, {"hush"}, 0, "", "MailLoginParams: " + scrambled + "\n"},
            {"eight asterisks", {key + "=********"}, {}, 0, "", stored},
            {"other asterisks, which nobody confirms",
             {key + "=*x"},
             {},
             1,
             "A password that begins with * stands for the stored one.\n\nKeep the stored password? [y/N] No (nobody "
             "to "
             "ask; --yes answers Yes)\n",
             stored},
            {"too long", {"--password-stdin"}, {std::string(45, 'x')}, 1, "Unable to encrypt the password\n", stored},
            {"twice", {"--password-stdin", key + "=x"}, {"a"}, 2, key + " is given twice\n", stored},
        };
    for (const auto& [name, arguments, input, status, said, line] : cases) {
        SCOPED_TRACE(name);
        Scene scene;
        scene.Console.Input = input;
        std::vector<std::string> command = {"option", "set"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        EXPECT_EQ(scene.Console.Run(command), status);
        EXPECT_THAT(scene.Console.Notices, testing::HasSubstr(said));
        EXPECT_THAT(scene.Server.GetSetup(), testing::HasSubstr(line));
    }
    Scene scene;
    scene.Console.Terminal = true;
    scene.Console.Input = {"hush"};
    EXPECT_EQ(scene.Console.Run({"option", "set", "--password-stdin", "--dry-run"}), 0);
    EXPECT_THAT(scene.Console.Results, testing::StartsWith("(hidden)"));
    EXPECT_THAT(scene.Console.Results,
                testing::HasSubstr("-SendTries:\n+SendTries: 5\n SendRetryWait: 60\n-MailLoginParams: ********\n"
                                   "+MailLoginParams: ******** (new)\n"));
    EXPECT_EQ(scene.Console.Notices, "Password: \n");
}

TEST(SetupCommands, ATelephoneListThatCannotBeReadIsNotRewritten) {
    Scene scene;
    const std::string odd = Replaced(kSetup, "International   \"Far\"", "Elsewhere \"Far\"");
    scene.Server.PutSetup(odd);
    const std::string said = "File " + test::kSetupFile + " holds an unreadable or a surplus telephone-number type\n";
    EXPECT_EQ(scene.Console.Run({"option", "telnum", "list"}), 1);
    EXPECT_EQ(scene.Console.Results, "Local\tHere\n");
    EXPECT_EQ(scene.Console.Notices, said);
    EXPECT_EQ(scene.Console.Run({"option", "telnum", "set", "Local=x"}), 1);
    EXPECT_EQ(scene.Console.Notices, said);
    EXPECT_EQ(scene.Server.GetSetup(), odd);
}

} // namespace
} // namespace bv::console
