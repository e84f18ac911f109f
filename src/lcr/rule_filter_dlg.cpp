#include "lcr/rule_filter_dlg.h"

#include <algorithm>
#include <array>

#include "dialogs/dialog_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "lcr/rule_choices.h"
#include "lcr/rule_edit.h"
#include "resources/ids.h"

namespace bv {
namespace {

// Sunday is 0; a week begins with Monday.
constexpr std::array<const char*, 7> kDays = {"Monday", "Tuesday",  "Wednesday", "Thursday",
                                              "Friday", "Saturday", "Sunday"};
int DayOfRow(int row) { return (row + 1) % static_cast<int>(kDays.size()); }

struct FilterDialog {
    const RuleNames& Names;
    FilterEntry Entry;
    NameField User{};
};

void AddTo(HWND dialog, int combo, const std::string& text) {
    SendDlgItemMessageA(dialog, combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

// A criterion without a value, and one that is not asked about.
std::string Shown(const FilterEntry& entry, Criterion kind, const std::optional<std::string>& value) {
    if (!entry.Asks(kind)) return {};
    return value.value_or("").empty() ? std::string(kAnyValue) : *value;
}

void ChooseText(HWND dialog, int combo, const std::string& text) {
    const LRESULT row = SendDlgItemMessageA(dialog, combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                            reinterpret_cast<LPARAM>(text.c_str()));
    SendDlgItemMessageA(dialog, combo, CB_SETCURSEL, static_cast<WPARAM>(std::max<LRESULT>(row, 0)), 0);
}

// A day without a time says nothing.
void EnableClock(HWND dialog, FilterDialog&) {
    const bool isDay = ChosenWeekday(dialog, ID_FILTER_WEEKDAY).has_value();
    EnableControl(dialog, ID_FILTER_CLOCK, isDay);
    if (isDay && GetText(dialog, ID_FILTER_CLOCK).empty()) SetText(dialog, ID_FILTER_CLOCK, "12:00");
    if (!isDay) SetText(dialog, ID_FILTER_CLOCK, {});
}

void ShowEntry(HWND dialog, FilterDialog& context) {
    const FilterEntry& entry = context.Entry;
    SetText(dialog, ID_FILTER_DESTINATION, Shown(entry, Criterion::Destination, entry.Fax.Destination));
    context.User.Put(Shown(entry, Criterion::User, entry.Fax.User));
    SetText(dialog, ID_FILTER_PAGES, Shown(entry, Criterion::Size, entry.Fax.Pages));
    ChooseText(dialog, ID_FILTER_SERVER, Shown(entry, Criterion::Server, entry.Fax.Server));
    ChooseText(dialog, ID_FILTER_PRIORITY, Shown(entry, Criterion::Priority, entry.Fax.Priority));
    ChooseText(dialog, ID_FILTER_WEEKDAY,
               entry.Asks(Criterion::Time) && entry.Clock.empty() ? std::string(kAnyValue) : "");
    SetText(dialog, ID_FILTER_CLOCK, entry.Clock);
    if (entry.Asks(Criterion::Time) && !entry.Clock.empty()) ChooseWeekday(dialog, ID_FILTER_WEEKDAY, entry.Weekday);
    EnableClock(dialog, context);
}

void FillFilter(HWND dialog, FilterDialog& context) {
    constexpr int kPlaceLimit = 60;
    constexpr int kPagesLimit = 5;
    constexpr int kClockLimit = 5;
    for (const int combo : {ID_FILTER_SERVER, ID_FILTER_PRIORITY, ID_FILTER_WEEKDAY}) AddTo(dialog, combo, "");
    for (const int combo :
         {ID_FILTER_DESTINATION, ID_FILTER_PAGES, ID_FILTER_SERVER, ID_FILTER_PRIORITY, ID_FILTER_WEEKDAY})
        AddTo(dialog, combo, std::string(kAnyValue));
    for (const RegionEntry& region : context.Names.Places.Regions())
        AddTo(dialog, ID_FILTER_DESTINATION, region.Identifier);
    for (const CountryEntry& country : context.Names.Places.Countries())
        AddTo(dialog, ID_FILTER_DESTINATION, country.Identifier);
    NameRows servers;
    servers.FillServers({});
    for (std::size_t row = 0; row < servers.Count(); ++row) {
        const std::string server(servers.Text(row, kChoiceName));
        if (server != kLocalServerName) AddTo(dialog, ID_FILTER_SERVER, server);
    }
    for (const std::string_view priority : kPriorityNames) AddTo(dialog, ID_FILTER_PRIORITY, std::string(priority));
    OfferWeekdays(dialog, ID_FILTER_WEEKDAY);
    SendDlgItemMessageA(dialog, ID_FILTER_DESTINATION, CB_LIMITTEXT, kPlaceLimit, 0);
    SendDlgItemMessageA(dialog, ID_FILTER_PAGES, CB_LIMITTEXT, kPagesLimit, 0);
    SendDlgItemMessageA(dialog, ID_FILTER_CLOCK, EM_LIMITTEXT, kClockLimit, 0);
    context.User.Begin(dialog, ID_FILTER_USER, ID_FILTER_CHOOSE_USER, kUserNames, "");
    context.User.Offer({std::string(kAnyValue)});
    ShowEntry(dialog, context);
    FocusControl(dialog, ID_FILTER_DESTINATION);
}

// Notes a criterion as asked about unless its field is empty, and its value.
void Note(FilterEntry& entry, Criterion kind, std::string text, std::optional<std::string>& value) {
    if (text.empty()) return;
    entry.Asked.push_back(kind);
    value = text == kAnyValue ? std::string() : std::move(text);
}

bool ReadEntry(HWND dialog, const FilterDialog& context, FilterEntry& entry) {
    std::string user;
    if (!context.User.Take(user)) return false;
    using enum Criterion;
    Note(entry, Destination, GetText(dialog, ID_FILTER_DESTINATION), entry.Fax.Destination);
    Note(entry, Priority, GetText(dialog, ID_FILTER_PRIORITY), entry.Fax.Priority);
    Note(entry, Server, GetText(dialog, ID_FILTER_SERVER), entry.Fax.Server);
    Note(entry, Size, GetText(dialog, ID_FILTER_PAGES), entry.Fax.Pages);
    Note(entry, User, user, entry.Fax.User);
    const std::optional<int> weekday = ChosenWeekday(dialog, ID_FILTER_WEEKDAY);
    std::optional<std::string> clock;
    Note(entry, Time, weekday ? GetText(dialog, ID_FILTER_CLOCK) : GetText(dialog, ID_FILTER_WEEKDAY), clock);
    entry.Clock = clock.value_or("");
    entry.Weekday = weekday.value_or(0);
    return true;
}

void TakeFilter(HWND dialog, FilterDialog& context) {
    constexpr std::pair<Criterion, int> kControls[] = {{Criterion::Destination, ID_FILTER_DESTINATION},
                                                       {Criterion::Priority, ID_FILTER_PRIORITY},
                                                       {Criterion::Server, ID_FILTER_SERVER},
                                                       {Criterion::Size, ID_FILTER_PAGES},
                                                       {Criterion::Time, ID_FILTER_CLOCK},
                                                       {Criterion::User, ID_FILTER_USER}};
    FilterEntry entry;
    if (!ReadEntry(dialog, context, entry)) return;
    FilterEntry one = entry;
    for (const auto& [kind, control] : kControls) { // one by one, to know which is wrong
        if (!entry.Asks(kind)) continue;
        one.Asked = {kind};
        if (!EnterFilter(one, context.Names)) return FocusControl(dialog, control);
    }
    context.Entry = std::move(entry);
    EndDialog(dialog, IDOK);
}

void ClearFilter(HWND dialog, FilterDialog& context) {
    context.Entry = {};
    ShowEntry(dialog, context);
    FocusControl(dialog, ID_FILTER_DESTINATION);
}

constexpr DialogCommand<FilterDialog> kCommands[] = {{ID_FILTER_WEEKDAY, CBN_SELCHANGE, EnableClock},
                                                     {ID_FILTER_CLEAR, BN_CLICKED, ClearFilter},
                                                     {IDOK, BN_CLICKED, TakeFilter},
                                                     {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<FilterDialog> kPlan{HELP_RULE_FILTER, FillFilter, kCommands};

} // namespace

void OfferWeekdays(HWND dialog, int combo) {
    for (const char* day : kDays) AddTo(dialog, combo, day);
}

std::optional<int> ChosenWeekday(HWND dialog, int combo) {
    const std::string text = GetText(dialog, combo);
    const auto found = std::ranges::find(kDays, text);
    if (found == kDays.end()) return {};
    return DayOfRow(static_cast<int>(found - kDays.begin()));
}

void ChooseWeekday(HWND dialog, int combo, int weekday) {
    for (int row = 0; row < static_cast<int>(kDays.size()); ++row)
        if (DayOfRow(row) == weekday) ChooseText(dialog, combo, kDays.at(static_cast<std::size_t>(row)));
}

bool EditFilter(HWND owner, const RuleNames& names, FilterEntry& entry) {
    FilterDialog context{names, entry};
    if (OpenDialog("RoutingRuleFilterBox", owner, RoutingRuleFilterDlgBox, &context) != IDOK) return false;
    entry = std::move(context.Entry);
    return true;
}

INT_PTR CALLBACK RoutingRuleFilterDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
