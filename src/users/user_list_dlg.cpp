#include "users/user_list_dlg.h"

#include "ctlfile/file_stamp.h"
#include "dialogs/csv_import_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "resources/ids.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "users/many_users_dlg.h"
#include "users/network_users_dlg.h"
#include "users/user_actions.h"
#include "users/user_details_dlg.h"
#include "users/user_export.h"
#include "users/user_import.h"
#include "users/user_messages.h"
#include "users/user_rows.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr int kActions[] = {ID_USERS_ADD,     ID_USERS_EDIT, ID_USERS_CLONE,  ID_USERS_DELETE, ID_USERS_WHERE_USED,
                            ID_USERS_NETWORK, ID_USERS_MAIL, ID_USERS_IMPORT, ID_USERS_EXPORT, ID_USERS_DEFAULTS};

// In the order of UserColumn and GroupColumn.
constexpr ListColumn kUserTitles[] = {{"Name", 44},   {"Full name", 84}, {"Group", 40},   {"Network", 46},
                                      {"E-mail", 72}, {"Rights", 56},    {"Printing", 44}};
constexpr ListColumn kGroupTitles[] = {{"Name", 48}, {"Full name", 130}, {"Members", 44, true}, {"Printing", 90}};
static_assert(std::size(kUserTitles) == kUserColumns && std::size(kGroupTitles) == kGroupColumns);

constexpr ListPlan PlanOf(std::span<const ListColumn> columns, const char* name) {
    return {.List = ID_USERS_LIST,
            .Columns = columns,
            .Filter = ID_USERS_FILTER,
            .Count = ID_USERS_COUNT,
            .DefaultButton = ID_USERS_EDIT,
            .Menu = kActions,
            .Name = name};
}
constexpr ListPlan kUserPlan = PlanOf(kUserTitles, "Users");
constexpr ListPlan kGroupPlan = PlanOf(kGroupTitles, "Groups");

struct UserListDialog {
    const DialogServices& Services;
    UserListKind Kind = UserListKind::Users;
    bool IsRead = true;
    FileStamp Stamp{};      // of the list as it is shown
    bool IsListing = false; // what the status line says of the last action stays
    RowTable Rows{};
    ListView List{Rows, kUserPlan};
};

RecordKind KindOf(const UserListDialog& context) {
    return context.Kind == UserListKind::Groups ? RecordKind::Group : RecordKind::User;
}

void EnableButtons(HWND dialog, UserListDialog& context) {
    const std::size_t selected = context.List.CountSelected();
    EnableControl(dialog, ID_USERS_ADD, context.IsRead);
    const bool listsGroups = context.Kind == UserListKind::Groups;
    EnableControl(dialog, ID_USERS_EDIT, selected == 1 || (selected > 1 && !listsGroups));
    for (const int button : {ID_USERS_CLONE, ID_USERS_WHERE_USED}) EnableControl(dialog, button, selected == 1);
    for (const int button : {ID_USERS_IMPORT, ID_USERS_EXPORT})
        EnableControl(dialog, button, context.Kind == UserListKind::Users && context.IsRead);
    EnableControl(dialog, ID_USERS_DELETE, selected > 0);
    EnableControl(dialog, ID_USERS_NETWORK, context.IsRead && context.Kind == UserListKind::Users);
    EnableControl(dialog, ID_USERS_MAIL, context.Services.OpenMailUsers != nullptr);
}

// A mail name is seen in the list in part; the status line has it whole.
void ShowMailName(const UserListDialog& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    if (rows.size() != 1 || context.Kind == UserListKind::Groups) return SetStatusLine("", 1);
    const std::string_view mail = context.Rows.Text(rows.front(), kUserMail);
    if (mail.empty()) return SetStatusLine("", 1);
    ShowStatus(kEmailName, mail);
}

void SelectRows(HWND dialog, UserListDialog& context) {
    EnableButtons(dialog, context);
    if (!context.IsListing) ShowMailName(context);
}

void ListUsers(HWND dialog, UserListDialog& context) {
    const WaitCursor wait;
    context.Stamp = StampOf(PathOf(ServerFile::UserList));
    context.IsListing = true;
    context.List.Refill([&] { return context.IsRead = ReadUserRows(context.Kind, context.Rows); });
    context.IsListing = false;
    EnableButtons(dialog, context);
}

// Reads the list anew when it is another one: this program or another has changed it.
void FollowList(HWND dialog, UserListDialog& context) {
    if (!IsUnchanged(PathOf(ServerFile::UserList), context.Stamp)) ListUsers(dialog, context);
}

UserListKind CheckedKind(HWND dialog) {
    if (IsDlgButtonChecked(dialog, ID_USERS_SHOW_GROUPS) == BST_CHECKED) return UserListKind::Groups;
    if (IsDlgButtonChecked(dialog, ID_USERS_SHOW_PROFILES) == BST_CHECKED) return UserListKind::Profiles;
    return UserListKind::Users;
}

void ChooseKind(HWND dialog, UserListDialog& context) {
    const bool hadGroups = context.Kind == UserListKind::Groups;
    context.Kind = CheckedKind(dialog);
    const bool hasGroups = context.Kind == UserListKind::Groups;
    if (hadGroups != hasGroups) context.List.Change(hasGroups ? kGroupPlan : kUserPlan);
    ListUsers(dialog, context);
}

void FillUsers(HWND dialog, UserListDialog& context) {
    CheckDlgButton(dialog, ID_USERS_SHOW_USERS, BST_CHECKED);
    context.List.Begin(dialog);
    ListUsers(dialog, context);
    FocusControl(dialog, context.Rows.Count() > 0 ? ID_USERS_LIST : ID_USERS_ADD);
    // A new server, whose users come from the network, begins with these.
    if (Switches().EnableAutoAdd && context.IsRead && context.Rows.Count() == 0)
        PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(ID_USERS_NETWORK, BN_CLICKED), 0);
}

void PressNetwork(HWND dialog, UserListDialog& context) {
    if (AddNetworkUsersByDialog(dialog)) ListUsers(dialog, context);
}

void ShowNew(HWND dialog, UserListDialog& context, const std::optional<std::string>& name) {
    FollowList(dialog, context);
    if (name) context.List.SelectName(*name);
}

void PressAdd(HWND dialog, UserListDialog& context) {
    if (!context.IsRead) return;
    ShowNew(dialog, context,
            AddUserByDialog(dialog, {KindOf(context), context.Kind == UserListKind::Profiles, {}, &context.Services}));
}

void PressClone(HWND dialog, UserListDialog& context) {
    const std::vector<std::string> names = context.List.SelectedNames();
    if (names.size() != 1) return;
    ShowNew(dialog, context, AddUserByDialog(dialog, {KindOf(context), false, names.front(), &context.Services}));
}

void PressEdit(HWND dialog, UserListDialog& context) {
    const std::vector<std::string> names = context.List.SelectedNames();
    if (names.size() == 1) EditUserByDialog(dialog, KindOf(context), names.front(), &context.Services);
    if (names.size() > 1 && context.Kind != UserListKind::Groups) ChangeUsersByDialog(dialog, names);
    FollowList(dialog, context);
}

NamedThing ThingOf(const UserListDialog& context) {
    return context.Kind == UserListKind::Groups ? NamedThing::UserGroup : NamedThing::User;
}

void PressDelete(HWND dialog, UserListDialog& context) {
    const std::vector<std::string> names = context.List.SelectedNames();
    if (names.empty()) return;
    context.Services.Delete(dialog, ThingOf(context), names);
    FollowList(dialog, context);
}

void PressImport(HWND dialog, UserListDialog& context) {
    UserImport import;
    if (ImportByDialog(dialog, import)) FollowList(dialog, context);
}

// What the filter shows.
void PressExport(HWND dialog, UserListDialog& context) {
    std::vector<std::string> names;
    const RowOrder& order = context.List.Order();
    for (std::size_t place = 0; place < order.Shown(); ++place)
        names.emplace_back(context.Rows.Text(order.RowAt(place), kUserName));
    const WaitCursor wait;
    if (const auto text = UsersAsCsv(names)) ExportByDialog(dialog, *text);
}

void PressWhereUsed(HWND dialog, UserListDialog& context) {
    const std::vector<std::string> names = context.List.SelectedNames();
    if (names.size() == 1) context.Services.ShowUses(dialog, ThingOf(context), names.front());
}

// Of the one user who is selected, or all.
void PressMail(HWND dialog, UserListDialog& context) {
    const std::vector<std::string> names = context.List.SelectedNames();
    const bool isOne = names.size() == 1 && context.Kind != UserListKind::Groups;
    context.Services.OpenMailUsers(dialog, isOne ? names.front() : std::string());
    FollowList(dialog, context);
}

void PressDefaults(HWND dialog, UserListDialog& context) {
    EditUserByDialog(dialog, KindOf(context), std::nullopt, &context.Services);
    FollowList(dialog, context);
}

constexpr DialogCommand<UserListDialog> kCommands[] = {
    {ID_USERS_SHOW_USERS, BN_CLICKED, ChooseKind},
    {ID_USERS_SHOW_GROUPS, BN_CLICKED, ChooseKind},
    {ID_USERS_SHOW_PROFILES, BN_CLICKED, ChooseKind},
    {ID_USERS_LIST, kListSelected, SelectRows},
    {ID_USERS_LIST, kListOpen, PressEdit},
    {ID_USERS_LIST, kListRename, PressEdit},
    {ID_USERS_LIST, kListAdd, PressAdd},
    {ID_USERS_LIST, kListDelete, PressDelete},
    {ID_USERS_LIST, kListReload, ListUsers},
    {ID_USERS_ADD, BN_CLICKED, PressAdd},
    {ID_USERS_IMPORT, BN_CLICKED, PressImport},
    {ID_USERS_EXPORT, BN_CLICKED, PressExport},
    {ID_USERS_EDIT, BN_CLICKED, PressEdit},
    {ID_USERS_CLONE, BN_CLICKED, PressClone},
    {ID_USERS_DELETE, BN_CLICKED, PressDelete},
    {ID_USERS_NETWORK, BN_CLICKED, PressNetwork},
    {ID_USERS_WHERE_USED, BN_CLICKED, PressWhereUsed},
    {ID_USERS_MAIL, BN_CLICKED, PressMail},
    {ID_USERS_DEFAULTS, BN_CLICKED, PressDefaults},
    {IDOK, BN_CLICKED, EndWithOk},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_USERS_LIST, kGrowsBoth},
    {ID_USERS_COUNT, kMovesDown | kGrowsAcross},
    {ID_STATUS_LINE, kMovesDown | kGrowsAcross},
    {ID_USERS_ADD, kMovesAcross},
    {ID_USERS_EDIT, kMovesAcross},
    {ID_USERS_CLONE, kMovesAcross},
    {ID_USERS_DELETE, kMovesAcross},
    {ID_USERS_WHERE_USED, kMovesAcross},
    {ID_USERS_NETWORK, kMovesAcross},
    {ID_USERS_MAIL, kMovesAcross},
    {ID_USERS_IMPORT, kMovesAcross},
    {ID_USERS_EXPORT, kMovesAcross},
    {ID_USERS_DEFAULTS, kMovesAcross},
    {ID_HELP_BUTTON, kMovesBoth},
    {IDOK, kMovesBoth},
};
constexpr DialogPlan<UserListDialog> kPlan{HELP_USERS, FillUsers, kCommands, kAnchors, FollowList};

} // namespace

void ConfigureUsers(HWND owner, const DialogServices& services) {
    UserListDialog context{.Services = services};
    OpenDialogOf(ServerFile::UserList, "EnumerateUsersBox", owner, EnumerateUsersDlgBox, &context);
}

INT_PTR CALLBACK EnumerateUsersDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
