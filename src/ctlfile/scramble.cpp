#include "ctlfile/scramble.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

#include "platform/clock.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr std::size_t kHeader = 6;       // of the intermediate text: "A", three digits of seed, two of length
constexpr std::size_t kMaxBuffer = 99;   // of the intermediate text while scrambling, its terminator included
constexpr std::size_t kMaxDecoded = 198; // the same while unscrambling
constexpr char kDigitShift = '5';
constexpr char kLetterShift = '1';

// The generator of rand() in the C run-time library of Windows: a linear congruential one with the constants 214013 and
// 2531011 modulo 2^32, bits 16 to 30 of its state. Texts scrambled by other programs rely on these very numbers.
class Generator {
  public:
    explicit Generator(std::uint32_t seed) : state_(seed) {}
    std::uint32_t Below(std::uint32_t limit) {
        state_ = state_ * 214013 + 2531011;
        return (state_ >> 16 & 0x7FFF) % limit;
    }

  private:
    std::uint32_t state_;
};

// Sums of character codes wrap at a byte, as characters do.
char Raised(char c, std::uint32_t by) { return static_cast<char>(static_cast<unsigned char>(c) + by); }
char Lowered(char c, std::uint32_t by) { return static_cast<char>(static_cast<unsigned char>(c) - by); }

std::string Encode(std::string_view bytes) {
    std::string letters;
    for (const char c : bytes) letters += FormatText("%02X", static_cast<unsigned char>(c));
    std::ranges::transform(letters, letters.begin(), [](char digit) { return Raised(digit, kLetterShift); });
    return letters;
}

// The byte of two letters; letters that no scrambling writes end the number early, as the standard library's
// conversion does.
char DecodePair(char high, char low) {
    const std::array<char, 2> digits = {Lowered(high, kLetterShift), Lowered(low, kLetterShift)};
    unsigned value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    return static_cast<char>(value);
}

std::string Decode(std::string_view letters) {
    std::string bytes;
    for (std::size_t at = 0; at + 1 < letters.size(); at += 2) bytes += DecodePair(letters[at], letters[at + 1]);
    return bytes;
}

// A number of decimal digits, or none when anything else stands there.
std::optional<std::uint32_t> Decimal(std::string_view text) {
    std::uint32_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return {};
    return value;
}

} // namespace

std::optional<std::string> ScrambleText(std::string_view password, std::size_t size) {
    const std::size_t buffer = size / 2;
    const std::size_t length = password.size();
    if (buffer > kMaxBuffer || length > kMaxPassword || length + kHeader + 1 > buffer) return {};

    const auto seed = static_cast<std::uint32_t>(platform::TheClock().Now() % 1000);
    Generator generator(seed);
    std::string text = FormatText("A%03d%02d", seed, length);
    std::transform(text.begin() + 1, text.end(), text.begin() + 1,
                   [](char digit) { return Raised(digit, kDigitShift); });
    for (const char c : password) text += Raised(c, generator.Below(10));
    const char filler = password.empty() ? 'a' : password.front();
    while (text.size() < buffer - 1) text += Raised(filler, generator.Below(26));
    return Encode(text);
}

std::optional<std::string> UnscrambleText(std::string_view scrambled, std::size_t limit) {
    if (scrambled.size() / 2 + 1 > kMaxDecoded) return {};
    std::string text = Decode(scrambled);
    if (text.size() < kHeader) return {};
    std::transform(text.begin() + 1, text.begin() + kHeader, text.begin() + 1,
                   [](char letter) { return Lowered(letter, kDigitShift); });
    const std::optional<std::uint32_t> seed = Decimal(std::string_view(text).substr(1, 3));
    const std::optional<std::uint32_t> length = Decimal(std::string_view(text).substr(4, 2));
    if (!seed || !length || *length > limit || kHeader + *length > text.size()) return {};

    Generator generator(*seed);
    std::string password = text.substr(kHeader, *length);
    std::ranges::transform(password, password.begin(), [&](char c) { return Lowered(c, generator.Below(10)); });
    return password;
}

bool IsScrambledText(std::string_view text) {
    constexpr std::string_view kLetters = "abcdefghijrstuvw"; // sixteen digits, raised
    if (text.size() % 2 != 0 || text.find_first_not_of(kLetters) != std::string_view::npos) return false;
    return Decode(text).starts_with('A') && UnscrambleText(text);
}

std::size_t StoredLetters(std::size_t passwordLength) {
    return std::min<std::size_t>((2 * passwordLength + 41) / 30 * 30, 100);
}

std::optional<std::string> ScrambleForPage(std::string_view password) {
    // ScrambleText counts a terminator as one more byte of the intermediate text.
    return ScrambleText(password, StoredLetters(password.size()) + 2);
}

} // namespace bv
