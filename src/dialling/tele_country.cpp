#include <optional>

#include "ctlfile/control_stream.h"
#include "ctlfile/file_gate.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "dialling/tele_session.h"
#include "dialling/tele_structure.h"
#include "dialling/tele_translate.h"
#include "dialling/telephony.h"
#include "platform/ascii.h"

namespace bv {
namespace {

using telephony::CountryEntry;
using telephony::CountryList;

constexpr int kShown = 4; // ReportMessage's severity of a warning

StatusCode FetchCountry(std::uint32_t countryID, TapiStructure& filled) {
    const TapiSession& session = Tapi().Session;
    return FetchTapiStructure(
        sizeof(CountryList),
        [&session, countryID](void* list) {
            return session.Entries.GetCountry(countryID, session.Version, static_cast<CountryList*>(list));
        },
        filled);
}

// The one entry of the list, if it is that country's.
std::optional<CountryEntry> FindCountry(const TapiStructure& filled, std::uint32_t countryID) {
    const auto list = filled.Read<CountryList>(0).value_or(CountryList{});
    if (list.CountryCount != 1) {
        TraceTapi("TAPIGetDialProps(): Retrieved %d countries, for country ID %d", list.CountryCount, countryID);
        return std::nullopt;
    }
    const auto entry = filled.Read<CountryEntry>(list.CountryListOffset);
    if (entry && entry->CountryID == countryID) return entry;
    TraceTapi("TAPIGetDialProps(): Countries didn't match");
    return std::nullopt;
}

// Fills the country cache as the library has the country; false when it does not give it.
bool ReadRules(std::uint32_t countryID, TapiCountryRules& rules) {
    if (Tapi().Session.Entries.GetCountry == nullptr) return false;
    TapiStructure filled;
    if (FetchCountry(countryID, filled) != kDone) return false;
    const auto entry = FindCountry(filled, countryID);
    if (!entry) return false;
    rules.CountryCode = std::to_string(entry->CountryCode);
    rules.CountryName = filled.Text(entry->NameSize, entry->NameOffset);
    rules.SameArea = filled.Text(entry->SameAreaRuleSize, entry->SameAreaRuleOffset);
    rules.LongDistance = filled.Text(entry->LongDistanceRuleSize, entry->LongDistanceRuleOffset);
    rules.International = filled.Text(entry->InternationalRuleSize, entry->InternationalRuleOffset);
    return true;
}

// The rule up to the first of the letters that is in it, the letters tried in their order.
std::string_view PrefixOf(std::string_view rule, std::string_view letters) {
    rule = SkipBlanks(rule);
    for (const char letter : letters) {
        const std::size_t end = rule.find(letter);
        if (end != std::string_view::npos) return rule.substr(0, end);
    }
    return rule;
}

void FillArea(std::string_view cityCode, DialProperties& properties) {
    const std::string_view national = properties.NatlAccess;
    properties.DisplayNatlAccess = !national.empty() && cityCode.starts_with(national);
    properties.Area = properties.DisplayNatlAccess ? cityCode.substr(national.size()) : cityCode;
}

void FillProperties(const TapiState& state, const std::string& countryFile, DialProperties& properties) {
    const TapiCountryRules& rules = state.Country;
    if (!countryFile.empty()) properties.NumberWithoutAreaMaxLen = GetLocalNumberLen(countryFile, rules.CountryCode);
    properties.Country = rules.CountryCode;
    properties.NatlAccess = PrefixOf(rules.LongDistance, "FG");
    FillArea(state.Location.CityCode, properties);
    properties.IntlAccess = PrefixOf(rules.International, "EFG");
    const std::string_view sameArea = SkipBlanks(rules.SameArea);
    properties.DialAreaCode = sameArea.find('F') != std::string_view::npos;
    properties.DialNatlAccessForLocal =
        !rules.LongDistance.IsEmpty() && sameArea.starts_with(properties.NatlAccess.View());
}

// The third token of a list.
std::string_view ThirdToken(std::optional<std::string_view> list) {
    for (int skipped = 0; skipped < 2; ++skipped) list = ParseQuotedToken(list).Rest;
    return ParseQuotedToken(list).Token.value_or(std::string_view());
}

std::uint16_t FindLocalNumberLen(ControlStream& stream, std::string_view countryCode) {
    ControlLine line;
    while (FindKeyLine(stream, std::nullopt, line)) {
        const std::string_view text = line;
        const std::size_t colon = text.find(':');
        if (colon == std::string_view::npos || text.substr(0, colon) != countryCode) continue;
        return ParseNumber(StripQuotes(ThirdToken(SkipBlanks(text.substr(colon + 1)))));
    }
    return 0;
}

} // namespace

StatusCode TAPIGetCountrySettings(std::uint32_t countryID, DialProperties* properties, const std::string& countryFile) {
    TraceTapi("TAPIGetCountrySettings() called");
    if (const StatusCode status = CheckTapi(&telephony::Entries::GetTranslateCaps); status != kDone) return status;
    if (!ReadRules(countryID, Tapi().Country)) {
        const StatusCode status = TAPIDeduceCountryInfo(countryID);
        if (status != kDone) return status;
    }
    if (properties != nullptr) FillProperties(Tapi(), countryFile, *properties);
    return kDone;
}

std::uint16_t GetLocalNumberLen(const std::string& countryFile, std::string_view countryCode) {
    TraceTapi("GetLocalNumberLen() called");
    if (countryFile.empty() || countryCode.empty()) {
        ReportMessage(kTapiNote, "'GetLocalNumberLen()' function called with invalid parameters - returning '0'");
        return 0;
    }
    ControlStream stream = OpenToRead(countryFile);
    if (!stream) {
        ReportMessage(kShown, "Unable to find file '%s' (for TAPI number editing)", countryFile);
        return 0;
    }
    constexpr const char* kParagraph = "[COUNTRIES]";
    ControlLine line;
    const bool found = FindParagraph(stream, kParagraph, line);
    const std::uint16_t length = found ? FindLocalNumberLen(stream, countryCode) : std::uint16_t{0};
    if (!WasRead(stream)) return 0;
    if (!found) ReportMessage(kShown, "Unable to find '%s' paragraph in file (for TAPI number editing)", kParagraph);
    return length;
}

} // namespace bv
