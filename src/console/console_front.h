// The engine's messages on a console.
#pragma once

#include <string>

#include "console/console.h"
#include "voice/front.h"

namespace bv::console {

// How a question is answered.
enum class Answering {
    ByPerson, // asked on a terminal; No where there is none
    Yes,
    No,
};

// Prints status texts, boxes and questions as plain lines of standard error, without captions.
class ConsoleFront : public Front {
  public:
    ConsoleFront(Console& console, Answering answering) : console_(console), answering_(answering) {}

    // From here on prints no status texts and answers Yes: nothing that they speak of happens.
    void Rehearse();

    // Whether a question is more than a No: there is a person to answer it, or Yes has been said beforehand.
    [[nodiscard]] bool CanAsk() const { return answering_ == Answering::Yes || console_.IsTerminal(); }

    // Whether the texts of status line 1 are printed. The others are no news of what is being done, and always are.
    void SetStatusShown(bool shown) { showsStatus_ = shown; }

    // The latest text of status line 1.
    [[nodiscard]] const std::string& LastStatus() const { return lastStatus_; }

    void SetStatusLine(int line, const std::string& text) override;
    void ShowBox(const Box& box) override;
    bool Ask(const Box& box) override;
    void EnableInput(bool) override {}
    void ShowWaitCursor(bool) override {}
    void ShowWait(WaitState state, const std::string& text) override;
    bool WaitForEnd(platform::Process& program) override;
    void PeekMessages() override {}

  private:
    Console& console_;
    Answering answering_;
    bool showsStatus_ = true;
    std::string lastStatus_;
};

} // namespace bv::console
