#include "ctlfile/file_gate.h"

#include <gmock/gmock.h>

#include <functional>

#include "ctlfile/replaced_file.h"
#include "ctlfile/rewriter.h"
#include "ctlfile/whole_file.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"

namespace bv::test {
namespace {

const std::string kPath = "F:\\X\\Setup.ini";
const std::string kGate = "F:\\X\\SETUP.LCK";
constexpr platform::OpenRequest kAlone = {platform::Access::ReadWrite, platform::Deny::ReadingAndWriting};

TEST(FileGate, KeepsOutWhoReplacesTheFileAndWhoRewritesItInPlace) {
    MemoryServer server;
    server.Put(kPath, "[A]\r\nk: 1\r\n");
    server.Put(kGate, ""); // as a crash leaves it
    {
        const auto other = server.Files.Open(kGate, kAlone);
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

// Somebody else does something when it has slept so often.
struct BusyClock final : platform::Clock {
    FakeClock Base;
    int Sleeps = 0;
    std::function<void(int)> OnSleep;
    std::int64_t Now() override { return Base.Now(); }
    std::int64_t Ticks() override { return Base.Ticks(); }
    void Sleep(std::int64_t milliseconds) override {
        Base.Sleep(milliseconds);
        OnSleep(++Sleeps);
    }
};

// As where a swap takes two steps, and somebody reads between them.
TEST(OpenToRead, WaitsForAFileThatIsMissingWhileItsGateIsHeld) {
    const struct {
        const char* Name;
        bool ComesBack;
        bool IsLetGo;
    } rows[] = {{"swapped", true, true}, {"deleted", false, true}, {"held for good", false, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.Name);
        MemoryServer server;
        server.Put(kGate, "");
        auto other = server.Files.Open(kGate, kAlone);
        EXPECT_FALSE(IsMissing(kPath)) << "it is about to come back";
        BusyClock clock;
        const platform::Substitute<platform::Clock> use(clock);
        clock.OnSleep = [&](int sleeps) {
            if (row.ComesBack && sleeps == 3) server.Put(kPath, "new");
            if (row.IsLetGo && sleeps == 5) other.Opened.reset();
        };
        EXPECT_EQ(OpenToRead(kPath, 10).Rest(), row.ComesBack ? "new" : "");
        EXPECT_EQ(clock.Sleeps, row.ComesBack ? 3 : row.IsLetGo ? 5 : 1000);
        EXPECT_EQ(IsMissing(kPath), !row.ComesBack && row.IsLetGo);
    }
}

// Each look finds the file back, and the opening after the first look finds it gone again.
TEST(OpenToRead, WaitsForAFileThatIsSwappedTwiceInARow) {
    const auto goneAt = [](int call) {
        return FaultPlan{FaultKind::FailOnce, call, CallKind::Looks, platform::FileError::NotFound};
    };
    for (int call = 1; call <= 4; ++call) {
        MemoryServer server;
        server.Put(kPath, "new");
        FaultyFiles second(server.Files, goneAt(call));
        FaultyFiles first(second, goneAt(1));
        const platform::Substitute<platform::FileSystem> use(first);
        EXPECT_TRUE(OpenToRead(kPath, 10)) << call;
    }
}

// The new text is given up only when the old one is surely there: who cannot open that may see it go.
TEST(ChangeReplacedFile, KeepsTheNewTextWhenTheLiveFileIsHeldTooLong) {
    const ReplacedFile file{kPath, "F:\\X\\Setup.new", ""};
    for (const bool mayBeRead : {false, true}) {
        MemoryServer server;
        server.Put(kPath, "[A]\r\n");
        platform::OpenResult other;
        const auto change = [&](const TextOfFile& live) {
            other = server.Files.Open(kPath, mayBeRead ? platform::OpenRequest{} : kAlone);
            return std::optional(live.Text + "k: 1\r\n");
        };
        EXPECT_FALSE(ChangeReplacedFile(file, change));
        EXPECT_GE(server.Clock.Milliseconds, kGatePatience * 1000);
        EXPECT_THAT(server.Front.TakeSaid(), testing::ElementsAre("error: Error updating file " + kPath));
        EXPECT_EQ(server.Get(file.NewPath), mayBeRead ? "(none)" : "[A]\r\nk: 1\r\n");
        other.Opened.reset();
        EXPECT_EQ(server.Get(kPath), "[A]\r\n");
    }
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
