#include "dialling/dialling_dlg.h"

#include <array>

#include "dialling/dial_locations.h"
#include "dialling/location_box_dlg.h"
#include "dialling/number_trial_dlg.h"
#include "dialogs/dialog_dlg.h"
#include "dialogs/live_text_dlg.h"
#include "resources/ids.h"
#include "shell/server_files.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr FieldControl kFields[] = {
    {ID_DIALLING_COUNTRY, "Country"},
    {ID_DIALLING_AREA, "Area"},
    {ID_DIALLING_NATIONAL, "NatlAccess"},
    {ID_DIALLING_INTERNATIONAL, "IntlAccess"},
    {ID_DIALLING_LONGEST, "NumberWithoutAreaMaxLen", FieldForm::Number},
    {ID_DIALLING_AREA_CODE, "DialAreaCode", FieldForm::Check},
    {ID_DIALLING_LOCAL_PREFIX, "DialNatlAccessForLocal", FieldForm::Check},
    {ID_DIALLING_SHOW_PREFIX, "DisplayNatlAccess", FieldForm::Check},
    {ID_DIALLING_AS_LOCAL, "DialAsLocal"},
    {ID_DIALLING_AS_NATIONAL, "DialAsNatl"},
};

struct DiallingDialog {
    DialLocations Locations;
    DialProperties Empty{};                  // where there is no location
    std::optional<TelephonyUse> Telephony{}; // from when it is first needed
    DialProperties TelephonyValues{};
    StatusCode TelephonyStatus = kDone;
    LocationFields Fields{};
    TrialPane Trial{};
    bool IsShowing = false; // the program fills the controls
};

bool HasLocation(const DiallingDialog& context) {
    return context.Locations.Mode == kDialLocation && context.Locations.Chosen;
}

DialProperties& Shown(DiallingDialog& context) {
    if (HasLocation(context)) return context.Locations.Places[*context.Locations.Chosen].Now;
    if (context.Locations.Mode == kDialTelephony) return context.TelephonyValues;
    context.Empty = {};
    context.Empty.Mode = context.Locations.Mode;
    return context.Empty;
}

// The telephony's status.
StatusCode ReadTelephony(DiallingDialog& context, DialProperties& values) {
    const WaitCursor wait;
    if (!context.Telephony) context.Telephony.emplace("BVSETUP");
    return context.Telephony->Read(&values, PathOf(ServerFile::Countries));
}

void FollowTelephony(DiallingDialog& context) {
    if (context.Locations.Mode != kDialTelephony) return;
    context.TelephonyValues = {};
    context.TelephonyStatus = ReadTelephony(context, context.TelephonyValues);
    context.TelephonyValues.Mode = kDialTelephony;
}

// What follows from the values: the number that is tried, and the warning.
void ShowOutcome(HWND dialog, DiallingDialog& context) {
    context.Trial.Show(Shown(context));
    const std::string warning = WarningOf(context.Locations, Shown(context), context.TelephonyStatus);
    if (GetText(dialog, ID_DIALLING_WARNING) != warning) ShowLiveText(GetDlgItem(dialog, ID_DIALLING_WARNING), warning);
    EnableControl(dialog, ID_DIALLING_LOCAL_PREFIX, HasLocation(context) && Shown(context).DialAreaCode);
}

void ListLocations(HWND dialog, const DiallingDialog& context) {
    const auto send = [dialog](UINT message, std::size_t wParam, LPARAM lParam = 0) {
        return static_cast<std::size_t>(SendDlgItemMessageA(dialog, ID_DIALLING_LOCATION, message, wParam, lParam));
    };
    send(CB_RESETCONTENT, 0);
    if (context.Locations.Mode == kDialTelephony) {
        send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(context.TelephonyValues.Description.Terminated()));
        send(CB_SETCURSEL, 0);
    }
    if (context.Locations.Mode != kDialLocation) return;
    for (std::size_t i = 0; i < context.Locations.Places.size(); ++i) {
        if (context.Locations.Places[i].IsDeleted) continue;
        const std::string name = ShownName(context.Locations, i);
        const std::size_t row = send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
        send(CB_SETITEMDATA, row, static_cast<LPARAM>(i));
        if (context.Locations.Chosen == i) send(CB_SETCURSEL, row);
    }
}

void EnableButtons(HWND dialog, const DiallingDialog& context) {
    const bool isOfFile = context.Locations.Mode == kDialLocation;
    EnableControl(dialog, ID_DIALLING_WINDOWS, context.Locations.Mode == kDialTelephony);
    for (const int control : {ID_DIALLING_LOCATION, ID_DIALLING_NEW}) EnableControl(dialog, control, isOfFile);
    for (const int control : {ID_DIALLING_CLONE, ID_DIALLING_RENAME, ID_DIALLING_DELETE, ID_DIALLING_FILL})
        EnableControl(dialog, control, HasLocation(context));
    for (const FieldControl& field : kFields) EnableControl(dialog, field.Control, HasLocation(context));
}

struct ModeButton {
    int Control;
    std::uint16_t Mode;
};
constexpr ModeButton kModes[] = {{ID_DIALLING_NO_EDITING, kDialNoEditing},
                                 {ID_DIALLING_LOCATIONS, kDialLocation},
                                 {ID_DIALLING_TELEPHONY, kDialTelephony}};

void ShowAll(HWND dialog, DiallingDialog& context) {
    for (const auto& [control, mode] : kModes)
        CheckDlgButton(dialog, control, context.Locations.Mode == mode ? BST_CHECKED : BST_UNCHECKED);
    ListLocations(dialog, context);
    context.Fields.Become(Shown(context));
    context.IsShowing = true;
    ShowFields(dialog, kFields, context.Fields);
    context.IsShowing = false;
    EnableButtons(dialog, context);
    ShowOutcome(dialog, context);
}

// Takes what is typed, before another location is shown; a value that cannot be taken keeps the one that is.
bool TakeShown(HWND dialog, DiallingDialog& context) {
    if (!HasLocation(context)) return true;
    const int fault = TakeFields(dialog, kFields, context.Fields);
    if (fault == 0) return true;
    ListLocations(dialog, context);
    for (const auto& [control, mode] : kModes)
        CheckDlgButton(dialog, control, context.Locations.Mode == mode ? BST_CHECKED : BST_UNCHECKED);
    FocusControl(dialog, fault);
    return false;
}

void TypeValue(HWND dialog, DiallingDialog& context) {
    if (context.IsShowing || !HasLocation(context)) return;
    TakeGoodFields(dialog, kFields, context.Fields);
    ShowOutcome(dialog, context);
}

void TypeNumber(HWND, DiallingDialog& context) { context.Trial.ShowAgain(); }
void ShowStep(HWND, DiallingDialog& context) { context.Trial.ShowStep(); }

template <std::uint16_t kMode>
void ChooseMode(HWND dialog, DiallingDialog& context) {
    if (context.Locations.Mode == kMode || !TakeShown(dialog, context)) return;
    context.Locations.Mode = kMode;
    FollowTelephony(context);
    ShowAll(dialog, context);
}

void ChooseLocation(HWND dialog, DiallingDialog& context) {
    const LRESULT row = SendDlgItemMessageA(dialog, ID_DIALLING_LOCATION, CB_GETCURSEL, 0, 0);
    if (row < 0 || context.Locations.Mode != kDialLocation || !TakeShown(dialog, context)) return;
    const LRESULT place =
        SendDlgItemMessageA(dialog, ID_DIALLING_LOCATION, CB_GETITEMDATA, static_cast<WPARAM>(row), 0);
    context.Locations.Chosen = static_cast<std::size_t>(place);
    ShowAll(dialog, context);
}

void AddLike(HWND dialog, DiallingDialog& context, std::optional<std::size_t> like) {
    if (!TakeShown(dialog, context) || !AddPlaceByDialog(dialog, context.Locations, like)) return;
    context.Locations.Chosen = context.Locations.Places.size() - 1;
    ShowAll(dialog, context);
    FocusControl(dialog, ID_DIALLING_COUNTRY);
}

void PressNew(HWND dialog, DiallingDialog& context) { AddLike(dialog, context, std::nullopt); }
void PressClone(HWND dialog, DiallingDialog& context) { AddLike(dialog, context, context.Locations.Chosen); }

void PressRename(HWND dialog, DiallingDialog& context) {
    if (TakeShown(dialog, context) && RenamePlaceByDialog(dialog, context.Locations, *context.Locations.Chosen))
        ShowAll(dialog, context);
}

void PressDelete(HWND dialog, DiallingDialog& context) {
    if (!DeletePlace(context.Locations, *context.Locations.Chosen)) return;
    ShowAll(dialog, context);
    FocusControl(dialog, ID_DIALLING_LOCATION);
}

void PressFill(HWND dialog, DiallingDialog& context) {
    DialProperties values;
    const StatusCode status = ReadTelephony(context, values);
    if (status != kDone) return ShowError("%s", TapiFailureText(status));
    FillPlace(context.Locations, *context.Locations.Chosen, values);
    ShowAll(dialog, context);
}

void PressWindows(HWND dialog, DiallingDialog& context) {
    const StatusCode status = TAPISetLocation(context.Trial.Number(), dialog);
    FollowTelephony(context);
    ShowAll(dialog, context);
    if (status != kDone) ShowError("%s", TapiFailureText(status));
}

void FillDialling(HWND dialog, DiallingDialog& context) {
    context.Trial.Begin(dialog);
    MakeLive(GetDlgItem(dialog, ID_DIALLING_WARNING));
    FollowTelephony(context);
    ShowAll(dialog, context);
    AddTooltips(dialog, kFields, context.Fields);
    FocusControl(dialog, context.Locations.Mode == kDialLocation ? ID_DIALLING_LOCATION : ID_DIALLING_TRY);
}

// Also by what cannot be taken.
bool IsDialogChanged(HWND dialog, const DiallingDialog& context) {
    return IsChanged(context.Locations) || (HasLocation(context) && DifferFrom(dialog, kFields, context.Fields));
}

void TakeDialling(HWND dialog, DiallingDialog& context) {
    if (!TakeShown(dialog, context)) return;
    const std::optional<std::string> fault =
        IsChanged(context.Locations) ? FaultOfSelection(context.Locations) : std::nullopt;
    if (fault) {
        ShowError("%s", *fault);
        return FocusControl(dialog, ID_DIALLING_LOCATION);
    }
    const WaitCursor wait;
    if (SaveDialLocations(context.Locations)) EndDialog(dialog, IDOK);
}

using Command = DialogCommand<DiallingDialog>;
constexpr std::array kCommands = {
    Command{ID_DIALLING_NO_EDITING, BN_CLICKED, ChooseMode<kDialNoEditing>},
    Command{ID_DIALLING_LOCATIONS, BN_CLICKED, ChooseMode<kDialLocation>},
    Command{ID_DIALLING_TELEPHONY, BN_CLICKED, ChooseMode<kDialTelephony>},
    Command{ID_DIALLING_WINDOWS, BN_CLICKED, PressWindows},
    Command{ID_DIALLING_LOCATION, CBN_SELCHANGE, ChooseLocation},
    Command{ID_DIALLING_NEW, BN_CLICKED, PressNew},
    Command{ID_DIALLING_CLONE, BN_CLICKED, PressClone},
    Command{ID_DIALLING_RENAME, BN_CLICKED, PressRename},
    Command{ID_DIALLING_DELETE, BN_CLICKED, PressDelete},
    Command{ID_DIALLING_FILL, BN_CLICKED, PressFill},
    Command{ID_DIALLING_COUNTRY, EN_CHANGE, TypeValue},
    Command{ID_DIALLING_AREA, EN_CHANGE, TypeValue},
    Command{ID_DIALLING_NATIONAL, EN_CHANGE, TypeValue},
    Command{ID_DIALLING_INTERNATIONAL, EN_CHANGE, TypeValue},
    Command{ID_DIALLING_LONGEST, EN_CHANGE, TypeValue},
    Command{ID_DIALLING_AREA_CODE, BN_CLICKED, TypeValue},
    Command{ID_DIALLING_LOCAL_PREFIX, BN_CLICKED, TypeValue},
    Command{ID_DIALLING_SHOW_PREFIX, BN_CLICKED, TypeValue},
    Command{ID_DIALLING_AS_LOCAL, EN_CHANGE, TypeValue},
    Command{ID_DIALLING_AS_NATIONAL, EN_CHANGE, TypeValue},
    Command{ID_DIALLING_TRY, EN_CHANGE, TypeNumber},
    Command{ID_DIALLING_STEPS, kListSelected, ShowStep},
    Command{IDOK, BN_CLICKED, TakeDialling},
    Command{IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_DIALLING_AS_LOCAL, kGrowsDown},
    {ID_DIALLING_AS_NATIONAL, kGrowsDown},
    {ID_DIALLING_TRY, kGrowsAcross},
    {ID_DIALLING_TRY_SHOWN, kGrowsAcross},
    {ID_DIALLING_TRY_DIALLED, kGrowsAcross},
    {ID_DIALLING_STEPS, kGrowsBoth},
    {ID_DIALLING_STEP, kMovesDown | kGrowsAcross},
    {ID_DIALLING_WARNING, kMovesDown | kGrowsAcross},
    {ID_STATUS_LINE, kMovesDown | kGrowsAcross},
    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<DiallingDialog> kPlan{HELP_DIALLING, FillDialling, kCommands, kAnchors, nullptr, IsDialogChanged};

} // namespace

void ConfigureDialling(HWND owner) {
    std::optional<DialLocations> locations;
    {
        const WaitCursor wait;
        locations = ReadDialLocations();
    }
    if (!locations) return;
    DiallingDialog context{.Locations = std::move(*locations)};
    OpenDialogOf(ServerFile::Dialling, "DiallingPropertiesBox", owner, DiallingPropertiesDlgBox, &context);
}

INT_PTR CALLBACK DiallingPropertiesDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
