#include <gmock/gmock.h>

#include "console/text_console.h"
#include "support/memory_server.h"

namespace bv::console {
namespace {

using test::MemoryServer;
using test::TextConsole;
using testing::HasSubstr;

const std::string kStem = "F:\\X\\SETUP.";
const std::string kTorn = "[A]\r\nk: 1\r\nm: 2\r\nm: 2\r\n";
const std::string kWhole = "[A]\r\nk: 1\r\nl: 2\r\nm: 2\r\n";
const std::string kDiff =
    "--- F:\\X\\SETUP.INI\n+++ F:\\X\\SETUP.INI\n@@ -1,4 +1,4 @@\n [A]\n k: 1\n+l: 2\n m: 2\n-m: 2\n";

struct Case {
    const char* Name;
    std::string Extension; // of what is left
    std::string Left;
    std::vector<std::string> Options;
    std::string Answer; // "": nobody is there
    int Status;
    std::string Notice; // part of what is said
};

const Case kCases[] = {
    {"nobody to ask", "TMP", kWhole, {}, "", 0, "the text until now is kept as SETUP.old\nUpdated file"},
    {"yes", "TMP", kWhole, {}, "y", 0, "Put the text of file F:\\X\\SETUP.TMP in the place of that of file"},
    {"no", "TMP", kWhole, {}, "n", 1, "[y/N] "},
    {"yes beforehand", "TMP", kWhole, {"--yes"}, "n", 0, "Updated file F:\\X\\SETUP.INI\n"},
    {"put aside by a writer", "SAV", kWhole, {}, "", 0, "Updated file"},
    {"a part, and nobody to ask", "TMP", "[A]\r\nk: 1\r\nl", {}, "", 1, "not complete"},
    {"a part, and yes", "TMP", "[A]\r\nk: 1\r\nl", {}, "y", 0, "not complete"},
    {"another file's", "TMP", "[B]\r\n", {}, "", 1, "There is no text of a save that was cut off beside file"},
    {"the same text", "SAV", kTorn, {}, "", 1, "There is no text"},
};

TEST(RecoverCommand, ShowsWhatIsLeftAndPutsItInPlace) {
    for (const Case& one : kCases) {
        SCOPED_TRACE(one.Name);
        MemoryServer server; // no start-up
        server.Put(kStem + "INI", kTorn);
        server.Put(kStem + one.Extension, one.Left);
        TextConsole console;
        console.Terminal = !one.Answer.empty();
        console.Input = {one.Answer};
        std::vector<std::string> arguments = {"recover", kStem + "INI"};
        arguments.insert(arguments.end(), one.Options.begin(), one.Options.end());
        EXPECT_EQ(console.Run(arguments), one.Status);
        EXPECT_THAT(console.Notices, HasSubstr(one.Notice));
        EXPECT_EQ(console.Results == kDiff, one.Left == kWhole) << console.Results;
        const bool isDone = one.Status == 0;
        EXPECT_EQ(server.Get(kStem + "INI"), isDone ? one.Left : kTorn);
        EXPECT_EQ(server.Get(kStem + "old"), isDone ? kTorn : "(none)");
        EXPECT_EQ(server.Get(kStem + one.Extension), isDone ? "(none)" : one.Left);
        EXPECT_EQ(server.Files.List("F:\\X", "*.S*"),
                  std::vector<std::string>(one.Extension == "SAV" && !isDone, "SETUP.SAV"));
    }
}

TEST(RecoverCommand, RehearsesAndOffersOneTextAfterTheOther) {
    MemoryServer server;
    server.Put(kStem + "INI", kTorn);
    server.Put(kStem + "TMP", "[A]\r\nnewer\r\n");
    server.Put(kStem + "SAV", kWhole);
    server.Put(kStem + "old", "older");
    TextConsole console;
    EXPECT_EQ(console.Run({"recover", kStem + "INI", "--dry-run"}), 0);
    EXPECT_THAT(console.Results, HasSubstr("+newer\n"));
    EXPECT_EQ(server.Get(kStem + "INI"), kTorn);
    console.Terminal = true;
    console.Input = {"no", "yes"};
    EXPECT_EQ(console.Run({"recover", kStem + "INI"}), 0);
    EXPECT_EQ(server.Get(kStem + "INI"), kWhole);
    EXPECT_EQ(server.Get(kStem + "old"), "older");
    EXPECT_EQ(server.Get(kStem + "ol2"), kTorn);
    EXPECT_EQ(server.Get(kStem + "SA2"), "[A]\r\nnewer\r\n") << "what was not agreed to stays";
}

// Start-up and each list verb open a file in more than one place, and say it once.
TEST(RecoverCommand, IsPointedToByWhateverOpensTheFile) {
    MemoryServer server;
    server.Load();
    server.Put("F:\\BRIVANE\\B-COVER\\MSGDIR.CTL", "[DIRECTORY]\r\n");
    server.Put("F:\\BRIVANE\\B-DB\\USERLIST.INI", "[USER]\r\nName: A\r\n");
    const struct {
        std::vector<std::string> Arguments;
        std::string File; // without its extension
        std::string Left;
    } cases[] = {
        {{"option", "list"}, "B-DB\\SETUP", "[OPTIONS]\r\nLCR: NO\r\n"},
        {{"device", "list"}, "B-DB\\SETUP", "[OPTIONS]\r\nLCR: NO\r\n"},
        {{"paths"}, "B-DB\\SETUP", "[OPTIONS]\r\nLCR: NO\r\n"},
        {{"user", "list"}, "B-DB\\USERLIST", "[USER]\r\nName: B\r\n"},
        {{"coversheet", "installable"}, "B-COVER\\MSGDIR", "[DIRECTORY]\r\nFile: A \"a\"\r\n"},
    };
    for (const auto& [arguments, file, left] : cases) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        server.Put("F:\\BRIVANE\\" + file + ".TMP", left);
        TextConsole console;
        EXPECT_EQ(console.Run(arguments), 0);
        const std::size_t at = console.Notices.find("'bvctl recover' shows it\n");
        EXPECT_NE(at, std::string::npos) << console.Notices;
        EXPECT_EQ(console.Notices.find("'bvctl recover'", at + 1), std::string::npos) << console.Notices;
        server.Files.Delete("F:\\BRIVANE\\" + file + ".TMP");
    }
}

// A replacement that was cut off has left only the new text, which is put in place by this verb alone.
TEST(RecoverCommand, GivesTheNewTextItsNameWhereTheFileIsGone) {
    for (const std::string& left : {kWhole, std::string("\r\n"), std::string("[A]\r\nk: 1")}) {
        MemoryServer server;
        server.Put(kStem + "new", left);
        TextConsole console;
        EXPECT_EQ(console.Run({"recover", kStem + "INI"}), left == kWhole ? 0 : 1);
        EXPECT_EQ(server.Get(kStem + "INI"), left == kWhole ? kWhole : "(none)");
        EXPECT_EQ(server.Get(kStem + "new"), left == kWhole ? "(none)" : left);
    }
}

} // namespace
} // namespace bv::console
