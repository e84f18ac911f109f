#include "dialling/fake_telephony.h"

#include <gtest/gtest.h>

#include "dialling/telephony.h"

namespace bv::test {
namespace {

using PlainEntry = void (*)();

const std::map<std::string, PlainEntry> kEntries = {
    {"lineInitialize", reinterpret_cast<PlainEntry>(line::Initialize)},
    {"lineShutdown", reinterpret_cast<PlainEntry>(line::Shutdown)},
    {"lineGetTranslateCaps", reinterpret_cast<PlainEntry>(line::GetTranslateCaps)},
    {"lineNegotiateAPIVersion", reinterpret_cast<PlainEntry>(line::NegotiateAPIVersion)},
    {"lineGetCountry", reinterpret_cast<PlainEntry>(line::GetCountry)},
    {"lineTranslateDialog", reinterpret_cast<PlainEntry>(line::TranslateDialog)},
    {"lineTranslateAddress", reinterpret_cast<PlainEntry>(line::TranslateAddress)},
};

class WatchedTable final : public platform::Library {
  public:
    explicit WatchedTable(FakeTelephonyLibrary& watcher) : watcher_(watcher) {}
    ~WatchedTable() override { watcher_.Note("freed"); }
    WatchedTable(const WatchedTable&) = delete;
    WatchedTable& operator=(const WatchedTable&) = delete;

    PlainEntry Entry(const std::string& name) override {
        return watcher_.Missing.count(name) != 0 ? nullptr : kEntries.at(name);
    }

  private:
    FakeTelephonyLibrary& watcher_;
};

} // namespace

FakeTelephonyLibrary::~FakeTelephonyLibrary() { TAPITerm(); }

FakeTelephony::~FakeTelephony() { TAPITerm(); } // with its server

TelephonySession::TelephonySession() {
    EXPECT_EQ(TAPIInit("Setup", nullptr, TapiNegotiation::WithDevice), kDone);
    TakeCalls();
}

std::vector<std::string> FakeTelephonyLibrary::TakeCalls() { return std::exchange(Calls, {}); }

std::unique_ptr<platform::Library> FakeTelephonyLibrary::Load(const std::string& name) {
    Note("load " + name);
    AnswerBy(this);
    return Present ? std::make_unique<WatchedTable>(*this) : nullptr;
}

} // namespace bv::test
