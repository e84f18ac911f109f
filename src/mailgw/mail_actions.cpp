#include "mailgw/mail_actions.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ctlfile/lines.h"
#include "ctlfile/whole_file.h"
#include "mailgw/account_name.h"
#include "mailgw/mail_directory.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_messages.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "users/user_list.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

bool IsProfile(std::string_view mailName) { return mailName.starts_with('(') || mailName.starts_with('*'); }

// The mail user that a user's record makes; empty for none.
std::string_view MailUserOf(const UserRecord* record) {
    if (record == nullptr || IsProfile(record->MailName)) return {};
    return record->MailName;
}

bool HasChanged(bool isDone) {
    if (isDone) Startup().SettingsChanged = true;
    return isDone;
}

bool IsDone(MailListOutcome outcome) {
    if (outcome == MailListOutcome::NoList) ShowError(kUnableToOpenFile, PathOf(ServerFile::MailList));
    return HasChanged(outcome == MailListOutcome::Done);
}

// The name of the server user as the user list has it; none after a message.
std::optional<std::string> ListedUser(std::string_view name) {
    UserList list;
    if (!list) return {};
    std::optional<std::string> listed = list.NameOf(name, RecordKind::User);
    if (!list.IsRead()) return {};
    if (!listed) ShowNotFound(name, RecordKind::User);
    return listed;
}

// Whether a mail user may go although the faxes go under another name than the one that is given.
bool AgreeToOthers(std::string_view serverName, std::string_view emailName) {
    std::optional<MailUser> user;
    if (IsDefaultName(serverName)) return true; // which is refused anyway
    if (!FindMailUser(emailName, user)) return false;
    if (!user || EqualFolded(user->Brivname, serverName) || EqualFolded(EffectiveUser(*user), serverName)) return true;
    return AskWarning(kDeleteOtherMailUser, user->Emailname.View(), EffectiveUser(*user), serverName);
}

// A user whose mail user becomes another one; either may be empty.
struct Move {
    std::string_view Name;
    std::string_view From;
    std::string_view To;
};

// With the same name, a user who was taken off the mail list stays off it.
std::vector<Move> MovesOf(std::span<const UserChange> users) {
    std::vector<Move> moves;
    for (const auto& [name, before, after] : users) {
        const Move move = {name, MailUserOf(before), MailUserOf(after)};
        if (!IsDefaultName(name) && !EqualFolded(move.From, move.To)) moves.push_back(move);
    }
    return moves;
}

// The server users of e-mail names, each by the first record of the name.
class Owners {
  public:
    // Of all names that the moves have. False after 413 or 9011.
    bool Read(std::span<const Move> moves) {
        for (const Move& move : moves) {
            owners_.try_emplace(UpperText(move.From));
            owners_.try_emplace(UpperText(move.To));
        }
        return VisitMailUsers([&](const MailUser& user) {
            const auto asked = owners_.find(UpperText(user.Emailname));
            if (asked != owners_.end() && !asked->second) asked->second = user.Brivname.String();
            return true;
        });
    }
    [[nodiscard]] bool IsNobodys(std::string_view email) const { return !OwnerOf(email); }
    [[nodiscard]] bool Owns(std::string_view serverName, std::string_view email) const {
        const std::optional<std::string>& owner = OwnerOf(email);
        return owner && EqualFolded(*owner, serverName);
    }

  private:
    [[nodiscard]] const std::optional<std::string>& OwnerOf(std::string_view email) const {
        return owners_.at(UpperText(email));
    }
    std::unordered_map<std::string, std::optional<std::string>> owners_; // by e-mail names in upper case
};

// What a move means for the mail list; nothing when a record is there already, or is another user's.
std::optional<MailUserChange> ChangeFor(const Move& move, const Owners& owners) {
    const auto& [name, from, to] = move;
    const bool hasRecord = !from.empty() && owners.Owns(name, from);
    if (to.empty()) {
        if (!hasRecord && !owners.IsNobodys(from)) return {};
        return MailUserChange{name, from, {}};
    }
    if (hasRecord) return MailUserChange{name, from, to};
    if (owners.Owns(name, to)) return {};
    return MailUserChange{name, {}, to};
}

// Mail users may send under a profile's name without being known to the user list.
bool WarnOfLostProfile(const UserChange& user) {
    const auto& [name, before, after] = user;
    if (before == nullptr || after != nullptr || !IsProfile(before->MailName) || IsDefaultName(name)) return true;
    const std::optional<std::size_t> count = CountMailUsers(name);
    if (count && *count != 0) ShowWarning(kMailUsersStay, name, *count);
    return count.has_value();
}

// The first of the new users whose account name somebody else has or gets, after 9425.
std::optional<EnableFault> FindClash(std::span<const NewMailUser> users) {
    using Field = EnableFault::Field;
    std::vector<std::string> accounts;
    NameSet leaving; // what has their names
    for (const NewMailUser& user : users) {
        accounts.push_back(user.Account);
        leaving.Add(user.Emailname);
    }
    if (std::ranges::all_of(accounts, &std::string::empty)) return {};
    const std::optional<NameSet> taken = ReadTakenAccounts(std::move(leaving));
    if (!taken) return EnableFault{Field::List};
    const std::vector<bool> clashes = ClashingAccountNames(accounts, *taken);
    const auto clash = std::ranges::find(clashes, true);
    if (clash == clashes.end()) return {};
    const auto index = static_cast<std::size_t>(clash - clashes.begin());
    ShowError(kAccountInUse, accounts[index]);
    return EnableFault{Field::Account, index};
}

// The changes that let the users send; what has their names already leaves. A fault without a message: nothing is to be
// replaced.
std::optional<EnableFault> PlanEnabling(const std::string& serverName, std::span<const NewMailUser> users,
                                        std::vector<MailUserChange>& changes) {
    using Field = EnableFault::Field;
    std::unordered_map<std::string, std::string> senders; // of e-mail names in upper case
    for (const NewMailUser& user : users) senders.try_emplace(UpperText(user.Emailname));
    const bool isRead = VisitMailUsers([&](const MailUser& user) {
        const auto asked = senders.find(UpperText(user.Emailname));
        if (asked != senders.end() && asked->second.empty()) asked->second = EffectiveUser(user);
        return true;
    });
    if (!isRead) return EnableFault{Field::List};
    for (std::size_t i = 0; i < users.size(); ++i) {
        const NewMailUser& user = users[i];
        MailUserChange change{.ServerName = serverName, .Comes = user.Emailname, .Account = user.Account};
        const std::string& sender = senders.at(UpperText(user.Emailname));
        if (!sender.empty()) change.Leaves = user.Emailname;
        if (change.Leaves && !AskQuestion(kReplaceMailUser, user.Emailname, sender))
            return EnableFault{Field::Emailname, i};
        changes.push_back(change);
    }
    return {};
}

} // namespace

bool IsEmailName(std::string_view emailName) {
    const bool fits = !emailName.empty() && emailName.size() <= kMaxEmailName;
    return fits && TrimBlanks(emailName) == emailName && FindControl(emailName, 0) == emailName.size();
}

bool CheckEmailName(std::string_view emailName) {
    if (!IsEmailName(emailName)) ShowError(kNotAnEmailName, emailName, kMaxEmailName);
    return IsEmailName(emailName);
}

bool EnableMailUser(std::string_view serverName, std::string_view emailName,
                    std::optional<std::string_view> previousEmailName) {
    if (!CheckEmailName(emailName)) return false;
    const std::optional<std::string> listed = ListedUser(serverName);
    if (!listed || !HasChanged(AddMailUser(*listed, emailName, previousEmailName))) return false;
    ShowStatus(kAdded, "mail user", emailName);
    return true;
}

bool DisableMailUser(std::string_view serverName, std::string_view emailName) {
    return AgreeToOthers(serverName, emailName) && IsDone(RemoveMailUser(serverName, emailName));
}

bool DisableMailUsers(std::span<const ListedMailUser> users) {
    const auto canGo = [](const ListedMailUser& user) { return CheckDeletable(user.Brivname); };
    if (users.empty() || !std::ranges::all_of(users, canGo)) return false;
    const ListedMailUser& first = users.front();
    const bool agrees = users.size() == 1 ? AskDelete("mail user", first.Emailname, "of " + first.Brivname)
                                          : AskDeleteMany(users.size(), "mail users");
    if (!agrees) return false;
    std::vector<MailUserChange> changes;
    for (const ListedMailUser& user : users)
        changes.push_back({.ServerName = user.Brivname, .Leaves = user.Emailname, .LeavesOwn = true});
    if (!IsDone(ChangeMailUsers(changes))) return false;
    if (users.size() > 1) ShowStatus(kDeletedMany, users.size(), "mail users");
    return true;
}

std::optional<EnableFault> EnableMailUsers(std::string_view serverName, std::span<const NewMailUser> users) {
    using Field = EnableFault::Field;
    if (users.empty()) ShowError(kSelectMailUser);
    if (users.empty()) return EnableFault{Field::List};
    if (serverName.empty()) ShowError(kSelectServerUser);
    if (serverName.empty()) return EnableFault{Field::ServerUser};
    const std::optional<std::string> listed = ListedUser(serverName);
    if (!listed) return EnableFault{Field::ServerUser};
    for (std::size_t i = 0; i < users.size(); ++i)
        if (!CheckEmailName(users[i].Emailname)) return EnableFault{Field::Emailname, i};
    if (const auto clash = FindClash(users)) return clash;
    std::vector<MailUserChange> changes;
    if (const auto refused = PlanEnabling(*listed, users, changes)) return refused;
    if (!IsDone(ChangeMailUsers(changes))) return EnableFault{Field::List};
    if (users.size() > 1) ShowStatus(kMailUsersAdded, users.size());
    if (users.size() > 1) return {};
    ShowStatus(kEmailName, users.front().Emailname);
    ShowStatus(kAdded, "mail user", users.front().Emailname);
    return {};
}

bool RenameMailUser(const ListedMailUser& user, std::string_view newName) {
    if (!CheckEmailName(newName)) return false;
    std::vector<MailUserChange> changes = {
        {.ServerName = user.Brivname, .Leaves = user.Emailname, .Comes = newName, .LeavesOwn = true}};
    std::optional<MailUser> there;
    if (!EqualFolded(user.Emailname, newName) && !FindMailUser(newName, there)) return false;
    if (there) {
        if (!AskQuestion(kReplaceMailUser, there->Emailname.View(), EffectiveUser(*there))) return false;
        changes.push_back({.ServerName = there->Brivname, .Leaves = newName, .LeavesOwn = true});
    }
    if (!IsDone(ChangeMailUsers(changes))) return false;
    ShowStatus(kAdded, "mail user", newName);
    return true;
}

void OfferUpgrade() {
    if (NeedsUpgrade() && AskQuestion(kNotesNoProfiles)) UpgradeWholeMailList();
}

void OfferToRemakeUserList(std::uintptr_t ownerWindow) {
    if (!std::exchange(MustDisableInMailSystem(), false)) return;
    if (AskQuestion(kMailUsersToDisable)) RemakeMailUserList(ownerWindow);
}

bool UpgradeWholeMailList() { return HasChanged(UpgradeMailList()); }

void FollowUserList() { SetMailListHook(FollowUsers); }

bool FollowUsers(std::span<const UserChange> users) {
    if (!std::ranges::all_of(users, WarnOfLostProfile)) return false;
    const std::vector<Move> moves = MovesOf(users);
    Owners owners;
    if (moves.empty() || !owners.Read(moves)) return moves.empty();
    const bool hasList = !IsMissing(PathOf(ServerFile::MailList));
    std::vector<MailUserChange> changes;
    for (const Move& move : moves) {
        const std::optional<MailUserChange> change = ChangeFor(move, owners);
        if (change && (hasList || change->Comes)) changes.push_back(*change);
    }
    if (changes.empty()) return true;
    const MailListOutcome outcome = ChangeMailUsers(changes);
    return outcome == MailListOutcome::NotListed || IsDone(outcome);
}

} // namespace bv
