// The system's telephony (TAPI 1.4), which knows a location of its own: where the workstation stands and how numbers
// are dialled there. Its library is loaded at run time; without it everything here fails with a status.
//
// The process has one session: TAPIInit, then the others in any order, then TAPITerm. Each returns 0, or a status
// below: all but TAPIInit kTapiNotInitialised outside a session, and kTapiUnavailable without the library's handle or
// the entry that is needed. A fault of the library has been shown as a status text (TAPIErrorText), one of loading it
// as an error.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ctlfile/status.h"
#include "dialling/dial_properties.h"
#include "dialling/numbers.h"
#include "dialling/tele_errors.h"

namespace bv {

inline constexpr StatusCode kTapiNotInitialised = -3967;
inline constexpr StatusCode kTapiUnavailable = -3966;
inline constexpr StatusCode kTapiCallFailed = -3968;
inline constexpr StatusCode kTapiNoMemory = -4037;
inline constexpr StatusCode kNotInternational = -3984;

// How version 1.4 is agreed on: with the first line device; or, where there may be none, by asking for the locations.
enum class TapiNegotiation { WithDevice, Test };

// Loads TAPI32.DLL, opens the session under the application's name and agrees on the version. The instance is the
// module's handle; without one the process's own is used. In a session it does nothing. Otherwise 0, or
// kTapiUnavailable, with everything undone: after error "Unable to load DLL '%s' (error #%ld)" or "Function %s missing
// from TAPI DLL", or a status text. The entry lineGetCountry may be missing.
StatusCode TAPIInit(const std::string& application, void* instance, TapiNegotiation negotiation);

// Ends the session, if there is one, and frees the library.
void TAPITerm();

// Reads the current location and its country's rules and, given a record, fills it (mode 3, "TAPI"); after a failure
// the record is empty but for the mode or, when the country's rules fail, for what they had given. The country file
// (COUNTRY.INI; may be empty) is used for the length of local numbers alone. Also kTapiCallFailed without a current
// location.
StatusCode TAPIGetDialProps(DialProperties* properties, const std::string& countryFile);

// Why TAPIGetDialProps failed, for the caller to show: "Unable to retrieve TAPI dialling properties - " and the reason.
std::string TapiFailureText(StatusCode status);

// Reads the rules of a country (by the library's own number for it) and, given a record, fills what depends on them:
// the country and area codes, the prefixes and what is dialled for local calls. Rules that the library does not give
// are deduced (TAPIDeduceCountryInfo).
StatusCode TAPIGetCountrySettings(std::uint32_t countryID, DialProperties* properties, const std::string& countryFile);

// The number as the library would dial it, without the location's own outside-line code: at most 40 characters. A
// number whose main part begins with "+" and has both brackets is handed over as it stands; one of another country, by
// "+" or IntlAccess, is put together here. An empty IntlAccess begins every number, which is intended. The suffix
// behind a colon is put back when the result has fewer than 39 characters, and is cut. Also kNumberTooLong (-3982) and
// kNotInternational (-3984), and whatever TAPIGetDialProps returns. The result is empty after a failure. With a trace,
// adds the rules that were gone by.
StatusCode TAPIMakeDialable(std::string_view number, TelephoneNumber& dialable, const std::string& countryFile,
                            NumberTrace* trace = nullptr);

// MakeInternationalNumber by the properties that TAPIGetDialProps gives, whose failures it also returns.
StatusCode TAPIMakeInternational(std::string_view number, TelephoneNumber& result, const std::string& countryFile,
                                 NumberTrace* trace = nullptr);

// Opens the system's own dialog of dialling properties, for an address, over the owner's window.
StatusCode TAPISetLocation(const std::string& address, void* owner);

// The length of a local number that COUNTRY.INI gives as a country's fourth field; 0 when it does not. Without a file
// or a code nothing is shown; a file that cannot be opened or has no "[COUNTRIES]" is a warning, one that cannot be
// read to its end is error 9011.
std::uint16_t GetLocalNumberLen(const std::string& countryFile, std::string_view countryCode);

} // namespace bv
