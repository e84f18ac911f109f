// How many places of a terminal's line a letter takes.
#pragma once

#include <cstddef>

namespace bv::console {

// Of the letters that code pages have: marks that stand above or below the letter before take none, those of East Asia
// take two.
constexpr std::size_t LetterWidth(char32_t letter) {
    constexpr struct {
        char32_t First;
        char32_t Last;
        std::size_t Width;
    } kRanges[] = {
        {0x0300, 0x036F, 0}, {0x0591, 0x05BD, 0}, {0x05C1, 0x05C2, 0}, {0x064B, 0x0652, 0},
        {0x0E31, 0x0E31, 0}, {0x0E34, 0x0E3A, 0}, {0x0E47, 0x0E4E, 0}, {0x200B, 0x200F, 0},
        {0x1100, 0x115F, 2}, {0x2E80, 0xA4CF, 2}, {0xAC00, 0xD7A3, 2}, {0xF900, 0xFAFF, 2},
        {0xFE30, 0xFE6F, 2}, {0xFF00, 0xFF60, 2}, {0xFFE0, 0xFFE6, 2}, {0x1F300, 0x3FFFD, 2},
    };
    for (const auto& range : kRanges) {
        if (letter >= range.First && letter <= range.Last) return range.Width;
    }
    return 1;
}

} // namespace bv::console
