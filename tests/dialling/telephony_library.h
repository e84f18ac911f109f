// A telephony library of the tests' own, which answers as told. Its structures are put together word by word from the
// published layout, not from the engine's description of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/calls.h"

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

// What the library answers; it only reads these.
class TelephonyAnswers {
  public:
    TelephonyAnswers() = default;
    virtual ~TelephonyAnswers() = default;
    TelephonyAnswers(const TelephonyAnswers&) = delete;
    TelephonyAnswers& operator=(const TelephonyAnswers&) = delete;

    std::map<std::string, std::uint32_t> Results; // of entries that fail
    std::uint32_t Line = 77;                      // the handle that is given out
    bool SaysTooSmall = false;                    // when a structure cannot take all, instead of success
    std::vector<FakeLocation> Locations{{}};
    std::uint32_t Current = 1;
    std::vector<FakeCountry> Countries{{}};
    std::map<std::string, std::string> Dialled; // by address; other addresses are refused
    std::vector<FakeNonsense> Nonsense;

    // Is told of each call, with the words and texts that matter. A handle that is these answers is the tests' own.
    virtual void Note(const std::string& /*call*/) {}
};

// The answers to go by from now on.
void AnswerBy(TelephonyAnswers* answers);

// The library's entries, by the names that it has published.
namespace line {

using Word = std::uint32_t;
using Callback = void(BV_SYSTEM_CALL*)(Word, Word, std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t);

std::int32_t BV_SYSTEM_CALL Initialize(Word* line, void* instance, Callback callback, const char* name, Word* devices);
std::int32_t BV_SYSTEM_CALL Shutdown(Word line);
std::int32_t BV_SYSTEM_CALL GetTranslateCaps(Word line, Word version, void* caps);
std::int32_t BV_SYSTEM_CALL NegotiateAPIVersion(Word line, Word device, Word low, Word high, Word* version,
                                                void* extension);
std::int32_t BV_SYSTEM_CALL GetCountry(Word country, Word version, void* list);
std::int32_t BV_SYSTEM_CALL TranslateDialog(Word line, Word device, Word version, void* owner, const char* address);
std::int32_t BV_SYSTEM_CALL TranslateAddress(Word line, Word device, Word version, const char* address, Word card,
                                             Word options, void* output);

} // namespace line

} // namespace bv::test
