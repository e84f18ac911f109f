// DIALLING.INI, which holds the dialling properties:
//
//   [DIALPROPERTIES]
//   Location: London          or TAPI, or NoTelNumEdit
//
//   [LOCATION]                any number of them
//   Description: London
//   Country: 44
//   ...
//   DialAsLocal: 181          a line for each prefix, one below the other
//
// A change writes the whole file as DIALLING.NEW and then puts that in its place.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "dialling/dial_properties.h"

namespace bv {

inline constexpr std::string_view kTelephonyLocation = "TAPI";
inline constexpr std::string_view kNoEditingLocation = "NoTelNumEdit";

// Clears the record and sets Mode by the value of "Location:", in any case, and Description when it is a name; and the
// value for a record.
void SelectLocation(DialProperties& properties, std::string_view name);
std::string_view SelectedLocation(const DialProperties& properties);

// Fills the record, cleared first, with the location that the file names, or with the one that is given instead. 0;
// kNumbersNotEdited, with Mode set; kKeyMissing (-4059): no location is named, or the file does not hold it;
// kDialFileUnreadable: the file cannot be opened, or, after 9011, not be read to its end. A location's paragraph
// without a description is reported as a status text and skipped. With any code but the first two the record is
// cleared.
StatusCode ReadDialLocation(const std::string& path, std::optional<std::string_view> location,
                            DialProperties& properties);

// The same for the process's one record, which counts as loaded after 0 and kNumbersNotEdited.
StatusCode ReadDiallingProperties(const std::string& path);

// The process's record; cleared unless it is loaded.
const DialProperties& GetDialProperties();
bool DialPropertiesAreLoaded();

// The file for a reader: DIALLING.INI, or, after the warning 9012, DIALLING.NEW when that is there alone. So a change
// leaves them, the new text complete, that was cut off between deleting the one and renaming the other; before the
// next change it is offered to put that in place.
std::string DiallingFileToRead();

// Runs a change of the file, from its reading on, while no other program of ours can change it. False after 413, or
// when the change returned false.
bool WithDiallingFileHeld(const std::function<bool()>& change);

// Makes the record's location the selected one and puts it in the place of the paragraph with its description, or
// behind all others. Modes 1 and 3 drop every location from the file, which is intended; so do the lines of
// "[DIALPROPERTIES]" and paragraphs of other names among the locations. Everything else stays as it was. Status 470
// and 471; sets SettingsChanged. False after 413 (a file cannot be made or opened), 9011 or 5000; then the file is as
// it was.
bool WriteDiallingProperties(const DialProperties& properties);

} // namespace bv
