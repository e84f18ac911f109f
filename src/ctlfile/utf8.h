// Texts in UTF-8, which other programs give and take; the server's files are in the workstation's code page.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bv {

// The bytes of the letter that the text begins with; 0 when none begins there.
std::size_t Utf8LetterSize(std::string_view text);

// Whether the whole text is UTF-8.
bool IsUtf8(std::string_view text);

void AppendUtf8(std::string& text, char32_t letter);

// Turns a text of UTF-8 into one of the code page, as far as that goes. Returns why it does not go further, in words
// without a place: "the letter U+0141 is not in the code page of the files"; empty when it all went.
std::string ToCodePage(std::string& text);

// A text of the code page in UTF-8. Every byte gives a letter.
std::string FromCodePage(std::string_view text);

} // namespace bv
