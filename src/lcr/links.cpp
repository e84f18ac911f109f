#include "lcr/links.h"

#include <algorithm>
#include <array>

#include "ctlfile/lines.h"
#include "ctlfile/whole_file.h"
#include "lcr/lcr_messages.h"
#include "lcr/text_file.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kHeader = "[BRIVANE]\r\nType: LinkDatabase\r\nRevision: A\r\n\r\n";
constexpr std::string_view kLinkHeader = "[LINK]";
constexpr std::string_view kDelayKey = "LinkDelay:";
constexpr std::string_view kConnectionKey = "ConnectionStatus:";
constexpr std::string_view kConnectionOn = "ConnectionStatus: ON\r\n";
constexpr std::string_view kFirstStatus =
    "RemoteLinkRunNumber: 0.0\r\nLocalLinkRunNumber: 0.0\r\nLocalLinkStatus: LINKSHUTDOWN\r\nConnectionStatus: ON\r\n";
constexpr std::array<std::string_view, kLinkNotes> kStatusKeys = {
    "RemoteLinkRunNumber:", "LocalLinkRunNumber:", "RemoteLinkStatus:", "LocalLinkStatus:", kConnectionKey};

template <std::string LinkRecord::*Member>
constexpr KeyField<LinkRecord> TextRow(std::string_view key, std::size_t limit,
                                       ValueRule::Form form = ValueRule::Form::Text) {
    return {key,
            {form, limit},
            [](const LinkRecord& link) { return link.*Member; },
            [](LinkRecord& link, std::string_view text) {
                link.*Member = text;
                return true;
            }};
}

template <Switch LinkRecord::*Member, bool isOnOff>
constexpr KeyField<LinkRecord> SwitchRow(std::string_view key) {
    return {key,
            {ValueRule::Form::Boolean},
            [](const LinkRecord& link) -> std::string {
                if (!(link.*Member)) return "";
                if (isOnOff) return *(link.*Member) ? "ON" : "OFF";
                return ValueCodec<bool>::Text(*(link.*Member));
            },
            [](LinkRecord& link, std::string_view text) {
                const Switch value = ParseBool(text);
                if (value) link.*Member = value;
                return value.has_value();
            }};
}

template <std::uint16_t LinkRecord::*Member>
constexpr KeyField<LinkRecord> PriorityRow(std::string_view key) {
    return {key,
            {ValueRule::Form::Word, 0, kPriorityWords},
            [](const LinkRecord& link) -> std::string {
                const auto words = WordsOfPriorities(link.*Member);
                return words.empty() ? std::string() : std::string(words.front());
            },
            [](LinkRecord& link, std::string_view text) {
                link.*Member = PriorityBitOf(text);
                return link.*Member != 0;
            }};
}

// The server's own programs write the minutes of a delay padded with a blank, and none at all as two blanks.
std::string DelayText(const LinkRecord& link) {
    const HourMinute& delay = link.Delay;
    if (!delay.IsSet()) return "";
    return FormatText("%.2d:", delay.Hours) + (delay.Minutes == 0 ? "  " : FormatText("%2d", delay.Minutes));
}

template <HourMinute LinkRecord::*Member>
constexpr bool StoreTime(LinkRecord& link, std::string_view text) {
    link.*Member = ParseHourMinute(text);
    return true;
}

std::string IdentifierText(const LinkRecord& link) {
    return FormatText("%s, \"%s\"", link.Identifier, link.Description);
}

bool StoreIdentifier(LinkRecord& link, std::string_view text) {
    const QuotedToken identifier = ParseQuotedToken(text);
    link.Identifier = TokenText(identifier.Token.value_or(""));
    const std::string_view second = ParseQuotedToken(identifier.Rest).Token.value_or("");
    link.Description = second.starts_with('"') ? StripQuotes(second) : "";
    if (link.Description.empty()) link.Description = StripQuotes(link.Identifier);
    return !link.Identifier.empty();
}

const std::array kLinkKeys = {
    LinkKey{{"RemoteServerID:", {}, IdentifierText, StoreIdentifier}, true},
    LinkKey{FieldOf<&LinkRecord::Type>("LinkType:"), true},
    LinkKey{TextRow<&LinkRecord::Address>("RemoteServerAddress:", 255), true},
    LinkKey{TextRow<&LinkRecord::AccountName>("BrivaneAccountName:", 29)},
    LinkKey{TextRow<&LinkRecord::Password>("LinkPassword:", 99, ValueRule::Form::Password), true},
    LinkKey{SwitchRow<&LinkRecord::ReceiveEnabled, true>("ReceiveEnabled:")},
    LinkKey{SwitchRow<&LinkRecord::SendEnabled, true>("SendEnabled:")},
    LinkKey{{kDelayKey, HourMinuteRule(), DelayText, StoreTime<&LinkRecord::Delay>}},
    LinkKey{{"LocalWatchdogFreq:", HourMinuteRule(),
             [](const LinkRecord& link) { return FormatHourMinute(link.WatchdogFrequency); },
             StoreTime<&LinkRecord::WatchdogFrequency>}},
    LinkKey{PriorityRow<&LinkRecord::MaxOutboundPriority>("MaxOutboundPriority:")},
    LinkKey{PriorityRow<&LinkRecord::MaxInboundPriority>("MaxInboundPriority:")},
    LinkKey{SwitchRow<&LinkRecord::RejectsHigherPriority, false>("RejectHigherPriorityMsg:")},
};
constexpr std::size_t kRequired = 3; // the first keys must be there

bool IsConfigurationLine(std::string_view line) {
    return std::ranges::any_of(kLinkKeys, [&](const LinkKey& key) { return BeginsWith(line, key.Field.Key); });
}

bool IsStatusLine(std::string_view line) {
    return std::ranges::any_of(kStatusKeys, [&](std::string_view key) { return BeginsWith(line, key); });
}

bool IsKept(const LinkRecord& link, std::string_view line) {
    if (IsConfigurationLine(line) || (link.ResetStatus && IsStatusLine(line))) return false;
    return !link.ConnectionIsOn || !BeginsWith(line, kConnectionKey);
}

std::string KeptLines(const LinkRecord& link, std::string_view oldParagraph) {
    std::string kept;
    TakeLine(oldParagraph); // its header
    while (!oldParagraph.empty()) {
        const std::string_view line = TakeLine(oldParagraph);
        if (CountingPart(line).empty()) break;
        if (!IsKept(link, line)) continue;
        kept += line;
        if (!line.ends_with('\n')) kept += kLineEnd;
    }
    return kept;
}

// Each paragraph of a text with its header line; what stands before the first is left out.
std::vector<std::string_view> ParagraphsOf(std::string_view text) {
    std::vector<std::string_view> paragraphs;
    for (std::size_t at = FindHeader(text, "["); at < text.size();) {
        std::string_view rest = text.substr(at);
        const std::size_t size = TakeLine(rest).size() + FindHeader(rest, "[");
        paragraphs.push_back(text.substr(at, size));
        at += size;
    }
    return paragraphs;
}

struct OldLink {
    std::string_view Paragraph;
    std::string Identifier;
    bool IsUsed = false;
};

// What Link.ini holds now.
struct OldFile {
    std::vector<OldLink> Links;
    std::string Others; // paragraphs that are no readable link

    explicit OldFile(std::string_view text) {
        for (const std::string_view paragraph : ParagraphsOf(text)) {
            LinkRecord link;
            if (BeginsWith(paragraph, kLinkHeader) && ReadLink(paragraph, link))
                Links.push_back({paragraph, link.Identifier});
            else if (!BeginsWith(paragraph, "[BRIVANE]"))
                Others += paragraph;
        }
    }

    // The link's paragraph, each once; empty without one. Of several with its name, the one at its place.
    std::string_view Take(const LinkRecord& link) {
        const auto isIts = [&](const OldLink& old) {
            return !old.IsUsed && EqualFolded(old.Identifier, link.Identifier);
        };
        auto old = Links.begin() + std::clamp(link.Place, 0, static_cast<int>(Links.size()));
        if (old == Links.end() || !isIts(*old)) old = std::ranges::find_if(Links, isIts);
        if (old == Links.end()) return {};
        old->IsUsed = true;
        return old->Paragraph;
    }
};

void AddLinks(std::string_view text, LinkTable& links) {
    links.clear();
    for (const std::string_view paragraph : ParagraphsOf(text)) {
        LinkRecord link;
        if (!BeginsWith(paragraph, kLinkHeader) || !ReadLink(paragraph, link)) continue;
        link.Place = static_cast<int>(links.size());
        links.push_back(std::move(link));
    }
}

// What the lines of a paragraph say of the keys.
LinkNotes NotesIn(std::string_view paragraph) {
    LinkNotes notes;
    TakeLine(paragraph);
    while (!paragraph.empty()) {
        const std::string line = CleanLine(TakeLine(paragraph));
        for (std::size_t i = 0; i < notes.size(); ++i)
            if (notes.at(i).empty() && BeginsWith(line, kStatusKeys.at(i))) notes.at(i) = KeyValue(line).value_or("");
    }
    return notes;
}

TextStamp StampOfLinks(const LinkTable& links) {
    TextOfFile text{true};
    for (const LinkRecord& link : links) text.Text += LinkParagraph(link, {});
    return StampOf(text);
}

bool AgreeToOverwrite(std::string_view text, const TextStamp& stamp) {
    LinkTable now;
    AddLinks(text, now);
    return StampOfLinks(now) == stamp || AskWarning(kChangedSinceOpened, NameOf(ServerFile::Links));
}

constexpr ValueRule Described(std::string_view description, bool (*isGood)(std::string_view), std::size_t limit = 0) {
    return {ValueRule::Form::Other, limit, {}, description, isGood};
}

constexpr std::size_t kIdentifierLimit = 33;
constexpr std::size_t kDescriptionLimit = 29;

bool StoreDescription(LinkRecord& link, std::string_view text) {
    link.Description = text.empty() ? link.Identifier : text;
    return true;
}

// A description that only stood for the identifier goes with it.
bool StoreNewIdentifier(LinkRecord& link, std::string_view text) {
    if (link.Description == link.Identifier) link.Description = text;
    link.Identifier = text;
    return true;
}

// A delay is shown as other times are.
std::string ShownDelay(const LinkRecord& link) { return FormatHourMinute(link.Delay); }

// An empty switch in the file is on; entered, it is unset, as it is shown, and then not written.
template <Switch LinkRecord::*Member>
constexpr KeyField<LinkRecord> EnteredSwitch(std::string_view key) {
    constexpr ValueRule rule = Described(
        "ON, OFF or nothing", [](std::string_view text) { return text.empty() || ParseBool(text).has_value(); });
    return {key, rule, SwitchRow<Member, true>(key).Text, [](LinkRecord& link, std::string_view text) {
                link.*Member = text.empty() ? Switch() : ParseBool(text);
                return true;
            }};
}
const KeyField<LinkRecord> kEnteredOtherwise[] = {
    {kDelayKey, HourMinuteRule(), ShownDelay, StoreTime<&LinkRecord::Delay>},
    EnteredSwitch<&LinkRecord::ReceiveEnabled>("ReceiveEnabled:"),
    EnteredSwitch<&LinkRecord::SendEnabled>("SendEnabled:"),
};

// The row by which the key is entered.
const KeyField<LinkRecord>& EnteredField(const KeyField<LinkRecord>& field) {
    const auto* const other = std::ranges::find(kEnteredOtherwise, field.Key, &KeyField<LinkRecord>::Key);
    return other == std::end(kEnteredOtherwise) ? field : *other;
}

std::vector<LinkSetting> MakeSettings() {
    const ValueRule identifier = Described(
        "a name of 1 to 33 characters without blanks, commas and quotes",
        [](std::string_view text) { return IsToken(text, kIdentifierLimit); }, kIdentifierLimit);
    const ValueRule description = Described(
        "a text of at most 29 characters without quotes",
        [](std::string_view text) {
            return text.size() <= kDescriptionLimit && text.find('"') == std::string_view::npos;
        },
        kDescriptionLimit);
    std::vector<LinkSetting> settings = {
        {{"RemoteServerID:", identifier, [](const LinkRecord& link) { return link.Identifier; }, StoreNewIdentifier}},
        {{"Description:", description, [](const LinkRecord& link) { return link.Description; }, StoreDescription}}};
    for (const LinkKey& key : std::span(kLinkKeys).subspan(1)) settings.push_back({EnteredField(key.Field)});
    return settings;
}

} // namespace

ReplacedFile LinkFile() { return LcrFile(ServerFile::Links); }

std::span<const LinkKey> LinkKeys() { return kLinkKeys; }

std::span<const LinkSetting> LinkSettings() {
    static const std::vector<LinkSetting> settings = MakeSettings();
    return settings;
}

LinkRecord NewLink(std::string_view identifier) {
    LinkRecord link;
    link.Identifier = link.Description = identifier;
    link.IsNew = link.WriteStatus = true;
    link.ReceiveEnabled = link.SendEnabled = true;
    return link;
}

bool ReadLink(std::string_view paragraph, LinkRecord& link) {
    link = {};
    std::array<bool, kLinkKeys.size()> isSeen{};
    std::array<bool, kLinkKeys.size()> isStored{};
    TakeLine(paragraph);
    while (!paragraph.empty()) {
        const std::string line = CleanLine(TakeLine(paragraph));
        if (!IsSignificantLine(line)) continue;
        const auto key =
            std::ranges::find_if(kLinkKeys, [&](const LinkKey& one) { return BeginsWith(line, one.Field.Key); });
        const auto index = static_cast<std::size_t>(key - kLinkKeys.begin());
        if (key == kLinkKeys.end() || isSeen.at(index)) continue;
        isSeen.at(index) = true;
        isStored.at(index) = key->Field.Store(link, KeyValue(line).value_or(""));
    }
    if (!link.RejectsHigherPriority) link.RejectsHigherPriority = false;
    return std::all_of(isStored.begin(), isStored.begin() + kRequired, [](bool stored) { return stored; });
}

bool ReadLinks(LinkTable& links) {
    const std::optional<TextOfFile> file = ReadReplacedFile(LinkFile());
    if (file) AddLinks(file->Text, links);
    return file.has_value();
}

bool LoadLinks(LinkTable& links, TextStamp& stamp) {
    const ReplacedFile file = LinkFile();
    if (!OfferRecovery(file)) return false;
    std::optional<TextOfFile> text = ReadTextFile(file.Path);
    if (!text) return false;
    if (!text->IsThere) {
        const auto makeFile = [](const TextOfFile& live) { return live.IsThere ? live.Text : std::string(kHeader); };
        if (!ChangeReplacedFile(file, makeFile)) return false;
        text = ReadTextFile(file.Path);
        if (!text) return false;
    }
    AddLinks(text->Text, links);
    stamp = StampOfLinks(links);
    return true;
}

std::span<const std::string_view> LinkNoteKeys() { return kStatusKeys; }

std::string DescribeState(const LinkNotes& notes) {
    const auto& [remoteRun, localRun, remote, local, connection] = notes;
    std::string state = local.empty() ? remote : local;
    if (!connection.empty() && !ParseBool(connection).value_or(false))
        state += (state.empty() ? "connection " : ", connection ") + connection;
    return state.empty() ? "-" : state;
}

bool ReadLinkNotes(NotedLinks& links) {
    links = {};
    const std::optional<TextOfFile> file = ReadReplacedFile(LinkFile());
    if (!file) return false;
    for (const std::string_view paragraph : ParagraphsOf(file->Text)) {
        LinkRecord link;
        if (BeginsWith(paragraph, kLinkHeader) && ReadLink(paragraph, link))
            links.Notes.push_back(NotesIn(paragraph));
        else if (!BeginsWith(paragraph, "[BRIVANE]"))
            ++links.Unreadable;
    }
    return true;
}

std::string LinkParagraph(const LinkRecord& link, std::string_view oldParagraph) {
    std::string text(kLinkHeader);
    text += kLineEnd;
    for (const auto& [field, isAlwaysWritten] : kLinkKeys) {
        const std::string value = field.Text(link);
        if (!value.empty() || isAlwaysWritten) text.append(field.Key).append(" ").append(value).append(kLineEnd);
    }
    if (link.IsNew) {
        if (link.WriteStatus) text += kFirstStatus;
    } else {
        text += KeptLines(link, oldParagraph);
        if (link.ConnectionIsOn) text += kConnectionOn;
    }
    return text.append(kLineEnd);
}

bool SaveLinks(const LinkTable& links, const TextStamp& stamp) {
    const ReplacedFile file = LinkFile();
    const auto newText = [&](const TextOfFile& live) -> std::optional<std::string> {
        if (!live.IsThere) {
            ShowOpenFault(file.Path);
            return {};
        }
        if (!AgreeToOverwrite(live.Text, stamp)) return {};
        OldFile old(live.Text);
        std::string text(kHeader);
        for (const LinkRecord& link : links)
            text += LinkParagraph(link, link.IsNew ? std::string_view() : old.Take(link));
        return text + old.Others;
    };
    return ChangeLcrFile(file, newText);
}

std::optional<SettingFault> FaultOfLink(const LinkRecord& link, const LinkTable& others, const RouterSettings& router) {
    const bool isTaken = std::ranges::any_of(
        others, [&](const LinkRecord& other) { return EqualFolded(other.Identifier, link.Identifier); });
    const bool isShared = link.Type == LinkType::SharedDirectory;
    const std::pair<bool, SettingFault> rules[] = {
        {!link.Identifier.empty(), {"RemoteServerID", "You must enter the Remote server's unique ID"}},
        {!isTaken, {"RemoteServerID", "This ID is in use already.  Please enter a unique ID"}},
        {!link.Address.empty() || !isShared, {"RemoteServerAddress", "You must enter the remote server's address"}},
        {!link.Address.empty(), {"RemoteServerAddress", "You must specify an address for the remote server"}},
        {!link.AccountName.empty(),
         {"BrivaneAccountName", "You must specify a Brivane account for sending faxes received from remote servers"}},
        {!link.Delay.IsSet() || link.Delay.IsTimeOfDay(), {"LinkDelay", "Link Delay must be between 00:00 and 23:59"}},
        {!link.WatchdogFrequency.IsSet() || link.WatchdogFrequency.IsInterval(),
         {"LocalWatchdogFreq", "All intervals must be between 00:01 and 23:59"}},
        {link.RejectsHigherPriority.has_value(),
         {"RejectHigherPriorityMsg", "You must select the action to be taken for high priority faxes received from "
                                     "remote servers"}},
        {isShared || router.EmailEnabled,
         {"LinkType", "To use Email links, they must first be enabled under 'General Settings'"}},
        {!isShared || router.WanEnabled,
         {"LinkType", "To use WAN links, they must first be enabled under 'General Settings'"}},
    };
    for (const auto& [holds, fault] : rules)
        if (!holds) return fault;
    return {};
}

} // namespace bv
