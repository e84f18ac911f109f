#include "console/command_case.h"
#include "console/text_console.h"
#include "support/memory_server.h"

namespace bv::console {
namespace {

using test::MemoryServer;
using test::TextConsole;

const std::string kCatalogue = "F:\\BRIVANE\\B-COVER\\MSGDIR.CTL";
const std::string kBefore = "[DIRECTORY]\r\nFile: Memo     \"B\xFCro\"\r\n";
const std::string kUpdating = "Updating file F:\\BRIVANE\\B-COVER\\MSGDIR.CTL\n";
const std::string kUpdated = "Updated file F:\\BRIVANE\\B-COVER\\MSGDIR.CTL\n";

std::string NoFileName(const std::string& name) {
    return "Name: \"" + name + "\" - a name is that of a file in the directory, without its path.\n";
}

const test::CommandCase kCases[] = {
    {"coversheet list", 0, "Memo\tB\xFCro\n", ""},
    {"coversheet list --json", 0, "[\n  {\n    \"Name\": \"Memo\",\n    \"Description\": \"B\xC3\xBCro\"\n  }\n]\n",
     ""},
    {"coversheet installable", 0, "ALPHA\nLIST\n", ""},
    {"coversheet add list 'A list'", 0, "", "Added coversheet LIST\n",
     "[DIRECTORY]\r\nFile: LIST     \"A list\"\r\nFile: Memo     \"B\xFCro\"\r\n"},
    {"coversheet add alpha '' --json", 0, "{\n  \"status\": \"Added coversheet ALPHA\"\n}\n",
     "Added coversheet ALPHA\n", "[DIRECTORY]\r\nFile: ALPHA    \"\"\r\nFile: Memo     \"B\xFCro\"\r\n"},
    {"coversheet add MEMO x", 1, "", "Coversheet MEMO is already installed\n"},
    {"coversheet add ../OUT x", 1, "", NoFileName("../OUT")},
    {"coversheet rename MEMO Note", 0, "", kUpdating + kUpdated + "Modified coversheet Memo\n",
     "[DIRECTORY]\r\nFile: Memo \"Note\"\r\n"},
    {"coversheet rename memo B\xFCro", 0, "", ""},
    {"coversheet delete MEMO", 1, "",
     "Deleting coversheet Memo - B\xFCro\n\nAre you sure? [y/N] No (nobody to ask; --yes answers Yes)\n"},
    {"coversheet delete MEMO --yes", 0, "", kUpdating + kUpdated + "Deleted coversheet Memo\n", "[DIRECTORY]\r\n"},
    {"coversheet view alpha", 1, "",
     "This coversheet cannot be viewed since graphics file ALPHA.G3F or ALPHA.G3N cannot be found in directory "
     "F:\\BRIVANE\\B-COVER\\\n"},
    {"letterhead list", 1, "", "Unable to open file F:\\BRIVANE\\B-LETTER\\MSGDIR.CTL\n"},
};

// A server with a catalogue of one entry, and files of two coversheets that are not in it.
struct Scene {
    Scene() {
        Server.Load();
        Server.Put(kCatalogue, kBefore);
        Server.Put("F:\\BRIVANE\\OUT.EPN", "");
        for (const char* file : {"MEMO.G3F", "ALPHA.EPN", "LIST.EPN", "NINECHARS.EPN", "MY COV.EPN", "A,B.EPN"})
            Server.Put("F:\\BRIVANE\\B-COVER\\" + std::string(file), "");
    }
    std::string File() { return Server.Get(kCatalogue); }

    MemoryServer Server;
    TextConsole Console;
};
class CovletCommands : public testing::Test, public Scene {};

TEST(CovletCommand, DoesWhatTheDialogDoes) { test::ExpectEach<Scene>(kCases, kBefore); }

TEST_F(CovletCommands, AsksOnATerminal) {
    Console.Terminal = true;
    for (const char* no : {"", "n", "yesterday"}) {
        SCOPED_TRACE(no);
        Console.Input = {no};
        EXPECT_EQ(Console.Run({"coversheet", "delete", "MEMO"}), 1);
        EXPECT_EQ(Console.Notices, "Deleting coversheet Memo - B\xFCro\n\nAre you sure? [y/N] ");
        EXPECT_EQ(Server.Get(kCatalogue), kBefore);
    }
    for (const char* yes : {"y", " YES "}) {
        SCOPED_TRACE(yes);
        Server.Put(kCatalogue, kBefore);
        Console.Input = {yes};
        EXPECT_EQ(Console.Run({"coversheet", "delete", "MEMO"}), 0);
        EXPECT_EQ(Server.Get(kCatalogue), "[DIRECTORY]\r\n");
    }
}

TEST_F(CovletCommands, SaysOnATerminalWhichFileItWaitsFor) {
    const platform::OpenResult holder =
        Server.Files.Open(kCatalogue, {platform::Access::ReadWrite, platform::Deny::ReadingAndWriting});
    const std::string unable = "Unable to open file " + kCatalogue + "\n";
    EXPECT_EQ(Console.Run({"coversheet", "list"}), 1);
    EXPECT_EQ(Console.Notices, unable);
    Console.Terminal = true;
    EXPECT_EQ(Console.Run({"coversheet", "list"}), 1);
    EXPECT_EQ(Console.Notices, "Waiting for file " + kCatalogue + ", which another program holds\n" + unable);
}

TEST_F(CovletCommands, StartsTheServersPrograms) {
    const std::string viewer = "\"F:\\BRIVANE\\BRIVANE.EXE\" \"F:\\BRIVANE\\B-COVER\\MEMO.G3F\"";
    EXPECT_EQ(Console.Run({"coversheet", "view", "memo", "--dry-run"}), 0);
    EXPECT_EQ(Console.Results, "Would start " + viewer + "\n");
    EXPECT_EQ(Console.Run({"letterhead", "edit", "*", "--dry-run", "--json"}), 0);
    EXPECT_EQ(Console.Results,
              "{\n  \"changes\": [],\n  \"starts\": [\n    \"F:\\\\BRIVANE\\\\i386\\\\covedit.exe *\"\n  ]\n}\n");
    EXPECT_EQ(Server.Processes.Started, std::vector<std::string>());
}

} // namespace
} // namespace bv::console
