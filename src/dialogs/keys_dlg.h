// Keys of a whole dialog, wherever the focus is.
#pragma once

#include <windows.h>

#include <functional>
#include <utility>

#include "dialogs/dialog_dlg.h"

namespace bv {

class Keys : public DialogPart {
  public:
    // Takes up the dialog. The function says whether it has taken a key that goes down.
    using Taker = std::function<bool(const MSG& message)>;
    void Begin(HWND dialog, Taker taker) {
        taker_ = std::move(taker);
        bv::TakeUp(dialog, *this);
    }

    bool Answer(const DialogMessage&, INT_PTR&) override { return false; }
    bool TakeKey(const MSG& message) override {
        const bool isDown = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
        return isDown && taker_(message);
    }

  private:
    Taker taker_;
};

inline bool IsKeyDown(int key) { return GetKeyState(key) < 0; }

} // namespace bv
