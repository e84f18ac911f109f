#include "lcr/lcr_uses_dlg.h"

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

// What has the name that is used.
struct UsedThing {
    std::string_view Kind; // "area", "link"
    std::string_view Name;
    std::string_view Criterion; // what a rule has several of: "destination", "server"
    std::string Emptied;        // what becomes of a rule without the last of them
    DLGPROC Procedure;
};

UsedThing ThingOf(const PlaceName& place) {
    return {NameOf(place.Kind), place.Name, "destination", FillMessage(kWouldApplyToEvery, "destination"),
            PlaceUsesDlgBox};
}

UsedThing LinkThing(std::string_view identifier) {
    return {"link", identifier, "server", FillMessage(kSentByNobody), LinkUsesDlgBox};
}

struct UsesDialog {
    enum class For { Looking, Deleting, Renaming };

    For What;
    const UsedThing& Thing;
    const std::vector<Use>& Uses;
    UseChange Change{};
    RowTable Rows{};
    ListView List{Rows, What == For::Looking ? kListToLookAt : kListToChange};
};

void ListUses(UsesDialog& context) {
    context.List.Refill([&] {
        const bool isToLookAt = context.What == UsesDialog::For::Looking;
        context.Rows.Begin(isToLookAt ? 3 : 4);
        UseEffects effects(context.Change);
        for (const Use& use : context.Uses) {
            const bool widens = effects.Of(use) == UseEffect::Widens;
            const std::string effect = widens ? context.Thing.Emptied : effects.TextOf(use);
            context.Rows.Add(widens ? "!" : "");
            context.Rows.Add(use.File);
            context.Rows.Add(use.Where);
            if (!isToLookAt) context.Rows.Add(effect);
        }
        return true;
    });
}

void ChooseChange(HWND dialog, UsesDialog& context) {
    const bool isChange = IsDlgButtonChecked(dialog, ID_PLACE_USES_CHANGE) == BST_CHECKED;
    const auto change = context.What == UsesDialog::For::Renaming ? UseChange::Kind::Replace : UseChange::Kind::TakeOut;
    context.Change.What = isChange ? change : UseChange::Kind::Leave;
    context.Change.DeleteEmptied = IsDlgButtonChecked(dialog, ID_PLACE_USES_EMPTIED) == BST_CHECKED;
    if (context.What == UsesDialog::For::Deleting) EnableControl(dialog, ID_PLACE_USES_EMPTIED, isChange);
    ListUses(context);
}

void FillUses(HWND dialog, UsesDialog& context) {
    const auto& [kind, name, criterion, emptied, procedure] = context.Thing;
    SetWindowTextA(dialog, FormatText("Where %s is used", name).c_str());
    SetText(dialog, ID_PLACE_USES_COUNT,
            context.Uses.empty() ? FillMessage(kUsedNowhere, kind, name)
                                 : FillMessage(kWaysOfUse, kind, name, context.Uses.size()));
    if (context.What == UsesDialog::For::Deleting)
        SetText(dialog, ID_PLACE_USES_EMPTIED, FormatText("Delete &rules that would lose their last %s", criterion));
    context.List.Begin(dialog);
    if (context.What != UsesDialog::For::Looking) {
        CheckDlgButton(dialog, ID_PLACE_USES_CHANGE, BST_CHECKED);
        ChooseChange(dialog, context);
    } else {
        ListUses(context);
    }
    FocusControl(dialog, ID_PLACE_USES_LIST);
}

constexpr DialogCommand<UsesDialog> kCommands[] = {
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
constexpr DialogPlan<UsesDialog> kPlan{HELP_DESTINATIONS, FillUses, kCommands, kAnchors};
constexpr DialogPlan<UsesDialog> kLinkPlan{HELP_LINKS, FillUses, kCommands, kAnchors};

void ShowUses(HWND owner, const UsedThing& thing, const std::vector<Use>& uses) {
    UsesDialog context{.What = UsesDialog::For::Looking, .Thing = thing, .Uses = uses};
    OpenDialog("PlaceUsesBox", owner, thing.Procedure, &context);
}

std::optional<UseChange> AskUses(HWND owner, const UsedThing& thing, const std::string& newName,
                                 const std::vector<Use>& uses) {
    const bool isDeleting = newName.empty();
    UsesDialog context{.What = isDeleting ? UsesDialog::For::Deleting : UsesDialog::For::Renaming,
                       .Thing = thing,
                       .Uses = uses,
                       .Change = {.By = newName}};
    if (OpenDialog(isDeleting ? "DeletePlaceBox" : "RenamePlaceBox", owner, thing.Procedure, &context) != IDOK)
        return {};
    return context.Change;
}

} // namespace

void ShowUsesOfPlace(HWND owner, const PlaceName& place, const std::vector<Use>& uses) {
    ShowUses(owner, ThingOf(place), uses);
}

void ShowUsesOfLink(HWND owner, const std::string& identifier, const std::vector<Use>& uses) {
    ShowUses(owner, LinkThing(identifier), uses);
}

std::optional<UseChange> AskUsesOfPlace(HWND owner, const PlaceName& place, const std::string& newName,
                                        const std::vector<Use>& uses) {
    return AskUses(owner, ThingOf(place), newName, uses);
}

std::optional<UseChange> AskUsesOfLink(HWND owner, const std::string& identifier, const std::string& newName,
                                       const std::vector<Use>& uses) {
    return AskUses(owner, LinkThing(identifier), newName, uses);
}

INT_PTR CALLBACK PlaceUsesDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

INT_PTR CALLBACK LinkUsesDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kLinkPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
