#include "users/user_export.h"

#include "ctlfile/csv.h"
#include "ctlfile/lines.h"
#include "users/user_entry.h"
#include "users/user_list.h"
#include "users/user_record.h"

namespace bv {

std::optional<std::string> UsersAsCsv() {
    std::string text = "Name";
    for (const RecordKey& key : RecordKeys()) {
        if (HasKey(key, RecordKind::User)) text.append(",").append(KeyName(key));
    }
    text += kLineEnd;
    const auto addRow = [&text](const StoredRecord& user) {
        if (IsDefaultName(user.Name)) return true;
        text += CsvText(user.Name);
        for (const RecordKey& key : RecordKeys()) {
            if (HasKey(key, RecordKind::User)) text.append(",").append(CsvText(key.Show(user.Record)));
        }
        text += kLineEnd;
        return true;
    };
    if (!VisitUserRecords(RecordKind::User, addRow)) return {};
    return text;
}

} // namespace bv
