// The dialling properties as a person changes them. Each is false after a message.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dialling/dial_properties.h"

namespace bv {

// The prefixes with commas between them.
std::string PrefixesText(const DialPrefixes& prefixes);

// The properties to be changed: those of the named location or, without a name, of the selected one. A location that
// the file does not hold is new, when 9146 is answered Yes. 9102 and 9147 without a name and a location.
bool SelectForChange(std::optional<std::string_view> location, DialProperties& properties);

// Sets a key of a location; prefixes are parted by commas. What it holds already is taken as it is.
bool EnterDialValue(DialProperties& properties, std::string_view key, std::string_view value);

} // namespace bv
