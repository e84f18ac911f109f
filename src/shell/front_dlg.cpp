#include "shell/front_dlg.h"

#include "dialogs/dialog_dlg.h"
#include "dialogs/status_dlg.h"

namespace bv {
namespace {

constexpr UINT kWatchInterval = 500; // milliseconds

UINT IconStyle(BoxIcon icon) {
    switch (icon) {
    case BoxIcon::Warning: return MB_ICONEXCLAMATION;
    case BoxIcon::Question: return MB_ICONQUESTION;
    default: return MB_ICONHAND;
    }
}

void Dispatch(const MSG& message) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

} // namespace

WindowsFront::WindowsFront(MainWindow& window) : window_(window) {
    window_.OnWatchTimer = [this] { CheckProgram(); };
}

WindowsFront::~WindowsFront() { window_.OnWatchTimer = nullptr; }

void WindowsFront::SetStatusLine(int line, const std::string& text) {
    window_.SetStatusLine(line, text);
    if (!ShowStatusInDialogs(line, text)) window_.Say(text);
}

int WindowsFront::OpenBox(const Box& box, UINT buttons) const {
    const KeepFocus focus;
    const HWND owner = window_.Handle() != nullptr ? GetLastActivePopup(window_.Handle()) : nullptr;
    return MessageBoxA(owner, box.Text.c_str(), box.Caption.c_str(), MB_TASKMODAL | IconStyle(box.Icon) | buttons);
}

void WindowsFront::ShowBox(const Box& box) { OpenBox(box, MB_OK); }

bool WindowsFront::Ask(const Box& box) {
    if (box.Buttons == BoxButtons::OkCancel) return OpenBox(box, MB_OKCANCEL | MB_DEFBUTTON2) == IDOK;
    return OpenBox(box, MB_YESNO | MB_DEFBUTTON2) == IDYES;
}

void WindowsFront::EnableInput(bool enabled) {
    if (!enabled) {
        disabled_ = GetActiveWindow();
        focus_ = GetFocus();
        hasWaited_ = false;
        EnableWindow(disabled_, FALSE);
        return;
    }
    if (!IsWindow(disabled_)) return;
    EnableWindow(disabled_, TRUE);
    if (hasWaited_)
        SetForegroundWindow(disabled_);
    else
        SetActiveWindow(disabled_);
    if (IsWindow(focus_)) SetFocus(focus_);
    disabled_ = nullptr;
}

void WindowsFront::ShowWaitCursor(bool wait) {
    if (wait && waits_++ == 0)
        cursor_ = SetCursor(LoadCursor(nullptr, IDC_WAIT));
    else if (!wait && waits_ > 0 && --waits_ == 0)
        SetCursor(cursor_);
}

void WindowsFront::ShowWait(WaitState state, const std::string& text) {
    if (state != WaitState::Lasts) ShowWaitCursor(state == WaitState::Begins);
    if (!text.empty()) SetStatusLine(2, state == WaitState::Lasts ? text : "");
}

bool WindowsFront::WaitForEnd(platform::Process& program) {
    const HWND window = window_.Handle();
    if (window == nullptr || SetTimer(window, kWatchTimer, kWatchInterval, nullptr) == 0) return false;
    watched_ = &program;
    while (watched_ != nullptr) {
        MSG message;
        if (GetMessageA(&message, nullptr, 0, 0) > 0) {
            Dispatch(message);
        } else {
            watched_ = nullptr;
            EndProgram(static_cast<int>(message.wParam)); // every loop further out sees the quit message too
        }
    }
    KillTimer(window, kWatchTimer);
    hasWaited_ = true;
    return true;
}

void WindowsFront::CheckProgram() {
    if (watched_ != nullptr && !watched_->IsRunning()) watched_ = nullptr;
}

void WindowsFront::PeekMessages() {
    MSG message;
    PeekMessageA(&message, window_.Handle(), WM_QUIT, WM_QUIT, PM_NOREMOVE);
}

} // namespace bv
