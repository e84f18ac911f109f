#include "mailgw/mail_actions.h"

#include "ctlfile/lines.h"
#include "mailgw/mail_list.h"
#include "platform/ascii.h"
#include "shell/messages.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "users/user_actions.h"
#include "users/user_list.h"

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

bool IsRemoved(Removal removal) {
    if (removal == Removal::NoList) ShowError(413, MailListPath());
    return HasChanged(removal == Removal::Removed);
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

// How the record of an e-mail name stands to a server user.
enum class Ownership { Unknown, NoRecord, Own, OfAnother };
Ownership OwnershipOf(std::string_view serverName, std::string_view emailName) {
    std::optional<MailUser> found;
    if (!FindMailUser(emailName, found)) return Ownership::Unknown;
    if (!found) return Ownership::NoRecord;
    return EqualFolded(found->Brivname, serverName) ? Ownership::Own : Ownership::OfAnother;
}

bool FollowAdded(std::string_view name, std::string_view emailName) {
    switch (OwnershipOf(name, emailName)) {
    case Ownership::Unknown: return false;
    case Ownership::Own: return true;
    default: return AddMailUser(name, emailName);
    }
}

bool FollowRemoved(std::string_view name, std::string_view emailName) {
    if (!FileExists(MailListPath())) return true;
    switch (OwnershipOf(name, emailName)) {
    case Ownership::Unknown: return false;
    case Ownership::OfAnother: return true;
    default: break;
    }
    const Removal removal = RemoveMailUser(name, emailName);
    return removal == Removal::NotListed || IsRemoved(removal);
}

bool FollowChanged(std::string_view name, std::string_view oldEmail, std::string_view newEmail) {
    const Ownership ownership = OwnershipOf(name, oldEmail);
    if (ownership == Ownership::Unknown) return false;
    if (ownership != Ownership::Own) return FollowAdded(name, newEmail);
    return AddMailUser(name, newEmail, oldEmail);
}

// Mail users may send under a profile's name without being known to the user list.
bool FollowLostProfile(std::string_view name) {
    const std::optional<std::size_t> count = CountMailUsers(name);
    if (count && *count != 0) ShowWarning(9191, name, *count);
    return count.has_value();
}

} // namespace

int FaultOfEmailName(std::string_view emailName) {
    const bool fits = !emailName.empty() && emailName.size() <= kMaxEmailName;
    return fits && TrimBlanks(emailName) == emailName && FindControl(emailName, 0) == emailName.size() ? 0 : 9190;
}

bool EnableMailUser(std::string_view serverName, std::string_view emailName,
                    std::optional<std::string_view> previousEmailName) {
    if (const int fault = FaultOfEmailName(emailName); fault != 0) {
        ShowError(fault, emailName, kMaxEmailName);
        return false;
    }
    const std::optional<std::string> listed = ListedUser(serverName);
    if (!listed || !HasChanged(AddMailUser(*listed, emailName, previousEmailName))) return false;
    ShowStatus(455, "mail user", emailName);
    return true;
}

bool DisableMailUser(std::string_view serverName, std::string_view emailName) {
    return IsRemoved(RemoveMailUser(serverName, emailName));
}

bool UpgradeWholeMailList() { return HasChanged(UpgradeMailList()); }

void FollowUserList() { SetMailListHook(FollowUser); }

bool FollowUser(std::string_view name, const UserRecord* before, const UserRecord* after) {
    if (IsDefaultName(name)) return true;
    const std::string_view oldEmail = MailUserOf(before);
    const std::string_view newEmail = MailUserOf(after);
    const bool losesProfile = before != nullptr && IsProfile(before->MailName) && after == nullptr;
    if (losesProfile) return FollowLostProfile(name);
    if (oldEmail.empty()) return newEmail.empty() || FollowAdded(name, newEmail);
    if (newEmail.empty()) return FollowRemoved(name, oldEmail);
    // With the same name, a user who was taken off the mail list stays off it.
    return EqualFolded(oldEmail, newEmail) || FollowChanged(name, oldEmail, newEmail);
}

} // namespace bv
