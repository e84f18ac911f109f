#include <algorithm>

#include "dialling/tele_session.h"
#include "dialling/tele_translate.h"
#include "dialling/telephony.h"

namespace bv {
namespace {

// A translation may hold separators, which do not count: far more than can be left over of 40 characters.
constexpr std::size_t kMaxTranslation = 1000;
constexpr std::size_t kRoomForSuffix = kMaxTelephoneNumber - 1;

// The library's form of an international number of the own country: "+44(171)1234567".
std::string CanonicalAddress(std::string_view international, const DialProperties& properties) {
    const std::string_view country = properties.Country;
    std::string_view rest = international.substr(std::min(1 + country.size(), international.size()));
    const std::string_view area = rest.substr(0, properties.Area.Size());
    rest.remove_prefix(area.size());
    std::string address = "+";
    return address.append(country).append("(").append(area).append(")").append(rest);
}

StatusCode TranslateOwn(const std::string& number, const DialProperties& properties, std::string& dialable) {
    TelephoneNumber international;
    const StatusCode status = MakeInternationalNumber(number, international, properties);
    if (status != kDone) return status;
    if (!international.View().starts_with('+')) return kNotInternational;
    return TAPITranslate(CanonicalAddress(international, properties), dialable, kMaxTranslation);
}

StatusCode Translate(std::string number, const DialProperties& properties, std::string& dialable) {
    const bool isInternational = number.starts_with('+');
    if (isInternational && number.find('(') != std::string::npos && number.find(')') != std::string::npos)
        return TAPITranslate(number, dialable, kMaxTranslation);
    std::erase(number, ' ');
    const std::string_view text = number;
    const std::string_view country = properties.Country;
    if (isInternational && !text.substr(1).starts_with(country)) {
        dialable = properties.IntlAccess.String().append(text.substr(1));
        return dialable.size() > kMaxTelephoneNumber ? kNumberTooLong : kDone;
    }
    const std::string_view access = properties.IntlAccess;
    if (text.starts_with(access) && !text.substr(access.size()).starts_with(country)) {
        dialable = number;
        return kDone;
    }
    return TranslateOwn(number, properties, dialable);
}

} // namespace

StatusCode TAPIMakeDialable(std::string_view number, TelephoneNumber& dialable, const std::string& countryFile) {
    TraceTapi("TAPIMakeDialable() called");
    dialable.Clear();
    if (const StatusCode status = CheckTapi(&telephony::Entries::TranslateAddress); status != kDone) return status;
    if (number.size() > kMaxTelephoneNumber) return kNumberTooLong;
    const std::size_t colon = std::min(number.find(':'), number.size());
    const std::string_view suffix = number.substr(std::min(colon + 1, number.size()));

    DialProperties properties;
    StatusCode status = TAPIGetDialProps(&properties, countryFile);
    if (status != kDone) return status;
    std::string translated;
    status = Translate(std::string(number.substr(0, colon)), properties, translated);
    if (status != kDone) return status;

    FixedText<kMaxTranslation> digits;
    FixedText<kMaxTranslation> ignored;
    StripNumber(translated, ignored, digits);
    if (digits.Size() > kMaxTelephoneNumber) return kNumberTooLong;
    std::string result = digits.String();
    if (!suffix.empty() && result.size() < kRoomForSuffix) result.append(":").append(suffix);
    dialable = result;
    return kDone;
}

StatusCode TAPIMakeInternational(std::string_view number, TelephoneNumber& result, const std::string& countryFile) {
    result.Clear();
    DialProperties properties;
    const StatusCode status = TAPIGetDialProps(&properties, countryFile);
    return status == kDone ? MakeInternationalNumber(number, result, properties) : status;
}

} // namespace bv
