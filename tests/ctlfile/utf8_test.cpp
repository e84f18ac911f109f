// Texts in UTF-8 and in the code page of the files.
#include "ctlfile/utf8.h"

#include <gtest/gtest.h>

#include "platform/code_page.h"

namespace bv {
namespace {

TEST(ToCodePage, GivesEachLetterThatItHas) {
    std::string utf8;
    std::string bytes;
    for (unsigned code = 0; code < 256; ++code) {
        const char32_t letter = code >= 0x80 && code < 0xA0 ? platform::kWindows1252.at(code - 0x80) : code;
        if (code >= 0x80 && letter < 0xA0) continue; // a gap of the code page
        AppendUtf8(utf8, letter);
        bytes += static_cast<char>(code);
    }
    EXPECT_TRUE(IsUtf8(utf8));
    EXPECT_EQ(ToCodePage(utf8), "");
    EXPECT_EQ(utf8, bytes);
}

TEST(ToCodePage, SaysWhatDoesNotFit) {
    const struct {
        const char* Text;
        const char* Why;
    } rows[] = {
        {"a\xC5\x81", "the letter U+0141 is not in the code page of the files"},
        {"\xE4\xB8\xAD", "the letter U+4E2D is not in the code page of the files"},
        {"\xF0\x9F\x98\x80", "the letter U+1F600 is not in the code page of the files"},
        {"\x80", "the text is not UTF-8"},
        {"\xC0\x80", "the text is not UTF-8"},
        {"\xE2\x82", "the text is not UTF-8"},
        {"\xED\xA0\x80", "the text is not UTF-8"},
        {"\xF4\x90\x80\x80", "the text is not UTF-8"},
    };
    for (const auto& [text, why] : rows) {
        std::string given = text;
        EXPECT_EQ(ToCodePage(given), why) << text;
        EXPECT_EQ(given, text);
    }
}

} // namespace
} // namespace bv
