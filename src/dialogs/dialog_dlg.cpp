#include "dialogs/dialog_dlg.h"

#include "dialogs/colours_dlg.h"
#include "dialogs/help_dlg.h"
#include "resources/ids.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr INT_PTR kKeyTaken = -2;
constexpr INT_PTR kKeyForList = -1;

HINSTANCE Instance() { return GetModuleHandleA(nullptr); }

bool IsHelpCommand(const DialogMessage& message) {
    return message.Number == WM_HELP || (message.Number == WM_COMMAND && LOWORD(message.WParam) == ID_HELP_BUTTON);
}

} // namespace

bool ReadCommand(const DialogMessage& message, CommandCode& code) {
    if (message.Number == WM_COMMAND) {
        code = {LOWORD(message.WParam), HIWORD(message.WParam)};
        return true;
    }
    if (message.Number == WM_VKEYTOITEM && LOWORD(message.WParam) == VK_DELETE) {
        code = {GetDlgCtrlID(reinterpret_cast<HWND>(message.LParam)), kDeleteKey};
        return true;
    }
    return false;
}

void* ContextOf(HWND dialog) { return reinterpret_cast<void*>(GetWindowLongPtrA(dialog, DWLP_USER)); }

INT_PTR BeginDialog(HWND dialog, void* context) {
    SetWindowLongPtrA(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(context));
    CentreWindow(dialog);
    const bool focusIsSet = IsChild(dialog, GetFocus());
    return focusIsSet ? FALSE : TRUE;
}

INT_PTR CommandDone(const DialogMessage& message) { return message.Number == WM_VKEYTOITEM ? kKeyTaken : TRUE; }

INT_PTR AnswerForAll(const DialogMessage& message, int helpContext) {
    if (IsHelpCommand(message)) {
        ShowHelp(message.Dialog, helpContext);
        return TRUE;
    }
    if (message.Number == WM_VKEYTOITEM) return kKeyForList;
    return ColourDialog(message);
}

INT_PTR OpenDialog(const char* templateName, HWND owner, DLGPROC procedure, void* context) {
    const INT_PTR result =
        DialogBoxParamA(Instance(), templateName, owner, procedure, reinterpret_cast<LPARAM>(context));
    return result > 0 ? result : IDCANCEL;
}

std::string GetText(HWND dialog, int control) {
    const HWND window = GetDlgItem(dialog, control);
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window)) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

void SetText(HWND dialog, int control, const std::string& text) { SetDlgItemTextA(dialog, control, text.c_str()); }

void EnableControl(HWND dialog, int control, bool enabled) {
    const HWND window = GetDlgItem(dialog, control);
    if (!enabled && GetFocus() == window) SendMessageA(dialog, WM_NEXTDLGCTL, 0, FALSE);
    EnableWindow(window, enabled);
}

void FocusControl(HWND dialog, int control) {
    // The dialog manager selects the text of the control that it moves the focus to.
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, control)), TRUE);
}

void CentreWindow(HWND window) {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    RECT place{};
    if (!GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor)) return;
    if (!GetWindowRect(window, &place)) return;
    const RECT& area = monitor.rcWork;
    const LONG left = area.left + ((area.right - area.left) - (place.right - place.left)) / 2;
    const LONG top = area.top + ((area.bottom - area.top) - (place.bottom - place.top)) / 2;
    SetWindowPos(window, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

KeepFocus::KeepFocus() : window_(GetFocus()) {}

KeepFocus::~KeepFocus() {
    if (IsWindow(window_) && IsWindowEnabled(window_)) SetFocus(window_);
}

WaitCursor::WaitCursor() { CurrentFront().ShowWaitCursor(true); }
WaitCursor::~WaitCursor() { CurrentFront().ShowWaitCursor(false); }

} // namespace bv
