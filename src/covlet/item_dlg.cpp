#include "covlet/item_dlg.h"

#include "covlet/item_rows_dlg.h"
#include "covlet/launch.h"
#include "dialogs/dialog_dlg.h"
#include "dialogs/list_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "resources/ids.h"

namespace bv {
namespace {

bool IsCoversheet(const ItemDialog& item) { return item.Kind == ItemKind::Coversheet; }

constexpr ListPlan kInstalled{.List = ID_ITEM_INSTALLED, .Columns = kItemColumns, .IsSorted = false};

// An add box: the item, and what is installed already.
struct NewItem {
    explicit NewItem(ItemDialog& item) : Item(item) {}

    ItemDialog& Item;
    ItemRows Installed;
    ListView List{Installed, kInstalled};
};

void FillNewItem(HWND dialog, NewItem& add) {
    const WaitCursor wait;
    ComboBoxTarget files(dialog, ID_ITEM_FILE);
    SendDlgItemMessageA(dialog, ID_ITEM_FILE, CB_LIMITTEXT, ItemName::kLimit, 0);
    PutField(dialog, ID_ITEM_NEW_DESCRIPTION, add.Item.Entry.Description);
    add.List.Begin(dialog);
    add.List.Refill([&] { return add.Installed.Read(add.Item.Kind); });
    // Without its catalogue everything would seem to be new.
    if (add.Installed.IsRead()) ListInstallable(add.Item.Kind, files);
}

void TakeNewItem(HWND dialog, NewItem& add) {
    ItemDialog& item = add.Item;
    if (!TakeField(dialog, ID_ITEM_FILE, item.Entry.Name)) return;
    if (!CheckNewItem(item.Kind, item.Entry.Name)) return FocusControl(dialog, ID_ITEM_FILE);
    if (!TakeField(dialog, ID_ITEM_NEW_DESCRIPTION, item.Entry.Description)) return;
    if (!CheckDescription(item.Entry.Description)) return FocusControl(dialog, ID_ITEM_NEW_DESCRIPTION);
    EndDialog(dialog, IDOK);
}

void MakeNewCoversheet(HWND dialog, NewItem&) {
    RunItemEditor("*");
    EndDialog(dialog, IDCANCEL);
}

void FillDetails(HWND dialog, ItemDialog& item) {
    SetText(dialog, ID_ITEM_NAME, item.Entry.Name.String());
    PutField(dialog, ID_ITEM_DESCRIPTION, item.Entry.Description);
}

void TakeDetails(HWND dialog, ItemDialog& item) {
    if (!TakeField(dialog, ID_ITEM_DESCRIPTION, item.Entry.Description)) return;
    if (!CheckDescription(item.Entry.Description)) return FocusControl(dialog, ID_ITEM_DESCRIPTION);
    EndDialog(dialog, IDOK);
}

void ViewShownItem(HWND, ItemDialog& item) { ViewItem(item.Kind, item.Entry.Name); }

constexpr DialogCommand<NewItem> kAddCommands[] = {
    {IDOK, BN_CLICKED, TakeNewItem},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
    {ID_ITEM_NEW, BN_CLICKED, MakeNewCoversheet}, // only the coversheets' box has this button
};
constexpr DialogPlan<NewItem> kAddCoversheet{HELP_ADD_COVERSHEET, FillNewItem, kAddCommands};
constexpr DialogPlan<NewItem> kAddLetterhead{HELP_ADD_LETTERHEAD, FillNewItem, kAddCommands};

constexpr DialogCommand<ItemDialog> kDetailCommands[] = {
    {IDOK, BN_CLICKED, TakeDetails},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
    {ID_ITEM_VIEW, BN_CLICKED, ViewShownItem},
};
constexpr DialogPlan<ItemDialog> kCoversheetDetails{HELP_COVERSHEET, FillDetails, kDetailCommands};
constexpr DialogPlan<ItemDialog> kLetterheadDetails{HELP_LETTERHEAD, FillDetails, kDetailCommands};

} // namespace

bool AskNewItem(HWND owner, ItemDialog& item) {
    NewItem add(item);
    if (IsCoversheet(item)) return OpenDialog("CovsheetAddBox", owner, CovsheetAddDlgBox, &add) == IDOK;
    return OpenDialog("LetheadAddBox", owner, LetheadAddDlgBox, &add) == IDOK;
}

bool AskDescription(HWND owner, ItemDialog& item) {
    if (IsCoversheet(item)) return OpenDialog("CovsheetEditBox", owner, CovsheetEditDlgBox, &item) == IDOK;
    return OpenDialog("LetheadEditBox", owner, LetheadEditDlgBox, &item) == IDOK;
}

INT_PTR CALLBACK CovsheetAddDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kAddCoversheet, {dialog, message, wParam, lParam});
}

INT_PTR CALLBACK LetheadAddDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kAddLetterhead, {dialog, message, wParam, lParam});
}

INT_PTR CALLBACK CovsheetEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kCoversheetDetails, {dialog, message, wParam, lParam});
}

INT_PTR CALLBACK LetheadEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kLetterheadDetails, {dialog, message, wParam, lParam});
}

} // namespace bv
