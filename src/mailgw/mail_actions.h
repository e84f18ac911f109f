// What a person does to the mail list, whole, and what the user list's changes mean for it.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "users/user_actions.h"

namespace bv {

// Whether the mail list can keep a text as an e-mail name; 9190 is what is said of one that it cannot keep.
bool IsEmailName(std::string_view emailName);

// Adds a mail user, in place of that of the previous name if there is one. The name must pass IsEmailName, and the
// server user be in the user list; it is written as it stands there. Status 455. False after 9190, a message about the
// user list, or those of AddMailUser.
bool EnableMailUser(std::string_view serverName, std::string_view emailName,
                    std::optional<std::string_view> previousEmailName);

// Removes a mail user as RemoveMailUser does; asks 9148 first about one whose faxes go under another name. False after
// a message; without a list that is 413.
bool DisableMailUser(std::string_view serverName, std::string_view emailName);

// UpgradeMailList, and the note that the server must be restarted.
bool UpgradeWholeMailList();

// Has the mail list follow the user list from now on: a user who gets a mail name is added, one who loses it or goes is
// removed, another name replaces the old one's record. A record of another server user under that e-mail name is left
// alone. The default user and the profiles of the mail system (a mail name that begins with "(" or "*") stand for no
// mail user; of mail users who stay behind a deleted profile, warning 9191 tells.
void FollowUserList();

// Such changes of many users, in one rewrite; false, after a message, when the list cannot follow. That a user who goes
// is not in the list is said, but no reason to keep the user.
bool FollowUsers(std::span<const UserChange> users);

} // namespace bv
