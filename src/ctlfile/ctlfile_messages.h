// The numbered strings of changes to control files by their names.
#pragma once

#include "voice/message_ids.h"

namespace bv {

#define STR(id, name, text) inline constexpr MessageId<CountPlaces(text)> k##name{id};
#include "resources/strings/ctlfile.def"
#undef STR

} // namespace bv
