#include "users/user_merge.h"

#include "ctlfile/merge.h"
#include "users/user_list.h"

namespace bv {
namespace {

std::string WhoseRecord(const RecordEntry& entry) {
    return std::string(entry.Kind() == RecordKind::Group ? "User group " : "User ") + entry.Name();
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
    const std::string whose = WhoseRecord(entry);
    for (const RecordKey& key : RecordKeys()) {
        if (!HasKey(key, entry.Kind())) continue;
        const MergedKey texts{KeyName(key), key.Show(entry.Before()), key.Show(entry.After()), key.Show(theirs)};
        if (TakesMine(whose, texts)) merged.Enter(KeyName(key), texts.Mine);
    }
    return merged;
}

} // namespace bv
