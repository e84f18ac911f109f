// Scrambled passwords: any text unscrambles as the model says, and what was scrambled comes back.
// Parameters: the password | its scrambled size | the moment of scrambling. The text to unscramble is the rest.
#include <cstdlib>

#include "ctlfile/scramble.h"
#include "fuzz/fuzz.h"
#include "support/fakes.h"

namespace bv::fuzz {
namespace {

constexpr std::string_view kLetters = "abcdefghijrstuvw"; // the digits 0 to F as they are stored

std::size_t CountOf(std::optional<std::string_view> parameter) {
    return std::strtoul(std::string(parameter.value_or("")).c_str(), nullptr, 10);
}

// The number of digits that each stand 53 above themselves; none when one is something else.
std::optional<unsigned> Header(std::string_view text) {
    unsigned number = 0;
    for (const char c : text) {
        if (c < 'e' || c > 'n') return {};
        number = number * 10 + static_cast<unsigned>(c - 'e');
    }
    return number;
}

std::optional<std::string> Unscrambled(std::string_view letters) {
    std::string text;
    for (std::size_t i = 0; i + 1 < letters.size(); i += 2)
        text += static_cast<char>(kLetters.find(letters[i]) * 16 + kLetters.find(letters[i + 1]));
    if (text.size() < 6) return {};
    const std::optional<unsigned> seed = Header(text.substr(1, 3));
    const std::optional<unsigned> length = Header(text.substr(4, 2));
    if (!seed || !length || *length + 6 > text.size()) return {};
    unsigned state = *seed;
    std::string password;
    for (unsigned i = 0; i < *length; ++i) {
        state = state * 214013U + 2531011U;
        password += static_cast<char>(text[6 + i] - static_cast<int>((state >> 16) % 32768 % 10));
    }
    return password;
}

bool IsStoredForm(std::string_view text) {
    return text.size() < 394 && text.find_first_not_of(kLetters) == std::string_view::npos;
}

void CheckAnyText(std::string_view text, std::size_t limit) {
    const std::optional<std::string> found = UnscrambleText(text);
    if (IsStoredForm(text)) Require(found == Unscrambled(text), "the unscrambled text");
    Require(!found || found->size() <= kMaxPassword, "within the limit");
    const bool fits = found && found->size() <= limit;
    Require(UnscrambleText(text, limit) == (fits ? found : std::nullopt), "within a smaller limit");
}

void CheckRoundTrip(std::string_view password, std::size_t size) {
    const std::optional<std::string> stored = ScrambleText(password, size);
    const bool fits = size <= 199 && size >= 2 * password.size() + 14 && password.size() <= kMaxPassword;
    Require(stored.has_value() == fits, "a password fits or does not");
    if (!stored) return;
    Require(stored->size() == 2 * (size / 2 - 1) && IsStoredForm(*stored), "the stored form");
    Require(UnscrambleText(*stored) == password && Unscrambled(*stored) == password, "the round trip");
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    test::FakeClock clock;
    clock.Milliseconds = static_cast<std::int64_t>(CountOf(input.Parameter(2)) % 1'000'000'000'000);
    const platform::Substitute<platform::Clock> use(clock);
    const std::string_view password = input.Parameters[0];
    CheckAnyText(input.Text, password.size());
    CheckRoundTrip(password, CountOf(input.Parameter(1)));
    const std::optional<std::string> stored = ScrambleForPage(password);
    Require(stored.has_value() == (password.size() <= 44), "a page takes up to 44 characters");
    if (stored) Require(UnscrambleText(*stored) == password, "the round trip of a page");
}

} // namespace bv::fuzz
