#include "dialogs/layout_dlg.h"

#include <algorithm>
#include <sstream>

#include "platform/user_settings.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr const char* kPlaceName = "Place";

LONG Width(const RECT& area) { return area.right - area.left; }
LONG Height(const RECT& area) { return area.bottom - area.top; }

// The place, moved and, where it must be, made smaller so that the area holds it.
RECT Within(RECT place, const RECT& area) {
    const LONG width = std::min(Width(place), Width(area));
    const LONG height = std::min(Height(place), Height(area));
    const LONG left = std::clamp(place.left, area.left, area.right - width);
    const LONG top = std::clamp(place.top, area.top, area.bottom - height);
    return {left, top, left + width, top + height};
}

void MoveDialog(HWND dialog, const RECT& place) {
    SetWindowPos(dialog, nullptr, place.left, place.top, Width(place), Height(place), SWP_NOZORDER | SWP_NOACTIVATE);
}

bool IsDialog(HWND window) {
    char name[16] = "";
    GetClassNameA(window, name, sizeof name);
    return std::string_view(name) == "#32770";
}

RECT WindowPlace(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

RECT Moved(RECT at, unsigned edges, LONG across, LONG down) {
    if ((edges & kMovesAcross) != 0) at.left += across;
    if ((edges & (kMovesAcross | kGrowsAcross)) != 0) at.right += across;
    if ((edges & kMovesHalf) != 0) at.left += across / 2;
    if ((edges & kMovesHalf) != 0) at.right += across / 2;
    if ((edges & kGrowsHalf) != 0) at.right += (edges & kMovesHalf) != 0 ? across - across / 2 : across / 2;
    if ((edges & kMovesDown) != 0) at.top += down;
    if ((edges & (kMovesDown | kGrowsDown)) != 0) at.bottom += down;
    return at;
}

} // namespace

RECT WorkAreaAt(const RECT& place) {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoA(MonitorFromRect(&place, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

void Layout::Begin(HWND dialog, std::span<const Anchor> anchors, SIZE client) {
    places_.clear();
    if (anchors.empty()) return;
    client_ = client;
    RECT frame{0, 0, client.cx, client.cy};
    AdjustWindowRectExForDpi(&frame, static_cast<DWORD>(GetWindowLongA(dialog, GWL_STYLE)), FALSE,
                             static_cast<DWORD>(GetWindowLongA(dialog, GWL_EXSTYLE)), GetDpiForWindow(dialog));
    const RECT area = WorkAreaAt(WindowPlace(dialog));
    smallest_ = {std::min(Width(frame), Width(area)), std::min(Height(frame), Height(area))};
    for (const Anchor& anchor : anchors) {
        const HWND control = GetDlgItem(dialog, anchor.Control);
        if (control != nullptr) places_.push_back({control, anchor.Edges, PlaceInParent(control)});
    }
}

void Layout::Scale(int to, int from) {
    const auto scale = [&](LONG& pixels) { pixels = MulDiv(static_cast<int>(pixels), to, from); };
    for (Place& place : places_)
        for (LONG* edge : {&place.At.left, &place.At.top, &place.At.right, &place.At.bottom}) scale(*edge);
    for (SIZE* size : {&client_, &smallest_}) {
        scale(size->cx);
        scale(size->cy);
    }
}

void Layout::Apply(HWND dialog) const {
    if (places_.empty()) return;
    RECT client{};
    GetClientRect(dialog, &client);
    const LONG across = client.right - client_.cx;
    const LONG down = client.bottom - client_.cy;
    HDWP moves = BeginDeferWindowPos(static_cast<int>(places_.size()));
    for (const Place& place : places_) {
        const RECT to = Moved(place.At, place.Edges, across, down);
        moves = DeferWindowPos(moves, place.Control, nullptr, to.left, to.top, Width(to), Height(to),
                               SWP_NOZORDER | SWP_NOACTIVATE);
    }
    EndDeferWindowPos(moves);
    InvalidateRect(dialog, nullptr, TRUE);
}

RECT PlaceInParent(HWND control) {
    RECT place = WindowPlace(control);
    MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

void CentreDialog(HWND dialog) {
    const HWND owner = GetWindow(dialog, GW_OWNER);
    const RECT area = WorkAreaAt(WindowPlace(owner != nullptr ? owner : dialog));
    const RECT around = IsDialog(owner) && IsWindowVisible(owner) && !IsIconic(owner) ? WindowPlace(owner) : area;
    const RECT place = WindowPlace(dialog);
    const LONG left = around.left + (Width(around) - Width(place)) / 2;
    const LONG top = around.top + (Height(around) - Height(place)) / 2;
    MoveDialog(dialog, Within({left, top, left + Width(place), top + Height(place)}, area));
}

std::string SettingsFolder(const std::string& templateName) { return "Dialogs\\" + templateName; }

void RememberPlace(HWND dialog, const std::string& templateName) {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    if (!GetWindowPlacement(dialog, &placement)) return;
    const RECT place = IsZoomed(dialog) ? placement.rcNormalPosition : WindowPlace(dialog);
    const std::string text = FormatText("%d %d %d %d %d %d", place.left, place.top, place.right, place.bottom,
                                        static_cast<int>(GetDpiForWindow(dialog)), IsZoomed(dialog) ? 1 : 0);
    platform::TheUserSettings().Write(SettingsFolder(templateName), kPlaceName, text);
}

bool RestorePlace(HWND dialog, const std::string& templateName) {
    const auto text = platform::TheUserSettings().Read(SettingsFolder(templateName), kPlaceName);
    std::istringstream numbers(text.value_or(""));
    RECT place{};
    int dpi = 0;
    int isZoomed = 0;
    if (!(numbers >> place.left >> place.top >> place.right >> place.bottom >> dpi >> isZoomed)) return false;
    if (dpi != static_cast<int>(GetDpiForWindow(dialog)) || Width(place) <= 0 || Height(place) <= 0) return false;
    const RECT smallest = WindowPlace(dialog);
    place.right = std::max(place.right, place.left + Width(smallest));
    place.bottom = std::max(place.bottom, place.top + Height(smallest));
    MoveDialog(dialog, Within(place, WorkAreaAt(place)));
    if (isZoomed != 0) ShowWindow(dialog, SW_MAXIMIZE);
    return true;
}

} // namespace bv
