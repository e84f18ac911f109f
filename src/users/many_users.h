// One change of many users, in one pass over the user list and one rewrite of it.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/entered_values.h"
#include "users/user_actions.h"

namespace bv {

struct ManyUsersPlan {
    std::vector<RecordUpdate> Updates; // of the users that become otherwise
    std::vector<std::string> Faults;   // sentences, each with the user's name before it
};

// What the values make of the users of those names. None after 413, 9011, 9024 for a group that is not there or, for a
// name without a user, its "not found".
std::optional<ManyUsersPlan> PlanManyUsers(std::span<const std::string> names, const EnteredValues& values);

// What several users have of a key: "YES 2, NO 38", at most three values and how many have others.
struct ValueSummary {
    const RecordKey* Key;
    std::string Text;
};

// A summary for each key of users but their names and mail names. None after 413 or 9011.
std::optional<std::vector<ValueSummary>> SummariseUsers(std::span<const std::string> names);

// Writes a plan without faults. Status 9235 "Users changed: %d". False after a message, with nothing written: a user
// was changed by somebody else meanwhile (9025), or is gone.
bool ChangeManyUsers(const ManyUsersPlan& plan);

// Makes the users of some names members of a group, and those of others members of none. False after a message.
bool ChangeMembers(std::string_view group, std::span<const std::string> come, std::span<const std::string> gone);

} // namespace bv
