// A record that somebody else has changed since it was opened here.
#pragma once

#include <optional>

#include "users/user_entry.h"

namespace bv {

// What was entered, on top of the record as the list has it now. Keys that only somebody else has changed stay as they
// are there; of a key that both have changed, 9204 asks whose value it shall be. None after a message: the record is
// gone, or the list cannot be read.
std::optional<RecordEntry> OnTopOfTheList(const RecordEntry& entry);

} // namespace bv
