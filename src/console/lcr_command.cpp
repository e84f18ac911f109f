// Least-cost routing: whether it is switched on, its rules, and what they say of a fax.
#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "console/assignments.h"
#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "lcr/edit_lock.h"
#include "lcr/rule_edit.h"
#include "lcr/rule_file.h"
#include "lcr/rule_match.h"
#include "lcr/rule_references.h"
#include "lcr/rule_values.h"
#include "lcr/time_range.h"
#include "options/server_options.h"
#include "platform/ascii.h"
#include "platform/clock.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";
constexpr std::string_view kNumber = "N";
constexpr std::string_view kRuleNumber = "Rule";
constexpr std::string_view kOtherLines = "Other lines";
constexpr std::string_view kAt = "--at";
constexpr std::string_view kDropPending = "--drop";
constexpr std::string_view kAll = "--all";
constexpr std::string_view kDropLost = "--drop-lost";

// Says that there are changes which were never saved, to those who do not decide about them.
void TellOfPendingRules(const Session& session) {
    const PendingRules pending = LookForPendingRules();
    if (pending == PendingRules::Whole) session.Streams.PrintNotice(FillMessage(9170, PendingRulesPath()) + '\n');
    if (pending == PendingRules::CutOff) session.Streams.PrintNotice(FillMessage(9167, PendingRulesPath()) + '\n');
}

template <Command command>
int Telling(Session& session, const Arguments& arguments) {
    TellOfPendingRules(session);
    return command(session, arguments);
}

// Whether it is switched on

struct Switch {
    ServerOptions Options;
    SavedOptions Saved;
    OptionsFound Found;
};

bool LoadSwitch(const Session& session, Switch& lcr) {
    session.SayWhatIsDone(false); // what is read is no news here
    const bool isLoaded = LoadServerOptions(lcr.Options, lcr.Saved, &lcr.Found);
    session.SayWhatIsDone();
    return isLoaded;
}

int Status(Session& session, const Arguments&) {
    constexpr std::string_view kLacks[] = {"", "general settings", "links", "destinations", "rules"};
    Switch lcr;
    if (!LoadSwitch(session, lcr)) return kExitRefused;
    const LcrLack lack = FindLcrLack(lcr.Found.HasRouter);
    PrintRecord(session, {{"Enabled", lcr.Options.LCR},
                          {"Ready", lack == LcrLack::Nothing || lack == LcrLack::Rules},
                          {"Missing", std::string(kLacks[static_cast<std::size_t>(lack)])}});
    return kExitDone;
}

int SwitchLcr(Session& session, bool isOn) {
    Switch lcr;
    if (!LoadSwitch(session, lcr)) return kExitRefused;
    if (isOn && CheckLcrReady(lcr.Found.HasRouter, false) != LcrReadiness::Ready) return kExitRefused;
    lcr.Options.LCR = isOn;
    return Perform(session, [&] {
        if (!SaveServerOptions(lcr.Options, lcr.Saved)) return false;
        ShowStatus(isOn ? "Least-cost routing is enabled" : "Least-cost routing is disabled");
        return true;
    });
}

int Enable(Session& session, const Arguments&) { return SwitchLcr(session, true); }
int Disable(Session& session, const Arguments&) { return SwitchLcr(session, false); }

// Numbers and moments

std::optional<int> NumberIn(std::string_view text, int least, int most) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < least || number > most) return {};
    return number;
}

// A moment of the form "YYYY-MM-DD hh:mm"; none for any other text, and for a day that no calendar has.
std::optional<CalendarTime> ParseMoment(std::string_view text) {
    constexpr std::string_view kForm = "0000-00-00 00:00";
    const auto fits = [](char form, char c) { return form == '0' ? IsDigit(c) : form == c; };
    if (text.size() != kForm.size() || !std::ranges::equal(kForm, text, fits)) return {};
    const auto number = [text](std::size_t at, std::size_t size) {
        return NumberIn(text.substr(at, size), 0, 9999).value_or(0);
    };
    constexpr int kNoon = 12;
    CalendarTime day{number(0, 4), number(5, 2), number(8, 2), kNoon};
    const CalendarTime known = ToCalendar(FromCalendar(day));
    day.Hours = number(11, 2);
    day.Minutes = number(14, 2);
    day.Weekday = known.Weekday;
    const bool isDay = known.Year == day.Year && known.Month == day.Month && known.Day == day.Day;
    if (!isDay || day.Hours > 23 || day.Minutes > 59) return {};
    return day;
}

// The moment of --at, or now; none after a message.
std::optional<CalendarTime> MomentGiven(const Session& session, const Arguments& arguments) {
    if (!arguments.Has(kAt)) return ToCalendar(platform::TheClock().Now() / 1000);
    const std::optional<CalendarTime> moment = ParseMoment(arguments[kAt]);
    if (!moment)
        session.Streams.PrintNotice(
            FormatText("%s: \"%s\" is not a moment of the form YYYY-MM-DD hh:mm\n", kAt, arguments[kAt]));
    return moment;
}

std::string MomentText(const CalendarTime& moment) {
    return FormatText("%.4d-%.2d-%.2d %.2d:%.2d", moment.Year, moment.Month, moment.Day, moment.Hours, moment.Minutes);
}

int Permitted(Session& session, const Arguments& arguments) {
    std::string words;
    for (const std::string& word : arguments.All("TIME")) words.append(words.empty() ? "" : " ").append(word);
    std::optional<TimeRange> range;
    if (EqualFolded(words, "OFFPEAK")) {
        range = ReadOffpeak();
        if (!range) return session.Refuse("Offpeak: the off-peak period cannot be determined");
    } else if (IsValidSendTime(words)) {
        range = ParseTimeRange(words);
    }
    if (!range)
        return session.Refuse("TIME: \"" + words +
                              "\" is not OFFPEAK or a time such as SAT SUN AFTER 18:00 BEFORE 08:00");
    const std::optional<CalendarTime> moment = MomentGiven(session, arguments);
    if (!moment) return kExitRefused;
    const std::int64_t permitted = GetPermittedTime(*moment, *range);
    const bool isNever = permitted == kNeverPermitted;
    PrintRecord(session, {{"At", MomentText(*moment)},
                          {"Permitted", isNever ? "never" : MomentText(ToCalendar(permitted))},
                          {"Seconds", isNever ? Value() : Value(permitted)}});
    return kExitDone;
}

// The rules

// What numbers rules have.
std::string RuleNumbers(std::size_t count) {
    if (count == 0) return "there are no rules";
    return count == 1 ? "there is one rule" : FormatText("there are rules 1 to %d", count);
}

// The place of the rule of that number; none after a message.
std::optional<std::size_t> FindRule(const std::string& number, const RuleList& rules) {
    constexpr int kMost = 1'000'000'000;
    const std::optional<int> found = NumberIn(number, 1, kMost);
    if (found && static_cast<std::size_t>(*found) <= rules.size()) return static_cast<std::size_t>(*found - 1);
    ShowError("Rule: \"%s\" - %s", number, RuleNumbers(rules.size()));
    return {};
}

// The rule's number, counted from 1, and its keys.
Record RecordOfRule(const RoutingRule& rule, std::size_t number) {
    Record record = {{std::string(kRuleNumber), static_cast<std::int64_t>(number)}};
    for (const auto& [key, value] : RuleValues(rule)) record.emplace_back(key, value);
    return record;
}

std::string OtherLinesText(const RoutingRule& rule) {
    std::string others;
    for (const std::string& line : rule.OtherLines) others.append(others.empty() ? "" : " | ").append(line);
    return others;
}

int ListRules(Session& session, const Arguments&) {
    const std::optional<RuleList> rules = ReadRules();
    if (!rules) return kExitRefused;
    std::vector<Record> records;
    for (const RoutingRule& rule : *rules) records.push_back(RecordOfRule(rule, records.size() + 1));
    PrintRecords(session, records);
    return kExitDone;
}

int Show(Session& session, const Arguments& arguments) {
    const std::optional<RuleList> rules = ReadRules();
    if (!rules) return kExitRefused;
    const std::optional<std::size_t> place = FindRule(arguments[kNumber], *rules);
    if (!place) return kExitRefused;
    const RoutingRule& rule = (*rules)[*place];
    Record record = RecordOfRule(rule, *place + 1);
    record.emplace_back(kOtherLines, OtherLinesText(rule));
    PrintRecord(session, record);
    return kExitDone;
}

// What an edit of the rules has at hand.
struct RuleEdit {
    RuleNames Names;
    RuleList Rules;
};
using RuleChange = std::function<RuleCheck(RuleEdit&)>;

// Opens the rules for editing, unless there are pending ones: about those a verb of their own decides.
std::optional<OpenedRules> OpenForEdit() {
    if (LookForPendingRules() != PendingRules::Whole) return OpenRules();
    ShowError(9170, PendingRulesPath());
    return {};
}

// The rule that the arguments name, by its number or the name that it is to have.
std::string RuleGiven(const Arguments& arguments) {
    return arguments.Has(kNumber) ? arguments[kNumber] : '"' + arguments["DESCRIPTION"] + '"';
}

// Changes the rules and saves them without the names that are lost, if that is agreed to.
bool EditRules(LostNames lost, const RuleChange& change) {
    RuleEdit edit;
    if (!LoadRuleNames(edit.Names)) return false;
    std::optional<OpenedRules> opened = OpenForEdit();
    if (!opened) return false;
    edit.Rules = std::move(opened->Rules);
    const RuleCheck check = change(edit);
    if (check != RuleCheck::Fine) return check == RuleCheck::Unchanged;
    return DropLostReferences(edit.Rules, edit.Names, lost) && SaveRules(edit.Rules, opened->Stamp);
}

// The same as a command, which says what it did; "%s" of that is the rule.
int Edit(const Session& session, const Arguments& arguments, std::string_view done, const RuleChange& change) {
    const LostNames lost = arguments.Has(kDropLost) ? LostNames::Drop : LostNames::Ask;
    RuleCheck check = RuleCheck::Refused;
    const auto noted = [&](RuleEdit& edit) { return check = change(edit); };
    return Perform(session, [&] {
        if (!RunLcrEditor([&] { return EditRules(lost, noted); })) return false;
        ShowStatus("%s", check == RuleCheck::Fine ? FormatText("%s rule %s", done, RuleGiven(arguments))
                                                  : std::string("Nothing was to be changed"));
        return true;
    });
}

// Enters the values into a copy of the rule at the place, or into a new one, and takes it into the list.
RuleCheck EnterRule(RuleEdit& edit, std::optional<std::size_t> place, std::span<const Assignment> assignments) {
    RoutingRule rule = place ? edit.Rules[*place] : RoutingRule();
    for (const auto& [key, value] : assignments) {
        if (!EnterRuleValue(rule, key, value, edit.Names)) return RuleCheck::Refused;
    }
    return ChangeRule(edit.Rules, place, std::move(rule));
}

int Recover(Session& session, const Arguments& arguments) {
    const auto recover = arguments.Has(kDropPending) ? DropPendingRules : RecoverPendingRules;
    return Perform(session, [&] {
        if (!RunLcrEditor(recover)) return false;
        ShowStatus(arguments.Has(kDropPending) ? "Dropped the unsaved changes" : "Took up the unsaved changes");
        return true;
    });
}

int Add(Session& session, const Arguments& arguments) {
    std::optional<std::vector<Assignment>> assignments = ReadAssignments(session, arguments, kAssignments);
    if (!assignments) return kExitWrongUsage;
    assignments->insert(assignments->begin(), {"Description", arguments["DESCRIPTION"]});
    return Edit(session, arguments, "Added", [&](RuleEdit& edit) { return EnterRule(edit, {}, *assignments); });
}

int Set(Session& session, const Arguments& arguments) {
    const std::optional<std::vector<Assignment>> assignments = ReadAssignments(session, arguments, kAssignments);
    if (!assignments) return kExitWrongUsage;
    return Edit(session, arguments, "Changed", [&](RuleEdit& edit) {
        const std::optional<std::size_t> place = FindRule(arguments[kNumber], edit.Rules);
        if (!place) return RuleCheck::Refused;
        std::vector<Assignment> values = *assignments;
        DropShown(values, kRuleNumber, std::to_string(*place + 1));
        DropShown(values, kOtherLines, OtherLinesText(edit.Rules[*place]));
        return EnterRule(edit, place, values);
    });
}

int Delete(Session& session, const Arguments& arguments) {
    return Edit(session, arguments, "Deleted", [&](RuleEdit& edit) {
        const std::optional<std::size_t> place = FindRule(arguments[kNumber], edit.Rules);
        if (!place) return RuleCheck::Refused;
        edit.Rules.erase(edit.Rules.begin() + static_cast<std::ptrdiff_t>(*place));
        return RuleCheck::Fine;
    });
}

// Moves a rule by as many places as it takes.
RuleCheck MoveRule(RuleList& rules, std::size_t from, std::size_t to) {
    if (from == to) return RuleCheck::Unchanged;
    for (; from < to; ++from) MoveRuleDown(rules, from);
    for (; from > to; --from) MoveRuleUp(rules, from);
    return RuleCheck::Fine;
}

int Move(Session& session, const Arguments& arguments) {
    const std::string& to = arguments["TO"];
    return Edit(session, arguments, "Moved", [&](RuleEdit& edit) {
        const std::optional<std::size_t> place = FindRule(arguments[kNumber], edit.Rules);
        if (!place) return RuleCheck::Refused;
        // Beyond either end there is no place: then nothing is done.
        if (EqualFolded(to, "up")) return MoveRule(edit.Rules, *place, *place - (*place == 0 ? 0 : 1));
        if (EqualFolded(to, "down")) return MoveRule(edit.Rules, *place, std::min(*place + 1, edit.Rules.size() - 1));
        const std::optional<std::size_t> target = FindRule(to, edit.Rules);
        return target ? MoveRule(edit.Rules, *place, *target) : RuleCheck::Refused;
    });
}

// What the rules say of a fax

// The reference with the country as its identifier, or a region's identifier; none after a message.
std::optional<std::string> DestinationGiven(const std::string& given, const Destinations& places) {
    std::optional<std::string> found = places.Convert(given, ReferenceForm::Identifier);
    if (const RegionEntry* region = places.FindRegion(given); !found && region != nullptr) found = region->Identifier;
    if (!found) ShowError("--destination: \"%s\" is not defined", given);
    return found;
}

bool CheckName(std::string_view option, const std::string& name, const NameSet& names) {
    if (name.empty() || names.Has(name)) return true;
    ShowError("%s: \"%s\" is not defined", option, name);
    return false;
}

// Fills in what is given of the fax; false after a message.
bool DescribeFax(const Arguments& arguments, const RuleNames& names, RuleFilter& fax) {
    constexpr int kMostPages = 65535;
    fax.User = arguments["--user"];
    fax.Server = arguments["--server"];
    if (!CheckName("--user", fax.User, names.Users) || !CheckName("--server", fax.Server, names.Servers)) return false;
    if (!EnterPriorities(fax.Priorities, arguments["--priority"])) return false;
    if (arguments.Has("--pages")) {
        const std::optional<int> pages = NumberIn(arguments["--pages"], 0, kMostPages);
        if (!pages) ShowError("--pages: \"%s\" is not a number from 0 to %d", arguments["--pages"], kMostPages);
        if (!pages) return false;
        fax.Pages = *pages;
    }
    if (!arguments.Has("--destination")) return true;
    const std::optional<std::string> destination = DestinationGiven(arguments["--destination"], names.Places);
    fax.Destination = destination.value_or("");
    return destination.has_value();
}

struct CriterionOption {
    std::string_view Option;
    std::string_view Name;
    Criterion Kind;
};
constexpr CriterionOption kCriteria[] = {
    {"--destination", "Destination", Criterion::Destination},
    {"--user", "User", Criterion::User},
    {"--pages", "Size", Criterion::Size},
    {"--priority", "Priority", Criterion::Priority},
    {kAt, "Time", Criterion::Time},
    {"--server", "Server", Criterion::Server},
};

// What is asked about of a fax, by the options that are given.
std::vector<Criterion> AskedCriteria(const Arguments& arguments) {
    std::vector<Criterion> asked;
    for (const CriterionOption& option : kCriteria) {
        if (arguments.Has(option.Option)) asked.push_back(option.Kind);
    }
    return asked;
}

Record RecordOfVerdict(const RoutingRule& rule, std::size_t number, std::string_view criterion,
                       const Verdict& verdict) {
    return {{std::string(kRuleNumber), static_cast<std::int64_t>(number)},
            {"Description", rule.Description.String()},
            {"Criterion", std::string(criterion)},
            {"Matches", verdict.Matches},
            {"Why", std::string(verdict.Why)}};
}

// Every criterion of every rule, and one for all of them; or what speaks first against each rule up to the one that
// decides, and that one.
std::vector<Record> RecordsOfVerdict(const RuleList& rules, const FaxVerdict& judged, bool isWhole) {
    const auto nameOf = [](Criterion kind) { return std::ranges::find(kCriteria, kind, &CriterionOption::Kind)->Name; };
    std::vector<Record> records;
    for (std::size_t i = 0; i < judged.Rules.size(); ++i) {
        const auto* const against = judged.Rules[i].Against();
        for (const auto& one : judged.Rules[i].Criteria) {
            if (!isWhole && &one != against) continue;
            records.push_back(RecordOfVerdict(rules[i], i + 1, nameOf(one.first), one.second));
        }
        const bool matches = against == nullptr;
        const Verdict whole = {matches, matches ? "nothing speaks against it" : "see above"};
        if (isWhole || matches) records.push_back(RecordOfVerdict(rules[i], i + 1, "all", whole));
        if (!isWhole && matches) break;
    }
    return records;
}

int Match(Session& session, const Arguments& arguments) {
    RuleNames names;
    RuleFilter fax;
    if (!LoadRuleNames(names) || !DescribeFax(arguments, names, fax)) return kExitRefused;
    const std::optional<CalendarTime> moment = MomentGiven(session, arguments);
    if (!moment) return kExitRefused;
    const std::optional<TimeRange> offpeak = ReadOffpeak();
    if (!offpeak && arguments.Has(kAt)) return session.Refuse(FillMessage(5328));
    std::optional<RuleList> rules = ReadRules();
    if (!rules) return kExitRefused;
    if (!CheckReferences(*rules, names).empty())
        ShowWarning("References that are no longer defined are left out of the rules");

    fax.Weekday = moment->Weekday;
    fax.Hour = moment->Hours;
    fax.Minute = moment->Minutes;
    const MatchBasis basis = {names.Places, offpeak.value_or(TimeRange()), *moment};
    const FaxVerdict judged = JudgeFax(*rules, fax, AskedCriteria(arguments), basis);
    const Value deciding = judged.Deciding ? Value(static_cast<std::int64_t>(*judged.Deciding + 1)) : Value();
    PrintFindings(session, "Criteria", RecordsOfVerdict(*rules, judged, arguments.Has(kAll)),
                  {{"Rule", deciding}, {"Verdict", DescribeVerdict(*rules, judged)}});
    return kExitDone;
}

constexpr Parameter kRule = {kNumber, "The rule's number, counted from 1"};
constexpr Parameter kMoment = {kAt, "A moment in the server's time instead of now", ParameterKind::Option,
                               "YYYY-MM-DD hh:mm"};
constexpr Parameter kDrop = {kDropLost, "Remove names that are no longer defined from the rules, without asking",
                             ParameterKind::Flag};
constexpr std::string_view kKeysHelp = "Keys and values as 'show' prints them; lists are parted by commas or blanks";

constexpr Verb kVerbs[] = {
    {.Name = "status",
     .Help = "Show whether routing is enabled and ready, or what is missing",
     .Run = Located<Telling<Status>>},
    {.Name = "enable", .Help = "Enable least-cost routing, if it is ready", .Run = Located<Telling<Enable>>},
    {.Name = "disable", .Help = "Disable least-cost routing", .Run = Located<Telling<Disable>>},
    {.Name = "rules", .Help = "List the rules in their order", .Run = Located<Telling<ListRules>>},
    {.Name = "show",
     .Help = "Show every key of a rule",
     .Parameters = {{kRule}},
     .Example = "1",
     .Run = Located<Telling<Show>>},
    {.Name = "add",
     .Help = "Add a rule behind the others",
     .Parameters = {{{"DESCRIPTION", "The rule's name, at most 99 characters"},
                     kDrop,
                     {kAssignments, kKeysHelp, ParameterKind::ZeroOrMore}}},
     .Example = "'Large faxes to London' Area=UK/LON 'Size=PAGES GE 10' 'Server=LON,*'",
     .Run = Located<Add>},
    {.Name = "set",
     .Help = "Change keys of a rule",
     .Parameters = {{kRule, kDrop, {kAssignments, kKeysHelp, ParameterKind::OneOrMore}}},
     .Example = "1 Priority=NORMAL,BACKGROUND Time=OFFPEAK",
     .Run = Located<Set>},
    {.Name = "delete", .Help = "Delete a rule", .Parameters = {{kRule, kDrop}}, .Example = "2", .Run = Located<Delete>},
    {.Name = "move",
     .Help = "Move a rule to another place in the order",
     .Parameters = {{kRule, {"TO", "'up', 'down' or the number that it is to have"}, kDrop}},
     .Example = "2 up",
     .Run = Located<Move>},
    {.Name = "recover",
     .Help =
         "Take up the changes of an earlier session that were never saved; the rules that they replace are kept with "
         "the extension .old",
     .Parameters = {{{kDropPending, "Drop those changes instead", ParameterKind::Flag}}},
     .Run = Located<Recover>},
    {.Name = "permitted",
     .Help = "Show the earliest moment at which words of time permit sending",
     .Parameters = {{{"TIME", "OFFPEAK, or words as of a rule's time", ParameterKind::OneOrMore}, kMoment}},
     .Example = "SAT SUN AFTER 18:00 BEFORE 08:00 --at '2026-06-01 12:00'",
     .Run = Located<Telling<Permitted>>},
    {.Name = "match",
     .Help = "Show which rule decides on a fax and who sends it, and what speaks against the rules before",
     .Parameters = {{{"--destination", "A country, an area or a region", ParameterKind::Option, "REFERENCE"},
                     {"--user", "Who sends the fax", ParameterKind::Option, "NAME"},
                     {"--pages", "How many pages it has", ParameterKind::Option, "NUMBER"},
                     {"--priority", "Its priority, or several", ParameterKind::Option, "WORD"},
                     kMoment,
                     {"--server", "A server that could send it", ParameterKind::Option, "IDENTIFIER"},
                     {kAll, "Show every given criterion of every rule", ParameterKind::Flag}}},
     .Example = "--destination UK/LON --pages 12",
     .Run = Located<Telling<Match>>},
};

} // namespace

const Area kLcrArea = {"lcr", "Least-cost routing and its rules", kVerbs};

} // namespace bv::console
