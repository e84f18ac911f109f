#include "lcr/synonyms.h"

#include <algorithm>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "lcr/destination_files.h"
#include "platform/ascii.h"

namespace bv {
namespace {

constexpr std::string_view kSynonyms = "[SYNONYMS]";

std::optional<Synonym> ParseSynonym(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (!IsSignificantLine(line) || colon == std::string_view::npos) return {};
    const std::string_view reference = ParseQuotedToken(SkipBlanks(line.substr(colon + 1))).Token.value_or("");
    Synonym synonym{std::string(StripQuotes(TrimBlanks(line.substr(0, colon)))), std::string(StripQuotes(reference))};
    if (synonym.Name.empty() || synonym.Reference.empty()) return {};
    return synonym;
}

// Where the paragraph's lines are in the text: behind its header, up to the next one. Empty, at the end, without one.
struct Span {
    std::size_t Start = 0;
    std::size_t End = 0;
};

Span FindParagraphOf(std::string_view text) {
    std::string_view rest = text.substr(FindHeader(text, kSynonyms));
    TakeLine(rest);
    const std::size_t start = text.size() - rest.size();
    return {start, start + FindHeader(rest, "[")};
}

// A line with the synonym that it is, if it is one.
struct SynonymLine {
    Span At;
    std::optional<Synonym> Is;
    bool IsEmpty = false;
};

std::vector<SynonymLine> LinesOf(std::string_view text) {
    const Span paragraph = FindParagraphOf(text);
    std::vector<SynonymLine> lines;
    for (std::size_t at = paragraph.Start; at < paragraph.End;) {
        std::string_view rest = text.substr(at, paragraph.End - at);
        const std::string_view raw = TakeLine(rest);
        const std::string line = CleanLine(raw);
        lines.push_back({{at, at + raw.size()}, ParseSynonym(line), line.empty()});
        at += raw.size();
    }
    return lines;
}

std::string Spliced(std::string_view text, const Span& at, std::string_view lines) {
    std::string result(text.substr(0, at.Start));
    if (!result.empty() && !result.ends_with('\n')) result += kLineEnd;
    return result.append(lines).append(text.substr(at.End));
}

std::optional<Span> FindLine(std::string_view text, std::string_view name) {
    for (const SynonymLine& line : LinesOf(text))
        if (line.Is && EqualFolded(line.Is->Name, name)) return line.At;
    return {};
}

} // namespace

std::vector<Synonym> ParseSynonyms(std::string_view text) {
    std::vector<Synonym> synonyms;
    for (SynonymLine& line : LinesOf(text))
        if (line.Is) synonyms.push_back(std::move(*line.Is));
    return synonyms;
}

std::optional<std::vector<Synonym>> LoadSynonyms() {
    const std::optional<TextOfFile> file = ReadDestinationFile(kCountryFile);
    return file ? std::optional(ParseSynonyms(file->Text)) : std::nullopt;
}

std::string WithSynonym(std::string_view text, const Synonym& synonym, std::string_view instead) {
    const std::string line = synonym.Name + ": " + synonym.Reference + std::string(kLineEnd);
    if (!instead.empty()) return Spliced(text, FindLine(text, instead).value_or(Span()), line);
    const bool hasParagraph = FindHeader(text, kSynonyms) < text.size();
    std::size_t end = hasParagraph ? FindParagraphOf(text).Start : text.size();
    for (const SynonymLine& one : LinesOf(text))
        if (!one.IsEmpty) end = one.At.End;
    if (hasParagraph) return Spliced(text, {end, end}, line);
    const std::string header = std::string(kLineEnd).append(kSynonyms).append(kLineEnd);
    return Spliced(text, {end, end}, header + line);
}

std::optional<std::string> WithoutSynonym(std::string_view text, std::string_view name) {
    const std::optional<Span> line = FindLine(text, name);
    return line ? std::optional(Spliced(text, *line, "")) : std::nullopt;
}

std::string SynonymText(const Destinations& destinations, const Synonym& synonym) {
    const bool isThere = destinations.FindPlace(synonym.Reference).has_value();
    return synonym.Name + ", see " +
           (isThere ? FindDestinationName(destinations, synonym.Reference) : synonym.Reference);
}

std::optional<std::string> FindSynonymText(const Destinations& destinations, const std::vector<Synonym>& synonyms,
                                           std::string_view name) {
    const auto found =
        std::ranges::find_if(synonyms, [&](const Synonym& synonym) { return EqualFolded(synonym.Name, name); });
    if (found == synonyms.end()) return {};
    return SynonymText(destinations, *found);
}

} // namespace bv
