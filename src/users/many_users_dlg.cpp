#include "users/many_users_dlg.h"

#include <algorithm>
#include <map>

#include "ctlfile/key_help.h"
#include "dialogs/fields_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "resources/ids.h"
#include "shell/row_table.h"
#include "users/many_users.h"
#include "users/user_entry.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr ListColumn kColumns[] = {{"Setting", 84}, {"At present", 150}, {"Change to", 90}};
constexpr int kMenu[] = {ID_MANY_SET, ID_MANY_LEAVE};
constexpr ListPlan kList{.List = ID_MANY_SETTINGS, .Columns = kColumns, .Menu = kMenu, .IsSorted = false};

struct ManyUsersDialog {
    const std::vector<std::string>& Names;
    std::vector<ValueSummary> Settings{};
    std::map<std::string_view, std::string> Changes{}; // by key
    RowTable Rows{};
    ListView List{Rows, kList};
    HWND Tip = nullptr; // of the box for the value
};

std::string_view SettingOf(const ManyUsersDialog& context, std::size_t row) {
    return context.Settings[row].Key->Field.Name();
}

void ShowSettings(ManyUsersDialog& context) {
    context.List.Refill([&] {
        context.Rows.Begin(std::size(kColumns));
        for (const ValueSummary& setting : context.Settings) {
            const auto change = context.Changes.find(setting.Key->Field.Name());
            context.Rows.Add(setting.Key->Field.Name());
            context.Rows.Add(setting.Text);
            context.Rows.Add(change == context.Changes.end() ? FillMessage(kLeftUnchanged) : change->second);
        }
        return true;
    });
}

void FillMany(HWND dialog, ManyUsersDialog& context) {
    SetWindowTextA(dialog, FormatText("Change %d users", context.Names.size()).c_str());
    constexpr std::size_t kMostNamed = 6;
    std::string names;
    for (std::size_t i = 0; i < std::min(context.Names.size(), kMostNamed); ++i)
        names.append(i == 0 ? "" : ", ").append(context.Names[i]);
    const std::size_t more = context.Names.size() - std::min(context.Names.size(), kMostNamed);
    SetText(dialog, ID_MANY_NAMES, more == 0 ? names : FillMessage(kAndOthers, names, more));
    context.List.Begin(dialog);
    ShowSettings(context);
    FocusControl(dialog, ID_MANY_SETTINGS);
}

void DescribeValue(HWND dialog, ManyUsersDialog& context, const RecordKey* key) {
    if (context.Tip != nullptr) DestroyWindow(context.Tip);
    context.Tip = nullptr;
    if (key == nullptr) return;
    const std::string help = TooltipOf(HelpOf(*key, RecordKind::User));
    context.Tip = AddTooltip(dialog, ID_MANY_VALUE, FormatText("%s: %s", key->Field.Name(), help));
}

// The values of the selected key, for the box below the list, and what it takes.
void OfferValues(HWND dialog, ManyUsersDialog& context) {
    SendDlgItemMessageA(dialog, ID_MANY_VALUE, CB_RESETCONTENT, 0, 0);
    const std::vector<std::size_t> rows = context.List.Selected();
    for (const int control : {ID_MANY_SET, ID_MANY_LEAVE}) EnableControl(dialog, control, !rows.empty());
    DescribeValue(dialog, context, rows.empty() ? nullptr : context.Settings[rows.front()].Key);
    if (rows.empty()) return;
    const RecordKey& key = *context.Settings[rows.front()].Key;
    for (const std::string_view word : OfferedWords(key.Field.Rule))
        SendDlgItemMessageA(dialog, ID_MANY_VALUE, CB_ADDSTRING, 0,
                            reinterpret_cast<LPARAM>(std::string(word).c_str()));
    SendDlgItemMessageA(dialog, ID_MANY_VALUE, CB_LIMITTEXT, key.Field.Rule.Limit, 0);
    const auto change = context.Changes.find(key.Field.Name());
    SetText(dialog, ID_MANY_VALUE, change == context.Changes.end() ? std::string() : change->second);
}

void SetValue(HWND dialog, ManyUsersDialog& context) {
    std::string value;
    if (!TakeText(dialog, ID_MANY_VALUE, value)) return;
    for (const std::size_t row : context.List.Selected()) {
        UserRecord scratch;
        if (const auto fault = EnterValue(scratch, RecordKind::User, SettingOf(context, row), value)) {
            ShowError("%s", *fault);
            return FocusControl(dialog, ID_MANY_VALUE);
        }
        context.Changes[SettingOf(context, row)] = value;
    }
    ShowSettings(context);
}

void LeaveValue(HWND dialog, ManyUsersDialog& context) {
    for (const std::size_t row : context.List.Selected()) context.Changes.erase(SettingOf(context, row));
    ShowSettings(context);
    OfferValues(dialog, context);
}

void TypeValue(HWND dialog, ManyUsersDialog&) { FocusControl(dialog, ID_MANY_VALUE); }

std::string TextOf(const ManyUsersDialog& context) {
    std::string text;
    for (const auto& [key, value] : context.Changes) text.append(key).append(": ").append(value).append("\n");
    return text;
}

std::string FaultsOf(const ManyUsersPlan& plan) {
    constexpr std::size_t kMostShown = 12;
    std::string text;
    for (std::size_t i = 0; i < std::min(plan.Faults.size(), kMostShown); ++i) text.append(plan.Faults[i]).append("\n");
    const std::size_t more = plan.Faults.size() - std::min(plan.Faults.size(), kMostShown);
    return more == 0 ? text : FillMessage(kAndOthers, text, more);
}

void TakeMany(HWND dialog, ManyUsersDialog& context) {
    // Enter in the value's box sets it.
    if (IsChild(GetDlgItem(dialog, ID_MANY_VALUE), GetFocus())) return SetValue(dialog, context);
    if (context.Changes.empty()) return EndWithOk(dialog, context);
    EnteredValues values;
    for (const auto& [key, value] : context.Changes) values.push_back({std::string(key), value});
    const WaitCursor wait;
    const auto plan = PlanManyUsers(context.Names, values);
    if (!plan) return;
    if (!plan->Faults.empty()) return ShowError("%s", FaultsOf(*plan));
    if (!AskQuestion(kChangeManyUsersNow, context.Names.size(), TextOf(context))) return;
    if (ChangeManyUsers(*plan)) return EndWithOk(dialog, context);
    if (auto again = SummariseUsers(context.Names)) context.Settings = std::move(*again);
    ShowSettings(context);
}

constexpr DialogCommand<ManyUsersDialog> kCommands[] = {
    {ID_MANY_SETTINGS, kListSelected, OfferValues},
    {ID_MANY_SETTINGS, kListOpen, TypeValue},
    {ID_MANY_SETTINGS, kListRename, TypeValue},
    {ID_MANY_SETTINGS, kListDelete, LeaveValue},
    {ID_MANY_SET, BN_CLICKED, SetValue},
    {ID_MANY_LEAVE, BN_CLICKED, LeaveValue},
    {IDOK, BN_CLICKED, TakeMany},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_MANY_SETTINGS, kGrowsBoth},
    {ID_MANY_VALUE, kMovesDown | kGrowsAcross},
    {ID_MANY_SET, kMovesBoth},
    {ID_MANY_LEAVE, kMovesBoth},
    {ID_MANY_NAMES, kMovesDown | kGrowsAcross},
    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<ManyUsersDialog> kPlan{
    HELP_MANY_USERS, FillMany, kCommands,
    kAnchors,        nullptr,  [](HWND, const ManyUsersDialog& context) { return !context.Changes.empty(); }};

} // namespace

void ChangeUsersByDialog(HWND owner, const std::vector<std::string>& names) {
    auto settings = SummariseUsers(names);
    if (!settings) return;
    ManyUsersDialog context{.Names = names, .Settings = std::move(*settings)};
    OpenDialog("ConfigManyUsersBox", owner, ConfigManyUsersDlgBox, &context);
}

INT_PTR CALLBACK ConfigManyUsersDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
