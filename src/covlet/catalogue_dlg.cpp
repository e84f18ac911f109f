#include "covlet/catalogue_dlg.h"

#include <array>

#include "covlet/item_actions.h"
#include "covlet/item_dlg.h"
#include "covlet/item_rows_dlg.h"
#include "covlet/launch.h"
#include "dialogs/dialog_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "resources/ids.h"

namespace bv {
namespace {

constexpr int kActions[] = {ID_COVLET_ADD, ID_COVLET_RENAME, ID_COVLET_DELETE, ID_COVLET_EDIT};
constexpr ListPlan kList{.List = ID_COVLET_LIST,
                         .Columns = kItemColumns,
                         .Count = ID_COVLET_COUNT,
                         .DefaultButton = ID_COVLET_RENAME,
                         .Menu = kActions,
                         .IsSorted = false};

struct CatalogueDialog {
    ItemKind Kind = ItemKind::Coversheet;
    ItemRows Items;
    ListView List{Items, kList};
    std::array<bool, 2> IsUnreadable{}; // by kind: what has been said once is said again on F5 alone
};

bool& IsUnreadable(CatalogueDialog& context) {
    return context.IsUnreadable[context.Kind == ItemKind::Coversheet ? 0 : 1];
}

// Empty when none is selected.
CatalogueEntry SelectedItem(const CatalogueDialog& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    return rows.empty() ? CatalogueEntry() : context.Items.At(rows.front());
}

void EnableButtons(HWND dialog, CatalogueDialog& context) {
    const bool selected = context.List.HasOneSelected();
    for (const int button : {ID_COVLET_RENAME, ID_COVLET_DELETE, ID_COVLET_EDIT})
        EnableControl(dialog, button, selected);
}

void ListItems(CatalogueDialog& context) {
    const WaitCursor wait;
    context.List.Refill([&] { return context.Items.Read(context.Kind); });
}

void ListAgain(HWND dialog, CatalogueDialog& context) {
    ListItems(context);
    IsUnreadable(context) = !context.Items.IsRead();
    EnableControl(dialog, ID_COVLET_ADD, context.Items.IsRead());
}

void ChooseKind(HWND dialog, CatalogueDialog& context) {
    const bool coversheets = IsDlgButtonChecked(dialog, ID_COVLET_COVERSHEETS) == BST_CHECKED;
    context.Kind = coversheets ? ItemKind::Coversheet : ItemKind::Letterhead;
    if (!IsUnreadable(context)) return ListAgain(dialog, context);
    context.List.Refill([&] { return context.Items.Clear(); });
    EnableControl(dialog, ID_COVLET_ADD, false);
}

void FillCatalogue(HWND dialog, CatalogueDialog& context) {
    context.List.Begin(dialog);
    CheckDlgButton(dialog, ID_COVLET_COVERSHEETS, BST_CHECKED);
    ChooseKind(dialog, context);
    EnableButtons(dialog, context);
    FocusControl(dialog, context.Items.Count() > 0 ? ID_COVLET_LIST : ID_COVLET_ADD);
}

void PressAdd(HWND dialog, CatalogueDialog& context) {
    ItemDialog item{context.Kind, {}};
    const bool added = AskNewItem(dialog, item) && AddItem(item.Kind, item.Entry);
    ListItems(context);
    if (added) context.List.SelectName(item.Entry.Name);
}

void PressRename(HWND dialog, CatalogueDialog& context) {
    if (!context.List.HasOneSelected()) return;
    const CatalogueEntry entry = SelectedItem(context);
    ItemDialog item{context.Kind, entry};
    if (!AskDescription(dialog, item)) return;
    ChangeItem(context.Kind, entry, item.Entry.Description);
    ListItems(context);
}

void PressDelete(HWND, CatalogueDialog& context) {
    if (!context.List.HasOneSelected()) return;
    DeleteItem(context.Kind, SelectedItem(context));
    ListItems(context);
}

void PressEdit(HWND, CatalogueDialog& context) {
    RunItemEditor(SelectedItem(context).Name);
    ListItems(context);
}

constexpr DialogCommand<CatalogueDialog> kCommands[] = {
    {ID_COVLET_COVERSHEETS, BN_CLICKED, ChooseKind},
    {ID_COVLET_LETTERHEADS, BN_CLICKED, ChooseKind},
    {ID_COVLET_LIST, kListSelected, EnableButtons},
    {ID_COVLET_LIST, kListOpen, PressRename},
    {ID_COVLET_LIST, kListRename, PressRename},
    {ID_COVLET_LIST, kListAdd, PressAdd},
    {ID_COVLET_LIST, kListDelete, PressDelete},
    {ID_COVLET_LIST, kListReload, ListAgain},
    {ID_COVLET_ADD, BN_CLICKED, PressAdd},
    {ID_COVLET_RENAME, BN_CLICKED, PressRename},
    {ID_COVLET_DELETE, BN_CLICKED, PressDelete},
    {ID_COVLET_EDIT, BN_CLICKED, PressEdit},
    {IDOK, BN_CLICKED, EndWithOk},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_COVLET_LIST, kGrowsBoth},
    {ID_COVLET_ADD, kMovesAcross},
    {ID_COVLET_RENAME, kMovesAcross},
    {ID_COVLET_DELETE, kMovesAcross},
    {ID_COVLET_EDIT, kMovesAcross},
    {ID_COVLET_COUNT, kMovesDown | kGrowsAcross},
    {ID_HELP_BUTTON, kMovesBoth},
    {ID_STATUS_LINE, kMovesDown | kGrowsAcross},
    {IDOK, kMovesBoth},
};
constexpr DialogPlan<CatalogueDialog> kPlan{HELP_COVLET, FillCatalogue, kCommands, kAnchors};

} // namespace

INT_PTR CALLBACK ConfigCovLetDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

void ConfigureCoversheets(HWND owner) {
    CatalogueDialog context;
    OpenDialog("ConfigCovLetBox", owner, ConfigCovLetDlgBox, &context);
}

} // namespace bv
