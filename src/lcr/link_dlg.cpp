#include "lcr/link_dlg.h"

#include <string>

#include "dialogs/directory_field_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "dialogs/time_range_dlg.h"
#include "lcr/lcr_fields_dlg.h"
#include "lcr/lcr_uses_dlg.h"
#include "resources/ids.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr ListColumn kStateTitles[] = {{"Key", 96}, {"Value", 56}};
constexpr ListPlan kStatePlan{.List = ID_LINK_STATE, .Columns = kStateTitles, .IsSorted = false};

struct LinkDialog {
    LinkSession& Session;
    std::optional<std::size_t> Place; // none: a new link
    LinkRecord Entered;
    const LinkNotes* Notes = nullptr;
    RowFields<LinkSetting, LinkRecord> Fields{LinkSettings(), Entered};
    DirectoryField Address{};
    NameField Account{};
    RowTable States{};
    ListView StateList{States, kStatePlan};

    [[nodiscard]] const LinkTable& Links() const { return Session.Edit().Links; }
    [[nodiscard]] bool IsOld() const { return !Entered.IsNew; }
};

// In the order of LinkType.
constexpr const char* kTypes[] = {"Shared directory (WAN)", "E-mail", "Fast e-mail"};
constexpr const char* kPriorities[] = {"Normal", "Urgent", "Background"};
constexpr std::string_view kYesAndNo[] = {"YES", "NO"};
constexpr std::string_view kAccount = "BrivaneAccountName";

// In reading order, before and behind the account, which has a control of its own kind.
constexpr FieldControl kFirst[] = {
    {ID_LINK_ID, "RemoteServerID"},
    {ID_LINK_DESCRIPTION, "Description"},
    {ID_LINK_TYPE, "LinkType", FieldForm::Choice, ChoiceWords<LinkType>::kWords, kTypes},
    {ID_LINK_ADDRESS, "RemoteServerAddress"},
};
constexpr FieldControl kAccountField{ID_LINK_ACCOUNT, kAccount};
constexpr FieldControl kLast[] = {
    {ID_LINK_PASSWORD, "LinkPassword"},
    {ID_LINK_DELAY, "LinkDelay"},
    {ID_LINK_WATCHDOG, "LocalWatchdogFreq"},
    {ID_LINK_SENT, "MaxOutboundPriority", FieldForm::Choice, kPriorityWords, kPriorities},
    {ID_LINK_RECEIVED, "MaxInboundPriority", FieldForm::Choice, kPriorityWords, kPriorities},
    {ID_LINK_REJECT, "RejectHigherPriorityMsg", FieldForm::Radio, kYesAndNo},
};

int ControlOf(std::string_view key) {
    if (const int control = ControlOfKey(kFirst, key)) return control;
    return key == kAccount ? ID_LINK_ACCOUNT : ControlOfKey(kLast, key);
}

// Check boxes that are on, off or, as long as the file says nothing, neither.
struct SwitchBox {
    int Control;
    Switch LinkRecord::*Value;
};
constexpr SwitchBox kSwitches[] = {{ID_LINK_RECEIVE, &LinkRecord::ReceiveEnabled},
                                   {ID_LINK_SEND, &LinkRecord::SendEnabled}};

void ShowSwitch(HWND dialog, int control, const Switch& value) {
    if (!value) SendDlgItemMessageA(dialog, control, BM_SETSTYLE, BS_AUTO3STATE, TRUE);
    CheckDlgButton(dialog, control, !value ? BST_INDETERMINATE : *value ? BST_CHECKED : BST_UNCHECKED);
}

Switch TakeSwitch(HWND dialog, int control) {
    const UINT state = IsDlgButtonChecked(dialog, control);
    return state == BST_INDETERMINATE ? Switch() : Switch(state == BST_CHECKED);
}

void EnableForType(HWND dialog, LinkDialog&) {
    const bool isShared = SendDlgItemMessageA(dialog, ID_LINK_TYPE, CB_GETCURSEL, 0, 0) ==
                          static_cast<LRESULT>(LinkType::SharedDirectory);
    for (const int control : {ID_LINK_ADDRESS + 1, ID_LINK_TEST}) EnableControl(dialog, control, isShared);
}

void ShowPassword(HWND dialog, LinkDialog&) {
    const HWND password = GetDlgItem(dialog, ID_LINK_PASSWORD);
    constexpr WCHAR kBullet = 0x25CF;
    const bool isShown = IsDlgButtonChecked(dialog, ID_LINK_SHOW) == BST_CHECKED;
    SendMessageW(password, EM_SETPASSWORDCHAR, isShown ? 0 : kBullet, 0);
    InvalidateRect(password, nullptr, TRUE);
}

void ListState(HWND dialog, LinkDialog& context) {
    context.StateList.Begin(dialog);
    context.StateList.Refill([&] {
        context.States.Begin(std::size(kStateTitles));
        for (std::size_t i = 0; i < kLinkNotes; ++i) {
            const std::string_view key = LinkNoteKeys()[i];
            context.States.Add(key.substr(0, key.size() - 1));
            context.States.Add(context.Notes == nullptr ? std::string_view() : std::string_view(context.Notes->at(i)));
        }
        return true;
    });
    for (const int control : {ID_LINK_FORGET, ID_LINK_CONNECTED}) EnableControl(dialog, control, context.IsOld());
    CheckDlgButton(dialog, ID_LINK_FORGET, context.Entered.ResetStatus ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(dialog, ID_LINK_CONNECTED, context.Entered.ConnectionIsOn ? BST_CHECKED : BST_UNCHECKED);
}

void FillLink(HWND dialog, LinkDialog& context) {
    const std::string title =
        context.Place ? FormatText("Link %s", context.Links()[*context.Place].Identifier) : "New link";
    SetWindowTextA(dialog, title.c_str());
    using Fields = std::span<const FieldControl>;
    for (const Fields fields : {Fields(kFirst), Fields(&kAccountField, 1), Fields(kLast)})
        AddTooltips(dialog, fields, context.Fields);
    ShowFields(dialog, kFirst, context.Fields);
    ShowFields(dialog, kLast, context.Fields);
    for (const int choice : {ID_LINK_REJECT, ID_LINK_REJECT + 1}) // neither is chosen by coming to it
        SendDlgItemMessageA(dialog, choice, BM_SETDONTCLICK, TRUE, 0);
    context.Address.Begin(dialog, ID_LINK_ADDRESS, "Directory of the remote server", "");
    context.Account.Begin(dialog, ID_LINK_ACCOUNT, ID_LINK_CHOOSE, kUserNames, "");
    context.Account.Put(context.Entered.AccountName);
    for (const SwitchBox& box : kSwitches) ShowSwitch(dialog, box.Control, context.Entered.*box.Value);
    for (const int time : {ID_LINK_DELAY, ID_LINK_WATCHDOG}) GiveTimeKeys(dialog, time);
    ListState(dialog, context);
    ShowPassword(dialog, context);
    EnableForType(dialog, context);
}

int TakeAccount(LinkDialog& context) {
    std::string account;
    if (!context.Account.Take(account)) return ID_LINK_ACCOUNT;
    const auto fault = context.Fields.Enter(kAccount, account);
    if (fault) ShowError("%s", *fault);
    return fault ? ID_LINK_ACCOUNT : 0;
}

// Returns the control of the first fault, after its message, or 0.
int TakeLink(HWND dialog, LinkDialog& context) {
    for (const int time : {ID_LINK_DELAY, ID_LINK_WATCHDOG}) SetText(dialog, time, FullTime(GetText(dialog, time)));
    if (const int fault = TakeFields(dialog, kFirst, context.Fields)) return fault;
    if (const int fault = TakeAccount(context)) return fault;
    if (const int fault = TakeFields(dialog, kLast, context.Fields)) return fault;
    for (const SwitchBox& box : kSwitches) context.Entered.*box.Value = TakeSwitch(dialog, box.Control);
    context.Entered.ResetStatus = IsDlgButtonChecked(dialog, ID_LINK_FORGET) == BST_CHECKED;
    context.Entered.ConnectionIsOn = IsDlgButtonChecked(dialog, ID_LINK_CONNECTED) == BST_CHECKED;
    return 0;
}

void PutEntered(HWND dialog, LinkDialog& context) {
    if (const int fault = TakeLink(dialog, context)) return FocusControl(dialog, fault);
    const bool isSame = context.Place && context.Entered == context.Links()[*context.Place];
    if (const auto fault = FindLinkFault(context.Session.Edit(), context.Place, context.Entered); fault && !isSame) {
        ShowError("%s", std::string(fault->Message));
        return FocusControl(dialog, ControlOf(fault->Key));
    }
    const WaitCursor wait;
    const auto ask = [&](const std::vector<Use>& uses) {
        return AskUsesOfLink(dialog, context.Links()[*context.Place].Identifier, context.Entered.Identifier, uses);
    };
    if (context.Session.Put(context.Place, context.Entered, ask)) EndDialog(dialog, IDOK);
}

void TestAddress(HWND dialog, LinkDialog&) {
    std::string directory;
    if (!TakeText(dialog, ID_LINK_ADDRESS, directory)) return;
    const WaitCursor wait;
    if (!TestWanInbox(directory)) FocusControl(dialog, ID_LINK_ADDRESS);
}

constexpr DialogCommand<LinkDialog> kCommands[] = {{ID_LINK_TYPE, CBN_SELCHANGE, EnableForType},
                                                   {ID_LINK_SHOW, BN_CLICKED, ShowPassword},
                                                   {ID_LINK_TEST, BN_CLICKED, TestAddress},
                                                   {IDOK, BN_CLICKED, PutEntered},
                                                   {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<LinkDialog> kPlan{HELP_LINK, FillLink, kCommands};

bool Open(HWND owner, LinkDialog& context) {
    return OpenDialog("LinkEditBox", owner, LinkEditDlgBox, &context) == IDOK;
}

} // namespace

std::optional<std::size_t> EditLinkByDialog(HWND owner, LinkSession& session, std::size_t place) {
    LinkDialog context{.Session = session, .Place = place, .Entered = session.Edit().Links.at(place)};
    context.Notes = NotesOf(session.Facts(), context.Entered);
    return Open(owner, context) ? std::optional(place) : std::nullopt;
}

std::optional<std::size_t> AddLinkByDialog(HWND owner, LinkSession& session, const LinkRecord& beginning) {
    LinkDialog context{.Session = session, .Place = {}, .Entered = beginning};
    return Open(owner, context) ? std::optional(session.Edit().Links.size() - 1) : std::nullopt;
}

INT_PTR CALLBACK LinkEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
