// Users and groups whom settings elsewhere name: who gets what a device receives or a directory submits.
#pragma once

#include <string_view>

namespace bv {

// Whether a person may name this one: a user or group of the user list, or nobody. As long as there is no list yet,
// anybody. False after "Brivane user %s not found", 413 or 9011.
bool CheckReceiver(std::string_view name);

} // namespace bv
