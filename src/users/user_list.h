// Looking into the user list: finding, listing and reading records. user_rewrite.h changes it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "users/user_file.h"
#include "users/user_record.h"
#include "voice/list_target.h"

namespace bv {

// A record as the list has it: what its lines are read as, and the lines themselves.
struct StoredRecord {
    std::string Name; // empty for what stands for a default record that is not there
    UserRecord Record;
    std::string Body; // without the header line
};

// The list opened for several looks in one pass over the file. To be closed before the list is changed.
class UserList {
  public:
    // Without a list, 413 has been shown, and no look finds anything.
    UserList();
    explicit operator bool() const { return bool{stream_}; }

    // Whether a record of the kind has the name, in any case.
    bool Has(std::string_view name, RecordKind kind) { return NameOf(name, kind).has_value(); }

    // The name as that record has it.
    std::optional<std::string> NameOf(std::string_view name, RecordKind kind);

    // As ReadUserRecord.
    bool ReadRecord(std::optional<std::string_view> name, UserRecord& record, RecordKind kind);

    // Reads the record of that name, which then is as the list has it. False also when there is none, after "Brivane
    // user %s not found" or "Brivane usergroup %s not found".
    bool ReadNamed(std::string& name, UserRecord& record, RecordKind kind);

    // The same two with the record's lines. None where those return false; the default record without a name.
    std::optional<StoredRecord> ReadStored(std::optional<std::string_view> name, RecordKind kind);

    // Whether what was looked for could be read; false after 9011.
    [[nodiscard]] bool IsRead() const;

  private:
    ControlStream stream_;
};

void ShowNotFound(std::string_view name, RecordKind kind);

// Every operation here returns false when the user list cannot be opened, after 413, or not be read to its end, after
// 9011.

enum class FindBy { Name, Username };
struct FoundEntry {
    bool Found = false;
    RecordName OtherName; // the Username: when found by name, the Name: when found by user name
};

// Looks for the first record with that name (or, by user name, with that Username:; an empty one matches none), and
// when `match` is given also with that Username: (Name:). All comparisons are without case.
bool FindUserListEntry(std::string_view key, FindBy by, std::optional<std::string_view> match, RecordKind kind,
                       FoundEntry& entry);

// Fills the record of that name, or of the default record without a name. False also when a named user is not there,
// after "Brivane user %s not found". A default user that is not there is warned of, and may dial and send at any time;
// a group that is not there leaves a cleared record.
bool ReadUserRecord(std::optional<std::string_view> name, UserRecord& record, RecordKind kind);

// Reads every record of the kind in one pass, in file order, default records included, until the visitor returns false.
using RecordVisitor = std::function<bool(const StoredRecord& record)>;
bool VisitUserRecords(RecordKind kind, const RecordVisitor& visit);

// Which records a list takes and how it shows them.
enum class UserSelection { None, AllUsers, MailProfiles }; // a profile's mail name begins with "(" or "*"
enum class UserListFormat { NameOnly, NameAndFullname, UsernameNameFullname };
struct UserListView {
    UserSelection Which = UserSelection::AllUsers;
    bool IncludeGroups = false; // after the users
    bool IncludeDefault = false;
    UserListFormat Format = UserListFormat::NameOnly;
    bool WithGroup = false; // as a last column
};

// A record as a view takes it, with the values that its format shows; they last while it is visited.
struct UserRow {
    std::string_view Name;
    std::string_view Fullname;
    std::string_view Username;
    std::string_view Group;
};
using RowVisitor = std::function<void(const UserRow& row)>;

// Visits what the view takes, in file order; or the users, the default user excepted, whose Group: is the group.
bool VisitUserRows(const UserListView& view, const RowVisitor& visit);
bool VisitGroupMembers(std::string_view group, const UserListView& view, const RowVisitor& visit);

// Empties the lists and adds a line to each for every record, in file order. Columns are parted as the list wants it,
// but always by tabs when the user name comes first.
bool FillUserList(ListTarget& list, ListTarget* secondList, const UserListView& view);

// Adds the members of the group.
bool FillGroupMemberList(std::string_view group, ListTarget& list, bool withFullname, bool withGroup);

// Whether a device name stands for the network connection ("NETWORK..."); whether it is a fax device (not
// "PRINT...", "NETWORK...", "HPPRINT..." or "PSPRINT...").
bool IsNetworkDevice(std::string_view deviceName);
bool IsFaxDevice(std::string_view deviceName);

} // namespace bv
