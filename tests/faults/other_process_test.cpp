// Rewrites of a file that another process wants, too.
#include <thread>

#include <gtest/gtest.h>

#include "console/text_console.h"
#include "ctlfile/rewriter.h"
#include "platform/processes.h"
#include "platform/requests.h"
#include "support/recording_front.h"
#include "support/temporary_directory.h"

namespace bv::test {
namespace {

// A process that holds the control file until it is told to let go.
class Holder {
  public:
    Holder(const TemporaryDirectory& directory, const std::string& openingAndDenial) : directory_(directory) {
        directory.Write("signal", "");
        directory.Write("signal.state", "");
        program_ = platform::TheProcesses().Start("lock_holder " + directory.Path("SETUP.INI") + " " +
                                                  openingAndDenial + " " + directory.Path("signal"));
        EXPECT_TRUE(WaitUntil([&] { return directory.Read("signal.state") == "held"; }));
    }
    ~Holder() { LetGo(); }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

    void LetGo() const {
        std::error_code ignored;
        std::filesystem::remove(directory_.HostPath("signal"), ignored);
        EXPECT_TRUE(WaitUntil([&] { return program_.Started && !program_.Started->IsRunning(); }));
    }

  private:
    const TemporaryDirectory& directory_;
    platform::StartResult program_;
};

class OtherProcess : public testing::Test {
  protected:
    OtherProcess() { directory_.Write("SETUP.INI", kBefore); }
    ~OtherProcess() override { WaitAtMost(5); }

    static void WaitAtMost(int seconds) { OpenShared("", "", seconds); }
    static inline const std::string kBefore = "[A]\r\nk: 1\r\n";

    const TemporaryDirectory directory_;
    const std::string path_ = directory_.Path("SETUP.INI");
    const KeyChange change_{"[A]", "k:", "2"};
    RecordingFront front_;
};

TEST_F(OtherProcess, ThatKeepsTheFileIsWaitedForInVain) {
    WaitAtMost(1);
    for (const char* opening : {"r -", "w x"}) { // a reader, and another rewrite
        SCOPED_TRACE(opening);
        const Holder holder(directory_, opening);
        const std::int64_t start = platform::TheClock().Ticks();
        EXPECT_FALSE(UpdateControlFile(path_, change_));
        EXPECT_GE(platform::TheClock().Ticks() - start, 1000);
        EXPECT_GT(front_.Peeks, 0) << "the system must get its turn";

        TextConsole console;
        EXPECT_EQ(console.Run({"file", "set", path_, "A", "k", "2"}), 1);
        EXPECT_TRUE(console.Notices.ends_with("Unable to open file " + path_ + "\n")) << console.Notices;
        holder.LetGo();
        EXPECT_EQ(directory_.Read("SETUP.INI"), kBefore);
        EXPECT_FALSE(directory_.Has("SETUP.TMP"));
    }
}

TEST_F(OtherProcess, ThatLetsGoInTimeIsWaitedFor) {
    for (const char* opening : {"r -", "w x"}) {
        SCOPED_TRACE(opening);
        directory_.Write("SETUP.INI", kBefore);
        front_.Peeks = 0;
        const Holder holder(directory_, opening);
        std::thread later([&] {
            platform::TheClock().Sleep(200);
            holder.LetGo();
        });
        EXPECT_TRUE(UpdateControlFile(path_, change_));
        later.join();
        EXPECT_GT(front_.Peeks, 0) << "the file was not held";
        EXPECT_EQ(directory_.Read("SETUP.INI"), "[A]\r\nk: 2\r\n");
    }
}

TEST_F(OtherProcess, ThatChangesTheFileTooLosesNothing) {
    constexpr int kKeys = 100;
    const platform::StartResult other =
        platform::TheProcesses().Start("key_writer " + path_ + " other " + std::to_string(kKeys));
    ASSERT_TRUE(other.Started);
    int set = 0;
    for (int n = 1; n <= kKeys; ++n)
        set += UpdateControlFile(path_, {"[KEYS]", "own" + std::to_string(n) + ":", "set"});
    EXPECT_EQ(set, kKeys);
    EXPECT_TRUE(WaitUntil([&] { return !other.Started->IsRunning(); }));

    const std::string text = directory_.Read("SETUP.INI");
    for (int n = 1; n <= kKeys; ++n) {
        for (const char* prefix : {"\nown", "\nother"}) {
            EXPECT_NE(text.find(prefix + std::to_string(n) + ": set\r\n"), std::string::npos) << prefix << n;
        }
    }
    EXPECT_FALSE(directory_.Has("SETUP.TMP"));
}

} // namespace
} // namespace bv::test
