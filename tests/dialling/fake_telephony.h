// A telephony library of the tests' own, which answers as told. Its structures are put together word by word from the
// published layout, not from the engine's description of it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/libraries.h"
#include "support/memory_server.h"

namespace bv::test {

struct FakeLocation {
    std::uint32_t ID = 1;
    std::string Name = "London";
    std::uint32_t CountryCode = 44;
    std::string City = "171";
    std::string LocalAccess = {};
    std::string LongDistanceAccess = {};
    std::string TollPrefixes = {};
    std::uint32_t CountryID = 440;
};

struct FakeCountry {
    std::uint32_t ID = 440;
    std::uint32_t Code = 44;
    std::string Name = "United Kingdom";
    std::string SameArea = "G";
    std::string LongDistance = "0FG";
    std::string International = "00EFG";
};

// A word written over an answer of an entry that succeeds: by its index from the start of the structure.
struct FakeNonsense {
    std::string Entry;
    std::size_t Index = 0;
    std::uint32_t Value = 0;
};

// In place of the system's libraries, with a server in memory, while it lives; then the session is ended.
class FakeTelephony : public platform::Libraries {
  public:
    FakeTelephony();
    ~FakeTelephony() override;
    FakeTelephony(const FakeTelephony&) = delete;
    FakeTelephony& operator=(const FakeTelephony&) = delete;

    MemoryServer Server;
    bool Present = true;
    std::set<std::string> Missing;                // entries
    std::map<std::string, std::uint32_t> Results; // of entries that fail
    std::uint32_t Line = 77;                      // the handle that is given out
    bool SaysTooSmall = false;                    // when a structure cannot take all, instead of success
    std::vector<FakeLocation> Locations{{}};
    std::uint32_t Current = 1;
    std::vector<FakeCountry> Countries{{}};
    std::map<std::string, std::string> Dialled; // by address; other addresses are refused
    std::vector<FakeNonsense> Nonsense;

    // What was called, with the words and texts that matter, one line each; and the library's freeing.
    std::vector<std::string> Calls;
    std::vector<std::string> TakeCalls();

    std::unique_ptr<platform::Library> Load(const std::string& name) override;
    unsigned long LastError() override { return 126; }
    void* OwnModule() override { return this; }

  private:
    platform::Substitute<platform::Libraries> use_{*this};
};

// The same with a session opened and nothing called since.
class TelephonySession final : public FakeTelephony {
  public:
    TelephonySession();
};

} // namespace bv::test
