#include "dialogs/arrow_button_dlg.h"

namespace bv {
namespace {

// The bitmap so much larger: black in the colour of text on buttons, white in that of buttons.
HBITMAP InSystemColours(const char* name, int dpi) {
    const auto source = static_cast<HBITMAP>(
        LoadImageA(GetModuleHandleA(nullptr), name, IMAGE_BITMAP, 0, 0, LR_MONOCHROME | LR_CREATEDIBSECTION));
    BITMAP size{};
    if (source == nullptr || GetObjectA(source, sizeof size, &size) == 0) return nullptr;
    const int width = MulDiv(size.bmWidth, dpi, USER_DEFAULT_SCREEN_DPI);
    const int height = MulDiv(size.bmHeight, dpi, USER_DEFAULT_SCREEN_DPI);
    const HDC screen = GetDC(nullptr);
    const HDC from = CreateCompatibleDC(screen);
    const HDC to = CreateCompatibleDC(screen);
    const HBITMAP made = CreateCompatibleBitmap(screen, width, height);
    const HBITMAP mask = CreateBitmap(size.bmWidth, size.bmHeight, 1, 1, nullptr);
    const HGDIOBJ before = SelectObject(from, source);
    HGDIOBJ drawn = SelectObject(to, mask);
    BitBlt(to, 0, 0, size.bmWidth, size.bmHeight, from, 0, 0, SRCCOPY);
    SelectObject(to, drawn);
    SelectObject(from, mask);
    drawn = SelectObject(to, made);
    SetTextColor(to, GetSysColor(COLOR_BTNTEXT));
    SetBkColor(to, GetSysColor(COLOR_BTNFACE));
    SetStretchBltMode(to, COLORONCOLOR);
    StretchBlt(to, 0, 0, width, height, from, 0, 0, size.bmWidth, size.bmHeight, SRCCOPY);
    SelectObject(to, drawn);
    SelectObject(from, before);
    DeleteObject(mask);
    DeleteObject(source);
    DeleteDC(to);
    DeleteDC(from);
    ReleaseDC(nullptr, screen);
    return made;
}

} // namespace

ArrowButtons::~ArrowButtons() { Free(); }

void ArrowButtons::Free() {
    for (const HBITMAP picture : pictures_) DeleteObject(picture);
    pictures_.clear();
}

void ArrowButtons::Begin(HWND dialog, const std::vector<Button>& buttons) {
    dialog_ = dialog;
    buttons_ = buttons;
    TakeUp(dialog, *this);
    Show(DpiOf(dialog));
}

void ArrowButtons::Show(int dpi) {
    dpi_ = dpi;
    std::vector<HBITMAP> pictures;
    for (const auto& [control, name] : buttons_) {
        pictures.push_back(InSystemColours(name, dpi));
        SendDlgItemMessageA(dialog_, control, BM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(pictures.back()));
    }
    Free();
    pictures_ = std::move(pictures);
}

bool ArrowButtons::Answer(const DialogMessage& message, INT_PTR&) {
    if (message.Number == WM_SYSCOLORCHANGE) Show(dpi_);
    return false;
}

void ArrowButtons::Rescale(int dpi) { Show(dpi); }

} // namespace bv
