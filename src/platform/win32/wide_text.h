// Between the system's own texts, in UTF-16, and those of code pages.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace bv::platform {

std::wstring WideOf(std::u32string_view letters);
std::u32string LettersOfWide(std::wstring_view text);

std::wstring Widened(std::string_view text, UINT codePage);

// None when the code page lacks a letter.
std::optional<std::string> Narrowed(std::wstring_view text, UINT codePage);

} // namespace bv::platform
