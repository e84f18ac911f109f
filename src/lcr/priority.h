// Priorities of faxes, as routing rules and links name them.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace bv {

// Bits of a set of priorities.
enum PriorityBit : std::uint8_t { kNormalPriority = 1, kUrgentPriority = 2, kBackgroundPriority = 4 };
inline constexpr std::uint8_t kEveryPriority = 7;

// As files have them and as a person reads them, in the order of their bits.
inline constexpr std::string_view kPriorityWords[] = {"NORMAL", "URGENT", "BACKGROUND"};
inline constexpr std::string_view kPriorityNames[] = {"Normal", "Urgent", "Background"};

// The words of the set's priorities.
std::vector<std::string_view> WordsOfPriorities(unsigned priorities,
                                                std::span<const std::string_view> words = kPriorityWords);

// The bit of a priority's word, in any case; 0 for another word.
std::uint8_t PriorityBitOf(std::string_view word);

// The empty set and the full one both mean any priority.
constexpr bool IsAnyPriority(std::uint8_t priorities) {
    return (priorities & kEveryPriority) == 0 || (priorities & kEveryPriority) == kEveryPriority;
}

} // namespace bv
