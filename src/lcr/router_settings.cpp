#include "lcr/router_settings.h"

#include <algorithm>
#include <array>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/whole_file.h"
#include "lcr/text_file.h"
#include "platform/ascii.h"
#include "platform/drives.h"
#include "platform/files.h"
#include "shell/server_files.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

using Settings = RouterSettings;

constexpr std::string_view kHeader = "[ROUTER]";

template <std::string Settings::*Member>
constexpr KeyField<Settings> TextRow(std::string_view key, const ValueRule& rule) {
    return {key, rule, [](const Settings& settings) { return settings.*Member; },
            [](Settings& settings, std::string_view text) {
                settings.*Member = text;
                return true;
            }};
}

template <HourMinute Settings::*Member>
KeyField<Settings> TimeRow(std::string_view key) {
    return {key, HourMinuteRule(), [](const Settings& settings) { return FormatHourMinute(settings.*Member); },
            [](Settings& settings, std::string_view text) {
                settings.*Member = ParseHourMinute(text);
                return true;
            }};
}

constexpr bool IsQuotable(std::string_view text, std::size_t limit) {
    return text.size() <= limit && text.find('"') == std::string_view::npos;
}

constexpr ValueRule OtherRule(std::string_view description, bool (*isGood)(std::string_view), std::size_t limit) {
    return {ValueRule::Form::Other, limit, {}, description, isGood};
}

constexpr std::size_t kIdLimit = 19;
constexpr std::size_t kLoginLimit = 99;
constexpr ValueRule kIdRule = OtherRule(
    "a name of 1 to 19 characters without blanks, commas and quotes",
    [](std::string_view text) { return IsToken(text, kIdLimit); }, kIdLimit);
constexpr std::size_t kPathLimit = 259;
constexpr ValueRule kQuotedPathRule = OtherRule(
    "a path of at most 259 characters without quotes",
    [](std::string_view text) { return IsQuotable(text, kPathLimit); }, kPathLimit);
constexpr ValueRule kQuotedRule = OtherRule(
    "a text of at most 99 characters without quotes",
    [](std::string_view text) { return IsQuotable(text, kLoginLimit); }, kLoginLimit);

constexpr KeyField<Settings> kEmailType = [] {
    KeyField<Settings> field = FieldOf<&Settings::Email>("EmailType:");
    field.Store = [](Settings& settings, std::string_view text) {
        if (!ValueCodec<EmailType>::Store(settings.Email, text)) settings.Email = EmailType::OtherMapi;
        return true;
    };
    return field;
}();

bool Always(const Settings&) { return true; }
bool Never(const Settings&) { return false; }
bool WithEmail(const Settings& settings) { return settings.EmailEnabled; }
bool WithNotes(const Settings& settings) { return settings.EmailEnabled && settings.Email == EmailType::LotusNotes; }
bool WithWan(const Settings& settings) { return settings.WanEnabled; }

const std::array kKeys = {
    RouterKey{TextRow<&Settings::LocalServerId>("LocalServerID:", kIdRule), LinePart::Token, Always},
    RouterKey{TextRow<&Settings::LocalServerDescription>("Description:", kQuotedRule), LinePart::SecondToken, Always},
    RouterKey{FieldOf<&Settings::EmailEnabled>("EmailEnabled:")},
    RouterKey{kEmailType, LinePart::Value, WithEmail},
    RouterKey{TextRow<&Settings::EmailLoginName>("EmailLoginName:", kQuotedRule), LinePart::QuotedToken, WithEmail},
    RouterKey{TextRow<&Settings::NotesIdFile>("NotesIdFile:", kQuotedPathRule), LinePart::SecondToken, WithNotes},
    RouterKey{TextRow<&Settings::EmailLoginParams>("EmailLoginParams:", {ValueRule::Form::ScrambledPassword}),
              LinePart::Value, WithEmail},
    RouterKey{TimeRow<&Settings::EmailPollInterval>("EmailInboxPollFreq:"), LinePart::Value, WithEmail},
    RouterKey{FieldOf<&Settings::WanEnabled>("WanEnabled:")},
    RouterKey{TextRow<&Settings::WanInboxDirectory>("WanInboxDirectory:", {ValueRule::Form::Text, 256}),
              LinePart::Value, WithWan},
    RouterKey{TimeRow<&Settings::WanPollInterval>("WanInboxPollFreq:"), LinePart::Value, WithWan},
    RouterKey{FieldOf<&Settings::DeleteInvalidMessages>("EmailDeleteInvalidMsg:"), LinePart::Value, Never},
};
constexpr std::size_t kShownKeys = 11; // the last one is not

ReplacedFile SetupFile() { return LcrFile(ServerFile::Setup); }

// The text's parts around the lines of the paragraph.
struct PartedText {
    std::string_view Before;    // without the header's line
    std::string_view Paragraph; // without it, too
    std::string_view After;
    bool HasParagraph = false;
};

PartedText PartText(std::string_view text) {
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t start = text.size() - rest.size();
        if (!EqualFolded(CleanLine(TakeLine(rest)), kHeader)) continue;
        const std::size_t size = FindHeader(rest, "[");
        return {text.substr(0, start), rest.substr(0, size), rest.substr(size), true};
    }
    return {text, {}, {}, false};
}

// The lines that a reader takes: without a paragraph of its own, those below a header with more text behind it, which a
// writer leaves alone.
std::optional<std::string_view> ParagraphToRead(std::string_view text) {
    if (const PartedText parted = PartText(text); parted.HasParagraph) return parted.Paragraph;
    text.remove_prefix(FindHeader(text, kHeader));
    if (TakeLine(text).empty()) return {};
    return text.substr(0, FindHeader(text, "["));
}

bool BeginsLine(const RouterKey& key) { return key.Part != LinePart::None && key.Part != LinePart::SecondToken; }

bool IsOwnLine(std::string_view line) {
    return std::ranges::any_of(
        kKeys, [&](const RouterKey& key) { return BeginsLine(key) && BeginsWith(line, key.Field.Key); });
}

// The value of the first line with the key; none without one.
std::optional<std::string> FindValue(std::string_view paragraph, std::string_view key) {
    while (!paragraph.empty()) {
        const std::string line = CleanLine(TakeLine(paragraph));
        if (IsSignificantLine(line) && BeginsWith(line, key)) return std::string(KeyValue(line).value_or(""));
    }
    return {};
}

// What the setting is of the value of its line.
std::string PartOf(LinePart part, std::string_view value) {
    if (part == LinePart::Value) return std::string(value);
    const QuotedToken first = ParseQuotedToken(value);
    const std::string_view token = first.Token.value_or("");
    if (part == LinePart::Token) return TokenText(token);
    if (part == LinePart::QuotedToken) return std::string(StripQuotes(token));
    const std::string_view second = ParseQuotedToken(first.Rest).Token.value_or("");
    return std::string(second.starts_with('"') ? StripQuotes(second) : "");
}

Settings ParseParagraph(std::string_view paragraph) {
    Settings settings;
    std::optional<std::string> value;
    for (const RouterKey& key : kKeys) {
        if (BeginsLine(key)) value = FindValue(paragraph, key.Field.Key);
        if (key.Part != LinePart::None && value) key.Field.Store(settings, PartOf(key.Part, *value));
    }
    settings.EmailEnabled = !settings.EmailLoginName.empty();
    settings.WanEnabled = !settings.WanInboxDirectory.empty();
    return settings;
}

std::string ParagraphText(const Settings& settings) {
    std::string text(kHeader);
    for (const RouterKey& key : kKeys) {
        if (key.Part == LinePart::None || !key.IsWritten(settings)) continue;
        const bool isQuoted = key.Part == LinePart::QuotedToken || key.Part == LinePart::SecondToken;
        const std::string value = key.Field.Text(settings);
        if (BeginsLine(key))
            text.append(kLineEnd).append(key.Field.Key).append(" ");
        else
            text.append(", ");
        text.append(isQuoted ? '"' + value + '"' : value);
    }
    return text.append(kLineEnd);
}

std::string Rewritten(std::string_view text, const Settings& settings) {
    PartedText parted = PartText(text);
    std::string result(parted.Before);
    if (!result.empty() && !result.ends_with('\n')) result += kLineEnd;
    if (!parted.HasParagraph) result += kLineEnd;
    result += ParagraphText(settings);
    while (!parted.Paragraph.empty()) {
        const std::string_view line = TakeLine(parted.Paragraph);
        if (!IsOwnLine(line)) result += line;
    }
    return result.append(parted.After);
}

// Writes a file in the directory, reads it and deletes it.
bool CanUse(const std::string& directory) {
    const std::string path = directory + "\\test.tmp";
    if (!WriteWholeFile(path, "Test WAN inbox\n")) return false;
    ControlStream file = OpenShared(path, "rb");
    const bool isReadable = static_cast<bool>(file);
    file.Close();
    platform::Files().Delete(path);
    return isReadable;
}

// Why the directory cannot be an inbox; empty when it can.
std::string_view FaultOfInbox(std::string directory) {
    if (directory.ends_with('\\')) directory.pop_back();
    const std::optional<std::string> path =
        directory.starts_with("\\\\") ? directory : platform::ToNetworkPath(directory);
    if (!path)
        return "Unable to resolve network drive mapping to Universal (UNC) address (e.g. \\\\server\\folder\\LCRIN)";
    const std::optional<platform::FileInfo> found = platform::Files().Find(*path);
    if (!found) return "Can't find specified directory";
    if (!found->IsDirectory) return "This path specifies a file not a directory";
    return CanUse(*path) ? "" : "Unable to read or write in directory";
}

} // namespace

HourMinute ParseHourMinute(std::string_view text) {
    if (text.empty()) return {};
    const std::size_t colon = std::min(text.find(':'), text.size());
    return {ParseNumber(text.substr(std::min(colon + 1, text.size()))), ParseNumber(text.substr(0, colon))};
}

std::string FormatHourMinute(const HourMinute& time) {
    return time.IsSet() ? FormatText("%.2d:%.2d", time.Hours, time.Minutes) : std::string();
}

ValueRule HourMinuteRule() {
    constexpr std::size_t kLongestTime = 5;
    return OtherRule(
        "a time such as 01:30",
        [](std::string_view text) {
            const std::size_t colon = text.find(':');
            if (colon == std::string_view::npos) return text.empty();
            const auto isNumber = [](std::string_view digits) {
                return !digits.empty() && digits.size() <= 2 && std::ranges::all_of(digits, IsDigit);
            };
            // The server's own programs pad the minutes with a blank.
            return isNumber(text.substr(0, colon)) && isNumber(SkipBlanks(text.substr(colon + 1)));
        },
        kLongestTime);
}

std::span<const RouterKey> RouterKeys() { return std::span(kKeys).first(kShownKeys); }

bool IsToken(std::string_view text, std::size_t limit) {
    return !text.empty() && text.size() <= limit && text.find_first_of(" ,\"") == std::string_view::npos;
}

std::string TokenText(std::string_view token) {
    if (!token.starts_with('"')) return std::string(token);
    std::string text(StripQuotes(token));
    return text.find_first_of(" ,") == std::string::npos ? text : '"' + text + '"';
}

RouterReading ReadRouterSettings(RouterSettings& settings) {
    settings = {};
    const std::string path = SetupFile().Path;
    const std::optional<TextOfFile> file = ReadTextFile(path);
    if (file && !file->IsThere) ShowOpenFault(path);
    if (!file || !file->IsThere) return RouterReading::Failed;
    const std::optional<std::string_view> paragraph = ParagraphToRead(file->Text);
    if (!paragraph) return RouterReading::NotConfigured;
    settings = ParseParagraph(*paragraph);
    return RouterReading::Done;
}

std::optional<std::string> ReadLinesToDrop() {
    const std::optional<TextOfFile> file = ReadTextFile(SetupFile().Path);
    if (!file) return {};
    std::string lines;
    for (std::string_view rest = PartText(file->Text).Paragraph; !rest.empty();) {
        const std::string line = CleanLine(TakeLine(rest));
        if (BeginsWith(line, kKeys.back().Field.Key)) lines.append(lines.empty() ? "" : "\n").append(line);
    }
    return lines;
}

RouterSettings AsRead(const RouterSettings& settings) { return ParseParagraph(ParagraphText(settings)); }

bool ChangeRouterSettings(const RouterChange& change) {
    const ReplacedFile file = SetupFile();
    return ChangeLcrFile(file, [&](const TextOfFile& live) -> std::optional<std::string> {
        if (!live.IsThere) {
            ShowOpenFault(file.Path);
            return {};
        }
        const std::optional<std::string_view> paragraph = ParagraphToRead(live.Text);
        const RouterSettings before = paragraph ? ParseParagraph(*paragraph) : RouterSettings();
        RouterSettings settings = before;
        if (!change(settings)) return {};
        return paragraph && settings == before ? live.Text : Rewritten(live.Text, settings);
    });
}

bool WriteRouterSettings(const RouterSettings& settings) {
    return ChangeRouterSettings([&](RouterSettings& now) {
        now = settings;
        return true;
    });
}

std::optional<SettingFault> FaultOfRouter(const RouterSettings& settings) {
    constexpr std::string_view kInterval = "All intervals must be between 00:01 and 23:59";
    const std::pair<bool, SettingFault> rules[] = {
        {!settings.EmailEnabled || settings.EmailPollInterval.IsInterval(), {"EmailInboxPollFreq", kInterval}},
        {!settings.WanEnabled || settings.WanPollInterval.IsInterval(), {"WanInboxPollFreq", kInterval}},
        {!settings.EmailEnabled || !settings.EmailLoginName.empty(),
         {"EmailLoginName", "You must enter an Email account name"}},
        {!settings.WanEnabled || !settings.WanInboxDirectory.empty(),
         {"WanInboxDirectory", "You must enter a WAN inbox folder"}},
        {settings.EmailEnabled || settings.WanEnabled, {"EmailEnabled", "You must enable Email and / or WAN links"}},
    };
    for (const auto& [holds, fault] : rules)
        if (!holds) return fault;
    return {};
}

bool TestWanInbox(std::string_view directory) {
    const std::string_view fault = FaultOfInbox(std::string(directory));
    if (fault.empty())
        ShowStatus("Tested WAN inbox successfully");
    else
        ShowError(fault);
    return fault.empty();
}

std::string DefaultWanInbox() { return Paths().ServerArea.String() + "LCRIN\\"; }

} // namespace bv
