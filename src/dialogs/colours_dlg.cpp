#include "dialogs/colours_dlg.h"

#include <commctrl.h>

#include <string_view>

#include "platform/ascii.h"

namespace bv {
namespace {

constexpr COLORREF kLightGrey = RGB(192, 192, 192);

using InstanceEntry = BOOL(WINAPI*)(HINSTANCE);
using PlainEntry = BOOL(WINAPI*)();

HBRUSH background = nullptr;

bool IsColourRequest(UINT message) {
    switch (message) {
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORSCROLLBAR: return true;
    default: return false;
    }
}

bool IsOfClass(HWND window, std::string_view name) {
    char found[32] = "";
    GetClassNameA(window, found, sizeof found);
    return EqualFolded(found, name);
}

bool IsPartOfComboBox(HWND control) {
    return IsOfClass(control, "ComboBox") || IsOfClass(control, "ComboLBox") ||
           IsOfClass(GetParent(control), "ComboBox");
}

void CallWithInstance(platform::Library* library, const char* name) {
    if (library == nullptr) return;
    if (const auto entry = reinterpret_cast<InstanceEntry>(library->Entry(name))) entry(GetModuleHandleA(nullptr));
}

} // namespace

HBRUSH BackgroundBrush() {
    if (background == nullptr) background = CreateSolidBrush(GetSysColor(COLOR_BTNFACE));
    return background;
}

void RecreateBackgroundBrush() {
    if (background != nullptr) DeleteObject(background);
    background = nullptr;
}

INT_PTR ColourDialog(const DialogMessage& message) {
    if (!IsColourRequest(message.Number) || GetSysColor(COLOR_BTNFACE) != kLightGrey) return 0;
    if (IsPartOfComboBox(reinterpret_cast<HWND>(message.LParam))) return 0;
    const HDC drawing = reinterpret_cast<HDC>(message.WParam);
    SetTextColor(drawing, GetSysColor(COLOR_BTNTEXT));
    SetBkColor(drawing, GetSysColor(COLOR_BTNFACE));
    return reinterpret_cast<INT_PTR>(BackgroundBrush());
}

void StartCommonControls() {
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_STANDARD_CLASSES | ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
}

ThreeDControls::ThreeDControls() : library_(platform::TheLibraries().LoadOfSystem("CTL3D32.DLL")) {
    CallWithInstance(library_.get(), "Ctl3dRegister");
    CallWithInstance(library_.get(), "Ctl3dAutoSubclass");
}

ThreeDControls::~ThreeDControls() { CallWithInstance(library_.get(), "Ctl3dUnregister"); }

void ThreeDControls::ColoursChanged() {
    if (library_ == nullptr) return;
    if (const auto entry = reinterpret_cast<PlainEntry>(library_->Entry("Ctl3dColorChange"))) entry();
}

} // namespace bv
