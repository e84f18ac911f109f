// Drives dialogs the way a person does: finds windows, reads their texts, presses keys and buttons, and waits for what
// follows. Nothing here sleeps for a fixed time.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace bv::gui {

// Each test process has a desktop of its own, so that tests can run side by side: windows, the foreground and injected
// keys are a desktop's. To be called first in main, and UseDesktop first in every other thread with windows.
void MakeDesktop();
void UseDesktop();

// Waits until the condition holds; false after ten seconds without.
bool Until(const std::function<bool()>& condition);

// Texts are UTF-8 here.
std::string Text(HWND window);
std::string Text(HWND dialog, int control);
std::string ClassOf(HWND window);
LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
LRESULT SendTo(HWND dialog, int control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

bool IsEnabled(HWND dialog, int control);
bool IsChecked(HWND dialog, int control);
int FocusOf(HWND dialog); // the id of the control with the focus; 0 without one

// Puts the focus on a control of a dialog, which comes to the front; a text into an edit control or combo box.
void FocusControlOf(HWND dialog, int control);
void SetTextOf(HWND dialog, int control, const std::string& text);

std::string ClipboardText();

// Presses a button. Returns before what it does is done.
void Click(HWND dialog, int control);

// The entries of a list box or combo box, and the choice of one, as by a click.
std::vector<std::string> Entries(HWND dialog, int control);
int Selection(HWND dialog, int list);
void Select(HWND dialog, int list, int index);

// Keys to the window in front.
void Key(WORD key, WORD modifier = 0);
void Type(const std::string& text); // ASCII

// What a person does to a control: a text for an edit control or combo box, else a click, or the choice of that number
// in a drop-down list.
struct Entry {
    int Control;
    const char* Text = nullptr;
    int Choice = -1;
};
void Make(HWND dialog, const Entry& entry);
void Make(HWND dialog, const std::vector<Entry>& entries);

// The page of a dialog that is in front.
HWND FrontPage(HWND dialog);

// Brings a page of the dialog, of those behind its tab control, to the front by the keyboard, and returns it.
HWND ShowPage(HWND dialog, int tabs, int page);

// The child windows in their order.
std::vector<HWND> Children(HWND window);

// The windows of a process: of a program that was started, or of the test itself.
class Windows {
  public:
    explicit Windows(DWORD process = GetCurrentProcessId()) : process_(process) {}

    // The visible top-level windows.
    [[nodiscard]] std::vector<HWND> All() const;

    // Waits for an enabled window of that title (that has that control, when one is given); none after ten seconds.
    [[nodiscard]] HWND Wait(const std::string& title, int control = 0) const;

    // Waits for a message box of that caption and returns its text, or why not.
    [[nodiscard]] std::string WaitBox(const std::string& caption) const;

    // Presses a button of the message box of that caption, and waits until it is gone.
    bool AnswerBox(const std::string& caption, int button) const;

    // The handle of the message box of that caption that is open now, or none.
    [[nodiscard]] HWND Box(const std::string& caption) const;

  private:
    DWORD process_;
};

// A program that is started and, at the latest with this object, ended.
class Program {
  public:
    explicit Program(std::string commandLine);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    [[nodiscard]] const gui::Windows& Shown() const { return windows_; }

    // Its exit code, or -1 when it goes on for over ten seconds.
    [[nodiscard]] int WaitForEnd() const;
    [[nodiscard]] bool IsRunning() const;

  private:
    PROCESS_INFORMATION process_{};
    HANDLE job_ = nullptr;
    gui::Windows windows_{0};
};

// Runs a modal dialog of this process on this thread while another thread drives it. Dialogs that the driver leaves
// open are closed.
void RunDriven(const std::function<void()>& open, const std::function<void(const Windows&)>& drive);

} // namespace bv::gui
