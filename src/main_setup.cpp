// BVSETUP.EXE: the administrator's configuration program.
#include <windows.h>

#include <new>
#include <optional>

#include "dialogs/colours_dlg.h"
#include "dialogs/help_dlg.h"
#include "mailgw/mail_actions.h"
#include "platform/environment.h"
#include "platform/program.h"
#include "resources/ids.h"
#include "shell/front_dlg.h"
#include "shell/main_window_dlg.h"
#include "shell/menu_dlg.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr int kFailed = 1; // exit code after a message that says why

void ShowFaultOfCommandLine(int fault) {
    CurrentFront().ShowBox({FillMessage(kCaptionOfQuestion), FillMessage(Message(fault)), BoxIcon::Warning});
}

// Opens the banner; the menu follows when the server's files were found.
bool OpenMainWindow(MainWindow& window, int showCommand) {
    ControlStream setupFile;
    const bool loaded = LoadServerPaths(&setupFile) == kDone;
    if (!window.Open(showCommand) || !loaded) {
        ShowError(kUnableToInitialise);
        return false;
    }
    ReadServerSwitches(setupFile);
    PostMessageA(window.Handle(), WM_COMMAND, ID_OPEN_MENU, 0);
    return true;
}

int RunUntilEnd() {
    const int exitCode = RunMessageLoop();
    CloseHelp();
    return exitCode;
}

int RunSetup(const char* commandLine, int showCommand) {
    std::optional<StartTurn> turn(std::in_place);
    if (ActivateRunningCopy(showCommand)) return 0;
    // All of the program's times are in one fixed zone; the server's files rely on it.
    platform::TheEnvironment().SetVariable("TZ", "PST8PDT");
    FollowUserList();

    MainWindow window;
    WindowsFront front(window);
    const UseFront speaking(front);
    const int fault = ParseCommandLine(commandLine, Startup());
    if (fault == 0) {
        MainWindow::RegisterWindowClass();
        window.Create(); // or Open says so
    }
    turn.reset();
    if (fault != 0) {
        ShowFaultOfCommandLine(fault);
        return kFailed;
    }

    StartCommonControls();
    ThreeDControls controls;
    window.OnColoursChanged = [&] { controls.ColoursChanged(); };
    window.OnOpenMenu = [&] {
        RunStartFunction(window.Handle());
        EndProgram(0);
    };
    if (!OpenMainWindow(window, showCommand)) return kFailed;

    StartupOptions& options = Startup();
    options.HelpFile = FindHelpFile(options);
    if (options.InstallerModeA || options.InstallerModeU || options.InstallerModeM) window.JoinInstaller();
    return RunUntilEnd();
}

} // namespace
} // namespace bv

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR commandLine, int showCommand) {
    if (!bv::platform::BeginProgram()) return bv::kFailed;
    try {
        return bv::RunSetup(commandLine, showCommand);
    } catch (const std::bad_alloc&) {
        bv::platform::EndWithoutMemory();
    }
}
