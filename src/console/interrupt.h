// Ctrl+C as a wish to stop, while something is done that must not be torn.
#pragma once

#include <csignal>

namespace bv::console {

// While it lives, an interrupt does not end the program but is remembered. One at a time.
class InterruptWatch {
  public:
    InterruptWatch();
    ~InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;

    [[nodiscard]] static bool WasInterrupted();

  private:
    using Handler = void (*)(int);
    Handler before_;
};

} // namespace bv::console
