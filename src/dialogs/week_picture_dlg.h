// A picture of a week, from Monday to Sunday, with its hours from left to right and the times in it hatched; and the
// same in words.
#pragma once

#include <windows.h>

#include <optional>

#include "dialogs/dialog_dlg.h"
#include "lcr/week_mask.h"

namespace bv {

class WeekPicture : public DialogPart {
  public:
    // Takes up the controls of a dialog that is being filled: an owner-drawn static one, whose text are the words then,
    // too, and a read-only edit control.
    void Begin(HWND dialog, int picture, int words);

    // Without a week, that it is not known.
    void Show(const std::optional<WeekMask>& week);

    bool Answer(const DialogMessage& message, INT_PTR& result) override;

  private:
    HWND dialog_ = nullptr;
    int picture_ = 0;
    int words_ = 0;
    std::optional<WeekMask> week_;
};

} // namespace bv
