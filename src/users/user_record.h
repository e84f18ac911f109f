// One record of the user list, and the one table of its keys, which reader, writer and faces walk.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ctlfile/control_stream.h"
#include "ctlfile/fixed_text.h"
#include "ctlfile/key_fields.h"
#include "users/permissions.h"
#include "users/user_file.h"

namespace bv {

using RecordName = FixedText<8>;

enum class SquashMode : std::uint16_t { None = 0, Vertical = 1, Yes = 2 };

struct PrinterChoice {
    FixedText<100> Device; // empty: the server's default
    FixedText<34> Bin;
    FixedText<74> Paper;
    SquashMode Squash = SquashMode::None;
    friend bool operator==(const PrinterChoice&, const PrinterChoice&) = default;
};

// Without its name, which the caller keeps.
struct UserRecord {
    FixedText<100> Fullname;
    FixedText<100> Group;
    FixedText<100> Username; // of the network; Netware and LanManager take it when they have none of their own
    FixedText<100> Netware;
    FixedText<100> LanManager;
    bool MailInbox = false;
    bool MailGateway = false;
    FixedText<256> MailName; // kept in the file only with one of the two above
    UserPermissions Permissions;
    PrinterChoice PrintSent;
    PrinterChoice PrintRecd;
    PrinterChoice PrintSent2;
    PrinterChoice PrintRecd2;
    bool SentOptionsAreDefault = false; // the words below do not count
    bool RecdOptionsAreDefault = false;
    bool SentMessage = false;
    bool RecdMessage = false;
    bool SentStatus = false;
    bool RecdStatus = false;
    bool RecdDelete = false;
    friend bool operator==(const UserRecord&, const UserRecord&) = default;
};

// A record and its name, as lists of changes hold them.
struct NamedRecord {
    std::string Name;
    UserRecord Record;
};

// Sets of kinds of record.
enum RecordSet : unsigned {
    kNoRecords = 0,
    kNamedUsers = 1,
    kDefaultUsers = 2,
    kNamedGroups = 4,
    kDefaultGroups = 8,
    kUsers = kNamedUsers | kDefaultUsers,
    kGroups = kNamedGroups | kDefaultGroups,
    kNamedRecords = kNamedUsers | kNamedGroups,
    kAllRecords = 15,
};

// One key beside "Name:".
struct RecordKey {
    // Its text is the value that is in force: that of the file, with "DEFAULT" for print options that are default. What
    // a person gives is taken by Store: not a value of another form, one over its limit or one that the file would not
    // give back; its rule says what is taken, as far as one value can say it.
    KeyField<UserRecord> Field;
    std::string_view Meaning; // a sentence for a person
    RecordSet ReadIn; // the permissions are read by ReadUserPermissions, the words of print options by Read alone
    RecordSet WrittenIn;

    // Takes a value of the file, or as much of it as counts.
    void (*Read)(UserRecord&, std::string_view value);

    // The value for its line; none when the line is not written.
    std::optional<std::string> (*Write)(const UserRecord&);
};

// In the order in which they are written. A key that the kinds write differently has a row for each; of the rows that a
// kind writes there is one for each key.
std::span<const RecordKey> RecordKeys();

// Whether records of the kind have the key's line.
bool HasKey(const RecordKey& key, RecordKind kind);

// Fills the record from the body that the stream stands in.
void ReadRecordBody(ControlStream& list, RecordKind kind, bool isDefault, UserRecord& record);

// The key lines of one record, then the lines of the old record's body that have none of the keys of any kind; those
// are cleaned as a reader cleans them, and end in CR LF.
std::string UserRecordLines(std::string_view name, const UserRecord& record, std::optional<std::string_view> oldBody,
                            RecordKind kind);

} // namespace bv
