#include "whereused/where_used.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "devices/device_actions.h"
#include "lcr/edit_lock.h"
#include "lcr/lcr_uses.h"
#include "lcr/rule_actions.h"
#include "mailgw/mail_uses.h"
#include "platform/ascii.h"
#include "routing/routing_uses.h"
#include "shell/name_set.h"
#include "shell/server_files.h"
#include "users/printer_uses.h"
#include "users/printers.h"
#include "users/user_list.h"
#include "users/user_messages.h"
#include "voice/messages.h"
#include "whereused/setting_uses.h"

namespace bv {
namespace {

using Uses = std::vector<Use>;

std::string_view WordOf(NamedThing kind, const Names& names) {
    const bool isOne = names.size() == 1;
    switch (kind) {
    case NamedThing::User: return isOne ? "user" : "users";
    case NamedThing::UserGroup: return isOne ? "user group" : "user groups";
    case NamedThing::Printer: break;
    }
    return isOne ? "printer" : "printers";
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

std::optional<Uses> FindInUserList(NamedThing kind, const NameSet& names) {
    return kind == NamedThing::Printer ? FindListPrinterUses(names) : FindMembers(names);
}

bool ChangeUserList(NamedThing kind, const NameSet& names, const UseChange& change) {
    return kind == NamedThing::Printer ? ChangeListPrinterUses(names, change) : ChangeMembers(names, change);
}

std::optional<Uses> FindUsersOfLcr(NamedThing, const NameSet& users) { return FindLcrUses(LcrName::User, users); }

// For what treats all kinds in the same way.
template <std::optional<Uses> (*kFind)(const NameSet& names)>
std::optional<Uses> Find(NamedThing, const NameSet& names) {
    return kFind(names);
}
template <bool (*kChange)(const NameSet& names, const UseChange& change)>
bool Change(NamedThing, const NameSet& names, const UseChange& change) {
    return kChange(names, change);
}

constexpr auto kUsers = static_cast<unsigned>(NamedThing::User);
constexpr auto kGroups = static_cast<unsigned>(NamedThing::UserGroup);
constexpr auto kPrinters = static_cast<unsigned>(NamedThing::Printer);

// What looks through the files, for which kinds of name, in the order of showing.
struct Search {
    unsigned Kinds;
    std::optional<Uses> (*Find)(NamedThing kind, const NameSet& names);
};
constexpr Search kSearches[] = {
    {kGroups | kPrinters, FindInUserList},           {kUsers, FindUsersOfLcr},
    {kUsers | kGroups, Find<FindRoutingUses>},       {kUsers, Find<FindMailUses>},
    {kUsers | kGroups | kPrinters, FindSettingUses},
};

// What changes a file's places, in the order of writing.
struct UseWriter {
    ServerFile File;
    bool NeedsLock; // of the editors of routing
    bool (*Change)(NamedThing kind, const NameSet& names, const UseChange& change);
};
constexpr UseWriter kWriters[] = {
    {ServerFile::Rules, true, Change<ChangeRuleUsers>},      {ServerFile::Links, true, Change<ChangeLinkAccounts>},
    {ServerFile::Routing, false, Change<ChangeRoutingUses>}, {ServerFile::MailList, false, Change<ChangeMailUses>},
    {ServerFile::Setup, false, ChangeSettingUses},           {ServerFile::UserList, false, ChangeUserList},
};

// The places in the file that the change makes otherwise.
std::size_t CountChanged(const Uses& uses, const UseWriter& writer, const UseChange& change) {
    return static_cast<std::size_t>(std::ranges::count_if(uses, [&](const Use& use) {
        const bool isLeft = use.GoesWithIt && change.What == UseChange::Kind::TakeOut;
        return use.File == NameOf(writer.File) && use.CanChange && !isLeft;
    }));
}

bool ChangeFiles(const Uses& uses, NamedThing kind, const Names& names, const UseChange& change) {
    const NameSet set(names);
    return std::ranges::all_of(kWriters, [&](const UseWriter& writer) {
        const std::size_t count = CountChanged(uses, writer, change);
        if (count == 0) return true;
        const bool isChanged = writer.Change(kind, set, change);
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

bool ChangeFound(NamedThing kind, const Names& names, const UseChange& change) {
    const auto uses = FindUses(kind, names);
    return uses && ChangeFiles(*uses, kind, names, change);
}

// Whether there is such a record, whose name then is as in the list. False after a message.
bool CheckRecord(RecordKind kind, std::string& name) {
    UserList list;
    if (!list) return false;
    const std::optional<std::string> stored = list.NameOf(name, kind);
    if (!list.IsRead()) return false;
    if (!stored || IsDefaultName(name)) {
        ShowNotFound(name, kind);
        return false;
    }
    name = *stored;
    return true;
}

// The same for a printer of the fax server.
bool CheckPrinter(std::string& name) {
    std::vector<OfferedPrinter> printers;
    if (!ReadServerPrinters(printers)) return false;
    const auto isNamed = [&](const OfferedPrinter& printer) { return EqualFolded(printer.Name, name); };
    const auto found = std::ranges::find_if(printers, isNamed);
    if (found == printers.end()) {
        ShowError(kNoSuchPrinter, name);
        return false;
    }
    name = found->Name;
    return true;
}

} // namespace

RecordKind RecordKindOf(NamedThing kind) {
    return kind == NamedThing::UserGroup ? RecordKind::Group : RecordKind::User;
}

std::optional<Uses> FindUses(NamedThing kind, const Names& names) {
    const NameSet set(names);
    Uses uses;
    for (const Search& search : kSearches) {
        if ((search.Kinds & static_cast<unsigned>(kind)) == 0) continue;
        auto found = search.Find(kind, set);
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

std::string CountText(NamedThing kind, const Names& names, std::size_t count) {
    if (count == 0) return FillMessage(kUsedNowhere, WordOf(kind, names), NamesText(names));
    return FillMessage(kPlacesWhereUsed, WordOf(kind, names), NamesText(names), count);
}

bool AgreeToDeletion(NamedThing kind, const Names& names) {
    const std::optional<Uses> uses = FindUses(kind, names);
    return uses && AskDespiteUses(*uses, NamesText(names));
}

bool CheckReplacement(NamedThing kind, const Names& names, std::string& by) {
    if (NameSet(names).Has(by)) {
        ShowError(kReplacedByItself, by);
        return false;
    }
    return kind == NamedThing::Printer ? CheckPrinter(by) : CheckRecord(RecordKindOf(kind), by);
}

bool ChangeUses(NamedThing kind, const Names& names, UseChange change) {
    if (change.What == UseChange::Kind::Leave) return true;
    if (change.What == UseChange::Kind::TakeOut) change.By.clear();
    if (change.What == UseChange::Kind::Replace && !CheckReplacement(kind, names, change.By)) return false;
    const auto uses = FindUses(kind, names);
    if (!uses) return false;
    if (!NeedsLock(*uses, change)) return ChangeFiles(*uses, kind, names, change);
    return RunLcrEditor([&] { return CheckNoPendingRules() && ChangeFound(kind, names, change); }, "names");
}

bool DeleteWithUses(NamedThing kind, const Names& names, const UseChange& change, const SaveProgress& goOn) {
    if (kind == NamedThing::Printer)
        return CheckRemovable(names) && ChangeUses(kind, names, change) && RemoveDevices(names);
    const RecordKind records = RecordKindOf(kind);
    const auto found = FindDeletable(names, records);
    return found && ChangeUses(kind, names, change) && DeleteRecords(*found, records, goOn);
}

bool DeleteUnused(NamedThing kind, const Names& names, const SaveProgress& goOn) {
    return kind == NamedThing::Printer ? DeleteDevices(names) : DeleteUsers(names, RecordKindOf(kind), goOn);
}

bool IsThere(NamedThing kind, const std::string& name) {
    if (kind == NamedThing::Printer) {
        const std::optional<NameSet> devices = ReadDeviceNames();
        return !devices || devices->Has(name);
    }
    UserList list;
    return !list || list.Has(name, RecordKindOf(kind)) || !list.IsRead();
}

} // namespace bv
