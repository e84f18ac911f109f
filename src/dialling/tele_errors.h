// What the telephony library's results mean, in words.
#pragma once

#include <cstdint>

namespace bv {

// Reports "TAPI reports '%s'" with the text of an error at the severity (see ReportMessage; 1 and 2 show nothing).
// 0 is no error and reports nothing; a result that is no known error is "Unknown/unspecified error".
void TAPIErrorText(std::int32_t result, int severity);

} // namespace bv
