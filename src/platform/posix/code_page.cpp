#include "platform/code_page.h"

#include <algorithm>

#include "platform/posix/charset.h"

namespace bv::platform {
namespace {

constexpr unsigned kDefault = 1252;
constexpr std::size_t kHalf = 0x80; // below it, a code page that is taken is ASCII

// The letters of the bytes from 0x80 on.
using UpperHalf = std::array<char32_t, kHalf>;

UpperHalf Windows1252() {
    UpperHalf letters{};
    for (std::size_t i = 0; i < kHalf; ++i) {
        letters.at(i) = i < kWindows1252.size() ? kWindows1252.at(i) : static_cast<char32_t>(kHalf + i);
    }
    return letters;
}

UpperHalf& InUse() {
    static UpperHalf letters = Windows1252();
    return letters;
}

// The only letter of a text in UTF-32, lowest byte first; none for more or fewer.
std::optional<char32_t> OnlyLetter(const std::string& text) {
    if (text.size() != 4) return {};
    char32_t letter = 0;
    for (std::size_t i = 4; i > 0; --i) letter = letter << 8 | static_cast<unsigned char>(text[i - 1]);
    return letter;
}

// As the system's tables have it; none when they do not, or a letter takes more than a byte.
std::optional<UpperHalf> FromTables(unsigned number) {
    const std::string name = "CP" + std::to_string(number);
    std::size_t known = 0;
    UpperHalf letters{};
    for (std::size_t i = 0; i < kHalf; ++i) {
        const auto byte = static_cast<char>(kHalf + i);
        const auto letter = OnlyLetter(Converted({&byte, 1}, name, "UTF-32LE").value_or(""));
        letters.at(i) = letter.value_or(static_cast<char32_t>(kHalf + i));
        if (letter) ++known;
    }
    // Where letters take two bytes, most of the upper half stands for nothing by itself.
    const bool isAscii = Converted("A", name, "UTF-32LE") == std::string("A\0\0\0", 4);
    return isAscii && known > kHalf * 5 / 8 ? std::optional(letters) : std::nullopt;
}

} // namespace

bool UseCodePage(unsigned number) {
    const bool isDefault = number == 0 || number == kDefault;
    const std::optional<UpperHalf> letters = isDefault ? Windows1252() : FromTables(number);
    if (letters) InUse() = *letters;
    return letters.has_value();
}

std::optional<std::string> InCodePage(char32_t letter) {
    if (letter < kHalf) return std::string(1, static_cast<char>(letter));
    const UpperHalf& letters = InUse();
    for (std::size_t i = 0; i < kHalf; ++i) {
        if (letters.at(i) == letter) return std::string(1, static_cast<char>(kHalf + i));
    }
    return {};
}

std::u32string LettersOf(std::string_view text) {
    std::u32string letters;
    letters.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        letters += byte < kHalf ? byte : InUse().at(byte - kHalf);
    }
    return letters;
}

} // namespace bv::platform
