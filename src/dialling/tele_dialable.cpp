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

// A number in a form that the library understands, as the library would dial it.
StatusCode Ask(const std::string& address, std::string& dialable, NumberTrace* trace) {
    const StatusCode status = TAPITranslate(address, dialable, kMaxTranslation);
    NoteStep(trace, status == kDone ? "What the telephony service would dial" : "The telephony service refuses it",
             dialable, true);
    return status;
}

StatusCode RefuseAsTooLong(NumberTrace* trace) {
    NoteStep(trace, "Over 40 characters: refused", "");
    return kNumberTooLong;
}

StatusCode TranslateOwn(const std::string& number, const DialProperties& properties, std::string& dialable,
                        NumberTrace* trace) {
    TelephoneNumber international;
    if (MakeInternationalNumber(number, international, properties) != kDone) return RefuseAsTooLong(trace);
    if (!international.View().starts_with('+')) return kNotInternational;
    const std::string address = CanonicalAddress(international, properties);
    NoteStep(trace, "4c: in international form, with the area code in brackets", address);
    return Ask(address, dialable, trace);
}

StatusCode Translate(std::string number, const DialProperties& properties, std::string& dialable, NumberTrace* trace) {
    if (number.starts_with('+') && number.find('(') != std::string::npos && number.find(')') != std::string::npos) {
        NoteStep(trace, "3: + and both brackets: asked for as it stands", number);
        return Ask(number, dialable, trace);
    }
    std::erase(number, ' ');
    const std::string_view text = number;
    const std::string_view country = properties.Country;
    if (text.starts_with('+') && !text.substr(1).starts_with(country)) {
        dialable = properties.IntlAccess.String().append(text.substr(1));
        NoteStep(trace, "4a: + and another country: IntlAccess takes the place of +", dialable, true);
        return dialable.size() > kMaxTelephoneNumber ? RefuseAsTooLong(trace) : kDone;
    }
    const std::string_view access = properties.IntlAccess;
    if (text.starts_with(access) && !text.substr(access.size()).starts_with(country)) {
        dialable = number;
        NoteStep(trace, "4b: IntlAccess and another country: dialled as it stands", dialable, true);
        return kDone;
    }
    return TranslateOwn(number, properties, dialable, trace);
}

// The digits of a translation, and the suffix where there is room.
StatusCode Finish(std::string_view translated, std::string_view suffix, TelephoneNumber& dialable, NumberTrace* trace) {
    FixedText<kMaxTranslation> digits;
    FixedText<kMaxTranslation> ignored;
    StripNumber(translated, ignored, digits);
    NoteStep(trace, "5: separators are taken off", digits);
    if (digits.Size() > kMaxTelephoneNumber) return RefuseAsTooLong(trace);
    dialable = digits.View();
    if (suffix.empty()) return kDone;
    const bool hasRoom = digits.Size() < kRoomForSuffix;
    if (hasRoom) dialable = digits.String().append(":").append(suffix);
    NoteStep(trace, hasRoom ? "5: the suffix is put back" : "5: there is no room for the suffix", dialable);
    return kDone;
}

} // namespace

StatusCode TAPIMakeDialable(std::string_view number, TelephoneNumber& dialable, const std::string& countryFile,
                            NumberTrace* trace) {
    TraceTapi("TAPIMakeDialable() called");
    dialable.Clear();
    if (const StatusCode status = CheckTapi(&telephony::Entries::TranslateAddress); status != kDone) return status;
    if (number.size() > kMaxTelephoneNumber) return RefuseAsTooLong(trace);
    const std::size_t colon = std::min(number.find(':'), number.size());
    const std::string_view main = number.substr(0, colon);
    NoteStep(trace, "1: the suffix is set aside", main);

    DialProperties properties;
    StatusCode status = TAPIGetDialProps(&properties, countryFile);
    if (status != kDone) return status;
    std::string translated;
    status = Translate(std::string(main), properties, translated, trace);
    if (status != kDone) return status;
    return Finish(translated, number.substr(std::min(colon + 1, number.size())), dialable, trace);
}

StatusCode TAPIMakeInternational(std::string_view number, TelephoneNumber& result, const std::string& countryFile,
                                 NumberTrace* trace) {
    TraceTapi("TAPIMakeInternational() called");
    result.Clear();
    DialProperties properties;
    const StatusCode status = TAPIGetDialProps(&properties, countryFile);
    return status == kDone ? MakeInternationalNumber(number, result, properties, trace) : status;
}

} // namespace bv
