#include "covlet/catalogue_dlg.h"

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
};

CatalogueEntry SelectedItem(HWND dialog) {
    return ParseEntryText(EntryAt(dialog, ID_COVLET_LIST, SelectedEntry(dialog, ID_COVLET_LIST)));
}

void EnableButtons(HWND dialog, CatalogueDialog&) {
    const bool selected = SelectedEntry(dialog, ID_COVLET_LIST) != kNoEntry;
    for (const int button : {ID_COVLET_RENAME, ID_COVLET_DELETE, ID_COVLET_EDIT})
        EnableControl(dialog, button, selected);
}

void ListItems(HWND dialog, CatalogueDialog& context) {
    const WaitCursor wait;
    ListBoxTarget list(dialog, ID_COVLET_LIST);
    ListCatalogue(context.Kind, list);
    FitListWidth(dialog, ID_COVLET_LIST, kDescriptionColumn);
}

void SelectPlace(HWND dialog, CatalogueDialog& context, int place) {
    SelectEntry(dialog, ID_COVLET_LIST, place);
    EnableButtons(dialog, context);
}

int PlaceOf(HWND dialog, const ItemName& name) {
    for (int i = 0;; ++i) {
        const std::string entry = EntryAt(dialog, ID_COVLET_LIST, i);
        if (entry.empty()) return kNoEntry;
        if (EqualFolded(ParseEntryText(entry).Name, name)) return i;
    }
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
    if (added) place = PlaceOf(dialog, item.Entry.Name);
    SelectPlace(dialog, context, place);
}

void PressRename(HWND dialog, CatalogueDialog& context) {
    const int place = SelectedEntry(dialog, ID_COVLET_LIST);
    if (place == kNoEntry) return;
    const CatalogueEntry entry = SelectedItem(dialog);
    ItemDialog item{context.Kind, entry};
    if (!AskDescription(dialog, item)) return;
    ChangeItem(context.Kind, entry, item.Entry.Description);
    ListItems(dialog, context);
    SelectPlace(dialog, context, place);
}

void PressDelete(HWND dialog, CatalogueDialog& context) {
    const int place = SelectedEntry(dialog, ID_COVLET_LIST);
    if (place == kNoEntry) return;
    DeleteItem(context.Kind, SelectedItem(dialog));
    ListItems(dialog, context);
    SelectPlace(dialog, context, place);
}

void PressEdit(HWND dialog, CatalogueDialog& context) {
    const int place = SelectedEntry(dialog, ID_COVLET_LIST);
    RunItemEditor(SelectedItem(dialog).Name);
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
