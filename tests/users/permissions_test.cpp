// Permissions, send times and dial lists: what each value means, and that it comes back.
#include "users/permissions.h"

#include <gtest/gtest.h>

#include "ctlfile/reader.h"
#include "support/memory_server.h"
#include "voice/format.h"

namespace bv {
namespace {

using test::MemoryServer;

const std::string kList = "F:\\BRIVANE\\B-DB\\USERLIST.INI";

// A block as "flags dial-mask from-to days".
std::string Shown(const UserPermissions& p) {
    return FormatText("%x %x %.2d:%.2d-%.2d:%.2d %d", p.Flags, p.DialMask, p.SendTime.FromHour, p.SendTime.FromMinute,
                      p.SendTime.ToHour, p.SendTime.ToMinute, p.SendTime.Days);
}

struct Reading {
    const char* Body;
    const char* Block;
    PermissionFault Fault;
};

const Reading kReadings[] = {
    {"", "73 7ffff 00:00-00:00 127", PermissionFault::None},
    // words
    {"Admin: yes\nURGENT:n\nNetworkEdit: Nobody\nrushtotop:\nPrivateEdit: NO\nSubmitAny: N\nGroupAdmin: n\n",
     "c 7ffff 00:00-00:00 127", PermissionFault::None},
    {"Urgent: maybe\n", "73 7ffff 00:00-00:00 127", PermissionFault::Urgent},
    {"Admin: 1\nRushToTop: Y\n", "7b 7ffff 00:00-00:00 127", PermissionFault::Admin},
    {"Admin: Y\nSubmitAny: x\nNetworkEdit: x\nAdmin: N\n", "73 7ffff 00:00-00:00 127", PermissionFault::NetworkEdit},
    {"RushToTop: x\n", "73 7ffff 00:00-00:00 127", PermissionFault::RushToTop},
    {"PrivateEdit: x\n", "73 7ffff 00:00-00:00 127", PermissionFault::PrivateEdit},
    {"SubmitAny: x\n", "73 7ffff 00:00-00:00 127", PermissionFault::SubmitAny},
    {"GroupAdmin: x\n", "73 7ffff 00:00-00:00 127", PermissionFault::GroupAdmin},
    {" Admin: Y\n;Admin: Y\nAdministrator: Y\n", "73 7ffff 00:00-00:00 127", PermissionFault::None},
    // send times
    {"SendTime: AFTER 18:00\n", "73 7ffff 18:00-24:00 0", PermissionFault::None},
    {"SendTime: BEFORE 08:00 AFTER 18:00\n", "73 7ffff 18:00-08:00 0", PermissionFault::None},
    {"SendTime: before 00:00,after 9:5\n", "73 7ffff 09:05-24:00 0", PermissionFault::None},
    {"SendTime: AFTER 18:00 BEFORE 00:00 SUN\n", "73 7ffff 18:00-00:00 1", PermissionFault::None},
    {"SendTime: monday, fri\n", "73 7ffff 00:00-00:00 34", PermissionFault::None},
    {"SendTime:\tAFTERNOON\t+9:-5,,SATURN SAT\n", "73 7ffff 09:-05-24:00 64", PermissionFault::None},
    {"SendTime:\n", "73 7ffff 00:00-00:00 0", PermissionFault::None},
    {"SendTime: TUE\nSendTime: WED x\n", "73 7ffff 00:00-00:00 4", PermissionFault::None},
    {"SendTime: TUE AFTER\n", "73 7ffff 00:00-00:00 4", PermissionFault::SendTime},
    {"SendTime: AFTER WED 9:00\n", "73 7ffff 00:00-00:00 0", PermissionFault::SendTime},
    {"SendTime: AFTER 9 THU\n", "73 7ffff 00:00-00:00 0", PermissionFault::SendTime},
    {"SendTime: AFTER 9:\n", "73 7ffff 00:00-00:00 0", PermissionFault::SendTime},
    {"SendTime: AFTER 7:00 NEVER MON\nUrgent: N\n", "71 7ffff 07:00-24:00 0", PermissionFault::SendTime},
    {"SendTime: \"MON\"\n", "73 7ffff 00:00-00:00 0", PermissionFault::SendTime},
    {"SendTime: AFTER 99999999999:-99999999999\n", "73 7ffff 32767:-32767-24:00 0", PermissionFault::None},
    // dial lists
    {"Dial:\n", "73 0 00:00-00:00 127", PermissionFault::None},
    {"Dial: Local\n", "73 1 00:00-00:00 127", PermissionFault::None},
    {"Dial: national\n", "73 3fe 00:00-00:00 127", PermissionFault::None},
    {"Dial: INTERNATIONAL\n", "73 7fc00 00:00-00:00 127", PermissionFault::None},
    {"Dial: National1,3,9 International9,1\n", "73 4060a 00:00-00:00 127", PermissionFault::None},
    {"Dial: National 3\n", "73 3fe 00:00-00:00 127", PermissionFault::None},
    {"Dial: Local National2\nDial: International5\n", "73 4005 00:00-00:00 127", PermissionFault::None},
    {"Dial: National2 Local 3\n", "73 5 00:00-00:00 127", PermissionFault::Dial},
    {"Dial: 3\n", "73 0 00:00-00:00 127", PermissionFault::Dial},
    {"Dial: National0 Local\n", "73 0 00:00-00:00 127", PermissionFault::Dial},
    {"Dial: National12\n", "73 0 00:00-00:00 127", PermissionFault::Dial},
    {"Dial: Local1\n", "73 0 00:00-00:00 127", PermissionFault::Dial},
    {"Dial: Locals\nSendTime: x\n", "73 0 00:00-00:00 0", PermissionFault::SendTime},
};

TEST(ReadUserPermissions, TakesEachKeyAndReportsTheLastBadOne) {
    MemoryServer server;
    server.Load();
    UserPermissions untouched;
    EXPECT_EQ(ReadUserPermissions(nullptr, "IRIS", untouched), PermissionFault::FileUnreadable);
    EXPECT_EQ(untouched, UserPermissions());
    for (const auto& [body, block, fault] : kReadings) {
        const std::string text = std::string("[USER]\nName: IRIS\n") + body;
        server.Put(kList, "[USER]\nName: IRI\nDial:\n[USER]\nName: IRISH\nDial:\n" + text + "[USER]\nUrgent: N\n");
        UserPermissions permissions{{1, 2, 3, 4, 5}, 6, 7};
        EXPECT_EQ(ReadUserPermissions(nullptr, "iris", permissions), fault) << body;
        EXPECT_EQ(Shown(permissions), block) << body;

        server.Put(kList, text);
        ControlStream list = OpenShared(kList, "rb");
        ControlLine line;
        ASSERT_TRUE(ReadControlLine(list, line));
        const Position position = list.Tell();
        UserPermissions ofBody;
        EXPECT_EQ(ReadUserPermissions(&list, std::nullopt, ofBody), fault) << body;
        EXPECT_EQ(ofBody, permissions) << body;
        EXPECT_EQ(list.Tell(), position);
        EXPECT_EQ(ReadUserPermissions(&list, "Nobody", ofBody), PermissionFault::UserNotFound);
        EXPECT_EQ(list.Tell(), position);
        EXPECT_TRUE(server.Front.Said.empty());
    }
}

TEST(FormatPermissions, WritesTheFormsOfTheFile) {
    const struct {
        SendTimeRange Range;
        const char* Text;
    } times[] = {
        {{9, 0, 17, 30, 6}, "AFTER 09:00 BEFORE 17:30  MON TUE"},
        {{9, 5, 24, 0, 0}, "AFTER 09:05"},
        {{0, 0, 24, 0, 5}, ""},
        {{0, 0, 0, 0, 34}, "AFTER 00:00 BEFORE 00:00  MON FRI"},
        {{0, 30, 24, 30, 0}, "AFTER 00:30 BEFORE 24:30"},
        {{18, 0, 8, 0, 0xFFFF}, "AFTER 18:00 BEFORE 08:00  MON TUE WED THU FRI SAT SUN"},
    };
    for (const auto& [range, expected] : times) {
        std::string text = "old";
        EXPECT_FALSE(FormatSendTime(text, 53, {range, 0, 0}));
        EXPECT_EQ(text, "old");
        EXPECT_TRUE(FormatSendTime(text, 54, {range, 0, 0}));
        EXPECT_EQ(text, expected);
    }
    const struct {
        std::uint32_t DialMask;
        const char* Text;
    } lists[] = {
        {kEveryDialClass, "Local National International"},
        {kEveryDialClass & ~(1U << 9), "Local National1,2,3,4,5,6,7,8 International"},
        {0xFFFFFFFF, "Local National International"},
        {1, "Local"},
        {0, ""},
        {1U << 18 | 1U << 10 | 1U << 5, "National5 International1,9"},
    };
    for (const auto& [dialMask, expected] : lists) {
        std::string text = "old";
        EXPECT_FALSE(FormatDialPermissions(text, 63, {{}, dialMask, 0}));
        EXPECT_EQ(text, "old");
        EXPECT_TRUE(FormatDialPermissions(text, 64, {{}, dialMask, 0}));
        EXPECT_EQ(text, expected);
    }
}

TEST(IsValidSendTime, RefusesWhatIsNoTime) {
    for (const char* text : {"", " MON", "AFTER 9:00", "after 00:00 before 24:00", "SUN,SATURDAY,BEFORE 23:59"}) {
        EXPECT_TRUE(IsValidSendTime(text)) << text;
    }
    for (const char* text : {"AFTER 24:01", "AFTER 9:5", "AFTER 9:60", "AFTER 25:00", "AFTER 9:00pm", "AFTER +9:00",
                             "AFTER 009:00", "BEFORE 12:345", "BEFORE :30", "AFTER", "NEVER", "9:00", "BEFORE -1:00"}) {
        EXPECT_FALSE(IsValidSendTime(text)) << text;
    }
    std::uint32_t dialMask = 0;
    EXPECT_FALSE(ParseDialPermissions("National Local 3", dialMask));
}

TEST(SendTimes, AreWrittenOnlyWhenPeriodAndDaysAreLimited) {
    const struct {
        SendTimeRange Range;
        bool IsWritten;
        bool IsKept;
    } rows[] = {
        {{9, 0, 17, 0, 62}, true, true},    {{9, 0, 17, 0, 127}, false, false}, {{0, 0, 24, 0, 62}, false, false},
        {{0, 0, 24, 0, 127}, false, false}, {{0, 0, 0, 0, 127}, false, true},   {{0, 0, 0, 0, 0}, true, true},
        {{0, 0, 0, 0, 0xFF}, false, false}, {{0, 1, 24, 0, 0}, true, true},
    };
    for (const auto& [range, isWritten, isKept] : rows) {
        EXPECT_EQ(IsSendTimeWritten(range), isWritten) << Shown({range, 0, 0});
        EXPECT_EQ(IsSendTimeKept(range), isKept) << Shown({range, 0, 0});
    }
}

} // namespace
} // namespace bv
