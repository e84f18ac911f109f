// What all dialogs share: the wrapper that hands a dialog procedure its context, and the texts, states and focus of
// controls.
//
// A dialog is a plan: a help page, a function that fills the controls from the dialog's context, and a table of the
// commands with the function that does each. Its procedure is one call of FollowPlan. Font, help, F1, colours, size and
// the place on the screen are seen to here. What a control needs beyond commands is a part (DialogPart), which a dialog
// takes up when it is filled.
#pragma once

#include <windows.h>

#include <algorithm>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/fixed_text.h"
#include "dialogs/font_dlg.h"
#include "dialogs/icon_dlg.h"
#include "dialogs/layout_dlg.h"
#include "platform/program.h"
#include "shell/server_files.h"

namespace bv {

// A message as a dialog procedure gets it.
struct DialogMessage {
    HWND Dialog;
    UINT Number;
    WPARAM WParam;
    LPARAM LParam;
};

template <class Context>
struct DialogCommand {
    int Control;
    int Notification; // BN_CLICKED, CBN_SELCHANGE, kListOpen ...
    void (*Do)(HWND dialog, Context& context);
};

template <class Context>
struct DialogPlan {
    int HelpContext;
    void (*Fill)(HWND dialog, Context& context);
    std::span<const DialogCommand<Context>> Commands;
    std::span<const Anchor> Anchors = {};                             // of a dialog that can be resized
    void (*Activated)(HWND dialog, Context& context) = nullptr;       // it has come to the front again
    bool (*IsChanged)(HWND dialog, const Context& context) = nullptr; // to cancel then asks 5331 first
};

// A control's behaviour. It sees each message of its dialog, from the moment it is taken up, before the plan's
// commands.
class DialogPart {
  public:
    virtual ~DialogPart() = default;

    // True when it has answered the message, with the dialog procedure's result.
    virtual bool Answer(const DialogMessage& message, INT_PTR& result) = 0;

    // A key in a window of the dialog, before the dialog manager has it; true when it is taken.
    virtual bool TakeKey(const MSG&) { return false; }

    // The dialog has another size, and its controls their new places.
    virtual void Resized() {}

    // The dialog's font and resolution are others; its windows have their new places.
    virtual void Rescale(int /*dpi*/) {}
};

// An open dialog, behind its plan.
class OpenedDialog {
  public:
    OpenedDialog(const char* templateName, void* context) : templateName_(templateName), context_(context) {}

    // Its template for the owner's resolution, in smaller letters where the screen could not hold it; a page's as its
    // owner's. Empty when there is none.
    DialogTemplate Load(HWND owner);

    [[nodiscard]] void* Context() const { return context_; }
    [[nodiscard]] const std::string& TemplateName() const { return templateName_; }
    [[nodiscard]] bool IsFilled() const { return isFilled_; }

    void Begin(HWND dialog, std::span<const Anchor> anchors);
    INT_PTR FinishFilling(HWND dialog);
    void TakeUp(DialogPart& part) { parts_.push_back(&part); }

    bool TakeKey(const MSG& message) const;

    // What parts, size and resolution have to say to a message.
    bool Answer(const DialogMessage& message, INT_PTR& result);

  private:
    bool AnswerForWindow(const DialogMessage& message);
    [[nodiscard]] int FittingOn(const RECT& place, int dpi) const;
    void ChangeDpi(HWND dialog, int windowDpi, RECT place);
    void ChangeFont(HWND dialog);

    std::string templateName_;
    void* context_;
    SIZE units_{};
    bool isFilled_ = false;
    bool isResizable_ = false;
    int dpi_ = USER_DEFAULT_SCREEN_DPI;
    Layout layout_;
    WindowIcons icons_;
    MessageFont font_; // none as long as the template's own serves
    std::vector<DialogPart*> parts_;
};

// The parts of FollowPlan that need no context type.
struct CommandCode {
    int Control;
    int Notification;
};
bool ReadCommand(const DialogMessage& message, CommandCode& code);
OpenedDialog* OpenedOf(HWND dialog);
OpenedDialog& BeginDialog(const DialogMessage& message, std::span<const Anchor> anchors);
INT_PTR AnswerForAll(const DialogMessage& message, int helpContext);
bool AgreesToLoseChanges();

template <class Context>
bool FollowCommand(const DialogPlan<Context>& plan, HWND dialog, const CommandCode& code, Context& context) {
    if (code.Control == IDCANCEL && code.Notification == BN_CLICKED && plan.IsChanged != nullptr &&
        plan.IsChanged(dialog, context) && !AgreesToLoseChanges())
        return true;
    const auto found = std::ranges::find_if(plan.Commands, [&](const DialogCommand<Context>& command) {
        return command.Control == code.Control && command.Notification == code.Notification;
    });
    if (found == plan.Commands.end()) return false;
    found->Do(dialog, context);
    return true;
}

template <class Context>
INT_PTR AnswerByPlan(const DialogPlan<Context>& plan, const DialogMessage& message) {
    if (message.Number == WM_INITDIALOG) {
        OpenedDialog& opened = BeginDialog(message, plan.Anchors);
        plan.Fill(message.Dialog, *static_cast<Context*>(opened.Context()));
        return opened.FinishFilling(message.Dialog);
    }
    OpenedDialog* opened = OpenedOf(message.Dialog);
    if (opened == nullptr) return 0;
    INT_PTR result = 0;
    if (opened->Answer(message, result)) return result;
    if (opened->IsFilled()) {
        auto& context = *static_cast<Context*>(opened->Context());
        CommandCode code{};
        if (ReadCommand(message, code) && FollowCommand(plan, message.Dialog, code, context)) return TRUE;
        if (message.Number == WM_ACTIVATE && message.WParam != WA_INACTIVE && plan.Activated != nullptr)
            plan.Activated(message.Dialog, context);
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

// The same for a dialog that changes a file of the server; status line 2 says meanwhile when the file may not be
// written.
INT_PTR OpenDialogOf(ServerFile file, const char* templateName, HWND owner, DLGPROC procedure, void* context);

// Makes a dialog that is not modal, or a page inside another; none when there is no such template. The opened dialog
// must live as long as the window.
HWND CreatePlannedDialog(OpenedDialog& opened, HWND owner, DLGPROC procedure);

// Takes up a part, which must live as long as the dialog is open.
void TakeUp(HWND dialog, DialogPart& part);

// Ends with IDOK or IDCANCEL, for tables of commands.
template <class Context>
void EndWithOk(HWND dialog, Context&) {
    EndDialog(dialog, IDOK);
}
template <class Context>
void EndWithCancel(HWND dialog, Context&) {
    EndDialog(dialog, IDCANCEL);
}

// A control's text in the workstation's code page, with "?" for what that lacks; for what is not kept.
std::string GetText(HWND dialog, int control);
void SetText(HWND dialog, int control, const std::string& text);

// A control's text to be kept. False, with the focus on the control, after 9209 when the code page lacks a character.
bool TakeText(HWND dialog, int control, std::string& text);

// Fills an edit control, which then takes no more characters than the field, and reads an edit control or a combo box.
template <std::size_t N>
void PutField(HWND dialog, int control, const FixedText<N>& text) {
    SendDlgItemMessageA(dialog, control, EM_LIMITTEXT, N, 0);
    SetText(dialog, control, text.String());
}
template <std::size_t N>
bool TakeField(HWND dialog, int control, FixedText<N>& text) {
    std::string taken;
    if (!TakeText(dialog, control, taken)) return false;
    text.Assign(taken);
    return true;
}

bool IsOfClass(HWND window, const char* name);

// The arrows beside an edit control for a number; none when it has none.
HWND ArrowsOf(HWND edit);

// A disabled control that has the focus hands it to the dialog's next one first. Arrows follow their number.
void EnableControl(HWND dialog, int control, bool enabled);

// Moves the focus to a control and selects its text: the field that is wrong.
void FocusControl(HWND dialog, int control);

// Dialog units as pixels of the dialog.
int UnitsAcross(HWND dialog, int units);
int UnitsDown(HWND dialog, int units);

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
