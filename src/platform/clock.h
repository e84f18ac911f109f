// Time and waiting.
#pragma once

#include <cstdint>

#include "platform/service.h"

namespace bv::platform {

class Clock {
  public:
    virtual ~Clock() = default;

    // Milliseconds since 1970 in universal time.
    virtual std::int64_t Now() = 0;

    // Milliseconds since some fixed moment; never set back. For time-outs.
    virtual std::int64_t Ticks() = 0;

    virtual void Sleep(std::int64_t milliseconds) = 0;
};

template <>
Clock& Service<Clock>::System();

inline Clock& TheClock() { return Service<Clock>::InUse(); }

} // namespace bv::platform
