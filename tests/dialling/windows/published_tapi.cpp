// Holds tele_interface.h to the system's own header of the telephony: sizes, places and values.
#define TAPI_CURRENT_VERSION 0x00010004
#include <windows.h>

#include <tapi.h>

#include "dialling/tele_interface.h"

namespace bv::telephony {
namespace {

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

} // namespace
} // namespace bv::telephony
