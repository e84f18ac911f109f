// Openings and waiting, as the tests of this folder write them.
#pragma once

#include <functional>
#include <string>

#include "platform/clock.h"
#include "platform/files.h"

namespace bv::test {

using platform::Access;
using platform::Creation;
using platform::Deny;
using platform::FileError;

// The six ways to open an existing file, in the order of the rows and columns of kSharing.
struct Sharing {
    const char* Access;
    const char* Denial;
    platform::OpenRequest Request;
};
inline const Sharing kOpenings[] = {
    {"r", "-", {Access::Read, Deny::Nothing}},           {"r", "w", {Access::Read, Deny::Writing}},
    {"r", "x", {Access::Read, Deny::ReadingAndWriting}}, {"w", "-", {Access::ReadWrite, Deny::Nothing}},
    {"w", "w", {Access::ReadWrite, Deny::Writing}},      {"w", "x", {Access::ReadWrite, Deny::ReadingAndWriting}},
};

// A row for each opening that holds the file, "+" where the opening of the column may join it.
inline constexpr const char* kSharing[] = {
    "++-++-", // reads
    "++----", // reads, denies writing
    "------", // reads, denies both
    "+--+--", // reads and writes
    "+-----", // reads and writes, denies writing
    "------", // reads and writes, denies both
};

// "+" for each of the six ways in which the file can be opened at this moment, "-" where access is denied.
inline std::string TryAllOpenings(platform::FileSystem& files, const std::string& path) {
    std::string outcomes;
    for (const Sharing& sharing : kOpenings) {
        const platform::OpenResult result = files.Open(path, sharing.Request);
        outcomes += result.Opened ? '+' : result.Error == FileError::AccessDenied ? '-' : '?';
    }
    return outcomes;
}

// Waits until the condition holds; false when it has not after some seconds.
inline bool WaitUntil(const std::function<bool()>& condition) {
    const std::int64_t end = platform::TheClock().Ticks() + 20'000;
    while (!condition()) {
        if (platform::TheClock().Ticks() > end) return false;
        platform::TheClock().Sleep(2);
    }
    return true;
}

} // namespace bv::test
