#include "mailgw/mail_list.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "ctlfile/copy_back.h"
#include "ctlfile/key_fields.h"
#include "ctlfile/lines.h"
#include "ctlfile/reading.h"
#include "ctlfile/records.h"
#include "ctlfile/whole_file.h"
#include "mailgw/mail_messages.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/server_paths.h"
#include "users/user_rewrite.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kHeader = "[USER]";

// The keys in the order of writing.
enum KeyIndex : std::size_t { kBrivname, kEmailname, kEmailBrivname, kProfile, kSubAddr, kPrintRecd, kPrintSent };
constexpr std::array<std::string_view, 7> kKeys = {
    "Brivname:", "Emailname:", "EmailBrivname:", "Profile:", "SubAddr:", "PrintRecd:", "PrintSent:"};

void ReadMailUser(const RecordWalker& records, MailUser& user) {
    WholeValue profile;
    const bool hasProfile = records.Get(kProfile, profile);
    user.Profile = hasProfile && ParseBool(profile).value_or(false);
    records.Get(kBrivname, user.Brivname);
    records.Get(kEmailname, user.Emailname);
    records.Get(kEmailBrivname, user.EmailBrivname);
    records.Get(kSubAddr, user.SubAddr);
    records.Get(kPrintRecd, user.PrintRecd);
    records.Get(kPrintSent, user.PrintSent);
}

std::string KeyLines(const MailUser& user) {
    std::string text;
    const auto add = [&](KeyIndex key, std::string_view value) {
        text.append(kKeys[key]).append(" ").append(value).append(kLineEnd);
    };
    const auto addUnlessEmpty = [&](KeyIndex key, std::string_view value) {
        if (!value.empty()) add(key, value);
    };
    add(kBrivname, user.Brivname);
    add(kEmailname, user.Emailname);
    addUnlessEmpty(kEmailBrivname, user.EmailBrivname);
    add(kProfile, ValueCodec<bool>::Text(user.Profile));
    addUnlessEmpty(kSubAddr, user.SubAddr);
    addUnlessEmpty(kPrintRecd, user.PrintRecd);
    addUnlessEmpty(kPrintSent, user.PrintSent);
    return text;
}

// The server users that are profiles of the mail system, of each name the first user.
class ProfileUsers {
  public:
    // Without a user list there are none. False after 413 or 9011.
    bool Read() {
        static constexpr std::array<std::string_view, 2> kUserKeys = {kNameKey, "MailName:"};
        if (IsMissing(PathOf(ServerFile::UserList))) return true;
        ControlStream list = OpenForReading(PathOf(ServerFile::UserList));
        if (!list) return false;
        RecordWalker records(list, RecordHeader(RecordKind::User), kUserKeys);
        WholeValue name;
        WholeValue mailName;
        std::unordered_set<std::string> others;
        while (records.Next()) {
            records.Get(0, name);
            records.Get(1, mailName);
            const std::string key = UpperText(name);
            if (!mailName.View().starts_with('*'))
                others.insert(key);
            else if (!others.contains(key))
                names_.insert(key);
        }
        return WasRead(list);
    }

    [[nodiscard]] bool Has(std::string_view name) const { return names_.contains(UpperText(name)); }

  private:
    std::unordered_set<std::string> names_; // in upper case
};

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
        return RecordWalker(rewrite_.Control, kHeader, kKeys);
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

// The records that leave: their places, each from its header to the next paragraph, and what they hold.
struct LeavingRecords {
    std::unordered_map<Position, Position> Places;
    std::unordered_map<std::size_t, MailUser> ByChange; // by the index of the change that takes them
};

LeavingRecords FindLeaving(HeldMailList& list, std::span<const MailUserChange> changes) {
    std::unordered_map<std::string, std::size_t> wanted; // the first change of each name, by the name in upper case
    for (std::size_t i = 0; i < changes.size(); ++i) {
        if (changes[i].Leaves) wanted.try_emplace(UpperText(*changes[i].Leaves), i);
    }
    LeavingRecords leaving;
    RecordWalker records = list.Records();
    WholeValue name;
    while (!wanted.empty() && records.Next()) {
        if (!records.Get(kEmailname, name)) continue;
        const auto found = wanted.find(UpperText(name));
        if (found == wanted.end()) continue;
        leaving.Places[records.Start()] = records.End();
        ReadMailUser(records, leaving.ByChange[found->second]);
        wanted.erase(found);
    }
    return leaving;
}

struct ComingRecord {
    std::string_view Emailname;
    std::string Text;
};

// In the order of their names.
std::vector<ComingRecord> MakeComing(std::span<const MailUserChange> changes, const LeavingRecords& leaving,
                                     const ProfileUsers& profiles) {
    std::vector<ComingRecord> coming;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const auto& [serverName, leaves, comes] = changes[i];
        if (!comes) continue;
        const auto replaced = leaving.ByChange.find(i);
        MailUser user = replaced == leaving.ByChange.end() ? MailUser() : replaced->second;
        user.Brivname = serverName;
        user.Emailname = *comes;
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
        records.Get(kEmailname, name);
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
        const auto& [serverName, leaves, comes] = changes[i];
        if (leaving.ByChange.contains(i)) {
            ShowStatus(kUserKeptFromGateway, serverName);
        } else if (leaves && !comes) {
            ShowNotListed(serverName, *leaves);
            outcome = MailListOutcome::NotListed;
        }
    }
    return outcome;
}

// The lines of a record's body that have none of the keys, the last one ended, and an empty line at the end.
std::string OtherLines(std::string_view body) {
    std::string text;
    std::string_view last;
    while (!body.empty()) {
        const std::string_view line = TakeLine(body);
        if (std::ranges::any_of(kKeys, [line](std::string_view key) { return BeginsWith(line, key); })) continue;
        text.append(line);
        last = line;
    }
    if (!text.empty() && !text.ends_with('\n')) text.append(kLineEnd);
    if (CountingPart(last).empty() && !text.empty()) return text;
    return text.append(kLineEnd);
}

bool FirstHasProfile(HeldMailList& list) {
    RecordWalker records = list.Records();
    WholeValue value;
    return !records.Next() || records.Get(kProfile, value);
}

std::string UpgradedText(HeldMailList& list, const ProfileUsers& profiles) {
    std::string text;
    Position at = 0;
    RecordWalker records = list.Records();
    MailUser user;
    WholeValue name;
    while (records.Next()) {
        ReadMailUser(records, user);
        const bool hasName = records.Get(kBrivname, name);
        user.Profile = profiles.Has(hasName ? name : user.EmailBrivname);
        text.append(list.Text(at, records.BodyStart()));
        if (!text.ends_with('\n')) text.append(kLineEnd);
        text.append(KeyLines(user)).append(OtherLines(list.Text(records.BodyStart(), records.End())));
        at = records.End();
    }
    return text.append(list.Text(at, list.Size()));
}

} // namespace

std::string_view EffectiveUser(const MailUser& user) {
    const std::string_view mapped = user.EmailBrivname;
    return user.Profile && !mapped.empty() && !IsDefaultName(mapped) ? mapped : user.Brivname.View();
}

bool VisitMailUsers(const MailUserVisitor& visit) {
    if (IsMissing(PathOf(ServerFile::MailList))) return true;
    ControlStream list = OpenForReading(PathOf(ServerFile::MailList));
    if (!list) return false;
    RecordWalker records(list, kHeader, kKeys);
    MailUser user;
    while (records.Next()) {
        ReadMailUser(records, user);
        if (!visit(user)) break;
    }
    return WasRead(list);
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
    for (const auto& [index, user] : leaving.ByChange) {
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
