#include "dialogs/icon_dlg.h"

#include <utility>

namespace bv {
namespace {

void ShowIcon(HWND window, WPARAM which, const ProgramIcon& icon) {
    SendMessageA(window, WM_SETICON, which, reinterpret_cast<LPARAM>(icon.Handle()));
}

} // namespace

ProgramIcon::ProgramIcon(int size)
    : icon_(
          static_cast<HICON>(LoadImageA(GetModuleHandleA(nullptr), "Setup", IMAGE_ICON, size, size, LR_DEFAULTCOLOR))) {
}

ProgramIcon::ProgramIcon(ProgramIcon&& other) noexcept : icon_(std::exchange(other.icon_, nullptr)) {}

ProgramIcon& ProgramIcon::operator=(ProgramIcon&& other) noexcept {
    std::swap(icon_, other.icon_);
    return *this;
}

ProgramIcon::~ProgramIcon() {
    if (icon_ != nullptr) DestroyIcon(icon_);
}

void WindowIcons::Show(HWND window, int dpi) {
    const auto at = static_cast<UINT>(dpi);
    ProgramIcon small(GetSystemMetricsForDpi(SM_CXSMICON, at));
    ProgramIcon large(GetSystemMetricsForDpi(SM_CXICON, at));
    ShowIcon(window, ICON_SMALL, small);
    ShowIcon(window, ICON_BIG, large);
    small_ = std::move(small); // the old ones end when nobody shows them any more
    large_ = std::move(large);
}

} // namespace bv
