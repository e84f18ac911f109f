// What a person does to the mail list, whole, and what the user list's changes mean for it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "users/user_actions.h"

namespace bv {

// Whether the mail list can keep a text as an e-mail name; 9190 is what is said of one that it cannot keep.
bool IsEmailName(std::string_view emailName);
bool CheckEmailName(std::string_view emailName); // false after 9190

// Adds a mail user, in place of that of the previous name if there is one. The name must pass IsEmailName, and the
// server user be in the user list; it is written as it stands there. Status 455. False after 9190, a message about the
// user list, or those of AddMailUser.
bool EnableMailUser(std::string_view serverName, std::string_view emailName,
                    std::optional<std::string_view> previousEmailName);

// Removes a mail user as RemoveMailUser does; asks 9148 first about one whose faxes go under another name. False after
// a message; without a list that is 413.
bool DisableMailUser(std::string_view serverName, std::string_view emailName);

// A record of the list by what it is found by.
struct ListedMailUser {
    std::string Brivname;
    std::string Emailname;
};

// Removes records after the question, in one rewrite. Status 474 for each, and 9229 for several. False when the answer
// is No, and after 413 and the messages of ChangeMailUsers.
bool DisableMailUsers(std::span<const ListedMailUser> users);

// Lets users of the mail system send, all under the name of one server user, in one rewrite; when that is a profile of
// the mail system, each with an account name. Of those that are in the list already, 9426 asks whether they are
// replaced. Status 464 and 455, or 9445. What is wrong, and of which user, after 9423 to 9425, 9190, "Brivane user %s
// not found" or a message about a file; without a message when an answer is No.
struct NewMailUser {
    std::string Emailname;
    std::string Account; // of a profile
};
struct EnableFault {
    enum class Field { List, ServerUser, Emailname, Account } Where = Field::List;
    std::size_t User = 0;
};
std::optional<EnableFault> EnableMailUsers(std::string_view serverName, std::span<const NewMailUser> users);

// Gives a record another e-mail name: the person has got another one in the mail system. One that has the name already
// gives way, after 9426. Status 474, 455. False after 9190 or a message of ChangeMailUsers.
bool RenameMailUser(const ListedMailUser& user, std::string_view newName);

// Offers to upgrade a list that needs it (9420).
void OfferUpgrade();

// When the person has done with mail users: while some are to be disabled in the mail system, offers to have the list
// of its users made anew (9422), and forgets the mark.
void OfferToRemakeUserList(std::uintptr_t ownerWindow);

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
