#include "dialogs/help_dlg.h"

#include <shellapi.h>

#include <cstdint>

#include "ctlfile/paths.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

HWND viewerOwner = nullptr; // the help viewer wants to be closed by the window that opened it

std::string PageName(int context) { return FormatText("help\\%d.html", context); }

std::string PageBesideProgram(int context) {
    return WithBackslash(platform::TheEnvironment().ProgramDirectory()) + PageName(context);
}

bool OpenHelpFile(HWND dialog, const std::string& path, int context) {
    viewerOwner = GetAncestor(dialog, GA_ROOTOWNER);
    return WinHelpA(viewerOwner, path.c_str(), HELP_CONTEXT, static_cast<ULONG_PTR>(context)) != FALSE;
}

void OpenPage(HWND dialog, const std::string& path) {
    const auto result = ShellExecuteA(dialog, "open", path.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    const auto number = reinterpret_cast<INT_PTR>(result);
    if (number <= 32) ShowWarning(kHelpNotOpened, path, static_cast<int>(number)); // up to 32 are error numbers
}

// Later systems have a program of that name, of some kilobytes, that only says that it is none any more.
bool HasViewer() {
    constexpr std::uint64_t kLeastSize = 100'000; // that of real ones is over 250,000 bytes
    const auto viewer =
        platform::Files().Find(WithBackslash(platform::TheEnvironment().WindowsDirectory()).append("WINHLP32.EXE"));
    return viewer && viewer->Length >= kLeastSize;
}

} // namespace

HelpPlace FindHelp(int context) {
    const std::string helpFile = Startup().HelpFile.String();
    if (!helpFile.empty() && FileExists(helpFile) && HasViewer()) return {HelpKind::HelpFile, helpFile};
    for (const std::string& page : {PageBesideProgram(context), Paths().ServerArea.String() + PageName(context)})
        if (FileExists(page)) return {HelpKind::Page, page};
    return {};
}

void ShowHelp(HWND dialog, int context) {
    const HelpPlace place = FindHelp(context);
    if (place.Kind == HelpKind::HelpFile && OpenHelpFile(dialog, place.Path, context)) return;
    if (place.Kind == HelpKind::Page) return OpenPage(dialog, place.Path);
    ShowWarning(kHelpNotFound, Startup().HelpFile.View(), PageBesideProgram(context));
}

void CloseHelp() {
    if (viewerOwner != nullptr) WinHelpA(viewerOwner, nullptr, HELP_QUIT, 0);
    viewerOwner = nullptr;
}

} // namespace bv
