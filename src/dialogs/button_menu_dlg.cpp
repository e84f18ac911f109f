#include "dialogs/button_menu_dlg.h"

namespace bv {

HMENU MenuOfButtons(HWND dialog, std::span<const int> buttons, int defaultButton) {
    const HMENU menu = CreatePopupMenu();
    for (const int button : buttons) {
        const HWND window = GetDlgItem(dialog, button);
        wchar_t text[64] = L"";
        GetWindowTextW(window, text, 64);
        AppendMenuW(menu, IsWindowEnabled(window) ? MF_ENABLED : MF_GRAYED, static_cast<UINT_PTR>(button), text);
        if (button == defaultButton) SetMenuDefaultItem(menu, static_cast<UINT>(button), FALSE);
    }
    return menu;
}

int ChooseFromMenu(HWND dialog, HMENU menu, POINT at) {
    const int item = TrackPopupMenu(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, at.x, at.y, 0, dialog, nullptr);
    DestroyMenu(menu);
    return item;
}

int ChooseBelowButton(HWND dialog, HMENU menu, int button) {
    RECT place{};
    GetWindowRect(GetDlgItem(dialog, button), &place);
    return ChooseFromMenu(dialog, menu, {place.left, place.bottom});
}

void PressButton(HWND dialog, int button) {
    if (button == 0) return;
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
}

} // namespace bv
