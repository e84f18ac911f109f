#include "users/printer_uses.h"

#include <functional>
#include <string>

#include "shell/server_files.h"
#include "users/user_actions.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr struct {
    std::string_view Key;
    PrinterChoice UserRecord::*Slot;
} kSlots[] = {
    {"PrintSentDevice:", &UserRecord::PrintSent},
    {"PrintSentDevice2:", &UserRecord::PrintSent2},
    {"PrintRecdDevice:", &UserRecord::PrintRecd},
    {"PrintRecdDevice2:", &UserRecord::PrintRecd2},
};

bool ChangeRecords(RecordKind kind, const NameSet& printers, const UseChange& change) {
    std::vector<RecordUpdate> updates;
    const bool isRead = VisitUserRecords(kind, [&](const StoredRecord& stored) {
        UserRecord after = stored.Record;
        for (const auto& [key, slot] : kSlots)
            if (printers.Has((after.*slot).Device)) (after.*slot).Device = change.By;
        if (after != stored.Record) updates.push_back({stored.Name, stored.Record, after});
        return true;
    });
    if (!isRead) return false;
    const SavedUsers saved = SaveUsers({}, updates, kind, [](std::size_t) { return true; });
    return saved.Updated == updates.size();
}

} // namespace

std::optional<std::vector<Use>> FindListPrinterUses(const NameSet& printers) {
    std::vector<Use> uses;
    for (const RecordKind kind : {RecordKind::User, RecordKind::Group}) {
        const char* word = kind == RecordKind::User ? "user" : "group";
        const bool isRead = VisitUserRecords(kind, [&](const StoredRecord& stored) {
            for (const auto& [key, slot] : kSlots) {
                const auto& printer = (stored.Record.*slot).Device;
                if (!printers.Has(printer)) continue;
                uses.push_back({.File = NameOf(ServerFile::UserList),
                                .Where = FormatText("%s %s, %s %s", word, stored.Name, key, printer),
                                .Name = printer.String()});
            }
            return true;
        });
        if (!isRead) return {};
    }
    return uses;
}

bool ChangeListPrinterUses(const NameSet& printers, const UseChange& change) {
    return ChangeRecords(RecordKind::User, printers, change) && ChangeRecords(RecordKind::Group, printers, change);
}

} // namespace bv
