#include "platform/code_page.h"

#include <algorithm>

namespace bv::platform {

std::optional<std::string> InCodePage(char32_t letter) {
    constexpr char32_t kFirst = 0x80;
    constexpr char32_t kEnd = kFirst + kWindows1252.size();
    if (letter < kFirst || (letter >= kEnd && letter <= 0xFF)) return std::string(1, static_cast<char>(letter));
    const auto found = std::ranges::find(kWindows1252, letter);
    if (found == kWindows1252.end()) return {};
    return std::string(1, static_cast<char>(kFirst + static_cast<char32_t>(found - kWindows1252.begin())));
}

} // namespace bv::platform
