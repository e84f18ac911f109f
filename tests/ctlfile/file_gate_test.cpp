#include "ctlfile/file_gate.h"

#include <gtest/gtest.h>

#include "ctlfile/rewriter.h"
#include "support/memory_server.h"

namespace bv::test {
namespace {

const std::string kPath = "F:\\X\\Setup.ini";
const std::string kGate = "F:\\X\\SETUP.LCK";

TEST(FileGate, KeepsOutWhoReplacesTheFileAndWhoRewritesItInPlace) {
    MemoryServer server;
    server.Put(kPath, "[A]\r\nk: 1\r\n");
    server.Put(kGate, ""); // as a crash leaves it
    {
        const auto other = server.Files.Open(kGate, {platform::Access::ReadWrite, platform::Deny::ReadingAndWriting});
        EXPECT_FALSE(FileGate(kPath));
        EXPECT_GE(server.Clock.Milliseconds, kGatePatience * 1000);
        EXPECT_FALSE(UpdateControlFile(kPath, {"[A]", "k:", "2"}));
        EXPECT_EQ(server.Get(kPath), "[A]\r\nk: 1\r\n");
    }
    {
        const FileGate gate(kPath);
        const FileGate again(kPath);
        EXPECT_TRUE(gate && again);
        EXPECT_EQ(server.Files.Open(kGate, {}).Error, platform::FileError::AccessDenied);
        EXPECT_TRUE(UpdateControlFile(kPath, {"[A]", "k:", "2"})) << "the holder itself may";
    }
    EXPECT_EQ(server.Get(kGate), "(none)");
}

TEST(FileWait, ShowsAfterHalfASecondWhichFileIsWaitedFor) {
    MemoryServer server;
    server.Put(kPath, "");
    server.Put(kGate, "");
    const auto holds = [&](const std::string& path) {
        return server.Files.Open(path, {platform::Access::ReadWrite, platform::Deny::ReadingAndWriting});
    };
    const std::pair<std::string, std::string> cases[] = {{kPath, kPath}, {kGate, kGate}}; // held, named
    for (const auto& [held, named] : cases) {
        const auto other = holds(held);
        server.Front.Waits.clear();
        EXPECT_FALSE(held == kPath ? bool{OpenToRead(kPath)} : bool{FileGate(kPath)});
        const std::string text = "Waiting for file " + named + ", which another program holds";
        EXPECT_EQ(server.Front.Waits.front(), "begins: ");
        ASSERT_GE(server.Front.Waits.size(), 3U);
        EXPECT_EQ(server.Front.Waits[1], "lasts: " + text);
        EXPECT_EQ(server.Front.Waits[2], "ends: " + text);
    }
    server.Front.Waits.clear();
    EXPECT_TRUE(OpenToRead(kPath));
    EXPECT_TRUE(server.Front.Waits.empty());
}

} // namespace
} // namespace bv::test
