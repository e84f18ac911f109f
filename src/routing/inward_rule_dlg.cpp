#include "routing/inward_rule_dlg.h"

#include "dialogs/name_field_dlg.h"
#include "resources/ids.h"
#include "routing/inward_actions.h"
#include "routing/routing_edit.h"

namespace bv {
namespace {

constexpr int kTextLimit = 260; // what with the rest of a line can be kept is seen on OK

// What the boxes of all kinds have: the rule as it was, and as it is entered.
template <class Rule>
struct RuleBox {
    const InwardRules* Rules;
    std::optional<Rule> Before;
    Rule Entered = Before.value_or(Rule());
    NameField Key{}; // of a sender's rule the addressee
    NameField User{};
};

struct SenderBox : RuleBox<SenderIdRule> {
    std::string Filled = Entered.Organisation; // the organisation that nobody has typed
};
using SubAddressBox = RuleBox<SubAddressRule>;
using ForwardBox = RuleBox<ForwardRule>;

struct FieldOfRule {
    RuleField Field;
    int Control;
};

// Ends the box when the rule is saved; else the field that is wrong gets the focus.
void EndSaved(HWND dialog, RuleField wrong, std::span<const FieldOfRule> fields) {
    if (wrong == RuleField::Nothing) {
        EndDialog(dialog, IDOK);
        return;
    }
    for (const auto& [field, control] : fields)
        if (field == wrong) FocusControl(dialog, control);
}

void LimitText(HWND dialog, int control, const std::string& text) {
    SendDlgItemMessageA(dialog, control, EM_LIMITTEXT, kTextLimit, 0);
    SetText(dialog, control, text);
}

template <class Rule>
void SetTitle(HWND dialog, const RuleBox<Rule>& context, const char* newTitle) {
    if (!context.Before) SetWindowTextA(dialog, newTitle);
}

void ShowFiled(HWND dialog, const SenderBox& context) {
    const int own = context.Before ? context.Before->Record : kNewRecord;
    SetText(dialog, ID_SENDER_FILED, FiledText(context.Rules->Senders, GetText(dialog, ID_SENDER_ID), own));
}

// A sender that is there brings its organisation along, unless one has been typed.
void TypeSender(HWND dialog, SenderBox& context) {
    ShowFiled(dialog, context);
    if (GetText(dialog, ID_SENDER_ORGANISATION) != context.Filled) return;
    const auto found = OrganisationOf(context.Rules->Senders, GetText(dialog, ID_SENDER_ID));
    const std::string own = context.Before ? context.Before->Organisation : std::string();
    context.Filled = found.value_or(own);
    SetText(dialog, ID_SENDER_ORGANISATION, context.Filled);
}

void FillSender(HWND dialog, SenderBox& context) {
    SetTitle(dialog, context, "Add new sender rule");
    LimitText(dialog, ID_SENDER_ID, context.Entered.Sender);
    LimitText(dialog, ID_SENDER_ORGANISATION, context.Entered.Organisation);
    ShowFiled(dialog, context);
    context.Key.Begin(dialog, ID_SENDER_ADDRESSEE, ID_SENDER_CHOOSE_ADDRESSEE, kUserAndGroupNames, "");
    context.Key.Offer(SpecialWords(*context.Rules));
    context.Key.Put(context.Before ? context.Entered.Addressee : std::string(kUnaddressed));
    context.User.Begin(dialog, ID_SENDER_USER, ID_SENDER_CHOOSE_USER, kUserAndGroupNames, "");
    context.User.Put(context.Entered.User);
    FocusControl(dialog, ID_SENDER_ID);
}

void TakeSender(HWND dialog, SenderBox& context) {
    constexpr FieldOfRule kFields[] = {{RuleField::Key, ID_SENDER_ID},
                                       {RuleField::Organisation, ID_SENDER_ORGANISATION},
                                       {RuleField::Addressee, ID_SENDER_ADDRESSEE},
                                       {RuleField::User, ID_SENDER_USER}};
    SenderIdRule& rule = context.Entered;
    if (!TakeText(dialog, ID_SENDER_ID, rule.Sender) || !TakeText(dialog, ID_SENDER_ORGANISATION, rule.Organisation) ||
        !context.Key.Take(rule.Addressee) || !context.User.Take(rule.User))
        return;
    const WaitCursor wait;
    EndSaved(dialog, SaveSenderRule(context.Before, rule, Replacing::Asked), kFields);
}

void FillSubAddress(HWND dialog, SubAddressBox& context) {
    SetTitle(dialog, context, "Add new sub-address rule");
    LimitText(dialog, ID_SUB_ADDRESS, context.Entered.SubAddress);
    context.User.Begin(dialog, ID_SUB_ADDRESS_USER, ID_SUB_ADDRESS_CHOOSE, kUserAndGroupNames, "");
    context.User.Put(context.Entered.User);
    FocusControl(dialog, ID_SUB_ADDRESS);
}

void TakeSubAddress(HWND dialog, SubAddressBox& context) {
    constexpr FieldOfRule kFields[] = {{RuleField::Key, ID_SUB_ADDRESS}, {RuleField::User, ID_SUB_ADDRESS_USER}};
    SubAddressRule& rule = context.Entered;
    if (!TakeText(dialog, ID_SUB_ADDRESS, rule.SubAddress) || !context.User.Take(rule.User)) return;
    const WaitCursor wait;
    EndSaved(dialog, SaveSubAddressRule(context.Before, rule, Replacing::Asked), kFields);
}

void FillForward(HWND dialog, ForwardBox& context) {
    SetTitle(dialog, context, "Add new forwarding rule");
    context.Key.Begin(dialog, ID_FORWARD_USER, ID_FORWARD_CHOOSE_USER, kUserAndGroupNames, "");
    context.Key.Offer(SpecialWords(*context.Rules));
    context.Key.Put(context.Entered.User);
    context.User.Begin(dialog, ID_FORWARD_TARGET, ID_FORWARD_CHOOSE_TARGET, kUserAndGroupNames, "");
    context.User.Put(context.Entered.Target);
    CheckDlgButton(dialog, context.Entered.Deletes ? ID_FORWARD_MOVE : ID_FORWARD_COPY, BST_CHECKED);
    FocusControl(dialog, ID_FORWARD_USER);
}

void TakeForward(HWND dialog, ForwardBox& context) {
    constexpr FieldOfRule kFields[] = {{RuleField::Key, ID_FORWARD_USER}, {RuleField::User, ID_FORWARD_TARGET}};
    ForwardRule& rule = context.Entered;
    if (!context.Key.Take(rule.User) || !context.User.Take(rule.Target)) return;
    rule.Deletes = IsDlgButtonChecked(dialog, ID_FORWARD_MOVE) == BST_CHECKED;
    const WaitCursor wait;
    EndSaved(dialog, SaveForwardRule(context.Before, rule, Replacing::Asked), kFields);
}

constexpr DialogCommand<SenderBox> kSenderCommands[] = {
    {ID_SENDER_ID, EN_CHANGE, TypeSender}, {IDOK, BN_CLICKED, TakeSender}, {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<SenderBox> kSenderPlan{HELP_SENDER_RULE, FillSender, kSenderCommands};

constexpr DialogCommand<SubAddressBox> kSubAddressCommands[] = {{IDOK, BN_CLICKED, TakeSubAddress},
                                                                {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<SubAddressBox> kSubAddressPlan{HELP_SUB_ADDRESS_RULE, FillSubAddress, kSubAddressCommands};

constexpr DialogCommand<ForwardBox> kForwardCommands[] = {{IDOK, BN_CLICKED, TakeForward},
                                                          {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<ForwardBox> kForwardPlan{HELP_FORWARD_RULE, FillForward, kForwardCommands};

} // namespace

std::optional<std::string> SenderRuleByDialog(HWND owner, const InwardRules& rules,
                                              const std::optional<SenderIdRule>& before) {
    SenderBox context{{&rules, before}};
    if (OpenDialog("SenderRuleBox", owner, SenderRuleDlgBox, &context) != IDOK) return {};
    return SenderRowName(context.Entered);
}

std::optional<std::string> SubAddressRuleByDialog(HWND owner, const std::optional<SubAddressRule>& before) {
    SubAddressBox context{nullptr, before};
    if (OpenDialog("SubAddressRuleBox", owner, SubAddressRuleDlgBox, &context) != IDOK) return {};
    return context.Entered.SubAddress;
}

std::optional<std::string> ForwardRuleByDialog(HWND owner, const InwardRules& rules,
                                               const std::optional<ForwardRule>& before) {
    ForwardBox context{&rules, before};
    if (OpenDialog("ForwardRuleBox", owner, ForwardRuleDlgBox, &context) != IDOK) return {};
    return context.Entered.User;
}

INT_PTR CALLBACK SenderRuleDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kSenderPlan, {dialog, message, wParam, lParam});
}
INT_PTR CALLBACK SubAddressRuleDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kSubAddressPlan, {dialog, message, wParam, lParam});
}
INT_PTR CALLBACK ForwardRuleDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kForwardPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
