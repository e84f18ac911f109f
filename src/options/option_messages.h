// The numbered strings of this area by their names.
#pragma once

#include "voice/message_ids.h"

namespace bv {

#define STR(id, name, text) inline constexpr MessageId<CountPlaces(text)> k##name{id};
#include "resources/strings/options.def"
#undef STR

} // namespace bv
