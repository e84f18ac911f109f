#include "mailgw/mail_list.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "ctlfile/copy_back.h"
#include "ctlfile/lines.h"
#include "ctlfile/reading.h"
#include "ctlfile/records.h"
#include "ctlfile/whole_file.h"
#include "mailgw/mail_messages.h"
#include "mailgw/mail_profiles.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/server_paths.h"
#include "users/user_rewrite.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kHeader = kMailUserHeader;

// The list while it is rewritten: held, and whole in memory.
class HeldMailList {
  public:
    HeldMailList() : rewrite_(PathOf(ServerFile::MailList)) {}

    // Whether there is a list that can be changed.
    [[nodiscard]] bool IsOpen() const { return rewrite_ || rewrite_.Fault() == Rewrite::Problem::Temporary; }

    // Reads it. False after 5002, when it or its temporary is not open, or 5004.
    bool Load() {
        if (!rewrite_) {
            ShowError(kUnableToCreateFile, rewrite_.UnopenedPath());
            return false;
        }
        size_ = rewrite_.Control.Rest().size();
        rewrite_.Control.Rewind();
        return !rewrite_.Control.Failed() || Refuse();
    }

    // At the start of the file.
    [[nodiscard]] RecordWalker Records() {
        rewrite_.Control.Rewind();
        return RecordWalker(rewrite_.Control, kHeader, kMailUserKeys);
    }

    [[nodiscard]] Position Size() const { return size_; }
    [[nodiscard]] std::string_view Text(Position from, Position to) const {
        return rewrite_.Control.Seen(from, static_cast<std::size_t>(to - from));
    }

    // Writes the new text in place of the old. False after a message.
    bool Replace(std::string_view text) {
        if (!rewrite_.Temporary.Write(text) || !rewrite_.Temporary.Flush()) {
            ShowError(kErrorWritingFile, rewrite_.TemporaryName());
            return false;
        }
        return (rewrite_.CopyBack() && rewrite_.Finish()) || Refuse();
    }

  private:
    bool Refuse() {
        ShowError(kUnableToUpdateFile, rewrite_.Path());
        return false;
    }

    Rewrite rewrite_;
    Position size_ = 0;
};

// The records that leave: their places, each from its header to the next paragraph, the changes that take them, and
// what those hold that others take the place of.
struct LeavingRecords {
    std::unordered_map<Position, Position> Places;
    std::unordered_set<std::size_t> Changes; // by their indexes
    std::unordered_map<std::size_t, MailUser> Replaced;
};

// The changes that wait for a record: by its name alone, or by that and its server user.
class WaitingChanges {
  public:
    explicit WaitingChanges(std::span<const MailUserChange> changes) {
        for (std::size_t i = changes.size(); i-- > 0;) {
            const auto& [serverName, leaves, comes, account, isOwn] = changes[i];
            if (leaves) waiting_[isOwn ? KeyOf(*leaves, serverName) : UpperText(*leaves)].push_back(i);
        }
    }
    [[nodiscard]] bool IsEmpty() const { return waiting_.empty(); }

    // The first one that a record of that name and server user is for, which then waits no more.
    std::optional<std::size_t> Take(std::string_view emailName, std::string_view serverName) {
        for (const std::string& key : {KeyOf(emailName, serverName), UpperText(emailName)}) {
            const auto found = waiting_.find(key);
            if (found == waiting_.end()) continue;
            const std::size_t change = found->second.back();
            found->second.pop_back();
            if (found->second.empty()) waiting_.erase(found);
            return change;
        }
        return {};
    }

  private:
    static std::string KeyOf(std::string_view emailName, std::string_view serverName) {
        return UpperText(emailName) + '\n' + UpperText(serverName);
    }
    std::unordered_map<std::string, std::vector<std::size_t>> waiting_; // the first one last
};

LeavingRecords FindLeaving(HeldMailList& list, std::span<const MailUserChange> changes) {
    WaitingChanges waiting(changes);
    LeavingRecords leaving;
    RecordWalker records = list.Records();
    WholeValue name;
    WholeValue server;
    while (!waiting.IsEmpty() && records.Next()) {
        if (!records.Get(MailKey::Emailname, name)) continue;
        records.Get(MailKey::Brivname, server);
        const std::optional<std::size_t> change = waiting.Take(name, server);
        if (!change) continue;
        leaving.Places[records.Start()] = records.End();
        leaving.Changes.insert(*change);
        if (changes[*change].Comes) ReadMailUser(records, leaving.Replaced[*change]);
    }
    return leaving;
}

struct ComingRecord {
    std::string_view Emailname;
    std::string Text;
};

// A record of one certain server user that is to be replaced must be there still. False after 9025.
bool CheckTheirsAreThere(std::span<const MailUserChange> changes, const LeavingRecords& leaving) {
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const MailUserChange& change = changes[i];
        if (!change.LeavesOwn || !change.Comes || leaving.Changes.contains(i)) continue;
        ShowError(kChangedMeanwhile, *change.Leaves);
        return false;
    }
    return true;
}

// In the order of their names.
std::vector<ComingRecord> MakeComing(std::span<const MailUserChange> changes, const LeavingRecords& leaving,
                                     const ProfileUsers& profiles) {
    std::vector<ComingRecord> coming;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const auto& [serverName, leaves, comes, account, isOwn] = changes[i];
        if (!comes) continue;
        const auto replaced = leaving.Replaced.find(i);
        MailUser user = replaced == leaving.Replaced.end() ? MailUser() : replaced->second;
        user.Brivname = serverName;
        user.Emailname = *comes;
        if (!account.empty()) user.EmailBrivname = account;
        user.Profile = profiles.Has(serverName);
        coming.push_back({*comes, std::string(kHeader).append(kLineEnd).append(KeyLines(user)).append(kLineEnd)});
    }
    std::ranges::stable_sort(coming, {}, &ComingRecord::Emailname);
    return coming;
}

// The list without those that leave, and each that comes before the first record of a greater name, or at the end.
std::string ChangedText(HeldMailList& list, const LeavingRecords& leaving, const std::vector<ComingRecord>& coming) {
    std::string text;
    Position copied = 0;
    const auto copyTo = [&](Position end) {
        text.append(list.Text(copied, end));
        copied = end;
    };
    auto next = coming.begin();
    std::size_t left = 0;
    RecordWalker records = list.Records();
    WholeValue name;
    while ((next != coming.end() || left < leaving.Places.size()) && records.Next()) {
        if (leaving.Places.contains(records.Start())) {
            copyTo(records.Start());
            copied = records.End();
            ++left;
            continue;
        }
        records.Get(MailKey::Emailname, name);
        for (; next != coming.end() && next->Emailname < name.View(); ++next) {
            copyTo(records.Start());
            text.append(next->Text);
        }
    }
    copyTo(list.Size());
    if (next != coming.end() && !text.empty() && !text.ends_with('\n')) text.append(kLineEnd);
    for (; next != coming.end(); ++next) text.append(next->Text);
    return text;
}

// Makes an empty list when there is none. False after 5002.
bool CreateIfMissing() {
    if (FileExists(PathOf(ServerFile::MailList)) || OpenShared(PathOf(ServerFile::MailList), "c+b")) return true;
    ShowError(kUnableToCreateFile, PathOf(ServerFile::MailList));
    return false;
}

void ShowNotListed(std::string_view serverName, std::string_view emailName) {
    ShowError(kDisableInMailSystem, emailName.substr(0, emailName.find('\t')), serverName);
    MustDisableInMailSystem() = true;
}

// Says of each record that was to leave whether it has; NotListed when one that nothing replaces was not there.
MailListOutcome TellLeft(std::span<const MailUserChange> changes, const LeavingRecords& leaving) {
    MailListOutcome outcome = MailListOutcome::Done;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const MailUserChange& change = changes[i];
        if (leaving.Changes.contains(i)) {
            ShowStatus(kUserKeptFromGateway, change.ServerName);
        } else if (change.Leaves && !change.Comes) {
            ShowNotListed(change.ServerName, *change.Leaves);
            outcome = MailListOutcome::NotListed;
        }
    }
    return outcome;
}

bool FirstHasProfile(HeldMailList& list) {
    RecordWalker records = list.Records();
    WholeValue value;
    return !records.Next() || records.Get(MailKey::Profile, value);
}

std::string UpgradedText(HeldMailList& list, const ProfileUsers& profiles) {
    std::string text;
    Position at = 0;
    RecordWalker records = list.Records();
    MailUser user;
    WholeValue name;
    while (records.Next()) {
        ReadMailUser(records, user);
        const bool hasName = records.Get(MailKey::Brivname, name);
        user.Profile = profiles.Has(hasName ? name : user.EmailBrivname);
        text.append(list.Text(at, records.BodyStart()));
        if (!text.ends_with('\n')) text.append(kLineEnd);
        text.append(KeyLines(user)).append(OtherLines(list.Text(records.BodyStart(), records.End())));
        at = records.End();
    }
    return text.append(list.Text(at, list.Size()));
}

} // namespace

bool VisitMailUsers(const MailUserVisitor& visit) {
    if (IsMissing(PathOf(ServerFile::MailList))) return true;
    ControlStream list = OpenForReading(PathOf(ServerFile::MailList));
    if (!list) return false;
    RecordWalker records(list, kHeader, kMailUserKeys);
    MailUser user;
    while (records.Next()) {
        ReadMailUser(records, user);
        if (!visit(user)) break;
    }
    return WasRead(list);
}

bool NeedsUpgrade() {
    ControlStream list = OpenShared(PathOf(ServerFile::MailList), "rb");
    if (!list) return false;
    RecordWalker records(list, kHeader, kMailUserKeys);
    WholeValue profile;
    return records.Next() && !records.Get(MailKey::Profile, profile);
}

bool FindMailUser(std::string_view emailName, std::optional<MailUser>& found) {
    found.reset();
    return VisitMailUsers([&](const MailUser& user) {
        if (EqualFolded(user.Emailname, emailName)) found = user;
        return !found;
    });
}

std::optional<std::size_t> CountMailUsers(std::string_view serverName) {
    std::size_t count = 0;
    const bool isRead = VisitMailUsers([&](const MailUser& user) {
        if (EqualFolded(EffectiveUser(user), serverName)) ++count;
        return true;
    });
    return isRead ? std::optional(count) : std::nullopt;
}

MailListOutcome ChangeMailUsers(std::span<const MailUserChange> changes) {
    const bool someCome = std::ranges::any_of(changes, [](const auto& change) { return change.Comes.has_value(); });
    ProfileUsers profiles;
    if (someCome && !profiles.Read()) return MailListOutcome::Failed;
    if (someCome && !CreateIfMissing()) return MailListOutcome::Failed;
    HeldMailList list;
    if (!list.IsOpen() && !someCome) return MailListOutcome::NoList;
    if (!list.Load()) return MailListOutcome::Failed;

    const LeavingRecords leaving = FindLeaving(list, changes);
    if (!CheckTheirsAreThere(changes, leaving)) return MailListOutcome::Failed;
    for (const std::size_t index : leaving.Changes) {
        if (!CheckDeletable(changes[index].ServerName)) return MailListOutcome::Failed;
    }
    // In one rewrite, so that no old record is gone when its new one cannot be written.
    const bool changesText = someCome || !leaving.Places.empty();
    if (changesText && !list.Replace(ChangedText(list, leaving, MakeComing(changes, leaving, profiles))))
        return MailListOutcome::Failed;
    return TellLeft(changes, leaving);
}

bool AddMailUser(std::string_view serverName, std::string_view emailName, std::optional<std::string_view> previous) {
    if (serverName.empty() || emailName.empty()) return false;
    const MailUserChange change = {serverName, previous, emailName};
    return ChangeMailUsers({&change, 1}) == MailListOutcome::Done;
}

MailListOutcome RemoveMailUser(std::string_view serverName, std::string_view emailName) {
    if (!CheckDeletable(serverName)) return MailListOutcome::Failed;
    const MailUserChange change = {serverName, emailName, {}};
    return ChangeMailUsers({&change, 1});
}

bool DeleteMailUser(std::string_view serverName, std::string_view emailName) {
    return RemoveMailUser(serverName, emailName) == MailListOutcome::Done;
}

bool& MustDisableInMailSystem() {
    static bool mustDisable = false;
    return mustDisable;
}

bool UpgradeMailList() {
    ProfileUsers profiles;
    if (!profiles.Read()) return false;
    HeldMailList list;
    return list.Load() && (FirstHasProfile(list) || list.Replace(UpgradedText(list, profiles)));
}

} // namespace bv
