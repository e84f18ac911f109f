#include "users/user_details_dlg.h"

#include "platform/ascii.h"
#include "resources/ids.h"
#include "users/many_users.h"
#include "users/user_actions.h"
#include "users/user_dialog_dlg.h"
#include "users/user_merge.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

bool IsGroup(const UserDialog& context) { return context.Entry.Kind() == RecordKind::Group; }

bool IsDefaultRecord(const UserDialog& context) {
    return !context.Entry.IsNew() && IsDefaultName(context.Entry.Name());
}

const char* TitleOf(const UserDialog& context) {
    if (context.Entry.IsNew()) {
        if (IsGroup(context)) return "Add new user group";
        return context.IsProfile ? "Add new mail user profile" : "Add new user";
    }
    if (IsDefaultRecord(context)) return IsGroup(context) ? "Brivane default user group" : "Brivane default user";
    return IsGroup(context) ? "Brivane user group details" : "Brivane user details";
}

void FillDetails(HWND dialog, UserDialog& context) {
    std::string title = TitleOf(context);
    if (!context.Entry.IsNew() && !IsDefaultRecord(context)) title += " - " + context.Entry.Name();
    SetWindowTextA(dialog, title.c_str());
    context.Pages.Begin(dialog, ID_USER_PAGES, PagesOf(context));
    if (IsDefaultRecord(context) && !context.Entry.Before().Fullname.IsEmpty())
        SetText(dialog, ID_USER_HINT, FillMessage(kDefaultFullnameGoes));
    const bool beginsWithFullname = !context.Entry.IsNew() && !IsDefaultRecord(context); // the name stays as it is
    if (beginsWithFullname) return context.Pages.Show(0, IsGroup(context) ? ID_GROUP_FULLNAME : ID_USER_FULLNAME);
    context.Pages.FocusFirst();
}

// The page whose controls have the key.
const char* PageOfKey(const UserDialog& context, std::string_view key) {
    if (key == "SendTime:") return "UserTimesBox";
    if (key == "Dial:") return "UserDialBox";
    if (key.starts_with("Print")) return "UserPrintBox";
    if (key.starts_with("Mail")) return "UserMailBox";
    const bool isGeneral = key.ends_with("name:") || key == "Group:" || key == "Netware:" || key == "LanManager:";
    if (IsGroup(context)) return "GroupGeneralBox";
    return isGeneral ? "UserGeneralBox" : "UserPermissionsBox";
}

// Whether the record can be written so; with a fault, its page comes up after the message.
bool CheckRecord(UserDialog& context) {
    if (const auto fault = context.Entry.FaultOfWhole()) {
        ShowError("%s", fault->Text);
        context.Pages.ShowFault(PageOfKey(context, fault->Key->Field.Key), 0);
        return false;
    }
    UserList list;
    if (!list) return false;
    const RecordEntry& entry = context.Entry;
    if (entry.IsNew() && !CheckNewName(list, entry.Name(), entry.Kind())) {
        const bool isGroup = IsGroup(context);
        context.Pages.Show(0, isGroup ? ID_GROUP_NAME : ID_USER_NAME);
        return false;
    }
    const bool isGroupAsBefore = !entry.IsNew() && entry.After().Group == entry.Before().Group;
    if (IsGroup(context) || isGroupAsBefore || CheckGroup(list, entry.After())) return true;
    context.Pages.ShowFault("UserGeneralBox", ID_USER_GROUP);
    return false;
}

bool SaveRecord(const UserDialog& context) {
    const RecordEntry& entry = context.Entry;
    if (entry.IsNew()) return AddUser(entry.Name(), entry.After(), entry.Kind());
    if (entry.After() == entry.Before()) return true;
    const std::optional<RecordEntry> onTop = OnTopOfTheList(entry);
    return onTop && UpdateUser(*onTop);
}

bool SaveMembers(const UserDialog& context) {
    if (context.NewMembers.empty() && context.GoneMembers.empty()) return true;
    return ChangeMembers(context.Entry.Name(), context.NewMembers, context.GoneMembers);
}

void TakeDetails(HWND dialog, UserDialog& context) {
    if (!context.Pages.TakeAll() || !CheckRecord(context)) return;
    const WaitCursor wait;
    if (SaveRecord(context) && SaveMembers(context)) EndDialog(dialog, IDOK);
}

bool IsChanged(HWND, const UserDialog& context) {
    return context.Pages.IsEdited() || !context.NewMembers.empty() || !context.GoneMembers.empty();
}

constexpr DialogCommand<UserDialog> kCommands[] = {{IDOK, BN_CLICKED, TakeDetails},
                                                   {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<UserDialog> kPlan{HELP_USER, FillDetails, kCommands, {}, nullptr, IsChanged};

bool RunDetails(HWND owner, UserDialog& context) {
    return OpenDialog("ConfigUsersBox", owner, ConfigUsersDlgBox, &context) == IDOK;
}

std::optional<StoredRecord> ReadDefault(RecordKind kind) {
    for (int turn = 0; turn < 2; ++turn) {
        std::optional<StoredRecord> stored;
        {
            UserList list;
            stored = list ? list.ReadStored(std::nullopt, kind) : std::nullopt;
        }
        if (!stored || !stored->Name.empty()) return stored;
        if (turn > 0 || !AskQuestion(kMakeDefaultRecord) || !AddDefaultRecord(kind)) return std::nullopt;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> AddUserByDialog(HWND owner, const NewUser& what) {
    auto beginning = BeginningOf(what.Kind, what.Like);
    if (!beginning) return std::nullopt;
    UserDialog context(RecordEntry::OfNew(what.Kind, "", std::move(*beginning)));
    context.IsProfile = what.IsProfile;
    context.Services = what.Services;
    if (what.IsProfile) {
        context.Entry.Enter("MailGateway", "YES");
        context.Entry.Enter("MailName", "*");
    }
    if (!RunDetails(owner, context)) return std::nullopt;
    return context.Entry.Name();
}

void EditUserByDialog(HWND owner, RecordKind kind, const std::optional<std::string>& name,
                      const DialogServices* services) {
    std::optional<StoredRecord> stored;
    if (name) {
        UserList list;
        if (list) stored = list.ReadStored(*name, kind);
    } else {
        stored = ReadDefault(kind);
    }
    if (!stored) return;
    UserDialog context(RecordEntry(kind, std::move(*stored)));
    context.Services = services;
    RunDetails(owner, context);
}

INT_PTR CALLBACK ConfigUsersDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
