#include "lcr/priority.h"

#include <cstddef>

#include "platform/ascii.h"

namespace bv {

std::vector<std::string_view> WordsOfPriorities(unsigned priorities, std::span<const std::string_view> words) {
    std::vector<std::string_view> found;
    for (std::size_t i = 0; i < words.size(); ++i)
        if ((priorities >> i & 1U) != 0) found.push_back(words[i]);
    return found;
}

std::uint8_t PriorityBitOf(std::string_view word) {
    for (std::size_t i = 0; i < std::size(kPriorityWords); ++i)
        if (EqualFolded(word, kPriorityWords[i])) return static_cast<std::uint8_t>(1U << i);
    return 0;
}

} // namespace bv
