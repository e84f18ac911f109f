#include <gtest/gtest.h>

#include "console/text_console.h"
#include "platform/files.h"
#include "support/temporary_directory.h"

namespace bv::console {
namespace {

using test::TemporaryDirectory;
using test::TextConsole;

std::string Title(const std::string& path) { return "--- " + path + "\n+++ " + path + '\n'; }

struct DiffCase {
    const char* Name;
    std::string Before;
    std::string Value;
    std::string Diff; // below the title
};

const DiffCase kDiffs[] = {
    {"nothing changes", "[A]\r\nK: 1\r\n", "1", ""},
    {"three lines around each change",
     "1\r\n2\r\n3\r\n4\r\n5 \r\n6\r\n7\r\n8\r\n9\r\n10\r\n11\r\n12\r\n[A]\r\nK: 1\r\n", "2",
     "@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5 \n+5\n 6\n 7\n 8\n@@ -11,4 +11,4 @@\n 11\n 12\n [A]\n-K: 1\n+K: 2\n"},
    {"line ends that become CR LF", "[A]\nK: 1\r\n", "1", "@@ -1,2 +1,2 @@\n-[A]^J\n+[A]\n K: 1\n"},
    {"an unfinished last line", "[A]\r\nK: 1", "1",
     "@@ -1,2 +1,2 @@\n [A]\n-K: 1\n\\ No newline at end of file\n+K: 1\n"},
    {"bytes as they are", "[A]\r\nK: \xFC\r\n", "\xE4", "@@ -1,2 +1,2 @@\n [A]\n-K: \xFC\n+K: \xE4\n"},
};

TEST(DryRun, ShowsWhatWouldChangeAndWritesNothing) {
    const TemporaryDirectory directory;
    const std::string path = directory.Path("SETUP.INI");
    for (const auto& [name, before, value, diff] : kDiffs) {
        SCOPED_TRACE(name);
        directory.Write("SETUP.INI", before);
        TextConsole console;
        EXPECT_EQ(console.Run({"--dry-run", "file", "set", path, "A", "K", value}), 0);
        EXPECT_EQ(console.Results, diff.empty() ? "" : Title(path) + diff);
        EXPECT_EQ(console.Notices, "");
        EXPECT_EQ(directory.Read("SETUP.INI"), before);
        EXPECT_FALSE(directory.Has("SETUP.TMP"));
    }
}

TEST(DryRun, ShowsNoPasswordUnlessItIsToBeRevealed) {
    const TemporaryDirectory directory;
    const std::string path = directory.Path("LINK.INI");
    directory.Write("LINK.INI", "[LINK]\r\nLinkPassword: one\n; linkpassword=two\r\nK: 1\r\n");
    TextConsole console;
    EXPECT_EQ(console.Run({"--dry-run", "file", "set", path, "LINK", "K", "2"}), 0);
    EXPECT_EQ(console.Results, Title(path) + "@@ -1,4 +1,4 @@\n [LINK]\n-LinkPassword: ********^J\n"
                                             "+LinkPassword: ********\n ; linkpassword=********\n-K: 1\n+K: 2\n");
    EXPECT_EQ(console.Run({"--dry-run", "file", "set", path, "LINK", "LinkPassword", "new", "--json"}), 0);
    EXPECT_EQ(console.Results.find("one"), std::string::npos);
    EXPECT_EQ(console.Results.find("two"), std::string::npos);
    EXPECT_NE(console.Results.find("+LinkPassword: ******** (new)\\n"), std::string::npos);
    EXPECT_EQ(console.Run({"--reveal", "--dry-run", "file", "set", path, "LINK", "K", "2"}), 0);
    EXPECT_EQ(console.Results, Title(path) + "@@ -1,4 +1,4 @@\n [LINK]\n-LinkPassword: one^J\n"
                                             "+LinkPassword: one\n ; linkpassword=two\n-K: 1\n+K: 2\n");
    EXPECT_EQ(console.Run({"file", "list", path, "LINK"}), 0);
    EXPECT_EQ(console.Results, "LinkPassword: ********\nK: 1\n");
    EXPECT_EQ(console.Run({"file", "get", path, "LINK", "LinkPassword"}), 0);
    EXPECT_EQ(console.Results, "********\n");
    EXPECT_EQ(console.Run({"file", "get", path, "LINK", "LinkPassword", "--reveal"}), 0);
    EXPECT_EQ(console.Results, "one\n");
    EXPECT_EQ(console.Run({"file", "set", path, "LINK", "LinkPassword", "********"}), 1);
    EXPECT_EQ(console.Notices, "LinkPassword: eight asterisks stand for the stored password.\n");
}

TEST(DryRun, IsOneJsonDocument) {
    const TemporaryDirectory directory;
    directory.Write("SETUP.INI", "[A]\r\nK: \xFC\r\n");
    TextConsole console;
    EXPECT_EQ(console.Run({"file", "delete", directory.Path("SETUP.INI"), "A", "K", "--json", "--dry-run"}), 0);
    EXPECT_EQ(console.Results.rfind("{\n  \"changes\": [\n    {\n      \"path\": \"", 0), 0U);
    const std::string end = "@@ -1,2 +1,1 @@\\n [A]\\n-K: \xC3\xBC\\n\"\n    }\n  ],\n  \"starts\": []\n}\n";
    ASSERT_GT(console.Results.size(), end.size());
    EXPECT_EQ(console.Results.substr(console.Results.size() - end.size()), end);
}

} // namespace
} // namespace bv::console
