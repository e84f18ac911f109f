#include "users/user_merge.h"

#include "users/user_list.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

std::string WhoseRecord(const RecordEntry& entry) {
    return std::string(entry.Kind() == RecordKind::Group ? "User group " : "User ") + entry.Name();
}

bool OverwritesTheirs(const RecordEntry& entry, const RecordKey& key, const std::string& theirs) {
    const std::string value = FormatText("%s: \"%s\"", key.Field.Name(), theirs);
    return AskWarning(kOverwriteTheirs, WhoseRecord(entry), value);
}

} // namespace

std::optional<RecordEntry> OnTopOfTheList(const RecordEntry& entry) {
    std::optional<StoredRecord> now;
    {
        UserList list;
        const bool isDefault = IsDefaultName(entry.Name());
        if (list)
            now =
                list.ReadStored(isDefault ? std::nullopt : std::optional<std::string_view>(entry.Name()), entry.Kind());
    }
    if (!now) return std::nullopt;
    RecordEntry merged(entry.Kind(), std::move(*now));
    const UserRecord theirs = merged.Before();
    for (const RecordKey& key : RecordKeys()) {
        const std::string mine = key.Field.Text(entry.After());
        const std::string before = key.Field.Text(entry.Before());
        const std::string nowThere = key.Field.Text(theirs);
        if (!HasKey(key, entry.Kind()) || mine == before || mine == nowThere) continue;
        if (nowThere != before && !OverwritesTheirs(entry, key, nowThere)) continue;
        merged.Enter(key.Field.Name(), mine);
    }
    return merged;
}

} // namespace bv
