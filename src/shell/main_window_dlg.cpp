#include "shell/main_window_dlg.h"

#include <algorithm>
#include <new>
#include <string_view>

#include "dialogs/layout_dlg.h"
#include "dialogs/live_text_dlg.h"
#include "platform/ascii.h"
#include "platform/program.h"
#include "resources/ids.h"
#include "resources/version.h"
#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

static_assert(kProgramVersion == VERSION_TEXT);

constexpr int kGrowthSteps = 10;
constexpr DWORD kGrowthPause = 15; // milliseconds a step
constexpr UINT_PTR kPlaceTimer = 101;
constexpr UINT kPlaceInterval = 250; // milliseconds
constexpr int kMargin = 8;           // pixels at 96 dots per inch

HINSTANCE Instance() { return GetModuleHandleA(nullptr); }

int Scaled(HWND window, int pixels) { return MulDiv(pixels, DpiOf(window), 96); }

RECT WorkArea() {
    RECT area{};
    if (SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0)) return area;
    return {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

bool IsMinimising(int showCommand) {
    return showCommand == SW_SHOWMINIMIZED || showCommand == SW_MINIMIZE || showCommand == SW_SHOWMINNOACTIVE;
}

bool ShowsAnimations() {
    BOOL on = FALSE;
    return SystemParametersInfoA(SPI_GETCLIENTAREAANIMATION, 0, &on, 0) && on && !GetSystemMetrics(SM_REMOTESESSION);
}

void MoveTo(HWND window, const RECT& place) {
    SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void Grow(HWND window, const RECT& full) {
    const LONG width = full.right - full.left;
    const LONG height = full.bottom - full.top;
    for (LONG step = 1; step <= kGrowthSteps; ++step) {
        const LONG across = width * step / kGrowthSteps;
        const LONG down = height * step / kGrowthSteps;
        const LONG left = full.left + (width - across) / 2;
        const LONG top = full.top + (height - down) / 2;
        MoveTo(window, {left, top, left + across, top + down});
        UpdateWindow(window);
        if (step < kGrowthSteps) Sleep(kGrowthPause);
    }
}

void DrawLine(HDC drawing, const std::string& text, RECT place, UINT alignment) {
    constexpr UINT kStyle = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS;
    DrawTextA(drawing, text.c_str(), static_cast<int>(text.size()), &place, kStyle | alignment);
}

int TextWidth(HDC drawing, const std::string& text) {
    SIZE size{};
    GetTextExtentPoint32A(drawing, text.c_str(), static_cast<int>(text.size()), &size);
    return size.cx;
}

void DrawProgramIcon(HDC drawing, int x, int y, int size) {
    const ProgramIcon icon(size);
    DrawIconEx(drawing, x, y, icon.Handle(), size, size, 0, nullptr, DI_NORMAL);
}

} // namespace

MainWindow::~MainWindow() {
    if (window_ != nullptr) {
        SetWindowLongPtrA(window_, GWLP_USERDATA, 0); // its end is not the program's any more
        DestroyWindow(window_);
    }
}

void MainWindow::RegisterWindowClass() {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = Instance();
    windowClass.hIcon = LoadIconA(Instance(), "Setup");
    windowClass.hCursor = LoadCursor(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    windowClass.lpszClassName = kMainWindowClass;
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    RegisterClassA(&windowClass);
}

bool MainWindow::Create() {
    const std::string title = FillMessage(kWindowTitle);
    CreateWindowExA(0, kMainWindowClass, title.c_str(), WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, Instance(), this);
    return window_ != nullptr;
}

bool MainWindow::Open(int showCommand) {
    if (window_ == nullptr && !Create()) return false;
    said_ = CreateWindowExA(0, "STATIC", "", WS_CHILD | WS_VISIBLE, 0, 0, 1, 1, window_, nullptr, Instance(), nullptr);
    MakeLive(said_);
    font_ = MessageFont(DpiOf(window_));
    icons_.Show(window_, DpiOf(window_));
    const RECT full = FullPlace();
    const POINT centre{(full.left + full.right) / 2, (full.top + full.bottom) / 2};
    const bool grows = ShowsAnimations() && !IsMinimising(showCommand);
    MoveTo(window_, grows ? RECT{centre.x, centre.y, centre.x, centre.y} : full);
    ShowWindow(window_, showCommand);
    if (grows) Grow(window_, full);
    SetStatusLine(2, "");
    SetStatusLine(3, FillMessage(kProgramAndVersion, kProgramVersion));
    return true;
}

void MainWindow::SetStatusLine(int line, const std::string& text) {
    if (line < 1 || line > static_cast<int>(lines_.size())) return;
    lines_[static_cast<std::size_t>(line - 1)] = text;
    if (window_ == nullptr) return;
    InvalidateRect(window_, nullptr, FALSE);
    UpdateWindow(window_);
}

void MainWindow::Say(const std::string& text) const {
    if (said_ != nullptr) ShowLiveText(said_, text);
}

void MainWindow::JoinInstaller() {
    const HWND installer = FindWindowA("InstallShield_Win", "Setup");
    if (installer == nullptr) return;
    const auto style = static_cast<DWORD>(GetWindowLongA(window_, GWL_STYLE));
    SetWindowLongA(window_, GWL_STYLE, static_cast<LONG>((style & ~WS_POPUP) | WS_CHILD));
    SetParent(window_, installer);
    SetTimer(window_, kPlaceTimer, kPlaceInterval, nullptr); // nobody tells a child in another program of a new size
    Place();
}

LRESULT CALLBACK MainWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTA*>(lParam);
        auto* created = static_cast<MainWindow*>(creation->lpCreateParams);
        created->window_ = window;
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
    }
    auto* self = reinterpret_cast<MainWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (self == nullptr) return DefWindowProcA(window, message, wParam, lParam);
    try {
        return self->Answer(message, wParam, lParam);
    } catch (const std::bad_alloc&) {
        platform::EndWithoutMemory(); // an exception does not get past Windows
    }
}

LRESULT MainWindow::Answer(UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND window = window_;
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wParam) == ID_OPEN_MENU && OnOpenMenu) OnOpenMenu();
        return 0;
    case WM_TIMER:
        if (wParam == kWatchTimer && OnWatchTimer) OnWatchTimer();
        if (wParam == kPlaceTimer) Place();
        return 0;
    case WM_ERASEBKGND: return 1; // painting covers everything
    case WM_PAINT: {
        PAINTSTRUCT paint;
        RECT client;
        GetClientRect(window, &client);
        Paint(BeginPaint(window, &paint), client);
        EndPaint(window, &paint);
        return 0;
    }
    case WM_SYSCOLORCHANGE: ChangeColours(); return 0;
    case WM_SETTINGCHANGE: ChangeSettings(wParam, reinterpret_cast<const char*>(lParam)); return 0;
    case WM_DISPLAYCHANGE: Place(); return 0;
    case WM_DPICHANGED:
        font_ = MessageFont(DpiOf(window_));
        icons_.Show(window_, DpiOf(window_));
        Place();
        return 0;
    case WM_DESTROY: EndProgram(0); return 0;
    case WM_NCDESTROY: window_ = nullptr; return DefWindowProcA(window, message, wParam, lParam);
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}

bool MainWindow::IsInInstaller() const { return (GetWindowLongA(window_, GWL_STYLE) & WS_CHILD) != 0; }

// The bottom strip of the work area, or of the installer's client area, two captions tall.
RECT MainWindow::FullPlace() const {
    RECT area{};
    if (IsInInstaller())
        GetClientRect(GetParent(window_), &area);
    else
        area = WorkArea();
    area.top = area.bottom - 2 * GetSystemMetricsForDpi(SM_CYCAPTION, static_cast<UINT>(DpiOf(window_)));
    return area;
}

void MainWindow::Place() {
    const RECT before = PlaceInParent(window_);
    const RECT now = FullPlace();
    if (!EqualRect(&before, &now)) MoveTo(window_, now);
}

// The icon, line 1 above, and lines 2 and 3 below it at the left and the right.
void MainWindow::Paint(HDC drawing, const RECT& client) const {
    FillRect(drawing, &client, BackgroundBrush());
    RECT edge = client;
    DrawEdge(drawing, &edge, EDGE_ETCHED, BF_TOP);
    const HGDIOBJ before =
        SelectObject(drawing, font_.Handle() != nullptr ? font_.Handle() : GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(drawing, TRANSPARENT);
    SetTextColor(drawing, GetSysColor(COLOR_BTNTEXT));

    const int margin = Scaled(window_, kMargin);
    const int icon = std::min(Scaled(window_, 32), static_cast<int>(client.bottom) - 4);
    DrawProgramIcon(drawing, margin, (client.bottom - icon) / 2, icon);

    const LONG right = client.right - margin;
    const LONG left = margin + icon + margin;
    const LONG parting = std::max(left, right - TextWidth(drawing, lines_[2]));
    const LONG middle = client.bottom / 2;
    DrawLine(drawing, lines_[0], {left, client.top, right, middle}, DT_LEFT);
    DrawLine(drawing, lines_[1], {left, middle, parting - margin, client.bottom}, DT_LEFT);
    DrawLine(drawing, lines_[2], {parting, middle, right, client.bottom}, DT_RIGHT);
    SelectObject(drawing, before);
}

void MainWindow::ChangeColours() {
    RecreateBackgroundBrush();
    InvalidateRect(window_, nullptr, FALSE);
    if (OnColoursChanged) OnColoursChanged();
}

void MainWindow::ChangeSettings(WPARAM parameter, const char* section) {
    if (section == nullptr || EqualFolded(section, "colors")) ChangeColours();
    if (parameter == SPI_SETWORKAREA) Place();
}

StartTurn::StartTurn() : mutex_(CreateMutexA(nullptr, FALSE, "BrivaneSetup.Start")) {
    constexpr DWORD kLongest = 10'000; // milliseconds: a copy that hangs keeps nobody out
    if (mutex_ != nullptr) WaitForSingleObject(mutex_, kLongest);
}

StartTurn::~StartTurn() {
    if (mutex_ == nullptr) return;
    ReleaseMutex(mutex_);
    CloseHandle(mutex_);
}

bool ActivateRunningCopy(int showCommand) {
    const HWND running = FindWindowA(kMainWindowClass, nullptr);
    if (running == nullptr) return false;
    HWND outermost = running;
    while (const HWND parent = GetParent(outermost)) outermost = parent;
    if (IsIconic(outermost) && !IsMinimising(showCommand)) ShowWindow(outermost, SW_RESTORE);
    const HWND inFront = GetLastActivePopup(outermost);
    if (IsWindowVisible(inFront)) SetForegroundWindow(inFront); // else it is starting, and comes to the front by itself
    return true;
}

void EndProgram(int exitCode) {
    MSG pending;
    if (!PeekMessageA(&pending, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE)) PostQuitMessage(exitCode);
}

int RunMessageLoop() {
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return static_cast<int>(message.wParam);
}

} // namespace bv
