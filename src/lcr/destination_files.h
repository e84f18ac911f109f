// The files of the destinations: their paths and their texts. Each list stands in one paragraph and ends at an empty
// line or at the next paragraph. The editing procedures take a whole text and give the new one; what they do not
// change stays byte for byte.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lcr/destinations.h"
#include "lcr/text_file.h"

namespace bv {

// One kind of file.
struct DestinationFile {
    std::string_view Type;      // "Region", as its header and, for two of them, its name have it
    std::string_view Paragraph; // "[REGIONS]"
    std::string_view EntryKey;  // "Region:"; empty for countries, whose lines begin with their dialling code
};
inline constexpr DestinationFile kRegionFile = {"Region", "[REGIONS]", "Region:"};
inline constexpr DestinationFile kCountryFile = {"Country", "[COUNTRIES]", ""};
inline constexpr DestinationFile kAreaFile = {"Area", "[AREAS]", "Area:"};

// The name and the path of a file, of its working copy ("new") or of that one's rewrite file ("ne2").
std::string DestinationName(const DestinationFile& file, std::string_view diallingCode, std::string_view extension);
std::string DestinationPath(const DestinationFile& file, std::string_view diallingCode = {},
                            std::string_view extension = "ini");

// The file and its working copy.
ReplacedFile ReplacedDestinationFile(const DestinationFile& file, std::string_view diallingCode = {});

// The text of a new file without entries.
std::string EmptyDestinationText(const DestinationFile& file);

// Whether the text holds the paragraph of the list.
bool HasDestinationList(const DestinationFile& file, std::string_view text);

// The live file's text; that of its working copy when a save was cut off. None as for ReadReplacedFile.
std::optional<TextOfFile> ReadDestinationFile(const DestinationFile& file, std::string_view diallingCode = {});

// The entries of a list. Lines that are no entries, and what belongs to them, are left out.
std::vector<MatchEntry> ParseMatchEntries(const DestinationFile& file, std::string_view text);
std::vector<CountryEntry> ParseCountries(std::string_view text);

// The text with an entry put in the place of the first one whose identifier begins with the entry's, or else at the end
// of the list: for regions and areas in the place of the empty line there and of what follows up to the next entry.
std::string WithMatchEntry(const DestinationFile& file, std::string_view text, const MatchEntry& entry);
std::string WithCountry(std::string_view text, const CountryEntry& entry);

// The text without the first entry of exactly that identifier, in any case; none when there is none.
std::optional<std::string> WithoutMatchEntry(const DestinationFile& file, std::string_view text,
                                             std::string_view identifier);
std::optional<std::string> WithoutCountry(std::string_view text, std::string_view identifier);

// The text with each match of its entries as the change makes it; without those of which it makes none.
using MatchChange = std::function<std::optional<std::string>(std::string_view match)>;
std::string WithChangedMatches(const DestinationFile& file, std::string_view text, const MatchChange& change);

// The lines of an entry.
std::string MatchEntryLines(const DestinationFile& file, const MatchEntry& entry);
std::string CountryLine(const CountryEntry& entry);

} // namespace bv
