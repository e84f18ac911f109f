// The boxes in which a coversheet or letterhead is added and described. They write nothing: on OK the entry holds what
// the person gave.
#pragma once

#include <windows.h>

#include "covlet/catalogue.h"

namespace bv {

struct ItemDialog {
    ItemKind Kind = ItemKind::Coversheet;
    CatalogueEntry Entry;
};

// Asks for the name and description of a new item; the name is upper case, has files and is not in the catalogue. False
// when cancelled, as also after the coversheet editor was run for a new coversheet.
bool AskNewItem(HWND owner, ItemDialog& item);

// Shows an entry and asks for its description. False when cancelled.
bool AskDescription(HWND owner, ItemDialog& item);

INT_PTR CALLBACK CovsheetAddDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK LetheadAddDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK CovsheetEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK LetheadEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
