// The system's tables of encodings.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace bv::platform {

// The text turned from one encoding into another, each by the system's name for it. None when the system does not know
// one of them, and when the text is not one of the first, or has a letter that the second lacks.
std::optional<std::string> Converted(std::string_view text, const std::string& from, const std::string& to);

} // namespace bv::platform
