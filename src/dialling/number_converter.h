// Where the dialling properties come from: the server's file, or, where that says so, the system's telephony.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dialling/dialling_file.h"
#include "dialling/numbers.h"
#include "dialling/telephony.h"

namespace bv {

// Loads the process's properties from the file; they are empty where numbers are not to be edited. False after 9102 (no
// location) or 413.
bool LoadDialProperties();

// The system's telephony, asked while this lives. There may be no line device, so the version is agreed on without one.
class TelephonyUse {
  public:
    explicit TelephonyUse(const std::string& application);
    ~TelephonyUse();
    TelephonyUse(const TelephonyUse&) = delete;
    TelephonyUse& operator=(const TelephonyUse&) = delete;

    // The properties of the telephony's current location; a status of telephony.h.
    StatusCode Read(DialProperties* properties, const std::string& countryFile) const;

  private:
    StatusCode opened_;
};

// The two forms of a number.
enum class NumberForm { International, Dialable };

// Converts by the file's properties, or asks the telephony when the file leaves them to it. When that cannot be asked,
// a warning says so, and the file's properties serve, which are empty then.
class NumberConverter {
  public:
    // False when the properties cannot be loaded (LoadDialProperties).
    bool Load(const std::string& application);

    // A status of numbers.h or telephony.h. With a trace, adds the rules that were gone by.
    StatusCode Convert(NumberForm form, std::string_view number, TelephoneNumber& result,
                       NumberTrace* trace = nullptr) const;

  private:
    std::optional<TelephonyUse> telephony_;
};

// Why a number is not converted, in a sentence that names it.
std::string FaultOfNumber(std::string_view number, StatusCode status);

} // namespace bv
