// A number tried on dialling properties that may not be saved yet: what becomes of it, and by which rules.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "dialling/dial_locations.h"
#include "dialling/number_converter.h"

namespace bv {

struct TrialStep {
    NumberForm Form;
    std::string Rule;
    std::string Number;   // after the rule
    bool Decides = false; // it made the number what it is; those before it only prepared, those behind it only finish
};

struct NumberTrial {
    std::string International; // or why there is none
    std::string Dialable;
    std::vector<TrialStep> Steps; // of the one form, then of the other
};

// Tries the number by the properties; in mode kDialTelephony the telephony is asked, which must be in use. Nothing of
// an empty number.
NumberTrial TryNumber(std::string_view number, const DialProperties& properties);

// What a person is to know of the properties that are shown, in a sentence, or nothing: that the telephony cannot be
// asked, that no location is selected, that numbers are not to be edited, which keys are empty and so begin every
// number, or that the file has locations without a name.
std::string WarningOf(const DialLocations& locations, const DialProperties& shown, StatusCode telephony);

} // namespace bv
