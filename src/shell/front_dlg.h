// The Windows program's way of speaking: boxes over the dialog in front, the banner's status lines, and the wait for a
// program that was started.
#pragma once

#include <windows.h>

#include <string>

#include "shell/main_window_dlg.h"
#include "voice/front.h"

namespace bv {

class WindowsFront : public Front {
  public:
    // The window need not be open yet: boxes have no owner then.
    explicit WindowsFront(MainWindow& window);
    ~WindowsFront() override;
    WindowsFront(const WindowsFront&) = delete;
    WindowsFront& operator=(const WindowsFront&) = delete;

    void SetStatusLine(int line, const std::string& text) override;
    void ShowBox(const Box& box) override;
    bool Ask(const Box& box) override;
    void EnableInput(bool enabled) override;
    void ShowWaitCursor(bool wait) override;
    void ShowWait(WaitState state, const std::string& text) override;
    bool WaitForEnd(platform::Process& program) override;
    void PeekMessages() override;

  private:
    int OpenBox(const Box& box, UINT buttons) const;
    void CheckProgram();

    MainWindow& window_;
    platform::Process* watched_ = nullptr;
    HCURSOR cursor_ = nullptr; // the one before the wait cursor
    int waits_ = 0;            // that the wait cursor is shown for
    HWND disabled_ = nullptr;  // the window that takes no input at present
    HWND focus_ = nullptr;     // the control in it that had the focus
    bool hasWaited_ = false;
};

} // namespace bv
