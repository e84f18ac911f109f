// The face that the engine speaks through: the Windows program, the console companion or a test.
#pragma once

#include <string>

#include "platform/processes.h"

namespace bv {

enum class BoxIcon { Warning, Error, Question };
enum class BoxButtons { YesNo, OkCancel }; // of a question

// A message box, or the lines that a console prints for one.
struct Box {
    std::string Caption;
    std::string Text;
    BoxIcon Icon = BoxIcon::Error;
    BoxButtons Buttons = BoxButtons::YesNo;
    bool NeedsOwnYes = false; // no Yes that was given beforehand, to all questions, answers it
};

// Of a file that another program holds.
enum class WaitState { Begins, Lasts, Ends };

class Front {
  public:
    virtual ~Front() = default;

    // Shows a text of at most 200 characters in status line 1, 2 or 3.
    virtual void SetStatusLine(int line, const std::string& text) = 0;

    // Shows the box with OK and returns when it is closed.
    virtual void ShowBox(const Box& box) = 0;

    // Shows the box with its two buttons, No or Cancel the default; true for Yes or OK.
    virtual bool Ask(const Box& box) = 0;

    // While a program is started or awaited, the window in front takes no input.
    virtual void EnableInput(bool enabled) = 0;

    virtual void ShowWaitCursor(bool wait) = 0;

    // A file is waited for: as soon as that begins, with a text once it has taken half a second, and with that text,
    // or none, when it is over. A wait that begins ends.
    virtual void ShowWait(WaitState, const std::string&) {}

    // Keeps the interface alive until the program has ended, then comes to the foreground. False when no
    // timer could be had, and so the wait was not begun.
    virtual bool WaitForEnd(platform::Process& program) = 0;

    // Lets the system see that the program is alive.
    virtual void PeekMessages() = 0;
};

// Installs a front for this thread while it lives, then the one before. Without any, messages go nowhere and
// questions are answered No.
class UseFront {
  public:
    explicit UseFront(Front& front);
    ~UseFront();
    UseFront(const UseFront&) = delete;
    UseFront& operator=(const UseFront&) = delete;

  private:
    Front* before_;
};

Front& CurrentFront();

} // namespace bv
