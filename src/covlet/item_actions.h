// What a person does to a catalogue, whole: the question, the change and the status text that goes with it. Each
// returns whether the item was changed as asked; when not, a message has said why (except a question answered No).
#pragma once

#include <string_view>

#include "covlet/catalogue.h"

namespace bv {

// Adds an item that CheckNewItem has passed. Status 455 "Added %s %s".
bool AddItem(ItemKind kind, const CatalogueEntry& entry);

// Gives an entry another description. Status 456 "Modified %s %s"; the same description is no change, and writes and
// says nothing.
bool ChangeItem(ItemKind kind, const CatalogueEntry& entry, std::string_view description);

// Asks 5193 and deletes an entry. Status 458 "Deleted %s %s" or 457 "Unable to delete %s %s".
bool DeleteItem(ItemKind kind, const CatalogueEntry& entry);

} // namespace bv
