// The dialling properties: where the server stands in the telephone network, and how that network wants numbers
// dialled.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "ctlfile/fixed_text.h"
#include "ctlfile/key_fields.h"
#include "ctlfile/status.h"

namespace bv {

inline constexpr StatusCode kDialFileUnreadable = -4090;    // DIALLING.INI cannot be opened or read
inline constexpr StatusCode kNumbersNotEdited = -3980;      // the file says that numbers are not to be edited
inline constexpr StatusCode kNumberTooLong = -3982;         // a number or result of over 40 characters
inline constexpr StatusCode kDialPropertiesMissing = -3983; // none have been loaded

// DialProperties::Mode.
inline constexpr std::uint16_t kDialNoEditing = 1; // numbers are not edited ("NoTelNumEdit")
inline constexpr std::uint16_t kDialLocation = 2;  // a named location that the file holds
inline constexpr std::uint16_t kDialTelephony = 3; // the telephony service has them ("TAPI")

using DialPrefix = FixedText<10>;

// At most 31 prefixes; what is added to a full list is lost.
class DialPrefixes {
  public:
    static constexpr std::size_t kLimit = 31;

    void Add(std::string_view prefix) {
        if (count_ < kLimit) prefixes_[count_++] = prefix;
    }
    void Clear() { count_ = 0; }
    [[nodiscard]] bool IsFull() const { return count_ == kLimit; }
    [[nodiscard]] std::size_t Size() const { return count_; }
    [[nodiscard]] auto begin() const { return prefixes_.begin(); }
    [[nodiscard]] auto end() const { return prefixes_.begin() + count_; }
    friend bool operator==(const DialPrefixes& a, const DialPrefixes& b) { return std::ranges::equal(a, b); }

  private:
    std::array<DialPrefix, kLimit> prefixes_;
    std::uint16_t count_ = 0;
};

struct DialProperties {
    std::uint16_t Mode = 0;
    FixedText<100> Description;                // the location's name
    DialPrefix Country;                        // own country code, without "+"
    DialPrefix Area;                           // own area code, without the national prefix
    DialPrefix NatlAccess;                     // national prefix, such as 0
    DialPrefix IntlAccess;                     // international prefix, such as 00
    bool DialAreaCode = false;                 // also for calls inside the own area
    bool DialNatlAccessForLocal = false;       // in front of an area code that is dialled for a local call
    bool DisplayNatlAccess = false;            // in front of the area code of numbers that are shown
    std::uint16_t NumberWithoutAreaMaxLen = 0; // longest number without area code; 0: no limit known
    DialPrefixes DialAsLocal;                  // prefixes of other areas that are dialled without the national prefix
    DialPrefixes DialAsNatl;                   // prefixes inside the own area that are dialled as national calls

    friend bool operator==(const DialProperties&, const DialProperties&) = default;
};

// The keys of a location's paragraph, behind its "Description:", in the order in which they are written; the lists'
// keys, which have a line for each prefix, come last.
using DialKey = KeyField<DialProperties>;
std::span<const DialKey> DialKeys();

struct DialListKey {
    std::string_view Key;
    DialPrefixes DialProperties::*List;

    [[nodiscard]] std::string_view Name() const { return Key.substr(0, Key.size() - 1); }
};
inline constexpr DialListKey kDialListKeys[] = {{"DialAsLocal:", &DialProperties::DialAsLocal},
                                                {"DialAsNatl:", &DialProperties::DialAsNatl}};

} // namespace bv
