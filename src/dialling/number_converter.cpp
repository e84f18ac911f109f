#include "dialling/number_converter.h"

#include "dialling/dialling_messages.h"
#include "shell/server_files.h"
#include "voice/messages.h"

namespace bv {

bool LoadDialProperties() {
    const std::string path = DiallingFileToRead();
    const StatusCode status = ReadDiallingProperties(path);
    if (status == kDone || status == kNumbersNotEdited) return true;
    ShowError(status == kKeyMissing ? kNoSelectedLocation : kUnableToOpenFile, path);
    return false;
}

TelephonyUse::TelephonyUse(const std::string& application)
    : opened_(TAPIInit(application, nullptr, TapiNegotiation::Test)) {}

TelephonyUse::~TelephonyUse() { TAPITerm(); }

StatusCode TelephonyUse::Read(DialProperties* properties, const std::string& countryFile) const {
    return opened_ == kDone ? TAPIGetDialProps(properties, countryFile) : opened_;
}

bool NumberConverter::Load(const std::string& application) {
    telephony_.reset();
    if (!LoadDialProperties()) return false;
    if (GetDialProperties().Mode != kDialTelephony) return true;
    telephony_.emplace(application);
    if (const StatusCode status = telephony_->Read(nullptr, ""); status != kDone) {
        telephony_.reset();
        ShowWarning(kNoFileProperties, TapiFailureText(status));
    }
    return true;
}

StatusCode NumberConverter::Convert(NumberForm form, std::string_view number, TelephoneNumber& result,
                                    NumberTrace* trace) const {
    const bool isDialable = form == NumberForm::Dialable;
    if (!telephony_)
        return isDialable ? MakeDialableNumber(number, result, trace) : MakeInternationalNumber(number, result, trace);
    // By this file the telephony tells a local number from others.
    const std::string countries = PathOf(ServerFile::Countries);
    return isDialable ? TAPIMakeDialable(number, result, countries, trace)
                      : TAPIMakeInternational(number, result, countries, trace);
}

std::string FaultOfNumber(std::string_view number, StatusCode status) {
    if (status == kNumberTooLong)
        return FormatText("NUMBER: \"%s\" has, or would have, over %d characters", number, kMaxTelephoneNumber);
    return FormatText("NUMBER: \"%s\" - the telephony service does not translate it", number);
}

} // namespace bv
