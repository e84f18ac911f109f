// Where the settings of devices and the options refer to users and groups.
#pragma once

#include <optional>
#include <vector>

#include "shell/name_set.h"
#include "shell/uses.h"

namespace bv {

// "RecdUser:" of devices, and "User:" of what is submitted by programs and scanners. None after a message: the settings
// cannot be read.
std::optional<std::vector<Use>> FindSettingUses(const NameSet& names);

// Makes the change to these lines in one rewrite. Sets SettingsChanged. False after a message of EditControlFile.
bool ChangeSettingUses(const NameSet& names, const UseChange& change);

} // namespace bv
