// The dialling properties as a person changes them. Each is false after a message.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ctlfile/entered_values.h"
#include "ctlfile/key_help.h"
#include "dialling/dial_properties.h"

namespace bv {

// The prefixes with commas between them.
std::string PrefixesText(const DialPrefixes& prefixes);

// The properties to be changed: those of the named location or, without a name, of the selected one. A location that
// the file does not hold is new, when 9146 is answered Yes. 9102 and 9147 without a name and a location.
bool SelectForChange(std::optional<std::string_view> location, DialProperties& properties);

// Sets a key of a location; prefixes are parted by commas or blanks. What it holds already is taken as it is.
// The reason, with nothing set, when it cannot be.
std::optional<std::string> StoreDialValue(DialProperties& properties, std::string_view key, std::string_view value);

// The same, with the reason shown.
bool EnterDialValue(DialProperties& properties, std::string_view key, std::string_view value);

// Adds, renames and deletes a location of the file, another one than is selected, at once.
bool AddDialLocation(std::string_view name, const EnteredValues& values);
bool RenameDialLocation(std::string_view name, std::string_view newName);
bool DeleteDialLocation(std::string_view name);

// What is said of a key, list or not, wherever a person meets it.
KeyHelp HelpOfDialKey(std::string_view name);

// "Numbers are dialled by: London (+44 20)", by the file as it is now; or why that cannot be said.
std::string DialledByText();

} // namespace bv
