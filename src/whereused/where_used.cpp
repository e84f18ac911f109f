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
#include "users/printers.h"
#include "users/user_list.h"
#include "voice/messages.h"
#include "whereused/printer_uses.h"
#include "whereused/setting_uses.h"

namespace bv {
namespace {

using Uses = std::vector<Use>;

struct Words {
    std::string_view One;
    std::string_view Several;
};
constexpr Words kWords[] = {{"user", "users"}, {"user group", "user groups"}, {"printer", "printers"}}; // by NamedThing

std::string_view WordOf(NamedThing kind, const Names& names) {
    const Words& words = kWords[static_cast<std::size_t>(kind)];
    return names.size() == 1 ? words.One : words.Several;
}

constexpr unsigned Bit(NamedThing kind) { return 1U << static_cast<unsigned>(kind); }
constexpr unsigned kUsers = Bit(NamedThing::User);
constexpr unsigned kGroups = Bit(NamedThing::UserGroup);
constexpr unsigned kPrinters = Bit(NamedThing::Printer);

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

std::optional<Uses> FindUserSettings(const NameSet& names) { return FindSettingUses(SettingName::User, names); }
std::optional<Uses> FindPrinterSettings(const NameSet& names) { return FindSettingUses(SettingName::Printer, names); }
bool ChangeUserSettings(const NameSet& names, const UseChange& change) {
    return ChangeSettingUses(SettingName::User, names, change);
}
bool ChangePrinterSettings(const NameSet& names, const UseChange& change) {
    return ChangeSettingUses(SettingName::Printer, names, change);
}

// What looks through the files, for which kinds of name, in the order of showing.
struct Search {
    unsigned Kinds;
    std::optional<Uses> (*Find)(const NameSet& names);
};
constexpr Search kSearches[] = {
    {kGroups, FindMembers},           {kUsers, FindUserUsesOfLcr},          {kUsers | kGroups, FindRoutingUses},
    {kUsers, FindMailUses},           {kUsers | kGroups, FindUserSettings}, {kPrinters, FindPrinterUses},
    {kPrinters, FindPrinterSettings},
};

// What changes a file's places, for which kinds of name, in the order of writing.
struct UseWriter {
    unsigned Kinds;
    ServerFile File;
    bool NeedsLock; // of the editors of routing
    bool (*Change)(const NameSet& names, const UseChange& change);
};
constexpr UseWriter kWriters[] = {
    {kUsers | kGroups, ServerFile::Rules, true, ChangeRuleUsers},
    {kUsers | kGroups, ServerFile::Links, true, ChangeLinkAccounts},
    {kUsers | kGroups, ServerFile::Routing, false, ChangeRoutingUses},
    {kUsers | kGroups, ServerFile::MailList, false, ChangeMailUses},
    {kUsers | kGroups, ServerFile::Setup, false, ChangeUserSettings},
    {kUsers | kGroups, ServerFile::UserList, false, ChangeMembers},
    {kPrinters, ServerFile::Setup, false, ChangePrinterSettings},
    {kPrinters, ServerFile::UserList, false, ChangePrinterUses},
};

// The places in the file that the change makes otherwise.
std::size_t CountChanged(NamedThing kind, const Uses& uses, const UseWriter& writer, const UseChange& change) {
    if ((writer.Kinds & Bit(kind)) == 0) return 0;
    return static_cast<std::size_t>(std::ranges::count_if(uses, [&](const Use& use) {
        const bool isLeft = use.GoesWithIt && change.What == UseChange::Kind::TakeOut;
        return use.File == NameOf(writer.File) && use.CanChange && !isLeft;
    }));
}

bool ChangeFiles(NamedThing kind, const Uses& uses, const Names& names, const UseChange& change) {
    const NameSet set(names);
    return std::ranges::all_of(kWriters, [&](const UseWriter& writer) {
        const std::size_t count = CountChanged(kind, uses, writer, change);
        if (count == 0) return true;
        const bool isChanged = writer.Change(set, change);
        if (isChanged)
            ShowStatus(kPlacesChanged, NameOf(writer.File), count);
        else
            ShowError(kUsesNotChanged, NameOf(writer.File), NamesText(names));
        return isChanged;
    });
}

bool NeedsLock(NamedThing kind, const Uses& uses, const UseChange& change) {
    return std::ranges::any_of(kWriters, [&](const UseWriter& writer) {
        return writer.NeedsLock && CountChanged(kind, uses, writer, change) != 0;
    });
}

// Whether there is one of the name, which is then spelled as in the list. False after a message.
bool FindListedRecord(RecordKind kind, std::string& name) {
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

bool FindListedPrinter(std::string& name) {
    std::vector<OfferedPrinter> printers;
    if (!ReadServerPrinters(printers)) return false;
    for (const OfferedPrinter& printer : printers) {
        if (!EqualFolded(printer.Name, name)) continue;
        name = printer.Name;
        return true;
    }
    ShowError("Device %s not found", name);
    return false;
}

bool ChangeFound(NamedThing kind, const Names& names, const UseChange& change) {
    const auto uses = FindUses(kind, names);
    return uses && ChangeFiles(kind, *uses, names, change);
}

} // namespace

std::optional<Uses> FindUses(NamedThing kind, const Names& names) {
    const NameSet set(names);
    Uses uses;
    for (const Search& search : kSearches) {
        if ((search.Kinds & Bit(kind)) == 0) continue;
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
    return kind == NamedThing::Printer ? FindListedPrinter(by) : FindListedRecord(RecordOf(kind), by);
}

bool ChangeUses(NamedThing kind, const Names& names, UseChange change) {
    if (change.What == UseChange::Kind::Leave) return true;
    if (change.What == UseChange::Kind::TakeOut) change.By.clear();
    if (change.What == UseChange::Kind::Replace && !CheckReplacement(kind, names, change.By)) return false;
    const auto uses = FindUses(kind, names);
    if (!uses) return false;
    if (!NeedsLock(kind, *uses, change)) return ChangeFiles(kind, *uses, names, change);
    return RunLcrEditor([&] { return CheckNoPendingRules() && ChangeFound(kind, names, change); });
}

bool DeleteWithUses(NamedThing kind, const Names& names, const UseChange& change, const SaveProgress& goOn) {
    if (kind == NamedThing::Printer)
        return CheckRemovable(names) && ChangeUses(kind, names, change) && RemoveDevices(names);
    const auto records = FindDeletable(names, RecordOf(kind));
    return records && ChangeUses(kind, names, change) && DeleteRecords(*records, RecordOf(kind), goOn);
}

bool DeleteUnused(NamedThing kind, const Names& names, const SaveProgress& goOn) {
    return kind == NamedThing::Printer ? DeleteDevices(names) : DeleteUsers(names, RecordOf(kind), goOn);
}

bool IsThere(NamedThing kind, const std::string& name) {
    if (kind == NamedThing::Printer) {
        const std::optional<NameSet> devices = ReadDeviceNames();
        return !devices || devices->Has(name);
    }
    UserList list;
    return !list || list.Has(name, RecordOf(kind)) || !list.IsRead();
}

} // namespace bv
