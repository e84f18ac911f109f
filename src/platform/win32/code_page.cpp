#include "platform/code_page.h"

#include <windows.h>

namespace bv::platform {

std::optional<std::string> InCodePage(char32_t letter) {
    constexpr char32_t kFirstPair = 0x10000; // from here on a letter is two units
    std::array<wchar_t, 2> units = {static_cast<wchar_t>(letter), 0};
    if (letter >= kFirstPair) {
        units = {static_cast<wchar_t>(0xD800 + ((letter - kFirstPair) >> 10)),
                 static_cast<wchar_t>(0xDC00 + ((letter - kFirstPair) & 0x3FF))};
    }
    // UTF-8 has every letter, and refuses to be asked whether one was replaced.
    const bool isUtf8 = GetACP() == CP_UTF8;
    BOOL isReplaced = FALSE;
    std::array<char, 8> bytes{};
    const int size =
        WideCharToMultiByte(CP_ACP, isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS, units.data(), letter >= kFirstPair ? 2 : 1,
                            bytes.data(), static_cast<int>(bytes.size()), nullptr, isUtf8 ? nullptr : &isReplaced);
    if (size <= 0 || isReplaced != FALSE) return {};
    return std::string(bytes.data(), static_cast<std::size_t>(size));
}

} // namespace bv::platform
