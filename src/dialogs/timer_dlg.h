// Work that waits for the person: done a while after the last key, or in slices while nothing else is to be done.
#pragma once

#include <windows.h>

#include <functional>
#include <utility>

#include "dialogs/dialog_dlg.h"

namespace bv {

class Timer : public DialogPart {
  public:
    // Takes up the dialog. The work says whether it wants to be done again after the same time.
    void Begin(HWND dialog, std::function<bool()> work) {
        dialog_ = dialog;
        work_ = std::move(work);
        TakeUp(dialog, *this);
    }

    // Has it done so many milliseconds from now, and not before, whatever was asked for until now.
    void Start(UINT milliseconds) { SetTimer(dialog_, Id(), milliseconds, nullptr); }
    void Stop() { KillTimer(dialog_, Id()); }

    bool Answer(const DialogMessage& message, INT_PTR&) override {
        if (message.Number != WM_TIMER || message.WParam != Id()) return false;
        if (!work_()) Stop();
        return true;
    }

  private:
    [[nodiscard]] UINT_PTR Id() const { return reinterpret_cast<UINT_PTR>(this); }

    HWND dialog_ = nullptr;
    std::function<bool()> work_;
};

} // namespace bv
