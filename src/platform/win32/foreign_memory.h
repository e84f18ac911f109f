// What a library has handed over, read without believing what it says of counts, sizes and places.
#pragma once

#include <cstddef>
#include <string>

namespace bv::platform {

// How many bytes can be read from there on, at most as many as wanted.
std::size_t ReadableBytes(const void* at, std::size_t wanted);

// The text that begins there, up to its end or the limit; empty where there is none that can be read.
std::wstring ForeignText(const wchar_t* text, std::size_t limit);

// A text in the code page, with "?" for each letter that this lacks.
struct FittedText {
    std::string Text;
    bool IsWhole = true; // without such a letter
};
FittedText FitIntoCodePage(std::wstring_view text);

} // namespace bv::platform
