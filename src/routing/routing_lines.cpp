#include "routing/routing_lines.h"

#include <algorithm>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr std::string_view kAnyNetwork = "LAN-ANY";
constexpr std::string_view kDelete = "DELETE";

std::string_view Unescaped(std::string_view key) { return key.substr(key.starts_with('\\') ? 1 : 0); }

// The first token of a line as a key, with what follows it; none when it is no key with its colon.
struct KeyedTokens {
    std::string Key;
    std::optional<std::string_view> Rest;
};
std::optional<KeyedTokens> ParseKeyedTokens(std::string_view line) {
    const auto [token, rest] = ParseQuotedToken(line);
    if (!token || !token->ends_with(':')) return {};
    const std::string_view key = Unescaped(token->substr(0, token->size() - 1));
    if (key.empty()) return {};
    return KeyedTokens{std::string(key), rest};
}

bool IsQuoted(const std::optional<std::string_view>& token) { return token && token->starts_with('"'); }

// Whether a line is read as it was written. A colon inside a key would let another key begin the line.
bool IsKeptLine(std::string_view key, std::string_view value) {
    const std::string line = KeyedLine(key, value);
    return key.find(':') == key.size() - 1 && line.size() <= kMaxLine && FindControl(line, 0) == line.size();
}

// The line as a reader gets it.
std::string ReadLine(std::string_view key, std::string_view value) { return CleanLine(KeyedLine(key, value)); }

} // namespace

std::optional<SenderIdRule> ParseRecordLine(std::string_view line) {
    const auto [key, afterKey] = ParseQuotedToken(line.substr(1));
    const auto [sender, afterSender] = ParseQuotedToken(afterKey);
    if (!key || !key->ends_with(':') || !IsQuoted(sender)) return {};
    SenderIdRule record;
    record.RecordKey = key->substr(0, key->size() - 1);
    record.Sender = StripQuotes(*sender);
    if (record.Sender.empty()) record.Sender = record.RecordKey;
    record.Organisation = StripQuotes(ParseQuotedToken(afterSender).Token.value_or(""));
    return record;
}

// Completes the record's rule from one of its lines; false when the line is no entry.
bool ParseAddresseeLine(std::string_view line, SenderIdRule& rule) {
    const std::size_t colon = line.find_first_of(":=");
    if (colon == std::string_view::npos || line[colon] != ':') return false;
    rule.Addressee = Unescaped(line.substr(0, colon));
    rule.User = KeyValue(line).value_or("");
    return !rule.Addressee.empty();
}

std::optional<SubAddressRule> ParseSubAddressLine(std::string_view line) {
    const auto keyed = ParseKeyedTokens(line);
    if (!keyed) return {};
    return SubAddressRule{keyed->Key, UpperText(ParseQuotedToken(keyed->Rest).Token.value_or(""))};
}

std::optional<ForwardRule> ParseForwardLine(std::string_view line) {
    const auto keyed = ParseKeyedTokens(line);
    if (!keyed) return {};
    QuotedToken network = ParseQuotedToken(keyed->Rest);
    if (IsQuoted(network.Token)) network = ParseQuotedToken(network.Rest);
    if (!network.Token || !EqualFolded(*network.Token, kAnyNetwork)) return {};
    const auto [target, afterTarget] = ParseQuotedToken(network.Rest);
    if (!IsQuoted(target)) return {};
    const std::string_view last = ParseQuotedToken(afterTarget).Token.value_or("");
    return ForwardRule{keyed->Key, UpperText(StripQuotes(*target)), EqualFolded(last, kDelete)};
}

std::optional<std::string> KeyOfLine(std::string_view line) {
    auto keyed = ParseKeyedTokens(line);
    return keyed ? std::optional(std::move(keyed->Key)) : std::nullopt;
}

std::string RecordKeyText(const SenderIdRule& rule) {
    return FormatText("@%s:", rule.RecordKey.empty() ? SenderRecordKey(rule.Sender) : rule.RecordKey);
}

std::string RecordValue(const SenderIdRule& rule) {
    return FormatText("\"%s\" \"%s\"", rule.Sender, rule.Organisation);
}

std::string ForwardValue(const ForwardRule& rule) {
    return FormatText("\"\" %s \"%s\" %s", kAnyNetwork, rule.Target, rule.Deletes ? kDelete : "");
}

std::string RecordLineOf(const SenderIdRule& rule) { return KeyedLine(RecordKeyText(rule), RecordValue(rule)); }

std::string LineOf(const SenderIdRule& rule) { return KeyedLine(RoutingKey(rule.Addressee), rule.User); }

std::string LineOf(const SubAddressRule& rule) { return KeyedLine(RoutingKey(rule.SubAddress), rule.User); }

std::string LineOf(const ForwardRule& rule) { return KeyedLine(RoutingKey(rule.User), ForwardValue(rule)); }

std::string RoutingKey(std::string_view name) {
    const bool isPlain = !name.empty() && (IsLetter(name.front()) || IsDigit(name.front()));
    return std::string(isPlain ? "" : "\\").append(name).append(":");
}

std::string SenderRecordKey(std::string_view sender) {
    std::string key = UpperText(sender);
    std::erase_if(key, [](char c) { return !IsLetter(c) && !IsDigit(c) && c != kRecordMarker; });
    return key;
}

bool CanBeKept(const SenderIdRule& rule) {
    const std::string recordKey = RecordKeyText(rule);
    const std::string key = RoutingKey(rule.Addressee);
    const bool hasEntry = !rule.Addressee.empty() || !rule.User.empty();
    if (!IsKeptLine(recordKey, RecordValue(rule)) || (hasEntry && !IsKeptLine(key, rule.User))) return false;
    std::optional<SenderIdRule> back = ParseRecordLine(ReadLine(recordKey, RecordValue(rule)));
    if (!back || (hasEntry && !ParseAddresseeLine(ReadLine(key, rule.User), *back))) return false;
    back->RecordKey = rule.RecordKey;
    back->Record = rule.Record;
    return !SenderRecordKey(rule.Sender).empty() && back == rule;
}

bool CanBeKept(const SubAddressRule& rule) {
    const std::string key = RoutingKey(rule.SubAddress);
    return IsKeptLine(key, rule.User) && ParseSubAddressLine(ReadLine(key, rule.User)) == rule;
}

bool CanBeKept(const ForwardRule& rule) {
    const std::string key = RoutingKey(rule.User);
    return IsKeptLine(key, ForwardValue(rule)) && ParseForwardLine(ReadLine(key, ForwardValue(rule))) == rule;
}

} // namespace bv
