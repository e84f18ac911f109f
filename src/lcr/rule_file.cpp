#include "lcr/rule_file.h"

#include <string_view>
#include <utility>
#include <vector>

#include "ctlfile/file_gate.h"
#include "ctlfile/lines.h"
#include "ctlfile/open_retry.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/whole_file.h"
#include "lcr/lcr_messages.h"
#include "lcr/rule_values.h"
#include "lcr/text_file.h"
#include "platform/files.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kFileHeader = "[BRIVANE]\r\nType: LCRRules\r\nRevision: A\r\n\r\n";
constexpr std::string_view kHeaderParagraph = "[BRIVANE]";
constexpr std::string_view kRuleHeader = "[RULE]";

// Takes the lines of one paragraph into a rule.
class RuleReader {
  public:
    explicit RuleReader(RoutingRule& rule) : rule_(rule), isTaken_(RuleKeys().size()) {}

    void Read(std::string_view line) {
        if (!IsSignificantLine(line)) return Keep(line); // a comment does not end a block
        if (block_ != nullptr && BeginsWith(line, block_->Key)) return Take(*block_, line);
        block_ = nullptr;
        for (std::size_t i = 0; i < RuleKeys().size(); ++i) {
            if (isTaken_[i] || !BeginsWith(line, RuleKeys()[i].Key)) continue;
            isTaken_[i] = true;
            return Begin(RuleKeys()[i], line);
        }
        Keep(line);
    }

  private:
    void Begin(const RuleKey& key, std::string_view line) {
        Take(key, line);
        if (!key.IsList) return;
        block_ = &key;
        // The first line of a block of destinations stays as it was written.
        if (key.IsPlace) rule_.Destinations.back().Line = line;
    }
    void Take(const RuleKey& key, std::string_view line) { key.Take(rule_, key.Key, KeyValue(line).value_or("")); }
    void Keep(std::string_view line) { rule_.OtherLines.emplace_back(line); }

    RoutingRule& rule_;
    std::vector<bool> isTaken_;      // by key
    const RuleKey* block_ = nullptr; // whose lines were read last
};

RoutingRule ReadRule(ControlStream& file) {
    RoutingRule rule;
    RuleReader reader(rule);
    ControlLine line;
    Position start = 0;
    while (ReadControlLine(file, line, &start) && !line.IsEmpty()) {
        if (IsParagraphLine(line)) {
            file.Seek(start);
            break;
        }
        reader.Read(line);
    }
    return rule;
}

// Whether the lines of the key say anything.
bool IsWritten(const RuleKey& key, const RoutingRule& rule) {
    return !key.IsPlace && (key.Key != kPriorityKey || !IsAnyPriority(rule.Priorities));
}

void AppendRule(std::string& text, const RoutingRule& rule) {
    text.append(kRuleHeader).append(kLineEnd);
    for (const RuleKey& key : RuleKeys()) {
        if (key.Key == kRegionKey)
            for (const RuleDestination& destination : rule.Destinations) text.append(destination.Line).append(kLineEnd);
        if (key.Key == kServerKey)
            for (const std::string& line : rule.OtherLines) text.append(line).append(kLineEnd);
        if (!IsWritten(key, rule)) continue;
        for (const std::string& value : key.Values(rule, key.Key))
            text.append(key.Key).append(" ").append(value).append(kLineEnd);
    }
    text += kLineEnd;
}

// Whether lines stand outside the rules and the file's header.
bool HasOtherText(ControlStream& file) {
    file.Rewind();
    bool isInside = false;
    for (ControlLine line; ReadControlLine(file, line);) {
        if (line.IsEmpty()) {
            isInside = false;
        } else if (IsParagraphLine(line)) {
            isInside = BeginsWith(line, kRuleHeader) || BeginsWith(line, kHeaderParagraph);
        }
        if (!line.IsEmpty() && !isInside) return true;
    }
    return false;
}

// What is said of them: 413 of what the engine reads, "File error: couldn't open" of what it writes, 5000 of both.
ReplacedFile RuleFile() {
    ReplacedFile file = LcrFile(ServerFile::Rules);
    file.NotReplaced = file.NotWritten;
    file.MayBePending = true;
    return file;
}

struct LoadedRules {
    RuleList Rules;
    TextStamp Stamp;
    bool HasOther = false; // text outside the rules
};

// Without the file there are no rules.
std::optional<LoadedRules> LoadRulesFrom(const std::string& path) {
    if (IsMissing(path)) return LoadedRules{};
    ControlStream file = OpenForReading(path);
    if (!file) return {};
    LoadedRules loaded{LoadRules(file), {}, HasOtherText(file)};
    file.Rewind();
    loaded.Stamp = StampOf({true, std::string(file.Rest())});
    return WasRead(file) ? std::optional(std::move(loaded)) : std::nullopt;
}

// Whether LCRRULES.INI still is as it was read; false after 9025, or when it cannot be read.
bool AreAsRead(const TextStamp& stamp) {
    const std::optional<TextOfFile> live = ReadTextFile(RuleFile().Path);
    if (live && StampOf(*live) != stamp) ShowError(kChangedMeanwhile, RuleFile().Path);
    return live && StampOf(*live) == stamp;
}

std::string TextOf(const RuleList& rules) {
    std::string text(kFileHeader);
    for (const RoutingRule& rule : rules) AppendRule(text, rule);
    return text;
}

} // namespace

std::string RulesPath() { return RuleFile().Path; }
std::string PendingRulesPath() { return RuleFile().NewPath; }

RuleList LoadRules(ControlStream& file) {
    RuleList rules;
    ControlLine header;
    file.Rewind();
    while (FindParagraph(file, kRuleHeader, header)) rules.push_back(ReadRule(file));
    return rules;
}

std::string RuleText(const RoutingRule& rule) {
    std::string text;
    AppendRule(text, rule);
    return text;
}

bool IsKeptByFile(const RoutingRule& rule) {
    RoutingRule readBack;
    RuleReader reader(readBack);
    const std::string written = RuleText(rule);
    std::string_view text = written;
    TakeLine(text);
    for (std::string_view rawLine = TakeLine(text); !text.empty(); rawLine = TakeLine(text)) {
        const std::string line = CleanLine(rawLine);
        if (line.empty() || IsParagraphLine(line)) return false;
        reader.Read(line);
    }
    if (IsAnyPriority(rule.Priorities)) readBack.Priorities = rule.Priorities;
    return IsSameRule(readBack, rule);
}

bool KeepRulesPending(const RuleList& rules) { return WriteNewText(RuleFile(), TextOf(rules)); }

bool SaveRules(const RuleList& rules, const TextStamp& stamp) {
    if (!ChangeLcrFile(
            RuleFile(), [&](const TextOfFile&) { return TextOf(rules); }, stamp))
        return false;
    platform::Files().Delete(PendingRulesPath()); // when nothing was to be written; one that stays is asked about
    return true;
}

TextStamp StampOfSaved(const RuleList& rules) { return StampOf(TextOfFile{true, TextOf(rules)}); }

bool AreChangedSince(const TextStamp& stamp, TextStamp& now) {
    const std::optional<TextOfFile> live = ReadText(RulesPath(), RuleFile().NotOpened);
    if (!live) return false;
    now = StampOf(*live);
    return now != stamp;
}

bool SaveRulesBehind(const RuleList& rules, const TextStamp& stamp, const std::function<FileBefore()>& saveOther) {
    if (!AreAsRead(stamp) || !KeepRulesPending(rules)) return false;
    const FileBefore other = saveOther();
    if (other == FileBefore::AsItWas) DropPendingRules();
    if (other != FileBefore::InPlace) return false;
    if (SaveRules(rules, stamp)) return true;
    KeepRulesPending(rules); // a save that fails may have taken them away
    return false;
}

PendingRules LookForPendingRules() {
    if (platform::Files().Open(PendingRulesPath(), {}).Error == platform::FileError::NotFound)
        return PendingRules::None;
    ControlStream file = OpenShared(PendingRulesPath(), "rb");
    const bool isWhole = IsWholeText(file.Rest(), RuleFile().Type);
    if (file.Failed()) return PendingRules::Unreadable;
    return isWhole ? PendingRules::Whole : PendingRules::CutOff;
}

bool AreRulesFree() {
    const PendingRules pending = LookForPendingRules();
    return pending == PendingRules::None || pending == PendingRules::CutOff;
}

bool RecoverPendingRules() {
    const ReplacedFile file = RuleFile();
    const FileGate gate(file.Path);
    if (!gate) {
        ShowError(file.NotOpened, file.Path);
        return false;
    }
    if (LookForPendingRules() != PendingRules::Whole) {
        ShowError(kNoWholeText, file.NewPath);
        return false;
    }
    if (!KeepAsOld(file.Path) || !PutNewTextInPlace(file)) return false;
    Startup().SettingsChanged = true;
    return true;
}

bool DropPendingRules() {
    const platform::FileError error = DeleteRetrying(PendingRulesPath(), SecondsOf(kDefaultTimeout));
    if (error == platform::FileError::None || error == platform::FileError::NotFound) return true;
    ShowError(kUnableToUpdateFile, PendingRulesPath());
    return false;
}

std::optional<OpenedRules> OpenRules() {
    bool recovers = false;
    switch (LookForPendingRules()) {
    case PendingRules::None: break;
    case PendingRules::CutOff: ShowWarning(kPendingRulesCutOff, PendingRulesPath()); break;
    case PendingRules::Unreadable: ShowError(kUnableToOpenFile, PendingRulesPath()); return {};
    case PendingRules::Whole:
        recovers = AskQuestion(kRecoverLastSession);
        if (!recovers) DropPendingRules();
        break;
    }
    std::optional<LoadedRules> saved = LoadRulesFrom(RulesPath());
    if (!saved) return {};
    std::optional<LoadedRules> shown = recovers ? LoadRulesFrom(PendingRulesPath()) : saved;
    if (!shown) return {};
    if (shown->HasOther) ShowWarning(kTextOutsideRules, recovers ? PendingRulesPath() : RulesPath());
    return OpenedRules{std::move(shown->Rules), saved->Stamp, recovers};
}

std::optional<RuleList> ReadRules() {
    std::optional<LoadedRules> loaded = LoadRulesFrom(PathToRead(RuleFile()));
    return loaded ? std::optional(std::move(loaded->Rules)) : std::nullopt;
}

std::optional<RuleList> ReadPendingRules() {
    if (LookForPendingRules() != PendingRules::Whole) {
        ShowError(kNoPendingChanges);
        return {};
    }
    std::optional<LoadedRules> loaded = LoadRulesFrom(PendingRulesPath());
    return loaded ? std::optional(std::move(loaded->Rules)) : std::nullopt;
}

bool AbandonRules(bool isChanged) {
    if (isChanged && !AskWarning(kLoseChanges)) return false;
    DropPendingRules();
    return true;
}

} // namespace bv
