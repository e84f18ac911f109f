#include "mailgw/mail_boxes_dlg.h"

#include "dialogs/list_view_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "mailgw/account_name.h"
#include "mailgw/mail_directory.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_messages.h"
#include "mailgw/mail_profiles.h"
#include "mailgw/mail_user_edit.h"
#include "mailgw/mail_wait_dlg.h"
#include "resources/ids.h"
#include "shell/row_table.h"
#include "voice/messages.h"

namespace bv {
namespace {

std::uintptr_t HandleOf(HWND window) { return reinterpret_cast<std::uintptr_t>(window); }

// --- One record ---

struct UserBox {
    MailUser Before;
    MailUser After = Before;
    NameField Server{};
    ProfileUsers Profiles{};
};

struct FieldRow {
    int Control;
    MailKey::Index Key;
};
constexpr FieldRow kFields[] = {{ID_MAIL_USER_ACCOUNT, MailKey::EmailBrivname},
                                {ID_MAIL_USER_SUB_ADDRESS, MailKey::SubAddr},
                                {ID_MAIL_USER_PRINT_RECD, MailKey::PrintRecd},
                                {ID_MAIL_USER_PRINT_SENT, MailKey::PrintSent}};

// An account name counts for mail users of a profile alone.
void FollowServerUser(HWND dialog, UserBox& context) {
    std::string name = GetText(dialog, ID_MAIL_USER_SERVER);
    const bool isProfile = context.Profiles.Has(name);
    SetText(dialog, ID_MAIL_USER_PROFILE,
            isProfile ? "A mail user profile: faxes go under the account name."
                      : "No mail user profile: faxes go under the server user's name.");
    for (const int control : {ID_MAIL_USER_ACCOUNT, ID_MAIL_USER_MAKE}) EnableControl(dialog, control, isProfile);
}

void FillUser(HWND dialog, UserBox& context) {
    context.Profiles.Read();
    SetText(dialog, ID_MAIL_USER_NAME, context.Before.Emailname.String());
    context.Server.Begin(dialog, ID_MAIL_USER_SERVER, ID_MAIL_USER_CHOOSE, kUserNames, "");
    context.Server.Put(context.Before.Brivname.String());
    for (const auto& [control, key] : kFields) {
        SendDlgItemMessageA(dialog, control, EM_LIMITTEXT, LimitOfMailValue(key), 0);
        SetText(dialog, control, MailValue(context.Before, key));
    }
    FollowServerUser(dialog, context);
    FocusControl(dialog, ID_MAIL_USER_SERVER);
}

void MakeAccount(HWND dialog, UserBox& context) {
    AccountName name;
    if (MakeMailAccountName(context.Before.Emailname, name)) SetText(dialog, ID_MAIL_USER_ACCOUNT, name.String());
    FocusControl(dialog, ID_MAIL_USER_ACCOUNT);
}

// Takes what a control says; false after the fault's message, with the focus on it.
bool TakeValue(HWND dialog, UserBox& context, const FieldRow& field, const std::string& text) {
    const std::optional<std::string> fault = SetMailValue(context.After, field.Key, text);
    if (!fault) return true;
    ShowError("%s", *fault);
    FocusControl(dialog, field.Control);
    return false;
}

bool TakeValues(HWND dialog, UserBox& context) {
    std::string text;
    if (!context.Server.Take(text)) return false;
    if (!TakeValue(dialog, context, {ID_MAIL_USER_SERVER, MailKey::Brivname}, text)) return false;
    for (const FieldRow& field : kFields)
        if (!TakeText(dialog, field.Control, text) || !TakeValue(dialog, context, field, text)) return false;
    return true;
}

void TakeUser(HWND dialog, UserBox& context) {
    context.After = context.Before;
    if (!TakeValues(dialog, context)) return;
    const WaitCursor wait;
    const std::optional<MailUserFault> fault = SaveMailUser(context.Before, context.After);
    if (!fault)
        EndDialog(dialog, IDOK);
    else if (fault->Key == MailKey::Brivname)
        FocusControl(dialog, ID_MAIL_USER_SERVER);
    else if (fault->Key == MailKey::EmailBrivname)
        FocusControl(dialog, ID_MAIL_USER_ACCOUNT);
}

constexpr DialogCommand<UserBox> kUserCommands[] = {
    {ID_MAIL_USER_SERVER, CBN_EDITCHANGE, FollowServerUser},
    {ID_MAIL_USER_MAKE, BN_CLICKED, MakeAccount},
    {IDOK, BN_CLICKED, TakeUser},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr DialogPlan<UserBox> kUserPlan{HELP_MAIL_USER, FillUser, kUserCommands};

// --- Another e-mail name ---

struct ReplaceBox {
    const ListedMailUser& User;
    std::string Name = {};
};

void FillReplace(HWND dialog, ReplaceBox& context) {
    SetText(dialog, ID_REPLACE_NOW, context.User.Emailname);
    SendDlgItemMessageA(dialog, ID_REPLACE_NEW, EM_LIMITTEXT, kMaxEmailName, 0);
    EnableControl(dialog, IDOK, false);
    FocusControl(dialog, ID_REPLACE_NEW);
}

void FollowName(HWND dialog, ReplaceBox&) { EnableControl(dialog, IDOK, !GetText(dialog, ID_REPLACE_NEW).empty()); }

void LookUp(HWND dialog, ReplaceBox&) {
    const std::string name = PickMailName(dialog, GetText(dialog, ID_REPLACE_NEW));
    if (!name.empty()) SetText(dialog, ID_REPLACE_NEW, name);
    FocusControl(dialog, ID_REPLACE_NEW);
}

void TakeReplace(HWND dialog, ReplaceBox& context) {
    if (!TakeText(dialog, ID_REPLACE_NEW, context.Name)) return;
    if (context.Name == context.User.Emailname) return EndWithCancel(dialog, context);
    const WaitCursor wait;
    if (RenameMailUser(context.User, context.Name))
        EndDialog(dialog, IDOK);
    else
        FocusControl(dialog, ID_REPLACE_NEW);
}

constexpr DialogCommand<ReplaceBox> kReplaceCommands[] = {
    {ID_REPLACE_NEW, EN_CHANGE, FollowName},
    {ID_REPLACE_LOOK_UP, BN_CLICKED, LookUp},
    {IDOK, BN_CLICKED, TakeReplace},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr DialogPlan<ReplaceBox> kReplacePlan{HELP_REPLACE_MAIL_USER, FillReplace, kReplaceCommands};

// --- A user of the mail system ---

constexpr ListColumn kColumns[] = {{"Name", 140}, {"Address", 130}};
constexpr ListPlan kList{.List = ID_MAIL_NAMES_LIST,
                         .Columns = kColumns,
                         .Filter = ID_MAIL_NAMES_FILTER,
                         .Count = ID_MAIL_NAMES_COUNT,
                         .DefaultButton = IDOK};

struct NamesBox {
    std::string Beginning;
    RowTable Rows{};
    ListView List{Rows, kList};
    std::string Name{};
};

bool ReadNames(NamesBox& context) {
    std::vector<MailPerson> people;
    const bool isRead = ReadMailDirectory(people);
    context.Rows.Begin(std::size(kColumns));
    for (const MailPerson& person : people) {
        context.Rows.Add(person.Name);
        context.Rows.Add(person.Address);
    }
    return isRead;
}

void EnableOk(HWND dialog, NamesBox& context) { EnableControl(dialog, IDOK, context.List.HasOneSelected()); }

void ListNames(HWND dialog, NamesBox& context) {
    const WaitCursor wait;
    context.List.Refill([&] { return ReadNames(context); });
    EnableOk(dialog, context);
}

void FillNames(HWND dialog, NamesBox& context) {
    const WaitCursor wait;
    EnsureMailUserList(HandleOf(dialog), false);
    context.List.Begin(dialog);
    ListNames(dialog, context);
    if (!context.Beginning.empty()) SetText(dialog, ID_MAIL_NAMES_FILTER, context.Beginning);
    FocusControl(dialog, ID_MAIL_NAMES_FILTER);
}

void TakeName(HWND dialog, NamesBox& context) {
    const std::vector<std::string> names = context.List.SelectedNames();
    if (names.empty()) return;
    context.Name = names.front();
    EndDialog(dialog, IDOK);
}

void PressBook(HWND dialog, NamesBox& context) {
    const WaitCursor wait;
    const std::vector<std::string> names = PickFromBook(dialog);
    if (names.empty()) return;
    context.Name = names.front();
    EndDialog(dialog, IDOK);
}

constexpr DialogCommand<NamesBox> kNamesCommands[] = {
    {ID_MAIL_NAMES_LIST, kListSelected, EnableOk},
    {ID_MAIL_NAMES_LIST, kListOpen, TakeName},
    {ID_MAIL_NAMES_LIST, kListReload, ListNames},
    {ID_MAIL_NAMES_BOOK, BN_CLICKED, PressBook},
    {IDOK, BN_CLICKED, TakeName},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_MAIL_NAMES_FILTER, kGrowsAcross},
    {ID_MAIL_NAMES_BOOK, kMovesAcross},
    {ID_MAIL_NAMES_LIST, kGrowsBoth},
    {ID_MAIL_NAMES_COUNT, kMovesDown | kGrowsAcross},
    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<NamesBox> kNamesPlan{HELP_MAIL_NAMES, FillNames, kNamesCommands, kAnchors};

} // namespace

std::optional<std::string> EditMailUserByDialog(HWND owner, const MailUser& user) {
    UserBox context{user};
    if (OpenDialog("MailUserEditBox", owner, MailUserEditDlgBox, &context) != IDOK) return {};
    return user.Emailname.String();
}

std::optional<std::string> ReplaceMailUserByDialog(HWND owner, const ListedMailUser& user) {
    ReplaceBox context{user};
    if (OpenDialog("MailReplaceBox", owner, MailReplaceDlgBox, &context) != IDOK) return {};
    return context.Name;
}

std::string PickMailName(HWND owner, const std::string& beginning) {
    NamesBox context{.Beginning = beginning};
    OpenDialog("SelectMailNameBox", owner, SelectMailNameDlgBox, &context);
    return context.Name;
}

INT_PTR CALLBACK MailUserEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kUserPlan, {dialog, message, wParam, lParam});
}
INT_PTR CALLBACK MailReplaceDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kReplacePlan, {dialog, message, wParam, lParam});
}
INT_PTR CALLBACK SelectMailNameDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kNamesPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
