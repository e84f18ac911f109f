#include "dialling/tele_translate.h"

#include <algorithm>
#include <array>

#include "dialling/tele_session.h"
#include "dialling/tele_structure.h"
#include "platform/ascii.h"

namespace bv {
namespace {

constexpr telephony::Word kFirstDevice = 0;
constexpr telephony::Word kNoCard = 0;
constexpr telephony::Word kNoOptions = 0;
constexpr std::string_view kTestNumber = "1234567";

std::string_view WithoutAccessCode(std::string_view dialable, const TapiLocation& location) {
    for (const std::string_view code : {location.LocalAccessCode.View(), location.LongDistanceAccessCode.View()}) {
        if (code.empty() || !dialable.starts_with(code)) continue;
        dialable.remove_prefix(code.size());
        break;
    }
    return SkipBlanks(dialable);
}

std::string Canonical(std::string_view country, std::string_view area) {
    std::string address = "+";
    return address.append(country).append(" (").append(area).append(") ").append(kTestNumber);
}

std::size_t DigitCount(std::initializer_list<std::string_view> texts) {
    std::ptrdiff_t count = 0;
    for (const std::string_view text : texts) count += std::ranges::count_if(text, IsDigit);
    return static_cast<std::size_t>(count);
}

// The index of the last digit before `end`, or npos: none, or the stop character came first.
std::size_t DigitBefore(std::string_view text, std::size_t end, char stop = '\0') {
    while (end > 0) {
        --end;
        if (IsDigit(text[end])) return end;
        if (stop != '\0' && text[end] == stop) break;
    }
    return std::string_view::npos;
}

// What is dialled before the digits of a test address, without separators, and behind it the rule's letters; empty when
// the translation does not end in all of them.
StatusCode DeducePrefixRule(const std::string& address, std::size_t digits, std::string_view letters, DialRule& rule) {
    TranslationMatch match;
    const StatusCode status = CompareTAPITranslationOutput(address, digits, match);
    if (status != kDone || match.Count != digits) return status;
    TelephoneNumber suffix;
    TelephoneNumber prefix;
    StripNumber(match.Prefix(), suffix, prefix);
    rule = prefix.String().append(letters);
    return kDone;
}

// Whether a number of the own area is dialled with the area code.
StatusCode DeduceSameAreaRule(TapiCountryRules& rules, const TapiLocation& location) {
    const std::string_view longDistance = rules.LongDistance.View();
    const std::string_view prefix = longDistance.substr(0, longDistance.find('F'));
    std::string_view city = location.CityCode;
    const std::string address = Canonical(rules.CountryCode, city);
    if (city.starts_with(prefix)) city.remove_prefix(prefix.size());
    const std::size_t digits = DigitCount({city, kTestNumber});
    TranslationMatch match;
    const StatusCode status = CompareTAPITranslationOutput(address, digits, match);
    if (status != kDone) return status;
    if (digits > kTestNumber.size() && match.Count == digits) rules.SameArea = rules.LongDistance;
    return kDone;
}

} // namespace

StatusCode TAPITranslate(const std::string& address, std::string& dialable, std::size_t limit) {
    TraceTapi("TAPITranslate() called");
    dialable.clear();
    if (const StatusCode status = CheckTapi(&telephony::Entries::TranslateAddress); status != kDone) return status;
    const TapiSession& session = Tapi().Session;
    const auto translate = [&](void* output) {
        return session.Entries.TranslateAddress(session.Line, kFirstDevice, session.Version, address.c_str(), kNoCard,
                                                kNoOptions, static_cast<telephony::TranslateOutput*>(output));
    };
    TapiStructure filled;
    const StatusCode status = FetchTapiStructure(sizeof(telephony::TranslateOutput), translate, filled);
    if (status != kDone) return status;
    const auto output = filled.Read<telephony::TranslateOutput>(0).value_or(telephony::TranslateOutput{});
    const std::string_view text = filled.Text(output.DialableStringSize, output.DialableStringOffset);
    dialable = WithoutAccessCode(text, Tapi().Location).substr(0, limit);
    return kDone;
}

StatusCode CompareTAPITranslationOutput(const std::string& address, std::size_t digits, TranslationMatch& match) {
    TraceTapi("CompareTAPITranslationOutput() called");
    match = {};
    const StatusCode status = TAPITranslate(address, match.Output, kMaxTelephoneNumber);
    if (status != kDone) return status;
    match.Start = match.Output.size();
    std::size_t asked = address.size();
    while (match.Count < digits) {
        asked = DigitBefore(address, asked, '+');
        const std::size_t dialled = DigitBefore(match.Output, match.Start);
        if (asked == std::string::npos || dialled == std::string::npos) break;
        if (address[asked] != match.Output[dialled]) break;
        match.Start = dialled;
        ++match.Count;
    }
    return kDone;
}

StatusCode TAPIDeduceCountryInfo(std::uint32_t countryID) {
    TraceTapi("TAPIDeduceCountryInfo() called");
    if (const StatusCode status = CheckTapi(&telephony::Entries::TranslateAddress); status != kDone) return status;
    const TapiLocation& location = Tapi().Location;
    TapiCountryRules& rules = Tapi().Country;
    rules = {};
    if (countryID != location.CountryID) return kDone;
    rules.CountryCode = location.CountryCode;
    const std::string_view country = location.CountryCode == "44" ? "33" : "44";
    const std::string_view area = location.CityCode == "171" ? "130" : "171";

    StatusCode status = DeducePrefixRule(Canonical(country, area), DigitCount({country, area, kTestNumber}), "EFG",
                                         rules.International);
    if (status != kDone) return status;
    status = DeducePrefixRule(Canonical(location.CountryCode, area), DigitCount({area, kTestNumber}), "FG",
                              rules.LongDistance);
    return status == kDone ? DeduceSameAreaRule(rules, location) : status;
}

} // namespace bv
