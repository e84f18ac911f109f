#include "lcr/place_filter.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "lcr/number_place.h"
#include "platform/ascii.h"

namespace bv {
namespace {

// The words, and the text that they are looked for in, which is kept so that many entries need no memory of their own.
class Words {
  public:
    explicit Words(std::string_view text) {
        for (text = SkipBlanks(text); !text.empty(); text = SkipBlanks(text)) {
            const std::string_view word = text.substr(0, text.find_first_of(" \t"));
            words_.push_back(Folded(word));
            text.remove_prefix(word.size());
        }
    }

    [[nodiscard]] bool AreNone() const { return words_.empty(); }

    bool StandIn(std::initializer_list<std::string_view> texts, const std::vector<std::string>& more = {}) {
        if (words_.empty()) return true;
        text_.clear();
        for (const std::string_view text : texts) text_.append(text).append("\n");
        for (const std::string& text : more) text_.append(text).append("\n");
        std::ranges::transform(text_, text_.begin(), [](char c) { return ToLower(c); });
        return std::ranges::all_of(words_,
                                   [this](const std::string& word) { return text_.find(word) != std::string::npos; });
    }

  private:
    static std::string Folded(std::string_view word) {
        std::string folded(word);
        std::ranges::transform(folded, folded.begin(), [](char c) { return ToLower(c); });
        return folded;
    }

    std::vector<std::string> words_;
    std::string text_;
};

std::vector<std::size_t> HitsOf(Words& words, const std::vector<MatchEntry>& entries) {
    std::vector<std::size_t> hits;
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (words.StandIn({entries[i].Identifier, entries[i].Description}, entries[i].Matches)) hits.push_back(i);
    return hits;
}

} // namespace

ShownPlaces FilterPlaces(const Destinations& places, const std::vector<Synonym>& synonyms, std::string_view text) {
    Words words(text);
    ShownPlaces shown;
    for (std::size_t i = 0; i < places.Countries().size(); ++i) {
        const CountryEntry& country = places.Countries()[i];
        ShownCountry one{i, words.StandIn({country.Identifier, country.Description, country.DiallingCode}), {}};
        if (!one.IsHit) one.Areas = HitsOf(words, country.Areas);
        if (one.IsHit || !one.Areas.empty()) shown.Countries.push_back(std::move(one));
    }
    shown.Regions = HitsOf(words, places.Regions());
    for (std::size_t i = 0; i < synonyms.size(); ++i)
        if (words.StandIn({synonyms[i].Name, SynonymText(places, synonyms[i])})) shown.Synonyms.push_back(i);
    return shown;
}

Destinations OnlyShown(const Destinations& places, const ShownPlaces& shown) {
    std::vector<CountryEntry> countries;
    for (const ShownCountry& one : shown.Countries) {
        CountryEntry country = places.Countries()[one.Country];
        if (!one.IsHit) {
            std::vector<AreaEntry> areas;
            for (const std::size_t area : one.Areas) areas.push_back(country.Areas[area]);
            country.Areas = std::move(areas);
        }
        countries.push_back(std::move(country));
    }
    std::vector<RegionEntry> regions;
    for (const std::size_t region : shown.Regions) regions.push_back(places.Regions()[region]);
    return {std::move(regions), std::move(countries)};
}

std::string TextOfPlace(const CountryEntry& country) {
    return country.Identifier + "  " + country.Description + "  +" + country.DiallingCode;
}

std::string TextOfPlace(const AreaEntry& area, bool hasNumbers) {
    constexpr std::size_t kMostNumbers = 4;
    std::string text = area.Identifier + "  " + area.Description;
    if (!hasNumbers) return text;
    for (std::size_t i = 0; i < std::min(area.Matches.size(), kMostNumbers); ++i)
        text.append(i == 0 ? "  " : ", ").append(MatchText(area.Matches[i]));
    if (area.Matches.size() > kMostNumbers) text += ", ...";
    return text;
}

} // namespace bv
