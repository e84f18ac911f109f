// A field for a directory: typed, picked from the system's dialog behind one button, or the default by another one.
#pragma once

#include <windows.h>

#include <string>

#include "dialogs/dialog_dlg.h"

namespace bv {

class DirectoryField : public DialogPart {
  public:
    // Takes up an edit control of a dialog that is being filled, the button after it, and, when there is a default, the
    // one after that.
    void Begin(HWND dialog, int edit, const char* title, std::string standard);

    bool Answer(const DialogMessage& message, INT_PTR& result) override;

  private:
    HWND dialog_ = nullptr;
    int edit_ = 0;
    const char* title_ = nullptr;
    std::string standard_;
};

} // namespace bv
