// What a person need not type each time: --ini, --drive and --codepage from the environment or a file of settings.
#pragma once

#include <string>

#include "console/command_line.h"

namespace bv::console {

// Fills in what the arguments do not say: from BVCTL_INI, BVCTL_DRIVE (several parted by ";") and BVCTL_CODEPAGE, else
// from the lines "ini=", "drive=" and "codepage=" of the user's file bvctl.ini. Returns what is wrong with that file,
// empty when nothing is.
std::string FillGlobalOptions(GlobalOptions& global);

} // namespace bv::console
