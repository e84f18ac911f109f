// Inward routing: the rules by which received faxes go to users.
#include <algorithm>
#include <optional>

#include "console/commands.h"
#include "console/csv_import.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "platform/overlay_files.h"
#include "routing/inward_import.h"
#include "routing/inward_trace.h"
#include "routing/routing_actions.h"
#include "voice/format.h"

namespace bv::console {
namespace {

constexpr std::string_view kId = "ID";
constexpr std::string_view kAddressee = "ADDRESSEE";
constexpr std::string_view kNumber = "NUMBER";
constexpr std::string_view kUser = "USER";
constexpr std::string_view kTarget = "TARGET";
constexpr std::string_view kKind = "KIND";
constexpr std::string_view kOrganisation = "--organisation";
constexpr std::string_view kDeletes = "--delete";
constexpr std::string_view kFromSender = "--sender";
constexpr std::string_view kSubAddress = "--subaddr";
constexpr std::string_view kFor = "--for";

using Records = std::vector<Record>;

bool ListSenders(Records& records) {
    const auto rules = SenderRules();
    for (const SenderIdRule& rule : rules.value_or(std::vector<SenderIdRule>())) {
        const bool isEmpty = rule.Addressee.empty();
        records.push_back({{"kind", "sender"},
                           {"sender", rule.Sender},
                           {"organisation", rule.Organisation},
                           {"addressee", isEmpty ? Value() : Value(rule.Addressee)},
                           {"user", isEmpty ? Value() : Value(rule.User)}});
    }
    return rules.has_value();
}

bool ListSubAddresses(Records& records) {
    const auto rules = SubAddressRules();
    for (const SubAddressRule& rule : rules.value_or(std::vector<SubAddressRule>()))
        records.push_back({{"kind", "subaddr"}, {"number", rule.SubAddress}, {"user", rule.User}});
    return rules.has_value();
}

bool ListForwards(Records& records) {
    const auto rules = ForwardRules();
    for (const ForwardRule& rule : rules.value_or(std::vector<ForwardRule>()))
        records.push_back(
            {{"kind", "forward"}, {"user", rule.User}, {"target", rule.Target}, {"delete", rule.Deletes}});
    return rules.has_value();
}

struct Kind {
    std::string_view Word;
    bool (*List)(Records& records); // false, after a message, when the kind cannot be listed
};
constexpr Kind kKinds[] = {{"sender", ListSenders}, {"subaddr", ListSubAddresses}, {"forward", ListForwards}};

int List(Session& session, const Arguments& arguments) {
    const std::string& wanted = arguments[kKind];
    if (arguments.Has(kKind) && std::ranges::find(kKinds, wanted, &Kind::Word) == std::end(kKinds))
        return session.Refuse(FormatText("KIND: \"%s\" is not sender, subaddr or forward", wanted));
    // The first look makes the file.
    platform::OverlayFiles overlay(platform::Files());
    std::optional<platform::Substitute<platform::FileSystem>> use;
    if (session.DryRun) use.emplace(overlay);
    Records records;
    bool isWhole = true;
    for (const Kind& kind : kKinds)
        if (wanted.empty() || wanted == kind.Word) isWhole = kind.List(records) && isWhole;
    PrintRecords(session, records);
    return isWhole ? kExitDone : kExitRefused;
}

int AddSender(Session& session, const Arguments& arguments) {
    const auto organisation =
        arguments.Has(kOrganisation) ? std::optional<std::string_view>(arguments[kOrganisation]) : std::nullopt;
    return Perform(session, [&] {
        return EnterSenderRule(arguments[kId], arguments[kAddressee], arguments[kUser], organisation);
    });
}

int AddSubAddress(Session& session, const Arguments& arguments) {
    return Perform(session, [&] { return EnterSubAddressRule(arguments[kNumber], arguments[kUser]); });
}

int AddForward(Session& session, const Arguments& arguments) {
    return Perform(session,
                   [&] { return EnterForwardRule(arguments[kUser], arguments[kTarget], arguments.Has(kDeletes)); });
}

int DeleteSender(Session& session, const Arguments& arguments) {
    const auto addressee =
        arguments.Has(kAddressee) ? std::optional<std::string_view>(arguments[kAddressee]) : std::nullopt;
    return Perform(session, [&] { return RemoveSender(arguments[kId], addressee); });
}

int DeleteSubAddress(Session& session, const Arguments& arguments) {
    return Perform(session, [&] { return RemoveSubAddressRule(arguments[kNumber]); });
}

int DeleteForward(Session& session, const Arguments& arguments) {
    return Perform(session, [&] { return RemoveForwardRule(arguments[kUser]); });
}

int Try(Session& session, const Arguments& arguments) {
    InwardRules rules;
    if (!ReadInwardRules(rules)) return kExitRefused;
    const auto steps = TraceInward(rules, {arguments[kFromSender], arguments[kSubAddress], arguments[kFor]});
    Records records;
    for (const InwardStep& step : steps)
        records.push_back({{"step", std::string(StepWord(step.What))}, {"from", step.From}, {"to", step.To}});
    PrintRecords(session, records);
    if (steps.empty() && !session.Json && !session.Quiet) session.Streams.PrintNotice(TraceText(steps) + '\n');
    for (const RoutingKind kind : {RoutingKind::SubAddress, RoutingKind::Sender})
        if (const std::string why = WhyUnused(kind); !why.empty()) session.Streams.PrintNotice(why + '\n');
    return kExitDone;
}

int Import(Session& session, const Arguments& arguments) {
    InwardImport rules;
    return ImportFile(session, arguments, rules);
}

int Export(Session& session, const Arguments& arguments) {
    InwardRules rules;
    if (!ReadInwardRules(rules)) return kExitRefused;
    PrintCsv(session, arguments, InwardRulesAsCsv(rules));
    return kExitDone;
}

constexpr Parameter kIdParameter = {kId, "The sender's fax identifier; only its letters, digits and @ tell"};
constexpr Parameter kNumberParameter = {kNumber, "Sub-address that the sender transmits"};
constexpr Parameter kForwarded = {kUser, "User or group whose faxes are forwarded"};

constexpr Verb kVerbs[] = {
    {.Name = "list",
     .Help = "List the rules: sender, organisation, addressee, user; sub-address, user; user, target, and whether the "
             "first user's fax is deleted",
     .Parameters = {{{kKind, "Only those of a kind: sender, subaddr or forward", ParameterKind::Optional}}},
     .Example = "sender",
     .Run = Located<List>},
    {.Name = "add sender",
     .Help = "Route a sender's faxes for an addressee to a user; replaces the rule for both",
     .Parameters = {{kIdParameter,
                     {kAddressee, "User or group whom the fax names, or (unaddressed) for none"},
                     {kUser, "User or group to route to"},
                     {kOrganisation, "The sender's organisation; else it stays", ParameterKind::Option, "TEXT"}}},
     .Example = "'+44 171 123' '(unaddressed)' ANNA --organisation 'Smith & Co'",
     .Change = Located<AddSender>},
    {.Name = "add subaddr",
     .Help = "Route faxes that carry a sub-address to a user; replaces the rule for it",
     .Parameters = {{kNumberParameter, {kUser, "User or group to route to"}}},
     .Example = "22 ANNA",
     .Change = Located<AddSubAddress>},
    {.Name = "add forward",
     .Help = "Forward a user's faxes to another user; replaces the user's rule",
     .Parameters = {{kForwarded,
                     {kTarget, "User or group that gets them"},
                     {kDeletes, "Leave the first user no copy", ParameterKind::Flag}}},
     .Example = "BOB ANNA --delete",
     .Change = Located<AddForward>},
    {.Name = "delete sender",
     .Help = "Delete a sender's rule for an addressee, or the sender with all its rules",
     .Parameters = {{kIdParameter, {kAddressee, "Only this addressee's rule", ParameterKind::Optional}}},
     .Example = "'+44 171 123' ANNA",
     .Change = Located<DeleteSender>},
    {.Name = "delete subaddr",
     .Help = "Delete the rule for a sub-address",
     .Parameters = {{kNumberParameter}},
     .Example = "22",
     .Change = Located<DeleteSubAddress>},
    {.Name = "delete forward",
     .Help = "Delete the forwarding of a user's faxes",
     .Parameters = {{kForwarded}},
     .Example = "BOB",
     .Change = Located<DeleteForward>},
    {.Name = "try",
     .Help = "Say who gets a received fax: by its sub-address, by its sender, and by the forwardings from there on",
     .Parameters = {{{kFromSender, "The sender's fax identifier", ParameterKind::Option, "ID"},
                     {kSubAddress, "The sub-address that it carries", ParameterKind::Option, "NUMBER"},
                     {kFor, "User or group whom it names; else (unaddressed)", ParameterKind::Option, "USER"}}},
     .Example = "--sender '+44 171 123' --for ANNA",
     .Run = Located<Try>},
    {.Name = "export",
     .Help = "Print all rules as comma-separated values, with a first line of the columns' names",
     .Parameters = {{kUtf8Flag}},
     .Example = "> routing.csv",
     .Run = Located<Export>},
    {.Name = "import",
     .Help = "Add and change rules as a file of comma-separated values says; those it does not name stay",
     .Parameters = {{{.Name = "FILE",
                      .Help = "File with a first line of columns, as export prints them; only Kind must be there",
                      .IsPath = true},
                     kUtf8Flag}},
     .Example = "routing.csv --dry-run",
     .Change = Located<Import>},
};

} // namespace

const Area kRoutingArea = {"routing", "Inward routing: which user gets a received fax", kVerbs};

} // namespace bv::console
