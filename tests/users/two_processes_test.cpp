// Two processes that add users at the same time.
#include <algorithm>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/processes.h"
#include "platform/requests.h"
#include "shell/server_paths.h"
#include "support/temporary_directory.h"
#include "users/user_rewrite.h"
#include "voice/format.h"

namespace bv::test {
namespace {

constexpr int kUsers = 100; // of each process
const std::string kList = "B-DB\\USERLIST.INI";

std::string Groups() {
    std::string text;
    for (int n = 0; n < 2000; ++n) text += "[GROUP]\r\nName: 000\r\n; a note \n";
    return text;
}

// What is in the list before: lines that a reader would clean, and so many groups that a rewrite takes its time. New
// users go before the one in the middle or, from number 50 on, to the end.
const std::string kHead = "[BRIVANE]\nType: UserList \t\n; \x01\xff" + std::string(1000, 'x') + "\n";
const std::string kMiddle = "\r\n[user] \nname: 050\t \nX:\t1 \n\n" + Groups();

std::string Name(int number, const char* suffix) { return FormatText("%.3d%s", number, suffix); }

// The users of both processes, in the order of their bytes.
std::string Users(int first, int last) {
    std::string text;
    for (int n = first; n <= last; ++n) {
        for (const char* suffix : {"B", "a"})
            text += "\r\n[USER]\r\n" + UserRecordLines(Name(n, suffix), {}, {}, RecordKind::User);
    }
    return text;
}

TEST(TwoProcesses, AddTheirUsersInOrderAndChangeNothingElse) {
    const TemporaryDirectory disk;
    disk.Write("BRIVANE.INI",
               "[SERVER]\r\nAllUserArea: U\r\nRequestArea: R\r\nServerArea: S\r\nSystemArea: " + disk.Path() + "\r\n");
    disk.Write("B-DB\\SETUP.INI", "");
    disk.Write(kList, kHead + kMiddle);
    platform::TheEnvironment().SetVariable("BVAXINIT", disk.Path());
    const StatusCode loaded = LoadServerPaths();
    platform::TheEnvironment().SetVariable("BVAXINIT", "");
    ASSERT_EQ(loaded, kDone);

    const platform::StartResult other =
        platform::TheProcesses().Start("user_adder " + disk.Path() + " a " + std::to_string(kUsers));
    ASSERT_TRUE(other.Started);
    EXPECT_TRUE(WaitUntil([&] { return disk.Read(kList).find("001a") != std::string::npos; }));
    for (int n = 1; n <= kUsers; ++n) {
        EXPECT_TRUE(AddUserRecord(Name(n, "B"), {}, RecordKind::User));
        platform::TheClock().Sleep(1); // in which the other has its turn
    }
    EXPECT_TRUE(WaitUntil([&] { return !other.Started->IsRunning(); }));

    const std::string list = disk.Read(kList);
    const std::string expected = kHead + Users(1, 49) + kMiddle + Users(50, kUsers);
    const auto difference = static_cast<std::size_t>(std::ranges::mismatch(list, expected).in1 - list.begin());
    EXPECT_TRUE(list == expected) << "from here on: " << list.substr(difference, 200);
    EXPECT_FALSE(disk.Has("B-DB\\USERLIST.TMP"));
}

} // namespace
} // namespace bv::test
