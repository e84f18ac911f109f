#include "routing/routing_file.h"

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/rewriter.h"
#include "ctlfile/saving.h"
#include "ctlfile/whole_file.h"
#include "platform/ascii.h"
#include "routing/routing_lines.h"
#include "routing/routing_messages.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kNewFile = "[BRIVANE]\r\nType: RoutingInit\r\nRevision: A\r\n\r\n"
                                      "[SENDERID]\r\n\r\n[SUBADDR]\r\n\r\n[FORWARD]\r\n";
constexpr std::string_view kSenderId = HeaderOf(RoutingKind::Sender);
constexpr std::string_view kSubAddress = HeaderOf(RoutingKind::SubAddress);
constexpr std::string_view kForward = HeaderOf(RoutingKind::Forward);

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

// The other way to escape the key that a reader takes for the same; none when there is none.
std::optional<std::string> OtherKeyOf(std::string_view paragraph, std::string_view name) {
    constexpr std::string_view kNoKeyBegins = "\\[;\" ";
    const std::string key = RoutingKey(name);
    if (!key.starts_with('\\')) return '\\' + key;
    if (kNoKeyBegins.find(key[1]) != std::string_view::npos) return {};
    if (key[1] == kRecordMarker && paragraph == kSenderId) return {};
    return key.substr(1);
}

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
    ControlLine line;
    file.Rewind();
    return FindParagraph(file, HeaderOf(kind), line) || file.Failed();
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
