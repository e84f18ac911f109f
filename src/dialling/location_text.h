// The text of DIALLING.INI with the locations changed that a person has changed, and every other line as it was.
#pragma once

#include <string>
#include <string_view>

#include "dialling/dial_locations.h"

namespace bv {

// The text of the file with that location selected. A location that the text does not have any more comes back when it
// was changed or is the one to be selected, and in a file that is gone.
std::string WithLocations(const TextOfFile& live, const DialLocations& locations, std::string_view selected);

// The paragraphs behind the selection, a line for each, at most 12 of them: "[LOCATION] London".
std::string DroppedParagraphs(std::string_view text);

} // namespace bv
