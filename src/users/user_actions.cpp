#include "users/user_actions.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "ctlfile/lines.h"
#include "platform/ascii.h"
#include "platform/file_names.h"
#include "shell/startup.h"
#include "users/user_directories.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

MailListHook& InstalledHook() {
    static MailListHook hook;
    return hook;
}

bool HasMailName(const UserRecord* record) { return record != nullptr && !record->MailName.IsEmpty(); }

bool TellMailList(std::vector<UserChange> changes) {
    std::erase_if(changes,
                  [](const UserChange& user) { return !HasMailName(user.Before) && !HasMailName(user.After); });
    return changes.empty() || !InstalledHook() || InstalledHook()(changes);
}

// The name as the status texts about users have it.
std::string WithKind(std::string_view name, RecordKind kind) {
    return std::string(kind == RecordKind::Group ? "group " : "").append(name);
}

// A profile of the mail system stands for many senders.
std::string_view SenderName(const UserRecord& record) {
    const std::string_view mailName = record.MailName;
    return mailName.starts_with('(') || mailName.starts_with('*') ? std::string_view() : record.Fullname.View();
}

bool AddEverywhere(std::string_view name, const UserRecord& record, RecordKind kind) {
    const NamedRecord added[] = {{std::string(name), record}};
    if (!CreateUserDirectories(name, SenderName(record), kind)) return false;
    if (!ChangeUserRecords({.Added = added, .NamesAreFree = true}, kind)) return false;
    Startup().SettingsChanged = true;
    return TellMailList({{name, nullptr, &record}});
}

std::string_view KindWord(RecordKind kind) { return kind == RecordKind::User ? "user" : "user group"; }

std::string_view KindsWord(RecordKind kind) { return kind == RecordKind::User ? "users" : "user groups"; }

// The first few of many, one after the other.
std::string FirstOf(std::span<const std::string> all, std::string_view between) {
    constexpr std::size_t kNamed = 10;
    std::string text;
    for (const std::string& one : all.first(std::min(all.size(), kNamed)))
        text.append(text.empty() ? "" : between).append(one);
    if (all.size() > kNamed) text.append(between).append(FormatText("and %d more", all.size() - kNamed));
    return text;
}

// Removes the directories until the progress says no; false, after 9026, when something is left of them.
bool RemoveDirectories(std::span<const std::string> names, const SaveProgress& goOn) {
    std::vector<std::string> remaining;
    std::vector<std::string> paths;
    bool goesOn = true;
    for (std::size_t done = 0; done < names.size(); ++done) {
        goesOn = goesOn && goOn(done);
        if (goesOn) DeleteUserDirectories(names[done]);
        const std::vector<std::string> left = LeftOfUserDirectories(names[done]);
        if (left.empty()) continue;
        remaining.push_back(names[done]);
        paths.insert(paths.end(), left.begin(), left.end());
    }
    if (paths.empty()) return true;
    const std::string named = FirstOf(remaining, ", ");
    ShowError(kDirectoriesRemain, named, FirstOf(paths, "\n").append("\n"), named);
    return false;
}

bool RemoveDirectories(std::string_view name) {
    const std::string names[] = {std::string(name)};
    return RemoveDirectories(names, [](std::size_t) { return true; });
}

// Whether a deletion that has stopped half-way can have left directories of the name: no record has it.
bool IsLeftOver(UserList& list, std::string_view name) {
    const bool isNamed = name.size() > RecordName::kLimit || list.Has(name, RecordKind::User) ||
                         list.Has(name, RecordKind::Group) || !list.IsRead();
    return !isNamed && !LeftOfUserDirectories(name).empty();
}

bool Update(std::string_view name, const UserRecord& before, const UserRecord& after, RecordKind kind) {
    const NamedRecord updated[] = {{std::string(name), after}};
    if (!ChangeUserRecords({.Updated = updated, .Before = {&before, 1}}, kind)) return false;
    Startup().SettingsChanged = true;
    if (!TellMailList({{name, &before, &after}})) return false;
    ShowStatus(kModified, "user", WithKind(name, kind));
    return true;
}

// The number of records, from the first, that have got their directories.
std::size_t CreateAllDirectories(std::span<const NamedRecord> added, RecordKind kind, const SaveProgress& goOn) {
    std::size_t done = 0;
    for (const auto& [name, record] : added) {
        if (!goOn(done)) break;
        if (!CreateUserDirectories(name, SenderName(record), kind)) {
            ShowStatus(kUnableToAddUser, WithKind(name, kind));
            break;
        }
        ++done;
    }
    return done;
}

} // namespace

std::optional<std::string> FaultOfNewName(std::string_view name, RecordKind kind) {
    const std::string shown = CleanLine(name);
    if (name.empty() || name.size() > RecordName::kLimit) return FillMessage(kNameLength, shown);
    if (IsDefaultName(name)) return FillMessage(kNameInBrackets, shown);
    const std::string_view fault = platform::FaultOfFileName(name);
    if (!fault.empty()) return FillMessage(kNotADirectoryName, shown, fault);
    const char mark = Switches().UserGroupIdentifier;
    const bool isMarked = ToUpper(name.front()) == mark;
    if (isMarked == (kind == RecordKind::Group)) return {};
    if (isMarked) return FillMessage(kNameHasGroupMark, shown, std::string(1, mark));
    return FillMessage(kNameLacksGroupMark, shown, std::string(1, mark));
}

bool CheckNewName(UserList& list, std::string_view name, RecordKind kind) {
    if (const auto fault = FaultOfNewName(name, kind)) {
        ShowError("%s", *fault);
        return false;
    }
    // Users and groups share the directories of a name.
    const bool isTaken = list.Has(name, RecordKind::User) || list.Has(name, RecordKind::Group);
    if (!list.IsRead()) return false;
    if (isTaken) ShowError(kNameTaken, name);
    return !isTaken;
}

bool CheckNewUser(UserList& list, std::string_view name, const UserRecord& record, RecordKind kind) {
    return CheckNewName(list, name, kind) && (kind == RecordKind::Group || CheckGroup(list, record));
}

bool CheckGroup(UserList& list, const UserRecord& record) {
    if (record.Group.IsEmpty() || list.Has(record.Group, RecordKind::Group)) return true;
    if (list.IsRead()) ShowError(kNoSuchGroup, record.Group.View());
    return false;
}

bool AddUser(std::string_view name, const UserRecord& record, RecordKind kind) {
    const bool added = AddEverywhere(name, record, kind);
    ShowStatus(added ? kAddedUser : kUnableToAddUser, WithKind(name, kind));
    return added;
}

bool AddDefaultRecord(RecordKind kind) {
    UserRecord record;
    if (!ReadUserRecord(std::nullopt, record, kind) || !AddUserRecord("(default)", record, kind)) return false;
    Startup().SettingsChanged = true;
    return true;
}

bool UpdateUser(std::string_view name, const UserRecord& before, const UserRecord& after, RecordKind kind) {
    return after == before || Update(name, before, after, kind);
}

bool UpdateUser(const RecordEntry& entry) {
    if (!entry.IsToBeWritten()) return true;
    for (const RecordEntry::Change& change : entry.Changes()) {
        if (!change.IsEntered) ShowStatus(kChangesWithIt, change.Text);
    }
    return Update(entry.Name(), entry.Before(), entry.After(), entry.Kind());
}

bool DeleteUser(std::string_view name, RecordKind kind) {
    if (!CheckDeletable(name)) return false;
    {
        UserList list;
        if (!list) return false;
        if (IsLeftOver(list, name))
            return AskQuestion(kDeleteLeftDirectories, KindWord(kind), name) && RemoveDirectories(name);
    }
    const std::string names[] = {std::string(name)};
    return DeleteUsers(names, kind, [](std::size_t) { return true; });
}

std::optional<std::vector<NamedRecord>> FindDeletable(std::span<const std::string> names, RecordKind kind) {
    std::unordered_set<std::string> wanted;
    for (const std::string& name : names) {
        if (!CheckDeletable(name)) return {};
        wanted.insert(UpperText(name));
    }
    std::vector<NamedRecord> found;
    const bool isRead = VisitUserRecords(kind, [&](const StoredRecord& stored) {
        if (wanted.erase(UpperText(stored.Name)) > 0) found.push_back({stored.Name, stored.Record});
        return !wanted.empty();
    });
    if (!isRead) return {};
    for (const std::string& name : names) {
        if (!wanted.contains(UpperText(name))) continue;
        ShowNotFound(name, kind);
        return {};
    }
    return found;
}

bool DeleteRecords(std::span<const NamedRecord> records, RecordKind kind, const SaveProgress& goOn) {
    std::vector<UserChange> changes;
    std::vector<std::string> names;
    for (const auto& [name, record] : records) {
        changes.push_back({name, &record, nullptr});
        names.push_back(name);
    }
    if (!TellMailList(std::move(changes)) || !ChangeUserRecords({.Deleted = records}, kind)) return false;
    Startup().SettingsChanged = true;
    if (records.size() == 1) ShowStatus(kUserDeleted, kind == RecordKind::Group ? " group" : "", names.front());
    const bool isWhole = RemoveDirectories(names, goOn);
    if (records.size() > 1) ShowStatus(kDeletedMany, records.size(), KindsWord(kind));
    return isWhole;
}

bool DeleteUsers(std::span<const std::string> names, RecordKind kind, const SaveProgress& goOn) {
    const auto records = FindDeletable(names, kind);
    if (!records || records->empty()) return false;
    const bool agrees = records->size() == 1
                            ? AskDelete(KindWord(kind), records->front().Name, records->front().Record.Fullname)
                            : AskDeleteMany(records->size(), KindsWord(kind));
    return agrees && DeleteRecords(*records, kind, goOn);
}

SavedUsers SaveUsers(std::span<const NamedRecord> added, std::span<const RecordUpdate> updated, RecordKind kind,
                     const SaveProgress& goOn) {
    const auto withDirectories = added.first(CreateAllDirectories(added, kind, goOn));
    if (withDirectories.size() < added.size()) updated = {};
    std::vector<NamedRecord> after;
    std::vector<UserRecord> before;
    for (const RecordUpdate& update : updated) {
        after.push_back({update.Name, update.After});
        before.push_back(update.Before);
    }
    if (withDirectories.empty() && after.empty()) return {};
    if (!ChangeUserRecords({withDirectories, after, true, before}, kind)) return {};

    Startup().SettingsChanged = true;
    std::vector<UserChange> changes;
    for (const auto& [name, record] : withDirectories) changes.push_back({name, nullptr, &record});
    for (const auto& [name, from, to] : updated) changes.push_back({name, &from, &to});
    TellMailList(std::move(changes));
    return {withDirectories.size(), updated.size()};
}

void SetMailListHook(MailListHook hook) { InstalledHook() = std::move(hook); }

} // namespace bv
