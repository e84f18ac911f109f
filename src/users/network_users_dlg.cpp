#include "users/network_users_dlg.h"

#include "dialogs/list_view_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "dialogs/progress_dlg.h"
#include "platform/ascii.h"
#include "resources/ids.h"
#include "shell/startup.h"
#include "users/network_accounts.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr const char* kThisComputer = "This computer";
constexpr const char* kDomain = "Domain ";
constexpr int kFromLimit = 100;

// In the order of NetworkColumn.
constexpr ListColumn kColumns[] = {{"Network name", 84}, {"Full name", 106}, {"Fax name", 46}, {"State", 186}};
static_assert(std::size(kColumns) == kAccountColumns);
constexpr ListPlan kList{.List = ID_NETWORK_LIST,
                         .Columns = kColumns,
                         .Filter = ID_NETWORK_FILTER,
                         .Count = ID_NETWORK_COUNT,
                         .HasTicks = true};

struct NetworkDialog {
    std::vector<platform::NetworkDomain> Domains{};
    NetworkAccounts Accounts{};
    ListView List{Accounts, kList};
    NameField Group{};
    NameField Like{};
    std::optional<std::size_t> Named{}; // the row whose name is in the field
    bool TicksAll = false;              // what is read next
    bool HasAdded = false;
};

std::string WordsOf(const platform::NetworkDomain& domain) {
    return domain.Name.empty() ? domain.Controller : kDomain + domain.Name;
}

// The computer that the words stand for, or name; empty: this one.
std::string ComputerOf(const NetworkDialog& context, const std::string& words) {
    if (EqualFolded(words, kThisComputer)) return {};
    for (const platform::NetworkDomain& domain : context.Domains)
        if (EqualFolded(words, WordsOf(domain))) return domain.Controller;
    return words;
}

bool IsTicked(HWND dialog, int control) { return IsDlgButtonChecked(dialog, control) == BST_CHECKED; }

// The list shows what it had until all are read: it is drawn meanwhile.
bool ReadAccounts(HWND dialog, NetworkDialog& context, const std::string& computer) {
    ListedNames listed;
    if (!ReadListedNames(listed)) return false;
    NetworkAccounts accounts;
    accounts.Begin(std::move(listed), IsTicked(dialog, ID_NETWORK_UNLISTED));
    const std::string from = GetText(dialog, ID_NETWORK_FROM);
    bool isRead = false;
    {
        ProgressBox progress(dialog, 0);
        isRead = ReadNetworkAccounts(computer, accounts, [&](std::size_t read) {
            return progress.Advance(0, FillMessage(kNetworkUsersRead, read), from);
        });
    }
    if (std::exchange(context.TicksAll, false)) accounts.TickAll();
    context.Accounts = std::move(accounts);
    return isRead;
}

void ReadUsers(HWND dialog, NetworkDialog& context) {
    std::string words;
    if (!TakeText(dialog, ID_NETWORK_FROM, words)) return;
    const WaitCursor wait;
    context.Named.reset();
    context.List.Refill([&] { return ReadAccounts(dialog, context, ComputerOf(context, words)); });
    FocusControl(dialog, context.Accounts.Count() > 0 ? ID_NETWORK_LIST : ID_NETWORK_FROM);
}

// The name of the row that is selected alone and ticked.
void ShowName(HWND dialog, NetworkDialog& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    const bool hasName = rows.size() == 1 && context.Accounts.IsTicked(rows.front());
    context.Named.reset();
    SetText(dialog, ID_NETWORK_NAME,
            hasName ? std::string(context.Accounts.Text(rows.front(), kAccountUser)) : std::string());
    EnableControl(dialog, ID_NETWORK_NAME, hasName);
    if (hasName) context.Named = rows.front();
}

void ChangeName(HWND dialog, NetworkDialog& context) {
    if (!context.Named) return;
    context.Accounts.SetName(*context.Named, UpperText(TrimBlanks(GetText(dialog, ID_NETWORK_NAME))));
    context.List.ShowChanged();
}

void TickAllShown(HWND dialog, NetworkDialog& context) {
    const RowOrder& order = context.List.Order();
    for (std::size_t place = 0; place < order.Shown(); ++place) context.Accounts.Tick(order.RowAt(place), true);
    context.List.ShowChanged();
    ShowName(dialog, context);
}

void UntickAll(HWND dialog, NetworkDialog& context) {
    for (std::size_t row = 0; row < context.Accounts.Count(); ++row) context.Accounts.Tick(row, false);
    context.List.ShowChanged();
    ShowName(dialog, context);
}

void ChooseRows(HWND dialog, NetworkDialog& context) {
    context.Named.reset();
    context.List.Refill([&] {
        context.Accounts.ShowUnlistedOnly(IsTicked(dialog, ID_NETWORK_UNLISTED));
        return true;
    });
}

// Brings what is wrong into view, with the focus.
void ShowFault(HWND dialog, NetworkDialog& context, const NetworkFault& fault) {
    using Field = NetworkFault::Field;
    if (fault.Where == Field::Group) return FocusControl(dialog, ID_NETWORK_GROUP);
    if (fault.Where == Field::Like) return FocusControl(dialog, ID_NETWORK_LIKE);
    if (fault.Where == Field::List) return FocusControl(dialog, ID_NETWORK_LIST);
    if (const auto row = context.Accounts.RowOfTicked(fault.Choice))
        context.List.SelectName(std::string(context.Accounts.Text(*row, kAccountName)));
    FocusControl(dialog, context.Named ? ID_NETWORK_NAME : ID_NETWORK_LIST);
}

bool AddPlanned(HWND dialog, const std::vector<NamedRecord>& added) {
    ProgressBox progress(dialog, static_cast<int>(added.size()));
    return AddNetworkUsers(added, [&](std::size_t done) {
               return progress.Advance(static_cast<int>(done), FillMessage(kAddingUsers, done + 1, added.size()),
                                       added[done].Record.Fullname.String());
           }) > 0;
}

void AddTicked(HWND dialog, NetworkDialog& context) {
    if (IsChild(GetDlgItem(dialog, ID_NETWORK_FROM), GetFocus())) return ReadUsers(dialog, context); // by Enter
    std::string group;
    std::string like;
    if (!context.Group.Take(group) || !context.Like.Take(like)) return;
    std::vector<NamedRecord> added;
    if (const auto fault = PlanNetworkUsers(context.Accounts.Ticked(), group, like, added))
        return ShowFault(dialog, context, *fault);
    const WaitCursor wait;
    context.HasAdded = AddPlanned(dialog, added) || context.HasAdded;
    ListedNames listed;
    context.Named.reset();
    context.List.Refill([&] {
        if (!ReadListedNames(listed)) return false;
        context.Accounts.Relist(std::move(listed));
        return true;
    });
    FocusControl(dialog, ID_NETWORK_LIST);
}

void FillNetwork(HWND dialog, NetworkDialog& context) {
    const WaitCursor wait;
    context.Domains = platform::TheNetworkUsers().Domains();
    SendDlgItemMessageA(dialog, ID_NETWORK_FROM, CB_LIMITTEXT, kFromLimit, 0);
    const auto offer = [&](const std::string& words) {
        SendDlgItemMessageA(dialog, ID_NETWORK_FROM, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(words.c_str()));
    };
    for (const platform::NetworkDomain& domain : context.Domains) offer(WordsOf(domain));
    offer(kThisComputer);
    SendDlgItemMessageA(dialog, ID_NETWORK_FROM, CB_SETCURSEL, 0, 0);
    CheckDlgButton(dialog, ID_NETWORK_UNLISTED, BST_CHECKED);
    SendDlgItemMessageA(dialog, ID_NETWORK_NAME, EM_LIMITTEXT, RecordName::kLimit, 0);
    context.Group.Begin(dialog, ID_NETWORK_GROUP, 0, kGroupNames, FillMessage(kNoGroupWords));
    context.Group.Put({});
    context.Like.Begin(dialog, ID_NETWORK_LIKE, 0, kUserNames, FillMessage(kAsDefaultUser));
    context.Like.Put({});
    context.TicksAll = Switches().EnableAutoAdd;
    context.List.OnTick([&context](std::size_t row, bool ticked) { context.Accounts.Tick(row, ticked); });
    context.List.Begin(dialog);
    EnableControl(dialog, ID_NETWORK_NAME, false);
    // The accounts are read when the dialog is there.
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(ID_NETWORK_READ, BN_CLICKED), 0);
}

constexpr DialogCommand<NetworkDialog> kCommands[] = {
    {ID_NETWORK_READ, BN_CLICKED, ReadUsers},       {ID_NETWORK_LIST, kListSelected, ShowName},
    {ID_NETWORK_LIST, kListReload, ReadUsers},      {ID_NETWORK_TICK_ALL, BN_CLICKED, TickAllShown},
    {ID_NETWORK_UNTICK_ALL, BN_CLICKED, UntickAll}, {ID_NETWORK_NAME, EN_CHANGE, ChangeName},
    {ID_NETWORK_UNLISTED, BN_CLICKED, ChooseRows},  {IDOK, BN_CLICKED, AddTicked},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_NETWORK_FILTER, kGrowsAcross},
    {ID_NETWORK_LIST, kGrowsBoth},
    {ID_NETWORK_COUNT, kMovesDown | kGrowsAcross},
    {ID_NETWORK_TICK_ALL, kMovesBoth},
    {ID_NETWORK_UNTICK_ALL, kMovesBoth},
    {ID_NETWORK_NAME_LABEL, kMovesDown},
    {ID_NETWORK_GROUP_LABEL, kMovesDown},
    {ID_NETWORK_LIKE_LABEL, kMovesDown},
    {ID_NETWORK_NAME, kMovesDown},
    {ID_NETWORK_GROUP, kMovesDown},
    {ID_NETWORK_LIKE, kMovesDown | kGrowsAcross},
    {ID_STATUS_LINE, kMovesDown | kGrowsAcross},
    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<NetworkDialog> kPlan{HELP_NETWORK_USERS, FillNetwork, kCommands, kAnchors};

} // namespace

bool AddNetworkUsersByDialog(HWND owner) {
    NetworkDialog context;
    OpenDialog("AddNetworkUsersBox", owner, AddNetworkUsersDlgBox, &context);
    return context.HasAdded;
}

INT_PTR CALLBACK AddNetworkUsersDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
