#include "routing/routing_actions.h"

#include <algorithm>

#include "platform/ascii.h"
#include "routing/inward_actions.h"
#include "routing/inward_rules.h"
#include "routing/routing_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

template <class Rule, auto Read>
std::optional<std::vector<Rule>> ReadFrom(ControlStream file) {
    std::vector<Rule> rules;
    if (!file || !Read(file, [&rules](const Rule& rule) { rules.push_back(rule); })) return {};
    return rules;
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
                         .User = std::string(user)};
    if (!organisation) {
        InwardRules rules;
        if (!ReadInwardRules(rules)) return false;
        rule.Organisation = OrganisationOf(rules.Senders, sender).value_or("");
    }
    return SaveSenderRule({}, std::move(rule), Replacing::Agreed) == RuleField::Nothing;
}

bool EnterSubAddressRule(std::string_view subAddress, std::string_view user) {
    SubAddressRule rule = {std::string(subAddress), std::string(user)};
    return SaveSubAddressRule({}, std::move(rule), Replacing::Agreed) == RuleField::Nothing;
}

bool EnterForwardRule(std::string_view user, std::string_view target, bool deletes) {
    ForwardRule rule = {std::string(user), std::string(target), deletes};
    return SaveForwardRule({}, std::move(rule), Replacing::Agreed) == RuleField::Nothing;
}

bool RemoveSender(std::string_view sender, std::optional<std::string_view> addressee) {
    const auto rules = SenderRules();
    if (!rules) return false;
    const std::vector<SenderIdRule> records = SenderRecordsOf(*rules, sender);
    if (records.empty()) return SayThereIsNone("sender", sender);
    if (!addressee) return std::ranges::all_of(records, DeleteSenderRecord);
    if (!CheckOneSenderRecord(records, sender)) return false;
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
