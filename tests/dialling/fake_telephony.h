// The tests' telephony library where the engine loads its own.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "dialling/telephony_library.h"
#include "platform/libraries.h"
#include "support/memory_server.h"

namespace bv::test {

// In place of the system's libraries while it lives; then the session is ended.
class FakeTelephonyLibrary : public TelephonyAnswers, public platform::Libraries {
  public:
    FakeTelephonyLibrary() = default;
    ~FakeTelephonyLibrary() override;
    FakeTelephonyLibrary(const FakeTelephonyLibrary&) = delete;
    FakeTelephonyLibrary& operator=(const FakeTelephonyLibrary&) = delete;

    bool Present = true;
    std::set<std::string> Missing; // entries

    // What was called, one line each; and the library's freeing.
    std::vector<std::string> Calls;
    std::vector<std::string> TakeCalls();
    void Note(const std::string& call) override { Calls.push_back(call); }

    std::unique_ptr<platform::Library> Load(const std::string& name) override;
    unsigned long LastError() override { return 126; }
    void* OwnModule() override { return static_cast<TelephonyAnswers*>(this); }

  private:
    platform::Substitute<platform::Libraries> use_{*this};
};

// The same with a server in memory.
class FakeTelephony : public FakeTelephonyLibrary {
  public:
    FakeTelephony() = default;
    ~FakeTelephony() override;
    FakeTelephony(const FakeTelephony&) = delete;
    FakeTelephony& operator=(const FakeTelephony&) = delete;

    MemoryServer Server;
};

// The same with a session opened and nothing called since.
class TelephonySession final : public FakeTelephony {
  public:
    TelephonySession();
};

} // namespace bv::test
