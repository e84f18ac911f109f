// The main window: a banner along the bottom of the screen with the program's icon and three status lines. All dialogs
// are owned by it.
#pragma once

#include <windows.h>

#include <array>
#include <functional>
#include <string>

#include "dialogs/colours_dlg.h"
#include "dialogs/font_dlg.h"
#include "dialogs/icon_dlg.h"

namespace bv {

inline constexpr const char* kMainWindowClass = "BrivaneSetup";
inline constexpr UINT_PTR kWatchTimer = 100;

class MainWindow {
  public:
    MainWindow() = default;
    ~MainWindow();
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    // Registers the window's class; without it, Create fails.
    static void RegisterWindowClass();

    // Creates the banner, which is not shown yet: from now on another start finds it. False when the system refuses.
    bool Create();

    // Shows the banner, created where it is not, with the program's show command and lets it grow to its place.
    bool Open(int showCommand);

    // None before Create and after the window is gone.
    [[nodiscard]] HWND Handle() const { return window_; }

    // Line 1, 2 or 3; repaints at once.
    void SetStatusLine(int line, const std::string& text);

    // Has screen readers say a text.
    void Say(const std::string& text) const;

    // Makes the banner a child of the installer's window, when that is there: the bottom strip of its client area,
    // whatever size that takes on.
    void JoinInstaller();

    std::function<void()> OnOpenMenu;       // the menu's command has arrived
    std::function<void()> OnWatchTimer;     // kWatchTimer has ticked
    std::function<void()> OnColoursChanged; // the system's colours are others

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Answer(UINT message, WPARAM wParam, LPARAM lParam);
    [[nodiscard]] bool IsInInstaller() const;
    [[nodiscard]] RECT FullPlace() const;
    void Place();
    void Paint(HDC drawing, const RECT& client) const;
    void ChangeColours();
    void ChangeSettings(WPARAM parameter, const char* section);

    HWND window_ = nullptr;
    HWND said_ = nullptr; // a text of one pixel: the lines are painted, and no reader hears of that
    MessageFont font_;
    WindowIcons icons_;
    std::array<std::string, 3> lines_;
};

// A program's turn to look for a running copy and then to be found by others, while it lives: of two starts at the same
// moment, the second one's turn comes when the first has created its window, or has ended.
class StartTurn {
  public:
    StartTurn();
    ~StartTurn();
    StartTurn(const StartTurn&) = delete;
    StartTurn& operator=(const StartTurn&) = delete;

  private:
    HANDLE mutex_;
};

// Brings the dialog in front of a running copy of this program forward; false when none runs.
bool ActivateRunningCopy(int showCommand);

// Has the program's message loop end with the code, unless an end is already under way.
void EndProgram(int exitCode);

// The program's message loop; returns the exit code.
int RunMessageLoop();

} // namespace bv
