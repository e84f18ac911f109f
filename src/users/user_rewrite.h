// Changing the user list. Every operation rewrites it once, through USERLIST.TMP, and holds it against everybody else
// from before it looks for the place of the change: two that change it at the same time do so one after the other.
// Lines outside the records concerned stay byte for byte.
//
// Each returns false after a message: 413, 5002 "Unable to create file %s", 5001 "Error writing to file %s", 5004
// "Unable to update file %s" or that a record is not there. The list is then unchanged, as far as copy_back.h can say
// that.
#pragma once

#include <span>
#include <string_view>

#include "users/user_record.h"

namespace bv {

// Adds a record before the first one of its kind whose name is greater, byte by byte, or at the end of the file. It
// takes over every line of the default record that has none of the record's keys. Whether the name is taken already
// is the caller's question.
bool AddUserRecord(std::string_view name, const UserRecord& record, RecordKind kind);

// Writes the record of that name, found in any case, with the name as given; lines with other keys stay behind it.
// Not there: "Brivane user %s not found" or "Brivane usergroup %s not found".
bool UpdateUserRecord(std::string_view name, const UserRecord& record, RecordKind kind);

// Removes a record and shows 473 "Brivane user%s %s deleted". Not there: as above. Default record: 5021.
bool DeleteUserRecord(std::string_view name, RecordKind kind);

// The same for many records in one rewrite, as if one by one, with the default record as it was before; of several
// updates of one record the last counts. When one of those to be updated or deleted is not there, nothing is changed.
struct UserListChanges {
    std::span<const NamedRecord> Added = {};
    std::span<const NamedRecord> Updated = {};

    // What somebody has looked at before, and may have become otherwise meanwhile: whether the names of Added must be
    // free of users and groups (9023), and what each of Updated must still be (9025); nothing, for whatever it is.
    bool NamesAreFree = false;
    std::span<const UserRecord> Before = {};

    std::span<const NamedRecord> Deleted = {}; // by their names alone; each must be there
};
bool ChangeUserRecords(const UserListChanges& changes, RecordKind kind);

// False, after 5021, for the name of a default record.
bool CheckDeletable(std::string_view name);

} // namespace bv
