#include "covlet/item_actions.h"

#include "voice/messages.h"

namespace bv {

bool AddItem(ItemKind kind, const CatalogueEntry& entry) {
    if (!CheckDescription(entry.Description)) return false;
    if (!AddCatalogueEntry(kind, entry.Name, entry.Description)) return false;
    ShowStatus(kAdded, KindWord(kind), entry.Name.View());
    return true;
}

bool ChangeItem(ItemKind kind, const CatalogueEntry& entry, std::string_view description) {
    if (entry.Description == description) return true;
    if (!CheckDescription(description)) return false;
    if (!ChangeCatalogueEntry(kind, entry.Name, description)) return false;
    ShowStatus(kModified, KindWord(kind), entry.Name.View());
    return true;
}

bool DeleteItem(ItemKind kind, const CatalogueEntry& entry) {
    if (!AskDelete(KindWord(kind), entry.Name, entry.Description)) return false;
    const bool deleted = DeleteCatalogueEntry(kind, entry.Name);
    ShowStatus(deleted ? kDeleted : kUnableToDelete, KindWord(kind), entry.Name.View());
    return deleted;
}

} // namespace bv
