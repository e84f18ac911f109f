#include "users/user_export.h"

#include <functional>
#include <unordered_set>

#include "ctlfile/csv.h"
#include "ctlfile/lines.h"
#include "users/user_entry.h"
#include "users/user_list.h"
#include "users/user_record.h"

namespace bv {

namespace {

using IsWanted = std::function<bool(std::string_view name)>;

std::optional<std::string> RowsAsCsv(const IsWanted& isWanted) {
    std::string text = "Name";
    for (const RecordKey& key : RecordKeys()) {
        if (HasKey(key, RecordKind::User)) text.append(",").append(key.Field.Name());
    }
    text += kLineEnd;
    const auto addRow = [&](const StoredRecord& user) {
        if (IsDefaultName(user.Name) || !isWanted(user.Name)) return true;
        text += CsvText(user.Name);
        for (const RecordKey& key : RecordKeys()) {
            if (HasKey(key, RecordKind::User)) text.append(",").append(CsvText(key.Field.Text(user.Record)));
        }
        text += kLineEnd;
        return true;
    };
    if (!VisitUserRecords(RecordKind::User, addRow)) return {};
    return text;
}

} // namespace

std::optional<std::string> UsersAsCsv() {
    return RowsAsCsv([](std::string_view) { return true; });
}

std::optional<std::string> UsersAsCsv(std::span<const std::string> names) {
    const std::unordered_set<std::string_view> wanted(names.begin(), names.end());
    return RowsAsCsv([&](std::string_view name) { return wanted.contains(name); });
}

} // namespace bv
