// Inward routing from the console: the rules before, one command, what it says, the rules after.
#include "console/command_case.h"
#include "console/text_console.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::console {
namespace {

using test::Replaced;

const std::string kRouting = "F:\\BRIVANE\\B-DB\\ROUTING.INI";
const std::string kHead = "[BRIVANE]\nType: RoutingInit\nRevision: A\n\n";
const std::string kBefore = kHead + "[SENDERID]\n@44: \"+44\" \"Smith\"\nANN: BOB\n\n[SUBADDR]\n1: ANN\n\n"
                                    "[FORWARD]\nANN: \"\" LAN-ANY \"BOB\" \n";

struct RoutingScene {
    test::MemoryServer Server;
    test::TextConsole Console;

    RoutingScene() {
        Server.Load();
        Server.Put("F:\\BRIVANE\\B-DB\\USERLIST.INI", "[USER]\nName: ANN\n\n[USER]\nName: BOB\n\n[USER]\nName: CARL\n");
        Server.Put(kRouting, Replaced(kBefore, "\n", "\r\n"));
        Server.Put("F:\\new.csv", "Kind,Number,User\nsubaddr,2,BOB\nsubaddr,1,ann\n");
        Server.Put("F:\\bad.csv", "Kind,Number,User\nsubaddr,2,ZOE\n");
    }
    std::string File() { return Replaced(Server.Get(kRouting), "\r\n", "\n"); }
};

const test::CommandCase kCases[] = {
    {"try --sender 44 --subaddr 1 --for ANN", 0, "subaddr\t1\tANN\ncopy\tANN\tBOB\nsender\t+44\tBOB\n", ""},
    {"try --subaddr 9", 0, "", "No rule routes it.\n"},
    {"export", 0,
     "Kind,Sender,Organisation,Addressee,Number,User,Target,Delete\r\nsender,+44,Smith,ANN,,BOB,,\r\n"
     "subaddr,,,,1,ANN,,\r\nforward,,,,,ANN,BOB,NO\r\n",
     ""},
    {"import 'F:\\new.csv'", 0, "", "Added 1 inward rule, changed 0\n",
     Replaced(kBefore, "1: ANN\n", "1: ANN\n2: BOB\n")},
    {"import 'F:\\bad.csv'", 1, "", "F:\\bad.csv, line 2, column 3: no such user ZOE\n"},
    {"add forward CARL BOB", 0, "", "Added forwarding rule CARL\n",
     Replaced(kBefore, "\"BOB\" \n", "\"BOB\"\n") + "CARL: \"\" LAN-ANY \"BOB\" \n"},
    {"add forward BOB ANN", 1, "", "Keep this rule? [y/N] No (nobody to ask; --yes answers Yes)\n"},
    {"add sender + ANN BOB", 1, "", "Sender identifier: \"+\" - an identifier has a letter or a digit.\n"},
};

TEST(RoutingCommand, Verbs) { test::ExpectEach<RoutingScene>(kCases, kBefore, "routing "); }

} // namespace
} // namespace bv::console
