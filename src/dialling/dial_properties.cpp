#include "dialling/dial_properties.h"

#include <algorithm>

#include "platform/ascii.h"

namespace bv {
namespace {

using Properties = DialProperties;

bool IsCountry(std::string_view text) {
    return text.size() <= DialPrefix::kLimit && std::ranges::all_of(text, IsDigit);
}

constexpr ValueRule kCountry = {ValueRule::Form::Other, 0, {}, "at most 10 digits", IsCountry};

constexpr DialKey kKeys[] = {
    FieldOf<&Properties::Country>("Country:", kCountry),
    FieldOf<&Properties::Area>("Area:"),
    FieldOf<&Properties::NatlAccess>("NatlAccess:"),
    FieldOf<&Properties::IntlAccess>("IntlAccess:"),
    FieldOf<&Properties::DialAreaCode>("DialAreaCode:"),
    FieldOf<&Properties::DialNatlAccessForLocal>("DialNatlAccessForLocal:"),
    FieldOf<&Properties::DisplayNatlAccess>("DisplayNatlAccess:"),
    FieldOf<&Properties::NumberWithoutAreaMaxLen>("NumberWithoutAreaMaxLen:"),
};

} // namespace

std::span<const DialKey> DialKeys() { return kKeys; }

} // namespace bv
