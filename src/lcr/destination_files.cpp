#include "lcr/destination_files.h"

#include <algorithm>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"
#include "shell/server_paths.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr std::string_view kMatchKey = "Match:";
constexpr std::size_t kMaxCode = 19; // digits of a dialling code

// One line of a list, seen in its text.
struct ListLine {
    std::size_t Start = 0;
    std::size_t End = 0;   // where the next line begins
    std::string_view Text; // cleaned; until the next one is taken
};

// Walks the lines of a list; at its end stands on the line that ends it, or at the end of the text.
class ListWalker {
  public:
    ListWalker(const DestinationFile& file, std::string_view text) : text_(text) {
        at_ = FindHeader(text, file.Paragraph);
        std::string_view rest = text.substr(at_);
        at_ += TakeLine(rest).size();
    }

    bool Next(ListLine& line) {
        std::string_view rest = text_.substr(at_);
        const std::string_view raw = TakeLine(rest);
        line = {at_, at_ + raw.size(), Clean(raw)};
        if (line.Text.empty() || IsParagraphLine(line.Text)) return false;
        at_ = line.End;
        return true;
    }

    [[nodiscard]] std::size_t At() const { return at_; }
    [[nodiscard]] bool IsAtEmptyLine() const {
        std::string_view rest = text_.substr(at_);
        const std::string_view raw = TakeLine(rest);
        return !raw.empty() && CleanLine(raw).empty();
    }

  private:
    std::string_view Clean(std::string_view raw) {
        const std::string_view part = CountingPart(raw);
        if (FindControl(part, 0) == part.size()) return part;
        cleaned_ = CleanLine(raw);
        return cleaned_;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::string cleaned_;
};

std::string Unquoted(std::optional<std::string_view> token) {
    return token ? std::string(TrimBlanks(StripQuotes(*token))) : std::string();
}

// The entry that begins on the line; none when none does.
std::optional<MatchEntry> ParseEntryLine(const DestinationFile& file, std::string_view line) {
    if (!BeginsWith(line, file.EntryKey)) return {};
    const QuotedToken identifier = ParseQuotedToken(KeyValue(line));
    MatchEntry entry{Unquoted(identifier.Token), Unquoted(ParseQuotedToken(identifier.Rest).Token), {}};
    if (entry.Identifier.empty()) return {};
    return entry;
}

std::string ParseCode(std::string_view text) {
    text = TrimBlanks(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    const auto firstOther = std::ranges::find_if_not(text, IsDigit);
    text = text.substr(0, static_cast<std::size_t>(firstOther - text.begin()));
    while (text.size() > 1 && text.front() == '0') text.remove_prefix(1);
    return text.size() > kMaxCode ? std::string() : std::string(text);
}

std::optional<CountryEntry> ParseCountryLine(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (!IsSignificantLine(line) || colon == std::string_view::npos) return {};
    const QuotedToken identifier = ParseQuotedToken(SkipBlanks(line.substr(colon + 1)));
    const QuotedToken description = ParseQuotedToken(identifier.Rest);
    CountryEntry entry{Unquoted(identifier.Token), Unquoted(description.Token), ParseCode(line.substr(0, colon)),
                       std::string(description.Rest.value_or(""))};
    if (entry.Identifier.empty() || entry.DiallingCode.empty()) return {};
    return entry;
}

// Where the next entry, paragraph or the end of the text is.
std::size_t NextEntry(const DestinationFile& file, std::string_view text, std::size_t at) {
    while (at < text.size()) {
        std::string_view rest = text.substr(at);
        const std::string_view raw = TakeLine(rest);
        const std::string line = CleanLine(raw);
        if (BeginsWith(line, file.EntryKey) || IsParagraphLine(line)) break;
        at += raw.size();
    }
    return at;
}

// The text with a part replaced by whole lines.
std::string Spliced(std::string_view text, std::size_t from, std::size_t to, std::string_view lines) {
    std::string result(text.substr(0, from));
    if (!result.empty() && !result.ends_with('\n')) result += kLineEnd;
    return result.append(lines).append(text.substr(to));
}

// A text that has lost its list gets an empty one at its end.
std::string WithList(const DestinationFile& file, std::string_view text) {
    if (HasDestinationList(file, text)) return std::string(text);
    return Spliced(text, text.size(), text.size(), std::string(file.Paragraph).append(kLineEnd));
}

} // namespace

std::string DestinationName(const DestinationFile& file, std::string_view diallingCode, std::string_view extension) {
    return FormatText("%s%s.%s", file.Type, diallingCode, extension);
}

std::string DestinationPath(const DestinationFile& file, std::string_view diallingCode, std::string_view extension) {
    return DatabaseFile(DestinationName(file, diallingCode, extension));
}

ReplacedFile ReplacedDestinationFile(const DestinationFile& file, std::string_view diallingCode) {
    return LcrFile({DestinationPath(file, diallingCode), DestinationPath(file, diallingCode, "new"), file.Type});
}

std::string EmptyDestinationText(const DestinationFile& file) {
    return FormatText("[BRIVANE]\r\nType: %s\r\nRevision: A\r\n\r\n%s\r\n", file.Type, file.Paragraph);
}

bool HasDestinationList(const DestinationFile& file, std::string_view text) {
    return FindHeader(text, file.Paragraph) < text.size();
}

std::optional<TextOfFile> ReadDestinationFile(const DestinationFile& file, std::string_view diallingCode) {
    return ReadReplacedFile(ReplacedDestinationFile(file, diallingCode));
}

std::vector<MatchEntry> ParseMatchEntries(const DestinationFile& file, std::string_view text) {
    std::vector<MatchEntry> entries;
    ListWalker lines(file, text);
    ListLine line;
    bool isInEntry = false;
    while (lines.Next(line)) {
        if (BeginsWith(line.Text, file.EntryKey)) {
            std::optional<MatchEntry> entry = ParseEntryLine(file, line.Text);
            isInEntry = entry.has_value();
            if (entry) entries.push_back(std::move(*entry));
        } else if (isInEntry && BeginsWith(line.Text, kMatchKey)) {
            if (const auto value = KeyValue(line.Text)) entries.back().Matches.emplace_back(*value);
        }
    }
    return entries;
}

std::vector<CountryEntry> ParseCountries(std::string_view text) {
    std::vector<CountryEntry> entries;
    ListWalker lines(kCountryFile, text);
    ListLine line;
    while (lines.Next(line)) {
        if (std::optional<CountryEntry> entry = ParseCountryLine(line.Text)) entries.push_back(std::move(*entry));
    }
    return entries;
}

std::string MatchEntryLines(const DestinationFile& file, const MatchEntry& entry) {
    std::string lines = FormatText("%s %s, \"%s\"\r\n", file.EntryKey, entry.Identifier, entry.Description);
    for (const std::string& match : entry.Matches) lines += FormatText("%s %s\r\n", kMatchKey, match);
    return lines;
}

std::string CountryLine(const CountryEntry& entry) {
    return FormatText("%s: %s, \"%s\", %s\r\n", entry.DiallingCode, entry.Identifier, entry.Description,
                      entry.LastField.empty() ? "0" : entry.LastField);
}

std::string WithMatchEntry(const DestinationFile& file, std::string_view text, const MatchEntry& entry) {
    const std::string whole = WithList(file, text);
    const std::string lines = MatchEntryLines(file, entry);
    ListWalker walker(file, whole);
    ListLine line;
    bool hasEntries = false;
    while (walker.Next(line)) {
        if (!BeginsWith(line.Text, file.EntryKey)) continue;
        hasEntries = true;
        const std::optional<MatchEntry> old = ParseEntryLine(file, line.Text);
        if (old && StartsWithFolded(old->Identifier, entry.Identifier))
            return Spliced(whole, line.Start, NextEntry(file, whole, line.End), lines);
    }
    const bool givesWay = hasEntries && walker.IsAtEmptyLine();
    return Spliced(whole, walker.At(), givesWay ? NextEntry(file, whole, walker.At()) : walker.At(), lines);
}

std::string WithCountry(std::string_view text, const CountryEntry& entry) {
    const std::string whole = WithList(kCountryFile, text);
    ListWalker walker(kCountryFile, whole);
    ListLine line;
    while (walker.Next(line)) {
        const std::optional<CountryEntry> old = ParseCountryLine(line.Text);
        if (old && StartsWithFolded(old->Identifier, entry.Identifier))
            return Spliced(whole, line.Start, line.End, CountryLine(entry));
    }
    ListLine end;
    if (walker.IsAtEmptyLine()) walker.Next(end);
    return Spliced(whole, walker.At(), std::max(walker.At(), end.End), CountryLine(entry).append(kLineEnd));
}

std::optional<std::string> WithoutMatchEntry(const DestinationFile& file, std::string_view text,
                                             std::string_view identifier) {
    ListWalker walker(file, text);
    ListLine line;
    std::string result;
    std::size_t copied = 0; // up to here
    bool isFound = false;
    while (walker.Next(line)) {
        const bool isEntry = BeginsWith(line.Text, file.EntryKey);
        if (isEntry && isFound) break;
        const std::optional<MatchEntry> entry = isEntry ? ParseEntryLine(file, line.Text) : std::nullopt;
        if (entry && EqualFolded(entry->Identifier, identifier)) isFound = true;
        if (!isFound || (!isEntry && !BeginsWith(line.Text, kMatchKey))) continue;
        result.append(text.substr(copied, line.Start - copied));
        copied = line.End;
    }
    if (!isFound) return {};
    return result.append(text.substr(copied));
}

std::string WithChangedMatches(const DestinationFile& file, std::string_view text, const MatchChange& change) {
    ListWalker walker(file, text);
    ListLine line;
    std::string result;
    std::size_t copied = 0; // up to here
    while (walker.Next(line)) {
        const auto match = BeginsWith(line.Text, kMatchKey) ? KeyValue(line.Text) : std::nullopt;
        const std::optional<std::string> changed = match ? change(*match) : std::nullopt;
        if (!match || changed == *match) continue;
        result.append(text.substr(copied, line.Start - copied));
        if (changed) result.append(KeyedLine(kMatchKey, *changed)).append(kLineEnd);
        copied = line.End;
    }
    return result.append(text.substr(copied));
}

std::optional<std::string> WithoutCountry(std::string_view text, std::string_view identifier) {
    ListWalker walker(kCountryFile, text);
    ListLine line;
    while (walker.Next(line)) {
        const std::optional<CountryEntry> entry = ParseCountryLine(line.Text);
        if (entry && EqualFolded(entry->Identifier, identifier)) return Spliced(text, line.Start, line.End, "");
    }
    return {};
}

} // namespace bv
