#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/processes.h"
#include "requests.h"
#include "support/temporary_directory.h"

namespace bv::test {
namespace {

using platform::Files;

// A second process that opens a file and keeps it open.
class Holder {
  public:
    Holder(const TemporaryDirectory& directory, const std::string& file, const Sharing& sharing)
        : directory_(directory) {
        directory.Write("signal", "");
        directory.Write("signal.state", "");
        const std::string program = platform::TheEnvironment().ProgramDirectory() + "\\lock_holder";
        program_ = platform::TheProcesses().Start("\"" + program + "\" \"" + file + "\" " + sharing.Access + " " +
                                                  sharing.Denial + " \"" + directory.Path("signal") + "\"");
    }
    ~Holder() { Kill(); }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

    // "held" or "refused", or what there is when it does not answer.
    [[nodiscard]] std::string State() const {
        if (!program_.Started) return "system error " + std::to_string(program_.SystemError);
        WaitUntil([&] { return directory_.Read("signal.state").ends_with("d"); });
        return directory_.Read("signal.state");
    }

    // Ends it without closing the file first.
    void Kill() const {
        std::error_code ignored;
        std::filesystem::remove(directory_.HostPath("signal"), ignored);
        WaitUntil([&] { return !program_.Started || !program_.Started->IsRunning(); });
    }

  private:
    const TemporaryDirectory& directory_;
    platform::StartResult program_;
};

TEST(Sharing, WithAnotherProcessWhichFreesTheFileByDying) {
    const TemporaryDirectory directory;
    directory.Write("SETUP.INI", "[OPTIONS]\r\n");
    for (std::size_t i = 0; i < std::size(kOpenings); ++i) {
        const Holder holder(directory, directory.Path("SETUP.INI"), kOpenings[i]);
        ASSERT_EQ(holder.State(), "held");
        EXPECT_EQ(TryAllOpenings(Files(), directory.Path("SETUP.INI")), kSharing[i]) << "row " << i;
        holder.Kill();
        EXPECT_EQ(TryAllOpenings(Files(), directory.Path("SETUP.INI")), "++++++") << "row " << i;
    }

    const platform::OpenResult held = Files().Open(directory.Path("SETUP.INI"), kOpenings[5].Request);
    EXPECT_EQ(Holder(directory, directory.Path("SETUP.INI"), kOpenings[0]).State(), "refused");
}

TEST(Sharing, RefusedChangesLeaveTheFileAsItWas) {
    const TemporaryDirectory directory;
    directory.Write("LINK.INI", "old");
    const std::string path = directory.Path("LINK.INI");

    const platform::OpenResult reader = Files().Open(path, {Access::Read, Deny::Nothing});
    const platform::OpenRequest truncating = {Access::ReadWrite, Deny::ReadingAndWriting, Creation::CreateOrTruncate};
    EXPECT_EQ(Files().Open(path, truncating).Error, FileError::AccessDenied);
    EXPECT_EQ(Files().Delete(path), FileError::AccessDenied);
    EXPECT_EQ(directory.Read("LINK.INI"), "old");

    EXPECT_EQ(reader.Opened->Close(), FileError::None);
    EXPECT_TRUE(Files().Open(path, truncating).Opened) << "a closed file is free before it is destroyed";
    EXPECT_EQ(directory.Read("LINK.INI"), "");
}

// Who has opened a file never holds one that is already deleted.
TEST(Sharing, AnOpenFileIsNotDeletedWhereManyMeet) {
    const TemporaryDirectory directory;
    const std::string path = directory.Path("LCREDIT.LOK");
    std::atomic<bool> stop = false;
    std::thread deleter([&] {
        while (!stop) Files().Delete(path);
    });
    int opened = 0;
    int gone = 0;
    for (int i = 0; i < 2000; ++i) {
        const platform::OpenRequest request{Access::ReadWrite, Deny::ReadingAndWriting, Creation::OpenOrCreate};
        const platform::OpenResult file = Files().Open(path, request);
        opened += file.Opened != nullptr;
        gone += file.Opened && !directory.Has("LCREDIT.LOK");
    }
    stop = true;
    deleter.join();
    EXPECT_GT(opened, 0);
    EXPECT_EQ(gone, 0);
}

} // namespace
} // namespace bv::test
