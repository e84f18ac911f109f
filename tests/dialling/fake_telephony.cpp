#include "dialling/fake_telephony.h"

#include <gtest/gtest.h>

#include "dialling/telephony.h"

namespace bv::test {
namespace {

class WatchedLibrary final : public platform::Library {
  public:
    WatchedLibrary(std::unique_ptr<platform::Library> library, FakeTelephony& watcher)
        : library_(std::move(library)), watcher_(watcher) {}
    ~WatchedLibrary() override { watcher_.Note("freed"); }
    WatchedLibrary(const WatchedLibrary&) = delete;
    WatchedLibrary& operator=(const WatchedLibrary&) = delete;

    void (*Entry(const std::string& name))() override {
        return watcher_.Missing.count(name) != 0 ? nullptr : library_->Entry(name);
    }

  private:
    std::unique_ptr<platform::Library> library_;
    FakeTelephony& watcher_;
};

} // namespace

FakeTelephony::~FakeTelephony() { TAPITerm(); }

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
    Note("load " + name);
    auto library = Present ? LoadTelephony(name, this) : nullptr;
    if (!library) return nullptr;
    return std::make_unique<WatchedLibrary>(std::move(library), *this);
}

} // namespace bv::test
