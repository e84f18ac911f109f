#include "whereused/where_used.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "lcr/edit_lock.h"
#include "lcr/lcr_uses.h"
#include "lcr/rule_actions.h"
#include "mailgw/mail_uses.h"
#include "platform/ascii.h"
#include "routing/routing_uses.h"
#include "shell/name_set.h"
#include "shell/server_files.h"
#include "users/user_list.h"
#include "voice/messages.h"
#include "whereused/setting_uses.h"

namespace bv {
namespace {

using Uses = std::vector<Use>;

std::string_view WordOf(RecordKind kind, const Names& names) {
    if (kind == RecordKind::User) return names.size() == 1 ? "user" : "users";
    return names.size() == 1 ? "user group" : "user groups";
}

std::optional<Uses> FindMembers(const NameSet& groups) {
    UserListView view;
    view.Format = UserListFormat::NameAndFullname;
    view.WithGroup = true;
    view.IncludeDefault = true;
    Uses uses;
    const bool isRead = VisitUserRows(view, [&](const UserRow& row) {
        if (!groups.Has(row.Group)) return;
        uses.push_back({.File = NameOf(ServerFile::UserList),
                        .Where = FormatText("user %s, Group: %s", row.Name, row.Group),
                        .Name = std::string(row.Group)});
    });
    if (!isRead) return {};
    return uses;
}

bool ChangeMembers(const NameSet& groups, const UseChange& change) {
    std::vector<RecordUpdate> updates;
    const bool isRead = VisitUserRecords(RecordKind::User, [&](const StoredRecord& stored) {
        if (!groups.Has(stored.Record.Group)) return true;
        updates.push_back({stored.Name, stored.Record, stored.Record});
        updates.back().After.Group = change.By;
        return true;
    });
    if (!isRead) return false;
    const SavedUsers saved = SaveUsers({}, updates, RecordKind::User, [](std::size_t) { return true; });
    return saved.Updated == updates.size();
}

std::optional<Uses> FindUserUsesOfLcr(const NameSet& names) { return FindLcrUses(LcrName::User, names); }

// What looks through the files, for which kinds of name, in the order of showing.
struct Search {
    bool OfUsers;
    bool OfGroups;
    std::optional<Uses> (*Find)(const NameSet& names);
};
constexpr Search kSearches[] = {
    {false, true, FindMembers},  {true, false, FindUserUsesOfLcr}, {true, true, FindRoutingUses},
    {true, false, FindMailUses}, {true, true, FindSettingUses},
};

// What changes a file's places, in the order of writing.
struct UseWriter {
    ServerFile File;
    bool NeedsLock; // of the editors of routing
    bool (*Change)(const NameSet& names, const UseChange& change);
};
constexpr UseWriter kWriters[] = {
    {ServerFile::Rules, true, ChangeRuleUsers},      {ServerFile::Links, true, ChangeLinkAccounts},
    {ServerFile::Routing, false, ChangeRoutingUses}, {ServerFile::MailList, false, ChangeMailUses},
    {ServerFile::Setup, false, ChangeSettingUses},   {ServerFile::UserList, false, ChangeMembers},
};

// The places in the file that the change makes otherwise.
std::size_t CountChanged(const Uses& uses, const UseWriter& writer, const UseChange& change) {
    return static_cast<std::size_t>(std::ranges::count_if(uses, [&](const Use& use) {
        const bool isLeft = use.GoesWithIt && change.What == UseChange::Kind::TakeOut;
        return use.File == NameOf(writer.File) && use.CanChange && !isLeft;
    }));
}

bool ChangeFiles(const Uses& uses, const Names& names, const UseChange& change) {
    const NameSet set(names);
    return std::ranges::all_of(kWriters, [&](const UseWriter& writer) {
        const std::size_t count = CountChanged(uses, writer, change);
        if (count == 0) return true;
        const bool isChanged = writer.Change(set, change);
        if (isChanged)
            ShowStatus(kPlacesChanged, NameOf(writer.File), count);
        else
            ShowError(kUsesNotChanged, NameOf(writer.File), NamesText(names));
        return isChanged;
    });
}

bool NeedsLock(const Uses& uses, const UseChange& change) {
    return std::ranges::any_of(
        kWriters, [&](const UseWriter& writer) { return writer.NeedsLock && CountChanged(uses, writer, change) != 0; });
}

bool ChangeFound(RecordKind kind, const Names& names, const UseChange& change) {
    const auto uses = FindUses(kind, names);
    return uses && ChangeFiles(*uses, names, change);
}

} // namespace

std::optional<Uses> FindUses(RecordKind kind, const Names& names) {
    const NameSet set(names);
    Uses uses;
    for (const Search& search : kSearches) {
        if (!(kind == RecordKind::User ? search.OfUsers : search.OfGroups)) continue;
        auto found = search.Find(set);
        if (!found) return {};
        std::ranges::move(*found, std::back_inserter(uses));
    }
    std::ranges::stable_sort(uses, [](const Use& a, const Use& b) { return a.Widens && !b.Widens; });
    return uses;
}

std::string NamesText(const Names& names) {
    constexpr std::size_t kNamed = 3;
    std::string text;
    for (const std::string& name : std::span(names).first(std::min(names.size(), kNamed)))
        text.append(text.empty() ? "" : ", ").append(name);
    if (names.size() > kNamed) text += FormatText(" and %d more", names.size() - kNamed);
    return text;
}

std::string CountText(RecordKind kind, const Names& names, std::size_t count) {
    if (count == 0) return FillMessage(kUsedNowhere, WordOf(kind, names), NamesText(names));
    return FillMessage(kPlacesWhereUsed, WordOf(kind, names), NamesText(names), count);
}

bool AgreeToDeletion(RecordKind kind, const Names& names) {
    const std::optional<Uses> uses = FindUses(kind, names);
    return uses && AskDespiteUses(*uses, NamesText(names));
}

bool CheckReplacement(RecordKind kind, const Names& names, std::string& by) {
    if (NameSet(names).Has(by)) {
        ShowError(kReplacedByItself, by);
        return false;
    }
    UserList list;
    if (!list) return false;
    const std::optional<std::string> stored = list.NameOf(by, kind);
    if (!list.IsRead()) return false;
    if (!stored || IsDefaultName(by)) {
        ShowNotFound(by, kind);
        return false;
    }
    by = *stored;
    return true;
}

bool ChangeUses(RecordKind kind, const Names& names, UseChange change) {
    if (change.What == UseChange::Kind::Leave) return true;
    if (change.What == UseChange::Kind::TakeOut) change.By.clear();
    if (change.What == UseChange::Kind::Replace && !CheckReplacement(kind, names, change.By)) return false;
    const auto uses = FindUses(kind, names);
    if (!uses) return false;
    if (!NeedsLock(*uses, change)) return ChangeFiles(*uses, names, change);
    return RunLcrEditor([&] { return CheckNoPendingRules() && ChangeFound(kind, names, change); });
}

bool DeleteWithUses(RecordKind kind, const Names& names, const UseChange& change, const SaveProgress& goOn) {
    const auto records = FindDeletable(names, kind);
    return records && ChangeUses(kind, names, change) && DeleteRecords(*records, kind, goOn);
}

} // namespace bv
