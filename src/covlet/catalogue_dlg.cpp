#include "covlet/catalogue_dlg.h"

#include <algorithm>

#include "covlet/item_actions.h"
#include "covlet/item_dlg.h"
#include "covlet/launch.h"
#include "dialogs/dialog_dlg.h"
#include "dialogs/list_dlg.h"
#include "platform/ascii.h"
#include "resources/ids.h"
#include "voice/messages.h"

namespace bv {
namespace {

struct CatalogueDialog {
    ItemKind Kind = ItemKind::Coversheet;
    CatalogueEntries Items; // as the list shows them
};

// Empty when none is selected.
CatalogueEntry SelectedItem(HWND dialog, const CatalogueDialog& context) {
    const int place = SelectedEntry(dialog, ID_COVLET_LIST);
    return place == kNoEntry ? CatalogueEntry() : context.Items.at(static_cast<std::size_t>(place));
}

void EnableButtons(HWND dialog, CatalogueDialog&) {
    const bool selected = SelectedEntry(dialog, ID_COVLET_LIST) != kNoEntry;
    for (const int button : {ID_COVLET_RENAME, ID_COVLET_DELETE, ID_COVLET_EDIT})
        EnableControl(dialog, button, selected);
}

void ListItems(HWND dialog, CatalogueDialog& context) {
    const WaitCursor wait;
    ListBoxTarget list(dialog, ID_COVLET_LIST);
    context.Items = ListCatalogue(context.Kind, list).value_or(CatalogueEntries());
    FitListWidth(dialog, ID_COVLET_LIST, kDescriptionColumn);
}

void SelectPlace(HWND dialog, CatalogueDialog& context, int place) {
    SelectEntry(dialog, ID_COVLET_LIST, place);
    EnableButtons(dialog, context);
}

int PlaceOf(const CatalogueDialog& context, const ItemName& name) {
    const auto isNamed = [&name](const CatalogueEntry& entry) { return EqualFolded(entry.Name, name); };
    const auto found = std::ranges::find_if(context.Items, isNamed);
    return found == context.Items.end() ? kNoEntry : static_cast<int>(found - context.Items.begin());
}

void ChooseKind(HWND dialog, CatalogueDialog& context) {
    const bool coversheets = IsDlgButtonChecked(dialog, ID_COVLET_COVERSHEETS) == BST_CHECKED;
    context.Kind = coversheets ? ItemKind::Coversheet : ItemKind::Letterhead;
    ListItems(dialog, context);
    SelectPlace(dialog, context, kNoEntry);
}

void FillCatalogue(HWND dialog, CatalogueDialog& context) {
    PrepareList(dialog, ID_COVLET_LIST, kDescriptionColumn);
    CheckDlgButton(dialog, ID_COVLET_COVERSHEETS, BST_CHECKED);
    ChooseKind(dialog, context);
}

void PressAdd(HWND dialog, CatalogueDialog& context) {
    ItemDialog item{context.Kind, {}};
    int place = SelectedEntry(dialog, ID_COVLET_LIST);
    const bool added = AskNewItem(dialog, item) && AddItem(item.Kind, item.Entry);
    ListItems(dialog, context);
    if (added) place = PlaceOf(context, item.Entry.Name);
    SelectPlace(dialog, context, place);
}

void PressRename(HWND dialog, CatalogueDialog& context) {
    const int place = SelectedEntry(dialog, ID_COVLET_LIST);
    if (place == kNoEntry) return;
    const CatalogueEntry entry = SelectedItem(dialog, context);
    ItemDialog item{context.Kind, entry};
    if (!AskDescription(dialog, item)) return;
    ChangeItem(context.Kind, entry, item.Entry.Description);
    ListItems(dialog, context);
    SelectPlace(dialog, context, place);
}

void PressDelete(HWND dialog, CatalogueDialog& context) {
    const int place = SelectedEntry(dialog, ID_COVLET_LIST);
    if (place == kNoEntry) return;
    DeleteItem(context.Kind, SelectedItem(dialog, context));
    ListItems(dialog, context);
    SelectPlace(dialog, context, place);
}

void PressEdit(HWND dialog, CatalogueDialog& context) {
    const int place = SelectedEntry(dialog, ID_COVLET_LIST);
    RunItemEditor(SelectedItem(dialog, context).Name);
    ListItems(dialog, context);
    SelectPlace(dialog, context, place);
}

constexpr DialogCommand<CatalogueDialog> kCommands[] = {
    {ID_COVLET_COVERSHEETS, BN_CLICKED, ChooseKind}, {ID_COVLET_LETTERHEADS, BN_CLICKED, ChooseKind},
    {ID_COVLET_LIST, LBN_SELCHANGE, EnableButtons},  {ID_COVLET_LIST, LBN_DBLCLK, PressRename},
    {ID_COVLET_LIST, kDeleteKey, PressDelete},       {ID_COVLET_ADD, BN_CLICKED, PressAdd},
    {ID_COVLET_RENAME, BN_CLICKED, PressRename},     {ID_COVLET_DELETE, BN_CLICKED, PressDelete},
    {ID_COVLET_EDIT, BN_CLICKED, PressEdit},         {IDOK, BN_CLICKED, EndWithOk},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr DialogPlan<CatalogueDialog> kPlan{HELP_COVLET, FillCatalogue, kCommands};

} // namespace

INT_PTR CALLBACK ConfigCovLetDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

void ConfigureCoversheets(HWND owner) {
    CatalogueDialog context;
    OpenDialog("ConfigCovLetBox", owner, ConfigCovLetDlgBox, &context);
}

} // namespace bv
