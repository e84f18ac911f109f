#include "options/server_options.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "ctlfile/reading.h"
#include "ctlfile/saving.h"
#include "options/option_messages.h"
#include "options/option_values.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "shell/versions.h"
#include "users/directories.h"
#include "users/receiver.h"
#include "voice/front.h"
#include "voice/messages.h"

namespace bv {
namespace {

using Options = ServerOptions;
using Field = KeyField<Options>;
using enum OptionKey::Traits;

constexpr std::string_view kQueueMan = "[QUEUEMAN]";
constexpr std::string_view kPrinting = "[PRINTING]";
constexpr OpenTimeout kTimeout{10};
constexpr std::uint16_t kFirstVersionV6 = 0x600;

// Where files without "[PRINTING]" have the print choices: in "[QUEUEMAN]", whose "PrintSent:" and "PrintRecd:" say
// nothing that is kept today, and in the paragraphs of the printers named there.
constexpr Field kOlderChoices[] = {
    FieldOf<&Options::PrintSentDevice>("PrintSentDevice:"),
    FieldOf<&Options::PrintRecdDevice>("PrintRecdDevice:"),
    FieldOf<&Options::PrintSentSeparate>("PrintSentSeparate:"),
    FieldOf<&Options::PrintSpoolPath>("PrintSpoolPath:"),
};
constexpr Field kOlderSentPrinter[] = {
    FieldOf<&Options::PrintSentDevice>("Device:"),
    FieldOf<&Options::PrintSentBorder>("PrintBorder:"),
    FieldOf<&Options::PrintSentShadow>("PrintShadow:"),
    FieldOf<&Options::PrintSentPagesUp>("PrintPagesUp:"),
};
constexpr Field kOlderRecdPrinter[] = {
    FieldOf<&Options::PrintRecdDevice>("Device:"),
    FieldOf<&Options::PrintRecdBorder>("PrintBorder:"),
    FieldOf<&Options::PrintRecdShadow>("PrintShadow:"),
    FieldOf<&Options::PrintRecdPagesUp>("PrintPagesUp:"),
};

// Where the body of the first paragraph with the header starts.
std::optional<Position> FindBody(ControlStream& setup, std::string_view header) {
    ControlLine line;
    Position body = 0;
    setup.Rewind();
    if (!FindParagraph(setup, header, line, &body)) return {};
    return body;
}

void ReadFields(ControlStream& setup, std::string_view header, std::span<const Field> fields, Options& options) {
    const std::optional<Position> body = FindBody(setup, header);
    if (!body) return;
    for (const Field& field : fields) ReadField(setup, *body, field, options);
}

void ReadOlderPrinter(ControlStream& setup, std::string_view name, std::span<const Field> fields, Options& options) {
    if (!name.empty()) ReadFields(setup, FormatText("[%s]", name), fields, options);
}

void ReadOlderPrinting(ControlStream& setup, Options& options) {
    ReadFields(setup, kQueueMan, kOlderChoices, options);
    ReadOlderPrinter(setup, options.PrintSentDevice.String(), kOlderSentPrinter, options);
    ReadOlderPrinter(setup, options.PrintRecdDevice.String(), kOlderRecdPrinter, options);
}

std::string DefaultDirectory(const OptionKey& key) {
    return Paths().ServerArea.String().append(key.DefaultBelowServer).substr(0, key.Field.Rule.Limit);
}

Options DefaultOptions(const Version& gateway) {
    Options options;
    options.MailGatewayV6 = gateway.Number >= kFirstVersionV6;
    for (const OptionKey& key : OptionKeys())
        if (!key.DefaultBelowServer.empty()) key.Field.Store(options, DefaultDirectory(key));
    return options;
}

// Reads one key. What reads as empty in place of a default counts as that.
StoredValue ReadOption(ControlStream& setup, Position body, const OptionKey& key, Options& options) {
    StoredValue value = ReadField(setup, body, key.Field, options);
    if (!key.EmptyIsDefault || value != "") return value;
    key.Field.Store(options, DefaultDirectory(key));
    return key.Field.Text(options);
}

bool IsChanged(const Options& options, const SavedOptions& saved) {
    return std::ranges::any_of(OptionKeys(), [&](const OptionKey& key) { return IsToBeWritten(options, saved, key); });
}

// Whether a value may be meant that nobody has given yet: neither the file's nor the default.
bool IsGivenAnew(const Options& options, const SavedOptions& saved, const OptionKey& key) {
    const std::string text = key.Field.Text(options);
    return StoredValueOf(saved, key).value_or(DefaultText(key)) != text;
}

bool CheckScanner(const Options& options) {
    if (!options.HPScan || !options.HPScanDirectory.IsEmpty()) return true;
    ShowError(kScannerNeedsDirectory);
    return false;
}

bool CheckMargins(const Options& options) {
    const int margins = options.AsciiTopMargin + options.AsciiBottomMargin;
    return margins < options.AsciiFormLength || AskContinue(kNoRoomForText, margins, options.AsciiFormLength);
}

// What is asked about values together, and the keys that it is about.
struct CommonRule {
    bool (*Check)(const Options& options);
    std::span<const std::pair<std::string_view, std::string_view>> Keys; // the first one is said to be wrong
};
constexpr std::pair<std::string_view, std::string_view> kScannerKeys[] = {{"HPSCAN", "Directory"},
                                                                          {"OPTIONS", "HPScan"}};
constexpr std::pair<std::string_view, std::string_view> kMarginKeys[] = {
    {"EPSTIFF", "AsciiTopMargin"}, {"EPSTIFF", "AsciiBottomMargin"}, {"EPSTIFF", "AsciiFormLength"}};
constexpr CommonRule kCommonRules[] = {{CheckScanner, kScannerKeys}, {CheckMargins, kMarginKeys}};

// What stood there already may be anything.
bool CheckKey(const Options& options, const SavedOptions& saved, const OptionKey& key) {
    if (key.Trait != Receiver && key.Trait != Directory) return true;
    if (!IsGivenAnew(options, saved, key)) return true;
    const std::string text = key.Field.Text(options);
    return key.Trait == Receiver ? CheckReceiver(text) : CheckDirectory(text);
}

// The value as it is written: the file keeps no copy of a default directory that it need not.
std::string FileText(const OptionKey& key, const std::string& text) {
    return key.EmptyIsDefault && EqualFolded(text, DefaultDirectory(key)) ? std::string() : text;
}

bool WriteChangedKeys(Rewrite& rewrite, const Options& options, const SavedOptions& saved) {
    for (const OptionKey& key : OptionKeys()) {
        if (!IsToBeWritten(options, saved, key)) continue;
        const std::string value = FileText(key, key.Field.Text(options));
        if (!RewriteKey(rewrite, {key.Paragraph, key.Field.Key, value})) return false;
    }
    return true;
}

// After a failure, too, as if everything had been written: what is edited next counts from what was edited last.
void TakeAsSaved(const Options& options, SavedOptions& saved) {
    saved.resize(OptionKeys().size());
    for (std::size_t i = 0; i < OptionKeys().size(); ++i)
        if (OptionKeys()[i].Trait != OnlyRead) saved[i] = OptionKeys()[i].Field.Text(options);
}

} // namespace

const StoredValue& StoredValueOf(const SavedOptions& saved, const OptionKey& key) {
    static const StoredValue none;
    const auto index = static_cast<std::size_t>(&key - OptionKeys().data());
    return index < saved.size() ? saved[index] : none;
}

std::string DefaultText(const OptionKey& key) {
    return key.DefaultBelowServer.empty() ? key.Field.Text(Options()) : DefaultDirectory(key);
}

KeyHelp HelpOf(const OptionKey& key) {
    const std::string text = key.DefaultBelowServer.empty()
                                 ? key.Field.Text(ServerOptions())
                                 : FormatText("%s in the server area", key.DefaultBelowServer);
    return {.Key = std::string(key.Field.Key),
            .Values = DescribeValues(key.Field.Rule),
            .Default = text,
            .Paragraph = std::string(key.Paragraph)};
}

OptionsFound ReadServerOptions(ControlStream& setup, ServerOptions& options, SavedOptions& saved) {
    Version gateway;
    const bool isGatewayKnown = GetMailGatewayVersion(gateway);
    options = DefaultOptions(gateway);
    saved.assign(OptionKeys().size(), {});
    std::string_view paragraph;
    std::optional<Position> body;
    for (std::size_t i = 0; i < OptionKeys().size(); ++i) {
        if (OptionKeys()[i].Paragraph != paragraph) {
            paragraph = OptionKeys()[i].Paragraph;
            body = FindBody(setup, paragraph);
            if (!body && paragraph == kPrinting) ReadOlderPrinting(setup, options);
        }
        if (body) saved[i] = ReadOption(setup, *body, OptionKeys()[i], options);
    }
    return {.HasRouter = FindBody(setup, "[ROUTER]").has_value(), .IsGatewayUnknown = !isGatewayKnown};
}

bool LoadServerOptions(ServerOptions& options, SavedOptions& saved, OptionsFound* found) {
    const std::string path = PathOf(ServerFile::Setup);
    ShowStatus(kReadingSettings);
    ShowStatus(kUsingFile, path);
    ControlStream setup = OpenForReading(path, kTimeout);
    if (!setup) return false;
    const OptionsFound read = ReadServerOptions(setup, options, saved);
    if (found != nullptr) *found = read;
    return WasRead(setup) && !read.IsGatewayUnknown;
}

bool EnterOption(const OptionKey& key, std::string_view text, ServerOptions& options) {
    if (key.Trait == OnlyRead) {
        const std::string_view paragraph = key.Paragraph.substr(1, key.Paragraph.size() - 2);
        ShowError(kOptionOnlyRead, paragraph, key.Field.Name());
        return false;
    }
    return text == key.Field.Text(options) || EnterValue(key.Field, text, options);
}

bool IsToBeWritten(const ServerOptions& options, const SavedOptions& saved, const OptionKey& key) {
    return key.Trait != OnlyRead && StoredValueOf(saved, key) != key.Field.Text(options);
}

const OptionKey* CheckOptions(const ServerOptions& options, const SavedOptions& saved) {
    for (const OptionKey& key : OptionKeys())
        if (!CheckKey(options, saved, key)) return &key;
    for (const CommonRule& rule : kCommonRules) {
        const auto isNew = [&](const auto& name) {
            return IsGivenAnew(options, saved, *FindOptionKey(name.first, name.second));
        };
        if (std::ranges::any_of(rule.Keys, isNew) && !rule.Check(options))
            return FindOptionKey(rule.Keys.front().first, rule.Keys.front().second);
    }
    return nullptr;
}

bool SaveServerOptions(const ServerOptions& options, SavedOptions& saved) {
    if (!IsChanged(options, saved)) return true;
    return CheckOptions(options, saved) == nullptr && WriteServerOptions(options, saved);
}

bool WriteServerOptions(const ServerOptions& options, SavedOptions& saved) {
    if (!IsChanged(options, saved)) return true;
    Rewrite rewrite(PathOf(ServerFile::Setup), kTimeout);
    if (!CheckOpened(rewrite)) return false;
    CurrentFront().ShowWaitCursor(true);
    const auto write = [&] { return WriteChangedKeys(rewrite, options, saved); };
    const bool well = SaveRewrite(rewrite, write, AfterFailure::SayUpdated);
    TakeAsSaved(options, saved);
    Startup().SettingsChanged = true;
    CurrentFront().ShowWaitCursor(false);
    return well;
}

} // namespace bv
