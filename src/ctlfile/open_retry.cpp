#include "ctlfile/open_retry.h"

#include <algorithm>
#include <cstdint>

#include "platform/ascii.h"
#include "platform/clock.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::int64_t kLongestPause = 32; // milliseconds between two tries
constexpr std::int64_t kUnsaid = 500;      // milliseconds that a wait takes before the file is named

SharedPatience* sharedPatience = nullptr;

platform::FileError ErrorOf(const platform::OpenResult& result) { return result.Error; }
platform::FileError ErrorOf(platform::FileError error) { return error; }

// Tries again while it is refused as access-denied, until the seconds have passed.
template <class Try>
auto UntilAllowed(const std::string& path, int seconds, const Try& attempt) {
    platform::Clock& clock = platform::TheClock();
    if (sharedPatience != nullptr) seconds = sharedPatience->Left(path, seconds);
    const std::int64_t end = clock.Ticks() + std::int64_t{seconds} * 1000;
    FileWait wait(path);
    for (std::int64_t pause = 1;; pause = std::min(pause * 2, kLongestPause)) {
        auto result = attempt();
        if (ErrorOf(result) != platform::FileError::AccessDenied) return result;
        if (clock.Ticks() >= end) {
            if (sharedPatience != nullptr) sharedPatience->WearOut(path);
            return result;
        }
        wait.Pause(pause);
    }
}

} // namespace

FileWait::~FileWait() {
    if (begin_) CurrentFront().ShowWait(WaitState::Ends, said_);
}

void FileWait::Pause(std::int64_t milliseconds) {
    platform::Clock& clock = platform::TheClock();
    if (!begin_) {
        begin_ = clock.Ticks();
        CurrentFront().ShowWait(WaitState::Begins, "");
    } else if (said_.empty() && clock.Ticks() - *begin_ >= kUnsaid) {
        said_ = FillMessage(kWaitingForFile, path_);
        CurrentFront().ShowWait(WaitState::Lasts, said_);
    }
    YieldToSystem();
    clock.Sleep(milliseconds);
}

SharedPatience::SharedPatience(int seconds) : isOutermost_(sharedPatience == nullptr), seconds_(seconds) {
    if (isOutermost_) sharedPatience = this;
}
SharedPatience::~SharedPatience() {
    if (isOutermost_) sharedPatience = nullptr;
}

int SharedPatience::Left(const std::string& path, int seconds) const {
    const auto isIt = [&](const std::string& worn) { return EqualFolded(worn, path); };
    return std::ranges::any_of(worn_, isIt) ? 0 : std::min(seconds, seconds_);
}

platform::OpenResult OpenRetrying(const std::string& path, const platform::OpenRequest& request, int seconds) {
    return UntilAllowed(path, seconds, [&] { return platform::Files().Open(path, request); });
}

platform::FileError DeleteRetrying(const std::string& path, int seconds) {
    return UntilAllowed(path, seconds, [&] { return platform::Files().Delete(path); });
}

} // namespace bv
