// Letters, digits and case in ASCII, whatever the locale: bytes 128 to 255 are neither letters nor digits
// and equal only themselves. Order without case is the order of the text folded to lower case.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace bv {

constexpr char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }
constexpr char ToUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsLetter(char c) { return ToLower(c) >= 'a' && ToLower(c) <= 'z'; }

// Space and tab, CR and LF: what separates words on a line of a control file.
constexpr bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Below, at or above zero as `a` sorts before, with or after `b`, without regard to case.
constexpr int CompareFolded(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto left = static_cast<unsigned char>(ToLower(a[i]));
        const auto right = static_cast<unsigned char>(ToLower(b[i]));
        if (left != right) return left < right ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

constexpr bool EqualFolded(std::string_view a, std::string_view b) {
    return a.size() == b.size() && CompareFolded(a, b) == 0;
}

constexpr bool StartsWithFolded(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && EqualFolded(text.substr(0, prefix.size()), prefix);
}

inline std::string UpperText(std::string_view text) {
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(), ToUpper);
    return upper;
}

// The text without blanks at its front.
constexpr std::string_view SkipBlanks(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    return text;
}

// The text without blanks at either end.
constexpr std::string_view TrimBlanks(std::string_view text) {
    text = SkipBlanks(text);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

} // namespace bv
