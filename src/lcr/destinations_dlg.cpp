#include "lcr/destinations_dlg.h"

#include <algorithm>

#include "dialogs/button_menu_dlg.h"
#include "dialogs/csv_import_dlg.h"
#include "lcr/destination_import.h"
#include "lcr/destination_session.h"
#include "lcr/lcr_uses_dlg.h"
#include "lcr/number_place.h"
#include "lcr/place_boxes_dlg.h"
#include "lcr/place_tree_dlg.h"
#include "resources/ids.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr int kNumberLimit = 40;
constexpr int kActions[] = {ID_PLACES_ADD,        ID_PLACES_EDIT,   ID_PLACES_CLONE, ID_PLACES_DELETE,
                            ID_PLACES_WHERE_USED, ID_PLACES_IMPORT, ID_PLACES_EXPORT};
constexpr TreePlan kTree{ID_PLACES_TREE, ID_PLACES_FILTER, ID_PLACES_EDIT, kActions};

struct DestinationsDialog {
    DestinationSession Session{};
    PlaceTree Tree{Session, kTree};
    NumberSearch Numbers{};
};

void ShowSelected(HWND dialog, DestinationsDialog& context) {
    const std::optional<PlaceName> place = context.Tree.Selected();
    for (const int button : {ID_PLACES_EDIT, ID_PLACES_CLONE, ID_PLACES_DELETE, ID_PLACES_WHERE_USED})
        EnableControl(dialog, button, place.has_value());
    SetText(dialog, ID_PLACES_INFO, place ? DescribePlace(context.Session, *place) : std::string());
}

void LookUpNumber(HWND dialog, DestinationsDialog& context) {
    SetText(dialog, ID_PLACES_RESULT,
            context.Numbers.TextOf(context.Session.Places(), GetText(dialog, ID_PLACES_NUMBER)));
}

void FillDestinations(HWND dialog, DestinationsDialog& context) {
    SendDlgItemMessageA(dialog, ID_PLACES_NUMBER, EM_LIMITTEXT, kNumberLimit, 0);
    context.Tree.Begin(dialog);
    context.Tree.Refill();
    ShowSelected(dialog, context);
    FocusControl(dialog, ID_PLACES_TREE);
}

// Shows what a box has changed, with what it was about selected.
void ShowChanged(HWND dialog, DestinationsDialog& context, const std::optional<PlaceName>& place) {
    if (!place) return;
    const WaitCursor wait;
    context.Tree.Refill(place);
    // Something new that the filter hides has the filter emptied.
    if (context.Tree.Selected() != place) {
        SetText(dialog, ID_PLACES_FILTER, {});
        context.Tree.Refill(place);
    }
    LookUpNumber(dialog, context);
    FocusControl(dialog, ID_PLACES_TREE);
}

template <class Entry>
Entry EntryNamed(const std::vector<Entry>& entries, std::string_view name) {
    const auto found = std::ranges::find(entries, name, &Entry::Identifier);
    return found == entries.end() ? Entry() : *found;
}

// Opens the box of an entry; as a copy of it, or as it is.
std::optional<PlaceName> RunBox(HWND dialog, DestinationSession& session, const PlaceName& place, bool isCopy) {
    const Destinations& places = session.Places();
    switch (place.Kind) {
    case PlaceKind::Country: {
        const CountryEntry entry = EntryNamed(places.Countries(), place.Name);
        if (!isCopy) return CountryByDialog(dialog, session, entry, entry);
        return CountryByDialog(dialog, session, {}, {"", entry.Description, "", entry.LastField});
    }
    case PlaceKind::Area: {
        const std::optional<AreaKind> kind = AreasOf(places, place.Country);
        if (!kind) return {};
        const AreaEntry entry = EntryNamed(places.FindCode(place.Country)->Areas, place.Name);
        if (!isCopy) return AreaByDialog(dialog, session, *kind, entry, entry);
        return AreaByDialog(dialog, session, *kind, {}, {"", entry.Description, entry.Matches});
    }
    case PlaceKind::Region: {
        const RegionEntry entry = EntryNamed(places.Regions(), place.Name);
        if (!isCopy) return RegionByDialog(dialog, session, entry, entry);
        return RegionByDialog(dialog, session, {}, {"", entry.Description, entry.Matches});
    }
    case PlaceKind::Synonym: break;
    }
    const auto synonym = std::ranges::find(session.Synonyms(), place.Name, &Synonym::Name);
    if (synonym == session.Synonyms().end()) return {};
    return SynonymByDialog(dialog, session, isCopy ? Synonym{"", synonym->Reference} : *synonym);
}

void OpenEntry(HWND dialog, DestinationsDialog& context, bool isCopy) {
    if (const std::optional<PlaceName> place = context.Tree.Selected())
        ShowChanged(dialog, context, RunBox(dialog, context.Session, *place, isCopy));
}

void PressEdit(HWND dialog, DestinationsDialog& context) { OpenEntry(dialog, context, false); }
void PressClone(HWND dialog, DestinationsDialog& context) { OpenEntry(dialog, context, true); }

void AddEntry(HWND dialog, DestinationsDialog& context, PlaceKind kind) {
    const std::string code = context.Tree.CountryAtHand();
    DestinationSession& session = context.Session;
    std::optional<PlaceName> place;
    if (kind == PlaceKind::Country) place = CountryByDialog(dialog, session, {}, {});
    if (kind == PlaceKind::Area && !code.empty()) place = AreaByDialog(dialog, session, {code}, {}, {});
    if (kind == PlaceKind::Region) place = RegionByDialog(dialog, session, {}, {});
    if (kind == PlaceKind::Synonym) place = SynonymByDialog(dialog, session, {});
    ShowChanged(dialog, context, place);
}

void AddKindAtHand(HWND dialog, DestinationsDialog& context) { AddEntry(dialog, context, context.Tree.KindAtHand()); }

// A menu of what can be added.
void PressAdd(HWND dialog, DestinationsDialog& context) {
    const Destinations& places = context.Session.Places();
    const std::string code = context.Tree.CountryAtHand();
    const CountryEntry* country = code.empty() ? nullptr : places.FindCode(code);
    const std::string area =
        country == nullptr ? "&Area" : FormatText("&Area of %s", FindDestinationName(places, country->Identifier));
    const HMENU menu = CreatePopupMenu();
    AppendMenuA(menu, MF_STRING, ID_ADD_COUNTRY, "&Country...");
    AppendMenuA(menu, country == nullptr ? MF_GRAYED : MF_ENABLED, ID_ADD_AREA, (area + "...").c_str());
    AppendMenuA(menu, MF_STRING, ID_ADD_REGION, "&Region...");
    AppendMenuA(menu, MF_STRING, ID_ADD_SYNONYM, "&Other name...");
    const int item = ChooseBelowButton(dialog, menu, ID_PLACES_ADD);
    if (item >= ID_ADD_COUNTRY) AddEntry(dialog, context, static_cast<PlaceKind>(item - ID_ADD_COUNTRY));
}

void PressDelete(HWND dialog, DestinationsDialog& context) {
    const std::optional<PlaceName> place = context.Tree.Selected();
    if (!place) return;
    const WaitCursor wait;
    const auto ask = [&](const std::vector<Use>& uses) { return AskUsesOfPlace(dialog, *place, "", uses); };
    if (!context.Session.Delete(*place, ask)) return;
    context.Tree.Refill();
    LookUpNumber(dialog, context);
    FocusControl(dialog, ID_PLACES_TREE);
}

void PressWhereUsed(HWND dialog, DestinationsDialog& context) {
    const std::optional<PlaceName> place = context.Tree.Selected();
    if (!place) return;
    if (const auto uses = context.Session.FindUses(*place)) ShowUsesOfPlace(dialog, *place, *uses);
}

void PressImport(HWND dialog, DestinationsDialog& context) {
    DestinationImport import(&context.Session.Edit());
    if (!ImportByDialog(dialog, import)) return;
    context.Tree.Refill();
    LookUpNumber(dialog, context);
}

// What the filter shows.
void PressExport(HWND dialog, DestinationsDialog& context) {
    ExportByDialog(dialog, DestinationsAsCsv(OnlyShown(context.Session.Places(), context.Tree.Shown())));
}

void PressOk(HWND dialog, DestinationsDialog& context) {
    const WaitCursor wait;
    if (context.Session.Commit()) EndWithOk(dialog, context);
}

bool IsChanged(HWND, const DestinationsDialog& context) { return context.Session.IsChanged(); }

constexpr DialogCommand<DestinationsDialog> kCommands[] = {
    {ID_PLACES_TREE, kListSelected, ShowSelected},
    {ID_PLACES_TREE, kListOpen, PressEdit},
    {ID_PLACES_TREE, kListRename, PressEdit},
    {ID_PLACES_TREE, kListAdd, AddKindAtHand},
    {ID_PLACES_TREE, kListDelete, PressDelete},
    {ID_PLACES_NUMBER, EN_CHANGE, LookUpNumber},
    {ID_PLACES_ADD, BN_CLICKED, PressAdd},
    {ID_PLACES_EDIT, BN_CLICKED, PressEdit},
    {ID_PLACES_CLONE, BN_CLICKED, PressClone},
    {ID_PLACES_DELETE, BN_CLICKED, PressDelete},
    {ID_PLACES_WHERE_USED, BN_CLICKED, PressWhereUsed},
    {ID_PLACES_IMPORT, BN_CLICKED, PressImport},
    {ID_PLACES_EXPORT, BN_CLICKED, PressExport},
    {IDOK, BN_CLICKED, PressOk},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_PLACES_FILTER, kGrowsAcross},
    {ID_PLACES_TREE, kGrowsBoth},
    {ID_PLACES_INFO_LABEL, kMovesAcross},
    {ID_PLACES_INFO, kMovesAcross | kGrowsDown},
    {ID_PLACES_NUMBER_LABEL, kMovesBoth},
    {ID_PLACES_NUMBER, kMovesBoth},
    {ID_PLACES_RESULT_LABEL, kMovesBoth},
    {ID_PLACES_RESULT, kMovesBoth},
    {ID_PLACES_ADD, kMovesBoth},
    {ID_PLACES_EDIT, kMovesBoth},
    {ID_PLACES_CLONE, kMovesBoth},
    {ID_PLACES_DELETE, kMovesBoth},
    {ID_PLACES_WHERE_USED, kMovesBoth},
    {ID_PLACES_IMPORT, kMovesBoth},
    {ID_PLACES_EXPORT, kMovesBoth},
    {ID_STATUS_LINE, kMovesDown | kGrowsAcross},
    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<DestinationsDialog> kPlan{HELP_DESTINATIONS, FillDestinations, kCommands,
                                               kAnchors,          nullptr,          IsChanged};

} // namespace

bool EditDestinations(HWND owner) {
    DestinationsDialog context;
    {
        const WaitCursor wait;
        if (!context.Session.Begin()) return false;
    }
    const bool isSaved =
        OpenDialogOf(ServerFile::Countries, "DestinationsEditBox", owner, DestinationsEditDlgBox, &context) == IDOK;
    if (!isSaved) context.Session.Drop();
    return isSaved;
}

INT_PTR CALLBACK DestinationsEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
