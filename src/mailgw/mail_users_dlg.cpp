#include "mailgw/mail_users_dlg.h"

#include "ctlfile/file_stamp.h"
#include "dialogs/list_view_dlg.h"
#include "mailgw/mail_alias_dlg.h"
#include "mailgw/mail_boxes_dlg.h"
#include "mailgw/mail_directory.h"
#include "mailgw/mail_enable_dlg.h"
#include "mailgw/mail_user_edit.h"
#include "mailgw/mail_user_rows.h"
#include "resources/ids.h"
#include "shell/server_files.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr int kActions[] = {ID_MAIL_USERS_ENABLE, ID_MAIL_USERS_EDIT, ID_MAIL_USERS_REPLACE, ID_MAIL_USERS_DISABLE};

// In the order of MailUserColumn.
constexpr ListColumn kColumns[] = {{"Mail user", 76}, {"Sends as", 40}, {"Server user", 48},
                                   {"Profile", 30},   {"Address", 77},  {"Remark", 104}};
static_assert(std::size(kColumns) == kMailUserColumns);
constexpr ListPlan kList{.List = ID_MAIL_USERS_LIST,
                         .Columns = kColumns,
                         .Filter = ID_MAIL_USERS_FILTER,
                         .Count = ID_MAIL_USERS_COUNT,
                         .DefaultButton = ID_MAIL_USERS_EDIT,
                         .Menu = kActions,
                         .IsSorted = false};

constexpr ServerFile kFiles[] = {ServerFile::MailList, ServerFile::UserList, ServerFile::MailUsers};

struct MailUsersDialog {
    std::string ServerUser;
    bool IsRead = true;
    FileStamp Stamps[std::size(kFiles)]{}; // of what is shown
    MailUserRows Rows{};
    ListView List{Rows, kList};
};

std::uintptr_t HandleOf(HWND window) { return reinterpret_cast<std::uintptr_t>(window); }

void EnableButtons(HWND dialog, MailUsersDialog& context) {
    const std::size_t selected = context.List.CountSelected();
    EnableControl(dialog, ID_MAIL_USERS_ENABLE, context.IsRead);
    for (const int button : {ID_MAIL_USERS_EDIT, ID_MAIL_USERS_REPLACE}) EnableControl(dialog, button, selected == 1);
    EnableControl(dialog, ID_MAIL_USERS_DISABLE, selected > 0);
}

// The entries of the list of what is shown: those of a server user only when the dialog was opened for one.
MailUserShow Chosen(HWND dialog, const MailUsersDialog& context) {
    const LRESULT entry = SendDlgItemMessageA(dialog, ID_MAIL_USERS_SHOW, CB_GETCURSEL, 0, 0);
    const bool hasUser = !context.ServerUser.empty();
    if (entry <= 0) return MailUserShow::All;
    if (entry == 1 && hasUser) return MailUserShow::OfServerUser;
    return entry == (hasUser ? 2 : 1) ? MailUserShow::Profiles : MailUserShow::Remarks;
}

enum class Reading { Before, Again };

void Fill(HWND dialog, MailUsersDialog& context, Reading reading) {
    context.List.Refill([&] {
        if (reading == Reading::Again) context.IsRead = context.Rows.Read();
        context.Rows.Show(Chosen(dialog, context), context.ServerUser);
        return context.IsRead;
    });
    SetText(dialog, ID_MAIL_USERS_TOTAL, context.IsRead ? context.Rows.CountText() : std::string());
    EnableButtons(dialog, context);
}

void ShowRows(HWND dialog, MailUsersDialog& context) { Fill(dialog, context, Reading::Before); }

void ListUsers(HWND dialog, MailUsersDialog& context) {
    const WaitCursor wait;
    for (std::size_t i = 0; i < std::size(kFiles); ++i) context.Stamps[i] = StampOf(PathOf(kFiles[i]));
    Fill(dialog, context, Reading::Again);
}

// Reads anew when a file is another one: this program or another has changed it.
void FollowFiles(HWND dialog, MailUsersDialog& context) {
    for (std::size_t i = 0; i < std::size(kFiles); ++i)
        if (!IsUnchanged(PathOf(kFiles[i]), context.Stamps[i])) return ListUsers(dialog, context);
}

void FillUsers(HWND dialog, MailUsersDialog& context) {
    std::vector<std::string> shows = {"All mail users", "Those of a profile", "Those with a remark"};
    if (!context.ServerUser.empty()) shows.insert(shows.begin() + 1, "Those who send as " + context.ServerUser);
    for (const std::string& show : shows)
        SendDlgItemMessageA(dialog, ID_MAIL_USERS_SHOW, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(show.c_str()));
    SendDlgItemMessageA(dialog, ID_MAIL_USERS_SHOW, CB_SETCURSEL, context.ServerUser.empty() ? 0 : 1, 0);
    context.List.Begin(dialog);
    ListUsers(dialog, context);
    FocusControl(dialog, context.Rows.Count() > 0 ? ID_MAIL_USERS_LIST : ID_MAIL_USERS_ENABLE);
}

std::optional<std::size_t> OnlyRow(const MailUsersDialog& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    return rows.size() == 1 ? std::optional(rows.front()) : std::nullopt;
}

// The first one of that e-mail name, if it is shown.
void SelectUser(MailUsersDialog& context, const std::string& name) {
    for (std::size_t row = 0; row < context.Rows.Count(); ++row)
        if (context.Rows.Text(row, kMailUserName) == name) return context.List.SelectName(context.Rows.Name(row));
}

void PressEnable(HWND dialog, MailUsersDialog& context) {
    if (!context.IsRead) return;
    const std::optional<std::string> name = EnableMailUsersByDialog(dialog, context.ServerUser);
    FollowFiles(dialog, context);
    if (name) SelectUser(context, *name);
}

// The record is read again: the list has not all of it.
void PressEdit(HWND dialog, MailUsersDialog& context) {
    FollowFiles(dialog, context);
    const auto row = OnlyRow(context);
    std::optional<MailUser> user;
    if (!row || !ReadListedMailUser(context.Rows.Number(*row), user) || !user) return;
    const std::optional<std::string> name = EditMailUserByDialog(dialog, *user);
    FollowFiles(dialog, context);
    if (name) SelectUser(context, *name);
}

void PressReplace(HWND dialog, MailUsersDialog& context) {
    FollowFiles(dialog, context);
    const auto row = OnlyRow(context);
    if (!row) return;
    const std::optional<std::string> name = ReplaceMailUserByDialog(dialog, context.Rows.User(*row));
    FollowFiles(dialog, context);
    if (name) SelectUser(context, *name);
}

void PressDisable(HWND dialog, MailUsersDialog& context) {
    FollowFiles(dialog, context);
    std::vector<ListedMailUser> users;
    for (const std::size_t row : context.List.Selected()) users.push_back(context.Rows.User(row));
    const WaitCursor wait;
    DisableMailUsers(users);
    FollowFiles(dialog, context);
}

void PressExpression(HWND dialog, MailUsersDialog&) { ChooseAccountExpression(dialog); }

void PressRefresh(HWND dialog, MailUsersDialog& context) {
    RemakeMailUserList(HandleOf(dialog));
    ListUsers(dialog, context);
}

void Leave(HWND dialog, MailUsersDialog&) {
    OfferToRemakeUserList(HandleOf(dialog));
    EndDialog(dialog, IDOK);
}

constexpr DialogCommand<MailUsersDialog> kCommands[] = {
    {ID_MAIL_USERS_SHOW, CBN_SELCHANGE, ShowRows},
    {ID_MAIL_USERS_LIST, kListSelected, EnableButtons},
    {ID_MAIL_USERS_LIST, kListOpen, PressEdit},
    {ID_MAIL_USERS_LIST, kListRename, PressReplace},
    {ID_MAIL_USERS_LIST, kListAdd, PressEnable},
    {ID_MAIL_USERS_LIST, kListDelete, PressDisable},
    {ID_MAIL_USERS_LIST, kListReload, ListUsers},
    {ID_MAIL_USERS_ENABLE, BN_CLICKED, PressEnable},
    {ID_MAIL_USERS_EDIT, BN_CLICKED, PressEdit},
    {ID_MAIL_USERS_REPLACE, BN_CLICKED, PressReplace},
    {ID_MAIL_USERS_DISABLE, BN_CLICKED, PressDisable},
    {ID_MAIL_USERS_EXPRESSION, BN_CLICKED, PressExpression},
    {ID_MAIL_USERS_REFRESH, BN_CLICKED, PressRefresh},
    {IDOK, BN_CLICKED, Leave},
    {IDCANCEL, BN_CLICKED, Leave},
};
constexpr Anchor kAnchors[] = {
    {ID_MAIL_USERS_FILTER, kStays},        {ID_MAIL_USERS_SHOW, kGrowsAcross},
    {ID_MAIL_USERS_LIST, kGrowsBoth},      {ID_MAIL_USERS_ENABLE, kMovesAcross},
    {ID_MAIL_USERS_EDIT, kMovesAcross},    {ID_MAIL_USERS_REPLACE, kMovesAcross},
    {ID_MAIL_USERS_DISABLE, kMovesAcross}, {ID_MAIL_USERS_EXPRESSION, kMovesAcross},
    {ID_MAIL_USERS_REFRESH, kMovesAcross}, {ID_MAIL_USERS_COUNT, kMovesDown | kGrowsAcross},
    {ID_MAIL_USERS_TOTAL, kMovesBoth},     {ID_STATUS_LINE, kMovesDown | kGrowsAcross},
    {ID_HELP_BUTTON, kMovesBoth},          {IDOK, kMovesBoth},
};
constexpr DialogPlan<MailUsersDialog> kPlan{HELP_MAIL_USERS, FillUsers, kCommands, kAnchors, FollowFiles};

} // namespace

void ConfigureMailUsers(HWND owner, const std::string& serverUser) {
    OfferUpgrade();
    MailUsersDialog context{.ServerUser = serverUser};
    OpenDialogOf(ServerFile::MailList, "EnumerateHostsBox", owner, EnumerateHostsDlgBox, &context);
}

INT_PTR CALLBACK EnumerateHostsDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
