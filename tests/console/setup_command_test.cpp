// Devices and options from the console: SETUP.INI before, one command, what it says, SETUP.INI after.
#include <gmock/gmock.h>

#include "console/command_case.h"
#include "console/text_console.h"
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

struct Case : test::CommandCase {
    Case(std::vector<std::string> arguments, int status, std::string results, std::string notices,
         std::string after = kSetup)
        : CommandCase{std::move(arguments), status, std::move(results), std::move(notices), std::move(after)} {}
};

const Case kCases[] = {
    {{"device", "list"}, 0, "MODEM-1\tMain\nPRINT-1\tLaser\n", ""},
    {{"device", "list", "--fax", "--network"}, 0, "MODEM-1\tMain\nNETWORK\tNet\n", ""},
    {{"device", "show", "print-1"}, 0, "Name: PRINT-1\nDescription: Laser\nType: PRINT\n", ""},
    {{"device", "show", "MODEM-2"}, 1, "", "Device MODEM-2 not found\n"},
    {{"device", "show", "NETWORK"}, 1, "", "Device NETWORK has no type that this program knows\n"},
    {{"device", "set", "print-1", "description=Colour laser"},
     0,
     "",
     "Modified device PRINT-1\n",
     Replaced(Replaced(kSetup, "\"Laser\"", "\"Colour laser\""), ": Laser", ": Colour laser")},
    {{"device", "set", "PRINT-1", "Description=Laser"},
     0,
     "",
     "Using file F:\\BRIVANE\\B-DB\\SETUP.INI\n"}, // as it was
    {{"device", "add", "print", "print", "Description=B"},
     0,
     "PRINT-2\n",
     "Added device PRINT-2\n",
     Replaced(kSetup, "Device: PRINT-1 \"Laser\"\n", "Device: PRINT-1 \"Laser\"\nDevice: PRINT-2 \"B\"\n") +
         "\n[PRINT-2]\nDescription: B\nType: PRINT\n"},
    {{"device", "delete", "modem-1", "--yes"},
     0,
     "",
     "Deleted device modem-1\n",
     Replaced(kSetup, "Device: MODEM-1 \"Main\"\n", "")},
    {{"device", "set", "PRINT-1", "Port=COM1"}, 1, "", "Port: \"COM1\" - PRINT devices have no such key\n"},
    {{"device", "set", "MODEM-1", "BaudRate=65536"}, 1, "", "BaudRate: \"65536\" is not a number from 0 to 65535\n"},
    {{"device", "set", "MODEM-1", "Speaker=LOUD"}, 1, "", "Speaker: \"LOUD\" is not ON, OFF or CONNECT\n"},
    {{"device", "set", "MODEM-1", "Description=a\"b"},
     1,
     "",
     "Description: \"a\"b\" is not a text of at most 50 characters without quotes\n"},
    {{"device", "add", "X", "FAX"}, 1, "", "Type: \"FAX\" is not FCLASS, GAMMA, BTROUT or PRINT\n"},
    {{"device", "add", "TENCHARS90", "GAMMA"}, 1, "", "Device name 'TENCHARS90-1' invalid\n"},

    {{"option", "list", "epstiff"},
     0,
     "EPSTIFF/AsciiBottomMargin\t2\tdefault\nEPSTIFF/AsciiFormLength\t72\tdefault\n"
     "EPSTIFF/AsciiTopMargin\t2\tdefault\n",
     ""},
    {{"option", "list", "NOPE"}, 1, "", "There are no options in a paragraph [NOPE]\n"},
    {{"option", "get", "queueman/sendtries"}, 0, "5\n", ""},
    {{"option", "get", "QUEUEMAN/SendRetryWait", "--json"}, 0, "{\n  \"SendRetryWait\": \"60\"\n}\n", ""},
    {{"option", "get", "QUEUEMAN/MailLoginParams"}, 0, "********\n", ""},
    {{"option", "get", "QUEUEMAN/MailLoginParams", "--reveal"}, 0, "sekrit\n", ""},
    {{"option", "get", "QUEUEMAN"}, 1, "", "There is no option QUEUEMAN\n"},
    {{"option", "set", "OPTIONS/LCR=maybe"}, 1, "", "LCR: \"maybe\" is not YES or NO\n"},
    {{"option", "set", "OPTIONS/MailGatewayV6=YES"},
     1,
     "",
     "OPTIONS/MailGatewayV6 is the server's own and is only read\n"},
    {{"option", "set", "QUEUEMAN/SendTries=3", "QUEUEMAN/Nope=1"}, 1, "", "There is no option QUEUEMAN/Nope\n"},

    {{"option", "telnum", "list"}, 0, "Local\tHere\nInternational1\tFar\n", ""},
    {{"option", "telnum", "set", "National=Inland", "local=There"},
     0,
     "",
     "International1 \"Far\" will be read as International2 from now on\nUpdating file " + test::kSetupFile +
         "\nUpdated file " + test::kSetupFile + "\n",
     Replaced(
         kSetup, "Local           \"Here\"\nTelnumType: International   \"Far\"\n",
         "Local           \"There\"\nTelnumType: International1  \"Far\"\nTelnumType: National1       \"Inland\"\n")},
    {{"option", "telnum", "set", "International=x"},
     1,
     "",
     "International cannot be kept: International2 would come back\n"},
    {{"option", "telnum", "set", "Local=a\"b"},
     1,
     "",
     "TelnumType: \"a\"b\" is not a text of at most 100 characters without quotes\n"},
};

struct Scene {
    SetupServer Server{kSetup};
    TextConsole Console;
    std::string File() { return Server.GetSetup(); }
    Scene() {
        Server.Put("C:\\WINDOWS\\BRIVANE.INI", "[SERVER]\r\nAllUserArea: F:\\BRIVANE\\USERS\r\nRequestArea: F:\\R\r\n"
                                               "ServerArea: F:\\BRIVANE\\SERVER\r\nSystemArea: F:\\BRIVANE\r\n");
    }
};

TEST(SetupCommands, DoOneThingAndSayIt) {
    test::ExpectEach<Scene>(std::vector<test::CommandCase>(std::begin(kCases), std::end(kCases)), kSetup);
}

TEST(SetupCommands, SettingAnOptionWritesWhatIsNotThereYetButNothingElse) {
    Scene scene;
    EXPECT_EQ(scene.Console.Run({"option", "set", "QUEUEMAN/SendRetryWait=60", "BSUBMIT/User=ANNA"}), 0);
    EXPECT_EQ(scene.Console.Run({"option", "list", "--reveal"}), 0);
    EXPECT_EQ(scene.Console.Results.find("default"), scene.Console.Results.find("default\nOPTIONS/LCR\t"))
        << "only what is never written";
    const std::string complete = scene.Server.GetSetup();
    EXPECT_THAT(complete, testing::HasSubstr("[QUEUEMAN]\nSendTries: 5\nSendRetryWait: 60\nMailLoginParams: sekrit\n"));
    EXPECT_THAT(complete, testing::HasSubstr("\nUser: ANNA\n"));
    EXPECT_EQ(scene.Console.Run({"option", "set", "QUEUEMAN/SendRetryWait=60"}), 0);
    EXPECT_EQ(scene.Server.GetSetup(), complete);
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
