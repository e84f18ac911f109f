// The code page in which the texts of the server's files are.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace bv::platform {

// Chooses the code page by its number, such as 1250; 0 stands for the one that holds until another is chosen: the
// workstation's own on Windows, windows-1252 elsewhere. False, and nothing is chosen, for one that the system does not
// know and, but for the workstation's own, for one whose letters are not a byte each.
bool UseCodePage(unsigned number);

// The letter's bytes in the code page; none when it has no such letter.
std::optional<std::string> InCodePage(char32_t letter);

// The letters of a text in the code page. A byte that stands for none is taken for the letter of its own number.
std::u32string LettersOf(std::string_view text);

// What windows-1252 has at 0x80 to 0x9F; elsewhere it is Latin-1. Its five gaps stand for themselves.
inline constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

} // namespace bv::platform
