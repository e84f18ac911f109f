#include "routing/routing_actions.h"

#include <algorithm>

#include "platform/ascii.h"
#include "routing/routing_messages.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {
namespace {

// A word such as "(unaddressed)" stands for faxes that name nobody.
bool IsSpecialWord(std::string_view name) { return name.size() > 2 && name.starts_with('(') && name.ends_with(')'); }

// The name of a user or a group in upper case, as routing has it; none, after a message, when there is none.
std::optional<std::string> KnownUser(std::string_view name) {
    UserList list;
    if (!list) return {};
    const bool isKnown =
        !IsSpecialWord(name) && (list.Has(name, RecordKind::User) || list.Has(name, RecordKind::Group));
    if (!list.IsRead()) return {};
    if (isKnown) return UpperText(name);
    ShowNotFound(name, name.starts_with('@') ? RecordKind::Group : RecordKind::User);
    return {};
}

// The same, or a special word as it was given.
std::optional<std::string> KnownAddressee(std::string_view name) {
    if (IsSpecialWord(name)) return std::string(name);
    return KnownUser(name);
}

template <class Rule, auto Read>
std::optional<std::vector<Rule>> ReadFrom(ControlStream file) {
    std::vector<Rule> rules;
    if (!file || !Read(file, [&rules](const Rule& rule) { rules.push_back(rule); })) return {};
    return rules;
}

// The rules to which one is to be added: without their paragraph there are none yet.
std::optional<std::vector<SenderIdRule>> SenderRulesForChange() {
    ControlStream file = OpenRoutingFile();
    if (!file) return {};
    if (!HasRoutingParagraph(file, RoutingKind::Sender)) return std::vector<SenderIdRule>();
    return ReadFrom<SenderIdRule, ReadSenderIdRules>(std::move(file));
}

// Whether the file can keep the rule; false after 9138 with what was entered.
template <class Rule>
bool CheckKept(const Rule& rule, std::string_view what, std::string_view text) {
    if (CanBeKept(rule)) return true;
    ShowError(kNotKeptInRouting, what, text);
    return false;
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

// Whether the sender has no more than one record, of which a single rule can be changed.
bool CheckOneRecord(const std::vector<SenderIdRule>& records, std::string_view sender) {
    if (records.size() < 2) return true;
    ShowError(kSenderHasManyRecords, sender, records.size());
    return false;
}

// Whether what was entered can be kept, each part by itself.
bool CheckSenderParts(const SenderIdRule& rule) {
    SenderIdRule part = {.RecordKey = "", .Sender = rule.Sender, .Organisation = "", .Addressee = "X", .User = "X"};
    if (!CheckKept(part, "ID", rule.Sender)) return false;
    part.Organisation = rule.Organisation;
    if (!CheckKept(part, "Organisation", rule.Organisation)) return false;
    part.Addressee = rule.Addressee;
    return CheckKept(part, "ADDRESSEE", rule.Addressee);
}

bool SayThereIsNone(std::string_view what, std::string_view name) {
    ShowError(kNoRuleFor, what, name);
    return false;
}

// Whether one of the rules has that name.
template <class Rule>
bool HasRule(const std::vector<Rule>& rules, std::string Rule::*member, std::string_view name, std::string_view what) {
    const auto isIt = [&](const Rule& rule) { return EqualFolded(rule.*member, name); };
    return std::ranges::any_of(rules, isIt) || SayThereIsNone(what, name);
}

} // namespace

std::optional<std::vector<SenderIdRule>> SenderRules() {
    return ReadFrom<SenderIdRule, ReadSenderIdRules>(OpenRoutingFile());
}
std::optional<std::vector<SubAddressRule>> SubAddressRules() {
    return ReadFrom<SubAddressRule, ReadSubAddressRules>(OpenRoutingFile());
}
std::optional<std::vector<ForwardRule>> ForwardRules() {
    return ReadFrom<ForwardRule, ReadForwardRules>(OpenRoutingFile());
}

bool EnterSenderRule(std::string_view sender, std::string_view addressee, std::string_view user,
                     std::optional<std::string_view> organisation) {
    SenderIdRule rule = {.RecordKey = "",
                         .Sender = std::string(sender),
                         .Organisation = std::string(organisation.value_or("")),
                         .Addressee = std::string(addressee),
                         .User = ""};
    if (!CheckSenderParts(rule)) return false;
    const auto knownAddressee = KnownAddressee(addressee);
    const auto knownUser = knownAddressee ? KnownUser(user) : std::nullopt;
    if (!knownUser) return false;
    rule.Addressee = *knownAddressee;
    rule.User = *knownUser;
    const auto rules = SenderRulesForChange();
    if (!rules) return false;
    const std::vector<SenderIdRule> records = RecordsOf(*rules, sender);
    if (!CheckOneRecord(records, sender)) return false;
    if (!records.empty()) rule.RecordKey = records.front().RecordKey;
    if (!records.empty() && !organisation) rule.Organisation = records.front().Organisation;
    return CheckKept(rule, "ID", sender) && WriteSenderIdRule(rule);
}

bool EnterSubAddressRule(std::string_view subAddress, std::string_view user) {
    SubAddressRule rule = {std::string(subAddress), "X"};
    if (!CheckKept(rule, "NUMBER", subAddress)) return false;
    const auto known = KnownUser(user);
    if (!known) return false;
    rule.User = *known;
    return WriteSubAddressRule(rule);
}

bool EnterForwardRule(std::string_view user, std::string_view target, bool deletes) {
    ForwardRule rule = {std::string(user), "X", deletes};
    if (!CheckKept(rule, "USER", user)) return false;
    const auto knownUser = KnownAddressee(user);
    const auto knownTarget = knownUser ? KnownUser(target) : std::nullopt;
    if (!knownTarget) return false;
    rule.User = *knownUser;
    rule.Target = *knownTarget;
    return WriteForwardRule(rule);
}

bool RemoveSender(std::string_view sender, std::optional<std::string_view> addressee) {
    const auto rules = SenderRules();
    if (!rules) return false;
    const std::vector<SenderIdRule> records = RecordsOf(*rules, sender);
    if (records.empty()) return SayThereIsNone("sender", sender);
    if (!addressee) return std::ranges::all_of(records, DeleteSenderRecord);
    if (!CheckOneRecord(records, sender)) return false;
    const auto rule = std::ranges::find_if(*rules, [&](const SenderIdRule& other) {
        return other.Record == records.front().Record && EqualFolded(other.Addressee, *addressee);
    });
    if (addressee->empty() || rule == rules->end()) return SayThereIsNone("addressee", *addressee);
    return DeleteSenderIdRule(*rule);
}

bool RemoveSubAddressRule(std::string_view subAddress) {
    const auto rules = SubAddressRules();
    return rules && HasRule(*rules, &SubAddressRule::SubAddress, subAddress, "sub-address") &&
           DeleteSubAddressRule(subAddress);
}

bool RemoveForwardRule(std::string_view user) {
    const auto rules = ForwardRules();
    return rules && HasRule(*rules, &ForwardRule::User, user, "user") && DeleteForwardRule(user);
}

} // namespace bv
