// The person at the process's standard streams.
#pragma once

#include <memory>

namespace bv::platform {

// Whether standard input and standard error are both a terminal, so that a question can be asked and answered.
bool IsTerminal();

// While it lives, what is typed on standard input is not shown; without effect where that is no terminal.
class HiddenTyping {
  public:
    HiddenTyping();
    ~HiddenTyping();
    HiddenTyping(const HiddenTyping&) = delete;
    HiddenTyping& operator=(const HiddenTyping&) = delete;

  private:
    struct Mode;
    std::unique_ptr<Mode> before_; // none: nothing to restore
};

} // namespace bv::platform
