// The places that faxes go to: countries, areas within countries, and regions made of both. Each is looked up by name
// without a walk over its table, so that the rules of a large server are checked at once.
//
// A reference names a country (UK) or an area in one (UK/LON); the country stands there as its identifier or as its
// dialling code (44/LON). Identifiers compare without regard to case.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace bv {

// A name with what it matches.
struct MatchEntry {
    std::string Identifier;
    std::string Description;
    std::vector<std::string> Matches;

    friend bool operator==(const MatchEntry&, const MatchEntry&) = default;
};
using RegionEntry = MatchEntry; // matches references of countries and areas
using AreaEntry = MatchEntry;   // matches telephone numbers: whole ones, or beginnings that end in "*"

struct CountryEntry {
    std::string Identifier;
    std::string Description;
    std::string DiallingCode; // digits, no leading zeros
    std::string LastField;    // what follows on its line, as read
    bool HasAreaFile = false;
    std::vector<AreaEntry> Areas = {};

    friend bool operator==(const CountryEntry&, const CountryEntry&) = default;
};

enum class ReferenceForm { Identifier, DiallingCode };

// A country, or an area in it.
struct FoundPlace {
    const CountryEntry* Country = nullptr;
    const AreaEntry* Area = nullptr; // none: the whole country
};

// The tables. Of entries with the same name, the first is found. What is looked up by is made when it is first needed.
class Destinations {
  public:
    Destinations() = default;
    Destinations(std::vector<RegionEntry> regions, std::vector<CountryEntry> countries);

    [[nodiscard]] const std::vector<RegionEntry>& Regions() const { return regions_; }
    [[nodiscard]] const std::vector<CountryEntry>& Countries() const { return countries_; }

    // Take entries out of tables that others are about to replace.
    std::vector<RegionEntry> TakeRegions() && { return std::move(regions_); }
    std::vector<CountryEntry> TakeCountries() && { return std::move(countries_); }

    // None when there is no such entry. A country is found by its identifier and, without one, by its dialling code.
    [[nodiscard]] const RegionEntry* FindRegion(std::string_view identifier) const;
    [[nodiscard]] const CountryEntry* FindCountry(std::string_view identifierOrCode) const;
    [[nodiscard]] bool HasIdentifier(std::string_view country) const;
    [[nodiscard]] const CountryEntry* FindCode(std::string_view diallingCode) const;
    [[nodiscard]] std::optional<FoundPlace> FindPlace(std::string_view reference) const;

    // The reference with its country in that form; none when the country or the area is not there. Shows nothing.
    [[nodiscard]] std::optional<std::string> Convert(std::string_view reference, ReferenceForm form) const;

    // Whether the region has a destination that is the given one, or a country whose identifier begins it. False
    // without such a region. Destinations that are no longer there contain nothing. Shows nothing.
    [[nodiscard]] bool RegionContains(std::string_view region, std::string_view destination) const;

    // The places in the table of all regions that contain the destination, rising.
    [[nodiscard]] std::vector<std::size_t> RegionsOf(std::string_view destination) const;

  private:
    using Index = std::unordered_map<std::string, std::size_t>; // by name in upper case
    using Holders = std::unordered_map<std::string, std::vector<std::size_t>>;
    [[nodiscard]] const Index& AreasOf(std::size_t country) const;
    [[nodiscard]] const Holders& HoldersOf() const;

    std::vector<RegionEntry> regions_;
    std::vector<CountryEntry> countries_;
    Index regionIndex_;
    Index countryIndex_;
    Index codeIndex_;
    mutable std::vector<Index> areaIndex_; // of each country
    mutable Holders holders_;              // the regions that hold a match, by its identifiers in upper case
};

// Reads the tables from the region file, the country file and the area files of its countries. A file that is not
// there has no entries; lines that are none are passed over. When a save was cut off between deleting a file and giving
// its new text the name, that text is read, after a warning. False after "File error: couldn't open" or message 9011.
bool LoadDestinations(Destinations& destinations);

// Destinations::Convert, with "File error: couldn't open" when the country of an area has no area file.
std::optional<std::string> ConvertReference(const Destinations& destinations, std::string_view reference,
                                            ReferenceForm form);

// "United Kingdom", or "London, United Kingdom" for an area: descriptions, or identifiers in place of empty ones;
// "<Not found>" for a reference that names nothing.
std::string FindDestinationName(const Destinations& destinations, std::string_view reference);

// The region's description, or its identifier when that is empty; "<Not found>" without such a region.
std::string FindRegionName(const Destinations& destinations, std::string_view identifier);

} // namespace bv
