#include "lcr/rule_edit_dlg.h"

#include "dialogs/keys_dlg.h"
#include "lcr/rule_dialog_dlg.h"
#include "resources/ids.h"
#include "voice/messages.h"

namespace bv {
namespace {

struct RuleBox {
    RuleDialog Rule;
    Keys DialogKeys{};
};

std::string DescriptionOf(HWND dialog) { return GetText(dialog, ID_RULE_DESCRIPTION); }

bool IsChanged(HWND dialog, const RuleBox& box) {
    return box.Rule.IsChanged() || DescriptionOf(dialog) != box.Rule.Before.Description.View();
}

// Of a new rule there is none before and none behind it.
void EnableSteps(HWND dialog, const RuleDialog& rule) {
    const bool isOld = rule.Place.has_value();
    EnableControl(dialog, ID_RULE_PREVIOUS, isOld && *rule.Place > 0);
    EnableControl(dialog, ID_RULE_NEXT, isOld && *rule.Place + 1 < rule.Session.Rules().size());
}

void ShowRule(HWND dialog, const RuleDialog& rule) {
    SetWindowTextA(
        dialog, rule.Place ? FormatText("Routing rule %d of %d", *rule.Place + 1, rule.Session.Rules().size()).c_str()
                           : "New routing rule");
    PutField(dialog, ID_RULE_DESCRIPTION, rule.Rule.Description);
    EnableSteps(dialog, rule);
}

// Takes what the pages and the field say, checks it and takes the rule into the list. False keeps the dialog.
bool Accept(HWND dialog, RuleBox& box, RuleLeaving leaving) {
    RuleDialog& rule = box.Rule;
    if (!rule.Pages.TakeAll() || !TakeField(dialog, ID_RULE_DESCRIPTION, rule.Rule.Description)) return false;
    const WaitCursor wait;
    RuleField wrong = RuleField::Nothing;
    RoutingRule edited = rule.Rule;
    const RuleCheck check = rule.Session.Accept(rule.Place, edited, leaving, wrong);
    if (wrong == RuleField::Description) FocusControl(dialog, ID_RULE_DESCRIPTION);
    if (wrong == RuleField::Criteria) rule.Pages.Show(kDestinationsPage, ID_RULE_PLACES_AVAILABLE);
    if (wrong == RuleField::Servers) rule.Pages.Show(kServersPage, ID_SERVERS_LIST);
    if (check == RuleCheck::Refused) return false;
    if (check == RuleCheck::Fine && !rule.Place) rule.Place = rule.Session.Rules().size() - 1;
    return true;
}

void TakeRule(HWND dialog, RuleBox& box) {
    if (Accept(dialog, box, RuleLeaving::Ok)) EndDialog(dialog, IDOK);
}

void GoTo(HWND dialog, RuleBox& box, std::size_t place) {
    RuleDialog& rule = box.Rule;
    if (!rule.Place || place >= rule.Session.Rules().size()) return;
    if (!Accept(dialog, box, RuleLeaving::PreviousOrNext)) return;
    const WaitCursor wait;
    rule.Begin(place);
    ShowRule(dialog, rule);
    rule.Pages.FillAnew();
    if (GetFocus() == GetDlgItem(dialog, ID_RULE_DESCRIPTION)) FocusControl(dialog, ID_RULE_DESCRIPTION);
}
void GoToPrevious(HWND dialog, RuleBox& box) { GoTo(dialog, box, box.Rule.Place.value_or(0) - 1); }
void GoToNext(HWND dialog, RuleBox& box) { GoTo(dialog, box, box.Rule.Place.value_or(0) + 1); }

void FillRule(HWND dialog, RuleBox& box) {
    box.DialogKeys.Begin(dialog, [dialog, &box](const MSG& key) {
        const bool isStep = key.message == WM_SYSKEYDOWN && (key.wParam == VK_PRIOR || key.wParam == VK_NEXT);
        if (isStep) GoTo(dialog, box, box.Rule.Place.value_or(0) + (key.wParam == VK_PRIOR ? std::size_t(-1) : 1));
        return isStep;
    });
    box.Rule.Pages.Begin(dialog, ID_RULE_PAGES, PagesOfRule(box.Rule),
                         box.Rule.Place ? kSummaryPage : kDestinationsPage);
    ShowRule(dialog, box.Rule);
    FocusControl(dialog, ID_RULE_DESCRIPTION);
}

constexpr DialogCommand<RuleBox> kCommands[] = {{ID_RULE_PREVIOUS, BN_CLICKED, GoToPrevious},
                                                {ID_RULE_NEXT, BN_CLICKED, GoToNext},
                                                {IDOK, BN_CLICKED, TakeRule},
                                                {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<RuleBox> kPlan{HELP_RULE, FillRule, kCommands, {}, nullptr, IsChanged};

} // namespace

std::optional<std::size_t> EditRuleByDialog(HWND owner, RuleSession& session, std::optional<std::size_t> place,
                                            const std::function<std::string(std::size_t place)>& remarks) {
    RuleBox box{RuleDialog(session, place, remarks)};
    OpenDialog("RoutingRuleEditBox", owner, RoutingRuleEditDlgBox, &box);
    return box.Rule.Place;
}

INT_PTR CALLBACK RoutingRuleEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
