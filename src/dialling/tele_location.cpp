#include <algorithm>
#include <optional>

#include "dialling/tele_session.h"
#include "dialling/tele_structure.h"
#include "dialling/telephony.h"
#include "platform/ascii.h"

namespace bv {
namespace {

using telephony::LocationEntry;
using telephony::TranslateCaps;

constexpr std::size_t kMaxTollPrefixes = 30;
constexpr std::size_t kMaxSeparators = 10; // that are stepped over behind a toll prefix

StatusCode FetchTranslateCaps(TapiStructure& filled) {
    const TapiSession& session = Tapi().Session;
    const StatusCode status = FetchTapiStructure(
        sizeof(TranslateCaps),
        [&session](void* caps) {
            return session.Entries.GetTranslateCaps(session.Line, session.Version, static_cast<TranslateCaps*>(caps));
        },
        filled);
    if (status == kTapiNoMemory) TraceTapi("TAPIGetDialProps(): Failed to allocate lpTransCaps");
    return status;
}

// The entry of the current location; entries that do not lie within what was given are none.
std::optional<LocationEntry> FindCurrentLocation(const TapiStructure& filled, TapiSession& session) {
    const auto caps = filled.Read<TranslateCaps>(0).value_or(TranslateCaps{});
    session.CurrentLocationID = caps.CurrentLocationID;
    session.LocationCount = caps.LocationCount;
    for (std::uint64_t index = 0; index < caps.LocationCount; ++index) {
        const auto entry = filled.Read<LocationEntry>(caps.LocationListOffset + index * sizeof(LocationEntry));
        if (!entry) break;
        if (entry->PermanentLocationID == caps.CurrentLocationID) return entry;
    }
    TraceTapi("TAPIGetDialProps(): Failed to find current location");
    return std::nullopt;
}

void FillLocation(const TapiStructure& filled, const LocationEntry& entry, TapiLocation& location) {
    location.PermanentID = entry.PermanentLocationID;
    location.CountryID = entry.CountryID;
    TraceTapi("TAPIGetDialProps(): Current country ID: %d", entry.CountryID);
    location.CountryCode = std::to_string(entry.CountryCode);
    location.Name = filled.Text(entry.NameSize, entry.NameOffset);
    location.CityCode = filled.Text(entry.CityCodeSize, entry.CityCodeOffset);
    location.LocalAccessCode = filled.Text(entry.LocalAccessCodeSize, entry.LocalAccessCodeOffset);
    location.LongDistanceAccessCode = filled.Text(entry.LongDistanceAccessCodeSize, entry.LongDistanceAccessCodeOffset);
    location.TollPrefixes = filled.Text(entry.TollPrefixListSize, entry.TollPrefixListOffset);
}

// A list that begins with a comma has an empty first entry, and so has one more separators than are stepped over.
void FillTollPrefixes(std::string_view list, DialPrefixes& prefixes) {
    prefixes.Clear();
    while (!list.empty() && prefixes.Size() < kMaxTollPrefixes) {
        const std::string_view entry = list.substr(0, list.find(','));
        prefixes.Add(entry);
        list.remove_prefix(entry.size());
        const std::size_t next = std::min(list.find_first_not_of(", \t"), list.size());
        list.remove_prefix(std::min(next, kMaxSeparators));
    }
}

} // namespace

StatusCode TAPIGetDialProps(DialProperties* properties, const std::string& countryFile) {
    TraceTapi("TAPIGetDialProps() called");
    if (const StatusCode status = CheckTapi(&telephony::Entries::GetTranslateCaps); status != kDone) return status;
    if (properties != nullptr) {
        *properties = {};
        properties->Mode = kDialTelephony;
    }
    TapiState& state = Tapi();
    state.Location = {};
    state.Country = {};

    TapiStructure filled;
    if (const StatusCode status = FetchTranslateCaps(filled); status != kDone) return status;
    const auto entry = FindCurrentLocation(filled, state.Session);
    if (!entry) return kTapiCallFailed;
    FillLocation(filled, *entry, state.Location);
    const StatusCode status = TAPIGetCountrySettings(state.Location.CountryID, properties, countryFile);
    if (status != kDone || properties == nullptr) return status;

    properties->Description = state.Location.Name;
    properties->DialAsLocal.Clear();
    FillTollPrefixes(state.Location.TollPrefixes, properties->DialAsNatl);
    return kDone;
}

std::string TapiFailureText(StatusCode status) {
    const char* reason = "general TAPI error";
    if (status == kTapiNoMemory) reason = "memory allocation error";
    if (status == kTapiNotInitialised || status == kTapiUnavailable) reason = "error with TAPI initialisation";
    return FormatText("Unable to retrieve TAPI dialling properties - %s", reason);
}

} // namespace bv
