#include "users/user_entry.h"

#include <algorithm>

#include "ctlfile/lines.h"
#include "platform/ascii.h"
#include "platform/overlay_files.h"
#include "shell/format.h"

namespace bv {

const RecordKey* FindRecordKey(RecordKind kind, std::string_view name) {
    const auto isWanted = [=](const RecordKey& key) { return HasKey(key, kind) && EqualFolded(KeyName(key), name); };
    const auto found = std::ranges::find_if(RecordKeys(), isWanted);
    return found == RecordKeys().end() ? nullptr : &*found;
}

std::optional<std::string> EnterValue(UserRecord& record, RecordKind kind, std::string_view keyName,
                                      std::string_view value) {
    const RecordKey* key = FindRecordKey(kind, keyName);
    if (key == nullptr) {
        const char* const records = kind == RecordKind::User ? "users" : "groups";
        return FormatText("%s: \"%s\" - %s have no such key", CleanLine(keyName), CleanLine(value), records);
    }
    if (key->Enter(record, value)) return {};
    return FormatText("%s: \"%s\" is not %s", KeyName(*key), CleanLine(value), key->Values());
}

UserRecord AsReadBack(std::string_view name, const UserRecord& record, RecordKind kind) {
    platform::OverlayFiles memory;
    constexpr platform::OpenRequest kNew = {platform::Access::ReadWrite, platform::Deny::Nothing,
                                            platform::Creation::CreateOrTruncate};
    const std::string path = "C:\\RECORD";
    ControlStream stream(memory.Open(path, kNew).Opened, path);
    stream.Write(UserRecordLines(name, record, std::nullopt, kind));
    stream.Rewind();
    UserRecord readBack;
    ReadRecordBody(stream, kind, IsDefaultName(name), readBack);
    return readBack;
}

std::optional<std::string> FaultOfChange(std::string_view name, const UserRecord& before, const UserRecord& after,
                                         RecordKind kind) {
    const UserRecord readBack = AsReadBack(name, after, kind);
    for (const RecordKey& key : RecordKeys()) {
        if (!HasKey(key, kind)) continue;
        const std::string value = key.Show(after);
        if (value == key.Show(before) || value == key.Show(readBack)) continue;
        return FormatText("%s: \"%s\" is not kept with the other values; \"%s\" would come back", KeyName(key), value,
                          key.Show(readBack));
    }
    return {};
}

} // namespace bv
