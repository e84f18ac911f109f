#include "lcr/rule_list_dlg.h"

#include "dialogs/arrow_button_dlg.h"
#include "dialogs/button_menu_dlg.h"
#include "dialogs/csv_import_dlg.h"
#include "dialogs/fields_dlg.h"
#include "dialogs/keys_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "dialogs/live_text_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "dialogs/timer_dlg.h"
#include "lcr/lcr_messages.h"
#include "lcr/rule_edit_dlg.h"
#include "lcr/rule_filter_dlg.h"
#include "lcr/rule_import.h"
#include "lcr/rule_rows.h"
#include "platform/clock.h"
#include "resources/ids.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr ListColumn kColumns[] = {
    {"Rule", 26, false}, {"Description", 128, false}, {"Faxes", 148, false}, {"Servers", 80, false}};
constexpr int kButtons[] = {ID_RULES_NEW, ID_RULES_EDIT, ID_RULES_DELETE, ID_RULES_UP, ID_RULES_DOWN};
constexpr ListPlan kList{
    .List = ID_RULES_LIST, .Columns = kColumns, .DefaultButton = ID_RULES_EDIT, .Menu = kButtons, .IsSorted = false};

constexpr int kSearchLimit = 100;
constexpr int kNumberLimit = 40;
constexpr int kClockLimit = 5;
constexpr int kMostPages = 100;
constexpr UINT kTrialDelay = 150; // milliseconds behind the last key
constexpr UINT kMarkDelay = 10;   // between two slices
constexpr std::int64_t kSlice = 15;
constexpr std::size_t kShortList = 500; // is marked at once

CalendarTime Now() { return ToCalendar(platform::TheClock().Now() / 1000); }

struct RuleListDialog {
    RuleSession& Session;
    RuleRows Rows{Session, Now()};
    ListView List{Rows, kList};
    FilterEntry Filter{};
    NameField User{};
    ArrowButtons Arrows{};
    Keys DialogKeys{};
    Timer Marks{};
    Timer Trial{};
    TriedFax Tried{};
};

// The place of the selected rule.
std::optional<std::size_t> Selected(const RuleListDialog& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    return rows.empty() ? std::nullopt : std::optional(context.Rows.RuleAt(rows.front()));
}

// What the marks of the selected rule say, and what keeps it from the fax that is tried.
void ShowRemark(HWND dialog, const RuleListDialog& context) {
    std::string text;
    if (const auto place = Selected(context)) {
        text = context.Rows.DescribeMarks(*place);
        const std::string_view against =
            WhyNot(context.Session.Rules().at(*place), context.Tried, context.Rows.Basis());
        if (!against.empty())
            text.append(text.empty() ? "" : ". ").append(FillMessage(kRuleDoesNotTakeFax, *place + 1, against));
    }
    if (text != GetText(dialog, ID_RULES_REMARK)) ShowLiveText(GetDlgItem(dialog, ID_RULES_REMARK), text);
}

void ShowSelected(HWND dialog, RuleListDialog& context) {
    const std::optional<std::size_t> place = Selected(context);
    const bool isInOrder = context.Rows.Shown() != RulesShown::Filtered;
    EnableControl(dialog, ID_RULES_EDIT, place.has_value());
    EnableControl(dialog, ID_RULES_DELETE, place.has_value());
    EnableControl(dialog, ID_RULES_UP, isInOrder && place.value_or(0) > 0);
    EnableControl(dialog, ID_RULES_DOWN, isInOrder && place && *place + 1 < context.Session.Rules().size());
    ShowRemark(dialog, context);
}

void ShowFilter(HWND dialog, const RuleListDialog& context) {
    SetText(dialog, ID_RULES_FILTER_TEXT, context.Rows.FilterText());
}

FilterEntry FaxOf(HWND dialog, const RuleListDialog& context) {
    FilterEntry entry;
    using enum Criterion;
    entry.Asked = {Destination, User, Size, Priority, Time};
    entry.Fax.Destination = GetText(dialog, ID_RULES_TRY_NUMBER);
    std::string user;
    if (context.User.Take(user)) entry.Fax.User = user;
    entry.Fax.Pages = GetText(dialog, ID_RULES_TRY_PAGES);
    entry.Fax.Priority = GetText(dialog, ID_RULES_TRY_PRIORITY);
    entry.Clock = GetText(dialog, ID_RULES_TRY_CLOCK);
    entry.Weekday = ChosenWeekday(dialog, ID_RULES_TRY_WEEKDAY).value_or(0);
    return entry;
}

// Tries the fax of the fields once a destination or a user is given; the rest is filled in from the start.
void ShowTrial(HWND dialog, RuleListDialog& context) {
    const FilterEntry fax = FaxOf(dialog, context);
    const bool isGiven = !fax.Fax.Destination->empty() || !fax.Fax.User.value_or("").empty();
    context.Tried = {};
    if (isGiven) context.Tried = TryFax(fax, context.Session.Rules(), context.Session.Names(), context.Rows.Basis());
    context.Rows.SetDeciding(context.Tried.Deciding);
    context.List.ShowChanged();
    if (context.Tried.Result != GetText(dialog, ID_RULES_RESULT))
        ShowLiveText(GetDlgItem(dialog, ID_RULES_RESULT), context.Tried.Result);
    ShowRemark(dialog, context);
}

void TryLater(HWND, RuleListDialog& context) { context.Trial.Start(kTrialDelay); }

bool MarkMore(HWND dialog, RuleListDialog& context, std::int64_t milliseconds) {
    const bool goesOn = context.Rows.LookForDead(milliseconds);
    context.List.ShowChanged();
    ShowRemark(dialog, context);
    return goesOn;
}

// Shows the rules as they are now, the one at the place selected if there is one, and begins to look at them.
void ShowRules(HWND dialog, RuleListDialog& context, std::optional<std::size_t> place) {
    context.Marks.Stop();
    context.List.Refill([&] {
        context.Rows.Refresh();
        return true;
    });
    if (place && context.Rows.RowOf(*place)) context.List.SelectName(std::to_string(*place));
    ShowTrial(dialog, context);
    ShowFilter(dialog, context);
    EnableControl(dialog, ID_RULES_APPLY, context.Session.IsChanged());
    const bool isLong = context.Session.Rules().size() > kShortList;
    if (isLong || MarkMore(dialog, context, kSlice)) context.Marks.Start(kMarkDelay);
    ShowSelected(dialog, context);
}

void LimitText(HWND dialog, int control, int limit) {
    SendDlgItemMessageA(dialog, control, EM_LIMITTEXT, static_cast<WPARAM>(limit), 0);
}

void FillTrial(HWND dialog, RuleListDialog& context) {
    context.User.Begin(dialog, ID_RULES_TRY_USER, 0, kUserNames, "");
    LimitText(dialog, ID_RULES_TRY_NUMBER, kNumberLimit);
    LimitText(dialog, ID_RULES_TRY_CLOCK, kClockLimit);
    GiveArrows(dialog, ID_RULES_TRY_PAGES, 1, kMostPages);
    SetText(dialog, ID_RULES_TRY_PAGES, "1");
    for (const std::string_view priority : kPriorityNames)
        SendDlgItemMessageA(dialog, ID_RULES_TRY_PRIORITY, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(priority.data()));
    SendDlgItemMessageA(dialog, ID_RULES_TRY_PRIORITY, CB_SETCURSEL, 0, 0);
    const CalendarTime now = Now();
    OfferWeekdays(dialog, ID_RULES_TRY_WEEKDAY);
    ChooseWeekday(dialog, ID_RULES_TRY_WEEKDAY, now.Weekday);
    SetText(dialog, ID_RULES_TRY_CLOCK, FormatText("%.2d:%.2d", now.Hours, now.Minutes));
    MakeLive(GetDlgItem(dialog, ID_RULES_RESULT));
    MakeLive(GetDlgItem(dialog, ID_RULES_REMARK));
}

// --- What is shown ---

void ApplyFilter(HWND dialog, RuleListDialog& context, RulesShown shown) {
    const WaitCursor wait;
    const std::optional<std::size_t> place = Selected(context);
    const auto filters = EnterFilter(context.Filter, context.Session.Names());
    context.List.Refill([&] {
        context.Rows.Show(shown, context.Filter, filters.value_or(std::vector<RuleFilter>()));
        return true;
    });
    if (place && context.Rows.RowOf(*place)) context.List.SelectName(std::to_string(*place));
    ShowFilter(dialog, context);
    ShowSelected(dialog, context);
}

void CheckShown(HWND dialog, RulesShown shown) {
    CheckRadioButton(dialog, ID_RULES_SHOW_ALL, ID_RULES_SHOW_FILTERED, ID_RULES_SHOW_ALL + static_cast<int>(shown));
}

void SetFilter(HWND dialog, RuleListDialog& context) {
    if (!EditFilter(dialog, context.Session.Names(), context.Filter)) return;
    RulesShown shown = context.Rows.Shown() == RulesShown::All ? RulesShown::Marked : context.Rows.Shown();
    if (context.Filter.Asked.empty()) shown = RulesShown::All;
    CheckShown(dialog, shown);
    ApplyFilter(dialog, context, shown);
}

template <RulesShown kShown>
void ChooseShown(HWND dialog, RuleListDialog& context) {
    ApplyFilter(dialog, context, kShown);
}

void Search(HWND dialog, RuleListDialog& context, std::size_t step) {
    const std::string words = GetText(dialog, ID_RULES_SEARCH);
    if (words.find_first_not_of(' ') == std::string::npos) return;
    const std::vector<std::size_t> rows = context.List.Selected();
    const auto found = context.Rows.Find(words, rows.empty() ? 0 : rows.front() + step);
    if (found) return context.List.SelectName(context.Rows.Name(*found));
    ShowStatus(kRuleIsNotFound, words);
}
void SearchFromHere(HWND dialog, RuleListDialog& context) { Search(dialog, context, 0); }
void SearchNext(HWND dialog, RuleListDialog& context) { Search(dialog, context, 1); }

// --- Changes ---

void OpenRule(HWND dialog, RuleListDialog& context, std::optional<std::size_t> place) {
    const bool isNew = !place;
    context.Marks.Stop();
    const auto seen = EditRuleByDialog(dialog, context.Session, place,
                                       [&](std::size_t rule) { return context.Rows.DescribeMarks(rule); });
    ShowRules(dialog, context, isNew && !seen ? Selected(context) : seen);
}

void PressNew(HWND dialog, RuleListDialog& context) { OpenRule(dialog, context, std::nullopt); }
void PressEdit(HWND dialog, RuleListDialog& context) {
    if (const auto place = Selected(context)) OpenRule(dialog, context, place);
}

void PressDelete(HWND dialog, RuleListDialog& context) {
    const auto place = Selected(context);
    if (place && context.Session.Delete(*place))
        ShowRules(dialog, context, std::min(*place, context.Session.Rules().size() - 1));
}

void MoveTo(HWND dialog, RuleListDialog& context, std::size_t place, std::size_t to) {
    if (context.Rows.Shown() == RulesShown::Filtered || to >= context.Session.Rules().size()) return;
    if (context.Session.Move(place, to)) ShowRules(dialog, context, to);
}
void MoveUp(HWND dialog, RuleListDialog& context) {
    if (const auto place = Selected(context)) MoveTo(dialog, context, *place, *place - 1);
}
void MoveDown(HWND dialog, RuleListDialog& context) {
    if (const auto place = Selected(context)) MoveTo(dialog, context, *place, *place + 1);
}
void MoveToTop(HWND dialog, RuleListDialog& context) {
    if (const auto place = Selected(context)) MoveTo(dialog, context, *place, 0);
}
void MoveToBottom(HWND dialog, RuleListDialog& context) {
    if (const auto place = Selected(context)) MoveTo(dialog, context, *place, context.Session.Rules().size() - 1);
}

void CloneRule(HWND dialog, RuleListDialog& context) {
    const auto place = Selected(context);
    if (place && context.Session.Clone(*place)) ShowRules(dialog, context, *place + 1);
}

void Undo(HWND dialog, RuleListDialog& context) {
    if (const auto place = context.Session.Undo()) ShowRules(dialog, context, place);
}

void Import(HWND dialog, RuleListDialog& context) {
    RuleImport import(context.Session);
    if (ImportByDialog(dialog, import)) ShowRules(dialog, context, Selected(context));
}

// Those that are shown.
void Export(HWND dialog, RuleListDialog& context) {
    RuleList shown;
    for (std::size_t row = 0; row < context.Rows.Count(); ++row)
        shown.push_back(context.Session.Rules().at(context.Rows.RuleAt(row)));
    ExportByDialog(dialog, RulesAsCsv(shown));
}

struct Tool {
    const char* Caption; // none: a line between two
    void (*Do)(HWND dialog, RuleListDialog& context);
    bool (*Can)(const RuleListDialog& context);
};
bool HasSelected(const RuleListDialog& context) { return Selected(context).has_value(); }
bool CanMove(const RuleListDialog& context) {
    return HasSelected(context) && context.Rows.Shown() != RulesShown::Filtered;
}
constexpr Tool kTools[] = {
    {"&Clone\tCtrl+D", CloneRule, HasSelected},
    {"Move to the &top", MoveToTop, CanMove},
    {"Move to the &bottom", MoveToBottom, CanMove},
    {"&Undo\tCtrl+Z", Undo, [](const RuleListDialog& context) { return context.Session.CanUndo(); }},
    {nullptr, nullptr, nullptr},
    {"&Import...", Import, [](const RuleListDialog&) { return true; }},
    {"&Export...", Export, [](const RuleListDialog& context) { return context.Rows.Count() > 0; }},
};

void OpenTools(HWND dialog, RuleListDialog& context) {
    const HMENU menu = CreatePopupMenu();
    for (std::size_t i = 0; i < std::size(kTools); ++i) {
        const Tool& tool = kTools[i];
        if (tool.Caption == nullptr)
            AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
        else
            AppendMenuA(menu, tool.Can(context) ? MF_ENABLED : MF_GRAYED, i + 1, tool.Caption);
    }
    const int chosen = ChooseBelowButton(dialog, menu, ID_RULES_TOOLS);
    if (chosen > 0) kTools[chosen - 1].Do(dialog, context);
}

// An edit control has its own Ctrl+Z.
bool TakeKey(HWND dialog, RuleListDialog& context, const MSG& key) {
    const bool isSearch = GetDlgCtrlID(key.hwnd) == ID_RULES_SEARCH;
    if (key.wParam == VK_F3 || (isSearch && key.wParam == VK_RETURN)) {
        SearchNext(dialog, context);
        return true;
    }
    if (isSearch && key.wParam == VK_ESCAPE && !GetText(dialog, ID_RULES_SEARCH).empty()) {
        SetText(dialog, ID_RULES_SEARCH, {});
        return true;
    }
    if (!IsKeyDown(VK_CONTROL) || (key.wParam != 'F' && IsOfClass(key.hwnd, "Edit"))) return false;
    if (key.wParam == 'F') FocusControl(dialog, ID_RULES_SEARCH);
    if (key.wParam == 'Z') Undo(dialog, context);
    if (key.wParam == 'D') CloneRule(dialog, context);
    return key.wParam == 'F' || key.wParam == 'Z' || key.wParam == 'D';
}

void FillRules(HWND dialog, RuleListDialog& context) {
    CheckDlgButton(dialog, ID_RULES_SHOW_ALL, BST_CHECKED);
    for (const int control : {ID_RULES_SHOW_MARKED, ID_RULES_SHOW_FILTERED, ID_RULES_SET_FILTER})
        EnableControl(dialog, control, context.Session.Offpeak().has_value());
    LimitText(dialog, ID_RULES_SEARCH, kSearchLimit);
    context.List.Begin(dialog);
    context.Arrows.Begin(dialog, {{ID_RULES_UP, "ArrowUp"}, {ID_RULES_DOWN, "ArrowDown"}});
    context.Marks.Begin(dialog, [dialog, &context] { return MarkMore(dialog, context, kSlice); });
    context.Trial.Begin(dialog, [dialog, &context] {
        ShowTrial(dialog, context);
        return false;
    });
    context.DialogKeys.Begin(dialog, [dialog, &context](const MSG& key) { return TakeKey(dialog, context, key); });
    FillTrial(dialog, context);
    ShowRules(dialog, context, 0);
    FocusControl(dialog, context.Rows.Count() > 0 ? ID_RULES_LIST : ID_RULES_NEW);
}

// --- The end ---

bool IsChanged(HWND, const RuleListDialog& context) { return context.Session.IsChanged(); }

bool Save(HWND dialog, RuleListDialog& context) {
    const WaitCursor wait;
    const bool isSaved = context.Session.Save();
    ShowRules(dialog, context, Selected(context)); // references may have been taken out
    return isSaved;
}

void TakeRules(HWND dialog, RuleListDialog& context) {
    if (context.Session.IsChanged() && !Save(dialog, context)) return;
    RuleSession::Abandon();
    EndDialog(dialog, IDOK);
}
void ApplyRules(HWND dialog, RuleListDialog& context) {
    if (context.Session.IsChanged()) Save(dialog, context);
}
void AbandonAll(HWND dialog, RuleListDialog&) {
    RuleSession::Abandon();
    EndDialog(dialog, IDCANCEL);
}

constexpr DialogCommand<RuleListDialog> kCommands[] = {
    {ID_RULES_SHOW_ALL, BN_CLICKED, ChooseShown<RulesShown::All>},
    {ID_RULES_SHOW_MARKED, BN_CLICKED, ChooseShown<RulesShown::Marked>},
    {ID_RULES_SHOW_FILTERED, BN_CLICKED, ChooseShown<RulesShown::Filtered>},
    {ID_RULES_SET_FILTER, BN_CLICKED, SetFilter},
    {ID_RULES_SEARCH, EN_CHANGE, SearchFromHere},
    {ID_RULES_LIST, kListSelected, ShowSelected},
    {ID_RULES_LIST, kListOpen, PressEdit},
    {ID_RULES_LIST, kListRename, PressEdit},
    {ID_RULES_LIST, kListAdd, PressNew},
    {ID_RULES_LIST, kListDelete, PressDelete},
    {ID_RULES_LIST, kListMoveUp, MoveUp},
    {ID_RULES_LIST, kListMoveDown, MoveDown},
    {ID_RULES_UP, BN_CLICKED, MoveUp},
    {ID_RULES_DOWN, BN_CLICKED, MoveDown},
    {ID_RULES_NEW, BN_CLICKED, PressNew},
    {ID_RULES_EDIT, BN_CLICKED, PressEdit},
    {ID_RULES_DELETE, BN_CLICKED, PressDelete},
    {ID_RULES_TOOLS, BN_CLICKED, OpenTools},
    {ID_RULES_TRY_NUMBER, EN_CHANGE, TryLater},
    {ID_RULES_TRY_USER, CBN_EDITCHANGE, TryLater},
    {ID_RULES_TRY_PAGES, EN_CHANGE, TryLater},
    {ID_RULES_TRY_PRIORITY, CBN_SELCHANGE, TryLater},
    {ID_RULES_TRY_WEEKDAY, CBN_SELCHANGE, TryLater},
    {ID_RULES_TRY_CLOCK, EN_CHANGE, TryLater},
    {ID_RULES_APPLY, BN_CLICKED, ApplyRules},
    {IDOK, BN_CLICKED, TakeRules},
    {IDCANCEL, BN_CLICKED, AbandonAll},
};
constexpr Anchor kAnchors[] = {
    {ID_RULES_SEARCH_LABEL, kMovesAcross},
    {ID_RULES_SEARCH, kMovesAcross},
    {ID_RULES_FILTER_TEXT, kGrowsAcross},
    {ID_RULES_LIST, kGrowsBoth},
    {ID_RULES_REMARK, kMovesDown | kGrowsAcross},
    {ID_RULES_TRY, kMovesDown | kGrowsAcross},
    {ID_RULES_TRY_NUMBER_LABEL, kMovesDown},
    {ID_RULES_TRY_NUMBER, kMovesDown},
    {ID_RULES_TRY_USER_LABEL, kMovesDown},
    {ID_RULES_TRY_USER, kMovesDown},
    {ID_RULES_TRY_PAGES_LABEL, kMovesDown},
    {ID_RULES_TRY_PAGES, kMovesDown},
    {ID_RULES_TRY_PRIORITY_LABEL, kMovesDown},
    {ID_RULES_TRY_PRIORITY, kMovesDown},
    {ID_RULES_TRY_WEEKDAY_LABEL, kMovesDown},
    {ID_RULES_TRY_WEEKDAY, kMovesDown},
    {ID_RULES_TRY_CLOCK_LABEL, kMovesDown},
    {ID_RULES_TRY_CLOCK, kMovesDown},
    {ID_RULES_RESULT_LABEL, kMovesDown},
    {ID_RULES_RESULT, kMovesDown | kGrowsAcross},
    {ID_STATUS_LINE, kMovesDown | kGrowsAcross},
    {ID_RULES_UP, kMovesAcross},
    {ID_RULES_DOWN, kMovesAcross},
    {ID_RULES_NEW, kMovesAcross},
    {ID_RULES_EDIT, kMovesAcross},
    {ID_RULES_DELETE, kMovesAcross},
    {ID_RULES_TOOLS, kMovesAcross},
    {IDOK, kMovesBoth},
    {ID_RULES_APPLY, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<RuleListDialog> kPlan{HELP_RULES, FillRules, kCommands, kAnchors, nullptr, IsChanged};

} // namespace

bool EditRules(HWND owner) {
    RuleSession session;
    {
        const WaitCursor wait;
        if (!session.Open()) return false;
    }
    RuleListDialog context{session};
    return OpenDialogOf(ServerFile::Rules, "RoutingRuleDisplayBox", owner, RoutingRuleDisplayDlgBox, &context) == IDOK;
}

INT_PTR CALLBACK RoutingRuleDisplayDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
