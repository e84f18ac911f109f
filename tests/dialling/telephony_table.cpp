// The tests' telephony library as a table.
#include "dialling/fake_telephony.h"

namespace bv::test {
namespace {

using PlainEntry = void (*)();

class Table final : public platform::Library {
  public:
    PlainEntry Entry(const std::string& name) override {
        static const std::map<std::string, PlainEntry> entries = {
            {"lineInitialize", reinterpret_cast<PlainEntry>(line::Initialize)},
            {"lineShutdown", reinterpret_cast<PlainEntry>(line::Shutdown)},
            {"lineGetTranslateCaps", reinterpret_cast<PlainEntry>(line::GetTranslateCaps)},
            {"lineNegotiateAPIVersion", reinterpret_cast<PlainEntry>(line::NegotiateAPIVersion)},
            {"lineGetCountry", reinterpret_cast<PlainEntry>(line::GetCountry)},
            {"lineTranslateDialog", reinterpret_cast<PlainEntry>(line::TranslateDialog)},
            {"lineTranslateAddress", reinterpret_cast<PlainEntry>(line::TranslateAddress)},
        };
        return entries.at(name);
    }
};

} // namespace

std::unique_ptr<platform::Library> LoadTelephony(const std::string& /*name*/, TelephonyAnswers* answers) {
    AnswerBy(answers);
    return std::make_unique<Table>();
}

} // namespace bv::test
