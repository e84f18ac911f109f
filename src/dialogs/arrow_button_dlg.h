// Buttons with a bitmap of two colours, which takes those of the system and the dialog's resolution. Their words stay
// what screen readers say.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "dialogs/dialog_dlg.h"

namespace bv {

class ArrowButtons : public DialogPart {
  public:
    ArrowButtons() = default;
    ~ArrowButtons() override;
    ArrowButtons(const ArrowButtons&) = delete;
    ArrowButtons& operator=(const ArrowButtons&) = delete;

    struct Button {
        int Control;         // of the style BS_ICON, which keeps the ground free
        const char* Picture; // a bitmap of two colours, the resource of that name
    };

    // Takes up the buttons of a dialog that is being filled.
    void Begin(HWND dialog, const std::vector<Button>& buttons);

    bool Answer(const DialogMessage& message, INT_PTR& result) override;
    void Rescale(int dpi) override;

  private:
    void Show(int dpi);
    void Free();

    HWND dialog_ = nullptr;
    int dpi_ = USER_DEFAULT_SCREEN_DPI;
    std::vector<Button> buttons_;
    std::vector<HICON> pictures_;
};

} // namespace bv
