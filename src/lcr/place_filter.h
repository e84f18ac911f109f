// The destinations as a tree shows them: which of them hold the words that are looked for, and their texts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "lcr/destinations.h"
#include "lcr/synonyms.h"

namespace bv {

// By their places in the tables.
struct ShownCountry {
    std::size_t Country = 0;
    bool IsHit = false;             // itself: then all its areas are shown
    std::vector<std::size_t> Areas; // else those that are hit
};
struct ShownPlaces {
    std::vector<ShownCountry> Countries;
    std::vector<std::size_t> Regions;
    std::vector<std::size_t> Synonyms;
};

// Those whose texts hold each word, in any case, and the countries of areas that do; all of them for no words.
ShownPlaces FilterPlaces(const Destinations& places, const std::vector<Synonym>& synonyms, std::string_view words);

// The countries with their areas, and the regions, that are shown.
Destinations OnlyShown(const Destinations& places, const ShownPlaces& shown);

// "UK  United Kingdom  +44", "LON  London  20...", "EU  Neighbours in Europe".
std::string TextOfPlace(const CountryEntry& country);
std::string TextOfPlace(const AreaEntry& area, bool hasNumbers);

} // namespace bv
