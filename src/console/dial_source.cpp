#include "console/dial_source.h"

#include "console/console.h"
#include "voice/messages.h"

namespace bv::console {

bool IsUsable(StatusCode status) { return status == kDone || status == kNumbersNotEdited; }

int RefuseStatus(StatusCode status, const std::string& path) {
    ShowError(status == kKeyMissing ? 9102 : 413, path);
    return kExitRefused;
}

int LoadDialProperties() {
    const std::string path = DiallingFileToRead();
    const StatusCode status = ReadDiallingProperties(path);
    return IsUsable(status) ? kExitDone : RefuseStatus(status, path);
}

// There may be no line device, so the version is agreed on without one.
TelephonyUse::TelephonyUse() : opened_(TAPIInit("BVCTL", nullptr, TapiNegotiation::Test)) {}

TelephonyUse::~TelephonyUse() { TAPITerm(); }

StatusCode TelephonyUse::Read(DialProperties* properties, const std::string& countryFile) const {
    return opened_ == kDone ? TAPIGetDialProps(properties, countryFile) : opened_;
}

} // namespace bv::console
