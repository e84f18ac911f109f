// The pages of a routing rule.
#include <algorithm>
#include <utility>

#include "dialogs/fields_dlg.h"
#include "lcr/fax_entry.h"
#include "lcr/lcr_messages.h"
#include "lcr/rule_dialog_dlg.h"
#include "lcr/rule_edit.h"
#include "lcr/week_mask.h"
#include "resources/ids.h"
#include "users/week_days.h"
#include "voice/caught_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

// A page over the rule's dialog.
template <void (*kFill)(HWND, RuleDialog&), const auto& kCommands>
INT_PTR CALLBACK PageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    static constexpr DialogPlan<RuleDialog> kPlan{HELP_RULE, kFill, kCommands};
    return FollowPlan(kPlan, {page, message, wParam, lParam});
}

bool IsChecked(HWND page, int control) { return IsDlgButtonChecked(page, control) == BST_CHECKED; }

// --- Summary ---

constexpr ListColumn kSummaryColumns[] = {{"What", 60}, {"Rule", 280}};
constexpr ListPlan kSummaryPlan{.List = ID_SUMMARY_LIST, .Columns = kSummaryColumns, .IsSorted = false};
constexpr RulePage kPageOfLine[] = {kSummaryPage, kDestinationsPage, kPriorityPage, kUsersPage,
                                    kTimePage,    kSizePage,         kServersPage};

void AddLine(RuleDialog& context, std::string_view what, std::string_view words) {
    context.Summary.Add(what);
    context.Summary.Add(words);
}

void ShowSummary(HWND page, RuleDialog& context) {
    context.SummaryList.Refill([&] {
        context.Summary.Begin(std::size(kSummaryColumns));
        for (const auto& [name, words] : SummarizeRule(context.Rule, context.Session.Names().Places))
            if (name != "Description") AddLine(context, name, words);
        for (const std::string& line : context.Rule.OtherLines) AddLine(context, "Kept as it is", line);
        return true;
    });
    context.SummaryWeek.Show(WeekOfTime(context.Rule.Time, context.Session.Offpeak()));
    std::string remarks = context.Place ? context.Remarks(*context.Place) : std::string();
    for (const auto& [text, isShown] : {std::pair(context.Rule.Time.String(), context.Time.has_value()),
                                        std::pair(context.Rule.Size.String(), context.Size.has_value())})
        if (!isShown) remarks.append(remarks.empty() ? "" : ". ").append(FillMessage(kFieldsCannotShow, text));
    SetText(page, ID_SUMMARY_REMARKS, remarks);
}

void FillSummary(HWND page, RuleDialog& context) {
    context.SummaryList.Begin(page);
    context.SummaryWeek.Begin(page, ID_SUMMARY_WEEK, ID_SUMMARY_TIMES);
    context.SummaryShown.Begin(page, [page, &context] { ShowSummary(page, context); });
    ShowSummary(page, context);
}

// Goes to the page of the line.
void OpenLine(HWND, RuleDialog& context) {
    const std::vector<std::size_t> rows = context.SummaryList.Selected();
    if (rows.empty() || rows.front() + 1 >= std::size(kPageOfLine)) return;
    context.Pages.Show(kPageOfLine[rows.front() + 1]);
    context.Pages.FocusFirst();
}

constexpr DialogCommand<RuleDialog> kSummaryCommands[] = {{ID_SUMMARY_LIST, kListOpen, OpenLine}};

// --- Destinations ---

constexpr ListColumn kPlaceColumns[] = {{"Kind", 32}, {"Place", 44}, {"Name", 58}};
constexpr PickPlan kPlacePlan = PicksFrom(ID_RULE_PLACES_FILTER, ID_RULE_PLACES_COUNT, kPlaceColumns, kPlaceColumns);
constexpr UINT kNumberDelay = 150;

PlaceKind KindShown(HWND page) {
    return static_cast<PlaceKind>(
        std::max<LRESULT>(SendDlgItemMessageA(page, ID_RULE_PLACES_SHOW, CB_GETCURSEL, 0, 0), 0));
}

void ListPlaces(HWND page, RuleDialog& context) {
    const WaitCursor wait;
    context.PlaceLists.Refill([&] {
        context.Places.Fill(context.Session.Names().Places, context.Synonyms, KindShown(page));
        return true;
    });
}

void ChangePlaces(HWND, RuleDialog& context) {
    context.Rule.Destinations.clear();
    for (const std::string& line : context.PlaceLists.Chosen()) {
        RuleDestination destination = {{}, line};
        destination.Key = FindDestinationKey(context.Session.Names().Places, destination).value_or("");
        context.Rule.Destinations.push_back(std::move(destination));
    }
    GroupDestinations(context.Rule);
}

// Where the number is, which the filter then shows.
void FindNumber(HWND page, RuleDialog& context) {
    const std::string number = GetText(page, ID_RULE_PLACES_NUMBER);
    std::string result;
    if (!number.empty()) {
        CaughtMessages caught;
        const auto place = EnterNumber(context.Session.Names().Places, number);
        result = place ? DescribeNumber(context.Session.Names().Places, *place) : caught.TakeLast();
    }
    SetText(page, ID_RULE_PLACES_RESULT, result);
}

void FindNumberLater(HWND, RuleDialog& context) { context.Number.Start(kNumberDelay); }

void FillPlaces(HWND page, RuleDialog& context) {
    constexpr const char* kShown[] = {"All", "Regions", "Countries", "Areas"};
    constexpr int kNumberLimit = 40;
    for (const char* shown : kShown)
        SendDlgItemMessageA(page, ID_RULE_PLACES_SHOW, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(shown));
    SendDlgItemMessageA(page, ID_RULE_PLACES_SHOW, CB_SETCURSEL, 0, 0);
    SendDlgItemMessageA(page, ID_RULE_PLACES_NUMBER, EM_LIMITTEXT, kNumberLimit, 0);
    context.Number.Begin(page, [page, &context] {
        FindNumber(page, context);
        return false;
    });
    std::vector<std::string> lines;
    for (const RuleDestination& destination : context.Rule.Destinations) lines.push_back(destination.Line);
    context.PlaceLists.Begin(page, std::move(lines));
    ListPlaces(page, context);
}

constexpr DialogCommand<RuleDialog> kPlaceCommands[] = {{ID_RULE_PLACES_SHOW, CBN_SELCHANGE, ListPlaces},
                                                        {ID_RULE_PLACES_CHOSEN, kListSelected, ChangePlaces},
                                                        {ID_RULE_PLACES_NUMBER, EN_CHANGE, FindNumberLater}};

// --- Priority ---

struct PriorityBox {
    int Control;
    std::uint8_t Bit;
};
constexpr PriorityBox kPriorities[] = {{ID_PRIORITY_URGENT, kUrgentPriority},
                                       {ID_PRIORITY_NORMAL, kNormalPriority},
                                       {ID_PRIORITY_BACKGROUND, kBackgroundPriority}};

void EnablePriorities(HWND page) {
    for (const auto& [control, bit] : kPriorities) EnableControl(page, control, IsChecked(page, ID_PRIORITY_ONLY));
}

void FillPriority(HWND page, RuleDialog& context) {
    const bool isAny = IsAnyPriority(context.Rule.Priorities);
    CheckDlgButton(page, isAny ? ID_PRIORITY_ANY : ID_PRIORITY_ONLY, BST_CHECKED);
    for (const auto& [control, bit] : kPriorities)
        CheckDlgButton(page, control, !isAny && (context.Rule.Priorities & bit) != 0 ? BST_CHECKED : BST_UNCHECKED);
    EnablePriorities(page);
}

// None and all of them are any.
void ChangePriority(HWND page, RuleDialog& context) {
    EnablePriorities(page);
    std::uint8_t priorities = 0;
    for (const auto& [control, bit] : kPriorities)
        if (IsChecked(page, ID_PRIORITY_ONLY) && IsChecked(page, control))
            priorities = static_cast<std::uint8_t>(priorities | bit);
    const bool isAny = IsAnyPriority(priorities);
    if (isAny && IsAnyPriority(context.Before.Priorities)) priorities = context.Before.Priorities; // however it was
    context.Rule.Priorities = isAny && !IsAnyPriority(context.Before.Priorities) ? std::uint8_t(0) : priorities;
}

constexpr DialogCommand<RuleDialog> kPriorityCommands[] = {{ID_PRIORITY_ANY, BN_CLICKED, ChangePriority},
                                                           {ID_PRIORITY_ONLY, BN_CLICKED, ChangePriority},
                                                           {ID_PRIORITY_URGENT, BN_CLICKED, ChangePriority},
                                                           {ID_PRIORITY_NORMAL, BN_CLICKED, ChangePriority},
                                                           {ID_PRIORITY_BACKGROUND, BN_CLICKED, ChangePriority}};

// --- Users ---

constexpr ListColumn kUserColumns[] = {{"Name", 40}, {"Full name", 96}};
constexpr PickPlan kUserPlan = PicksFrom(ID_RULE_USERS_FILTER, ID_RULE_USERS_COUNT, kUserColumns, kUserColumns);

void FillUsers(HWND page, RuleDialog& context) {
    const WaitCursor wait;
    bool isRead = true;
    if (context.Users.Count() == 0) isRead = context.Users.FillUsers();
    context.UserLists.Begin(page, context.Rule.Users);
    context.UserLists.Refill([isRead] { return isRead; });
}

void ChangeUsers(HWND, RuleDialog& context) { context.Rule.Users = context.UserLists.Chosen(); }

constexpr DialogCommand<RuleDialog> kUserCommands[] = {{ID_RULE_USERS_CHOSEN, kListSelected, ChangeUsers}};

// --- Time ---

constexpr int kTimeChoices[] = {ID_RULE_TIME_ANY, ID_RULE_TIME_OFFPEAK, ID_RULE_TIME_PEAK, ID_RULE_TIME_SPECIFIC};
constexpr int kTimeFields[] = {ID_RULE_AFTER_HOUR, ID_RULE_AFTER_MINUTE, ID_RULE_BEFORE_HOUR, ID_RULE_BEFORE_MINUTE};
constexpr TimeField kTimeTexts[] = {&RuleTime::AfterHour, &RuleTime::AfterMinute, &RuleTime::BeforeHour,
                                    &RuleTime::BeforeMinute};

std::optional<RuleTime> TimeOf(HWND page) {
    const auto chosen = std::ranges::find_if(kTimeChoices, [page](int choice) { return IsChecked(page, choice); });
    if (chosen == std::end(kTimeChoices)) return {};
    RuleTime time;
    time.When = static_cast<RuleTime::Choice>(chosen - std::begin(kTimeChoices));
    if (time.When != RuleTime::Choice::Specific) return time;
    for (std::size_t i = 0; i < std::size(kWeekDays); ++i)
        if (IsChecked(page, ID_RULE_TIME_DAYS + static_cast<int>(i)))
            time.Days = static_cast<std::uint16_t>(time.Days | kWeekDays[i].Bit);
    for (std::size_t i = 0; i < std::size(kTimeFields); ++i) time.*kTimeTexts[i] = GetText(page, kTimeFields[i]);
    return time;
}

// The rule's own text as long as the fields say what it says; none after a message.
std::optional<std::string> TimeText(const RuleDialog& context, TimeField& wrong) {
    if (!context.Time || context.Time == ShowTime(context.Before.Time)) return context.Before.Time.String();
    return MakeTimeText(*context.Time, wrong);
}

void ShowTimes(HWND page, RuleDialog& context) {
    const bool isSpecific = context.Time && context.Time->When == RuleTime::Choice::Specific;
    for (std::size_t i = 0; i < std::size(kWeekDays); ++i)
        EnableControl(page, ID_RULE_TIME_DAYS + static_cast<int>(i), isSpecific);
    for (const int field : kTimeFields) EnableControl(page, field, isSpecific);
    const CaughtMessages caught; // what is not yet a time has no week
    TimeField wrong = nullptr;
    const std::optional<std::string> text = TimeText(context, wrong);
    context.TimeWeek.Show(text ? WeekOfTime(*text, context.Session.Offpeak()) : std::nullopt);
    const bool hasBoth =
        isSpecific && context.Time->Days != 0 && !(context.Time->AfterHour + context.Time->BeforeHour).empty();
    std::string note = hasBoth ? FillMessage(kDaysAreWhole) : std::string();
    if (!context.Time) note = FillMessage(kFieldsCannotShow, context.Before.Time.View());
    SetText(page, ID_RULE_TIME_NOTE, note);
}

void FillTime(HWND page, RuleDialog& context) {
    for (const int field : kTimeFields) SendDlgItemMessageA(page, field, EM_LIMITTEXT, 2, 0);
    context.TimeWeek.Begin(page, ID_RULE_TIME_WEEK, ID_RULE_TIME_WORDS);
    if (context.Time) {
        CheckDlgButton(page, kTimeChoices[static_cast<int>(context.Time->When)], BST_CHECKED);
        for (std::size_t i = 0; i < std::size(kWeekDays); ++i)
            CheckDlgButton(page, ID_RULE_TIME_DAYS + static_cast<int>(i),
                           (context.Time->Days & kWeekDays[i].Bit) != 0 ? BST_CHECKED : BST_UNCHECKED);
        for (std::size_t i = 0; i < std::size(kTimeFields); ++i)
            SetText(page, kTimeFields[i], (*context.Time).*kTimeTexts[i]);
    }
    ShowTimes(page, context);
}

void ChangeTime(HWND page, RuleDialog& context) {
    context.Time = TimeOf(page);
    ShowTimes(page, context);
}

int TakeTime(HWND, RuleDialog& context) {
    TimeField wrong = nullptr;
    const std::optional<std::string> text = TimeText(context, wrong);
    if (!text && wrong == nullptr) return ID_RULE_TIME_DAYS;
    if (!text) return kTimeFields[std::ranges::find(kTimeTexts, wrong) - std::begin(kTimeTexts)];
    context.Rule.Time = *text;
    return 0;
}

constexpr DialogCommand<RuleDialog> kTimeCommands[] = {
    {ID_RULE_TIME_ANY, BN_CLICKED, ChangeTime},      {ID_RULE_TIME_OFFPEAK, BN_CLICKED, ChangeTime},
    {ID_RULE_TIME_PEAK, BN_CLICKED, ChangeTime},     {ID_RULE_TIME_SPECIFIC, BN_CLICKED, ChangeTime},
    {ID_RULE_TIME_DAYS, BN_CLICKED, ChangeTime},     {ID_RULE_TIME_DAYS + 1, BN_CLICKED, ChangeTime},
    {ID_RULE_TIME_DAYS + 2, BN_CLICKED, ChangeTime}, {ID_RULE_TIME_DAYS + 3, BN_CLICKED, ChangeTime},
    {ID_RULE_TIME_DAYS + 4, BN_CLICKED, ChangeTime}, {ID_RULE_TIME_DAYS + 5, BN_CLICKED, ChangeTime},
    {ID_RULE_TIME_DAYS + 6, BN_CLICKED, ChangeTime}, {ID_RULE_AFTER_HOUR, EN_CHANGE, ChangeTime},
    {ID_RULE_AFTER_MINUTE, EN_CHANGE, ChangeTime},   {ID_RULE_BEFORE_HOUR, EN_CHANGE, ChangeTime},
    {ID_RULE_BEFORE_MINUTE, EN_CHANGE, ChangeTime}};

// --- Size ---

struct SizeChoice {
    int Button;
    RuleSize::Choice Which;
    int Pages; // 0: any size
};
constexpr SizeChoice kSizes[] = {{ID_RULE_SIZE_ANY, RuleSize::Choice::Any, 0},
                                 {ID_RULE_SIZE_LARGE, RuleSize::Choice::Large, ID_RULE_SIZE_LARGE_PAGES},
                                 {ID_RULE_SIZE_SMALL, RuleSize::Choice::Small, ID_RULE_SIZE_SMALL_PAGES}};

void ShowSizes(HWND page, const RuleDialog& context) {
    for (const auto& [button, which, pages] : kSizes)
        if (pages != 0) EnableControl(page, pages, IsChecked(page, button));
    SetText(page, ID_RULE_SIZE_NOTE,
            context.Size ? std::string() : FillMessage(kFieldsCannotShow, context.Before.Size.View()));
}

void FillSize(HWND page, RuleDialog& context) {
    constexpr int kMostPages = 100;
    for (const auto& [button, which, pages] : kSizes) {
        const bool isIt = context.Size && context.Size->Which == which;
        if (isIt) CheckDlgButton(page, button, BST_CHECKED);
        if (pages == 0) continue;
        GiveArrows(page, pages, 1, kMostPages);
        SetText(page, pages, isIt ? context.Size->Pages : "2");
    }
    ShowSizes(page, context);
}

void ChangeSize(HWND page, RuleDialog& context) {
    for (const auto& [button, which, pages] : kSizes)
        if (IsChecked(page, button)) context.Size = {which, pages == 0 ? std::string() : GetText(page, pages)};
    ShowSizes(page, context);
}

// "Large" from one page on becomes any size, in the fields, too.
int TakeSize(HWND page, RuleDialog& context) {
    if (!context.Size || context.Size == ShowSize(context.Before.Size)) {
        context.Rule.Size = context.Before.Size;
        return 0;
    }
    const std::optional<std::string> text = MakeSizeText(*context.Size);
    if (!text)
        return context.Size->Which == RuleSize::Choice::Large ? ID_RULE_SIZE_LARGE_PAGES : ID_RULE_SIZE_SMALL_PAGES;
    context.Rule.Size = *text;
    if (text->empty()) {
        context.Size = RuleSize();
        CheckRadioButton(page, ID_RULE_SIZE_ANY, ID_RULE_SIZE_SMALL, ID_RULE_SIZE_ANY);
        ShowSizes(page, context);
    }
    return 0;
}

constexpr DialogCommand<RuleDialog> kSizeCommands[] = {{ID_RULE_SIZE_ANY, BN_CLICKED, ChangeSize},
                                                       {ID_RULE_SIZE_LARGE, BN_CLICKED, ChangeSize},
                                                       {ID_RULE_SIZE_SMALL, BN_CLICKED, ChangeSize},
                                                       {ID_RULE_SIZE_LARGE_PAGES, EN_CHANGE, ChangeSize},
                                                       {ID_RULE_SIZE_SMALL_PAGES, EN_CHANGE, ChangeSize}};

// --- Servers ---

constexpr ListColumn kServerColumns[] = {{"Server", 100}, {"Description", 220}};
constexpr int kServerMenu[] = {ID_SERVERS_ALL, ID_SERVERS_NONE};
constexpr ListPlan kServerPlan{
    .List = ID_SERVERS_LIST, .Columns = kServerColumns, .Menu = kServerMenu, .IsSorted = false, .HasTicks = true};

void FillServers(HWND page, RuleDialog& context) {
    context.Links.FillServers(context.Rule);
    context.Links.Tick(ShowServers(context.Rule));
    context.ServerList.OnTick([&context](std::size_t row, bool ticked) { context.Links.TickRow(row, ticked); });
    context.ServerList.Begin(page);
    context.ServerList.Refill([] { return true; });
}

// Those that the rule has keep their order; new ones come behind.
void ChangeServers(HWND, RuleDialog& context) {
    std::vector<std::string> names = ShowServers(context.Rule);
    const std::vector<std::string> ticked = context.Links.Ticked();
    const auto isIn = [](const std::vector<std::string>& all, const std::string& name) {
        return std::ranges::any_of(all, [&](const std::string& one) { return EqualFolded(one, name); });
    };
    std::erase_if(names, [&](const std::string& name) { return !isIn(ticked, name); });
    for (const std::string& name : ticked)
        if (!isIn(names, name)) names.push_back(name);
    SetServers(context.Rule, names);
}

template <bool kTicked>
void TickAll(HWND page, RuleDialog& context) {
    for (std::size_t row = 0; row < context.Links.Count(); ++row) context.Links.TickRow(row, kTicked);
    context.ServerList.ShowChanged();
    ChangeServers(page, context);
}

constexpr DialogCommand<RuleDialog> kServerCommands[] = {{ID_SERVERS_LIST, kListSelected, ChangeServers},
                                                         {ID_SERVERS_ALL, BN_CLICKED, TickAll<true>},
                                                         {ID_SERVERS_NONE, BN_CLICKED, TickAll<false>}};

} // namespace

RuleDialog::RuleDialog(RuleSession& session, std::optional<std::size_t> place,
                       const std::function<std::string(std::size_t place)>& remarks)
    : Session(session), Remarks(remarks), SummaryList(Summary, kSummaryPlan),
      PlaceLists(Places, kPlacePlan,
                 [this](const std::string& line) {
                     PlaceRows::Line described = PlaceRows::Describe(Session.Names().Places, line);
                     return ChosenRow{std::move(described.Cells), std::move(described.Is)};
                 }),
      UserLists(Users, kUserPlan,
                [this](const std::string& name) {
                    return ChosenRow{{name, Users.TitleOf(name)}, name};
                }),
      ServerList(Links, kServerPlan) {
    if (auto synonyms = LoadSynonyms()) Synonyms = std::move(*synonyms);
    Begin(place);
}

void RuleDialog::Begin(std::optional<std::size_t> place) {
    Place = place;
    Before = place ? Session.Rules().at(*place) : RoutingRule();
    Rule = Before;
    Time = ShowTime(Rule.Time);
    Size = ShowSize(Rule.Size);
}

bool RuleDialog::IsChanged() const {
    return !(Rule == Before) || Time != ShowTime(Before.Time) || Size != ShowSize(Before.Size);
}

std::vector<Page> PagesOfRule(RuleDialog& context) {
    std::vector<Page> pages = {
        {"RoutingRuleSummaryBox", "Summary", PageProcedure<FillSummary, kSummaryCommands>},
        {"RoutingRuleDestinationsBox", "Destinations", PageProcedure<FillPlaces, kPlaceCommands>},
        {"RoutingRulePriorityBox", "Priority", PageProcedure<FillPriority, kPriorityCommands>},
        {"RoutingRuleUsersBox", "Users", PageProcedure<FillUsers, kUserCommands>},
        {"RoutingRuleTimeBox", "Time", PageProcedure<FillTime, kTimeCommands>, TakePage<RuleDialog, TakeTime>},
        {"RoutingRuleSizeBox", "Size", PageProcedure<FillSize, kSizeCommands>, TakePage<RuleDialog, TakeSize>},
        {"RoutingRuleServersBox", "Servers", PageProcedure<FillServers, kServerCommands>},
    };
    for (Page& page : pages) page.Context = &context;
    return pages;
}

} // namespace bv
