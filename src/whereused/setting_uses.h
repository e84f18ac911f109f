// Where the settings of devices and the options refer to users, groups and printers.
#pragma once

#include <optional>
#include <vector>

#include "shell/name_set.h"
#include "shell/uses.h"

namespace bv {

// Whose: users and groups have "RecdUser:" of devices, and "User:" of what is submitted by programs and scanners;
// printers the options that name them, older ones, too.
enum class SettingName { User, Printer };

// None after a message: the settings cannot be read.
std::optional<std::vector<Use>> FindSettingUses(SettingName kind, const NameSet& names);

// Makes the change to these lines in one rewrite. Sets SettingsChanged. False after a message of EditControlFile.
bool ChangeSettingUses(SettingName kind, const NameSet& names, const UseChange& change);

} // namespace bv
