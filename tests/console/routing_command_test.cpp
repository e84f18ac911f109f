// Inward routing from the console: the file before, one command, what it says, the file after.
#include <gmock/gmock.h>

#include "console/command_case.h"
#include "console/text_console.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::console {
namespace {

using test::Replaced;

const std::string kPath = "F:\\BRIVANE\\B-DB\\ROUTING.INI";
const std::string kRules = "[BRIVANE]\nType: RoutingInit\nRevision: A\n\n[SENDERID]\n@44: \"+44\" \"Smith\"\nANN: BOB\n"
                           "\\(unaddressed): ANN\n@9: \"\" \"\"\n\n[SUBADDR]\n\\*1: ANN\n\n[FORWARD]\n"
                           "ANN: \"\" LAN-ANY \"BOB\" DELETE\n";
const std::string kUpdated = "Updated file " + kPath + "\n";

struct Case : test::CommandCase {
    Case(std::vector<std::string> arguments, int status, std::string results, std::string notices,
         std::string after = kRules)
        : CommandCase{std::move(arguments), status, std::move(results), std::move(notices), std::move(after)} {}
};

const Case kCases[] = {
    {{"routing", "list"},
     0,
     "sender\t+44\tSmith\tANN\tBOB\nsender\t+44\tSmith\t(unaddressed)\tANN\nsender\t9\t\t(none)\t(none)\n"
     "subaddr\t*1\tANN\nforward\tANN\tBOB\tYES\n",
     ""},
    {{"routing", "list", "forward", "--json"},
     0,
     "[\n  {\n    \"kind\": \"forward\",\n    \"user\": \"ANN\",\n    \"target\": \"BOB\",\n    \"delete\": true\n  "
     "}\n]\n",
     ""},
    {{"routing", "list", "fax"}, 1, "", "KIND: \"fax\" is not sender, subaddr or forward\n"},

    {{"routing", "add", "sender", "+4-4", "ann", "ann"},
     0,
     "",
     kUpdated,
     Replaced(kRules, "@44: \"+44\" \"Smith\"\nANN: BOB", "@44: \"+4-4\" \"Smith\"\nANN: ANN")},
    {{"routing", "add", "sender", "9", "(other)", "BOB", "--organisation", "Nine"},
     0,
     "",
     kUpdated,
     Replaced(kRules, "@9: \"\" \"\"", "@9: \"9\" \"Nine\"\n\\(other): BOB")},
    {{"routing", "add", "sender", "+", "ANN", "BOB"}, 1, "", "ID: \"+\" cannot be kept in the routing file\n"},
    {{"routing", "add", "sender", "1", "A=B", "BOB"}, 1, "", "ADDRESSEE: \"A=B\" cannot be kept in the routing file\n"},
    {{"routing", "add", "sender", "1", "ANN", "BOB", "--organisation", "a\"b"},
     1,
     "",
     "Organisation: \"a\"b\" cannot be kept in the routing file\n"},
    {{"routing", "add", "sender", "1", "NONE", "BOB"}, 1, "", "Brivane user NONE not found\n"},
    {{"routing", "add", "sender", "1", "ANN", "(unaddressed)"}, 1, "", "Brivane user (unaddressed) not found\n"},
    {{"routing", "add", "subaddr", "22", "@g"},
     0,
     "",
     kUpdated,
     Replaced(kRules, "\\*1: ANN\n", "\\*1: ANN\n22: @G\n")},
    {{"routing", "add", "subaddr", "2 2", "BOB"}, 1, "", "NUMBER: \"2 2\" cannot be kept in the routing file\n"},
    {{"routing", "add", "subaddr", "22", "@H"}, 1, "", "Brivane usergroup @H not found\n"},
    {{"routing", "add", "forward", "BOB", "ann", "--delete"},
     0,
     "",
     kUpdated,
     kRules + "BOB: \"\" LAN-ANY \"ANN\" DELETE\n"},
    {{"routing", "add", "forward", "ann", "BOB"}, 0, "", kUpdated, Replaced(kRules, "\"BOB\" DELETE", "\"BOB\" ")},
    {{"routing", "add", "forward", "BOB", "NONE"}, 1, "", "Brivane user NONE not found\n"},

    {{"routing", "delete", "sender", "44", "(UNADDRESSED)"},
     0,
     "",
     kUpdated,
     Replaced(kRules, "\\(unaddressed): ANN\n", "")},
    {{"routing", "delete", "sender", "+44"},
     0,
     "",
     kUpdated,
     Replaced(kRules, "@44: \"+44\" \"Smith\"\nANN: BOB\n\\(unaddressed): ANN\n", "")},
    {{"routing", "delete", "sender", "9"}, 0, "", kUpdated, Replaced(kRules, "@9: \"\" \"\"\n", "")},
    {{"routing", "delete", "sender", "9", ""}, 1, "", "There is no rule for addressee \n"},
    {{"routing", "delete", "sender", "44", "BOB"}, 1, "", "There is no rule for addressee BOB\n"},
    {{"routing", "delete", "sender", "4"}, 1, "", "There is no rule for sender 4\n"},
    {{"routing", "delete", "subaddr", "*1"}, 0, "", kUpdated, Replaced(kRules, "\\*1: ANN\n", "")},
    {{"routing", "delete", "subaddr", "*"}, 1, "", "There is no rule for sub-address *\n"},
    {{"routing", "delete", "forward", "Ann"},
     0,
     "",
     kUpdated,
     Replaced(kRules, "ANN: \"\" LAN-ANY \"BOB\" DELETE\n", "")},
    {{"routing", "delete", "forward", "BOB"}, 1, "", "There is no rule for user BOB\n"},
    {{"routing", "add", "fax"}, 2, "", "See 'bvctl routing add --help'.\n"},
};

struct Scene {
    test::MemoryServer Server;
    test::TextConsole Console;

    explicit Scene(const std::string& rules = kRules) {
        Server.Load();
        Server.Put("F:\\BRIVANE\\B-DB\\USERLIST.INI",
                   "[BRIVANE]\r\nType: UserList\r\n\r\n[USER]\r\nName: (default)\r\n\r\n[USER]\r\nName: Ann\r\n\r\n"
                   "[USER]\r\nName: BOB\r\n\r\n[GROUP]\r\nName: @G\r\n");
        if (!rules.empty()) Server.Put(kPath, Replaced(rules, "\n", "\r\n"));
    }
    std::string File() { return Replaced(Server.Get(kPath), "\r\n", "\n"); }
};

TEST(RoutingCommands, DoOneThingAndSayIt) {
    test::ExpectEach<Scene>(std::vector<test::CommandCase>(std::begin(kCases), std::end(kCases)), kRules);
}

TEST(RoutingCommands, FindASenderUnderAnotherKeyAndAllItsRecords) {
    const std::string head = "[BRIVANE]\nType: RoutingInit\nRevision: A\n\n[SENDERID]\n";
    Scene scene(head + "@+4-4: \"\" \"S\"\nANN: BOB\n@X: \"+7\" \"\"\nANN: BOB\n");
    EXPECT_EQ(scene.Console.Run({"routing", "add", "sender", "44", "BOB", "BOB"}), 0);
    EXPECT_EQ(scene.Console.Run({"routing", "delete", "sender", "+7", "ANN"}), 0);
    EXPECT_EQ(scene.File(), head + "@+4-4: \"44\" \"S\"\nANN: BOB\nBOB: BOB\n@X: \"+7\" \"\"\n");

    const std::string twice =
        head + "@1: \"1\" \"\"\nANN: BOB\n@44: \"44\" \"\"\nANN: BOB\n@+44: \"\"\n@44: \"44\"\nBOB: ANN\n";
    Scene doubled(twice);
    const std::string refusal =
        "ID: \"+44\" has 3 records in the routing file; delete the sender and add its rules again\n";
    EXPECT_EQ(doubled.Console.Run({"routing", "add", "sender", "+44", "BOB", "BOB"}), 1);
    EXPECT_EQ(doubled.Console.Notices, refusal);
    EXPECT_EQ(doubled.Console.Run({"routing", "delete", "sender", "+44", "BOB"}), 1);
    EXPECT_EQ(doubled.Console.Notices, refusal);
    EXPECT_EQ(doubled.File(), twice);
    EXPECT_EQ(doubled.Console.Run({"routing", "delete", "sender", "+44"}), 0);
    EXPECT_EQ(doubled.File(), head + "@1: \"1\" \"\"\nANN: BOB\n");
}

TEST(RoutingCommands, AddingMakesTheParagraph) {
    const std::string head = "[BRIVANE]\nType: RoutingInit\nRevision: A\n";
    Scene scene(head);
    EXPECT_EQ(scene.Console.Run({"routing", "add", "sender", "+44", "ANN", "BOB"}), 0) << scene.Console.Notices;
    EXPECT_EQ(scene.File(), head + "\n[SENDERID]\n@44: \"+44\" \"\"\nANN: BOB\n");
}

TEST(RoutingCommands, TheFirstListMakesTheFileUnlessItIsARehearsal) {
    Scene scene("");
    EXPECT_EQ(scene.Console.Run({"routing", "list", "--dry-run"}), 0);
    EXPECT_EQ(scene.File(), "(none)");
    EXPECT_EQ(scene.Console.Run({"routing", "list"}), 0);
    EXPECT_EQ(scene.Console.Notices, "Created new routing rules file (ROUTING.INI)\n");
    EXPECT_NE(scene.File(), "(none)");
}

TEST(RoutingCommands, TheKindsThatCanBeReadAreListedAndTheFaultCounts) {
    Scene scene(Replaced(kRules, "[SUBADDR]", "[OTHER]"));
    EXPECT_EQ(scene.Console.Run({"routing", "list"}), 1);
    EXPECT_THAT(scene.Console.Results, testing::EndsWith("sender\t9\t\t(none)\t(none)\nforward\tANN\tBOB\tYES\n"));
    EXPECT_THAT(scene.Console.Notices, testing::StartsWith("No Sub-address rules in routing file.  Add [SUBADDR] "));
}

} // namespace
} // namespace bv::console
