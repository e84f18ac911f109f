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

} // namespace

std::optional<std::vector<Synonym>> LoadSynonyms() {
    const std::optional<TextOfFile> file = ReadDestinationFile(kCountryFile);
    if (!file) return {};
    std::string_view rest = file->Text;
    rest.remove_prefix(FindHeader(rest, kSynonyms));
    TakeLine(rest);
    rest = rest.substr(0, FindHeader(rest, "["));
    std::vector<Synonym> synonyms;
    while (!rest.empty())
        if (std::optional<Synonym> synonym = ParseSynonym(CleanLine(TakeLine(rest))))
            synonyms.push_back(std::move(*synonym));
    return synonyms;
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
