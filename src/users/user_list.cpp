#include "users/user_list.h"

#include <algorithm>
#include <array>
#include <functional>
#include <vector>

#include "ctlfile/reading.h"
#include "ctlfile/records.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "voice/messages.h"

namespace bv {
namespace {

// What a list looks at in a record.
struct ListedRecord {
    WholeValue Name;
    FixedText<100> Fullname;
    FixedText<100> Username;
    FixedText<100> Group;
    FixedText<256> Filtered; // the value that the filter judges
};

// Which records a list takes: those with such a value of a key; all without a key.
struct Filter {
    std::string_view Key;
    std::function<bool(std::string_view)> Accepts;
};

bool IsProfile(std::string_view mailName) { return mailName.starts_with('(') || mailName.starts_with('*'); }

// The keys that a view needs, and their places in a record. A key less makes the walk faster.
struct Columns {
    std::vector<std::string_view> Keys;
    std::vector<TextPlace> Places;

    Columns(const UserListView& view, const Filter& filter, ListedRecord& record) {
        Add(kNameKey, record.Name);
        if (view.Format != UserListFormat::NameOnly) Add("Fullname:", record.Fullname);
        if (view.Format == UserListFormat::UsernameNameFullname) Add("Username:", record.Username);
        if (view.WithGroup) Add("Group:", record.Group);
        if (!filter.Key.empty()) Add(filter.Key, record.Filtered);
    }

  private:
    void Add(std::string_view key, TextPlace place) {
        Keys.push_back(key);
        Places.push_back(place);
    }
};

UserRow RowOf(const ListedRecord& record) {
    return {record.Name.View(), record.Fullname.View(), record.Username.View(), record.Group.View()};
}

// Visits each record of the kind that is to be listed.
void VisitRows(ControlStream& stream, RecordKind kind, const UserListView& view, const RowVisitor& visit,
               const Filter& filter = {}) {
    ListedRecord record;
    const Columns columns(view, filter, record);
    stream.Rewind();
    RecordWalker records(stream, RecordHeader(kind), columns.Keys);
    while (records.Next()) {
        for (std::size_t i = 0; i < columns.Keys.size(); ++i) records.Get(i, columns.Places[i]);
        if (IsDefaultName(record.Name) && !view.IncludeDefault) continue;
        if (!filter.Accepts || filter.Accepts(record.Filtered)) visit(RowOf(record));
    }
}

void VisitView(ControlStream& stream, const UserListView& view, const RowVisitor& visit) {
    if (view.Which == UserSelection::AllUsers) VisitRows(stream, RecordKind::User, view, visit);
    if (view.Which == UserSelection::MailProfiles)
        VisitRows(stream, RecordKind::User, view, visit, {"MailName:", IsProfile});
    if (view.IncludeGroups) VisitRows(stream, RecordKind::Group, view, visit);
}

std::string LineOf(const UserRow& row, const UserListView& view, std::string_view separator) {
    std::string line(row.Name);
    switch (view.Format) {
    case UserListFormat::NameOnly: break;
    case UserListFormat::NameAndFullname: line.append(separator).append(row.Fullname); break;
    case UserListFormat::UsernameNameFullname:
        // Mail profiles have no user behind their user name.
        line = row.Fullname.starts_with('(') ? row.Name : row.Username;
        line.append("\t").append(row.Name).append("\t").append(row.Fullname);
        break;
    }
    if (view.WithGroup) line.append(separator).append(row.Group);
    return line;
}

// Adds each row that is visited to the list.
RowVisitor AddTo(ListTarget& list, const UserListView& view) {
    const std::string_view separator = list.IsComboBox() ? "  -  " : "\t";
    return [&list, &view, separator](const UserRow& row) { list.Add(LineOf(row, view, separator)); };
}

// What stands for a record that is not there; false when nothing does.
bool ReadMissingRecord(std::optional<std::string_view> name, UserRecord& record, RecordKind kind) {
    record = {};
    if (kind == RecordKind::Group) return true;
    if (name) {
        ShowNotFound(*name, kind);
        return false;
    }
    ShowWarning("Default user definitions not found");
    record.Permissions.DialMask = kEveryDialClass;
    record.Permissions.SendTime.Days = kEveryDay;
    return true;
}

} // namespace

bool FindUserListEntry(std::string_view key, FindBy by, std::optional<std::string_view> match, RecordKind kind,
                       FoundEntry& entry) {
    static constexpr std::array<std::string_view, 2> kKeys = {kNameKey, "Username:"};
    entry = {};
    ControlStream list = OpenForReading(PathOf(ServerFile::UserList));
    if (!list) return false;
    if (by == FindBy::Username && key.empty()) return true;

    const std::size_t wanted = by == FindBy::Name ? 0 : 1;
    RecordWalker records(list, RecordHeader(kind), kKeys);
    WholeValue value;
    WholeValue other;
    while (records.Next()) {
        records.Get(wanted, value);
        if (!EqualFolded(value, key)) continue;
        records.Get(1 - wanted, other);
        if (match && !EqualFolded(other, *match)) continue;
        entry = {true, other.View()};
        return true;
    }
    return WasRead(list);
}

UserList::UserList() : stream_(OpenForReading(PathOf(ServerFile::UserList))) {}

std::optional<std::string> UserList::NameOf(std::string_view name, RecordKind kind) {
    const auto found = FindRecord(stream_, kind, name);
    return found ? std::optional(found->Name.String()) : std::nullopt;
}

bool UserList::ReadRecord(std::optional<std::string_view> name, UserRecord& record, RecordKind kind) {
    const std::optional<RecordPlace> place = FindRecord(stream_, kind, name);
    if (!place) return IsRead() && ReadMissingRecord(name, record, kind);
    stream_.Seek(place->BodyStart);
    ReadRecordBody(stream_, kind, !name || IsDefaultName(*name), record);
    return IsRead();
}

bool UserList::ReadNamed(std::string& name, UserRecord& record, RecordKind kind) {
    const std::optional<std::string> stored = NameOf(name, kind);
    if (!stored) {
        if (IsRead()) ShowNotFound(name, kind);
        return false;
    }
    name = *stored;
    return ReadRecord(name, record, kind);
}

std::optional<StoredRecord> UserList::ReadStored(std::optional<std::string_view> name, RecordKind kind) {
    StoredRecord stored{std::string(name.value_or("")), {}, {}};
    if (!(name ? ReadNamed(stored.Name, stored.Record, kind) : ReadRecord(name, stored.Record, kind))) return {};
    if (const std::optional<RecordPlace> place = FindRecord(stream_, kind, name))
        stored.Body = stream_.Seen(place->BodyStart, static_cast<std::size_t>(place->End - place->BodyStart));
    return stored;
}

bool UserList::IsRead() const { return WasRead(stream_); }

void ShowNotFound(std::string_view name, RecordKind kind) {
    constexpr MessageWith<1> kNoUser = "Brivane user %s not found";
    constexpr MessageWith<1> kNoGroup = "Brivane usergroup %s not found";
    ShowError(kind == RecordKind::User ? kNoUser : kNoGroup, name);
}

bool ReadUserRecord(std::optional<std::string_view> name, UserRecord& record, RecordKind kind) {
    UserList list;
    return list && list.ReadRecord(name, record, kind);
}

bool VisitUserRecords(RecordKind kind, const RecordVisitor& visit) {
    static constexpr std::array kKeys = {kNameKey};
    ControlStream list = OpenForReading(PathOf(ServerFile::UserList));
    if (!list) return false;
    RecordWalker records(list, RecordHeader(kind), kKeys);
    WholeValue name;
    StoredRecord stored;
    while (records.Next()) {
        records.Get(0, name);
        stored.Name = name.View();
        stored.Body = list.Seen(records.BodyStart(), static_cast<std::size_t>(records.End() - records.BodyStart()));
        list.Seek(records.BodyStart());
        ReadRecordBody(list, kind, IsDefaultName(name), stored.Record);
        if (!visit(stored)) break;
    }
    return WasRead(list);
}

bool VisitUserRows(const UserListView& view, const RowVisitor& visit) {
    ControlStream stream = OpenForReading(PathOf(ServerFile::UserList));
    if (!stream) return false;
    VisitView(stream, view, visit);
    return WasRead(stream);
}

bool VisitGroupMembers(std::string_view group, const UserListView& view, const RowVisitor& visit) {
    ControlStream stream = OpenForReading(PathOf(ServerFile::UserList));
    if (!stream) return false;
    const auto isGroup = [group](std::string_view value) { return EqualFolded(value, group); };
    VisitRows(stream, RecordKind::User, view, visit, {"Group:", isGroup});
    return WasRead(stream);
}

bool FillUserList(ListTarget& list, ListTarget* secondList, const UserListView& view) {
    list.Clear();
    if (secondList != nullptr) secondList->Clear();
    ControlStream stream = OpenForReading(PathOf(ServerFile::UserList));
    if (!stream) return false;
    VisitView(stream, view, AddTo(list, view));
    if (secondList != nullptr) VisitView(stream, view, AddTo(*secondList, view));
    return WasRead(stream);
}

bool FillGroupMemberList(std::string_view group, ListTarget& list, bool withFullname, bool withGroup) {
    UserListView view;
    view.Format = withFullname ? UserListFormat::NameAndFullname : UserListFormat::NameOnly;
    view.WithGroup = withGroup;
    return VisitGroupMembers(group, view, AddTo(list, view));
}

bool IsNetworkDevice(std::string_view deviceName) { return StartsWithFolded(deviceName, "NETWORK"); }

bool IsFaxDevice(std::string_view deviceName) {
    constexpr std::array<std::string_view, 4> kOthers = {"PRINT", "NETWORK", "HPPRINT", "PSPRINT"};
    const auto isOther = [deviceName](std::string_view stem) { return StartsWithFolded(deviceName, stem); };
    return std::ranges::none_of(kOthers, isOther);
}

} // namespace bv
