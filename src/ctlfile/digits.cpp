#include "ctlfile/digits.h"

#include <algorithm>
#include <charconv>

#include "platform/ascii.h"

namespace bv {

std::optional<int> ParseDigits(std::string_view text) {
    if (text.empty() || !std::ranges::all_of(text, IsDigit)) return {};
    int number = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    return parsed.ec == std::errc() ? std::optional(number) : std::nullopt;
}

} // namespace bv
