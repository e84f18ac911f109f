// Where the settings of devices and the options refer to users, groups and printers.
#pragma once

#include <optional>
#include <vector>

#include "shell/name_set.h"
#include "shell/uses.h"

namespace bv {

// For users and groups "RecdUser:" of devices, and "User:" of what is submitted by programs and scanners; for printers
// those that print sent and received faxes. None after a message: the settings cannot be read.
std::optional<std::vector<Use>> FindSettingUses(NamedThing kind, const NameSet& names);

// Makes the change to these lines in one rewrite. Sets SettingsChanged. False after a message of EditControlFile.
bool ChangeSettingUses(NamedThing kind, const NameSet& names, const UseChange& change);

} // namespace bv
