// Inward routing: the rules by which received faxes go to users.
#include <algorithm>
#include <functional>
#include <optional>

#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "platform/ascii.h"
#include "platform/overlay_files.h"
#include "routing/routing_file.h"
#include "shell/format.h"
#include "users/user_list.h"

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

// A word such as "(unaddressed)" stands for faxes that name nobody.
bool IsSpecialWord(std::string_view name) { return name.size() > 2 && name.starts_with('(') && name.ends_with(')'); }

// The user's name in upper case, as routing has it; none, after a message, when there is no such user.
std::optional<std::string> KnownUser(std::string_view name) {
    UserList list;
    if (!list) return {};
    const bool isUser = !IsSpecialWord(name) && list.Has(name, RecordKind::User);
    if (!list.IsRead()) return {};
    if (isUser) return UpperText(name);
    ShowNotFound(name, RecordKind::User);
    return {};
}

// The same, or a special word as it was given.
std::optional<std::string> KnownAddressee(std::string_view name) {
    if (IsSpecialWord(name)) return std::string(name);
    return KnownUser(name);
}

// All rules of a kind; none, after a message, when they cannot be read.
template <class Rule, auto Read>
std::optional<std::vector<Rule>> RulesOf() {
    ControlStream file = OpenRoutingFile();
    if (!file) return {};
    std::vector<Rule> rules;
    if (!Read(file, [&rules](const Rule& rule) { rules.push_back(rule); })) return {};
    return rules;
}
auto SenderRules() { return RulesOf<SenderIdRule, ReadSenderIdRules>(); }
auto SubAddressRules() { return RulesOf<SubAddressRule, ReadSubAddressRules>(); }
auto ForwardRules() { return RulesOf<ForwardRule, ReadForwardRules>(); }

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

int RefuseText(const Session& session, std::string_view name, std::string_view value) {
    return session.Refuse(FormatText("%s: \"%s\" cannot be kept in the routing file", name, value));
}

// The first rule of each of a sender's records: of those with its key or, without one, of those with its identifier,
// which somebody has filed under another key.
std::vector<SenderIdRule> RecordsOf(const std::vector<SenderIdRule>& rules, std::string_view sender) {
    const std::string key = SenderRecordKey(sender);
    std::vector<SenderIdRule> records;
    for (const auto name : {&SenderIdRule::RecordKey, &SenderIdRule::Sender}) {
        for (const SenderIdRule& rule : rules) {
            const bool isKnown = !records.empty() && records.back().Record == rule.Record;
            if (SenderRecordKey(rule.*name) == key && !isKnown) records.push_back(rule);
        }
        if (!records.empty()) break;
    }
    return records;
}

// Whether the sender has no more than one record, of which a single rule can be changed; false after a message.
bool IsOneRecord(const Session& session, const std::vector<SenderIdRule>& records, std::string_view sender) {
    if (records.size() < 2) return true;
    return session.Refuse(
               FormatText("ID: \"%s\" has %d records in the routing file; delete the sender and add its rules "
                          "again",
                          sender, records.size())) == kExitDone;
}

int AddSender(Session& session, const Arguments& arguments) {
    SenderIdRule rule = {.RecordKey = "", .Sender = arguments[kId], .Organisation = "", .Addressee = "X", .User = "X"};
    if (!CanBeKept(rule)) return RefuseText(session, kId, rule.Sender);
    rule.Organisation = arguments[kOrganisation];
    if (!CanBeKept(rule)) return RefuseText(session, kOrganisation, rule.Organisation);
    rule.Addressee = arguments[kAddressee];
    if (!CanBeKept(rule)) return RefuseText(session, kAddressee, rule.Addressee);
    const auto addressee = KnownAddressee(rule.Addressee);
    const auto user = addressee ? KnownUser(arguments[kUser]) : std::nullopt;
    if (!user) return kExitRefused;
    rule.Addressee = *addressee;
    rule.User = *user;
    return Perform(session, [&] {
        const auto rules = SenderRules();
        if (!rules) return false;
        const std::vector<SenderIdRule> records = RecordsOf(*rules, rule.Sender);
        if (!IsOneRecord(session, records, rule.Sender)) return false;
        if (!records.empty()) rule.RecordKey = records.front().RecordKey;
        if (!records.empty() && !arguments.Has(kOrganisation)) rule.Organisation = records.front().Organisation;
        if (!CanBeKept(rule)) return RefuseText(session, kId, rule.Sender) == kExitDone;
        return WriteSenderIdRule(rule);
    });
}

int AddSubAddress(Session& session, const Arguments& arguments) {
    SubAddressRule rule = {arguments[kNumber], "X"};
    if (!CanBeKept(rule)) return RefuseText(session, kNumber, rule.SubAddress);
    const auto user = KnownUser(arguments[kUser]);
    if (!user) return kExitRefused;
    rule.User = *user;
    return Perform(session, [&] { return WriteSubAddressRule(rule); });
}

int AddForward(Session& session, const Arguments& arguments) {
    ForwardRule rule = {arguments[kUser], "X", arguments.Has(kDeletes)};
    if (!CanBeKept(rule)) return RefuseText(session, kUser, rule.User);
    const auto user = KnownAddressee(rule.User);
    const auto target = user ? KnownUser(arguments[kTarget]) : std::nullopt;
    if (!target) return kExitRefused;
    rule.User = *user;
    rule.Target = *target;
    return Perform(session, [&] { return WriteForwardRule(rule); });
}

bool SayThereIsNone(const Session& session, std::string_view what, std::string_view name) {
    session.Streams.PrintNotice(FormatText("There is no rule for %s %s\n", what, name));
    return false;
}

int DeleteSender(Session& session, const Arguments& arguments) {
    return Perform(session, [&] {
        const auto rules = SenderRules();
        if (!rules) return false;
        const std::vector<SenderIdRule> records = RecordsOf(*rules, arguments[kId]);
        if (records.empty()) return SayThereIsNone(session, "sender", arguments[kId]);
        if (!arguments.Has(kAddressee)) return std::ranges::all_of(records, DeleteSenderRecord);
        if (!IsOneRecord(session, records, arguments[kId])) return false;
        const auto rule = std::ranges::find_if(*rules, [&](const SenderIdRule& other) {
            return other.Record == records.front().Record && EqualFolded(other.Addressee, arguments[kAddressee]);
        });
        if (arguments[kAddressee].empty() || rule == rules->end())
            return SayThereIsNone(session, "addressee", arguments[kAddressee]);
        return DeleteSenderIdRule(*rule);
    });
}

int DeleteSubAddress(Session& session, const Arguments& arguments) {
    const std::string& number = arguments[kNumber];
    return Perform(session, [&] {
        const auto rules = SubAddressRules();
        if (!rules) return false;
        const auto isIt = [&](const SubAddressRule& rule) { return EqualFolded(rule.SubAddress, number); };
        if (std::ranges::none_of(*rules, isIt)) return SayThereIsNone(session, "sub-address", number);
        return DeleteSubAddressRule(number);
    });
}

int DeleteForward(Session& session, const Arguments& arguments) {
    const std::string& user = arguments[kUser];
    return Perform(session, [&] {
        const auto rules = ForwardRules();
        if (!rules) return false;
        const auto isIt = [&](const ForwardRule& rule) { return EqualFolded(rule.User, user); };
        if (std::ranges::none_of(*rules, isIt)) return SayThereIsNone(session, "user", user);
        return DeleteForwardRule(user);
    });
}

constexpr Parameter kIdParameter = {kId, "The sender's fax identifier; only its letters, digits and @ tell"};
constexpr Parameter kNumberParameter = {kNumber, "Sub-address that the sender transmits"};
constexpr Parameter kForwarded = {kUser, "User whose faxes are forwarded"};

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
                     {kAddressee, "User whom the fax names, or (unaddressed) for none"},
                     {kUser, "User to route to"},
                     {kOrganisation, "The sender's organisation; else it stays", ParameterKind::Option, "TEXT"}}},
     .Example = "'+44 171 123' '(unaddressed)' ANNA --organisation 'Smith & Co'",
     .Run = Located<AddSender>},
    {.Name = "add subaddr",
     .Help = "Route faxes that carry a sub-address to a user; replaces the rule for it",
     .Parameters = {{kNumberParameter, {kUser, "User to route to"}}},
     .Example = "22 ANNA",
     .Run = Located<AddSubAddress>},
    {.Name = "add forward",
     .Help = "Forward a user's faxes to another user; replaces the user's rule",
     .Parameters = {{kForwarded,
                     {kTarget, "User who gets them"},
                     {kDeletes, "Leave the first user no copy", ParameterKind::Flag}}},
     .Example = "BOB ANNA --delete",
     .Run = Located<AddForward>},
    {.Name = "delete sender",
     .Help = "Delete a sender's rule for an addressee, or the sender with all its rules",
     .Parameters = {{kIdParameter, {kAddressee, "Only this addressee's rule", ParameterKind::Optional}}},
     .Example = "'+44 171 123' ANNA",
     .Run = Located<DeleteSender>},
    {.Name = "delete subaddr",
     .Help = "Delete the rule for a sub-address",
     .Parameters = {{kNumberParameter}},
     .Example = "22",
     .Run = Located<DeleteSubAddress>},
    {.Name = "delete forward",
     .Help = "Delete the forwarding of a user's faxes",
     .Parameters = {{kForwarded}},
     .Example = "BOB",
     .Run = Located<DeleteForward>},
};

} // namespace

const Area kRoutingArea = {"routing", "Inward routing: which user gets a received fax", kVerbs};

} // namespace bv::console
