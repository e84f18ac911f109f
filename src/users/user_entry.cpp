#include "users/user_entry.h"

#include <algorithm>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"
#include "platform/overlay_files.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

// The lines of a record's body that begin with the key.
std::vector<std::string> LinesOf(std::string_view key, std::string_view body) {
    std::vector<std::string> lines;
    while (!body.empty()) {
        std::string line = CleanLine(TakeLine(body));
        if (BeginsWith(line, key)) lines.push_back(std::move(line));
    }
    return lines;
}

// The line of a permission that no row of the table has, and so stays, when its value is none: it lifts every limit.
std::optional<std::string> LineThatLifts(std::string_view body) {
    for (const PermissionKey& permission : kPermissionKeys) {
        const bool isOurs =
            std::ranges::any_of(RecordKeys(), [&](const auto& row) { return row.Field.Key == permission.Key; });
        if (isOurs) continue;
        for (const std::string& line : LinesOf(permission.Key, body)) {
            std::uint8_t flags = 0;
            if (!ParsePermission(KeyValue(line).value_or(""), permission.Flag, flags)) return line;
        }
    }
    return {};
}

// The record that lines are read as.
UserRecord ReadLines(const std::string& lines, RecordKind kind, bool isDefault) {
    platform::OverlayFiles memory;
    constexpr platform::OpenRequest kNew = {platform::Access::ReadWrite, platform::Deny::Nothing,
                                            platform::Creation::CreateOrTruncate};
    const std::string path = "C:\\RECORD";
    ControlStream stream(memory.Open(path, kNew).Opened, path);
    stream.Write(lines);
    stream.Rewind();
    UserRecord record;
    ReadRecordBody(stream, kind, isDefault, record);
    return record;
}

} // namespace

const RecordKey* FindRecordKey(RecordKind kind, std::string_view name) {
    const auto isWanted = [=](const RecordKey& key) {
        return HasKey(key, kind) && EqualFolded(key.Field.Name(), name);
    };
    const auto found = std::ranges::find_if(RecordKeys(), isWanted);
    return found == RecordKeys().end() ? nullptr : &*found;
}

std::optional<std::string> EnterValue(UserRecord& record, RecordKind kind, std::string_view keyName,
                                      std::string_view value) {
    const RecordKey* key = FindRecordKey(kind, keyName);
    if (key == nullptr) {
        const char* const records = kind == RecordKind::User ? "users" : "groups";
        return FillMessage(kNoSuchKey, CleanLine(keyName), CleanLine(value), records);
    }
    if (key->Field.Store(record, value)) return {};
    auto fault = FaultOfValue(key->Field.Name(), key->Field.Rule, value);
    return fault ? fault : NotAValue(key->Field.Name(), key->Field.Rule, value);
}

std::optional<StoredRecord> BeginningOf(RecordKind kind, const std::string& like) {
    UserList list;
    if (!list) return std::nullopt;
    auto stored = list.ReadStored(std::nullopt, kind);
    if (!stored || like.empty()) return stored;
    UserRecord record;
    std::string name = like;
    if (!list.ReadNamed(name, record, kind)) return std::nullopt;
    record.Fullname = record.Username = record.Netware = record.LanManager = std::string_view();
    record.MailName = std::string_view();
    stored->Record = record;
    return stored;
}

RecordEntry::RecordEntry(RecordKind kind, StoredRecord stored)
    : kind_(kind), stored_(std::move(stored)), after_(stored_.Record) {}

RecordEntry RecordEntry::OfNew(RecordKind kind, std::string name, StoredRecord defaultRecord) {
    defaultRecord.Name = std::move(name);
    RecordEntry entry(kind, std::move(defaultRecord));
    entry.isNew_ = true;
    return entry;
}

std::optional<std::string> RecordEntry::Enter(std::string_view keyName, std::string_view value) {
    const RecordKey* key = FindRecordKey(kind_, keyName);
    const bool isAsStored = key != nullptr && value == key->Field.Text(stored_.Record);
    if (!isAsStored || value != key->Field.Text(after_)) {
        auto fault = EnterValue(after_, kind_, keyName, value);
        if (fault && !isAsStored) return fault;
        if (fault) key->Read(after_, value); // what the file has is taken back, whether it could be entered or not
    }
    entered_.push_back(key);
    return {};
}

bool RecordEntry::IsEntered(const RecordKey& key) const { return std::ranges::find(entered_, &key) != entered_.end(); }

UserRecord RecordEntry::ReadBack() const {
    return ReadLines(UserRecordLines(stored_.Name, after_, stored_.Body, kind_), kind_, IsDefaultName(stored_.Name));
}

// What would not come back when it is written says nothing: writing it would not make it what it reads as.
bool RecordEntry::SaysOtherwise(const RecordKey& key, const UserRecord& readBack) const {
    const std::string inForce = key.Field.Text(stored_.Record);
    if (key.Field.Text(readBack) != inForce) return false;
    return std::ranges::any_of(LinesOf(key.Field.Key, stored_.Body), [&](const std::string& line) {
        const std::string_view value = KeyValue(line).value_or("");
        UserRecord said = stored_.Record;
        return value != inForce && (!key.Field.Store(said, value) || key.Field.Text(said) != inForce);
    });
}

bool RecordEntry::IsToBeWritten() const {
    if (isNew_ || after_ != stored_.Record) return true;
    if (entered_.empty()) return false;
    const UserRecord readBack = ReadBack();
    return std::ranges::any_of(entered_, [&](const RecordKey* key) { return SaysOtherwise(*key, readBack); });
}

std::string RecordEntry::WhyNotKept(const RecordKey& key, const UserRecord& readBack) const {
    const std::string value = key.Field.Text(after_);
    const auto lifting = LineThatLifts(stored_.Body);
    if (lifting && (key.Field.Key == kDialKey || key.Field.Key == kSendTimeKey)) {
        return FormatText("%s: \"%s\" does not count beside the line \"%s\", which lifts every limit", key.Field.Name(),
                          value, *lifting);
    }
    return FormatText("%s: \"%s\" is not kept with the other values; \"%s\" would come back", key.Field.Name(), value,
                      key.Field.Text(readBack));
}

std::optional<RecordEntry::Fault> RecordEntry::FaultOfWhole() const {
    if (entered_.empty() || !IsToBeWritten()) return {};
    const UserRecord readBack = ReadBack();
    for (const RecordKey* key : entered_) {
        if (key->Field.Text(after_) != key->Field.Text(readBack)) return Fault{key, WhyNotKept(*key, readBack)};
    }
    return {};
}

std::vector<RecordEntry::Change> RecordEntry::Changes() const {
    std::vector<Change> changes;
    if (!IsToBeWritten()) return changes;
    const UserRecord readBack = ReadBack();
    for (const RecordKey& key : RecordKeys()) {
        if (!HasKey(key, kind_) || key.Field.Text(stored_.Record) == key.Field.Text(readBack)) continue;
        const std::string text = FormatText("%s: \"%s\" to \"%s\"", key.Field.Name(), key.Field.Text(stored_.Record),
                                            key.Field.Text(readBack));
        changes.push_back({&key, text, IsEntered(key)});
    }
    return changes;
}

KeyHelp HelpOf(const RecordKey& key, RecordKind kind) {
    return {std::string(key.Field.Key), DescribeValues(key.Field.Rule), key.Field.Text(ReadLines({}, kind, false)),
            std::string(key.Meaning)};
}

} // namespace bv
