// The first page of a group's details: its name and its members.
#include "platform/ascii.h"
#include "resources/ids.h"
#include "users/user_dialog_dlg.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr ListColumn kColumns[] = {{"Name", 60}, {"Full name", 170}};
constexpr ListPlan kList{.List = ID_GROUP_MEMBERS, .Columns = kColumns};
constexpr FieldControl kFields[] = {{ID_GROUP_FULLNAME, "Fullname"}};
constexpr FieldControl kTips[] = {{ID_GROUP_NAME, "Name"}, {ID_GROUP_FULLNAME, "Fullname"}};

bool Has(const std::vector<std::string>& names, std::string_view name) {
    return std::ranges::any_of(names, [&](const std::string& one) { return EqualFolded(one, name); });
}

// The members of the list, with those that are to come and without those that are to go.
bool ReadMembers(UserDialog& context) {
    context.Members.Begin(std::size(kColumns));
    UserListView view;
    view.Format = UserListFormat::NameAndFullname;
    view.WithGroup = true;
    const std::string& group = context.Entry.Name();
    return VisitUserRows(view, [&](const UserRow& row) {
        const bool isMember = !group.empty() && EqualFolded(row.Group, group) && !Has(context.GoneMembers, row.Name);
        if (!isMember && !Has(context.NewMembers, row.Name)) return;
        context.Members.Add(row.Name);
        context.Members.Add(row.Fullname);
    });
}

void ListMembers(UserDialog& context) {
    const WaitCursor wait;
    context.MemberList->Refill([&] { return ReadMembers(context); });
}

void FillGroup(HWND page, UserDialog& context) {
    SendDlgItemMessageA(page, ID_GROUP_NAME, EM_LIMITTEXT, RecordName::kLimit, 0);
    SetText(page, ID_GROUP_NAME, context.Entry.Name());
    if (!context.Entry.IsNew()) SendDlgItemMessageA(page, ID_GROUP_NAME, EM_SETREADONLY, TRUE, 0);
    ShowFields(page, kFields, context.Fields);
    AddTooltips(page, kTips, context.Fields);
    context.MemberList = std::make_unique<ListView>(context.Members, kList);
    context.MemberList->Begin(page);
    ListMembers(context);
    EnableControl(page, ID_GROUP_REMOVE, context.MemberList->CountSelected() > 0);
}

int TakeGroup(HWND page, UserDialog& context) {
    if (context.Entry.IsNew()) {
        std::string name;
        if (!TakeText(page, ID_GROUP_NAME, name)) return ID_GROUP_NAME;
        context.Entry.SetName(name);
    }
    return TakeFields(page, kFields, context.Fields);
}

void AddMembers(HWND page, UserDialog& context) {
    for (const std::string& name : ChooseNames(page, kUserNames, true)) {
        std::erase_if(context.GoneMembers, [&](const std::string& one) { return EqualFolded(one, name); });
        context.NewMembers.push_back(name);
    }
    ListMembers(context);
}

void RemoveMembers(HWND, UserDialog& context) {
    for (const std::string& name : context.MemberList->SelectedNames()) {
        std::erase_if(context.NewMembers, [&](const std::string& one) { return EqualFolded(one, name); });
        context.GoneMembers.push_back(name);
    }
    ListMembers(context);
}

void EnableRemove(HWND page, UserDialog& context) {
    EnableControl(page, ID_GROUP_REMOVE, context.MemberList->CountSelected() > 0);
}

constexpr DialogCommand<UserDialog> kCommands[] = {
    {ID_GROUP_ADD, BN_CLICKED, AddMembers},          {ID_GROUP_REMOVE, BN_CLICKED, RemoveMembers},
    {ID_GROUP_MEMBERS, kListAdd, AddMembers},        {ID_GROUP_MEMBERS, kListDelete, RemoveMembers},
    {ID_GROUP_MEMBERS, kListSelected, EnableRemove},
};
constexpr DialogPlan<UserDialog> kPlan{HELP_GROUP_GENERAL, FillGroup, kCommands};

} // namespace

Page GroupGeneralPage() { return {"GroupGeneralBox", "General", GroupGeneralDlgBox, TakePage<UserDialog, TakeGroup>}; }

INT_PTR CALLBACK GroupGeneralDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {page, message, wParam, lParam});
}

} // namespace bv
