#include "lcr/destinations.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "ctlfile/whole_file.h"
#include "lcr/destination_files.h"
#include "lcr/text_file.h"
#include "platform/ascii.h"
#include "platform/files.h"
#include "shell/server_paths.h"

namespace bv {
namespace {

constexpr std::string_view kNotFound = "<Not found>";

std::string_view WithoutZeros(std::string_view code) {
    while (code.size() > 1 && code.front() == '0') code.remove_prefix(1);
    return code;
}

struct PartedReference {
    std::string_view Country;
    std::optional<std::string_view> Area;
};

PartedReference PartReference(std::string_view reference) {
    const std::size_t slash = reference.find('/');
    if (slash == std::string_view::npos) return {reference, {}};
    return {reference.substr(0, slash), reference.substr(slash + 1)};
}

template <class Entry>
const Entry* Find(const std::vector<Entry>& entries, const std::unordered_map<std::string, std::size_t>& index,
                  std::string_view name) {
    const auto found = index.find(UpperText(name));
    return found == index.end() ? nullptr : &entries[found->second];
}

std::string NameOr(const std::string& description, const std::string& identifier) {
    return description.empty() ? identifier : description;
}

// The files of the database directory, so that area files that are not there need not be looked for one by one.
class DatabaseNames {
  public:
    DatabaseNames() {
        for (const std::string& name : platform::Files().List(DatabaseFile(""), "*")) names_.insert(UpperText(name));
    }

    // Where not even the country file is listed, the directory could not be read: then any file may be there. What is
    // there and no file is not listed either.
    [[nodiscard]] bool MayHaveAreas(const CountryEntry& country) const {
        return names_.empty() || Has(country, "ini") || Has(country, "new") ||
               !IsMissing(DestinationPath(kAreaFile, country.DiallingCode));
    }

  private:
    [[nodiscard]] bool Has(const CountryEntry& country, std::string_view extension) const {
        return names_.contains(UpperText(DestinationName(kAreaFile, country.DiallingCode, extension)));
    }

    std::unordered_set<std::string> names_;
};

bool ReadAreas(CountryEntry& country) {
    const std::optional<TextOfFile> file = ReadDestinationFile(kAreaFile, country.DiallingCode);
    if (!file) return false;
    country.HasAreaFile = file->IsThere;
    country.Areas = ParseMatchEntries(kAreaFile, file->Text);
    return true;
}

} // namespace

Destinations::Destinations(std::vector<RegionEntry> regions, std::vector<CountryEntry> countries)
    : regions_(std::move(regions)), countries_(std::move(countries)) {
    for (std::size_t i = 0; i < regions_.size(); ++i) regionIndex_.emplace(UpperText(regions_[i].Identifier), i);
    areaIndex_.resize(countries_.size());
    for (std::size_t i = 0; i < countries_.size(); ++i) {
        countryIndex_.emplace(UpperText(countries_[i].Identifier), i);
        codeIndex_.emplace(countries_[i].DiallingCode, i);
    }
}

const Destinations::Index& Destinations::AreasOf(std::size_t country) const {
    Index& index = areaIndex_[country];
    const std::vector<AreaEntry>& areas = countries_[country].Areas;
    if (index.empty())
        for (std::size_t i = 0; i < areas.size(); ++i) index.emplace(UpperText(areas[i].Identifier), i);
    return index;
}

const Destinations::Holders& Destinations::HoldersOf() const {
    if (!holders_.empty()) return holders_;
    for (std::size_t i = 0; i < regions_.size(); ++i) {
        if (FindRegion(regions_[i].Identifier) != &regions_[i]) continue;
        for (const std::string& match : regions_[i].Matches) {
            const std::optional<std::string> one = Convert(match, ReferenceForm::Identifier);
            if (!one) continue;
            std::vector<std::size_t>& holders = holders_[UpperText(*one)];
            if (holders.empty() || holders.back() != i) holders.push_back(i);
        }
    }
    return holders_;
}

const RegionEntry* Destinations::FindRegion(std::string_view identifier) const {
    return Find(regions_, regionIndex_, identifier);
}

const CountryEntry* Destinations::FindCountry(std::string_view identifierOrCode) const {
    const CountryEntry* country = Find(countries_, countryIndex_, identifierOrCode);
    return country != nullptr ? country : FindCode(identifierOrCode);
}

bool Destinations::HasIdentifier(std::string_view country) const {
    return Find(countries_, countryIndex_, country) != nullptr;
}

const CountryEntry* Destinations::FindCode(std::string_view diallingCode) const {
    return Find(countries_, codeIndex_, WithoutZeros(diallingCode));
}

std::optional<FoundPlace> Destinations::FindPlace(std::string_view reference) const {
    const PartedReference parted = PartReference(reference);
    const CountryEntry* country = FindCountry(parted.Country);
    if (country == nullptr) return {};
    if (!parted.Area) return FoundPlace{country, nullptr};
    const auto place = static_cast<std::size_t>(country - countries_.data());
    const AreaEntry* area = Find(country->Areas, AreasOf(place), *parted.Area);
    if (area == nullptr) return {};
    return FoundPlace{country, area};
}

std::optional<std::string> Destinations::Convert(std::string_view reference, ReferenceForm form) const {
    const std::optional<FoundPlace> place = FindPlace(reference);
    if (!place) return {};
    std::string text = form == ReferenceForm::Identifier ? place->Country->Identifier : place->Country->DiallingCode;
    if (place->Area != nullptr) text.append("/").append(place->Area->Identifier);
    return text;
}

bool Destinations::RegionContains(std::string_view region, std::string_view destination) const {
    const RegionEntry* entry = FindRegion(region);
    if (entry == nullptr) return false;
    const std::string wanted = Convert(destination, ReferenceForm::Identifier).value_or(std::string(destination));
    return std::ranges::any_of(entry->Matches, [&](const std::string& match) {
        const std::optional<std::string> one = Convert(match, ReferenceForm::Identifier);
        if (!one) return false;
        return one->find('/') == std::string::npos ? StartsWithFolded(wanted, *one) : EqualFolded(wanted, *one);
    });
}

std::vector<std::size_t> Destinations::RegionsOf(std::string_view destination) const {
    const std::string wanted =
        UpperText(Convert(destination, ReferenceForm::Identifier).value_or(std::string(destination)));
    const Holders& all = HoldersOf();
    std::vector<std::size_t> regions;
    const auto add = [&](const std::string& match) {
        if (const auto found = all.find(match); found != all.end())
            regions.insert(regions.end(), found->second.begin(), found->second.end());
    };
    // A whole country is one that begins the destination.
    const std::size_t country = std::min(wanted.find('/'), wanted.size());
    for (std::size_t length = 1; length <= country; ++length) add(wanted.substr(0, length));
    if (country < wanted.size()) add(wanted);
    std::ranges::sort(regions);
    regions.erase(std::unique(regions.begin(), regions.end()), regions.end());
    return regions;
}

bool LoadDestinations(Destinations& destinations) {
    const std::optional<TextOfFile> regions = ReadDestinationFile(kRegionFile);
    if (!regions) return false;
    const std::optional<TextOfFile> countries = ReadDestinationFile(kCountryFile);
    if (!countries) return false;
    std::vector<CountryEntry> entries = ParseCountries(countries->Text);
    const DatabaseNames names;
    const auto readAreas = [&](CountryEntry& country) { return !names.MayHaveAreas(country) || ReadAreas(country); };
    if (!std::ranges::all_of(entries, readAreas)) return false;
    destinations = {ParseMatchEntries(kRegionFile, regions->Text), std::move(entries)};
    return true;
}

std::optional<std::string> ConvertReference(const Destinations& destinations, std::string_view reference,
                                            ReferenceForm form) {
    const PartedReference parted = PartReference(reference);
    const CountryEntry* country = destinations.FindCountry(parted.Country);
    if (country != nullptr && parted.Area && !country->HasAreaFile)
        ShowOpenFault(DestinationPath(kAreaFile, country->DiallingCode));
    return destinations.Convert(reference, form);
}

std::string FindDestinationName(const Destinations& destinations, std::string_view reference) {
    const std::optional<FoundPlace> place = destinations.FindPlace(reference);
    if (!place) return std::string(kNotFound);
    std::string country = NameOr(place->Country->Description, place->Country->Identifier);
    if (place->Area == nullptr) return country;
    return NameOr(place->Area->Description, place->Area->Identifier) + ", " + country;
}

std::string FindRegionName(const Destinations& destinations, std::string_view identifier) {
    const RegionEntry* region = destinations.FindRegion(identifier);
    return region == nullptr ? std::string(kNotFound) : NameOr(region->Description, region->Identifier);
}

} // namespace bv
