#include "dialogs/password_field_dlg.h"

#include <optional>
#include <utility>

#include "ctlfile/key_fields.h"
#include "ctlfile/scramble.h"
#include "dialogs/dialog_dlg.h"

namespace bv {
namespace {

constexpr ValueRule kRule{ValueRule::Form::ScrambledPassword};

} // namespace

void PasswordField::Begin(HWND dialog, int control, std::string stored) {
    dialog_ = dialog;
    control_ = control;
    stored_ = taken_ = std::move(stored);
    takenText_ = ShownText(kRule, stored_);
    SendDlgItemMessageA(dialog, control, EM_LIMITTEXT, kMaxPassword, 0);
    SetText(dialog, control, takenText_);
}

bool PasswordField::Take(std::string& stored) {
    std::string text;
    if (!TakeText(dialog_, control_, text)) return false;
    if (text != takenText_) {
        const std::optional<std::string> taken = TextToStore("Password", kRule, text, stored_);
        if (!taken) {
            FocusControl(dialog_, control_);
            return false;
        }
        takenText_ = text;
        taken_ = *taken;
    }
    stored = taken_;
    return true;
}

} // namespace bv
