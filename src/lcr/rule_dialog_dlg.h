// What the dialog of one routing rule and its pages share.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/list_view_dlg.h"
#include "dialogs/page_host_dlg.h"
#include "dialogs/pick_lists_dlg.h"
#include "dialogs/timer_dlg.h"
#include "dialogs/week_picture_dlg.h"
#include "lcr/rule_choices.h"
#include "lcr/rule_session.h"

namespace bv {

// Tells when a page comes to the front.
class PageShown : public DialogPart {
  public:
    void Begin(HWND page, std::function<void()> shown) {
        shown_ = std::move(shown);
        bv::TakeUp(page, *this);
    }
    bool Answer(const DialogMessage& message, INT_PTR&) override {
        if (message.Number == WM_SHOWWINDOW && message.WParam != FALSE) shown_();
        return false;
    }

  private:
    std::function<void()> shown_;
};

struct RuleDialog {
    RuleDialog(RuleSession& session, std::optional<std::size_t> place,
               const std::function<std::string(std::size_t place)>& remarks);

    // The rule at its place, or an empty one, is edited from now on.
    void Begin(std::optional<std::size_t> place);

    // Whether the person has changed anything but the description, which is the dialog's.
    [[nodiscard]] bool IsChanged() const;

    RuleSession& Session;
    const std::function<std::string(std::size_t place)>& Remarks;
    std::optional<std::size_t> Place;
    RoutingRule Before;
    RoutingRule Rule;
    std::optional<RuleTime> Time; // as the fields have it; none: they cannot show the rule's
    std::optional<RuleSize> Size;
    PageHost Pages{};

    std::vector<Synonym> Synonyms{};
    PlaceRows Places{};
    NameRows Users{};
    NameRows Links{}; // the servers that can be chosen

    // The controls of pages.
    RowTable Summary{};
    ListView SummaryList;
    PickLists PlaceLists;
    PickLists UserLists;
    ListView ServerList;
    WeekPicture SummaryWeek{};
    WeekPicture TimeWeek{};
    Timer Number{};
    PageShown SummaryShown{};
};

// In the order of their tabs.
enum RulePage : std::size_t {
    kSummaryPage,
    kDestinationsPage,
    kPriorityPage,
    kUsersPage,
    kTimePage,
    kSizePage,
    kServersPage
};
std::vector<Page> PagesOfRule(RuleDialog& context);

} // namespace bv
