// The stored form of passwords: a scrambled text of lower-case letters, another one at each saving. It keeps
// passwords from being read at a glance in shared files; it is no cipher.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace bv {

inline constexpr std::size_t kMaxPassword = 99;

// Scrambles a password of at most 99 characters into 2 * (size / 2 - 1) letters. None when it does not fit: size is
// at most 199, and at least twice the password's length and 14.
std::optional<std::string> ScrambleText(std::string_view password, std::size_t size);

// The password, or none when the text is no scrambled one or the password is over the limit.
std::optional<std::string> UnscrambleText(std::string_view scrambled, std::size_t limit = kMaxPassword);

// Whether a text is scrambled, so that a person who gives it means it as it stands: no password looks like one.
bool IsScrambledText(std::string_view text);

// The number of letters in which a settings page stores a password: 30, 60, 90 or 100 by its length.
std::size_t StoredLetters(std::size_t passwordLength);

// Scrambles a password into that many letters, as every settings page does.
std::optional<std::string> ScrambleForPage(std::string_view password);

} // namespace bv
