// The published interface of the telephony library, version 1.4, as far as it is used: structures as the library lays
// them out, error numbers, and the types of its entries. Texts in a structure are given by size (bytes, terminator
// included) and offset (bytes from the start of the whole structure).
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/calls.h"

namespace bv::telephony {

using Word = std::uint32_t;
using Result = std::int32_t;   // 0 is success, negative an error
using LineApp = std::uint32_t; // a handle of 32 bits on every system; 0 is none
using Pointer = std::uintptr_t;

inline constexpr Word kVersion14 = 0x00010004;
inline constexpr Word kFirstError = 0x80000001;
inline constexpr Result kIncompatibleVersion = static_cast<Result>(0x8000000C);
inline constexpr Result kStructureTooSmall = static_cast<Result>(0x8000004D);

// What every structure of variable size begins with.
struct Sizes {
    Word Total;  // bytes that the caller has given
    Word Needed; // bytes that everything would take
    Word Used;   // bytes that were filled
};

// Followed by the locations and the calling cards.
struct TranslateCaps {
    Sizes Size;
    Word LocationCount;
    Word LocationListSize;
    Word LocationListOffset;
    Word CurrentLocationID;
    Word CardCount;
    Word CardListSize;
    Word CardListOffset;
    Word CurrentPreferredCardID;
};

struct LocationEntry {
    Word PermanentLocationID;
    Word NameSize;
    Word NameOffset;
    Word CountryCode;
    Word CityCodeSize;
    Word CityCodeOffset;
    Word PreferredCardID;
    Word LocalAccessCodeSize;
    Word LocalAccessCodeOffset;
    Word LongDistanceAccessCodeSize;
    Word LongDistanceAccessCodeOffset;
    Word TollPrefixListSize;
    Word TollPrefixListOffset;
    Word CountryID;
    Word Options;
    Word CancelCallWaitingSize;
    Word CancelCallWaitingOffset;
};

// Followed by the countries.
struct CountryList {
    Sizes Size;
    Word CountryCount;
    Word CountryListSize;
    Word CountryListOffset;
};

struct CountryEntry {
    Word CountryID;
    Word CountryCode;
    Word NextCountryID;
    Word NameSize;
    Word NameOffset;
    Word SameAreaRuleSize;
    Word SameAreaRuleOffset;
    Word LongDistanceRuleSize;
    Word LongDistanceRuleOffset;
    Word InternationalRuleSize;
    Word InternationalRuleOffset;
};

struct TranslateOutput {
    Sizes Size;
    Word DialableStringSize;
    Word DialableStringOffset;
    Word DisplayableStringSize;
    Word DisplayableStringOffset;
    Word CurrentCountry;
    Word DestinationCountry;
    Word TranslateResults;
};

struct ExtensionID {
    Word Parts[4];
};

// Words only, so the layout is the same for 32 and 64 bits.
static_assert(sizeof(TranslateCaps) == 44 && offsetof(TranslateCaps, CurrentLocationID) == 24);
static_assert(sizeof(LocationEntry) == 68 && offsetof(LocationEntry, CityCodeSize) == 16);
static_assert(offsetof(LocationEntry, TollPrefixListSize) == 44 && offsetof(LocationEntry, CountryID) == 52);
static_assert(sizeof(CountryList) == 24 && offsetof(CountryList, CountryListOffset) == 20);
static_assert(sizeof(CountryEntry) == 44 && offsetof(CountryEntry, InternationalRuleOffset) == 40);
static_assert(sizeof(TranslateOutput) == 40 && offsetof(TranslateOutput, DialableStringOffset) == 16);
static_assert(sizeof(ExtensionID) == 16);

using Callback = void(BV_SYSTEM_CALL*)(Word device, Word message, Pointer instance, Pointer first, Pointer second,
                                       Pointer third);

// Each empty when the library has no such entry.
struct Entries {
    Result(BV_SYSTEM_CALL* Initialize)(LineApp*, void* instance, Callback, const char* application,
                                       Word* deviceCount) = nullptr;
    Result(BV_SYSTEM_CALL* Shutdown)(LineApp) = nullptr;
    Result(BV_SYSTEM_CALL* GetTranslateCaps)(LineApp, Word version, TranslateCaps*) = nullptr;
    Result(BV_SYSTEM_CALL* NegotiateAPIVersion)(LineApp, Word device, Word low, Word high, Word* version,
                                                ExtensionID*) = nullptr;
    Result(BV_SYSTEM_CALL* GetCountry)(Word country, Word version, CountryList*) = nullptr;
    Result(BV_SYSTEM_CALL* TranslateDialog)(LineApp, Word device, Word version, void* owner,
                                            const char* address) = nullptr;
    Result(BV_SYSTEM_CALL* TranslateAddress)(LineApp, Word device, Word version, const char* address, Word card,
                                             Word options, TranslateOutput*) = nullptr;
};

} // namespace bv::telephony
