// The text of DIALLING.INI, taken apart and put together in memory; dialling_file.h says what it holds.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dialling/dial_properties.h"

namespace bv {

inline constexpr std::string_view kNewDiallingText =
    "[BRIVANE]\r\nType: DiallingProperties\r\nRevision: A\r\n\r\n[DIALPROPERTIES]\r\n";
inline constexpr std::string_view kLocationHeader = "[LOCATION]";
inline constexpr std::string_view kLocationKey = "Location:";
inline constexpr std::string_view kDescriptionKey = "Description:";

using LocationName = FixedText<100>;

// What the text selects, and where its locations begin: behind the header "[DIALPROPERTIES]" or, without that header,
// at the start. The name is missing without its line.
struct DialSelection {
    std::optional<LocationName> Name;
    bool HasHeader = false;
    std::size_t Behind = 0;
};
DialSelection SelectionIn(std::string_view text);

// A location's paragraph as it stands: its header line, and the lines up to the next paragraph.
struct LocationText {
    std::string_view Header;
    std::string_view Body;
};

// Takes the next location, and what stands before it, off the front of the text. False, with nothing left, at the end.
bool TakeLocation(std::string_view& text, LocationText& location);

// The location's name; none without a description.
std::optional<LocationName> NameOf(const LocationText& location);

// Reads the location's keys into the record, which keeps its value without a readable one.
void ReadLocation(const LocationText& location, DialProperties& properties);

// Takes the lines before the next paragraph off the front of the text.
std::string_view TakeBody(std::string_view& text);

// Adds a line, and a key with its value, which has its blank also when the value is empty.
void AddLine(std::string& text, std::string_view line);
void AddKey(std::string& text, std::string_view key, std::string_view value);

// Adds a location's paragraph.
void AddLocation(const DialProperties& properties, std::string& text);

// The text with the record's location selected and written in the place of the one of its name, or behind all others;
// with every location dropped in modes 1 and 3 (WriteDiallingProperties).
std::string WithSelected(std::string_view text, const DialProperties& properties);

} // namespace bv
