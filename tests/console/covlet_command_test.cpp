#include <gtest/gtest.h>

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

struct Step {
    std::string Command;
    int Status;
    std::string Results;
    std::string Notices;
    std::string After; // the catalogue
};

const Step kSteps[] = {
    {"coversheet list", 0, "Memo\tB\xFCro\n", "", kBefore},
    {"coversheet list --json", 0, "[\n  {\n    \"Name\": \"Memo\",\n    \"Description\": \"B\xC3\xBCro\"\n  }\n]\n", "",
     kBefore},
    {"coversheet installable", 0, "ALPHA\nLIST\n", "", kBefore},
    {"coversheet add list 'A list'", 0, "", "Added coversheet LIST\n",
     "[DIRECTORY]\r\nFile: LIST     \"A list\"\r\nFile: Memo     \"B\xFCro\"\r\n"},
    {"coversheet add alpha '' --json", 0, "{\n  \"status\": \"Added coversheet ALPHA\"\n}\n",
     "Added coversheet ALPHA\n", "[DIRECTORY]\r\nFile: ALPHA    \"\"\r\nFile: Memo     \"B\xFCro\"\r\n"},
    {"coversheet add MEMO x", 1, "", "Coversheet MEMO is already installed\n", kBefore},
    {"coversheet add NINECHARS x", 1, "", "Name: \"NINECHARS\" - the catalogue keeps names of at most 8 characters.\n",
     kBefore},
    {"coversheet add 'MY COV' x", 1, "",
     "Name: \"MY COV\" - the catalogue keeps no name with a blank, a comma or a quote.\n", kBefore},
    {"coversheet add ../OUT x", 1, "", NoFileName("../OUT"), kBefore},
    {"coversheet rename MEMO Note", 0, "", kUpdating + kUpdated + "Modified coversheet Memo\n",
     "[DIRECTORY]\r\nFile: Memo \"Note\"\r\n"},
    {"coversheet rename memo B\xFCro", 0, "", "", kBefore},
    {"coversheet rename memo " + std::string(51, 'x'), 1, "", "A description has at most 50 characters\n", kBefore},
    {"coversheet rename memo '3\" margin'", 1, "", "A description cannot contain a double quote\n", kBefore},
    {"coversheet delete MEMO", 1, "",
     "Deleting coversheet Memo - B\xFCro\n\nAre you sure? [y/N] No (nobody to ask; --yes answers Yes)\n", kBefore},
    {"coversheet delete MEMO --yes", 0, "", kUpdating + kUpdated + "Deleted coversheet Memo\n", "[DIRECTORY]\r\n"},
    {"coversheet view alpha", 1, "",
     "This coversheet cannot be viewed since graphics file ALPHA.G3F or ALPHA.G3N cannot be found in directory "
     "F:\\BRIVANE\\B-COVER\\\n",
     kBefore},
    {"letterhead list", 1, "", "Unable to open file F:\\BRIVANE\\B-LETTER\\MSGDIR.CTL\n", kBefore},
};

// A server with a catalogue of one entry, and files of two coversheets that are not in it.
class CovletCommand : public testing::Test {
  protected:
    CovletCommand() {
        Server.Load();
        Server.Put(kCatalogue, kBefore);
        Server.Put("F:\\BRIVANE\\OUT.EPN", "");
        for (const char* file : {"MEMO.G3F", "ALPHA.EPN", "LIST.EPN", "NINECHARS.EPN", "MY COV.EPN", "A,B.EPN"})
            Server.Put("F:\\BRIVANE\\B-COVER\\" + std::string(file), "");
    }
    MemoryServer Server;
    TextConsole Console;
};

TEST_F(CovletCommand, DoesWhatTheDialogDoes) {
    for (const auto& [command, status, results, notices, after] : kSteps) {
        SCOPED_TRACE(command);
        Server.Put(kCatalogue, kBefore);
        EXPECT_EQ(Console.Type(command), status);
        EXPECT_EQ(Console.Results, results);
        EXPECT_EQ(Console.Notices, notices);
        EXPECT_EQ(Server.Get(kCatalogue), after);
    }
}

TEST_F(CovletCommand, AsksOnATerminal) {
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

TEST_F(CovletCommand, SaysThatAnItemWasNotDeleted) {
    const platform::OpenResult holder =
        Server.Files.Open("F:\\BRIVANE\\B-COVER\\MSGDIR.TMP",
                          {platform::Access::ReadWrite, platform::Deny::Writing, platform::Creation::CreateNew});
    EXPECT_EQ(Console.Run({"coversheet", "delete", "MEMO", "--yes"}), 1);
    EXPECT_EQ(Console.Notices, "Unable to open file F:\\BRIVANE\\B-COVER\\MSGDIR.TMP\n"
                               "Unable to delete coversheet Memo\n");
    EXPECT_EQ(Server.Get(kCatalogue), kBefore);
}

TEST_F(CovletCommand, SaysOnATerminalWhichFileItWaitsFor) {
    const platform::OpenResult holder =
        Server.Files.Open(kCatalogue, {platform::Access::ReadWrite, platform::Deny::ReadingAndWriting});
    const std::string unable = "Unable to open file " + kCatalogue + "\n";
    EXPECT_EQ(Console.Run({"coversheet", "list"}), 1);
    EXPECT_EQ(Console.Notices, unable);
    Console.Terminal = true;
    EXPECT_EQ(Console.Run({"coversheet", "list"}), 1);
    EXPECT_EQ(Console.Notices, "Waiting for file " + kCatalogue + ", which another program holds\n" + unable);
}

TEST_F(CovletCommand, StartsTheServersPrograms) {
    const std::string viewer = "\"F:\\BRIVANE\\BRIVANE.EXE\" \"F:\\BRIVANE\\B-COVER\\MEMO.G3F\"";
    EXPECT_EQ(Console.Run({"coversheet", "view", "memo", "--dry-run"}), 0);
    EXPECT_EQ(Console.Results, "Would start " + viewer + "\n");
    EXPECT_EQ(Console.Run({"letterhead", "edit", "*", "--dry-run", "--json"}), 0);
    EXPECT_EQ(Console.Results,
              "{\n  \"changes\": [],\n  \"starts\": [\n    \"F:\\\\BRIVANE\\\\i386\\\\covedit.exe *\"\n  ]\n}\n");
    EXPECT_EQ(Server.Processes.Started, std::vector<std::string>());

    EXPECT_EQ(Console.Run({"coversheet", "view", "memo"}), 0);
    EXPECT_EQ(Console.Run({"coversheet", "edit", "MEMO"}), 0);
    EXPECT_EQ(Server.Processes.Started,
              (std::vector<std::string>{"restored: " + viewer, "F:\\BRIVANE\\i386\\covedit.exe MEMO"}));
}

} // namespace
} // namespace bv::console
