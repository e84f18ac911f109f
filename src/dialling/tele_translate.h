// Having the telephony library translate addresses, and learning a country's rules from how it does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "ctlfile/status.h"

namespace bv {

// What the library would dial for an address in its canonical form, such as "+44 (171) 1234567": without the
// location's local or long-distance access code and the blanks behind it, and cut at the limit. An access code that is
// empty is none. 0, or a status of telephony.h with an empty text.
StatusCode TAPITranslate(const std::string& address, std::string& dialable, std::size_t limit);

// A translation and how much of the address it ends in.
struct TranslationMatch {
    std::string Output;    // at most 40 characters
    std::size_t Start = 0; // where in the output the tail begins that matches the address
    std::size_t Count = 0; // digits of that tail

    [[nodiscard]] std::string_view Prefix() const { return std::string_view(Output).substr(0, Start); }
};

// Translates the address and compares the result with it from the right, digits alone and at most so many, as far as
// they are equal and no further than the address's "+".
StatusCode CompareTAPITranslationOutput(const std::string& address, std::size_t digits, TranslationMatch& match);

// Fills the country cache from test translations; for the current location's country only, the rules of others are left
// empty. A prefix is believed only before a translation that ends in all of the test number; else that rule is left
// empty.
StatusCode TAPIDeduceCountryInfo(std::uint32_t countryID);

} // namespace bv
