// Lines of a control file as they lie in memory, cleaned by one rule: at most 280 characters, control characters
// (below 32, and 127) are blanks, blanks at the end do not count. For the reader and the rewriters.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ascii.h"

namespace bv {

inline constexpr std::string_view kLineEnd = "\r\n";

constexpr bool IsControl(char c) {
    const auto code = static_cast<unsigned char>(c);
    return code < 32 || code == 127;
}
constexpr char Cleaned(char c) { return IsControl(c) ? ' ' : c; }

// The index of the first control character at or after `from`, or the text's size.
std::size_t FindControl(std::string_view text, std::size_t from);

// The part of a line that counts; control characters inside it stay.
std::string_view CountingPart(std::string_view rawLine);

// Each character cleaned and in lower case.
inline constexpr std::array<char, 256> kFolded = [] {
    std::array<char, 256> folded{};
    for (std::size_t code = 0; code < folded.size(); ++code) folded[code] = ToLower(Cleaned(static_cast<char>(code)));
    return folded;
}();

// Whether the line, once cleaned, begins with the key, in any case.
inline bool BeginsWith(std::string_view line, std::string_view key) {
    if (line.size() < key.size()) return false;
    for (std::size_t i = 0; i < key.size(); ++i) {
        if (kFolded[static_cast<unsigned char>(line[i])] != kFolded[static_cast<unsigned char>(key[i])]) return false;
    }
    return true;
}

// The line cleaned.
std::string CleanLine(std::string_view rawLine);

// The line ends of a text, found in rising order: 64 bytes are looked at in one go and what was seen is kept, so that
// short lines cost little each.
class LineEnds {
  public:
    // The index of the first LF at or after `from`, or the text's size.
    std::size_t Find(std::string_view text, std::size_t from) {
        const std::uint64_t marks = from / kGlance == block_ ? marks_ >> from % kGlance : 0;
        return marks != 0 ? from + static_cast<std::size_t>(std::countr_zero(marks)) : FindFurther(text, from);
    }

    // To be called when bytes that have been searched change.
    void Forget() { block_ = kNone; }

  private:
    static constexpr std::size_t kGlance = 64;
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::size_t FindFurther(std::string_view text, std::size_t from);

    std::size_t block_ = kNone; // the block of kGlance bytes that marks_ tells of
    std::uint64_t marks_ = 0;   // a bit for each LF in it, the first byte's lowest
};

// Takes the first line, its line end included, off the front of the text; empty at the end.
std::string_view TakeLine(std::string_view& text);

// Takes lines off the front of the text that are clean as they stand and end in CR LF: as many as can be told at a
// glance, which may be none.
std::string_view TakeCleanLines(std::string_view& text);

// Where the first line that begins with the paragraph header starts, or the text's size.
std::size_t FindHeader(std::string_view text, std::string_view header);

// Key and value as a line of a file: a blank between them unless the value is empty.
std::string KeyedLine(std::string_view key, std::string_view value);

} // namespace bv
