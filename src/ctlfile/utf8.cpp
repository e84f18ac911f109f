#include "ctlfile/utf8.h"

#include <utility>

#include "platform/code_page.h"
#include "voice/format.h"

namespace bv {
namespace {

// Whether the byte at `at` continues a letter, and lies from `low` to `high`.
bool Continues(std::string_view text, std::size_t at, unsigned low = 0x80, unsigned high = 0xBF) {
    if (at >= text.size()) return false;
    const auto byte = static_cast<unsigned char>(text[at]);
    return byte >= low && byte <= high;
}

// The letter that a text of its bytes alone is.
char32_t LetterOf(std::string_view bytes) {
    constexpr unsigned kLeadBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07}; // by the number of bytes
    char32_t letter = static_cast<unsigned char>(bytes[0]) & kLeadBits[bytes.size()];
    for (const char c : bytes.substr(1)) letter = letter << 6 | (static_cast<unsigned char>(c) & 0x3F);
    return letter;
}

} // namespace

std::size_t Utf8LetterSize(std::string_view text) {
    if (text.empty()) return 0;
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return Continues(text, 1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        // No overlong forms, no surrogates.
        const bool second = Continues(text, 1, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF);
        return second && Continues(text, 2) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const bool second = Continues(text, 1, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF);
        return second && Continues(text, 2) && Continues(text, 3) ? 4 : 0;
    }
    return 0;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t size = Utf8LetterSize(text);
        if (size == 0) return false;
        text.remove_prefix(size);
    }
    return true;
}

void AppendUtf8(std::string& text, char32_t letter) {
    const auto continued = [letter](unsigned shift) { return static_cast<char>(0x80 | (letter >> shift & 0x3F)); };
    if (letter < 0x80) {
        text += static_cast<char>(letter);
    } else if (letter < 0x800) {
        text.append({static_cast<char>(0xC0 | letter >> 6), continued(0)});
    } else if (letter < 0x10000) {
        text.append({static_cast<char>(0xE0 | letter >> 12), continued(6), continued(0)});
    } else {
        text.append({static_cast<char>(0xF0 | letter >> 18), continued(12), continued(6), continued(0)});
    }
}

std::string ToCodePage(std::string& text) {
    std::string converted;
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t size = Utf8LetterSize(rest);
        if (size == 0) return "the text is not UTF-8";
        const char32_t letter = LetterOf(rest.substr(0, size));
        const auto bytes = platform::InCodePage(letter);
        if (!bytes)
            return FormatText("the letter U+%04X is not in the code page of the files", static_cast<unsigned>(letter));
        converted += *bytes;
        rest.remove_prefix(size);
    }
    text = std::move(converted);
    return {};
}

std::string FromCodePage(std::string_view text) {
    std::string utf8;
    for (const char32_t letter : platform::LettersOf(text)) AppendUtf8(utf8, letter);
    return utf8;
}

} // namespace bv
