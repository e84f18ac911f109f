#include "mailgw/mail_list.h"

#include <algorithm>
#include <array>
#include <memory>
#include <unordered_set>

#include "ctlfile/copy_back.h"
#include "ctlfile/lines.h"
#include "ctlfile/reading.h"
#include "ctlfile/records.h"
#include "platform/ascii.h"
#include "shell/messages.h"
#include "shell/server_paths.h"
#include "users/user_rewrite.h"

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
        text.append(KeyedLine(kKeys[key], value)).append(kLineEnd);
    };
    const auto addUnlessEmpty = [&](KeyIndex key, std::string_view value) {
        if (!value.empty()) add(key, value);
    };
    add(kBrivname, user.Brivname);
    add(kEmailname, user.Emailname);
    addUnlessEmpty(kEmailBrivname, user.EmailBrivname);
    add(kProfile, user.Profile ? "YES" : "NO");
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
        if (!FileExists(UserListPath())) return true;
        ControlStream list = OpenForReading(UserListPath());
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
    HeldMailList() : rewrite_(MailListPath()) {}

    // Whether there is a list that can be changed.
    [[nodiscard]] bool IsOpen() const { return rewrite_ || rewrite_.Fault() == Rewrite::Problem::Temporary; }

    // False after a message.
    bool Load() {
        if (!rewrite_) {
            ShowError(5002, rewrite_.TemporaryName());
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
            ShowError(5001, rewrite_.TemporaryName());
            return false;
        }
        return (rewrite_.CopyBack() && rewrite_.Finish()) || Refuse();
    }

  private:
    static bool Refuse() {
        ShowError(5004, MailListPath());
        return false;
    }

    Rewrite rewrite_;
    Position size_ = 0;
};

// A record that goes, and what is kept of it.
struct Leaving {
    Position From = 0;
    Position To = 0;
    MailUser User;
};

// Where a new record goes, and what record it replaces.
struct AddPlan {
    Position At = 0;
    std::optional<Leaving> Replaced;
};

AddPlan PlanAdd(HeldMailList& list, std::string_view emailName, std::optional<std::string_view> previous) {
    AddPlan plan;
    bool isPlaced = false;
    RecordWalker records = list.Records();
    WholeValue name;
    while (records.Next() && !(isPlaced && (plan.Replaced || !previous))) {
        records.Get(kEmailname, name);
        if (previous && !plan.Replaced && EqualFolded(name, *previous)) {
            plan.Replaced = {records.Start(), records.End(), {}};
            ReadMailUser(records, plan.Replaced->User);
        } else if (!isPlaced && name.View() > emailName) {
            isPlaced = true;
            plan.At = records.Start();
        }
    }
    if (!isPlaced) plan.At = list.Size();
    return plan;
}

std::string TextWith(const HeldMailList& list, const AddPlan& plan, const MailUser& user) {
    const auto at = static_cast<std::size_t>(plan.At);
    std::string text(list.Text(0, list.Size()));
    std::string record = std::string(kHeader).append(kLineEnd).append(KeyLines(user)).append(kLineEnd);
    const auto insert = [&] { text.insert(at, record); };
    if (!plan.Replaced) {
        if (at == text.size() && !text.empty() && !text.ends_with('\n')) record.insert(0, kLineEnd);
        insert();
        return text;
    }
    const auto from = static_cast<std::size_t>(plan.Replaced->From);
    const auto to = static_cast<std::size_t>(plan.Replaced->To);
    const bool endIsCutOff = at == text.size() && to < at && !text.ends_with('\n');
    if (endIsCutOff) record.insert(0, kLineEnd);
    if (at > from) insert();
    text.erase(from, to - from);
    if (at <= from) insert();
    return text;
}

// The list to change, made empty when there is none. None after 5002.
std::unique_ptr<HeldMailList> OpenOrCreate() {
    auto list = std::make_unique<HeldMailList>();
    if (!list->IsOpen() && !FileExists(MailListPath())) {
        OpenShared(MailListPath(), "c+b");
        list = std::make_unique<HeldMailList>();
    }
    if (list->IsOpen()) return list;
    ShowError(5002, MailListPath());
    return {};
}

// The place of the first record of that e-mail name.
std::optional<Leaving> FindLeaving(HeldMailList& list, std::string_view emailName) {
    RecordWalker records = list.Records();
    WholeValue name;
    while (records.Next()) {
        records.Get(kEmailname, name);
        if (EqualFolded(name, emailName)) return Leaving{records.Start(), records.End(), {}};
    }
    return {};
}

void ShowNotListed(std::string_view serverName, std::string_view emailName) {
    ShowError(5427, emailName.substr(0, emailName.find('\t')), serverName);
    MustDisableInMailSystem() = true;
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

std::string MailListPath() { return DatabaseFile("MAILLIST.INI"); }

std::string_view EffectiveUser(const MailUser& user) {
    const std::string_view mapped = user.EmailBrivname;
    return user.Profile && !mapped.empty() && !IsDefaultName(mapped) ? mapped : user.Brivname.View();
}

bool VisitMailUsers(const MailUserVisitor& visit) {
    if (!FileExists(MailListPath())) return true;
    ControlStream list = OpenForReading(MailListPath());
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

bool AddMailUser(std::string_view serverName, std::string_view emailName, std::optional<std::string_view> previous) {
    if (serverName.empty() || emailName.empty()) return false;
    ProfileUsers profiles;
    if (!profiles.Read()) return false;
    const std::unique_ptr<HeldMailList> list = OpenOrCreate();
    if (!list || !list->Load()) return false;

    const AddPlan plan = PlanAdd(*list, emailName, previous);
    if (plan.Replaced && !CheckDeletable(serverName)) return false;
    MailUser user = plan.Replaced ? plan.Replaced->User : MailUser();
    user.Brivname = serverName;
    user.Emailname = emailName;
    user.Profile = profiles.Has(serverName);
    // In one rewrite, so that the old record is not gone when the new one cannot be written.
    if (!list->Replace(TextWith(*list, plan, user))) return false;
    if (plan.Replaced) ShowStatus(474, serverName);
    return true;
}

Removal RemoveMailUser(std::string_view serverName, std::string_view emailName) {
    if (!CheckDeletable(serverName)) return Removal::Failed;
    HeldMailList list;
    if (!list.IsOpen()) return Removal::NoList;
    if (!list.Load()) return Removal::Failed;
    const std::optional<Leaving> record = FindLeaving(list, emailName);
    if (!record) {
        ShowNotListed(serverName, emailName);
        return Removal::NotListed;
    }
    std::string text(list.Text(0, record->From));
    if (!list.Replace(text.append(list.Text(record->To, list.Size())))) return Removal::Failed;
    ShowStatus(474, serverName);
    return Removal::Removed;
}

bool DeleteMailUser(std::string_view serverName, std::string_view emailName) {
    return RemoveMailUser(serverName, emailName) == Removal::Removed;
}

bool& MustDisableInMailSystem() {
    static bool mustDisable = false;
    return mustDisable;
}

bool UpgradeMailList() {
    ProfileUsers profiles;
    if (!profiles.Read()) return false;
    HeldMailList list;
    if (!list.IsOpen()) {
        ShowError(5002, MailListPath());
        return false;
    }
    return list.Load() && (FirstHasProfile(list) || list.Replace(UpgradedText(list, profiles)));
}

} // namespace bv
