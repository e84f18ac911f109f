// A user's rights: the keys of a "[USER]" record of the user list that say what the user may do, when faxes may be sent
// and which classes of number may be dialled.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ctlfile/control_stream.h"

namespace bv {

inline constexpr std::uint16_t kEveryDay = 127;           // bit 0 Sunday to bit 6 Saturday
inline constexpr std::uint32_t kEveryDialClass = 0x7FFFF; // bit 0 Local, 1 to 9 National, 10 to 18 International

// A daily period with the days it is limited to; also a routing rule's time and the off-peak period.
struct SendTimeRange {
    std::int16_t FromHour = 0;
    std::int16_t FromMinute = 0;
    std::int16_t ToHour = 0; // 24:00 is the end of the day
    std::int16_t ToMinute = 0;
    std::uint16_t Days = 0;
    friend bool operator==(const SendTimeRange&, const SendTimeRange&) = default;
};

// What a record without a "SendTime:" has.
inline constexpr SendTimeRange kAnyTime = {0, 0, 0, 0, kEveryDay};

// Bits of UserPermissions::Flags.
enum PermissionFlag : std::uint8_t {
    kNetworkEdit = 1, // messages over the network
    kUrgent = 2,      // send urgent messages
    kAdmin = 4,
    kRushToTop = 8,    // move messages to the top of the queue
    kPrivateEdit = 16, // private messages
    kSubmitAny = 32,   // submit on behalf of any user
    kGroupAdmin = 64,  // read, never written: its line is kept as an unknown one
};
inline constexpr std::uint8_t kDefaultPermissionFlags = 0x73; // of a record without their keys

// A cleared block permits nothing.
struct UserPermissions {
    SendTimeRange SendTime;
    std::uint32_t DialMask = 0;
    std::uint8_t Flags = 0;
    friend bool operator==(const UserPermissions&, const UserPermissions&) = default;
};

// What ReadUserPermissions found wrong.
enum class PermissionFault : std::uint16_t {
    None = 0,
    UserNotFound = 0xF029,
    FileUnreadable = 0xF02A,
    Dial = 0xF02B,
    NetworkEdit = 0xF02C,
    SendTime = 0xF02D,
    Urgent = 0xF02E,
    Admin = 0xF02F,
    RushToTop = 0xF032,
    PrivateEdit = 0xF039,
    SubmitAny = 0xF03A,
    GroupAdmin = 0xF03D,
};

// The permissions that are a word: an empty value or one that begins with "Y" grants, one that begins with "N" denies.
struct PermissionKey {
    std::string_view Key;
    PermissionFlag Flag;
    PermissionFault Fault;
};
inline constexpr std::array kPermissionKeys = {
    PermissionKey{"Urgent:", kUrgent, PermissionFault::Urgent},
    PermissionKey{"Admin:", kAdmin, PermissionFault::Admin},
    PermissionKey{"NetworkEdit:", kNetworkEdit, PermissionFault::NetworkEdit},
    PermissionKey{"RushToTop:", kRushToTop, PermissionFault::RushToTop},
    PermissionKey{"PrivateEdit:", kPrivateEdit, PermissionFault::PrivateEdit},
    PermissionKey{"SubmitAny:", kSubmitAny, PermissionFault::SubmitAny},
    PermissionKey{"GroupAdmin:", kGroupAdmin, PermissionFault::GroupAdmin},
};
inline constexpr std::string_view kDialKey = "Dial:";
inline constexpr std::string_view kSendTimeKey = "SendTime:";

// Reads the permission keys of the record whose body the stream stands in or, with a user's name, of that user's
// record, and leaves the stream where it was. Without a stream the user list is opened for the call. A value that is
// wrong keeps what it had already set, and the last wrong key is reported; after UserNotFound and FileUnreadable the
// block is as it was. Shows nothing.
PermissionFault ReadUserPermissions(ControlStream* stream, std::optional<std::string_view> userName,
                                    UserPermissions& permissions);

// Puts the value of a word, a "SendTime:" or a "Dial:" key into the block. False for a value of another form, which
// keeps what it had already set.
bool ParsePermission(std::string_view value, PermissionFlag flag, std::uint8_t& flags);
bool ParseSendTime(std::string_view value, SendTimeRange& range);
bool ParseDialPermissions(std::string_view value, std::uint32_t& dialMask);

// The file forms of the last two: at most 53 and 63 characters. False, with nothing stored, when the size of the place,
// its terminator included, is below 54 and 64.
bool FormatSendTime(std::string& text, std::size_t size, const UserPermissions& permissions);
bool FormatDialPermissions(std::string& text, std::size_t size, const UserPermissions& permissions);

// Whether a person may enter the text: a value as above, with times from 00:00 to 24:00 of two digits each.
bool IsValidSendTime(std::string_view text);

// Whether the user list keeps these times: it has a "SendTime:" only when both the period and the days are limited,
// and a record without one reads as kAnyTime.
bool IsSendTimeWritten(const SendTimeRange& range);
bool IsSendTimeKept(const SendTimeRange& range);

} // namespace bv
