// Menus beside the buttons of a dialog: those of what they act on, and those that a button opens.
#pragma once

#include <windows.h>

#include <span>

namespace bv {

// A menu of the buttons, by their captions, of which those can be chosen that can be pressed; the default one is bold.
HMENU MenuOfButtons(HWND dialog, std::span<const int> buttons, int defaultButton);

// Opens a menu at a place of the screen, or below a button, and destroys it. The item that was chosen; 0 for none.
int ChooseFromMenu(HWND dialog, HMENU menu, POINT at);
int ChooseBelowButton(HWND dialog, HMENU menu, int button);

// Has the dialog do what the button does; 0 is no button.
void PressButton(HWND dialog, int button);

} // namespace bv
