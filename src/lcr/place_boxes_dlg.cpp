#include "lcr/place_boxes_dlg.h"

#include <algorithm>

#include "dialogs/list_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "dialogs/pick_lists_dlg.h"
#include "lcr/lcr_messages.h"
#include "lcr/lcr_uses_dlg.h"
#include "lcr/number_place.h"
#include "resources/ids.h"
#include "shell/row_table.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::size_t kMostOfDescription = 100;
constexpr std::size_t kMostOfCode = 19;
constexpr std::size_t kMostOfLastField = 50;
constexpr std::size_t kMostDigits = 40;

// A field with its control, by the name that the engine has for it.
struct FieldOfPlace {
    std::string_view Field;
    int Control;
};

// Ends the box when the entry is saved; else the field that is wrong gets the focus.
void EndSaved(HWND dialog, const std::string& wrong, std::span<const FieldOfPlace> fields) {
    if (wrong.empty()) {
        EndDialog(dialog, IDOK);
        return;
    }
    for (const auto& [field, control] : fields)
        if (field == wrong) FocusControl(dialog, control);
}

// A text as it was read may be longer.
void ShowText(HWND dialog, int control, const std::string& text, std::size_t limit) {
    SendDlgItemMessageA(dialog, control, EM_LIMITTEXT, std::max(limit, text.size()), 0);
    SetText(dialog, control, text);
}

// What all the boxes have: the entry as it was, without a name when it is a new one, and as it is entered.
template <class Kind>
struct PlaceBox {
    DestinationSession& Session;
    Kind What;
    typename Kind::Entry Before;
    typename Kind::Entry Entered;

    [[nodiscard]] bool IsNew() const { return Before.Identifier.empty(); }
};

template <class Kind>
void FillNames(HWND dialog, const PlaceBox<Kind>& context, int identifier, int description) {
    ShowText(dialog, identifier, context.Entered.Identifier, kMostOfPlaceName);
    ShowText(dialog, description, context.Entered.Description, kMostOfDescription);
    FocusControl(dialog, identifier);
}

template <class Kind>
bool TakeNames(HWND dialog, PlaceBox<Kind>& context, int identifier, int description) {
    return TakeText(dialog, identifier, context.Entered.Identifier) &&
           TakeText(dialog, description, context.Entered.Description);
}

// What references to a renamed entry get; those by its dialling code get another one of these.
std::string NewNameOf(const CountryEntry& before, const CountryEntry& entered) {
    return before.Identifier == entered.Identifier ? entered.DiallingCode : entered.Identifier;
}
std::string NewNameOf(const MatchEntry&, const MatchEntry& entered) { return entered.Identifier; }

template <class Kind>
void SaveEntry(HWND dialog, PlaceBox<Kind>& context, const PlaceName& place, std::span<const FieldOfPlace> fields) {
    const WaitCursor wait;
    const auto ask = [&](const std::vector<Use>& uses) {
        return AskUsesOfPlace(dialog, place, NewNameOf(context.Before, context.Entered), uses);
    };
    EndSaved(dialog, context.Session.Save(context.What, context.Before, context.Entered, ask), fields);
}

// A country.

using CountryBox = PlaceBox<CountryKind>;

void FillCountry(HWND dialog, CountryBox& context) {
    if (context.IsNew()) SetWindowTextA(dialog, "Add new country");
    ShowText(dialog, ID_COUNTRY_CODE, context.Entered.DiallingCode, kMostOfCode);
    ShowText(dialog, ID_COUNTRY_LAST_FIELD, context.Entered.LastField, kMostOfLastField);
    SetText(dialog, ID_COUNTRY_NOTE, NoteOfName(context.Before.Identifier));
    FillNames(dialog, context, ID_COUNTRY_ID, ID_COUNTRY_DESCRIPTION);
}

void TakeCountry(HWND dialog, CountryBox& context) {
    constexpr FieldOfPlace kFields[] = {{"Identifier", ID_COUNTRY_ID},
                                        {"Description", ID_COUNTRY_DESCRIPTION},
                                        {"DiallingCode", ID_COUNTRY_CODE},
                                        {"LastField", ID_COUNTRY_LAST_FIELD}};
    if (!TakeNames(dialog, context, ID_COUNTRY_ID, ID_COUNTRY_DESCRIPTION) ||
        !TakeText(dialog, ID_COUNTRY_CODE, context.Entered.DiallingCode) ||
        !TakeText(dialog, ID_COUNTRY_LAST_FIELD, context.Entered.LastField))
        return;
    SaveEntry(dialog, context, {PlaceKind::Country, context.Before.Identifier}, kFields);
}

// An area and its numbers.

constexpr ListColumn kNumberColumns[] = {{"Number", 100}};
constexpr int kNumberMenu[] = {ID_AREA_REPLACE, ID_AREA_REMOVE};
constexpr ListPlan kNumberList{
    .List = ID_AREA_NUMBERS, .Columns = kNumberColumns, .Menu = kNumberMenu, .IsSorted = false};

struct AreaBox : PlaceBox<AreaKind> {
    RowTable Rows{};
    ListView List{Rows, kNumberList};
};

void EnableAreaButtons(HWND dialog, AreaBox& context) {
    EnableControl(dialog, ID_AREA_REPLACE, context.List.HasOneSelected());
    EnableControl(dialog, ID_AREA_REMOVE, context.List.CountSelected() > 0);
}

void ShowNumbers(HWND dialog, AreaBox& context) {
    context.List.Refill([&] {
        context.Rows.Begin(1);
        for (const std::string& match : context.Entered.Matches) context.Rows.Add(MatchText(match));
        return true;
    });
    EnableAreaButtons(dialog, context);
    const CountryEntry* country = context.Session.Places().FindCode(context.What.Code);
    const std::string name =
        country == nullptr ? std::string() : NoteOfName(country->Identifier + "/" + context.Before.Identifier);
    const std::string numbers =
        NoteOfNumbers(context.Session.Edit(), context.What, context.Entered, context.Before.Identifier);
    SetText(dialog, ID_AREA_NOTE, name.empty() || numbers.empty() ? name + numbers : name + ". " + numbers);
}

void FillArea(HWND dialog, AreaBox& context) {
    const CountryEntry* country = context.Session.Places().FindCode(context.What.Code);
    const std::string name =
        country == nullptr ? std::string() : FindDestinationName(context.Session.Places(), country->Identifier);
    SetWindowTextA(dialog, FormatText(context.IsNew() ? "Add new area of %s" : "Area of %s", name).c_str());
    SendDlgItemMessageA(dialog, ID_AREA_NUMBER, EM_LIMITTEXT, kMostDigits, 0);
    context.List.Begin(dialog);
    ShowNumbers(dialog, context);
    FillNames(dialog, context, ID_AREA_ID, ID_AREA_DESCRIPTION);
}

// The number as it stands in its field, which then is empty; none, with the focus there, after a message or for one
// that the area has.
std::optional<std::string> TakeNumber(HWND dialog, AreaBox& context) {
    const bool isWhole = IsDlgButtonChecked(dialog, ID_AREA_WHOLE) == BST_CHECKED;
    std::optional<std::string> match = MakeMatch(GetText(dialog, ID_AREA_NUMBER), isWhole);
    const bool isThere = match && std::ranges::find(context.Entered.Matches, *match) != context.Entered.Matches.end();
    if (isThere) {
        MessageBeep(MB_OK);
        context.List.SelectName(MatchText(*match));
    }
    if (!match || isThere) {
        FocusControl(dialog, ID_AREA_NUMBER);
        return {};
    }
    SetText(dialog, ID_AREA_NUMBER, {});
    CheckDlgButton(dialog, ID_AREA_WHOLE, BST_UNCHECKED);
    return match;
}

void AddNumber(HWND dialog, AreaBox& context) {
    const std::optional<std::string> match = TakeNumber(dialog, context);
    if (!match) return;
    context.Entered.Matches.push_back(*match);
    ShowNumbers(dialog, context);
    context.List.SelectName(MatchText(*match));
    FocusControl(dialog, ID_AREA_NUMBER);
}

void ReplaceNumber(HWND dialog, AreaBox& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    if (rows.size() != 1) return;
    const std::optional<std::string> match = TakeNumber(dialog, context);
    if (!match) return;
    context.Entered.Matches.at(rows.front()) = *match;
    ShowNumbers(dialog, context);
    context.List.SelectName(MatchText(*match));
}

void RemoveNumbers(HWND dialog, AreaBox& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    std::vector<std::string> kept;
    for (std::size_t i = 0; i < context.Entered.Matches.size(); ++i)
        if (std::ranges::find(rows, i) == rows.end()) kept.push_back(context.Entered.Matches[i]);
    context.Entered.Matches = std::move(kept);
    ShowNumbers(dialog, context);
}

// Puts a number into the field, to be changed and to replace the one it was.
void ShowNumber(HWND dialog, AreaBox& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    if (rows.size() != 1) return;
    const std::string& match = context.Entered.Matches.at(rows.front());
    const bool isWhole = match.find('*') == std::string::npos;
    SetText(dialog, ID_AREA_NUMBER, match.substr(0, match.find('*')));
    CheckDlgButton(dialog, ID_AREA_WHOLE, isWhole ? BST_CHECKED : BST_UNCHECKED);
    FocusControl(dialog, ID_AREA_NUMBER);
}

// Whether what stands in the number's field is one of the area's numbers, or nothing.
bool IsNumberTaken(HWND dialog, const AreaBox& context) {
    const std::string number = GetText(dialog, ID_AREA_NUMBER);
    const auto has = [&](const std::string& match) {
        return std::ranges::find(context.Entered.Matches, match) != context.Entered.Matches.end();
    };
    return number.empty() || has(number) || has(number + "*");
}

void TakeArea(HWND dialog, AreaBox& context) {
    constexpr FieldOfPlace kFields[] = {
        {"Identifier", ID_AREA_ID}, {"Description", ID_AREA_DESCRIPTION}, {"Matches", ID_AREA_NUMBERS}};
    const bool isInNumber = GetFocus() == GetDlgItem(dialog, ID_AREA_NUMBER);
    if (isInNumber && GetWindowTextLengthA(GetFocus()) > 0) return AddNumber(dialog, context); // Enter
    if (!IsNumberTaken(dialog, context)) {
        AddNumber(dialog, context);
        if (!IsNumberTaken(dialog, context)) return;
    }
    if (!TakeNames(dialog, context, ID_AREA_ID, ID_AREA_DESCRIPTION)) return;
    SaveEntry(dialog, context, {PlaceKind::Area, context.Before.Identifier, context.What.Code}, kFields);
}

// A region and its members.

constexpr ListColumn kAvailableColumns[] = {{"Destination", 52}, {"Description", 128}};
constexpr ListColumn kMemberColumns[] = {{"Member", 52}, {"Description", 128}};
constexpr PickPlan kMembers = PicksFrom(ID_REGION_FILTER, ID_REGION_COUNT, kAvailableColumns, kMemberColumns);

enum ShownKinds { kShowAll, kShowCountries, kShowAreas };

struct RegionBox : PlaceBox<RegionKind> {
    RowTable Rows{};
    PickLists Members{Rows, kMembers, [this](const std::string& name) { return Describe(name); }};

    [[nodiscard]] ChosenRow Describe(const std::string& name) const {
        const Destinations& places = Session.Places();
        const auto is = places.Convert(name, ReferenceForm::Identifier);
        return {{name, is ? FindDestinationName(places, name) : "! " + FindDestinationName(places, name)},
                is.value_or("")};
    }
};

bool ReadPlaces(HWND dialog, RegionBox& context) {
    const LRESULT kinds = SendDlgItemMessageA(dialog, ID_REGION_SHOW, CB_GETCURSEL, 0, 0);
    context.Rows.Begin(2);
    for (const CountryEntry& country : context.Session.Places().Countries()) {
        const std::string& name = country.Description.empty() ? country.Identifier : country.Description;
        if (kinds != kShowAreas) {
            context.Rows.Add(country.Identifier);
            context.Rows.Add(name);
        }
        if (kinds == kShowCountries) continue;
        for (const AreaEntry& area : country.Areas) {
            context.Rows.Add(country.Identifier + "/" + area.Identifier);
            context.Rows.Add((area.Description.empty() ? area.Identifier : area.Description) + ", " + name);
        }
    }
    return true;
}

void ShowPlaces(HWND dialog, RegionBox& context) {
    const WaitCursor wait;
    context.Members.Refill([&] { return ReadPlaces(dialog, context); });
}

void FillRegion(HWND dialog, RegionBox& context) {
    const WaitCursor wait;
    if (context.IsNew()) SetWindowTextA(dialog, "Add new region");
    ComboBoxTarget kinds(dialog, ID_REGION_SHOW);
    for (const char* kind : {"All", "Countries", "Areas"}) kinds.Add(kind);
    SendDlgItemMessageA(dialog, ID_REGION_SHOW, CB_SETCURSEL, kShowAll, 0);
    ReadPlaces(dialog, context);
    context.Members.Begin(dialog, context.Entered.Matches);
    SetText(dialog, ID_REGION_NOTE, NoteOfName(context.Before.Identifier));
    FillNames(dialog, context, ID_REGION_ID, ID_REGION_DESCRIPTION);
}

void TakeRegion(HWND dialog, RegionBox& context) {
    constexpr FieldOfPlace kFields[] = {
        {"Identifier", ID_REGION_ID}, {"Description", ID_REGION_DESCRIPTION}, {"Matches", ID_REGION_MEMBERS}};
    if (!TakeNames(dialog, context, ID_REGION_ID, ID_REGION_DESCRIPTION)) return;
    context.Entered.Matches = context.Members.Chosen();
    SaveEntry(dialog, context, {PlaceKind::Region, context.Before.Identifier}, kFields);
}

// Another name.

struct SynonymBox {
    DestinationSession& Session;
    Synonym Before;
    Synonym Entered = Before;
};

void ShowReference(HWND dialog, SynonymBox& context) {
    const std::string reference = GetText(dialog, ID_SYNONYM_REFERENCE);
    SetText(dialog, ID_SYNONYM_TEXT,
            reference.empty() ? std::string() : FindDestinationName(context.Session.Places(), reference));
}

// The list's entry comes into the field only after this.
void TakeListedReference(HWND dialog, SynonymBox& context) {
    char name[256] = "";
    const LRESULT entry = SendDlgItemMessageA(dialog, ID_SYNONYM_REFERENCE, CB_GETCURSEL, 0, 0);
    const LRESULT length =
        SendDlgItemMessageA(dialog, ID_SYNONYM_REFERENCE, CB_GETLBTEXTLEN, static_cast<WPARAM>(entry), 0);
    if (length <= 0 || length >= static_cast<LRESULT>(sizeof name)) return;
    SendDlgItemMessageA(dialog, ID_SYNONYM_REFERENCE, CB_GETLBTEXT, static_cast<WPARAM>(entry),
                        reinterpret_cast<LPARAM>(name));
    SetText(dialog, ID_SYNONYM_REFERENCE, name);
    ShowReference(dialog, context);
}

// Of many areas only the first are listed; any can be typed.
void OfferReferences(HWND dialog, const Destinations& places) {
    constexpr int kMostListed = 1000;
    int listed = 0;
    const auto add = [&](const std::string& reference) {
        if (++listed <= kMostListed)
            SendDlgItemMessageA(dialog, ID_SYNONYM_REFERENCE, CB_ADDSTRING, 0,
                                reinterpret_cast<LPARAM>(reference.c_str()));
    };
    for (const CountryEntry& country : places.Countries()) add(country.Identifier);
    for (const CountryEntry& country : places.Countries())
        for (const AreaEntry& area : country.Areas) add(country.Identifier + "/" + area.Identifier);
}

void FillSynonym(HWND dialog, SynonymBox& context) {
    if (context.Before.Name.empty()) SetWindowTextA(dialog, "Add new other name");
    OfferReferences(dialog, context.Session.Places());
    ShowText(dialog, ID_SYNONYM_NAME, context.Entered.Name, kMostOfPlaceName);
    SetText(dialog, ID_SYNONYM_REFERENCE, context.Entered.Reference);
    ShowReference(dialog, context);
    FocusControl(dialog, ID_SYNONYM_NAME);
}

void TakeSynonym(HWND dialog, SynonymBox& context) {
    constexpr FieldOfPlace kFields[] = {{"Name", ID_SYNONYM_NAME}, {"StandsFor", ID_SYNONYM_REFERENCE}};
    if (!TakeText(dialog, ID_SYNONYM_NAME, context.Entered.Name) ||
        !TakeText(dialog, ID_SYNONYM_REFERENCE, context.Entered.Reference))
        return;
    EndSaved(dialog, context.Session.SaveSynonym(context.Before, context.Entered), kFields);
}

constexpr DialogCommand<CountryBox> kCountryCommands[] = {{IDOK, BN_CLICKED, TakeCountry},
                                                          {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<CountryBox> kCountryPlan{HELP_COUNTRY, FillCountry, kCountryCommands};

constexpr DialogCommand<AreaBox> kAreaCommands[] = {
    {ID_AREA_ADD, BN_CLICKED, AddNumber},          {ID_AREA_REPLACE, BN_CLICKED, ReplaceNumber},
    {ID_AREA_REMOVE, BN_CLICKED, RemoveNumbers},   {ID_AREA_NUMBERS, kListSelected, EnableAreaButtons},
    {ID_AREA_NUMBERS, kListOpen, ShowNumber},      {ID_AREA_NUMBERS, kListRename, ShowNumber},
    {ID_AREA_NUMBERS, kListDelete, RemoveNumbers}, {IDOK, BN_CLICKED, TakeArea},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr DialogPlan<AreaBox> kAreaPlan{HELP_AREA, FillArea, kAreaCommands};

constexpr DialogCommand<RegionBox> kRegionCommands[] = {
    {ID_REGION_SHOW, CBN_SELCHANGE, ShowPlaces}, {IDOK, BN_CLICKED, TakeRegion}, {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr Anchor kRegionAnchors[] = {
    {ID_REGION_DESCRIPTION, kGrowsAcross},
    {ID_REGION_SHOW, kGrowsHalf},
    {ID_REGION_FILTER, kGrowsHalf},
    {ID_REGION_AVAILABLE, kGrowsHalf | kGrowsDown},
    {ID_REGION_COUNT, kGrowsHalf | kMovesDown},
    {ID_REGION_TAKE, kMovesHalf},
    {ID_REGION_REMOVE, kMovesHalf},
    {ID_REGION_REMOVE_ALL, kMovesHalf},
    {ID_REGION_MEMBERS_LABEL, kMovesHalf},
    {ID_REGION_MEMBERS, kMovesHalf | kGrowsHalf | kGrowsDown},
    {ID_REGION_NOTE, kMovesDown | kGrowsAcross},
    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<RegionBox> kRegionPlan{HELP_REGION, FillRegion, kRegionCommands, kRegionAnchors};

constexpr DialogCommand<SynonymBox> kSynonymCommands[] = {{ID_SYNONYM_REFERENCE, CBN_EDITCHANGE, ShowReference},
                                                          {ID_SYNONYM_REFERENCE, CBN_SELCHANGE, TakeListedReference},
                                                          {IDOK, BN_CLICKED, TakeSynonym},
                                                          {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<SynonymBox> kSynonymPlan{HELP_SYNONYM, FillSynonym, kSynonymCommands};

} // namespace

std::optional<PlaceName> CountryByDialog(HWND owner, DestinationSession& session, const CountryEntry& before,
                                         const CountryEntry& entered) {
    CountryBox context{session, {}, before, entered};
    if (OpenDialog("CountryEditBox", owner, CountryEditDlgBox, &context) != IDOK) return {};
    return PlaceName{PlaceKind::Country, context.Entered.Identifier};
}

std::optional<PlaceName> AreaByDialog(HWND owner, DestinationSession& session, const AreaKind& kind,
                                      const AreaEntry& before, const AreaEntry& entered) {
    AreaBox context{{session, kind, before, entered}};
    if (OpenDialog("AreaEditBox", owner, AreaEditDlgBox, &context) != IDOK) return {};
    return PlaceName{PlaceKind::Area, context.Entered.Identifier, kind.Code};
}

std::optional<PlaceName> RegionByDialog(HWND owner, DestinationSession& session, const RegionEntry& before,
                                        const RegionEntry& entered) {
    RegionBox context{{session, {}, before, entered}};
    if (OpenDialog("RegionEditBox", owner, RegionEditDlgBox, &context) != IDOK) return {};
    return PlaceName{PlaceKind::Region, context.Entered.Identifier};
}

std::optional<PlaceName> SynonymByDialog(HWND owner, DestinationSession& session, const Synonym& before) {
    SynonymBox context{session, before};
    if (OpenDialog("SynonymEditBox", owner, SynonymEditDlgBox, &context) != IDOK) return {};
    return PlaceName{PlaceKind::Synonym, context.Entered.Name};
}

INT_PTR CALLBACK CountryEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kCountryPlan, {dialog, message, wParam, lParam});
}
INT_PTR CALLBACK AreaEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kAreaPlan, {dialog, message, wParam, lParam});
}
INT_PTR CALLBACK RegionEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kRegionPlan, {dialog, message, wParam, lParam});
}
INT_PTR CALLBACK SynonymEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kSynonymPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
