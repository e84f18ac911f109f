#include "lcr/router_dlg.h"

#include <algorithm>
#include <iterator>

#include "dialogs/directory_field_dlg.h"
#include "dialogs/password_field_dlg.h"
#include "dialogs/pick_dlg.h"
#include "dialogs/time_range_dlg.h"
#include "lcr/lcr_fields_dlg.h"
#include "lcr/lcr_messages.h"
#include "lcr/lcr_uses_dlg.h"
#include "lcr/router_actions.h"
#include "resources/ids.h"
#include "voice/messages.h"

namespace bv {
namespace {

struct RouterDialog {
    LcrServices Services;
    RouterEdit Edit{};
    RowFields<RouterKey, RouterSettings> Fields{RouterKeys(), Edit.Entered};
    PasswordField Password{};
    DirectoryField Inbox{};
};

// In the order of EmailType.
constexpr const char* kSystems[] = {"Microsoft Exchange", "Lotus Notes (V4.1.1 or later)", "Lotus Notes (pre V4.1.1)",
                                    "Other (MAPI compliant)"};

constexpr FieldControl kPassword{ID_ROUTER_PASSWORD, "EmailLoginParams"};
constexpr FieldControl kAlways[] = {{ID_ROUTER_ID, "LocalServerID"}, {ID_ROUTER_DESCRIPTION, "Description"}};
constexpr FieldControl kEmail{ID_ROUTER_EMAIL, "EmailEnabled", FieldForm::Check};
constexpr FieldControl kOfEmail[] = {
    {ID_ROUTER_SYSTEM, "EmailType", FieldForm::Choice, ChoiceWords<EmailType>::kWords, kSystems},
    {ID_ROUTER_LOGIN, "EmailLoginName"},
    {ID_ROUTER_NOTES_ID, "NotesIdFile"},
    {ID_ROUTER_EMAIL_POLL, "EmailInboxPollFreq"}};
constexpr FieldControl kWan{ID_ROUTER_WAN, "WanEnabled", FieldForm::Check};
constexpr FieldControl kOfWan[] = {{ID_ROUTER_INBOX, "WanInboxDirectory"}, {ID_ROUTER_WAN_POLL, "WanInboxPollFreq"}};

// A kind of link, and what is disabled with it.
struct Kind {
    const FieldControl& Switch;
    std::span<const FieldControl> Fields;
};
constexpr Kind kKinds[] = {{kEmail, kOfEmail}, {kWan, kOfWan}};

int ControlOf(std::string_view key) {
    if (const int control = ControlOfKey(kAlways, key)) return control;
    for (const auto& [check, fields] : kKinds) {
        if (check.Key == key) return check.Control;
        if (const int control = ControlOfKey(fields, key)) return control;
    }
    return 0;
}

bool IsChecked(HWND dialog, int control) { return IsDlgButtonChecked(dialog, control) == BST_CHECKED; }

bool IsNotesChosen(HWND dialog) {
    return SendDlgItemMessageA(dialog, ID_ROUTER_SYSTEM, CB_GETCURSEL, 0, 0) ==
           static_cast<LRESULT>(EmailType::LotusNotes);
}

void EnableControls(HWND dialog, RouterDialog& context) {
    for (const auto& [check, fields] : kKinds)
        for (const FieldControl& field : fields) EnableControl(dialog, field.Control, IsChecked(dialog, check.Control));
    const bool hasEmail = IsChecked(dialog, ID_ROUTER_EMAIL);
    EnableControl(dialog, ID_ROUTER_PASSWORD, hasEmail);
    EnableControl(dialog, ID_ROUTER_TEST_LOGIN, hasEmail && context.Services.TestLogin != nullptr);
    for (const int control : {ID_ROUTER_NOTES_ID, ID_ROUTER_NOTES_BROWSE})
        EnableControl(dialog, control, hasEmail && IsNotesChosen(dialog));
    for (const int control : {ID_ROUTER_INBOX + 1, ID_ROUTER_INBOX + 2, ID_ROUTER_TEST_INBOX})
        EnableControl(dialog, control, IsChecked(dialog, ID_ROUTER_WAN));
}

void ShowAll(HWND dialog, std::span<const FieldControl> fields, const RouterDialog& context) {
    ShowFields(dialog, fields, context.Fields);
    AddTooltips(dialog, fields, context.Fields);
}

void FillRouter(HWND dialog, RouterDialog& context) {
    ShowAll(dialog, kAlways, context);
    for (const auto& [check, fields] : kKinds) {
        ShowAll(dialog, {&check, 1}, context);
        ShowAll(dialog, fields, context);
    }
    AddTooltips(dialog, {&kPassword, 1}, context.Fields);
    context.Password.Begin(dialog, ID_ROUTER_PASSWORD, context.Edit.Entered.EmailLoginParams);
    context.Inbox.Begin(dialog, ID_ROUTER_INBOX, "Inbox folder", DefaultWanInbox());
    for (const int time : {ID_ROUTER_EMAIL_POLL, ID_ROUTER_WAN_POLL}) GiveTimeKeys(dialog, time);
    SetText(dialog, ID_ROUTER_HINT, DescribeLinesToDrop(context.Edit));
    EnableControls(dialog, context);
}

// Each returns the control of the first fault, after its message, or 0.
int TakeEmail(HWND dialog, RouterDialog& context) {
    RouterSettings& settings = context.Edit.Entered;
    if (const int fault = TakeFields(dialog, std::span(kOfEmail).first(2), context.Fields)) return fault;
    if (!context.Password.Take(settings.EmailLoginParams)) return ID_ROUTER_PASSWORD;
    return TakeFields(dialog, std::span(kOfEmail).subspan(2), context.Fields);
}

int TakeRouter(HWND dialog, RouterDialog& context) {
    for (const int time : {ID_ROUTER_EMAIL_POLL, ID_ROUTER_WAN_POLL})
        SetText(dialog, time, FullTime(GetText(dialog, time)));
    if (const int fault = TakeFields(dialog, kAlways, context.Fields)) return fault;
    TakeFields(dialog, {&kEmail, 1}, context.Fields);
    TakeFields(dialog, {&kWan, 1}, context.Fields);
    if (context.Edit.Entered.EmailEnabled)
        if (const int fault = TakeEmail(dialog, context)) return fault;
    return context.Edit.Entered.WanEnabled ? TakeFields(dialog, kOfWan, context.Fields) : 0;
}

void SaveRouter(HWND dialog, RouterDialog& context) {
    if (const int fault = TakeRouter(dialog, context)) return FocusControl(dialog, fault);
    if (const auto fault = FindRouterFault(context.Edit.Entered, context.Edit.Links)) {
        ShowError("%s", fault->Message);
        return FocusControl(dialog, ControlOf(fault->Key));
    }
    const auto ask = [&](const std::vector<Use>& uses) {
        return AskUsesOfLink(dialog, context.Edit.Before.LocalServerId, context.Edit.Entered.LocalServerId, uses);
    };
    const WaitCursor wait;
    if (SaveRouterEdit(context.Edit, ask)) EndDialog(dialog, IDOK);
}

void BrowseNotesId(HWND dialog, RouterDialog&) {
    constexpr FilePick kPick{"Notes ID file", "ID files (*.id)\0*.id\0All files\0*.*\0", "id"};
    if (const auto path = PickFile(dialog, kPick, GetText(dialog, ID_ROUTER_NOTES_ID)))
        SetText(dialog, ID_ROUTER_NOTES_ID, *path);
}

void TestLogin(HWND dialog, RouterDialog& context) {
    if (const int fault = TakeEmail(dialog, context)) return FocusControl(dialog, fault);
    const WaitCursor wait;
    context.Services.TestLogin(dialog, context.Edit.Entered);
}

void TestInbox(HWND dialog, RouterDialog&) {
    std::string directory;
    if (!TakeText(dialog, ID_ROUTER_INBOX, directory)) return;
    const WaitCursor wait;
    if (!TestWanInbox(directory)) FocusControl(dialog, ID_ROUTER_INBOX);
}

constexpr DialogCommand<RouterDialog> kCommands[] = {{ID_ROUTER_EMAIL, BN_CLICKED, EnableControls},
                                                     {ID_ROUTER_WAN, BN_CLICKED, EnableControls},
                                                     {ID_ROUTER_SYSTEM, CBN_SELCHANGE, EnableControls},
                                                     {ID_ROUTER_NOTES_BROWSE, BN_CLICKED, BrowseNotesId},
                                                     {ID_ROUTER_TEST_LOGIN, BN_CLICKED, TestLogin},
                                                     {ID_ROUTER_TEST_INBOX, BN_CLICKED, TestInbox},
                                                     {IDOK, BN_CLICKED, SaveRouter},
                                                     {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<RouterDialog> kPlan{HELP_ROUTER, FillRouter, kCommands};

} // namespace

bool EditRouter(HWND owner, const LcrServices& services) {
    RouterDialog context{.Services = services};
    {
        const WaitCursor wait;
        const std::string notesIdFile = services.NotesIdFile != nullptr ? services.NotesIdFile() : std::string();
        if (!BeginRouterEdit(context.Edit, notesIdFile)) return false;
    }
    return OpenDialogOf(ServerFile::Setup, "RouterDlg", owner, RouterDlgBox, &context) == IDOK;
}

INT_PTR CALLBACK RouterDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
