// The progress of an operation that can take over a second.
#pragma once

#include <windows.h>

#include <string>

#include "dialogs/dialog_dlg.h"

namespace bv {

// A box over the owner with a count, a name, a bar and a Cancel button, open while this lives. The owner takes no input
// meanwhile.
class ProgressBox {
  public:
    ProgressBox(HWND owner, int total);
    ~ProgressBox();
    ProgressBox(const ProgressBox&) = delete;
    ProgressBox& operator=(const ProgressBox&) = delete;

    // Shows how many of the total are done, the count's text ("Adding 3 of 20 users") and the name at hand, and lets
    // the person's input take effect. False once Cancel was pressed or the program ends.
    bool Advance(int done, const std::string& count, const std::string& name);

    // The same with what is shown already.
    bool GoOn();

    [[nodiscard]] HWND Window() const { return dialog_; }

  private:
    struct State {
        bool Cancelled = false;
        int Total = 0;
    };
    static void Fill(HWND dialog, State& state);
    static void Cancel(HWND dialog, State& state);
    static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    void Pump();
    [[nodiscard]] bool IsMeantForAnother(const MSG& message) const;

    HWND owner_;
    State state_;
    OpenedDialog opened_{"PROGRESS_DLG", &state_};
    HWND dialog_ = nullptr;
    DWORD openedAt_ = GetTickCount();
};

} // namespace bv
