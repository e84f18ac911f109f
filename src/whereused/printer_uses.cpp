#include "whereused/printer_uses.h"

#include <string_view>

#include "shell/server_files.h"
#include "users/user_actions.h"
#include "users/user_entry.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr std::string_view kPrinterKeys[] = {"PrintSentDevice", "PrintSentDevice2", "PrintRecdDevice",
                                             "PrintRecdDevice2"};
constexpr RecordKind kKinds[] = {RecordKind::User, RecordKind::Group};

std::string PrinterOf(const UserRecord& record, RecordKind kind, std::string_view key) {
    const RecordKey* found = FindRecordKey(kind, key);
    return found == nullptr ? std::string() : found->Show(record);
}

// The record with the places changed; none when it has none.
std::optional<RecordUpdate> ChangeOf(const StoredRecord& stored, RecordKind kind, const NameSet& printers,
                                     const UseChange& change) {
    RecordUpdate update{stored.Name, stored.Record, stored.Record};
    for (const std::string_view key : kPrinterKeys)
        if (printers.Has(PrinterOf(stored.Record, kind, key))) EnterValue(update.After, kind, key, change.By);
    return update.After == update.Before ? std::nullopt : std::optional(update);
}

} // namespace

std::optional<std::vector<Use>> FindPrinterUses(const NameSet& printers) {
    std::vector<Use> uses;
    for (const RecordKind kind : kKinds) {
        const bool isRead = VisitUserRecords(kind, [&](const StoredRecord& stored) {
            for (const std::string_view key : kPrinterKeys) {
                const std::string printer = PrinterOf(stored.Record, kind, key);
                if (!printers.Has(printer)) continue;
                const char* const what = kind == RecordKind::User ? "user" : "user group";
                uses.push_back({.File = NameOf(ServerFile::UserList),
                                .Where = FormatText("%s %s, %s: %s", what, stored.Name, key, printer),
                                .Name = printer});
            }
            return true;
        });
        if (!isRead) return {};
    }
    return uses;
}

bool ChangePrinterUses(const NameSet& printers, const UseChange& change) {
    for (const RecordKind kind : kKinds) {
        std::vector<RecordUpdate> updates;
        const bool isRead = VisitUserRecords(kind, [&](const StoredRecord& stored) {
            if (auto update = ChangeOf(stored, kind, printers, change)) updates.push_back(std::move(*update));
            return true;
        });
        if (!isRead) return false;
        const SavedUsers saved = SaveUsers({}, updates, kind, [](std::size_t) { return true; });
        if (saved.Updated != updates.size()) return false;
    }
    return true;
}

} // namespace bv
