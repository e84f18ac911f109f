// Where the control files of all areas refer to users, groups and printers, what becomes of these places, and the
// deletion.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/uses.h"
#include "users/user_actions.h"
#include "users/user_file.h"

namespace bv {

using Names = std::vector<std::string>;

// The places that name a user or a group: members of a group, rules, links, inward routing, the mail list, devices and
// options; those that would widen first; of a printer users, groups and options. None after a message: a file cannot be
// read.
std::optional<std::vector<Use>> FindUses(NamedThing kind, const Names& names);

// The first three of the names, and how many more there are.
std::string NamesText(const Names& names);

// 9213 "Places where %s %s is used: %d" or 9214 "%s %s is used nowhere".
std::string CountText(NamedThing kind, const Names& names, std::size_t count);

// Asks, with the places, whether what is named elsewhere is to go (AskDespiteUses). False also after
// a message of FindUses.
bool AgreeToDeletion(NamedThing kind, const Names& names);

// Whether the places can get that name, which is then spelled as in the list. False after 9215, "not found" or a
// message of the list.
bool CheckReplacement(NamedThing kind, const Names& names, std::string& by);

// Makes the change to every place, file by file, after all that can be checked: the name that they get, that all
// files can be read, and for rules and links the edit lock and that no changes of the rules wait for their save. Status
// 9216 of each file that was changed. False after a message: the last one is 9217 when a file cannot be changed, and
// those told of by then stay changed.
bool ChangeUses(NamedThing kind, const Names& names, UseChange change);

// Changes the places and then deletes the records (FindDeletable, DeleteRecords) or devices (CheckRemovable,
// RemoveDevices), which are looked for first. Asks nothing. False after a message.
bool DeleteWithUses(NamedThing kind, const Names& names, const UseChange& change, const SaveProgress& goOn);

// The same for what is used nowhere, after one question (DeleteUsers, DeleteDevices).
bool DeleteUnused(NamedThing kind, const Names& names, const SaveProgress& goOn);

// Whether the name is still there, as far as can be told.
bool IsThere(NamedThing kind, const std::string& name);

constexpr RecordKind RecordOf(NamedThing kind) {
    return kind == NamedThing::UserGroup ? RecordKind::Group : RecordKind::User;
}
constexpr NamedThing ThingOf(RecordKind kind) {
    return kind == RecordKind::Group ? NamedThing::UserGroup : NamedThing::User;
}

} // namespace bv
