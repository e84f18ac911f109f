// Least-cost routing: whether it is switched on, its rules, and what they say of a fax.
#include <functional>
#include <optional>
#include <string>

#include "console/assignments.h"
#include "console/commands.h"
#include "console/csv_import.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "lcr/dead_rules.h"
#include "lcr/edit_lock.h"
#include "lcr/fax_entry.h"
#include "lcr/lcr_messages.h"
#include "lcr/rule_actions.h"
#include "lcr/rule_file.h"
#include "lcr/rule_import.h"
#include "lcr/rule_match.h"
#include "lcr/rule_references.h"
#include "lcr/rule_values.h"
#include "lcr/week_mask.h"
#include "options/server_options.h"
#include "platform/clock.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";
constexpr std::string_view kEditor = "rules";
constexpr std::string_view kNumber = "N";
constexpr std::string_view kRuleNumber = "Rule";
constexpr std::string_view kOtherLines = "Other lines";
constexpr std::string_view kAt = "--at";
constexpr std::string_view kDropPending = "--drop";
constexpr std::string_view kAll = "--all";
constexpr std::string_view kPending = "--pending";
constexpr std::string_view kDropLost = "--drop-lost";

// Says that there are changes which were never saved, to those who do not decide about them.
void TellOfPendingRules(const Session& session) {
    const PendingRules pending = LookForPendingRules();
    if (pending == PendingRules::Whole)
        session.Streams.PrintNotice(FillMessage(kUnsavedRuleChanges, PendingRulesPath()) + '\n');
    if (pending == PendingRules::CutOff)
        session.Streams.PrintNotice(FillMessage(kPendingRulesCutOff, PendingRulesPath()) + '\n');
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
    const std::optional<LcrHolder> holder = FindLcrHolder();
    const std::string lock = IsLcrLocked() ? "held" : "free";
    PrintRecord(session, {{"Enabled", lcr.Options.LCR},
                          {"Ready", lack == LcrLack::Nothing || lack == LcrLack::Rules},
                          {"Missing", std::string(kLacks[static_cast<std::size_t>(lack)])},
                          {"Lock", holder ? DescribeLcrHolder(*holder) : lock}});
    return kExitDone;
}

int SwitchLcr(Session& session, bool isOn) {
    Switch lcr;
    if (!LoadSwitch(session, lcr)) return kExitRefused;
    if (isOn && CheckLcrReady(lcr.Found.HasRouter, false) != LcrReadiness::Ready) return kExitRefused;
    lcr.Options.LCR = isOn;
    return Perform(session, [&] {
        if (!SaveServerOptions(lcr.Options, lcr.Saved)) return false;
        ShowStatus("Least-cost routing is %s", isOn ? "enabled" : "disabled");
        return true;
    });
}

int Enable(Session& session, const Arguments&) { return SwitchLcr(session, true); }
int Disable(Session& session, const Arguments&) { return SwitchLcr(session, false); }

// The moment of --at, or now; none after a message.
std::optional<CalendarTime> MomentGiven(const Arguments& arguments) {
    return arguments.Has(kAt) ? EnterMoment(arguments[kAt]) : ToCalendar(platform::TheClock().Now() / 1000);
}

int Permitted(Session& session, const Arguments& arguments) {
    std::string words;
    for (const std::string& word : arguments.All("TIME")) words.append(words.empty() ? "" : " ").append(word);
    const std::optional<TimeRange> range = EnterTimeRange(words);
    if (!range) return kExitRefused;
    const std::optional<CalendarTime> moment = MomentGiven(arguments);
    if (!moment) return kExitRefused;
    const std::int64_t permitted = GetPermittedTime(*moment, *range);
    const bool isNever = permitted == kNeverPermitted;
    PrintRecord(session, {{"At", MomentText(*moment)},
                          {"Permitted", isNever ? "never" : MomentText(ToCalendar(permitted))},
                          {"Seconds", isNever ? Value() : Value(permitted)}});
    return kExitDone;
}

// The hours of the week at which a rule applies, or of the off-peak period.
int Week(Session& session, const Arguments& arguments) {
    std::string time = "OFFPEAK";
    if (arguments.Has(kNumber)) {
        const std::optional<RuleList> rules = ReadRules();
        const std::optional<std::size_t> place = rules ? FindRule(*rules, arguments[kNumber]) : std::nullopt;
        if (!place) return kExitRefused;
        time = (*rules)[*place].Time.String();
    }
    const std::optional<WeekMask> week = EnterWeek(time);
    if (!week) return kExitRefused;
    std::vector<Record> records;
    for (const auto& [day, hours, times] : ShowWeek(*week))
        records.push_back({{"Day", std::string(day)}, {"Hours", hours}, {"Times", times}});
    PrintRecords(session, records);
    return kExitDone;
}

// The rules

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
    const std::optional<std::size_t> place = FindRule(*rules, arguments[kNumber]);
    if (!place) return kExitRefused;
    const RoutingRule& rule = (*rules)[*place];
    Record record = RecordOfRule(rule, *place + 1);
    record.emplace_back(kOtherLines, OtherLinesText(rule));
    PrintRecord(session, record);
    return kExitDone;
}

// The rule that the arguments name, by its number or the name that it is to have.
std::string RuleGiven(const Arguments& arguments) {
    return arguments.Has(kNumber) ? arguments[kNumber] : '"' + arguments["DESCRIPTION"] + '"';
}

// Changes the rules and says what it did; "%s" of that is the rule.
int Edit(const Session& session, const Arguments& arguments, std::string_view done, const RuleChange& change) {
    const LostNames lost = arguments.Has(kDropLost) ? LostNames::Drop : LostNames::Ask;
    RuleCheck check = RuleCheck::Refused;
    const auto noted = [&](RuleEdit& edit) { return check = change(edit); };
    return Perform(session, [&] {
        if (!RunLcrEditor([&] { return EditRules(lost, noted); }, kEditor)) return false;
        ShowStatus("%s", check == RuleCheck::Fine ? FormatText("%s rule %s", done, RuleGiven(arguments))
                                                  : std::string("Nothing was to be changed"));
        return true;
    });
}

int Recover(Session& session, const Arguments& arguments) {
    const auto recover = arguments.Has(kDropPending) ? DropPendingRules : RecoverPendingRules;
    return Perform(session, [&] {
        if (!RunLcrEditor(recover, kEditor)) return false;
        ShowStatus("%s the unsaved changes", arguments.Has(kDropPending) ? "Dropped" : "Took up");
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
        const std::optional<std::size_t> place = FindRule(edit.Rules, arguments[kNumber]);
        if (!place) return RuleCheck::Refused;
        std::vector<Assignment> values = *assignments;
        DropShown(values, kRuleNumber, std::to_string(*place + 1));
        DropShown(values, kOtherLines, OtherLinesText(edit.Rules[*place]));
        return EnterRule(edit, place, values);
    });
}

int Delete(Session& session, const Arguments& arguments) {
    return Edit(session, arguments, "Deleted", [&](RuleEdit& edit) {
        const std::optional<std::size_t> place = FindRule(edit.Rules, arguments[kNumber]);
        return place ? RemoveRule(edit.Rules, *place) : RuleCheck::Refused;
    });
}

int Move(Session& session, const Arguments& arguments) {
    const std::string& to = arguments["TO"];
    return Edit(session, arguments, "Moved", [&](RuleEdit& edit) {
        const std::optional<std::size_t> place = FindRule(edit.Rules, arguments[kNumber]);
        return place ? MoveRule(edit.Rules, *place, to) : RuleCheck::Refused;
    });
}

// What the rules say of a fax

FaxDescription GivenFax(const Arguments& arguments) {
    const auto given = [&](std::string_view option) {
        return arguments.Has(option) ? std::optional(arguments[option]) : std::nullopt;
    };
    return {given("--destination"), given("--user"), given("--server"), given("--priority"), given("--pages")};
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

// The rules without the names that are no longer defined, which a warning tells of; none after a message.
std::optional<RuleList> ReadCheckedRules(const RuleNames& names, bool isPending = false) {
    std::optional<RuleList> rules = isPending ? ReadPendingRules() : ReadRules();
    if (rules && !CheckReferences(*rules, names).empty())
        ShowWarning("References that are no longer defined are left out of the rules");
    return rules;
}

int Match(Session& session, const Arguments& arguments) {
    RuleNames names;
    RuleFilter fax;
    if (!LoadRuleNames(names) || !DescribeFax(GivenFax(arguments), names, fax)) return kExitRefused;
    const std::optional<CalendarTime> moment = MomentGiven(arguments);
    if (!moment) return kExitRefused;
    const std::optional<TimeRange> offpeak = ReadOffpeak();
    if (!offpeak && arguments.Has(kAt)) return session.Refuse(FillMessage(kOffpeakUnknown));
    const std::optional<RuleList> rules = ReadCheckedRules(names, arguments.Has(kPending));
    if (!rules) return kExitRefused;

    fax.Weekday = moment->Weekday;
    fax.Hour = moment->Hours;
    fax.Minute = moment->Minutes;
    const MatchBasis basis = {names.Places, offpeak, *moment};
    const FaxVerdict judged = JudgeFax(*rules, fax, AskedCriteria(arguments), basis);
    const Value deciding = judged.Deciding ? Value(static_cast<std::int64_t>(*judged.Deciding + 1)) : Value();
    PrintFindings(session, "Criteria", RecordsOfVerdict(*rules, judged, arguments.Has(kAll)),
                  {{"Rule", deciding}, {"Verdict", DescribeVerdict(*rules, judged)}});
    return kExitDone;
}

int Dead(Session& session, const Arguments&) {
    RuleNames names;
    if (!LoadRuleNames(names)) return kExitRefused;
    const std::optional<RuleList> rules = ReadCheckedRules(names);
    if (!rules) return kExitRefused;
    std::vector<Record> records;
    for (const DeadRule& dead : FindDeadRules(*rules, names.Places, ReadOffpeak()))
        records.push_back({{std::string(kRuleNumber), static_cast<std::int64_t>(dead.Rule + 1)},
                           {"Description", (*rules)[dead.Rule].Description.String()},
                           {"Why", DescribeDeadRule(*rules, dead)}});
    PrintRecords(session, records);
    return kExitDone;
}

int Import(Session& session, const Arguments& arguments) {
    RuleImport rules;
    return ImportFile(session, arguments, rules);
}

int Export(Session& session, const Arguments& arguments) {
    const std::optional<RuleList> rules = ReadRules();
    if (!rules) return kExitRefused;
    PrintCsv(session, arguments, RulesAsCsv(*rules));
    return kExitDone;
}

constexpr Parameter kRule = {kNumber, "The rule's number, counted from 1"};
constexpr Parameter kMoment = {kAt, "A moment in the server's time instead of now", ParameterKind::Option,
                               "YYYY-MM-DD hh:mm"};
constexpr Parameter kDrop = {kDropLost, "Remove names that are no longer defined from the rules, without asking",
                             ParameterKind::Flag};
constexpr std::string_view kKeysHelp = "Keys and values as 'show' prints them; lists are parted by commas or blanks";

// It has two names.
constexpr Verb VerbOfFax(std::string_view name, std::string_view help) {
    return {.Name = name,
            .Help = help,
            .Parameters = {{{"--destination", "A country, an area, a region, or the number that is dialled",
                             ParameterKind::Option, "DESTINATION"},
                            {"--user", "Who sends the fax", ParameterKind::Option, "NAME"},
                            {"--pages", "How many pages it has", ParameterKind::Option, "NUMBER"},
                            {"--priority", "Its priority, or several", ParameterKind::Option, "WORD"},
                            kMoment,
                            {"--server", "A server that could send it", ParameterKind::Option, "IDENTIFIER"},
                            {kPending, "Go by the unsaved changes of the rules in place of the saved ones",
                             ParameterKind::Flag},
                            {kAll, "Show every given criterion of every rule", ParameterKind::Flag}}},
            .Example = "--destination '+44 20 7946 0018' --pages 12",
            .Run = Located<Telling<Match>>};
}

constexpr Verb kVerbs[] = {
    {.Name = "status",
     .Help = "Show whether routing is enabled and ready, or what is missing, and who edits it",
     .Run = Located<Telling<Status>>},
    {.Name = "enable", .Help = "Enable least-cost routing, if it is ready", .Change = Located<Telling<Enable>>},
    {.Name = "disable", .Help = "Disable least-cost routing", .Change = Located<Telling<Disable>>},
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
     .Change = Located<Add>},
    {.Name = "set",
     .Help = "Change keys of a rule",
     .Parameters = {{kRule, kDrop, {kAssignments, kKeysHelp, ParameterKind::OneOrMore}}},
     .Example = "1 Priority=NORMAL,BACKGROUND Time=OFFPEAK",
     .Change = Located<Set>},
    {.Name = "delete",
     .Help = "Delete a rule",
     .Parameters = {{kRule, kDrop}},
     .Example = "2",
     .Change = Located<Delete>},
    {.Name = "move",
     .Help = "Move a rule to another place in the order",
     .Parameters = {{kRule, {"TO", "'up', 'down' or the number that it is to have"}, kDrop}},
     .Example = "2 up",
     .Change = Located<Move>},
    {.Name = "recover",
     .Help =
         "Take up the changes of an earlier session that were never saved; the rules that they replace are kept with "
         "the extension .old",
     .Parameters = {{{kDropPending, "Drop those changes instead", ParameterKind::Flag}}},
     .Change = Located<Recover>},
    {.Name = "permitted",
     .Help = "Show the earliest moment at which words of time permit sending",
     .Parameters = {{{"TIME", "OFFPEAK, or words as of a rule's time", ParameterKind::OneOrMore}, kMoment}},
     .Example = "SAT SUN AFTER 18:00 BEFORE 08:00 --at '2026-06-01 12:00'",
     .Run = Located<Telling<Permitted>>},
    {.Name = "dead",
     .Help = "List the rules that can never decide, each with the earlier rule that takes all its faxes",
     .Run = Located<Telling<Dead>>},
    {.Name = "week",
     .Help =
         "Show at which hours of the week a rule applies: day, its 24 hours (# all of it, + a part, . nothing), times",
     .Parameters = {{{kNumber, "The rule's number; without one, the off-peak period", ParameterKind::Optional}}},
     .Example = "1",
     .Run = Located<Telling<Week>>},
    VerbOfFax("match", "Show which rule decides on a fax and who sends it, and what speaks against the rules before"),
    VerbOfFax("try", "The same as match, by the name that 'routing' has for it"),
    {.Name = "export",
     .Help = "Print the rules as comma-separated values, with a first line of the columns' names",
     .Parameters = {{kUtf8Flag}},
     .Example = "> rules.csv",
     .Run = Located<Telling<Export>>},
    {.Name = "import",
     .Help = "Change rules and add new ones behind the others, as a file of comma-separated values says",
     .Parameters = {{{.Name = "FILE",
                      .Help =
                          "File with a first line of columns, as export prints them; only Description must be there",
                      .IsPath = true},
                     kUtf8Flag}},
     .Example = "rules.csv --dry-run",
     .Change = Located<Import>},
};

} // namespace

const Area kLcrArea = {"lcr", "Least-cost routing and its rules", kVerbs};

} // namespace bv::console
