// The numbered strings: everything that a person reads in boxes and status lines.
#pragma once

#include <string_view>

namespace bv {

// The string of that number as resources/strings.def has it; empty when there is none.
std::string_view FindString(int id);

} // namespace bv
