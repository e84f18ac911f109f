#include "dialogs/arrow_button_dlg.h"

namespace bv {
namespace {

// A drawing surface for a bitmap.
class Surface {
  public:
    Surface(HDC like, HBITMAP bitmap) : device_(CreateCompatibleDC(like)), before_(SelectObject(device_, bitmap)) {}
    ~Surface() {
        SelectObject(device_, before_);
        DeleteDC(device_);
    }
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    operator HDC() const { return device_; }

  private:
    HDC device_;
    HGDIOBJ before_;
};

// The bitmap so much larger as an icon: black in the colour of text on buttons, white is the button's ground.
HICON IconOf(const char* name, int dpi) {
    const auto source =
        static_cast<HBITMAP>(LoadImageA(GetModuleHandleA(nullptr), name, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
    BITMAP size{};
    if (source == nullptr || GetObjectA(source, sizeof size, &size) == 0) return nullptr;
    const int width = MulDiv(size.bmWidth, dpi, USER_DEFAULT_SCREEN_DPI);
    const int height = MulDiv(size.bmHeight, dpi, USER_DEFAULT_SCREEN_DPI);
    const HDC screen = GetDC(nullptr);
    const HBITMAP mask = CreateBitmap(width, height, 1, 1, nullptr); // 1: nothing is drawn
    const HBITMAP colours = CreateCompatibleBitmap(screen, width, height);
    {
        const Surface from(screen, source);
        const Surface toMask(screen, mask);
        const Surface toColours(screen, colours);
        SetStretchBltMode(toMask, COLORONCOLOR);
        StretchBlt(toMask, 0, 0, width, height, from, 0, 0, size.bmWidth, size.bmHeight, SRCCOPY);
        SetTextColor(toColours, GetSysColor(COLOR_BTNTEXT)); // for the 0 of the mask
        SetBkColor(toColours, RGB(0, 0, 0));
        BitBlt(toColours, 0, 0, width, height, toMask, 0, 0, SRCCOPY);
    }
    ICONINFO icon{TRUE, 0, 0, mask, colours};
    const HICON made = CreateIconIndirect(&icon);
    for (const HBITMAP bitmap : {source, mask, colours}) DeleteObject(bitmap);
    ReleaseDC(nullptr, screen);
    return made;
}

} // namespace

ArrowButtons::~ArrowButtons() { Free(); }

void ArrowButtons::Free() {
    for (const HICON picture : pictures_) DestroyIcon(picture);
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
    std::vector<HICON> pictures;
    for (const auto& [control, name] : buttons_) {
        pictures.push_back(IconOf(name, dpi));
        SendDlgItemMessageA(dialog_, control, BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(pictures.back()));
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
