#include "dialogs/progress_dlg.h"

#include <commctrl.h>

#include "dialogs/dialog_dlg.h"
#include "resources/ids.h"

namespace bv {
namespace {

constexpr int kNoHelp = 0;

} // namespace

ProgressBox::ProgressBox(HWND owner, int total) : owner_(owner), state_{false, total} {
    dialog_ = CreatePlannedDialog(opened_, owner, Procedure);
    ShowWindow(dialog_, SW_SHOW);
    EnableWindow(owner_, FALSE);
    Pump();
}

ProgressBox::~ProgressBox() {
    EnableWindow(owner_, TRUE); // first, so that the owner and no other program's window comes to the front
    DestroyWindow(dialog_);
}

bool ProgressBox::Advance(int done, const std::string& count, const std::string& name) {
    SetText(dialog_, ID_PROGRESS_COUNT, count);
    SetText(dialog_, ID_PROGRESS_NAME, name);
    SendDlgItemMessageA(dialog_, ID_PROGRESS_BAR, PBM_SETPOS, static_cast<WPARAM>(done), 0);
    return GoOn();
}

bool ProgressBox::GoOn() {
    Pump();
    return !state_.Cancelled;
}

void ProgressBox::Fill(HWND dialog, State& state) {
    SendDlgItemMessageA(dialog, ID_PROGRESS_BAR, PBM_SETRANGE32, 0, state.Total);
}

void ProgressBox::Cancel(HWND dialog, State& state) {
    state.Cancelled = true;
    EnableControl(dialog, IDCANCEL, false);
}

INT_PTR CALLBACK ProgressBox::Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    static constexpr DialogCommand<State> kCommands[] = {{IDCANCEL, BN_CLICKED, Cancel}};
    static constexpr DialogPlan<State> kPlan{kNoHelp, Fill, kCommands};
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

// Cancel has the focus, as there is nothing else. Keys that press a button are passed over for a second: they were
// typed at what was in front before.
bool ProgressBox::IsMeantForAnother(const MSG& message) const {
    constexpr DWORD kGrace = 1000; // milliseconds
    const bool presses = message.message == WM_KEYDOWN && (message.wParam == VK_RETURN || message.wParam == VK_SPACE);
    return presses && GetTickCount() - openedAt_ < kGrace;
}

void ProgressBox::Pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            state_.Cancelled = true;
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        if (IsMeantForAnother(message) || IsDialogMessageW(dialog_, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

} // namespace bv
