// Telephone numbers: as typed, in international form, and as they are dialled. A number is at most 40 characters, after
// which a colon may part a suffix (a sub-address or extension), which is passed through.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/fixed_text.h"
#include "ctlfile/status.h"
#include "dialling/dial_properties.h"

namespace bv {

inline constexpr std::size_t kMaxTelephoneNumber = 40;
using TelephoneNumber = FixedText<kMaxTelephoneNumber>;

// A rule that a conversion went by: its step and what it does, and the number after it.
struct NumberStep {
    std::string_view Rule;
    std::string Number;
    bool Decides = false; // it says what becomes of the number
};
using NumberTrace = std::vector<NumberStep>;

// Adds a rule to the trace, if one is wanted.
inline void NoteStep(NumberTrace* trace, std::string_view rule, std::string_view number, bool decides = false) {
    if (trace != nullptr) trace->push_back({rule, std::string(number), decides});
}

// Parts a number: the suffix is what stands behind the first colon, the main part what stands before it without the
// formatting characters ( ) [ ] { } - . and blank. Both are cut to their places.
void StripNumber(std::string_view number, TextPlace suffix, TextPlace main);

// The number as "+", country code, area code and local number. 0, or kNumberTooLong (-3982) with an empty result when
// the main part or the result has over 40 characters. The suffix follows behind a colon when it and the result
// together have fewer than 40 characters. With a trace, adds the rules that were gone by.
StatusCode MakeInternationalNumber(std::string_view number, TelephoneNumber& result, const DialProperties& properties,
                                   NumberTrace* trace = nullptr);

// The number as it is dialled; otherwise the same. An empty country code, area code, international prefix or list entry
// begins every number, which is intended.
StatusCode MakeDialableNumber(std::string_view number, TelephoneNumber& result, const DialProperties& properties,
                              NumberTrace* trace = nullptr);

// The same with the properties that are loaded; also kDialPropertiesMissing (-3983), and kNumbersNotEdited (-3980) when
// Mode holds that code itself. No reader stores it there, so that numbers are converted, on purpose, by the empty
// properties of a file that says they are not to be edited.
StatusCode MakeInternationalNumber(std::string_view number, TelephoneNumber& result, NumberTrace* trace = nullptr);
StatusCode MakeDialableNumber(std::string_view number, TelephoneNumber& result, NumberTrace* trace = nullptr);

} // namespace bv
