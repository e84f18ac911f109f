// Users as comma-separated values, as UserImport takes them.
#pragma once

#include <optional>
#include <span>
#include <string>

namespace bv {

// A first line of the keys' names, and one for each user but the default one, in file order. None after a message.
std::optional<std::string> UsersAsCsv();

// The same of the users of those names alone.
std::optional<std::string> UsersAsCsv(std::span<const std::string> names);

} // namespace bv
