#include "lcr/place_uses_dlg.h"

#include "dialogs/list_view_dlg.h"
#include "lcr/lcr_messages.h"
#include "resources/ids.h"
#include "shell/row_table.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr ListColumn kColumns[] = {{"!", 12}, {"File", 62}, {"Where", 140}, {"What happens", 102}};
constexpr ListPlan kListToLookAt{
    .List = ID_PLACE_USES_LIST, .Columns = std::span(kColumns).first(3), .IsSorted = false};
constexpr ListPlan kListToChange{.List = ID_PLACE_USES_LIST, .Columns = kColumns, .Name = "Change", .IsSorted = false};

struct PlaceUsesDialog {
    enum class For { Looking, Deleting, Renaming };

    For What;
    const PlaceName& Place;
    const std::vector<Use>& Uses;
    UseChange Change{};
    RowTable Rows{};
    ListView List{Rows, What == For::Looking ? kListToLookAt : kListToChange};
};

std::string TextOfEffect(UseEffects& effects, const Use& use) {
    return effects.Of(use) == UseEffect::Widens ? FillMessage(kWouldApplyToEvery, "destination") : effects.TextOf(use);
}

void ListPlaceUses(PlaceUsesDialog& context) {
    context.List.Refill([&] {
        const bool isToLookAt = context.What == PlaceUsesDialog::For::Looking;
        context.Rows.Begin(isToLookAt ? 3 : 4);
        UseEffects effects(context.Change);
        for (const Use& use : context.Uses) {
            const std::string effect = TextOfEffect(effects, use);
            const bool widens = effects.Of(use) == UseEffect::Widens;
            context.Rows.Add(widens ? "!" : "");
            context.Rows.Add(use.File);
            context.Rows.Add(use.Where);
            if (!isToLookAt) context.Rows.Add(effect);
        }
        return true;
    });
}

void ChooseChange(HWND dialog, PlaceUsesDialog& context) {
    const bool isChange = IsDlgButtonChecked(dialog, ID_PLACE_USES_CHANGE) == BST_CHECKED;
    const auto change =
        context.What == PlaceUsesDialog::For::Renaming ? UseChange::Kind::Replace : UseChange::Kind::TakeOut;
    context.Change.What = isChange ? change : UseChange::Kind::Leave;
    context.Change.DeleteEmptied = IsDlgButtonChecked(dialog, ID_PLACE_USES_EMPTIED) == BST_CHECKED;
    if (context.What == PlaceUsesDialog::For::Deleting) EnableControl(dialog, ID_PLACE_USES_EMPTIED, isChange);
    ListPlaceUses(context);
}

void FillPlaceUses(HWND dialog, PlaceUsesDialog& context) {
    SetWindowTextA(dialog, FormatText("Where %s is used", context.Place.Name).c_str());
    const std::string_view kind = NameOf(context.Place.Kind);
    SetText(dialog, ID_PLACE_USES_COUNT,
            context.Uses.empty() ? FillMessage(kUsedNowhere, kind, context.Place.Name)
                                 : FillMessage(kWaysOfUse, kind, context.Place.Name, context.Uses.size()));
    context.List.Begin(dialog);
    if (context.What != PlaceUsesDialog::For::Looking) {
        CheckDlgButton(dialog, ID_PLACE_USES_CHANGE, BST_CHECKED);
        ChooseChange(dialog, context);
    } else {
        ListPlaceUses(context);
    }
    FocusControl(dialog, ID_PLACE_USES_LIST);
}

constexpr DialogCommand<PlaceUsesDialog> kCommands[] = {
    {ID_PLACE_USES_CHANGE, BN_CLICKED, ChooseChange},
    {ID_PLACE_USES_LEAVE, BN_CLICKED, ChooseChange},
    {ID_PLACE_USES_EMPTIED, BN_CLICKED, ChooseChange},
    {IDOK, BN_CLICKED, EndWithOk},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_PLACE_USES_COUNT, kGrowsAcross},
    {ID_PLACE_USES_LIST, kGrowsBoth},
    {ID_PLACE_USES_CHANGE, kMovesDown},
    {ID_PLACE_USES_LEAVE, kMovesDown},
    {ID_PLACE_USES_EMPTIED, kMovesDown},
    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<PlaceUsesDialog> kPlan{HELP_DESTINATIONS, FillPlaceUses, kCommands, kAnchors};

} // namespace

void ShowUsesOfPlace(HWND owner, const PlaceName& place, const std::vector<Use>& uses) {
    PlaceUsesDialog context{.What = PlaceUsesDialog::For::Looking, .Place = place, .Uses = uses};
    OpenDialog("PlaceUsesBox", owner, PlaceUsesDlgBox, &context);
}

std::optional<UseChange> AskUsesOfPlace(HWND owner, const PlaceName& place, const std::string& newName,
                                        const std::vector<Use>& uses) {
    const bool isDeleting = newName.empty();
    PlaceUsesDialog context{.What = isDeleting ? PlaceUsesDialog::For::Deleting : PlaceUsesDialog::For::Renaming,
                            .Place = place,
                            .Uses = uses,
                            .Change = {.By = newName}};
    if (OpenDialog(isDeleting ? "DeletePlaceBox" : "RenamePlaceBox", owner, PlaceUsesDlgBox, &context) != IDOK)
        return {};
    return context.Change;
}

INT_PTR CALLBACK PlaceUsesDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
