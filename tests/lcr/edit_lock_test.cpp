// The lock of the routing editors, and what they wait for.
#include "lcr/edit_lock.h"

#include <cstdlib>
#include <filesystem>

#include <gmock/gmock.h>

#include "lcr/fax_entry.h"
#include "platform/environment.h"
#include "platform/host_name.h"
#include "shell/server_paths.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/temporary_directory.h"

namespace bv::test {
namespace {

using platform::Access;
using platform::Deny;
using platform::FileError;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kLock = "F:\\BRIVANE\\B-REQ\\LCREDIT.LOK";
const std::string kHeader = "[BRIVANE]\r\nType: LCREditLock\r\nRevision: A\r\n";
const std::string kRefused = "error: LCR settings are being edited by another user.  Please try again later";

TEST(LcrEditLock, HoldsTheFileAgainstEverybodyUntilItIsReleased) {
    MemoryServer server;
    server.Load();
    const platform::OpenRequest look{Access::Read, Deny::Nothing};
    EXPECT_TRUE(RunLcrEditor([&] {
        EXPECT_EQ(server.Files.Open(kLock, look).Error, FileError::AccessDenied);
        return true;
    }));
    EXPECT_EQ(server.Get(kLock), kHeader);

    server.Put(kLock, "anything");
    EXPECT_FALSE(RunLcrEditor([] { return false; }));
    EXPECT_EQ(server.Get(kLock), "anything");
    UnlockLcrEdit();
    EXPECT_TRUE(LockLcrEdit());
    UnlockLcrEdit();
    EXPECT_EQ(server.Clock.Milliseconds, 0);
    EXPECT_THAT(server.Front.Said, IsEmpty());
}

// A clock during whose waiting a file is closed.
class ReleasingClock final : public platform::Clock {
  public:
    std::int64_t Milliseconds = 0;
    std::unique_ptr<platform::File>* Held = nullptr; // until 4.9 seconds
    std::int64_t Now() override { return Milliseconds; }
    std::int64_t Ticks() override { return Milliseconds; }
    void Sleep(std::int64_t milliseconds) override {
        EXPECT_EQ(milliseconds, 100);
        Milliseconds += milliseconds;
        if (Held != nullptr && Milliseconds == 4900) Held->reset();
    }
};

TEST(LcrEditLock, IsTriedForFiveSeconds) {
    for (const bool isReleased : {true, false}) {
        MemoryServer server;
        server.Load();
        server.Put(kLock, "");
        platform::OpenResult other = server.Files.Open(kLock, {Access::Read, Deny::Nothing});
        ReleasingClock clock;
        if (isReleased) clock.Held = &other.Opened;
        const platform::Substitute<platform::Clock> substitute(clock);
        bool wasRun = false;
        EXPECT_EQ(RunLcrEditor([&wasRun] { return wasRun = true; }), isReleased);
        EXPECT_EQ(wasRun, isReleased);
        EXPECT_EQ(clock.Milliseconds, isReleased ? 4900 : 5000);
        EXPECT_EQ(server.Front.Said, isReleased ? std::vector<std::string>{} : std::vector{kRefused});
    }
}

TEST(LcrEditLock, TellsWhoHoldsIt) {
    MemoryServer server;
    server.Load();
    server.Environment.Variables["USERNAME"] = "ANNA";
    const std::string held =
        "Held by ANNA on " + platform::HostName() + " since " + MomentText(ToCalendar(0)) + " (links)";
    std::string note;
    EXPECT_TRUE(RunLcrEditor(
        [&] {
            note = server.Get(LcrNotePath());
            EXPECT_EQ(DescribeLcrHolder(FindLcrHolder().value()), held);
            EXPECT_FALSE(LockLcrEdit());
            EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(kRefused, "status 2: " + held));
            return true;
        },
        "links"));
    EXPECT_EQ(server.Get(LcrNotePath()), "(none)");

    server.Put(LcrNotePath(), note); // left by one that died
    EXPECT_FALSE(FindLcrHolder());
    ASSERT_TRUE(LockLcrEdit());
    EXPECT_TRUE(FindLcrHolder());
    server.Put(LcrNotePath(), "[HOLDER]\r\nUser: ANNA\r\n");
    EXPECT_FALSE(FindLcrHolder());
    UnlockLcrEdit();

    FaultyFiles files(server.Files, {FaultKind::FailFromThenOn, 3, CallKind::Changes, FileError::DiskFull});
    const platform::Substitute<platform::FileSystem> substitute(files);
    EXPECT_TRUE(RunLcrEditor([&] { return !FindLcrHolder(); }));
}

TEST(LcrEditLock, IsNotHadWithoutItsFile) {
    MemoryServer server;
    server.Load();
    for (const auto& [error, words] :
         {std::pair{FileError::NotFound, "there is no such file or directory"},
          std::pair{FileError::AccessDenied, "access is denied"}, std::pair{FileError::DiskFull, "the disk is full"}}) {
        FaultyFiles files(server.Files, {FaultKind::FailFromThenOn, 1, CallKind::Changes, error});
        const platform::Substitute<platform::FileSystem> substitute(files);
        EXPECT_FALSE(LockLcrEdit());
        EXPECT_THAT(server.Front.TakeSaid(),
                    ElementsAre(kRefused, "status 2: The lock file " + kLock + " cannot be used: " + words));
    }
}

TEST(LcrReadiness, NamesTheFirstThatIsMissing) {
    const std::string general = "error: You must configure the General Settings for this server before LCR can be "
                                "enabled";
    const std::string links = "error: You must set up some links to remote servers before LCR can be enabled";
    const std::string destinations =
        "error: You must set up some fax destination definitions before LCR can be enabled";
    const std::string question =
        "ask warning: No routing rules have been configured.\n\nNo faxes will be sent via remote servers, but fax "
        "submissions may still be recieved from remote servers\n\nSet up rules now?";
    using enum LcrReadiness;
    const struct {
        bool HasGeneral;
        std::vector<std::string> Files;
        bool MayAsk;
        bool Answer;
        LcrReadiness Expected;
        std::string Said;
    } rows[] = {
        {false, {}, true, true, NotReady, general},
        {false, {"Link.ini", "Country.ini", "LCRRules.ini"}, true, true, NotReady, general},
        {true, {"LCRRULES.INI"}, true, true, NotReady, links},
        {true, {"country.ini"}, true, true, NotReady, links},
        {true, {"Link.ini"}, true, true, NotReady, destinations},
        {true, {"Link.ini", "Country.ini"}, true, true, SetUpRules, question},
        {true, {"Link.ini", "Country.ini"}, true, false, Ready, question},
        {true, {"Link.ini", "Country.ini"}, false, true, Ready, ""},
        {true, {"Link.ini", "Country.ini", "LCRRules.ini"}, true, true, Ready, ""},
    };
    for (const auto& row : rows) {
        MemoryServer server;
        server.Load();
        server.Front.Answer = row.Answer;
        for (const std::string& file : row.Files) server.Put("F:\\BRIVANE\\B-DB\\" + file, "");
        EXPECT_EQ(CheckLcrReady(row.HasGeneral, row.MayAsk), row.Expected);
        EXPECT_EQ(server.Front.Said, row.Said.empty() ? std::vector<std::string>{} : std::vector{row.Said});
        EXPECT_TRUE(row.Said != question || server.Front.Captions.back() == "Brivane Setup - Warning!");
    }
}

TEST(LcrButtons, WaitForWhatTheyNeed) {
    MemoryServer server;
    server.Load();
    EXPECT_EQ(UpdateLcrButtons(false, true), LcrButtons());
    EXPECT_EQ(UpdateLcrButtons(true, false), (LcrButtons{true, true, false, false}));
    EXPECT_EQ(UpdateLcrButtons(true, true), (LcrButtons{true, true, true, false}));
    server.Put("F:\\BRIVANE\\B-DB\\LINK.INI", "");
    EXPECT_EQ(UpdateLcrButtons(true, true), (LcrButtons{true, true, true, false}));
    server.Put("F:\\BRIVANE\\B-DB\\COUNTRY.INI", "");
    EXPECT_EQ(UpdateLcrButtons(true, true), (LcrButtons{true, true, true, true}));
    EXPECT_EQ(UpdateLcrButtons(true, false), (LcrButtons{true, true, false, false}));
    EXPECT_EQ(UpdateLcrButtons(false, true), LcrButtons());
}

} // namespace
} // namespace bv::test
