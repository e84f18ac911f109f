// Status codes of file and start-up operations: 16-bit, negative, 0 for success.
#pragma once

#include <cstdint>

namespace bv {

using StatusCode = std::int16_t;

inline constexpr StatusCode kDone = 0;
inline constexpr StatusCode kSetupFileUnreadable = -4058; // the server's SETUP.INI could not be opened
inline constexpr StatusCode kKeyMissing = -4059;          // a required key or paragraph is missing
inline constexpr StatusCode kParagraphMissing = -4071;    // no server paragraph in the initialisation file
inline constexpr StatusCode kIniFileNotFound = -4072;     // initialisation file not on the search list
inline constexpr StatusCode kFileFailed = -4084;          // a file that cannot be opened, copied or changed

} // namespace bv
