// What 'show' prints, 'set' takes, and shows the same afterwards, also where a file holds what nobody would enter.
#include <gmock/gmock.h>

#include "console/text_console.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::console {
namespace {

using test::Replaced;

const std::string kArea = "F:\\BRIVANE\\B-DB\\";
const std::pair<std::string, std::string> kFiles[] = {
    {"SETUP.INI",
     "[OPTIONS]\nLogFile: SERVER.LOG\nOdd: x\n[DEVICES]\nDevice: MODEM-1 \"Main\"\nDevice: PRINT-1 \"Laser\"\n"
     "[PRINTERS]\nDevice: PRINT-1 \"Laser\"\n[SCANNERS]\n[PRINT-1]\nDescription: Laser\nType: PRINT\n"
     "[MODEM-1]\nDescription: Main\nType: FCLASS\nSpeaker: on\nPort: COM9\n"
     "[QUEUEMAN]\nSendTries: 3\nOffpeak: SAT SUN AFTER 18:00\n"
     "[ROUTER]\nLocalServerID: HERE, \"Here\"\nWanInboxDirectory: X\nWanInboxPollFreq: 00:05\n"},
    {"USERLIST.INI", "[USER]\nName: (default)\n\n[USER]\nName: ANN\nGroup: @G\nPrintRecdOptions: STATUS\n\n"
                     "[GROUP]\nName: @G\nFullname: Group\n"},
    {"LINK.INI",
     "[BRIVANE]\nType: LinkDatabase\n\n[LINK]\nRemoteServerID: A, \"Far\"\nLinkType: WAN\nRemoteServerAddress: x\n"
     "BrivaneAccountName: ANN\nReceiveEnabled: ON\nSendEnabled: OFF\nLinkDelay: 02: 5\n\n"
     "[LINK]\nRemoteServerID: B\nLinkType: EMAIL_FAST\nRemoteServerAddress: b@x\nLinkDelay: 01:  \n"
     "LocalWatchdogFreq: 99:99\nMaxInboundPriority: HIGH\n\n"},
    {"LCRRules.ini", "[RULE]\nDescription: One, two\nRegion: EU\nCountry: 44\nArea: UK\nUser: A B\nUser: GONE\n"
                     "Time: NOON\nSize: MANY\n; note\nx: y\nServer: LON\nServer: *\n\n"},
    {"DIALLING.INI", "[BRIVANE]\nType: DiallingProperties\n\n[DIALPROPERTIES]\nLocation: London\n\n[LOCATION]\n"
                     "Description: London\nCountry: +44\nArea: 171\nNatlAccess: 0\nIntlAccess: 00\nDialAreaCode: NO\n"
                     "DialNatlAccessForLocal: YES\nDisplayNatlAccess: NO\nNumberWithoutAreaMaxLen: 7\nDialAsLocal:\n"
                     "DialAsLocal: 181\n\n"},
    {"COUNTRY.INI", "[COUNTRIES]\n44: UK, \"Kingdom\"\n"},
};

struct Target {
    std::vector<std::string> Show;
    std::vector<std::string> Set;
};
const Target kTargets[] = {
    {{"user", "show", "ANN"}, {"user", "set", "ANN"}},
    {{"group", "show", "@G"}, {"group", "set", "@G"}},
    {{"device", "show", "MODEM-1"}, {"device", "set", "MODEM-1"}},
    {{"device", "show", "PRINT-1"}, {"device", "set", "PRINT-1"}},
    {{"link", "show", "A"}, {"link", "set", "A"}},
    {{"link", "show", "B"}, {"link", "set", "B"}},
    {{"router", "show"}, {"router", "set"}},
    {{"lcr", "show", "1"}, {"lcr", "set", "1"}},
    {{"dialling", "show"}, {"dialling", "set"}},
};

struct Scene {
    test::MemoryServer Server;
    test::TextConsole Console;

    Scene() {
        Server.Load();
        Server.Put("F:\\BRIVANE\\B-REQ\\QUEUE", "");
        for (const auto& [name, text] : kFiles) Server.Put(kArea + name, Replaced(text, "\n", "\r\n"));
    }
};

// "Key: value" as "Key=value"; a hidden value cannot be given back.
std::vector<std::string> Assignments(const std::string& shown) {
    std::vector<std::string> assignments;
    for (std::size_t at = 0; at < shown.size(); at = shown.find('\n', at) + 1) {
        const std::string line = shown.substr(at, shown.find('\n', at) - at);
        const std::size_t separator = line.find(": ");
        if (line.find("****") != std::string::npos) continue;
        assignments.push_back(line.substr(0, separator) + "=" + line.substr(separator + 2));
    }
    return assignments;
}

TEST(ShowAndSet, TakeEachOthersValues) {
    for (const auto& [show, set] : kTargets) {
        Scene scene;
        ASSERT_EQ(scene.Console.Run(show), 0) << show[0] << scene.Console.Notices;
        const std::vector<std::string> all = Assignments(scene.Console.Results);
        std::vector<std::string> together = set;
        together.insert(together.end(), all.begin(), all.end());
        std::vector<std::vector<std::string>> commands = {together};
        for (const std::string& one : all) {
            commands.push_back(set);
            commands.back().push_back(one);
        }
        const std::string shown = scene.Console.Results;
        for (const std::vector<std::string>& arguments : commands) {
            SCOPED_TRACE(testing::PrintToString(arguments));
            EXPECT_EQ(scene.Console.Run(arguments), 0) << scene.Console.Notices;
            EXPECT_EQ(scene.Console.Run(show), 0);
            EXPECT_EQ(scene.Console.Results, shown);
        }
    }
}

} // namespace
} // namespace bv::console
