#include "shell/versions.h"

#include <gtest/gtest.h>

#include "shell/server_paths.h"
#include "support/memory_server.h"

namespace bv {
namespace {

using test::MemoryServer;

TEST(Versions, DigitsAreReadAsHexadecimalOnesAndALetterBehindThemIsTheRevision) {
    const std::tuple<std::string_view, int, char> cases[] = {
        {"5.50", 0x550, '\0'}, {"6.00b", 0x600, 'b'}, {"v10.5 beta", 0x105, ' '}, {"5.50bc", 0x550, 'b'},
        {"", 0, '\0'},         {"beta", 0, '\0'},     {"123456", 0x3456, '\0'},   {"4.1\xE4", 0x41, '\xE4'},
    };
    for (const auto& [text, number, revision] : cases) {
        EXPECT_EQ(ParseVersion(text).Number, number) << text;
        EXPECT_EQ(ParseVersion(text).Revision, revision) << text;
    }
}

TEST(Versions, TheServersIsInItsAreaAndMayBeMissing) {
    MemoryServer server;
    server.Load();
    Version version;
    FixedText<3> text;
    const std::pair<const char*, bool> cases[] = {
        {"", false},
        {"Server: 6.00\r\n", false},
        {"[VERSION]\r\nServer:6.00\r\n[OTHER]\r\nServer: 6.00\r\n", false},
        {"; by the server\r\n[VERSION]\r\nServer: 6.00b\r\n", true},
    };
    for (const auto& [file, found] : cases) {
        server.Put("F:\\BRIVANE\\SERVER\\VERSION.DAT", file);
        EXPECT_EQ(GetServerVersion(version), found) << file;
        EXPECT_EQ(GetServerVersionText(text), found) << file;
    }
    EXPECT_EQ(version, (Version{0x600, 'b'}));
    EXPECT_EQ(text, "6.0") << "cut to its place";
}

TEST(Versions, TheMailGatewaysIsAssumedWhenMissing) {
    MemoryServer server;
    server.Load();
    const std::tuple<const char*, Version, const char*> cases[] = {
        {"", {1360, '\0'}, "5.50"},
        {"[VERSION]\r\nMailGateway:6.00c\r\n", {1360, '\0'}, "5.50"}, // the blank is part of the key
        {"[VERSION]\r\nMailGateway: 6.00c\r\n", {1536, 'c'}, "6.00c"},
    };
    for (const auto& [file, expectedVersion, expectedText] : cases) {
        server.Put("F:\\BRIVANE\\B-MAIL\\VERSION.DAT", file);
        Version version;
        FixedText<20> text;
        EXPECT_TRUE(GetMailGatewayVersion(version));
        EXPECT_EQ(version, expectedVersion) << file;
        EXPECT_TRUE(GetMailGatewayVersionText(text));
        EXPECT_EQ(text, expectedText) << file;
    }
}

// In a process of its own this is also where the paths are loaded.
TEST(Versions, ThePathsAreLoadedFirstAndWithoutAMailAreaTheGatewayHasNoText) {
    MemoryServer server;
    server.Put("C:\\WINDOWS\\BRIVANE.INI",
               "[SERVER]\r\nAllUserArea: U\r\nRequestArea: R\r\nServerArea: F:\\S\r\nSystemArea: F:\\\r\n");
    server.Put("F:\\B-DB\\SETUP.INI", "");
    server.Put("F:\\S\\B-MAIL\\VERSION.DAT", "[VERSION]\r\nMailGateway: 6.00\r\n");
    if (!Paths().MailArea.IsEmpty()) LoadServerPaths();
    FixedText<20> text = "old";
    EXPECT_FALSE(GetMailGatewayVersionText(text));
    EXPECT_EQ(text, "");
    Version version;
    EXPECT_TRUE(GetMailGatewayVersion(version));
    EXPECT_EQ(version, (Version{0x600, '\0'}));
}

} // namespace
} // namespace bv
