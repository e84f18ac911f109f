#include "whereused/where_used_dlg.h"

#include "dialogs/list_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "dialogs/progress_dlg.h"
#include "resources/ids.h"
#include "shell/row_table.h"
#include "users/printers.h"
#include "users/user_list.h"
#include "voice/messages.h"
#include "whereused/where_used.h"

namespace bv {
namespace {

constexpr ListColumn kColumns[] = {{"!", 12}, {"File", 56}, {"Where", 150}, {"What happens", 98}};
constexpr ListPlan kListToLookAt{.List = ID_USES_LIST, .Columns = std::span(kColumns).first(3), .IsSorted = false};
constexpr ListPlan kListToDelete{.List = ID_USES_LIST, .Columns = kColumns, .Name = "Delete", .IsSorted = false};

struct UseDialog {
    NamedThing Kind;
    Names Which;
    bool Deletes;
    std::vector<Use> Uses;
    UseChange Change{UseChange::Kind::TakeOut};
    RowTable Rows{};
    ListView List{Rows, Deletes ? kListToDelete : kListToLookAt};
    NameField By{};
};

void ReadRows(UseDialog& context) {
    context.Rows.Begin(context.Deletes ? 4 : 3);
    UseEffects effects(context.Change);
    for (const Use& use : context.Uses) {
        context.Rows.Add(use.Widens ? "!" : "");
        context.Rows.Add(use.File);
        context.Rows.Add(use.Where);
        if (context.Deletes) context.Rows.Add(effects.TextOf(use));
    }
}

void ListUses(HWND dialog, UseDialog& context) {
    SetText(dialog, ID_USES_COUNT, CountText(context.Kind, context.Which, context.Uses.size()));
    context.List.Refill([&] {
        ReadRows(context);
        return true;
    });
}

void ReadUsesAgain(HWND dialog, UseDialog& context) {
    const WaitCursor wait;
    if (auto uses = FindUses(context.Kind, context.Which)) context.Uses = std::move(*uses);
    ListUses(dialog, context);
}

UseChange::Kind ChosenKind(HWND dialog) {
    if (IsDlgButtonChecked(dialog, ID_USES_REPLACE) == BST_CHECKED) return UseChange::Kind::Replace;
    if (IsDlgButtonChecked(dialog, ID_USES_LEAVE) == BST_CHECKED) return UseChange::Kind::Leave;
    return UseChange::Kind::TakeOut;
}

// The rows stay; what happens to them is another.
void Choose(HWND dialog, UseDialog& context) {
    context.Change.What = ChosenKind(dialog);
    context.Change.By = GetText(dialog, ID_USES_BY);
    context.Change.DeleteEmptied = IsDlgButtonChecked(dialog, ID_USES_EMPTIED) == BST_CHECKED;
    const bool canEmpty = context.Kind == NamedThing::User && context.Change.What == UseChange::Kind::TakeOut;
    EnableControl(dialog, ID_USES_EMPTIED, canEmpty);
    for (const int control : {ID_USES_BY, ID_USES_CHOOSE})
        EnableControl(dialog, control, context.Change.What == UseChange::Kind::Replace);
    ReadRows(context);
    InvalidateRect(GetDlgItem(dialog, ID_USES_LIST), nullptr, FALSE);
}

void OfferPrinters(HWND dialog) {
    std::vector<OfferedPrinter> printers;
    ReadServerPrinters(printers);
    ComboBoxTarget list(dialog, ID_USES_BY);
    for (const OfferedPrinter& printer : printers) list.Add(printer.Name);
    ShowWindow(GetDlgItem(dialog, ID_USES_CHOOSE), SW_HIDE); // the list has them all
}

// The list's entry comes into the field only after this.
void TakeListedPrinter(HWND dialog, UseDialog& context) {
    if (context.Kind != NamedThing::Printer) return;
    char name[kPrinterNameLimit + 1] = "";
    const LRESULT entry = SendDlgItemMessageA(dialog, ID_USES_BY, CB_GETCURSEL, 0, 0);
    SendDlgItemMessageA(dialog, ID_USES_BY, CB_GETLBTEXT, static_cast<WPARAM>(entry), reinterpret_cast<LPARAM>(name));
    SetText(dialog, ID_USES_BY, name);
    Choose(dialog, context);
}

void FillUses(HWND dialog, UseDialog& context) {
    const std::string names = NamesText(context.Which);
    SetWindowTextA(dialog, FormatText("Where %s is used", names).c_str());
    context.List.Begin(dialog);
    ListUses(dialog, context);
    FocusControl(dialog, ID_USES_LIST);
    if (!context.Deletes) return;
    CheckDlgButton(dialog, ID_USES_TAKE_OUT, BST_CHECKED);
    if (context.Kind == NamedThing::Printer)
        OfferPrinters(dialog);
    else
        context.By.Begin(dialog, ID_USES_BY, ID_USES_CHOOSE,
                         context.Kind == NamedThing::User ? kUserNames : kGroupNames, "");
    Choose(dialog, context);
}

// Asks how it goes on after each of many that are gone.
template <class Action>
bool WithProgress(HWND owner, std::size_t total, Action act) {
    if (total == 1) return act([](std::size_t) { return true; });
    std::optional<ProgressBox> progress;
    return act([&](std::size_t done) {
        if (!progress) progress.emplace(owner, static_cast<int>(total));
        return progress->Advance(static_cast<int>(done), FillMessage(kDeletedMany, done, "users"), "");
    });
}

bool TakeReplacement(HWND dialog, UseDialog& context) {
    std::string& by = context.Change.By;
    const bool isTaken = context.Kind == NamedThing::Printer ? TakeText(dialog, ID_USES_BY, by) : context.By.Take(by);
    return isTaken && CheckReplacement(context.Kind, context.Which, by);
}

bool DeleteChosen(HWND dialog, const UseDialog& context) {
    return WithProgress(dialog, context.Which.size(), [&](const SaveProgress& goOn) {
        return DeleteWithUses(context.Kind, context.Which, context.Change, goOn);
    });
}

void PressDelete(HWND dialog, UseDialog& context) {
    if (!context.Deletes) return EndWithOk(dialog, context);
    Choose(dialog, context);
    if (context.Change.What == UseChange::Kind::Replace && !TakeReplacement(dialog, context))
        return FocusControl(dialog, ID_USES_BY);
    if (DeleteChosen(dialog, context) || !IsThere(context.Kind, context.Which.front()))
        return EndWithOk(dialog, context);
    ReadUsesAgain(dialog, context);
}

constexpr DialogCommand<UseDialog> kCommands[] = {
    {ID_USES_LIST, kListReload, ReadUsesAgain}, {ID_USES_TAKE_OUT, BN_CLICKED, Choose},
    {ID_USES_EMPTIED, BN_CLICKED, Choose},      {ID_USES_REPLACE, BN_CLICKED, Choose},
    {ID_USES_BY, CBN_EDITCHANGE, Choose},       {ID_USES_BY, CBN_SELCHANGE, TakeListedPrinter},
    {ID_USES_LEAVE, BN_CLICKED, Choose},        {IDOK, BN_CLICKED, PressDelete},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_USES_COUNT, kGrowsAcross},  {ID_USES_LIST, kGrowsBoth},
    {ID_USES_TAKE_OUT, kMovesDown}, {ID_USES_EMPTIED, kMovesDown},
    {ID_USES_REPLACE, kMovesDown},  {ID_USES_BY_LABEL, kMovesDown},
    {ID_USES_BY, kMovesDown},       {ID_USES_CHOOSE, kMovesDown},
    {ID_USES_LEAVE, kMovesDown},    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},         {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<UseDialog> kPlan{HELP_WHERE_USED, FillUses, kCommands, kAnchors};

// False, after a message, when the places cannot be found.
bool FindPlaces(UseDialog& context) {
    const WaitCursor wait;
    auto uses = FindUses(context.Kind, context.Which);
    if (uses) context.Uses = std::move(*uses);
    return uses.has_value();
}

} // namespace

void ShowUses(HWND owner, NamedThing kind, const std::string& name) {
    UseDialog context{.Kind = kind, .Which = {name}, .Deletes = false, .Uses = {}};
    if (FindPlaces(context)) OpenDialog("WhereUsedBox", owner, WhereUsedDlgBox, &context);
}

void DeleteByDialog(HWND owner, NamedThing kind, const std::vector<std::string>& names) {
    UseDialog context{.Kind = kind, .Which = names, .Deletes = true, .Uses = {}};
    if (!FindPlaces(context)) return;
    if (!context.Uses.empty()) {
        OpenDialog("DeleteUsedBox", owner, WhereUsedDlgBox, &context);
        return;
    }
    WithProgress(owner, names.size(), [&](const SaveProgress& goOn) { return DeleteUnused(kind, names, goOn); });
}

INT_PTR CALLBACK WhereUsedDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
