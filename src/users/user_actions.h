// What a person does to users and user groups, whole: the directories, the user list, the mail list, the status text,
// and the note that the server must be restarted. For every face.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "users/user_entry.h"
#include "users/user_list.h"
#include "users/user_rewrite.h"

namespace bv {

// What an add box does on OK: the name must pass CheckNewName, and the record's group must be there.
bool CheckNewUser(UserList& list, std::string_view name, const UserRecord& record, RecordKind kind);

// Whether a new record can have the name: it passes FaultOfNewName and is neither a user's nor a group's. False after
// 9020 to 9023, 9232, 9233 or 9011.
bool CheckNewName(UserList& list, std::string_view name, RecordKind kind);

// Whether the record's Group: is empty or a user group of the list. False after 9024 or 9011.
bool CheckGroup(UserList& list, const UserRecord& record);

// The message that says why no new record can have the name: 9020 for its length, 9021 for a "(" at its front, 9022
// when directories cannot have it, 9232 and 9233 when a user's name begins with the mark of groups or a group's does
// not; none without a fault. Records that are there keep their names, whatever these are.
std::optional<std::string> FaultOfNewName(std::string_view name, RecordKind kind);

// Each of the next four returns whether everything was done as asked; when not, a message has said why (except a
// question answered No).

// Adds a record that CheckNewUser has passed: its directories first, and when they fail nothing else. Status 466 "Added
// user %s" or, after the message, 465 "Unable to add user %s", in which a group is "group NAME".
bool AddUser(std::string_view name, const UserRecord& record, RecordKind kind);

// Writes a record that a person has changed; one that is as before is left alone, and one that somebody else has
// changed meanwhile is not overwritten (9025). Status 456 "Modified %s %s".
bool UpdateUser(std::string_view name, const UserRecord& before, const UserRecord& after, RecordKind kind);

// The same for a record that was entered key by key, if it is to be written. Its keys that change without having been
// entered are said first, each a status text.
bool UpdateUser(const RecordEntry& entry);

// Adds the kind's default record to a list that has none, as new records begin without one; it has no directories.
// False after a message.
bool AddDefaultRecord(RecordKind kind);

// Asks 5193 and deletes a record the other way round: from the mail list, from the user list, then its directories.
// Status 473. When something of the directories is left, 9026 names it; to delete the name once more, which no record
// has any longer, then asks 9027 and removes the rest.
bool DeleteUser(std::string_view name, RecordKind kind);

// The records of those names, each once and named as in the list, if all of them can be deleted: none after 5021, "not
// found" or a message of the list.
std::optional<std::vector<NamedRecord>> FindDeletable(std::span<const std::string> names, RecordKind kind);

// Asked, with how many are done, whether to go on.
using SaveProgress = std::function<bool(std::size_t done)>;

// Deletes them as DeleteUser does, but asks nothing: from the mail list and from the user list in one rewrite of each,
// then their directories, before each of which the progress is asked. Status 473 of one, 9229 "Deleted %d %s" of
// several. False after a message: also 9026, which names what is left of directories, as when the progress says no.
bool DeleteRecords(std::span<const NamedRecord> records, RecordKind kind, const SaveProgress& goOn);

// The same for many names, after one question: 5193 for one of them, 9210 "Deleting %d %s".
bool DeleteUsers(std::span<const std::string> names, RecordKind kind, const SaveProgress& goOn);

// Adds and changes many at once, in one rewrite of the user list, and returns how many are in it. Before the
// directories of each added record are made, the progress is asked, with how many are done, whether to go on. When it
// says no, and when the directories of one fail, those before that one are still added, and nothing is updated.
struct RecordUpdate {
    std::string Name;
    UserRecord Before;
    UserRecord After;
};
struct SavedUsers {
    std::size_t Added = 0;
    std::size_t Updated = 0;
};
SavedUsers SaveUsers(std::span<const NamedRecord> added, std::span<const RecordUpdate> updated, RecordKind kind,
                     const SaveProgress& goOn);

// Keeps the mail list in step with the user list, for users with a mail name: told, all at once, of users with the
// record before (none for a new user) and after (none for one that goes). False after a message of its own. The area of
// the mail list installs it; without any, there is no mail list to keep.
struct UserChange {
    std::string_view Name;
    const UserRecord* Before = nullptr;
    const UserRecord* After = nullptr;
};
using MailListHook = std::function<bool(std::span<const UserChange> changes)>;
void SetMailListHook(MailListHook hook);

} // namespace bv
