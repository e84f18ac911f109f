// The tests' telephony library as TAPI32.DLL: its entries by the names, types and calling convention of the system's
// own header, which the engine's description of them is held against here.
#define TAPI_CURRENT_VERSION 0x00010004
#include <windows.h>

#include <tapi.h>

// Names of later versions.
#undef lineGetCountry
#undef lineGetTranslateCaps
#undef lineTranslateAddress
#undef lineTranslateDialog

#include "dialling/tele_interface.h"
#include "dialling/telephony_library.h"

namespace {

using namespace bv::telephony;
using bv::test::line::Word;

#define BV_SAME_SIZE(own, published) static_assert(sizeof(own) == sizeof(published))
#define BV_SAME_FIELD(own, field, published, publishedField)                                                           \
    static_assert(offsetof(own, field) == offsetof(published, publishedField))

BV_SAME_SIZE(TranslateCaps, LINETRANSLATECAPS);
BV_SAME_FIELD(TranslateCaps, Size.Needed, LINETRANSLATECAPS, dwNeededSize);
BV_SAME_FIELD(TranslateCaps, LocationCount, LINETRANSLATECAPS, dwNumLocations);
BV_SAME_FIELD(TranslateCaps, LocationListOffset, LINETRANSLATECAPS, dwLocationListOffset);
BV_SAME_FIELD(TranslateCaps, CurrentLocationID, LINETRANSLATECAPS, dwCurrentLocationID);
BV_SAME_SIZE(LocationEntry, LINELOCATIONENTRY);
BV_SAME_FIELD(LocationEntry, PermanentLocationID, LINELOCATIONENTRY, dwPermanentLocationID);
BV_SAME_FIELD(LocationEntry, NameOffset, LINELOCATIONENTRY, dwLocationNameOffset);
BV_SAME_FIELD(LocationEntry, CountryCode, LINELOCATIONENTRY, dwCountryCode);
BV_SAME_FIELD(LocationEntry, CityCodeOffset, LINELOCATIONENTRY, dwCityCodeOffset);
BV_SAME_FIELD(LocationEntry, LocalAccessCodeOffset, LINELOCATIONENTRY, dwLocalAccessCodeOffset);
BV_SAME_FIELD(LocationEntry, LongDistanceAccessCodeOffset, LINELOCATIONENTRY, dwLongDistanceAccessCodeOffset);
BV_SAME_FIELD(LocationEntry, TollPrefixListOffset, LINELOCATIONENTRY, dwTollPrefixListOffset);
BV_SAME_FIELD(LocationEntry, CountryID, LINELOCATIONENTRY, dwCountryID);
BV_SAME_SIZE(CountryList, LINECOUNTRYLIST);
BV_SAME_FIELD(CountryList, CountryCount, LINECOUNTRYLIST, dwNumCountries);
BV_SAME_FIELD(CountryList, CountryListOffset, LINECOUNTRYLIST, dwCountryListOffset);
BV_SAME_SIZE(CountryEntry, LINECOUNTRYENTRY);
BV_SAME_FIELD(CountryEntry, CountryID, LINECOUNTRYENTRY, dwCountryID);
BV_SAME_FIELD(CountryEntry, CountryCode, LINECOUNTRYENTRY, dwCountryCode);
BV_SAME_FIELD(CountryEntry, NameOffset, LINECOUNTRYENTRY, dwCountryNameOffset);
BV_SAME_FIELD(CountryEntry, SameAreaRuleOffset, LINECOUNTRYENTRY, dwSameAreaRuleOffset);
BV_SAME_FIELD(CountryEntry, LongDistanceRuleOffset, LINECOUNTRYENTRY, dwLongDistanceRuleOffset);
BV_SAME_FIELD(CountryEntry, InternationalRuleOffset, LINECOUNTRYENTRY, dwInternationalRuleOffset);
BV_SAME_SIZE(TranslateOutput, LINETRANSLATEOUTPUT);
BV_SAME_FIELD(TranslateOutput, DialableStringOffset, LINETRANSLATEOUTPUT, dwDialableStringOffset);
BV_SAME_SIZE(ExtensionID, LINEEXTENSIONID);
static_assert(static_cast<LONG>(kIncompatibleVersion) == static_cast<LONG>(LINEERR_INCOMPATIBLEAPIVERSION));
static_assert(static_cast<LONG>(kStructureTooSmall) == static_cast<LONG>(LINEERR_STRUCTURETOOSMALL));

// The published types are of the same words under other names.
Word* Words(DWORD* place) { return reinterpret_cast<Word*>(place); }

} // namespace

namespace line = bv::test::line;

extern "C" {

LONG WINAPI lineInitialize(LPHLINEAPP app, HINSTANCE instance, LINECALLBACK callback, LPCSTR name, LPDWORD devices) {
    return line::Initialize(Words(app), instance, reinterpret_cast<line::Callback>(callback), name, Words(devices));
}

LONG WINAPI lineShutdown(HLINEAPP app) { return line::Shutdown(app); }

LONG WINAPI lineGetTranslateCaps(HLINEAPP app, DWORD version, LPLINETRANSLATECAPS caps) {
    return line::GetTranslateCaps(app, version, caps);
}

LONG WINAPI lineNegotiateAPIVersion(HLINEAPP app, DWORD device, DWORD low, DWORD high, LPDWORD version,
                                    LPLINEEXTENSIONID extension) {
    return line::NegotiateAPIVersion(app, device, low, high, Words(version), extension);
}

LONG WINAPI lineGetCountry(DWORD country, DWORD version, LPLINECOUNTRYLIST list) {
    return line::GetCountry(country, version, list);
}

LONG WINAPI lineTranslateDialog(HLINEAPP app, DWORD device, DWORD version, HWND owner, LPCSTR address) {
    return line::TranslateDialog(app, device, version, owner, address);
}

LONG WINAPI lineTranslateAddress(HLINEAPP app, DWORD device, DWORD version, LPCSTR address, DWORD card, DWORD options,
                                 LPLINETRANSLATEOUTPUT output) {
    return line::TranslateAddress(app, device, version, address, card, options, output);
}

// Not of the published interface: the tests tell the library what to answer.
void AnswerTestsBy(bv::test::TelephonyAnswers* answers) { bv::test::AnswerBy(answers); }

} // extern "C"
