// The general settings of routing as a person enters them.
#pragma once

#include "ctlfile/entered_values.h"
#include "lcr/router_settings.h"

namespace bv {

// Changes the settings, while nobody else can, to those that are given; the others stay. A kind of link is enabled when
// its account or directory is given, and disabled when that is emptied, unless the values say otherwise. False, with
// the file as it was, after a message: of a value that is not taken (EnterValues), 9183 without a name of this server,
// a rule that is broken (FaultOfRouter), a value that the file would not keep, or what ChangeRouterSettings says.
bool EnterRouterSettings(const EnteredValues& values);

} // namespace bv
