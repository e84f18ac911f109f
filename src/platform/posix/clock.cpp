#include "platform/clock.h"

#include <chrono>
#include <ctime>
#include <thread>

namespace bv::platform {

namespace {

template <class TimePoint>
std::int64_t Milliseconds(TimePoint time) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

class PosixClock final : public Clock {
  public:
    std::int64_t Now() override { return Milliseconds(std::chrono::system_clock::now()); }
    // The coarse clock, right to a few milliseconds: it is asked after every block of a copy.
    std::int64_t Ticks() override {
        timespec time{};
        clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
        return std::int64_t{time.tv_sec} * 1000 + time.tv_nsec / 1'000'000;
    }
    void Sleep(std::int64_t milliseconds) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }
};

} // namespace

template <>
Clock& Service<Clock>::System() {
    static PosixClock clock;
    return clock;
}

} // namespace bv::platform
