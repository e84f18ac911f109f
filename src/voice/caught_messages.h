// What the engine would say, kept instead of shown: of something that is only tried.
#pragma once

#include <string>
#include <utility>

#include "voice/front.h"

namespace bv {

// Installed as the front while it lives. Questions are answered Yes.
class CaughtMessages final : public Front {
  public:
    // The last box since the last call; empty when there was none.
    std::string TakeLast() { return std::exchange(last_, {}); }

    void SetStatusLine(int, const std::string&) override {}
    void ShowBox(const Box& box) override { last_ = box.Text; }
    bool Ask(const Box&) override { return true; }
    void EnableInput(bool) override {}
    void ShowWaitCursor(bool) override {}
    bool WaitForEnd(platform::Process&) override { return false; }
    void PeekMessages() override {}

  private:
    std::string last_;
    UseFront use_{*this};
};

} // namespace bv
