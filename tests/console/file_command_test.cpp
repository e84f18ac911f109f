#include <gtest/gtest.h>

#include "console/text_console.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::console {
namespace {

using test::MemoryServer;
using test::TextConsole;

const std::string kPath = "F:\\X\\SETUP.INI";

// A text of a control file as it is written.
std::string Crlf(std::string_view text) {
    std::string lines;
    for (const char c : text) lines += c == '\n' ? "\r\n" : std::string(1, c);
    return lines;
}

const std::string kSetup = Crlf("; notes\n[BRIVANE]\nType: X\n\n[OPTIONS]\n; why\nLogFile: A.LOG\nArea= F:\\\n"
                                "Alone\n\n[PRINT] x\nLogFile: B.LOG\nLogFile: C.LOG\n\n[OPTIONS]\nLogFile: D.LOG\n");

struct Reading {
    const char* Name;
    std::string Command; // on FILE
    int Status;
    std::string Results;
    std::string Notices;
};

const Reading kReadings[] = {
    {"paragraphs", "file list FILE", 0, "[BRIVANE]\n[OPTIONS]\n[PRINT] x\n[OPTIONS]\n", ""},
    {"lines of the first of a name, in any case", "file list FILE options", 0, "LogFile: A.LOG\nArea= F:\\\nAlone\n",
     ""},
    {"lines as JSON, a line without separator has no value", "file list FILE [OPTIONS] --json", 0,
     "[\n  {\n    \"key\": \"LogFile\",\n    \"value\": \"A.LOG\"\n  },\n  {\n    \"key\": \"Area\",\n    \"value\": "
     "\"F:\\\\\"\n  },\n  {\n    \"key\": \"Alone\",\n    \"value\": null\n  }\n]\n",
     ""},
    {"value of a key in any case", "file get FILE OPTIONS logfile", 0, "A.LOG\n", ""},
    {"value of a key with '='", "file get FILE [options] Area=", 0, "F:\\\n", ""},
    {"the separator that was given only", "file get FILE OPTIONS Area:", 1, "",
     "There is no key Area: in paragraph [OPTIONS] of file F:\\X\\SETUP.INI\n"},
    {"list of no such paragraph, named as a verb", "file list FILE get", 1, "",
     "There is no paragraph [get] in file F:\\X\\SETUP.INI\n"},
};

TEST(FileCommand, Reads) {
    MemoryServer server;
    server.Put(kPath, kSetup);
    for (const auto& [name, command, status, results, notices] : kReadings) {
        SCOPED_TRACE(name);
        TextConsole console;
        EXPECT_EQ(console.Type(test::Replaced(command, "FILE", kPath)), status);
        EXPECT_EQ(console.Results, results);
        EXPECT_EQ(console.Notices, notices);
    }
    EXPECT_EQ(server.Get(kPath), kSetup);
}

struct Writing {
    const char* Name;
    std::string Before;
    std::string Command; // on FILE
    std::string After;
};

const Writing kWritings[] = {
    {"set in place, and normalise", "[A]\nK: 1  \n\nL: 2\n", "file set FILE A K 'new one'", "[A]\nK: new one\nL: 2\n"},
    {"a key without separator has ':'", "[A]\nK= 1\n", "file set FILE A K 2", "[A]\nK= 1\nK: 2\n"},
    {"set takes the separator given", "[A]\nK: 1\n", "file set FILE A K= 2", "[A]\nK: 1\nK= 2\n"},
    {"set adds key and paragraph", "[A]\nK: 1\n", "file set FILE B L ''", "[A]\nK: 1\n\n[B]\nL:\n"},
    {"append moves the key to the end", "[A]\nK: 1\nL: 2\n", "file set FILE A K 3 --append", "[A]\nL: 2\nK: 3\n"},
    {"values that are words of the command line", "[file]\n", "file set FILE file get set", "[file]\nget: set\n"},
    {"delete every line of a key", "[A]\nK: 1\nL: 2\nK: 3\n", "file delete FILE A K", "[A]\nL: 2\n"},
    {"empty keeps the header and comments", "[A]\nK: 1\n; why\n[B]\nK: 2\n", "file empty FILE A",
     "[A]\n; why\n\n[B]\nK: 2\n"},
};

TEST(FileCommand, Writes) {
    for (const auto& [name, before, command, after] : kWritings) {
        SCOPED_TRACE(name);
        MemoryServer server;
        server.Put(kPath, before);
        TextConsole console;
        EXPECT_EQ(console.Type(test::Replaced(command, "FILE", kPath)), 0);
        EXPECT_EQ(console.Results, "");
        EXPECT_EQ(console.Notices, "Updating file F:\\X\\SETUP.INI\nUpdated file F:\\X\\SETUP.INI\n");
        EXPECT_EQ(server.Get(kPath), Crlf(after));
        EXPECT_EQ(server.Get("F:\\X\\SETUP.TMP"), "(none)");
    }
}

struct Refusal {
    const char* Name;
    std::string Command; // on FILE
    int Status;
    std::string Notice; // its beginning
};

const std::string kLongest(280 - 3, 'x'); // behind "K: "

const Refusal kRefusals[] = {
    {"delete of a missing key", "file delete FILE A L", 1, "There is no key L: in paragraph [A] of file"},
    {"delete in a missing paragraph", "file delete FILE B K", 1, "There is no paragraph [B] in file"},
    {"a line end in a value", "file set FILE A K '1\nL: 2'", 1, "VALUE holds a control character"},
    {"a value that the reader would cut", "file set FILE A K " + kLongest + "x", 1,
     "A line holds at most 280 characters"},
    {"a blank that the reader would lose", "file set FILE A K '1 '", 1, "Readers would lose the blank"},
    {"a key with the other separator", "file delete FILE A K=", 1, "There is no key K= in paragraph [A]"},
    {"a paragraph that the reader would cut", "file set FILE " + kLongest + "xx" + " K 1", 1,
     "A line holds at most 280 characters"},
    {"a comment as a key", "file set FILE A ;K 1", 2, "A key is a word"},
    {"a key with more behind its separator", "file get FILE A K:1", 2, "A key ends at its first"},
    {"no paragraph", "file set FILE [] K 1", 2, "A paragraph has a name"},
};

TEST(FileCommand, RefusesWhatWouldNotReadBack) {
    const std::string before = "[A]\nK: 1\n";
    MemoryServer server;
    server.Put(kPath, before);
    for (const auto& [name, command, status, notice] : kRefusals) {
        SCOPED_TRACE(name);
        TextConsole console;
        EXPECT_EQ(console.Type(test::Replaced(command, "FILE", kPath)), status);
        EXPECT_EQ(console.Results, "");
        EXPECT_EQ(console.Notices.substr(0, notice.size()), notice);
        EXPECT_EQ(server.Get(kPath), before);
    }

    TextConsole console;
    EXPECT_EQ(console.Run({"file", "set", kPath, "A", "K", kLongest}), 0);
    EXPECT_EQ(console.Run({"file", "get", kPath, "A", "K"}), 0);
    EXPECT_EQ(console.Results, kLongest + "\n");
}

TEST(FileCommand, ShowsNothingOfAFileThatCannotBeReadToItsEnd) {
    const std::vector<std::string> commands[] = {{"list"}, {"list", "A"}, {"get", "A", "K"}, {"delete", "A", "K"}};
    MemoryServer server;
    server.Put(kPath, "[A]\r\n;" + std::string(40'000, 'x') + "\r\nK: 1\r\n[B]\r\n");
    for (std::vector<std::string> arguments : commands) {
        SCOPED_TRACE(arguments.front());
        arguments.insert(arguments.begin(), "file");
        arguments.insert(arguments.begin() + 2, kPath);
        // The first look opens the file and the second asks its length; the first read asks again.
        test::FaultyFiles faulty(server.Files, {test::FaultKind::FailOnce, 5, test::CallKind::Looks});
        const platform::Substitute<platform::FileSystem> substitute(faulty);
        TextConsole console;
        EXPECT_EQ(console.Run(arguments), 1);
        EXPECT_EQ(console.Results, "");
        EXPECT_EQ(console.Notices, "Unable to read file F:\\X\\SETUP.INI to its end\n");
    }
}

TEST(FileCommand, TellsAFailedRewriteFromAFileThatCannotBeOpened) {
    MemoryServer server;
    server.Put(kPath, "[A]\n");
    platform::OpenResult holder = server.Files.Open(
        "F:\\X\\SETUP.TMP", {platform::Access::ReadWrite, platform::Deny::Writing, platform::Creation::CreateNew});
    TextConsole console;
    EXPECT_EQ(console.Run({"file", "set", kPath, "A", "K", "1"}), 1);
    EXPECT_EQ(console.Notices, "Updating file F:\\X\\SETUP.INI\nError updating file F:\\X\\SETUP.INI\n");

    holder = server.Files.Open(kPath, {platform::Access::Read, platform::Deny::Writing});
    EXPECT_EQ(console.Run({"file", "set", kPath, "A", "K", "1"}), 1);
    EXPECT_EQ(console.Notices, "Updating file F:\\X\\SETUP.INI\nUnable to open file F:\\X\\SETUP.INI\n");
    EXPECT_EQ(server.Get(kPath), "[A]\n");
}

} // namespace
} // namespace bv::console
