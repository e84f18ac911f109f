#include "routing/inward_actions.h"

#include <algorithm>
#include <map>
#include <type_traits>

#include "platform/ascii.h"
#include "routing/forwardings.h"
#include "routing/inward_rules.h"
#include "routing/routing_edit.h"
#include "routing/routing_file.h"
#include "routing/routing_messages.h"
#include "shell/server_files.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {
namespace {

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

// Whether the file can keep the rule; false after 9138 with what was entered.
template <class Rule>
bool CheckKept(const Rule& rule, std::string_view what, std::string_view text) {
    if (CanBeKept(rule)) return true;
    ShowError(kNotKeptInRouting, what, text);
    return false;
}

// What of the rule the file cannot keep, each part by itself.
RuleField FaultOfParts(const SenderIdRule& rule) {
    if (SenderRecordKey(rule.Sender).empty()) {
        ShowError(kSenderHasNoKey, rule.Sender);
        return RuleField::Key;
    }
    SenderIdRule part = {.RecordKey = "", .Sender = rule.Sender, .Organisation = "", .Addressee = "X", .User = "X"};
    if (!CheckKept(part, "Sender identifier", rule.Sender)) return RuleField::Key;
    part.Organisation = rule.Organisation;
    if (!CheckKept(part, "Organisation", rule.Organisation)) return RuleField::Organisation;
    if (rule.Addressee.empty()) return RuleField::Nothing; // which is no user's name
    part.Addressee = rule.Addressee;
    return CheckKept(part, "Messages for", rule.Addressee) ? RuleField::Nothing : RuleField::Addressee;
}

// Puts a known name into the rule, spelled as the file has it; what it was before, if any, stays as it is.
using Knows = std::optional<std::string> (*)(std::string_view name);
template <class Rule>
bool TakeName(Rule& rule, std::string Rule::*name, const std::optional<Rule>& before, Knows known) {
    if (before && EqualFolded(rule.*name, (*before).*name)) {
        rule.*name = (*before).*name;
        return true;
    }
    const auto found = known(rule.*name);
    if (found) rule.*name = *found;
    return found.has_value();
}

RuleField Written(bool isWritten, bool isNew, MessageId<0> word, const std::string& name) {
    if (!isWritten) return RuleField::File;
    if (isNew)
        ShowStatus(kAdded, FillMessage(word), name);
    else
        ShowStatus(kModified, FillMessage(word), name);
    return RuleField::Nothing;
}

// The rule as the file has it now; records may have another number. False after 9025.
template <class Rule>
bool FindAgain(const std::vector<Rule>& rules, Rule& rule, const std::string& name) {
    auto found = std::ranges::find(rules, rule);
    if constexpr (std::is_same_v<Rule, SenderIdRule>) {
        const auto isIt = [&](SenderIdRule other) {
            other.Record = rule.Record;
            return other == rule;
        };
        if (found == rules.end()) found = std::ranges::find_if(rules, isIt);
    }
    if (found == rules.end()) {
        ShowError(kChangedMeanwhile, FormatText("The rule for %s", name));
        return false;
    }
    rule = *found;
    return true;
}

// Whether the other rules leave the key to the rule, or one that has it gives way.
template <class Rule>
bool AgreeToReplace(const std::vector<Rule>& rules, const std::optional<Rule>& before, const Rule& rule,
                    std::string Rule::*key, std::string Rule::*user, Replacing replacing) {
    if (replacing == Replacing::Agreed) return true;
    bool isSkipped = false; // the rule itself; one that is just like it gives way, too
    for (const Rule& other : rules) {
        if (!isSkipped && other == before)
            isSkipped = true;
        else if (EqualFolded(other.*key, rule.*key))
            return AskQuestion(kReplaceRoutingRule, other.*key, other.*user);
    }
    return true;
}

std::ptrdiff_t CountInRecord(const std::vector<SenderIdRule>& rules, int record) {
    return std::ranges::count(rules, record, &SenderIdRule::Record);
}

// The record into which a rule goes, whose number and key it gets. A message or a question otherwise.
RuleField ChooseRecord(const std::vector<SenderIdRule>& rules, const std::optional<SenderIdRule>& before,
                       SenderIdRule& rule) {
    const bool isSame = before && SenderRecordKey(before->Sender) == SenderRecordKey(rule.Sender);
    const std::vector<SenderIdRule> records = isSame ? std::vector{*before} : SenderRecordsOf(rules, rule.Sender);
    if (!CheckOneSenderRecord(records, rule.Sender)) return RuleField::Key;
    rule.Record = kNewRecord;
    rule.RecordKey.clear();
    if (!records.empty()) {
        rule.Record = records.front().Record;
        rule.RecordKey = records.front().RecordKey;
    } else if (before) {
        const auto count = CountInRecord(rules, before->Record);
        if (count > 1 && !AskQuestion(kChangeAllOfSender, before->Sender, count)) return RuleField::Key;
        rule.Record = before->Record;
    }
    return RuleField::Nothing;
}

RuleField WriteChangedSender(const std::vector<SenderIdRule>& rules, const SenderIdRule& before,
                             const SenderIdRule& rule) {
    RoutingChanges changes;
    changes.Senders.push_back({before, rule});
    const bool isLast = rule.Record != before.Record && CountInRecord(rules, before.Record) == 1;
    if (isLast && AskQuestion(kDeleteSenderToo, before.Sender)) {
        SenderIdRule record = before;
        record.Addressee.clear();
        record.User.clear();
        changes.Senders.push_back({record, std::nullopt});
    }
    return Written(ChangeRoutingRules(changes), false, kSenderRuleWord, rule.Sender);
}

RuleField SaveSenderAmong(const std::vector<SenderIdRule>& rules, std::optional<SenderIdRule> before, SenderIdRule rule,
                          Replacing replacing) {
    if (before && !FindAgain(rules, *before, before->Sender)) return RuleField::File;
    if (const RuleField fault = ChooseRecord(rules, before, rule); fault != RuleField::Nothing) return fault;
    if (!CheckKept(rule, "Sender identifier", rule.Sender)) return RuleField::Key;
    std::vector<SenderIdRule> record = rules;
    std::erase_if(record, [&](const SenderIdRule& other) { return other.Record != rule.Record; });
    if (!AgreeToReplace(record, before, rule, &SenderIdRule::Addressee, &SenderIdRule::User, replacing))
        return RuleField::Addressee;
    if (before) return WriteChangedSender(rules, *before, rule);
    return Written(WriteSenderIdRule(rule), true, kSenderRuleWord, rule.Sender);
}

RuleField SaveSubAddressAmong(const std::vector<SubAddressRule>& rules, std::optional<SubAddressRule> before,
                              const SubAddressRule& rule, Replacing replacing) {
    if (before && !FindAgain(rules, *before, before->SubAddress)) return RuleField::File;
    if (!AgreeToReplace(rules, before, rule, &SubAddressRule::SubAddress, &SubAddressRule::User, replacing))
        return RuleField::Key;
    if (!before) return Written(WriteSubAddressRule(rule), true, kSubAddressRuleWord, rule.SubAddress);
    RoutingChanges changes;
    changes.SubAddresses.push_back({before, rule});
    return Written(ChangeRoutingRules(changes), false, kSubAddressRuleWord, rule.SubAddress);
}

// Asks whether faxes of the user may come back, if they would.
bool AgreeToCircle(const std::vector<ForwardRule>& rules, const std::optional<ForwardRule>& before,
                   const ForwardRule& rule) {
    Forwardings ways(rules);
    if (before) ways.Set(before->User, std::nullopt);
    ways.Set(rule.User, rule.Target);
    return !ways.IsInCircle(rule.User) || AskQuestion(kKeepCircle, ways.CircleText(rule.User));
}

RuleField SaveForwardAmong(const std::vector<ForwardRule>& rules, std::optional<ForwardRule> before,
                           const ForwardRule& rule, Replacing replacing) {
    if (before && !FindAgain(rules, *before, before->User)) return RuleField::File;
    if (!AgreeToReplace(rules, before, rule, &ForwardRule::User, &ForwardRule::Target, replacing))
        return RuleField::Key;
    const auto unread = UnreadForwards();
    const auto line = unread.find(UpperText(rule.User));
    if (line != unread.end() && !AskQuestion(kReplaceUnreadLine, PathOf(ServerFile::Routing), rule.User, line->second))
        return RuleField::Key;
    if (!AgreeToCircle(rules, before, rule)) return RuleField::User;
    if (!before) return Written(WriteForwardRule(rule), true, kForwardRuleWord, rule.User);
    RoutingChanges changes;
    changes.Forwards.push_back({before, rule});
    return Written(ChangeRoutingRules(changes), false, kForwardRuleWord, rule.User);
}

template <class Rule>
bool AskToDelete(const std::vector<Rule>& rules, MessageId<0> word, const std::string& name, const std::string& user) {
    const std::string kind = FillMessage(word);
    return rules.size() == 1 ? AskDelete(kind, name, user.empty() ? user : "to " + user)
                             : AskDeleteMany(rules.size(), kind + 's');
}

bool Deleted(const RoutingChanges& changes, std::size_t count, MessageId<0> word, const std::string& name) {
    if (!ChangeRoutingRules(changes)) return false;
    const std::string kind = FillMessage(word);
    if (count == 1)
        ShowStatus(kDeleted, kind, name);
    else
        ShowStatus(kDeletedMany, count, kind + 's');
    return true;
}

// The records of which all rules go, each as its own line; the rules, with the number of their record, are in the file.
std::vector<SenderIdRule> EmptiedRecords(const std::vector<SenderIdRule>& all, const std::vector<SenderIdRule>& gone) {
    std::map<int, std::ptrdiff_t> left;
    for (const SenderIdRule& rule : all) ++left[rule.Record];
    std::vector<SenderIdRule> emptied;
    for (SenderIdRule rule : gone) {
        if (--left[rule.Record] > 0 || rule.Addressee.empty()) continue;
        rule.Addressee.clear();
        rule.User.clear();
        emptied.push_back(std::move(rule));
    }
    return emptied;
}

} // namespace

RuleField SaveSenderRule(const std::optional<SenderIdRule>& before, SenderIdRule rule, Replacing replacing) {
    if (before == rule) return RuleField::Nothing;
    if (const RuleField fault = FaultOfParts(rule); fault != RuleField::Nothing) return fault;
    if (!TakeName(rule, &SenderIdRule::Addressee, before, KnownAddressee)) return RuleField::Addressee;
    if (!TakeName(rule, &SenderIdRule::User, before, KnownUser)) return RuleField::User;
    InwardRules rules;
    if (!ReadInwardRules(rules)) return RuleField::File;
    return SaveSenderAmong(rules.Senders, before, std::move(rule), replacing);
}

RuleField SaveSubAddressRule(const std::optional<SubAddressRule>& before, SubAddressRule rule, Replacing replacing) {
    if (before == rule) return RuleField::Nothing;
    if (rule.SubAddress.empty()) {
        ShowError(kNoSubAddress);
        return RuleField::Key;
    }
    if (!CheckKept(SubAddressRule{rule.SubAddress, "X"}, "Sub-address", rule.SubAddress)) return RuleField::Key;
    if (!TakeName(rule, &SubAddressRule::User, before, KnownUser)) return RuleField::User;
    if (!CheckKept(rule, "Sub-address", rule.SubAddress)) return RuleField::Key;
    InwardRules rules;
    if (!ReadInwardRules(rules)) return RuleField::File;
    return SaveSubAddressAmong(rules.SubAddresses, before, rule, replacing);
}

RuleField SaveForwardRule(const std::optional<ForwardRule>& before, ForwardRule rule, Replacing replacing) {
    if (before == rule) return RuleField::Nothing;
    if (!CheckKept(ForwardRule{rule.User, "X", rule.Deletes}, "User", rule.User)) return RuleField::Key;
    if (!TakeName(rule, &ForwardRule::User, before, KnownAddressee)) return RuleField::Key;
    if (!TakeName(rule, &ForwardRule::Target, before, KnownUser)) return RuleField::User;
    if (EqualFolded(rule.User, rule.Target)) {
        ShowError(kForwardsToItself, rule.Target);
        return RuleField::User;
    }
    InwardRules rules;
    if (!ReadInwardRules(rules)) return RuleField::File;
    return SaveForwardAmong(rules.Forwards, before, rule, replacing);
}

std::optional<std::string> OrganisationOf(const std::vector<SenderIdRule>& rules, std::string_view sender) {
    if (SenderRecordKey(sender).empty()) return {};
    const std::vector<SenderIdRule> records = SenderRecordsOf(rules, sender);
    return records.empty() ? std::nullopt : std::optional(records.front().Organisation);
}

std::string FiledText(const std::vector<SenderIdRule>& rules, std::string_view sender, int apart) {
    const std::string key = SenderRecordKey(sender);
    if (key.empty()) return {};
    std::string text = FillMessage(kFiledAs, key);
    for (const SenderIdRule& other : SenderRecordsOf(rules, sender))
        if (other.Record != apart) return text.append(", as is ").append(other.Sender);
    return text;
}

bool DeleteSenderRules(const std::vector<SenderIdRule>& rules) {
    if (rules.empty()) return true;
    if (!AskToDelete(rules, kSenderRuleWord, rules.front().Sender, rules.front().User)) return false;
    InwardRules all;
    if (!ReadInwardRules(all)) return false;
    std::vector<SenderIdRule> gone = rules;
    RoutingChanges changes;
    for (SenderIdRule& rule : gone) {
        if (!FindAgain(all.Senders, rule, rule.Sender)) return false;
        changes.Senders.push_back({rule, std::nullopt});
    }
    const std::vector<SenderIdRule> emptied = EmptiedRecords(all.Senders, gone);
    const bool goToo = !emptied.empty() && (emptied.size() == 1 ? AskQuestion(kDeleteSenderToo, emptied.front().Sender)
                                                                : AskQuestion(kDeleteSendersToo, emptied.size()));
    for (const SenderIdRule& record : goToo ? emptied : std::vector<SenderIdRule>())
        changes.Senders.push_back({record, std::nullopt});
    return Deleted(changes, rules.size(), kSenderRuleWord, rules.front().Sender);
}

bool DeleteSubAddressRules(const std::vector<SubAddressRule>& rules) {
    if (rules.empty()) return true;
    if (!AskToDelete(rules, kSubAddressRuleWord, rules.front().SubAddress, rules.front().User)) return false;
    RoutingChanges changes;
    for (const SubAddressRule& rule : rules) changes.SubAddresses.push_back({rule, std::nullopt});
    return Deleted(changes, rules.size(), kSubAddressRuleWord, rules.front().SubAddress);
}

bool DeleteForwardRules(const std::vector<ForwardRule>& rules) {
    if (rules.empty()) return true;
    if (!AskToDelete(rules, kForwardRuleWord, rules.front().User, rules.front().Target)) return false;
    RoutingChanges changes;
    for (const ForwardRule& rule : rules) changes.Forwards.push_back({rule, std::nullopt});
    return Deleted(changes, rules.size(), kForwardRuleWord, rules.front().User);
}

} // namespace bv
