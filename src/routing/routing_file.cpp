#include "routing/routing_file.h"

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/rewriter.h"
#include "ctlfile/saving.h"
#include "ctlfile/whole_file.h"
#include "platform/ascii.h"
#include "routing/routing_messages.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kNewFile = "[BRIVANE]\r\nType: RoutingInit\r\nRevision: A\r\n\r\n"
                                      "[SENDERID]\r\n\r\n[SUBADDR]\r\n\r\n[FORWARD]\r\n";
constexpr std::string_view kSenderId = "[SENDERID]";
constexpr std::string_view kSubAddress = "[SUBADDR]";
constexpr std::string_view kForward = "[FORWARD]";
constexpr std::string_view kAnyNetwork = "LAN-ANY";
constexpr std::string_view kDelete = "DELETE";
constexpr char kRecordMarker = '@';

// Never over a file that has come, or that only seemed to be away.
bool CreateRoutingFile(const std::string& path) {
    ControlStream file = OpenShared(path, "c+b");
    const bool isNew{file};
    if (!isNew && !IsMissing(path)) return true;
    if (!isNew || !file.Write(kNewFile) || !file.Close()) {
        if (isNew) {
            file.Close();
            platform::Files().Delete(path);
        }
        ShowError("Unable to create file %s", path);
        return false;
    }
    ShowStatus("Created new routing rules file (ROUTING.INI)");
    return true;
}

// Whether the stream has the header of a routing file.
bool CheckHeader(ControlStream& file) {
    ControlLine line;
    Position body = 0;
    const bool hasHeader = FindParagraph(file, "[BRIVANE]", line, &body);
    ControlLine type;
    ControlLine revision;
    if (hasHeader) {
        GetKeyString(file, "Type:", type, body);
        GetKeyString(file, "Revision:", revision, body);
    }
    if (!WasRead(file)) return false;
    if (!hasHeader) {
        ShowError("[BRIVANE] paragraph not found in routing rules file");
    } else if (!EqualFolded(type, "RoutingInit")) {
        ShowError("Invalid [BRIVANE] Type: line in routing rules file");
    } else if (revision != "A") {
        ShowError("Unknown routing rules file revision (%s)", revision);
    } else {
        return true;
    }
    return false;
}

// Steps behind the header; false after a message.
bool EnterParagraph(ControlStream& file, std::string_view header, std::string_view kind) {
    ControlLine line;
    file.Rewind();
    if (FindParagraph(file, header, line)) return true;
    if (WasRead(file)) {
        ShowError("No %s rules in routing file.  Add %s paragraph to %s", kind, header, PathOf(ServerFile::Routing));
    }
    return false;
}

template <class Rule, class Parse>
bool ReadRules(ControlStream& file, std::string_view header, std::string_view kind, Parse parse,
               const std::function<void(const Rule&)>& visit) {
    if (!EnterParagraph(file, header, kind)) return false;
    ControlLine line;
    while (FindKeyLine(file, std::nullopt, line)) {
        if (const std::optional<Rule> rule = parse(line.View())) visit(*rule);
    }
    return WasRead(file);
}

std::string_view Unescaped(std::string_view key) { return key.substr(key.starts_with('\\') ? 1 : 0); }

// The other way to escape the key that a reader takes for the same; none when there is none.
std::optional<std::string> OtherKeyOf(std::string_view paragraph, std::string_view name) {
    constexpr std::string_view kNoKeyBegins = "\\[;\" ";
    const std::string key = RoutingKey(name);
    if (!key.starts_with('\\')) return '\\' + key;
    if (kNoKeyBegins.find(key[1]) != std::string_view::npos) return {};
    if (key[1] == kRecordMarker && paragraph == kSenderId) return {};
    return key.substr(1);
}

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

// A line "@KEY: "sender" "organisation""; none when it is malformed.
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

std::string RecordKeyText(const SenderIdRule& rule) {
    return FormatText("@%s:", rule.RecordKey.empty() ? SenderRecordKey(rule.Sender) : rule.RecordKey);
}

std::string RecordValue(const SenderIdRule& rule) {
    return FormatText("\"%s\" \"%s\"", rule.Sender, rule.Organisation);
}

std::string ForwardValue(const ForwardRule& rule) {
    return FormatText("\"\" %s \"%s\" %s", kAnyNetwork, rule.Target, rule.Deletes ? kDelete : "");
}

// Whether a line is read as it was written. A colon inside a key would let another key begin the line.
bool IsKeptLine(std::string_view key, std::string_view value) {
    const std::string line = KeyedLine(key, value);
    return key.find(':') == key.size() - 1 && line.size() <= kMaxLine && FindControl(line, 0) == line.size();
}

// The line as a reader gets it.
std::string LineOf(std::string_view key, std::string_view value) { return CleanLine(KeyedLine(key, value)); }

// Runs one or more rewrites of the file, which must be a routing file.
template <class Update>
bool ChangeFile(Update update) {
    if (!OpenRoutingFile()) return false;
    const std::string path = PathOf(ServerFile::Routing);
    if (!SayingSave(path, [&] { return update(path); })) return false;
    Startup().SettingsChanged = true;
    return true;
}

// None when the file cannot be read.
std::optional<bool> HasKeyLine(const std::string& path, std::string_view paragraph, std::string_view key) {
    ControlStream file = OpenShared(path, "rb");
    ControlLine line;
    const bool hasLine = file && FindParagraph(file, paragraph, line) && FindKeyLine(file, key, line);
    if (!file || file.Failed()) return {};
    return hasLine;
}

// Makes a change to the line of a key, and takes away the one that has the same key escaped in the other way: nearly
// always there is none, and one rewrite is enough.
template <class Update>
bool ChangeLine(std::string_view paragraph, std::string_view name, std::optional<std::string_view> value,
                Update update) {
    return ChangeFile([&](const std::string& path) {
        const std::optional<std::string> other = OtherKeyOf(paragraph, name);
        const std::optional<bool> hasOther = other ? HasKeyLine(path, paragraph, *other) : false;
        return hasOther && update(path, RoutingKey(name), value) && (!*hasOther || update(path, *other, std::nullopt));
    });
}

bool ChangeKey(std::string_view paragraph, std::string_view name, std::optional<std::string_view> value) {
    return ChangeLine(paragraph, name, value, [&](const auto& path, std::string_view key, auto newValue) {
        return UpdateControlFile(path, {paragraph, key, newValue});
    });
}

// The number of records with the key that stand before the first that is well formed: a reader passes over them, and
// so does a change. None when the file cannot be read.
std::optional<int> MalformedRecords(const std::string& path, std::string_view recordKey) {
    ControlStream file = OpenShared(path, "rb");
    ControlLine line;
    int count = 0;
    bool isFound = !file || !FindParagraph(file, kSenderId, line);
    while (!isFound && FindKeyLine(file, std::nullopt, line)) {
        if (!BeginsWith(line, recordKey)) continue;
        isFound = ParseRecordLine(line).has_value();
        if (!isFound) ++count;
    }
    if (!file || file.Failed()) return {};
    return count;
}

// One change to the record that a reader takes for the key's.
bool ChangeRecord(const std::string& path, RecordChange change) {
    const std::optional<int> malformed = MalformedRecords(path, change.RecordKey);
    change.Skipped = malformed.value_or(0);
    return malformed && UpdateControlFileRecord(path, change);
}

bool ChangeAddressee(const SenderIdRule& rule, Placing recordLine, std::optional<std::string_view> user) {
    const std::string record = RecordKeyText(rule);
    const std::string value = RecordValue(rule);
    return ChangeLine(kSenderId, rule.Addressee, user, [&](const auto& path, std::string_view key, auto newUser) {
        return ChangeRecord(path, {kSenderId, record, value, recordLine, key, newUser});
    });
}

// Whether the file has a line of the name, however it is escaped; says so when not.
bool HasLineOf(std::string_view paragraph, std::string_view name) {
    if (!OpenRoutingFile()) return false;
    const std::string path = PathOf(ServerFile::Routing);
    const std::optional<bool> hasKey = HasKeyLine(path, paragraph, RoutingKey(name));
    const std::optional<std::string> other = OtherKeyOf(paragraph, name);
    const std::optional<bool> hasOther = other ? HasKeyLine(path, paragraph, *other) : false;
    if (!hasKey || !hasOther)
        ShowError(kNotReadToEnd, path);
    else if (!*hasKey && !*hasOther)
        ShowError(kRoutingRuleGone, path, name);
    return hasKey.value_or(false) || hasOther.value_or(false);
}

} // namespace

ControlStream OpenRoutingFile() {
    const std::string path = PathOf(ServerFile::Routing);
    if (IsMissing(path) && !CreateRoutingFile(path)) return {};
    ControlStream file = OpenShared(path, "rb");
    if (!file) {
        ShowError("Unable to open routing rules file (%s)", path);
        return {};
    }
    return CheckHeader(file) ? std::move(file) : ControlStream();
}

bool HasRoutingParagraph(ControlStream& file, RoutingKind kind) {
    constexpr std::string_view kHeaders[] = {kSenderId, kSubAddress, kForward};
    ControlLine line;
    file.Rewind();
    return FindParagraph(file, kHeaders[static_cast<std::size_t>(kind)], line) || file.Failed();
}

bool ReadSenderIdRules(ControlStream& file, const std::function<void(const SenderIdRule&)>& visit) {
    if (!EnterParagraph(file, kSenderId, "Sender ID")) return false;
    std::optional<SenderIdRule> record;
    int count = 0;
    bool hasEntries = true;
    const auto closeRecord = [&] {
        if (record && !hasEntries) visit(*record);
    };
    ControlLine line;
    while (FindKeyLine(file, std::nullopt, line)) {
        if (line.View().front() == kRecordMarker) {
            closeRecord();
            record = ParseRecordLine(line);
            if (record) record->Record = count;
            ++count;
            hasEntries = false;
        } else if (SenderIdRule rule = record.value_or(SenderIdRule()); record && ParseAddresseeLine(line, rule)) {
            visit(rule);
            hasEntries = true;
        }
    }
    if (!WasRead(file)) return false;
    closeRecord();
    return true;
}

bool ReadSubAddressRules(ControlStream& file, const std::function<void(const SubAddressRule&)>& visit) {
    return ReadRules(file, kSubAddress, "Sub-address", ParseSubAddressLine, visit);
}

bool ReadForwardRules(ControlStream& file, const std::function<void(const ForwardRule&)>& visit) {
    return ReadRules(file, kForward, "Automatic forwarding", ParseForwardLine, visit);
}

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
    if (!IsKeptLine(recordKey, RecordValue(rule)) || !IsKeptLine(key, rule.User)) return false;
    std::optional<SenderIdRule> back = ParseRecordLine(LineOf(recordKey, RecordValue(rule)));
    if (!back || !ParseAddresseeLine(LineOf(key, rule.User), *back)) return false;
    back->RecordKey = rule.RecordKey;
    back->Record = rule.Record;
    return !SenderRecordKey(rule.Sender).empty() && back == rule;
}

bool CanBeKept(const SubAddressRule& rule) {
    const std::string key = RoutingKey(rule.SubAddress);
    return IsKeptLine(key, rule.User) && ParseSubAddressLine(LineOf(key, rule.User)) == rule;
}

bool CanBeKept(const ForwardRule& rule) {
    const std::string key = RoutingKey(rule.User);
    return IsKeptLine(key, ForwardValue(rule)) && ParseForwardLine(LineOf(key, ForwardValue(rule))) == rule;
}

bool WriteSenderIdRule(const SenderIdRule& rule) { return ChangeAddressee(rule, Placing::InPlace, rule.User); }

bool WriteSubAddressRule(const SubAddressRule& rule) { return ChangeKey(kSubAddress, rule.SubAddress, rule.User); }

bool WriteForwardRule(const ForwardRule& rule) { return ChangeKey(kForward, rule.User, ForwardValue(rule)); }

bool DeleteSenderIdRule(const SenderIdRule& rule) {
    return HasLineOf(kSenderId, rule.Addressee) && ChangeAddressee(rule, Placing::Append, std::nullopt);
}

bool DeleteSenderRecord(const SenderIdRule& rule) {
    const std::string record = RecordKeyText(rule);
    return ChangeFile([&](const std::string& path) {
        return ChangeRecord(path, {kSenderId, record, "\"\" \"\"", Placing::Append, "", std::nullopt}) &&
               ChangeRecord(path, {kSenderId, record, std::nullopt, Placing::InPlace, "", std::nullopt});
    });
}

bool DeleteSubAddressRule(std::string_view subAddress) {
    return HasLineOf(kSubAddress, subAddress) && ChangeKey(kSubAddress, subAddress, std::nullopt);
}

bool DeleteForwardRule(std::string_view user) {
    return HasLineOf(kForward, user) && ChangeKey(kForward, user, std::nullopt);
}

} // namespace bv
