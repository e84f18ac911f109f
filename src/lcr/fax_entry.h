// What a person says of a fax that rules are to be matched with, and of the times at which faxes may be sent.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lcr/rule_match.h"
#include "lcr/rule_references.h"

namespace bv {

// As it is given; what is not given is not known of the fax.
struct FaxDescription {
    std::optional<std::string> Destination; // a region, a reference in either form, or a number
    std::optional<std::string> User;
    std::optional<std::string> Server;
    std::optional<std::string> Priority; // words, as of a rule
    std::optional<std::string> Pages;    // 0 to 65535
};

// Fills in what is given of the fax. False after a message: 9185 for a name that is not defined, 9382 for a destination
// that is none, what EnterNumber says, or what says why another value is none.
bool DescribeFax(const FaxDescription& given, const RuleNames& names, RuleFilter& fax);

// The range of "OFFPEAK", which is the server's own period, or of words of time as of a rule. None after 9186 or 9187.
std::optional<TimeRange> EnterTimeRange(std::string_view words);

// A moment of the form "YYYY-MM-DD hh:mm"; none, after 9188, for any other text, and for a day that no calendar has.
std::optional<CalendarTime> EnterMoment(std::string_view text);
std::string MomentText(const CalendarTime& moment);

} // namespace bv
