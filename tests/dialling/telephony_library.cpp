#include "dialling/telephony_library.h"

#include <cstring>

namespace bv::test {
namespace {

using line::Word;

constexpr Word kTooSmall = 0x8000004D;
constexpr Word kBadAddress = 0x80000010;

TelephonyAnswers untold;
TelephonyAnswers* answers = &untold;

std::string Bytes(Word value) {
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

// A structure: words, and behind all of them the texts that they tell of.
class Image {
  public:
    explicit Image(std::size_t words) : textStart_(words * sizeof(Word)) {}

    Image& Add(Word value) {
        words_ += Bytes(value);
        return *this;
    }
    Image& AddText(const std::string& text) {
        Add(static_cast<Word>(text.size() + 1));
        Add(static_cast<Word>(textStart_ + texts_.size()));
        texts_ += text + '\0';
        return *this;
    }
    // Its sizes filled in, but for the first, which is the caller's.
    [[nodiscard]] std::string Whole() const {
        const auto size = Bytes(static_cast<Word>(words_.size() + texts_.size()));
        return words_.substr(0, 4) + size + size + words_.substr(12) + texts_;
    }

  private:
    std::size_t textStart_;
    std::string words_;
    std::string texts_;
};

std::int32_t ResultOf(const std::string& entry) {
    const auto found = answers->Results.find(entry);
    return found == answers->Results.end() ? 0 : static_cast<std::int32_t>(found->second);
}

// As the library does it: the fixed part alone, with the size that is needed, when all of it does not fit.
std::int32_t Answer(const std::string& entry, const std::string& whole, std::size_t fixed, void* structure) {
    auto* const target = static_cast<char*>(structure);
    Word total = 0;
    std::memcpy(&total, target, sizeof total);
    answers->Note("  given " + std::to_string(total));
    if (const std::int32_t result = ResultOf(entry); result != 0) return result;
    if (total < fixed) return static_cast<std::int32_t>(kTooSmall);
    const bool fits = total >= whole.size();
    if (fits) std::memcpy(target + 4, whole.data() + 4, whole.size() - 4);
    if (!fits) std::memcpy(target + 4, whole.data() + 4, 4);
    for (const FakeNonsense& word : answers->Nonsense)
        if (word.Entry == entry && word.Index * 4 + 4 <= total)
            std::memcpy(target + word.Index * 4, &word.Value, sizeof word.Value);
    return !fits && answers->SaysTooSmall ? static_cast<std::int32_t>(kTooSmall) : 0;
}

} // namespace

void AnswerBy(TelephonyAnswers* told) { answers = told; }

namespace line {

std::int32_t BV_SYSTEM_CALL Initialize(Word* line, void* instance, Callback callback, const char* name, Word* devices) {
    answers->Note("initialize " + std::string(name) + (instance == answers ? " own" : " given"));
    callback(1, 2, 3, 4, 5, 6);
    *line = answers->Line;
    *devices = 1;
    return ResultOf("lineInitialize");
}

std::int32_t BV_SYSTEM_CALL Shutdown(Word line) {
    answers->Note("shutdown " + std::to_string(line));
    return ResultOf("lineShutdown");
}

std::int32_t BV_SYSTEM_CALL GetTranslateCaps(Word line, Word version, void* caps) {
    answers->Note("caps " + std::to_string(line) + " " + std::to_string(version));
    const auto count = static_cast<Word>(answers->Locations.size());
    Image image(11 + 17 * count);
    image.Add(0).Add(0).Add(0).Add(count).Add(68 * count).Add(44).Add(answers->Current).Add(0).Add(0).Add(0).Add(0);
    for (const FakeLocation& location : answers->Locations) {
        image.Add(location.ID).AddText(location.Name).Add(location.CountryCode).AddText(location.City).Add(0);
        image.AddText(location.LocalAccess).AddText(location.LongDistanceAccess).AddText(location.TollPrefixes);
        image.Add(location.CountryID).Add(0).AddText("*70");
    }
    return Answer("lineGetTranslateCaps", image.Whole(), 44, caps);
}

std::int32_t BV_SYSTEM_CALL NegotiateAPIVersion(Word line, Word device, Word low, Word high, Word* version,
                                                void* extension) {
    for (const Word value : {line, device, low, high}) answers->Note("negotiate " + std::to_string(value));
    std::memset(extension, 255, 16);
    *version = high;
    return ResultOf("lineNegotiateAPIVersion");
}

std::int32_t BV_SYSTEM_CALL GetCountry(Word country, Word version, void* list) {
    answers->Note("country " + std::to_string(country) + " " + std::to_string(version));
    const auto count = static_cast<Word>(answers->Countries.size());
    Image image(6 + 11 * count);
    image.Add(0).Add(0).Add(0).Add(count).Add(44 * count).Add(24);
    for (const FakeCountry& entry : answers->Countries) {
        image.Add(entry.ID).Add(entry.Code).Add(0).AddText(entry.Name);
        image.AddText(entry.SameArea).AddText(entry.LongDistance).AddText(entry.International);
    }
    return Answer("lineGetCountry", image.Whole(), 24, list);
}

std::int32_t BV_SYSTEM_CALL TranslateDialog(Word line, Word device, Word version, void* owner, const char* address) {
    answers->Note("dialog " + std::to_string(line) + " " + std::to_string(device) + " " + std::to_string(version) +
                  (owner == answers ? " owned " : " ") + address);
    return ResultOf("lineTranslateDialog");
}

std::int32_t BV_SYSTEM_CALL TranslateAddress(Word line, Word device, Word version, const char* address, Word card,
                                             Word options, void* output) {
    answers->Note("translate " + std::to_string(line) + " " + std::to_string(device) + " " + std::to_string(version) +
                  " " + std::to_string(card) + " " + std::to_string(options) + " " + address);
    const auto found = answers->Dialled.find(address);
    if (found == answers->Dialled.end()) return static_cast<std::int32_t>(kBadAddress);
    Image image(10);
    image.Add(0).Add(0).Add(0).AddText(found->second).AddText("shown " + found->second).Add(44).Add(44).Add(0);
    return Answer("lineTranslateAddress", image.Whole(), 40, output);
}

} // namespace line

} // namespace bv::test
