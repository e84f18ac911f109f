// All locations of DIALLING.INI together, as a person changes them before they are written in one go.
//
// What is written is what was changed: a key's line takes the place of that key's line, and other lines stay, also
// those that no reader knows. Only the two selections that are no location, TAPI and NoTelNumEdit, drop what stands
// behind them, as WriteDiallingProperties has it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/replaced_file.h"
#include "dialling/dial_properties.h"

namespace bv {

struct DialPlace {
    std::optional<DialProperties> Before; // as the file has it; none of a new one
    std::size_t Nth = 0;                  // how many of that name stand before it there
    DialProperties Now = {};
    bool IsDeleted = false;
};

struct DialLocations {
    std::uint16_t Mode = kDialLocation;
    std::optional<std::size_t> Chosen = {}; // in mode kDialLocation, the place that is selected
    std::vector<DialPlace> Places = {};     // in the file's order, new ones behind

    // As they were read.
    std::string Selected = {}; // "London", "TAPI"; empty: nothing
    std::size_t Unnamed = 0;   // locations without a description, which are kept as they stand
    TextStamp Stamp = {};
};

// None, after 413 or 9011, when the file is there and cannot be read; without a file there is nothing yet. The text of
// a save that was cut off is read after warning 9012.
std::optional<DialLocations> ReadDialLocations();

// The first location of that name that is not deleted; none, after 9411, without one.
std::optional<std::size_t> FindPlace(const DialLocations& locations, std::string_view name);

// The place's name as a list shows it: a name that an earlier one has is marked.
std::string ShownName(const DialLocations& locations, std::size_t place);

// Adds a location, with the values of another one if there is one, and chooses it when none is chosen; gives a place
// another name; asks 5193 and takes a place away. False after why not: the name is none (9404), too long or there
// already (9410), or nothing beside the selection is kept (9416).
bool AddPlace(DialLocations& locations, std::string_view name, std::optional<std::size_t> like = {});
bool RenamePlace(DialLocations& locations, std::size_t place, std::string_view name);
bool DeletePlace(DialLocations& locations, std::size_t place);

// Gives a place the values of other properties, but not their name.
void FillPlace(DialLocations& locations, std::size_t place, const DialProperties& values);

// Whether saving would change anything.
bool IsChanged(const DialLocations& locations);

// Why the selection cannot be saved: no location is chosen (9402), or one that no reader finds by its name (9410,
// 9404). None when it can.
std::optional<std::string> FaultOfSelection(const DialLocations& locations);

// Writes what was changed, and loads the process's properties anew. Asks 9408 when the file is another one than was
// read, whose changes by others stay; and 9409 before paragraphs are dropped. Without a change nothing is written.
// Status 470 and 471; sets SettingsChanged. False after FaultOfSelection, a No, 9410 (another has taken a new name
// meanwhile), 413, 9011, 9025 or 5000; then the file is as it was.
bool SaveDialLocations(const DialLocations& locations);

} // namespace bv
