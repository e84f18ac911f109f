// The region file, the country file and an area file, whatever their bytes: writing and deleting an entry, one that was
// read or a new one, touches no other. Parameters: region, country or area | identifier | description | match or
// dialling code.
#include "lcr/destination_files.h"

#include <algorithm>

#include "fuzz/fuzz.h"
#include "platform/ascii.h"

namespace bv::fuzz {
namespace {

template <class Entry, class Parse, class Write, class Delete>
void TryChange(const std::string& text, const Entry& entry, Parse parse, Write write, Delete without) {
    std::vector<Entry> expected = parse(text);
    const auto begins = [&](const Entry& other) { return StartsWithFolded(other.Identifier, entry.Identifier); };
    const auto place = std::ranges::find_if(expected, begins) - expected.begin();
    if (place == std::ssize(expected)) expected.push_back(entry);
    expected[static_cast<std::size_t>(place)] = entry;

    const std::string written = write(text, entry);
    std::vector<Entry> entries = parse(written);
    // Where an empty line has ended the list, it may now go on.
    Require(entries.size() >= expected.size(), "an entry is lost");
    Require(std::equal(expected.begin(), expected.end(), entries.begin()), "what was written");
    const std::optional<std::string> deleted = without(written, entry.Identifier);
    Require(deleted.has_value(), "the written entry is found");
    entries.erase(entries.begin() + place);
    Require(parse(*deleted) == entries, "what was deleted");
}

void TryMatches(const DestinationFile& file, const std::string& text, const MatchEntry& given) {
    const auto parse = [&](std::string_view list) { return ParseMatchEntries(file, list); };
    const auto write = [&](std::string_view list, const MatchEntry& entry) {
        return WithMatchEntry(file, list, entry);
    };
    const auto without = [&](std::string_view list, std::string_view name) {
        return WithoutMatchEntry(file, list, name);
    };
    std::vector<MatchEntry> entries = parse(text);
    entries.push_back(given);
    for (const MatchEntry& entry : {entries.front(), given}) {
        const bool isKept =
            parse(std::string(file.Paragraph) + "\n" + MatchEntryLines(file, entry)) == std::vector{entry};
        if (isKept) TryChange(text, entry, parse, write, without);
    }
}

void TryCountries(const std::string& text, const CountryEntry& given) {
    std::vector<CountryEntry> entries = ParseCountries(text);
    entries.push_back(given);
    for (const CountryEntry& entry : {entries.front(), given}) {
        const bool isKept = ParseCountries("[COUNTRIES]\n" + CountryLine(entry)) == std::vector{entry};
        if (isKept) TryChange(text, entry, ParseCountries, WithCountry, WithoutCountry);
    }
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    const auto parameter = [&](std::size_t index) { return std::string(input.Parameter(index).value_or("1")); };
    const std::string text(input.Text);
    if (parameter(0) == "country")
        TryCountries(text, {parameter(1), parameter(2), parameter(3), "0"});
    else
        TryMatches(parameter(0) == "area" ? kAreaFile : kRegionFile, text,
                   {parameter(1), parameter(2), {parameter(3)}});
}

} // namespace bv::fuzz
