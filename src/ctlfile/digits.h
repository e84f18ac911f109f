// Numbers that people give. Those that control files hold are read by ParseNumber, which takes more.
#pragma once

#include <optional>
#include <string_view>

namespace bv {

// The number of a text of decimal digits alone; none for any other text, and for a number that an int cannot hold.
std::optional<int> ParseDigits(std::string_view text);

} // namespace bv
