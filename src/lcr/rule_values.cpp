#include "lcr/rule_values.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "ctlfile/key_fields.h"
#include "ctlfile/reader.h"
#include "lcr/lcr_messages.h"
#include "lcr/rule_edit.h"
#include "platform/ascii.h"
#include "voice/messages.h"

namespace bv {
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

// --- Lines of the file ---

void TakeDestination(RoutingRule& rule, std::string_view key, std::string_view value) {
    rule.Destinations.push_back({{}, std::string(key).append(" ").append(value)});
}

std::vector<std::string> DestinationValues(const RoutingRule& rule, std::string_view key) {
    std::vector<std::string> values;
    for (const RuleDestination& destination : rule.Destinations)
        if (StartsWithFolded(destination.Line, key)) values.emplace_back(KeyValue(destination.Line).value_or(""));
    return values;
}

template <auto kField>
void TakeText(RoutingRule& rule, std::string_view, std::string_view value) {
    rule.*kField = value;
}

template <auto kField>
std::vector<std::string> TextValues(const RoutingRule& rule, std::string_view) {
    if ((rule.*kField).IsEmpty()) return {};
    return {(rule.*kField).String()};
}

void TakeDescription(RoutingRule& rule, std::string_view, std::string_view value) {
    rule.Description = value.empty() ? kNoDescription : value;
}

std::vector<std::string> DescriptionValues(const RoutingRule& rule, std::string_view) {
    return {rule.Description.String()};
}

void TakeUser(RoutingRule& rule, std::string_view, std::string_view value) { rule.Users.emplace_back(value); }
std::vector<std::string> UserValues(const RoutingRule& rule, std::string_view) { return rule.Users; }

void TakePriority(RoutingRule& rule, std::string_view, std::string_view value) {
    rule.Priorities = static_cast<std::uint8_t>(rule.Priorities | PriorityBitOf(value));
}

std::vector<std::string> PriorityValues(const RoutingRule& rule, std::string_view) {
    const auto words = WordsOfPriorities(rule.Priorities);
    return {words.begin(), words.end()};
}

void TakeServer(RoutingRule& rule, std::string_view, std::string_view value) {
    if (value == kLocalServer)
        rule.AllowsLocalServer = true;
    else
        rule.Servers.emplace_back(value);
}

std::vector<std::string> ServerValues(const RoutingRule& rule, std::string_view) {
    std::vector<std::string> servers = rule.Servers;
    if (rule.AllowsLocalServer) servers.emplace_back(kLocalServer);
    return servers;
}

// --- Values that a person gives ---

bool EnterDescription(RoutingRule& rule, std::string_view, std::string_view value, const RuleNames&) {
    static constexpr ValueRule kText = {ValueRule::Form::Text, decltype(RoutingRule::Description)::kLimit};
    if (const auto fault = FaultOfValue(kDescription, kText, value)) {
        ShowError("%s", *fault);
        return false;
    }
    if (value.empty()) {
        ShowError(kRuleNeedsDescription);
        return false;
    }
    rule.Description = value;
    return true;
}

// A reference of one kind is read as one of another would be; what is entered must be of its own.
bool IsOfKind(std::string_view kind, std::string_view reference) {
    if (EqualFolded(kind, "Region")) return true;
    return (reference.find('/') != std::string_view::npos) == EqualFolded(kind, "Area");
}

bool EnterDestinations(RoutingRule& rule, std::string_view kind, std::string_view value, const RuleNames& names) {
    const std::string key = std::string(kind).append(":");
    std::vector<RuleDestination> entered;
    for (const std::string& entry : Entries(value)) {
        if (!IsOfKind(kind, entry))
            return Refuse(kind, entry,
                          EqualFolded(kind, "Area") ? "is not a country, / and an area" : "is not a country");
        RuleDestination destination = {{}, key + " " + entry};
        const std::optional<std::string> found = FindDestinationKey(names.Places, destination);
        if (!found) return Refuse(kind, entry, "is not defined");
        destination.Key = *found;
        entered.push_back(std::move(destination));
    }
    const auto isReplaced = [&key](const RuleDestination& one) { return StartsWithFolded(one.Line, key); };
    std::erase_if(rule.Destinations, isReplaced);
    rule.Destinations.insert(rule.Destinations.end(), entered.begin(), entered.end());
    return true;
}

bool EnterUsers(RoutingRule& rule, std::string_view, std::string_view value, const RuleNames& names) {
    const std::vector<std::string> users = Entries(value);
    for (const std::string& user : users) {
        if (!names.Users.Has(user)) return Refuse(kUser, user, "is not defined");
    }
    rule.Users = users;
    return true;
}

bool EnterServers(RoutingRule& rule, std::string_view, std::string_view value, const RuleNames& names) {
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

bool EnterSize(RoutingRule& rule, std::string_view, std::string_view value, const RuleNames&) {
    const std::optional<RuleSize> size = ShowSize(value);
    if (!size) return Refuse(kSize, value, "is not PAGES GE n or PAGES LE n with n from 1 to 100, or nothing");
    const std::optional<std::string> text = MakeSizeText(*size);
    if (text) rule.Size = *text;
    return text.has_value();
}

bool EnterTime(RoutingRule& rule, std::string_view, std::string_view value, const RuleNames&) {
    const std::optional<RuleTime> time = ShowTime(value);
    if (!time)
        return Refuse(kTime, value,
                      "is not PEAK, OFFPEAK, a time such as SAT SUN AFTER 18:00 BEFORE 08:00, or nothing");
    TimeField wrong = nullptr;
    const std::optional<std::string> text = MakeTimeText(*time, wrong);
    if (text) rule.Time = *text;
    return text.has_value();
}

bool EnterPrioritiesOf(RoutingRule& rule, std::string_view, std::string_view value, const RuleNames&) {
    return EnterPriorities(rule.Priorities, value);
}

constexpr RuleKey PlaceKey(std::string_view key) {
    return {key, true, true, TakeDestination, DestinationValues, EnterDestinations};
}

constexpr RuleKey kRuleKeys[] = {
    {"Description:", false, false, TakeDescription, DescriptionValues, EnterDescription},
    PlaceKey(kRegionKey),
    PlaceKey(kCountryKey),
    PlaceKey(kAreaKey),
    {"User:", true, false, TakeUser, UserValues, EnterUsers},
    {"Size:", false, false, TakeText<&RoutingRule::Size>, TextValues<&RoutingRule::Size>, EnterSize},
    {"Time:", false, false, TakeText<&RoutingRule::Time>, TextValues<&RoutingRule::Time>, EnterTime},
    {kPriorityKey, true, false, TakePriority, PriorityValues, EnterPrioritiesOf},
    {kServerKey, true, false, TakeServer, ServerValues, EnterServers},
};

// The value as a person sees it.
std::string ShownValue(const RuleKey& key, const RoutingRule& rule) {
    const std::vector<std::string> values = key.Values(rule, key.Key);
    if (key.IsList) return ListText(values);
    return values.empty() ? std::string() : values.front();
}

} // namespace

std::span<const RuleKey> RuleKeys() { return kRuleKeys; }

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

std::vector<RuleValue> RuleValues(const RoutingRule& rule) {
    std::vector<RuleValue> values;
    for (const RuleKey& key : kRuleKeys) values.push_back({key.Name(), ShownValue(key, rule)});
    return values;
}

bool EnterRuleValue(RoutingRule& rule, std::string_view key, std::string_view value, const RuleNames& names) {
    const auto* const row =
        std::ranges::find_if(kRuleKeys, [key](const RuleKey& one) { return EqualFolded(one.Name(), key); });
    if (row == std::end(kRuleKeys)) {
        ShowError(kNoSuchKey, key, value, "rules");
        return false;
    }
    return value == ShownValue(*row, rule) || row->Enter(rule, row->Name(), value, names);
}

} // namespace bv
