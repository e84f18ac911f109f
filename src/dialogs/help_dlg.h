// Help on a dialog: the help file BVSETUP.HLP where the system has a viewer for it, else a page of the help folder.
#pragma once

#include <windows.h>

#include <string>

namespace bv {

enum class HelpKind { None, HelpFile, Page };

struct HelpPlace {
    HelpKind Kind = HelpKind::None;
    std::string Path;
};

// Where the help for a context number is: the help file, when it exists and the Windows directory has a WINHLP32.EXE
// that is a viewer; else help\<context>.html beside the program or in the server area; else nowhere.
HelpPlace FindHelp(int context);

// Opens the help for a dialog; shows warning 9010 when there is none, and 9019 when its page cannot be opened.
void ShowHelp(HWND dialog, int context);

// Closes the help viewer, if it was opened for this program.
void CloseHelp();

} // namespace bv
