#include "lcr/number_place.h"

#include <algorithm>
#include <set>

#include "ctlfile/whole_file.h"
#include "lcr/lcr_messages.h"
#include "platform/ascii.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr char kPlus = '+';
const std::string kApplication = "LCR"; // to the telephony

// A number without formatting characters and suffix, and without its "+".
std::string DigitsOf(std::string_view number) {
    TelephoneNumber suffix;
    TelephoneNumber main;
    StripNumber(number, suffix, main);
    return main.View().starts_with(kPlus) ? main.String().substr(1) : main.String();
}

bool AreDigits(std::string_view text) { return !text.empty() && std::ranges::all_of(text, IsDigit); }

// The country of the longest dialling code that begins the digits; null without one.
const CountryEntry* CountryOfDigits(const Destinations& places, std::string_view digits) {
    if (digits.starts_with('0')) return nullptr; // a national number
    for (std::size_t size = digits.size(); size > 0; --size) {
        if (const CountryEntry* country = places.FindCode(digits.substr(0, size))) return country;
    }
    return nullptr;
}

bool Means(std::string_view match, std::string_view local) {
    if (!match.ends_with('*')) return match == local;
    match.remove_suffix(1);
    return local.starts_with(match);
}

std::set<std::size_t> SetOf(const std::vector<std::size_t>& numbers) { return {numbers.begin(), numbers.end()}; }

// "UK/LON (20...), London, United Kingdom; region HOME".
std::string PlaceText(const Destinations& places, const NumberPlace& place) {
    std::string text;
    for (const NumberArea& area : place.Areas) {
        const std::string name = FindDestinationName(places, area.Reference);
        text.append(text.empty() ? "" : "; ") += FormatText("%s (%s), %s", area.Reference, MatchText(area.Match), name);
    }
    if (place.Areas.empty()) text = FormatText("%s, %s", place.Country, FindDestinationName(places, place.Country));
    for (const std::string& region : place.Regions)
        text.append(&region == &place.Regions.front() ? "; region " : ", ").append(region);
    return text;
}

} // namespace

std::string MatchText(std::string_view match) {
    const std::size_t star = match.find('*');
    return star == std::string_view::npos ? std::string(match) : std::string(match.substr(0, star)) + "...";
}

bool NumberSearch::CanConvert() {
    if (converting_ == Converting::NotAsked) {
        const bool canConvert = !IsMissing(DiallingFileToRead()) && converter_.Load(kApplication) &&
                                GetDialProperties().Mode != kDialNoEditing;
        converting_ = canConvert ? Converting::Possible : Converting::Impossible;
    }
    return converting_ == Converting::Possible;
}

std::string NumberSearch::TextOf(const Destinations& places, const std::string& number) {
    if (TrimBlanks(number).empty()) return {};
    if (!LooksLikeNumber(number)) return FillMessage(kNoNumberNoPlace, number);
    std::string international = number;
    std::string note;
    if (!number.starts_with(kPlus)) {
        TelephoneNumber converted;
        if (!CanConvert())
            note = ". " + FillMessage(kNumberAsItStands);
        else if (const StatusCode status = converter_.Convert(NumberForm::International, number, converted);
                 status != kDone)
            return FaultOfNumber(number, status);
        else
            international = converted.String();
    }
    const std::optional<NumberPlace> place = PlaceOfNumber(places, international);
    if (!place) return FillMessage(kNumberIsNowhere, international) + note;
    return place->Number + ": " + PlaceText(places, *place) + note;
}

std::vector<std::string> NumberPlace::References() const {
    if (Areas.empty()) return {Country};
    std::vector<std::string> references;
    for (const NumberArea& area : Areas) references.push_back(area.Reference);
    return references;
}

std::optional<NumberPlace> PlaceOfNumber(const Destinations& places, std::string_view international) {
    const std::string digits = DigitsOf(international);
    const CountryEntry* country = AreDigits(digits) ? CountryOfDigits(places, digits) : nullptr;
    if (country == nullptr) return {};
    NumberPlace place = {kPlus + digits, country->Identifier, {}, {}};
    const std::string_view local = std::string_view(digits).substr(country->DiallingCode.size());
    for (const AreaEntry& area : country->Areas) {
        const auto match = std::ranges::find_if(area.Matches, [&](const auto& one) { return Means(one, local); });
        if (match != area.Matches.end()) place.Areas.push_back({country->Identifier + "/" + area.Identifier, *match});
    }
    std::set<std::size_t> regions;
    for (const std::string& reference : place.References()) regions.merge(SetOf(places.RegionsOf(reference)));
    for (const std::size_t region : regions) place.Regions.push_back(places.Regions()[region].Identifier);
    return place;
}

std::optional<NumberPlace> EnterNumber(const Destinations& places, const std::string& number) {
    if (!LooksLikeNumber(number)) {
        ShowError(kNoNumberNoPlace, number);
        return {};
    }
    TelephoneNumber converted;
    if (!number.starts_with(kPlus)) {
        NumberConverter converter;
        const bool isMissing = IsMissing(DiallingFileToRead());
        if (!isMissing && !converter.Load(kApplication)) return {};
        if (isMissing || GetDialProperties().Mode == kDialNoEditing) {
            ShowWarning(kNumberAsItStands);
        } else if (const StatusCode status = converter.Convert(NumberForm::International, number, converted);
                   status != kDone) {
            ShowError("%s", FaultOfNumber(number, status));
            return {};
        }
    }
    const std::string international = converted.IsEmpty() ? number : converted.String();
    std::optional<NumberPlace> place = PlaceOfNumber(places, international);
    if (!place) ShowError(kNumberIsNowhere, international);
    return place;
}

bool LooksLikeNumber(std::string_view text) { return AreDigits(DigitsOf(text)); }

} // namespace bv
