// Where the dialling commands take the dialling properties from: the file, and the system's telephony.
#pragma once

#include <string>

#include "dialling/dialling_file.h"
#include "dialling/telephony.h"

namespace bv::console {

// Whether a reading of the file gave properties to work with; they are empty when numbers are not to be edited.
bool IsUsable(StatusCode status);

// Says why a reading of the file did not; returns the exit status.
int RefuseStatus(StatusCode status, const std::string& path);

// Loads the process's properties from the file; 0, or the exit status after saying why not.
int LoadDialProperties();

// The system's telephony, asked while this lives.
class TelephonyUse {
  public:
    TelephonyUse();
    ~TelephonyUse();
    TelephonyUse(const TelephonyUse&) = delete;
    TelephonyUse& operator=(const TelephonyUse&) = delete;

    // The properties of the telephony's current location; a status of telephony.h. By the country file they tell a
    // local number from others.
    StatusCode Read(DialProperties* properties, const std::string& countryFile) const;

  private:
    StatusCode opened_;
};

} // namespace bv::console
