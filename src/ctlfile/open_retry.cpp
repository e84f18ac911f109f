#include "ctlfile/open_retry.h"

#include <algorithm>
#include <cstdint>

#include "platform/clock.h"
#include "shell/messages.h"

namespace bv {
namespace {

constexpr std::int64_t kLongestPause = 32; // milliseconds between two tries

} // namespace

platform::OpenResult OpenRetrying(const std::string& path, const platform::OpenRequest& request, int seconds) {
    platform::Clock& clock = platform::TheClock();
    const std::int64_t end = clock.Ticks() + std::int64_t{seconds} * 1000;
    for (std::int64_t pause = 1;; pause = std::min(pause * 2, kLongestPause)) {
        platform::OpenResult result = platform::Files().Open(path, request);
        if (result.Error != platform::FileError::AccessDenied || clock.Ticks() >= end) return result;
        YieldToSystem();
        clock.Sleep(pause);
    }
}

} // namespace bv
