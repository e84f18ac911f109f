#include "ctlfile/lines.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "ctlfile/reader.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define BV_SSE2
#endif

namespace bv {
namespace {

constexpr std::uint64_t kEachByte = 0x0101010101010101;
constexpr std::uint64_t kTopBits = 0x80 * kEachByte;

// A mark in the top bit of each of eight bytes that is below 32 or equal to 127: the "has less" and "has zero byte"
// tests of S. E. Anderson's Bit Twiddling Hacks. Marks above the lowest one may be false.
constexpr std::uint64_t MarkControls(std::uint64_t bytes) {
    const std::uint64_t below = (bytes - 32 * kEachByte) & ~bytes;
    const std::uint64_t flipped = bytes ^ (127 * kEachByte);
    const std::uint64_t equal = (flipped - kEachByte) & ~flipped;
    return (below | equal) & kTopBits;
}

// Where the first marked byte is, as far as the machine's byte order lets the lowest mark tell.
constexpr std::size_t FirstMarked(std::uint64_t marks) {
    return std::endian::native == std::endian::little ? static_cast<std::size_t>(std::countr_zero(marks)) / 8 : 0;
}

constexpr std::size_t kGlance = 64; // bytes looked at in one go
using Flags = std::array<bool, kGlance>;

// A bit for each LF among the bytes, the first byte's lowest.
std::uint64_t MarkLineEnds(const char* bytes) {
    std::uint64_t marks = 0;
#ifdef BV_SSE2
    const __m128i wanted = _mm_set1_epi8('\n');
    for (std::size_t i = 0; i < kGlance; i += sizeof(__m128i)) {
        __m128i some;
        std::memcpy(&some, bytes + i, sizeof some);
        const int found = _mm_movemask_epi8(_mm_cmpeq_epi8(some, wanted));
        marks |= static_cast<std::uint64_t>(found) << i;
    }
#else
    for (std::size_t i = 0; i < kGlance; ++i) marks |= std::uint64_t{bytes[i] == '\n'} << i;
#endif
    return marks;
}

// So many blocks without a line end between two with one hold a line of less than kMaxLine.
constexpr int kMaxBlocksWithoutEnd = 2;
static_assert((kMaxBlocksWithoutEnd + 2) * kGlance <= kMaxLine);

struct Glance {
    bool Clean;
    bool HasLineEnd;
};

bool AnySet(const Flags& flags) {
    std::array<std::uint64_t, kGlance / 8> words{};
    std::memcpy(words.data(), flags.data(), kGlance);
    return std::ranges::any_of(words, [](std::uint64_t word) { return word != 0; });
}

// Whether the bytes, seen with the one before them, may be part of clean lines: no control character but CR LF, no
// blank before it. Each byte is judged without a branch and for itself, so that compilers take sixteen at a time.
Glance GlanceAt(const char* bytes) {
    Flags unclean{};
    Flags lineEnd{};
    for (std::size_t i = 0; i < kGlance; ++i) {
        const auto c = static_cast<unsigned char>(bytes[i]);
        const auto before = static_cast<unsigned char>(*(bytes + i - 1));
        const bool isEnd = c == '\n';
        const bool isReturn = c == '\r';
        const bool control = (c < 32) | (c == 127);
        lineEnd[i] = isEnd;
        unclean[i] = (control & !isEnd & !isReturn) | (isEnd != (before == '\r')) | (isReturn & (before == ' '));
    }
    return {!AnySet(unclean), AnySet(lineEnd)};
}

} // namespace

std::size_t LineEnds::FindFurther(std::string_view text, std::size_t from) {
    std::size_t at = from / kGlance * kGlance;
    for (; at + kGlance <= text.size(); at += kGlance) {
        block_ = at / kGlance;
        marks_ = MarkLineEnds(text.data() + at);
        const std::size_t behind = from > at ? from - at : 0;
        const std::uint64_t ahead = marks_ >> behind << behind;
        if (ahead != 0) return at + static_cast<std::size_t>(std::countr_zero(ahead));
    }
    // Bytes may still be added to the last block, so nothing of it is kept.
    return std::min(text.find('\n', std::max(from, at)), text.size());
}

std::size_t FindControl(std::string_view text, std::size_t from) {
    constexpr std::size_t kWord = 8;
    std::size_t at = from;
    while (at + kWord <= text.size()) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text.data() + at, kWord);
        const std::uint64_t marks = MarkControls(bytes);
        if (marks != 0) {
            at += FirstMarked(marks);
            break;
        }
        // The last word begins among bytes that have been looked at, so that none is left to look at one by one.
        at = at + kWord == text.size() ? text.size() : std::min(at + kWord, text.size() - kWord);
    }
    while (at < text.size() && !IsControl(text[at])) ++at;
    return at;
}

std::string_view CountingPart(std::string_view rawLine) {
    std::string_view line = rawLine.substr(0, kMaxLine);
    while (!line.empty() && Cleaned(line.back()) == ' ') line.remove_suffix(1);
    return line;
}

std::string CleanLine(std::string_view rawLine) {
    std::string line(CountingPart(rawLine));
    std::ranges::transform(line, line.begin(), Cleaned);
    return line;
}

std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end == std::string_view::npos ? end : end + 1);
    text.remove_prefix(line.size());
    return line;
}

std::string_view TakeCleanLines(std::string_view& text) {
    if (text.empty() || IsControl(text.front())) return {};
    std::size_t at = 1; // each byte is looked at with the one before it
    int blocksWithoutEnd = 0;
    while (at + kGlance <= text.size() && blocksWithoutEnd <= kMaxBlocksWithoutEnd) {
        const Glance seen = GlanceAt(text.data() + at);
        if (!seen.Clean) break;
        blocksWithoutEnd = seen.HasLineEnd ? 0 : blocksWithoutEnd + 1;
        at += kGlance;
    }
    const std::size_t lastEnd = text.substr(0, at).rfind('\n');
    const std::string_view lines = text.substr(0, lastEnd + 1); // none when there is no end
    text.remove_prefix(lines.size());
    return lines;
}

std::size_t FindHeader(std::string_view text, std::string_view header) {
    for (std::size_t at = text.find('['); at != std::string_view::npos; at = text.find('[', at + 1)) {
        if (at != 0 && text[at - 1] != '\n') continue;
        std::string_view rest = text.substr(at);
        if (BeginsWith(rest, header) && BeginsWith(CountingPart(TakeLine(rest)), header)) return at;
    }
    return text.size();
}

std::string KeyedLine(std::string_view key, std::string_view value) {
    std::string line(key);
    if (!value.empty()) line.append(" ").append(value);
    return line;
}

} // namespace bv
