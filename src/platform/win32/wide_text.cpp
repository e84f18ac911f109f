#include "platform/win32/wide_text.h"

namespace bv::platform {
namespace {

constexpr char32_t kFirstPair = 0x10000; // from here on a letter is two units
constexpr char32_t kFirstHalf = 0xD800;
constexpr char32_t kSecondHalf = 0xDC00;
constexpr char32_t kHalfBits = 0x3FF;

bool IsHalf(wchar_t unit, char32_t half) { return (unit & ~kHalfBits) == half; }

} // namespace

std::wstring WideOf(std::u32string_view letters) {
    std::wstring text;
    for (const char32_t letter : letters) {
        if (letter < kFirstPair) {
            text += static_cast<wchar_t>(letter);
        } else {
            text += static_cast<wchar_t>(kFirstHalf + ((letter - kFirstPair) >> 10));
            text += static_cast<wchar_t>(kSecondHalf + (letter & kHalfBits));
        }
    }
    return text;
}

std::u32string LettersOfWide(std::wstring_view text) {
    std::u32string letters;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isPair = IsHalf(text[i], kFirstHalf) && i + 1 < text.size() && IsHalf(text[i + 1], kSecondHalf);
        letters += static_cast<char32_t>(isPair ? kFirstPair + ((text[i] & kHalfBits) << 10) + (text[i + 1] & kHalfBits)
                                                : text[i]);
        if (isPair) ++i;
    }
    return letters;
}

std::wstring Widened(std::string_view text, UINT codePage) {
    if (text.empty()) return {};
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0'); // never more units than bytes
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

std::optional<std::string> Narrowed(std::wstring_view text, UINT codePage) {
    if (text.empty()) return "";
    // UTF-8 has every letter, and refuses to be asked whether one was replaced.
    const bool isUtf8 = codePage == CP_UTF8 || (codePage == CP_ACP && GetACP() == CP_UTF8);
    BOOL isReplaced = FALSE;
    std::string bytes(4 * text.size(), '\0');
    const int size =
        WideCharToMultiByte(codePage, isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS, text.data(), static_cast<int>(text.size()),
                            bytes.data(), static_cast<int>(bytes.size()), nullptr, isUtf8 ? nullptr : &isReplaced);
    if (size <= 0 || isReplaced != FALSE) return {};
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
}

} // namespace bv::platform
