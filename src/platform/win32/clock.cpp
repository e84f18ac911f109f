#include "platform/clock.h"

#include <windows.h>

#include <algorithm>

namespace bv::platform {

namespace {

class WindowsClock final : public Clock {
  public:
    std::int64_t Now() override {
        constexpr std::int64_t kMillisecondsTo1970 = 11'644'473'600'000; // from 1601, in units of 100 ns
        FILETIME time{};
        GetSystemTimeAsFileTime(&time);
        const std::uint64_t units = (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
        return static_cast<std::int64_t>(units / 10'000) - kMillisecondsTo1970;
    }

    std::int64_t Ticks() override { return static_cast<std::int64_t>(GetTickCount64()); }

    void Sleep(std::int64_t milliseconds) override {
        ::Sleep(static_cast<DWORD>(std::clamp<std::int64_t>(milliseconds, 0, MAXLONG)));
    }
};

} // namespace

template <>
Clock& Service<Clock>::System() {
    static WindowsClock clock;
    return clock;
}

} // namespace bv::platform
