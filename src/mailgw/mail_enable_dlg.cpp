#include "mailgw/mail_enable_dlg.h"

#include "dialogs/list_view_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "mailgw/mail_alias_dlg.h"
#include "mailgw/mail_directory.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_user_rows.h"
#include "mailgw/mail_wait_dlg.h"
#include "resources/ids.h"
#include "voice/messages.h"

namespace bv {
namespace {

// In the order of MailPersonColumn.
constexpr ListColumn kColumns[] = {{"Name", 120}, {"Address", 110}, {"Account", 62}, {"State", 100}};
static_assert(std::size(kColumns) == kPersonColumns);
constexpr ListPlan kList{.List = ID_ENABLE_LIST,
                         .Columns = kColumns,
                         .Filter = ID_ENABLE_FILTER,
                         .Count = ID_ENABLE_COUNT,
                         .HasTicks = true};

struct EnableDialog {
    std::string ServerUser;
    MailPeople People{};
    ListView List{People, kList};
    NameField User{};
    ProfileUsers Profiles{};
    std::optional<std::size_t> Named{}; // the row whose account is in the field
    std::string Enabled{};              // the e-mail name of the first one
};

std::uintptr_t HandleOf(HWND window) { return reinterpret_cast<std::uintptr_t>(window); }

bool IsByProfile(HWND dialog) { return IsDlgButtonChecked(dialog, ID_ENABLE_FOR_PROFILE) == BST_CHECKED; }

// The account of the row that is selected alone.
void ShowAccount(HWND dialog, EnableDialog& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    const bool hasAccount = IsByProfile(dialog) && rows.size() == 1 && !context.People.IsListed(rows.front());
    context.Named.reset();
    SetText(dialog, ID_ENABLE_ACCOUNT,
            hasAccount ? std::string(context.People.Text(rows.front(), kPersonAccount)) : std::string());
    EnableControl(dialog, ID_ENABLE_ACCOUNT, hasAccount);
    if (hasAccount) context.Named = rows.front();
}

void ChangeAccount(HWND dialog, EnableDialog& context) {
    if (!context.Named) return;
    context.People.SetAccount(*context.Named, GetText(dialog, ID_ENABLE_ACCOUNT));
    context.List.ShowChanged();
}

void FocusAccount(HWND dialog, EnableDialog& context) {
    if (context.Named) FocusControl(dialog, ID_ENABLE_ACCOUNT);
}

// By one server user or by a profile: what the rows have, and which fields there are.
void ChooseSender(HWND dialog, EnableDialog& context) {
    const bool isByProfile = IsByProfile(dialog);
    for (const int control : {ID_ENABLE_USER, ID_ENABLE_CHOOSE}) EnableControl(dialog, control, !isByProfile);
    for (const int control : {ID_ENABLE_PROFILE, ID_ENABLE_EXPRESSION}) EnableControl(dialog, control, isByProfile);
    context.People.GiveAccounts(isByProfile, ReadAccountExpression().value_or(AccountExpression()));
    context.List.ShowChanged();
    ShowAccount(dialog, context);
}

void ListPeople(HWND dialog, EnableDialog& context) {
    const WaitCursor wait;
    context.Named.reset();
    context.List.Refill([&] { return context.People.Read(); });
    ShowAccount(dialog, context);
}

void PressRefresh(HWND dialog, EnableDialog& context) {
    RemakeMailUserList(HandleOf(dialog));
    ListPeople(dialog, context);
}

void AddNames(HWND dialog, EnableDialog& context, const std::vector<std::string>& names) {
    bool isAdded = false;
    context.Named.reset();
    context.List.Refill([&] {
        for (const std::string& name : names) isAdded = context.People.Add(name) || isAdded;
        return true;
    });
    if (isAdded) context.List.SelectName(names.front());
    ShowAccount(dialog, context);
}

void PressAdd(HWND dialog, EnableDialog& context) {
    std::string name;
    if (!TakeText(dialog, ID_ENABLE_NAME, name)) return;
    if (!CheckEmailName(name)) return FocusControl(dialog, ID_ENABLE_NAME);
    AddNames(dialog, context, {name});
    SetText(dialog, ID_ENABLE_NAME, "");
    FocusControl(dialog, ID_ENABLE_NAME);
}

void PressBook(HWND dialog, EnableDialog& context) {
    const WaitCursor wait;
    const std::vector<std::string> names = PickFromBook(dialog);
    if (!names.empty()) AddNames(dialog, context, names);
}

void PressExpression(HWND dialog, EnableDialog& context) {
    if (ChooseAccountExpression(dialog)) ChooseSender(dialog, context);
}

// Brings what is wrong into view, with the focus.
void ShowFault(HWND dialog, EnableDialog& context, const EnableFault& fault) {
    using Field = EnableFault::Field;
    if (fault.Where == Field::ServerUser)
        return FocusControl(dialog, IsByProfile(dialog) ? ID_ENABLE_PROFILE : ID_ENABLE_USER);
    const std::size_t row = context.People.RowOfTicked(fault.User);
    if (fault.Where != Field::List && row != MailPeople::kNone) context.List.SelectName(context.People.Name(row));
    const bool isAccount = fault.Where == Field::Account && context.Named;
    FocusControl(dialog, isAccount ? ID_ENABLE_ACCOUNT : ID_ENABLE_LIST);
}

void Enable(HWND dialog, EnableDialog& context) {
    if (GetFocus() == GetDlgItem(dialog, ID_ENABLE_NAME) && !GetText(dialog, ID_ENABLE_NAME).empty())
        return PressAdd(dialog, context); // by Enter
    std::string name;
    if (IsByProfile(dialog))
        name = GetText(dialog, ID_ENABLE_PROFILE);
    else if (!context.User.Take(name))
        return;
    const WaitCursor wait;
    const std::vector<NewMailUser> users = context.People.Ticked();
    if (const auto fault = EnableMailUsers(name, users)) return ShowFault(dialog, context, *fault);
    context.Enabled = users.front().Emailname;
    EndDialog(dialog, IDOK);
}

void FillProfiles(HWND dialog, EnableDialog& context) {
    context.Profiles.Read();
    bool hasProfile = false;
    for (const std::string& name : context.Profiles.Names()) {
        if (IsDefaultName(name)) continue;
        SendDlgItemMessageA(dialog, ID_ENABLE_PROFILE, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
        hasProfile = true;
    }
    SendDlgItemMessageA(dialog, ID_ENABLE_PROFILE, CB_SETCURSEL, 0, 0);
    EnableControl(dialog, ID_ENABLE_FOR_PROFILE, hasProfile);
}

void FillEnable(HWND dialog, EnableDialog& context) {
    const WaitCursor wait;
    SendDlgItemMessageA(dialog, ID_ENABLE_NAME, EM_LIMITTEXT, kMaxEmailName, 0);
    SendDlgItemMessageA(dialog, ID_ENABLE_ACCOUNT, EM_LIMITTEXT, AccountName::kLimit, 0);
    FillProfiles(dialog, context);
    const bool isByProfile = context.Profiles.Has(context.ServerUser);
    CheckDlgButton(dialog, isByProfile ? ID_ENABLE_FOR_PROFILE : ID_ENABLE_FOR_USER, BST_CHECKED);
    context.User.Begin(dialog, ID_ENABLE_USER, ID_ENABLE_CHOOSE, kUserNames, "");
    if (!isByProfile) context.User.Put(context.ServerUser);
    if (isByProfile)
        SendDlgItemMessageA(dialog, ID_ENABLE_PROFILE, CB_SELECTSTRING, static_cast<WPARAM>(-1),
                            reinterpret_cast<LPARAM>(context.ServerUser.c_str()));
    context.List.OnTick([&context](std::size_t row, bool ticked) { context.People.Tick(row, ticked); });
    context.List.Begin(dialog);
    EnsureMailUserList(HandleOf(dialog), false);
    ListPeople(dialog, context);
    ChooseSender(dialog, context);
    FocusControl(dialog, context.People.Count() > 0 ? ID_ENABLE_LIST : ID_ENABLE_NAME);
}

constexpr DialogCommand<EnableDialog> kCommands[] = {
    {ID_ENABLE_REFRESH, BN_CLICKED, PressRefresh},
    {ID_ENABLE_BOOK, BN_CLICKED, PressBook},
    {ID_ENABLE_LIST, kListSelected, ShowAccount},
    {ID_ENABLE_LIST, kListReload, ListPeople},
    {ID_ENABLE_LIST, kListRename, FocusAccount},
    {ID_ENABLE_ADD, BN_CLICKED, PressAdd},
    {ID_ENABLE_ACCOUNT, EN_CHANGE, ChangeAccount},
    {ID_ENABLE_FOR_USER, BN_CLICKED, ChooseSender},
    {ID_ENABLE_FOR_PROFILE, BN_CLICKED, ChooseSender},
    {ID_ENABLE_EXPRESSION, BN_CLICKED, PressExpression},
    {IDOK, BN_CLICKED, Enable},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_ENABLE_FILTER, kGrowsAcross},
    {ID_ENABLE_REFRESH, kMovesAcross},
    {ID_ENABLE_BOOK, kMovesAcross},
    {ID_ENABLE_LIST, kGrowsBoth},
    {ID_ENABLE_COUNT, kMovesDown | kGrowsAcross},
    {ID_ENABLE_NAME_LABEL, kMovesDown},
    {ID_ENABLE_NAME, kMovesDown},
    {ID_ENABLE_ADD, kMovesDown},
    {ID_ENABLE_ACCOUNT_LABEL, kMovesDown},
    {ID_ENABLE_ACCOUNT, kMovesDown | kGrowsAcross},
    {ID_ENABLE_FOR_USER, kMovesDown},
    {ID_ENABLE_FOR_PROFILE, kMovesDown},
    {ID_ENABLE_USER_LABEL, kMovesDown},
    {ID_ENABLE_USER, kMovesDown},
    {ID_ENABLE_CHOOSE, kMovesDown},
    {ID_ENABLE_PROFILE_LABEL, kMovesDown},
    {ID_ENABLE_PROFILE, kMovesDown | kGrowsAcross},
    {ID_ENABLE_EXPRESSION, kMovesBoth},
    {ID_STATUS_LINE, kMovesDown | kGrowsAcross},
    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<EnableDialog> kPlan{HELP_ENABLE_MAIL_USERS, FillEnable, kCommands, kAnchors};

} // namespace

std::optional<std::string> EnableMailUsersByDialog(HWND owner, const std::string& serverUser) {
    EnableDialog context{.ServerUser = serverUser};
    if (OpenDialog("MailUserEnableBox", owner, MailUserEnableDlgBox, &context) != IDOK) return {};
    return context.Enabled;
}

INT_PTR CALLBACK MailUserEnableDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
