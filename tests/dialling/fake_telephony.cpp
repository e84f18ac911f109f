#include "dialling/fake_telephony.h"

#include <gtest/gtest.h>

#include <cstring>

#include "dialling/telephony.h"
#include "platform/calls.h"

namespace bv::test {
namespace {

using Word = std::uint32_t;
constexpr Word kTooSmall = 0x8000004D;
constexpr Word kBadAddress = 0x80000010;

FakeTelephony* fake = nullptr;

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

// As the library does it: the fixed part alone, with the size that is needed, when all of it does not fit.
std::int32_t Answer(const std::string& entry, const std::string& whole, std::size_t fixed, void* structure) {
    auto* const target = static_cast<char*>(structure);
    Word total = 0;
    std::memcpy(&total, target, sizeof total);
    fake->Calls.push_back("  given " + std::to_string(total));
    if (fake->Results.count(entry) != 0) return static_cast<std::int32_t>(fake->Results[entry]);
    if (total < fixed) return static_cast<std::int32_t>(kTooSmall);
    const bool fits = total >= whole.size();
    if (fits) std::memcpy(target + 4, whole.data() + 4, whole.size() - 4);
    if (!fits) std::memcpy(target + 4, whole.data() + 4, 4);
    for (const FakeNonsense& word : fake->Nonsense)
        if (word.Entry == entry && word.Index * 4 + 4 <= total)
            std::memcpy(target + word.Index * 4, &word.Value, sizeof word.Value);
    return !fits && fake->SaysTooSmall ? static_cast<std::int32_t>(kTooSmall) : 0;
}

std::int32_t Plain(const std::string& entry) {
    const auto found = fake->Results.find(entry);
    return found == fake->Results.end() ? 0 : static_cast<std::int32_t>(found->second);
}

using Callback = void(BV_SYSTEM_CALL*)(Word, Word, std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t);

std::int32_t BV_SYSTEM_CALL Initialize(Word* line, void* instance, Callback callback, const char* name, Word* devices) {
    fake->Calls.push_back("initialize " + std::string(name) + (instance == fake ? " own" : " given"));
    callback(1, 2, 3, 4, 5, 6);
    *line = fake->Line;
    *devices = 1;
    return Plain("lineInitialize");
}

std::int32_t BV_SYSTEM_CALL Shutdown(Word line) {
    fake->Calls.push_back("shutdown " + std::to_string(line));
    return Plain("lineShutdown");
}

std::int32_t BV_SYSTEM_CALL GetTranslateCaps(Word line, Word version, void* caps) {
    fake->Calls.push_back("caps " + std::to_string(line) + " " + std::to_string(version));
    const auto count = static_cast<Word>(fake->Locations.size());
    Image image(11 + 17 * count);
    image.Add(0).Add(0).Add(0).Add(count).Add(68 * count).Add(44).Add(fake->Current).Add(0).Add(0).Add(0).Add(0);
    for (const FakeLocation& location : fake->Locations) {
        image.Add(location.ID).AddText(location.Name).Add(location.CountryCode).AddText(location.City).Add(0);
        image.AddText(location.LocalAccess).AddText(location.LongDistanceAccess).AddText(location.TollPrefixes);
        image.Add(location.CountryID).Add(0).AddText("*70");
    }
    return Answer("lineGetTranslateCaps", image.Whole(), 44, caps);
}

std::int32_t BV_SYSTEM_CALL Negotiate(Word line, Word device, Word low, Word high, Word* version, Word* extension) {
    for (const Word value : {line, device, low, high}) fake->Calls.push_back("negotiate " + std::to_string(value));
    std::memset(extension, 255, 16);
    *version = high;
    return Plain("lineNegotiateAPIVersion");
}

std::int32_t BV_SYSTEM_CALL GetCountry(Word country, Word version, void* list) {
    fake->Calls.push_back("country " + std::to_string(country) + " " + std::to_string(version));
    const auto count = static_cast<Word>(fake->Countries.size());
    Image image(6 + 11 * count);
    image.Add(0).Add(0).Add(0).Add(count).Add(44 * count).Add(24);
    for (const FakeCountry& entry : fake->Countries) {
        image.Add(entry.ID).Add(entry.Code).Add(0).AddText(entry.Name);
        image.AddText(entry.SameArea).AddText(entry.LongDistance).AddText(entry.International);
    }
    return Answer("lineGetCountry", image.Whole(), 24, list);
}

std::int32_t BV_SYSTEM_CALL TranslateDialog(Word line, Word device, Word version, void* owner, const char* address) {
    fake->Calls.push_back("dialog " + std::to_string(line) + " " + std::to_string(device) + " " +
                          std::to_string(version) + (owner == fake ? " owned " : " ") + address);
    return Plain("lineTranslateDialog");
}

std::int32_t BV_SYSTEM_CALL TranslateAddress(Word line, Word device, Word version, const char* address, Word card,
                                             Word options, void* output) {
    fake->Calls.push_back("translate " + std::to_string(line) + " " + std::to_string(device) + " " +
                          std::to_string(version) + " " + std::to_string(card) + " " + std::to_string(options) + " " +
                          address);
    const auto found = fake->Dialled.find(address);
    if (found == fake->Dialled.end()) return static_cast<std::int32_t>(kBadAddress);
    Image image(10);
    image.Add(0).Add(0).Add(0).AddText(found->second).AddText("shown " + found->second).Add(44).Add(44).Add(0);
    return Answer("lineTranslateAddress", image.Whole(), 40, output);
}

using PlainEntry = void (*)();

class FakeLibrary final : public platform::Library {
  public:
    ~FakeLibrary() override {
        if (fake != nullptr) fake->Calls.push_back("freed");
    }
    PlainEntry Entry(const std::string& name) override {
        static const std::map<std::string, PlainEntry> entries = {
            {"lineInitialize", reinterpret_cast<PlainEntry>(Initialize)},
            {"lineShutdown", reinterpret_cast<PlainEntry>(Shutdown)},
            {"lineGetTranslateCaps", reinterpret_cast<PlainEntry>(GetTranslateCaps)},
            {"lineNegotiateAPIVersion", reinterpret_cast<PlainEntry>(Negotiate)},
            {"lineGetCountry", reinterpret_cast<PlainEntry>(GetCountry)},
            {"lineTranslateDialog", reinterpret_cast<PlainEntry>(TranslateDialog)},
            {"lineTranslateAddress", reinterpret_cast<PlainEntry>(TranslateAddress)},
        };
        return fake->Missing.count(name) != 0 ? nullptr : entries.at(name);
    }
};

} // namespace

FakeTelephony::FakeTelephony() { fake = this; }

FakeTelephony::~FakeTelephony() {
    TAPITerm();
    fake = nullptr;
}

TelephonySession::TelephonySession() {
    EXPECT_EQ(TAPIInit("Setup", nullptr, TapiNegotiation::WithDevice), kDone);
    TakeCalls();
}

std::vector<std::string> FakeTelephony::TakeCalls() {
    std::vector<std::string> calls;
    calls.swap(Calls);
    return calls;
}

std::unique_ptr<platform::Library> FakeTelephony::Load(const std::string& name) {
    Calls.push_back("load " + name);
    if (!Present) return nullptr;
    return std::make_unique<FakeLibrary>();
}

} // namespace bv::test
