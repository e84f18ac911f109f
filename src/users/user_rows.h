// Users, user groups and mail user profiles as rows of a list.
#pragma once

#include <string_view>

#include "shell/row_table.h"

namespace bv {

enum class UserListKind { Users, Groups, Profiles };

// The columns of users and profiles: name, full name, group, name on the network, e-mail name, what rights differ from
// those of a plain user ("Admin, no Urgent"; group administrators excepted), the printers for received and for sent
// faxes.
enum UserColumn {
    kUserName,
    kUserFullname,
    kUserGroup,
    kUserNetwork,
    kUserMail,
    kUserRights,
    kUserPrinting,
    kUserColumns
};

// And of groups: name, full name, number of members, the printer for received faxes.
enum GroupColumn { kGroupName, kGroupFullname, kGroupMembers, kGroupPrinting, kGroupColumns };

// Reads all of a kind in one pass (groups with a second one, for their members) in file order, the default record
// excepted. False, with what was read, after 413 or 9011.
bool ReadUserRows(UserListKind kind, RowTable& rows);

} // namespace bv
