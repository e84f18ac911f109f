// What all dialogs share: the wrapper that hands a dialog procedure its context, and the texts, states and focus of
// controls.
//
// A dialog is a plan: a help page, a function that fills the controls from the dialog's context, and a table of the
// commands with the function that does each. Its procedure is one call of FollowPlan. Help, F1, colours and the place
// on the screen are seen to here.
#pragma once

#include <windows.h>

#include <new>
#include <span>
#include <string>
#include <string_view>

#include "ctlfile/fixed_text.h"
#include "platform/program.h"

namespace bv {

// A message as a dialog procedure gets it.
struct DialogMessage {
    HWND Dialog;
    UINT Number;
    WPARAM WParam;
    LPARAM LParam;
};

// The notification of a list box with LBS_WANTKEYBOARDINPUT in which the Delete key was pressed.
inline constexpr int kDeleteKey = 0x7F00;

template <class Context>
struct DialogCommand {
    int Control;
    int Notification; // BN_CLICKED, LBN_SELCHANGE, kDeleteKey ...
    void (*Do)(HWND dialog, Context& context);
};

template <class Context>
struct DialogPlan {
    int HelpContext;
    void (*Fill)(HWND dialog, Context& context);
    std::span<const DialogCommand<Context>> Commands;
};

// The parts of FollowPlan that need no context type.
struct CommandCode {
    int Control;
    int Notification;
};
bool ReadCommand(const DialogMessage& message, CommandCode& code);
void* ContextOf(HWND dialog);
INT_PTR BeginDialog(HWND dialog, void* context);
INT_PTR CommandDone(const DialogMessage& message);
INT_PTR AnswerForAll(const DialogMessage& message, int helpContext);

template <class Context>
INT_PTR AnswerByPlan(const DialogPlan<Context>& plan, const DialogMessage& message) {
    if (message.Number == WM_INITDIALOG) {
        auto* context = reinterpret_cast<Context*>(message.LParam);
        plan.Fill(message.Dialog, *context);
        return BeginDialog(message.Dialog, context);
    }
    auto* context = static_cast<Context*>(ContextOf(message.Dialog));
    CommandCode code{};
    if (context != nullptr && ReadCommand(message, code)) {
        for (const DialogCommand<Context>& command : plan.Commands) {
            if (command.Control != code.Control || command.Notification != code.Notification) continue;
            command.Do(message.Dialog, *context);
            return CommandDone(message);
        }
    }
    return AnswerForAll(message, plan.HelpContext);
}

// A dialog procedure's whole body. Commands that arrive while the dialog is being filled are passed over. Memory that
// runs out ends the program here, when what the command had begun is undone: an exception does not get past Windows.
template <class Context>
INT_PTR FollowPlan(const DialogPlan<Context>& plan, const DialogMessage& message) {
    try {
        return AnswerByPlan(plan, message);
    } catch (const std::bad_alloc&) {
        platform::EndWithoutMemory();
    }
}

// Runs a modal dialog; its context must be what the procedure's plan expects. Returns what the dialog ended with, or
// IDCANCEL when there is no such template.
INT_PTR OpenDialog(const char* templateName, HWND owner, DLGPROC procedure, void* context);

// Ends with IDOK or IDCANCEL, for tables of commands.
template <class Context>
void EndWithOk(HWND dialog, Context&) {
    EndDialog(dialog, IDOK);
}
template <class Context>
void EndWithCancel(HWND dialog, Context&) {
    EndDialog(dialog, IDCANCEL);
}

std::string GetText(HWND dialog, int control);
void SetText(HWND dialog, int control, const std::string& text);

// Fills an edit control, which then takes no more characters than the field, and reads an edit control or a combo box.
template <std::size_t N>
void PutField(HWND dialog, int control, const FixedText<N>& text) {
    SendDlgItemMessageA(dialog, control, EM_LIMITTEXT, N, 0);
    SetText(dialog, control, text.String());
}
template <std::size_t N>
void TakeField(HWND dialog, int control, FixedText<N>& text) {
    text.Assign(GetText(dialog, control));
}

// A disabled control that has the focus hands it to the dialog's next one first.
void EnableControl(HWND dialog, int control, bool enabled);

// Moves the focus to a control and selects its text: the field that is wrong.
void FocusControl(HWND dialog, int control);

// Puts a window in the middle of its screen's work area.
void CentreWindow(HWND window);

// Remembers the window with the keyboard focus and gives the focus back at the end of its life, if that window is
// still there and enabled.
class KeepFocus {
  public:
    KeepFocus();
    ~KeepFocus();
    KeepFocus(const KeepFocus&) = delete;
    KeepFocus& operator=(const KeepFocus&) = delete;

  private:
    HWND window_;
};

// The wait cursor while it lives.
class WaitCursor {
  public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace bv
