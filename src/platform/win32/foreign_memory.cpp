#include "platform/win32/foreign_memory.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>

#include "platform/code_page.h"
#include "platform/win32/wide_text.h"

namespace bv::platform {

std::size_t ReadableBytes(const void* at, std::size_t wanted) {
    constexpr DWORD kReadable =
        PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE;
    const auto* next = static_cast<const std::byte*>(at);
    std::size_t bytes = 0;
    while (bytes < wanted && next != nullptr) {
        MEMORY_BASIC_INFORMATION region{};
        if (VirtualQuery(next, &region, sizeof region) == 0) break;
        const bool isReadable =
            region.State == MEM_COMMIT && (region.Protect & kReadable) != 0 && (region.Protect & PAGE_GUARD) == 0;
        if (!isReadable) break;
        const std::byte* end = static_cast<const std::byte*>(region.BaseAddress) + region.RegionSize;
        bytes += static_cast<std::size_t>(end - next);
        next = end;
    }
    return std::min(bytes, wanted);
}

std::wstring ForeignText(const wchar_t* text, std::size_t limit) {
    if (reinterpret_cast<std::uintptr_t>(text) % alignof(wchar_t) != 0) return {};
    const std::size_t readable = ReadableBytes(text, limit * sizeof(wchar_t)) / sizeof(wchar_t);
    return {text, std::find(text, text + readable, L'\0')};
}

FittedText FitIntoCodePage(std::wstring_view text) {
    FittedText fitted;
    for (const char32_t letter : LettersOfWide(text)) {
        const std::optional<std::string> bytes = InCodePage(letter);
        fitted.IsWhole = fitted.IsWhole && bytes.has_value();
        fitted.Text += bytes.value_or("?");
    }
    return fitted;
}

} // namespace bv::platform
