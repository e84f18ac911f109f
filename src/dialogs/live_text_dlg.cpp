#include "dialogs/live_text_dlg.h"

#include <oleacc.h>

namespace bv {
namespace {

// As the system has published them.
constexpr CLSID kAccPropServicesClass = {0xB5F8350B, 0x0548, 0x48B1, {0xA6, 0xEE, 0x88, 0xBD, 0x00, 0xB4, 0xA5, 0xE7}};
constexpr IID kAccPropServices = {0x6E26E776, 0x04F0, 0x495D, {0x80, 0xE4, 0x33, 0x30, 0x35, 0x2E, 0x31, 0x69}};
constexpr MSAAPROPID kLiveSetting = {0xC12BCD8E, 0x2A8E, 0x4950, {0x8A, 0xE7, 0x36, 0x25, 0x11, 0x1D, 0x58, 0xEB}};
constexpr LONG kPolite = 1; // said when the reader has nothing else to say

} // namespace

void MakeLive(HWND text) {
    const bool isBegun = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    IAccPropServices* services = nullptr;
    if (SUCCEEDED(CoCreateInstance(kAccPropServicesClass, nullptr, CLSCTX_INPROC_SERVER, kAccPropServices,
                                   reinterpret_cast<void**>(&services)))) {
        VARIANT polite{};
        polite.vt = VT_I4;
        polite.lVal = kPolite;
        services->SetHwndProp(text, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, kLiveSetting, polite);
        services->Release();
    }
    if (isBegun) CoUninitialize();
}

void ShowLiveText(HWND control, const std::string& text) {
    SetWindowTextA(control, text.c_str());
    UpdateWindow(control);
    NotifyWinEvent(EVENT_OBJECT_LIVEREGIONCHANGED, control, OBJID_CLIENT, CHILDID_SELF);
}

} // namespace bv
