#include "console/rule_keys.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "ctlfile/key_fields.h"
#include "ctlfile/reader.h"
#include "lcr/rule_edit.h"
#include "platform/ascii.h"
#include "shell/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kDescription = "Description";
constexpr std::string_view kUser = "User";
constexpr std::string_view kSize = "Size";
constexpr std::string_view kTime = "Time";
constexpr std::string_view kPriority = "Priority";
constexpr std::string_view kServer = "Server";
constexpr std::string_view kLocalServer = "*";

bool Refuse(std::string_view key, std::string_view value, std::string_view why) {
    ShowError("%s: \"%s\" %s", key, value, why);
    return false;
}

// The key without its separator.
std::string_view NameOf(std::string_view key) { return key.substr(0, key.size() - 1); }

// The entries of a list; those that hold a blank or a comma stand in quotes.
std::vector<std::string> Entries(std::string_view value) {
    std::vector<std::string> entries;
    for (std::optional<std::string_view> rest = SkipBlanks(value); rest && !rest->empty();) {
        const QuotedToken token = ParseQuotedToken(rest);
        entries.emplace_back(StripQuotes(*token.Token));
        rest = token.Rest;
    }
    return entries;
}

std::string ListText(const std::vector<std::string>& entries) {
    std::string text;
    for (const std::string& entry : entries) {
        const bool isQuoted = entry.find_first_of(" ,") != std::string::npos;
        text.append(text.empty() ? "" : ",").append(isQuoted ? "\"" + entry + "\"" : entry);
    }
    return text;
}

std::string DestinationsText(const RoutingRule& rule, std::string_view key) {
    std::vector<std::string> values;
    for (const RuleDestination& destination : rule.Destinations) {
        if (StartsWithFolded(destination.Line, key)) values.emplace_back(KeyValue(destination.Line).value_or(""));
    }
    return ListText(values);
}

std::string PrioritiesText(const RoutingRule& rule) {
    std::vector<std::string> words;
    for (const PriorityWord& priority : kPriorityWords) {
        if ((rule.Priorities & priority.Bit) != 0) words.emplace_back(priority.Word);
    }
    return ListText(words);
}

std::string ServersText(const RoutingRule& rule) {
    std::vector<std::string> servers = rule.Servers;
    if (rule.AllowsLocalServer) servers.emplace_back(kLocalServer);
    return ListText(servers);
}

bool EnterDescription(RoutingRule& rule, std::string_view value) {
    static constexpr ValueRule kText = {ValueRule::Form::Text, decltype(RoutingRule::Description)::kLimit};
    if (const auto fault = FaultOfValue(kDescription, kText, value)) {
        ShowError("%s", *fault);
        return false;
    }
    if (value.empty()) return Refuse(kDescription, value, "- a rule needs a description");
    rule.Description = value;
    return true;
}

bool EnterDestinations(RoutingRule& rule, std::string_view key, std::string_view value, const RuleNames& names) {
    std::vector<RuleDestination> entered;
    for (const std::string& entry : Entries(value)) {
        RuleDestination destination = {{}, std::string(key).append(" ").append(entry)};
        const std::optional<std::string> found = FindDestinationKey(names.Places, destination);
        if (!found) return Refuse(NameOf(key), entry, "is not defined");
        destination.Key = *found;
        entered.push_back(std::move(destination));
    }
    const auto isReplaced = [key](const RuleDestination& one) { return StartsWithFolded(one.Line, key); };
    std::erase_if(rule.Destinations, isReplaced);
    rule.Destinations.insert(rule.Destinations.end(), entered.begin(), entered.end());
    return true;
}

bool EnterUsers(RoutingRule& rule, std::string_view value, const RuleNames& names) {
    const std::vector<std::string> users = Entries(value);
    for (const std::string& user : users) {
        if (!names.Users.Has(user)) return Refuse(kUser, user, "is not defined");
    }
    rule.Users = users;
    return true;
}

bool EnterServers(RoutingRule& rule, std::string_view value, const RuleNames& names) {
    std::vector<std::string> servers = Entries(value);
    for (std::string& server : servers) {
        if (server == kLocalServer)
            server = kLocalServerName;
        else if (!names.Servers.Has(server))
            return Refuse(kServer, server, "is not defined");
    }
    SetServers(rule, servers);
    return true;
}

bool EnterSize(RoutingRule& rule, std::string_view value) {
    const std::optional<RuleSize> size = ShowSize(value);
    if (!size) return Refuse(kSize, value, "is not PAGES GE n or PAGES LE n with n from 1 to 100, or nothing");
    const std::optional<std::string> text = MakeSizeText(*size);
    if (text) rule.Size = *text;
    return text.has_value();
}

bool EnterTime(RoutingRule& rule, std::string_view value) {
    const std::optional<RuleTime> time = ShowTime(value);
    if (!time)
        return Refuse(kTime, value,
                      "is not PEAK, OFFPEAK, a time such as SAT SUN AFTER 18:00 BEFORE 08:00, or nothing");
    const std::optional<std::string> text = MakeTimeText(*time);
    if (text) rule.Time = *text;
    return text.has_value();
}

} // namespace

bool EnterPriorities(std::uint8_t& priorities, std::string_view value) {
    std::uint8_t entered = 0;
    for (const std::string& word : Entries(value)) {
        const std::uint8_t bit = PriorityBitOf(word);
        if (bit == 0) return Refuse(kPriority, word, "is not NORMAL, URGENT or BACKGROUND");
        entered = static_cast<std::uint8_t>(entered | bit);
    }
    priorities = entered;
    return true;
}

Record RecordOfRule(const RoutingRule& rule, std::size_t number) {
    Record record = {{"Rule", static_cast<std::int64_t>(number)},
                     {std::string(kDescription), rule.Description.String()}};
    for (const std::string_view key : kDestinationKeys) record.emplace_back(NameOf(key), DestinationsText(rule, key));
    record.emplace_back(kUser, ListText(rule.Users));
    record.emplace_back(kSize, rule.Size.String());
    record.emplace_back(kTime, rule.Time.String());
    record.emplace_back(kPriority, PrioritiesText(rule));
    record.emplace_back(kServer, ServersText(rule));
    return record;
}

bool EnterRuleValue(RoutingRule& rule, std::string_view key, std::string_view value, const RuleNames& names) {
    for (const std::string_view destinationKey : kDestinationKeys) {
        if (EqualFolded(key, NameOf(destinationKey))) return EnterDestinations(rule, destinationKey, value, names);
    }
    if (EqualFolded(key, kDescription)) return EnterDescription(rule, value);
    if (EqualFolded(key, kUser)) return EnterUsers(rule, value, names);
    if (EqualFolded(key, kServer)) return EnterServers(rule, value, names);
    if (EqualFolded(key, kSize)) return EnterSize(rule, value);
    if (EqualFolded(key, kTime)) return EnterTime(rule, value);
    if (EqualFolded(key, kPriority)) return EnterPriorities(rule.Priorities, value);
    return Refuse(key, value, "- rules have no such key");
}

} // namespace bv::console
