// The catalogues of installed coversheets and letterheads: B-COVER\MSGDIR.CTL and B-LETTER\MSGDIR.CTL of the system
// area, whose "[DIRECTORY]" paragraph has a line `File: NAME "description"` for each item.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/fixed_text.h"
#include "voice/list_target.h"

namespace bv {

enum class ItemKind { Coversheet, Letterhead };

using ItemName = FixedText<12>; // an item's file name without extension
using ItemDescription = FixedText<50>;

struct CatalogueEntry {
    ItemName Name;
    ItemDescription Description;
};

// The directory of the kind's files, ending in "\".
std::string ItemDirectory(ItemKind kind);

// "coversheet" or "letterhead".
std::string KindWord(ItemKind kind);

using CatalogueEntries = std::vector<CatalogueEntry>;

// The entries in file order. Lines with a name of 13 characters or more, or without a description token, are passed
// over. None after 413 or 9011, when the catalogue cannot be opened or read.
std::optional<CatalogueEntries> ReadCatalogue(ItemKind kind);

// The same entries, which fill the emptied list, too: name, tab, description.
std::optional<CatalogueEntries> ListCatalogue(ItemKind kind, ListTarget& list);

// The names of the kind's files that can be installed (*.EPN, or *.G3F and *.G3N), that the catalogue can keep and that
// are not in it, each once. None after 413 or 9011, the catalogue cannot be read, or 9105, the directory cannot.
std::optional<std::vector<std::string>> FindInstallable(ItemKind kind);

// Adds those names to the list that it does not have.
bool ListInstallable(ItemKind kind, ListTarget& list);

// The first entry of that name in any case; none after a message, when it is not there, too.
std::optional<CatalogueEntry> FindCatalogued(ItemKind kind, std::string_view name);

// Whether there is an entry of that name; no, after 9011, when the catalogue cannot be read to its end.
bool IsCatalogued(ItemKind kind, std::string_view name);

// The description of an entry; false when it is not in the catalogue.
bool GetDescription(ItemKind kind, std::string_view name, ItemDescription& description);

// Whether any of the item's files exists; shows 5018 or 5017 when none does.
bool CheckItemFiles(ItemKind kind, std::string_view name);

// False, after showing 5019 or 9011, when the name is in the catalogue or that cannot be known.
bool CheckNotInstalled(ItemKind kind, std::string_view name);

// False, after showing 9104, when no file can have the item's name.
bool CheckItemName(ItemKind kind, std::string_view name);

// Why an item cannot be added under the name, in a sentence: it is no file's name, or readers of the catalogue would
// make another of it. None when it can, and for no name.
std::optional<std::string> FaultOfItemName(std::string_view name);

// What an add box does on OK with the typed name, upper-cased by the call: it must not be empty (5148 or 5147), be one
// that can be kept (FaultOfItemName), have files and not be installed. False after the message.
bool CheckNewItem(ItemKind kind, ItemName& name);

// False, after a message, for a description of over 50 characters or with a double quote: readers would lose what
// follows it.
bool CheckDescription(std::string_view description);

// Inserts an entry before the first line below "[DIRECTORY]" whose name is greater, or at the end of the file, which
// gets a "[DIRECTORY]" if it has none. Every other line stays byte for byte, but the empty ones below "[DIRECTORY]" go.
// The name is cut or padded to 8 characters. False after 413 (catalogue), 5015 (temporary) or 5016 (rewrite).
bool AddCatalogueEntry(ItemKind kind, std::string_view name, std::string_view description);

// Says that there is no such entry.
void ShowNotCatalogued(ItemKind kind, std::string_view name);

// Replaces the description of every entry with that name, or deletes them; the file's lines are cleaned on the way.
// False after 413 or 5000, or, with nothing written, when there is no such entry.
bool ChangeCatalogueEntry(ItemKind kind, std::string_view name, std::string_view description);
bool DeleteCatalogueEntry(ItemKind kind, std::string_view name);

} // namespace bv
