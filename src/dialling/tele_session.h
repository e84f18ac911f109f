// What the process holds of the system's telephony: the session, and the location and country rules last read.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ctlfile/fixed_text.h"
#include "dialling/dial_properties.h"
#include "dialling/tele_interface.h"
#include "dialling/telephony.h"
#include "platform/libraries.h"
#include "voice/messages.h"

namespace bv {

struct TapiSession {
    bool Initialised = false;
    std::unique_ptr<platform::Library> Library;
    telephony::LineApp Line = 0;
    std::uint32_t Version = 0; // 0 when none has been agreed on
    std::uint32_t CurrentLocationID = 0;
    std::uint32_t LocationCount = 0;
    telephony::Entries Entries;
};

struct TapiLocation {
    std::uint32_t PermanentID = 0;
    std::uint32_t CountryID = 0;
    FixedText<10> CountryCode; // decimal
    FixedText<100> Name;
    DialPrefix CityCode;
    DialPrefix LocalAccessCode; // for an outside line
    DialPrefix LongDistanceAccessCode;
    std::string TollPrefixes; // parted by commas
};

// In a rule "E" stands for the country code, "F" for the area code and "G" for the local number.
using DialRule = FixedText<20>;

struct TapiCountryRules {
    FixedText<10> CountryCode;
    FixedText<100> CountryName;
    DialRule SameArea;
    DialRule LongDistance;
    DialRule International;
};

struct TapiState {
    TapiSession Session;
    TapiLocation Location;
    TapiCountryRules Country;
};

// The process's one state.
TapiState& Tapi();

// Severities of ReportMessage: what is traced is shown to nobody.
inline constexpr int kTapiTrace = 1;
inline constexpr int kTapiNote = 2;
inline constexpr int kTapiFault = 3;
inline constexpr int kTapiGrave = 5;

template <class... Values>
void TraceTapi(const MessageWith<sizeof...(Values)>& text, const Values&... values) {
    ReportMessage(kTapiTrace, text, values...);
}

// 0 in a session with a handle and that entry; kTapiNotInitialised or kTapiUnavailable else.
template <class Entry>
StatusCode CheckTapi(Entry telephony::Entries::*entry) {
    const TapiSession& session = Tapi().Session;
    if (!session.Initialised) return kTapiNotInitialised;
    return session.Line != 0 && session.Entries.*entry != nullptr ? kDone : kTapiUnavailable;
}

} // namespace bv
