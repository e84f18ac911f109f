#include "dialogs/directory_field_dlg.h"

#include "dialogs/pick_dlg.h"

namespace bv {

void DirectoryField::Begin(HWND dialog, int edit, const char* title, std::string standard) {
    dialog_ = dialog;
    edit_ = edit;
    title_ = title;
    standard_ = std::move(standard);
    TakeUp(dialog, *this);
}

bool DirectoryField::Answer(const DialogMessage& message, INT_PTR&) {
    if (message.Number != WM_COMMAND || HIWORD(message.WParam) != BN_CLICKED) return false;
    const int button = LOWORD(message.WParam) - edit_;
    if (button == 1) {
        const auto picked = PickDirectory(dialog_, title_, GetText(dialog_, edit_));
        if (picked) SetText(dialog_, edit_, *picked);
    }
    if (button == 2 && !standard_.empty()) SetText(dialog_, edit_, standard_);
    if (button != 1 && (button != 2 || standard_.empty())) return false;
    FocusControl(dialog_, edit_);
    return true;
}

} // namespace bv
