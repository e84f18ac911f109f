#include "dialogs/dialog_dlg.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "dialogs/colours_dlg.h"
#include "dialogs/help_dlg.h"
#include "dialogs/status_dlg.h"
#include "platform/code_page.h"
#include "platform/libraries.h"
#include "resources/ids.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr const char* kOpenedProperty = "BrivaneOpenedDialog";

HINSTANCE Instance() { return GetModuleHandleA(nullptr); }

bool IsHelpCommand(const DialogMessage& message) {
    return message.Number == WM_HELP || (message.Number == WM_COMMAND && LOWORD(message.WParam) == ID_HELP_BUTTON);
}

bool IsPage(HWND window) { return (GetWindowLongA(window, GWL_STYLE) & WS_CHILD) != 0; }

// Runs for each control of a dialog and, in turn, of the pages in it.
template <class Do>
void ForEachControl(HWND dialog, const Do& run) {
    for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr; control = GetWindow(control, GW_HWNDNEXT)) {
        run(control);
        if (OpenedOf(control) != nullptr) ForEachControl(control, run);
    }
}

// Windows scales dialogs by itself where it can; here they are all scaled in the same way, lists and pages with them.
void ScaleOnOurOwn(HWND dialog) {
    using Entry = BOOL(WINAPI*)(HWND, UINT, UINT);
    constexpr UINT kDisableAll = 1;
    const HMODULE user = GetModuleHandleA("USER32.DLL");
    const auto change =
        reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(user, "SetDialogDpiChangeBehavior")));
    if (change != nullptr) change(dialog, kDisableAll, kDisableAll);
}

void MoveControl(HWND control, const RECT& place) {
    SetWindowPos(control, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

std::u32string LettersIn(HWND control) {
    std::wstring wide(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
    wide.resize(static_cast<std::size_t>(GetWindowTextW(control, wide.data(), static_cast<int>(wide.size()))));
    std::u32string letters;
    for (std::size_t i = 0; i < wide.size(); ++i) {
        const char32_t unit = wide[i];
        if (IS_HIGH_SURROGATE(unit) && i + 1 < wide.size() && IS_LOW_SURROGATE(wide[i + 1]))
            letters += static_cast<char32_t>(0x10000 + ((unit - 0xD800) << 10) + (char32_t{wide[++i]} - 0xDC00));
        else
            letters += unit;
    }
    return letters;
}

// The letters in the code page, and how many it lacks.
std::string Encoded(const std::u32string& letters, std::size_t& lacking) {
    std::string text;
    for (const char32_t letter : letters) {
        const std::optional<std::string> bytes = platform::InCodePage(letter);
        if (!bytes) ++lacking;
        text += bytes.value_or("?");
    }
    return text;
}

} // namespace

void OpenedDialog::Begin(HWND dialog, std::span<const Anchor> anchors) {
    isResizable_ = !anchors.empty();
    ScaleOnOurOwn(dialog);
    FollowStatus(dialog);
    layout_.Begin(dialog, anchors, {UnitsAcross(dialog, units_.cx), UnitsDown(dialog, units_.cy)});
    layout_.Apply(dialog);
    if (!IsPage(dialog)) icons_.Show(dialog, dpi_);
}

DialogTemplate OpenedDialog::Load(HWND owner) {
    const int dpi = DpiOf(owner);
    DialogTemplate source = LoadDialogTemplate(templateName_.c_str(), dpi);
    if (source.empty()) return source;
    units_ = UnitsOf(source);
    const OpenedDialog* host = IsPageTemplate(source) ? OpenedOf(owner) : nullptr;
    RECT place{};
    GetWindowRect(owner, &place);
    dpi_ = host != nullptr ? host->dpi_ : FittingOn(place, dpi);
    return LoadDialogTemplate(templateName_.c_str(), dpi, dpi_);
}

// The resolution at which the dialog is no larger than the screen of that place.
int OpenedDialog::FittingOn(const RECT& place, int dpi) const {
    const RECT area = WorkAreaAt(place);
    RECT frame{};
    AdjustWindowRectExForDpi(&frame, WS_OVERLAPPEDWINDOW, FALSE, 0, static_cast<UINT>(dpi));
    const LONG across = area.right - area.left - (frame.right - frame.left);
    return FittingDpi(dpi, units_, {across, area.bottom - area.top - (frame.bottom - frame.top)});
}

INT_PTR OpenedDialog::FinishFilling(HWND dialog) {
    isFilled_ = true;
    if (!IsPage(dialog) && !(isResizable_ && RestorePlace(dialog, templateName_))) CentreDialog(dialog);
    const bool focusIsSet = GetFocus() == dialog || IsChild(dialog, GetFocus());
    return focusIsSet || IsPage(dialog) ? FALSE : TRUE;
}

bool OpenedDialog::Answer(const DialogMessage& message, INT_PTR& result) {
    for (DialogPart* part : parts_)
        if (part->Answer(message, result)) return true;
    return AnswerForWindow(message);
}

bool OpenedDialog::TakeKey(const MSG& message) const {
    return std::ranges::any_of(parts_, [&](DialogPart* part) { return part->TakeKey(message); });
}

bool OpenedDialog::AnswerForWindow(const DialogMessage& message) {
    switch (message.Number) {
    case WM_SIZE:
        layout_.Apply(message.Dialog);
        for (DialogPart* part : parts_) part->Resized();
        return true;
    case WM_GETMINMAXINFO: {
        const SIZE smallest = layout_.Smallest();
        reinterpret_cast<MINMAXINFO*>(message.LParam)->ptMinTrackSize = {smallest.cx, smallest.cy};
        return isResizable_;
    }
    case WM_DPICHANGED:
        ChangeDpi(message.Dialog, LOWORD(message.WParam), *reinterpret_cast<const RECT*>(message.LParam));
        return true;
    case WM_DESTROY:
        if (isResizable_ && !IsPage(message.Dialog)) RememberPlace(message.Dialog, templateName_);
        return false;
    default: return false;
    }
}

void OpenedDialog::ChangeDpi(HWND dialog, int windowDpi, RECT place) {
    const int dpi = FittingOn(place, windowDpi);
    place.right = place.left + MulDiv(place.right - place.left, dpi, windowDpi);
    place.bottom = place.top + MulDiv(place.bottom - place.top, dpi, windowDpi);
    const int before = std::exchange(dpi_, dpi);
    const auto scaled = [&](LONG pixels) { return static_cast<LONG>(MulDiv(static_cast<int>(pixels), dpi, before)); };
    std::vector<std::pair<HWND, RECT>> places; // as they are before the dialog's size moves them
    ForEachControl(dialog, [&](HWND control) { places.emplace_back(control, PlaceInParent(control)); });
    layout_.Scale(dpi, before);
    MoveControl(dialog, place);
    icons_.Show(dialog, dpi);
    for (const auto& [control, at] : places)
        MoveControl(control, {scaled(at.left), scaled(at.top), scaled(at.right), scaled(at.bottom)});
    layout_.Apply(dialog);
    ChangeFont(dialog);
}

void OpenedDialog::ChangeFont(HWND dialog) {
    MessageFont font(dpi_);
    const auto handle = reinterpret_cast<WPARAM>(font.Handle());
    SendMessageA(dialog, WM_SETFONT, handle, TRUE);
    ForEachControl(dialog, [&](HWND control) { SendMessageA(control, WM_SETFONT, handle, TRUE); });
    font_ = std::move(font);
    for (DialogPart* part : parts_) part->Rescale(dpi_);
    InvalidateRect(dialog, nullptr, TRUE);
}

bool ReadCommand(const DialogMessage& message, CommandCode& code) {
    if (message.Number != WM_COMMAND) return false;
    code = {LOWORD(message.WParam), HIWORD(message.WParam)};
    return true;
}

OpenedDialog* OpenedOf(HWND dialog) { return static_cast<OpenedDialog*>(GetPropA(dialog, kOpenedProperty)); }

OpenedDialog& BeginDialog(const DialogMessage& message, std::span<const Anchor> anchors) {
    auto* opened = reinterpret_cast<OpenedDialog*>(message.LParam);
    SetPropA(message.Dialog, kOpenedProperty, opened);
    opened->Begin(message.Dialog, anchors);
    return *opened;
}

INT_PTR AnswerForAll(const DialogMessage& message, int helpContext) {
    if (IsHelpCommand(message)) {
        ShowHelp(message.Dialog, helpContext);
        return TRUE;
    }
    if (message.Number == WM_NCDESTROY) RemovePropA(message.Dialog, kOpenedProperty);
    return ColourDialog(message);
}

bool AgreesToLoseChanges() { return AskWarning(kLoseChanges); }

namespace {

// True when a part has taken the key. Who takes a key with Alt takes Alt's release, too: Windows, which saw Alt alone,
// would open the window's menu.
bool ShowToParts(const MSG& message) {
    static bool isAltTaken = false;
    if (message.wParam == VK_MENU && (message.message == WM_SYSKEYUP || message.message == WM_KEYUP))
        return std::exchange(isAltTaken, false);
    const OpenedDialog* opened = OpenedOf(GetAncestor(message.hwnd, GA_ROOT));
    const bool isTaken = opened != nullptr && opened->TakeKey(message);
    if (message.message == WM_SYSKEYDOWN) isAltTaken = isTaken;
    return isTaken;
}

// Shows the keys of a modal dialog's message loop to the dialog's parts first.
LRESULT CALLBACK FilterKeys(int code, WPARAM wParam, LPARAM lParam) {
    const auto& message = *reinterpret_cast<const MSG*>(lParam);
    const bool isKey = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
    if (code == MSGF_DIALOGBOX && isKey && ShowToParts(message)) return TRUE;
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// While one lives on a thread; those inside it do nothing.
class KeyFilter {
  public:
    KeyFilter() {
        if (depth++ == 0) hook = SetWindowsHookExW(WH_MSGFILTER, FilterKeys, nullptr, GetCurrentThreadId());
    }
    ~KeyFilter() {
        if (--depth == 0) UnhookWindowsHookEx(hook);
    }
    KeyFilter(const KeyFilter&) = delete;
    KeyFilter& operator=(const KeyFilter&) = delete;

  private:
    static inline int depth = 0;
    static inline HHOOK hook = nullptr;
};

} // namespace

INT_PTR OpenDialog(const char* templateName, HWND owner, DLGPROC procedure, void* context) {
    OpenedDialog opened(templateName, context);
    const DialogTemplate resource = opened.Load(owner);
    if (resource.empty()) return IDCANCEL;
    const KeyFilter keys;
    const INT_PTR result = DialogBoxIndirectParamW(Instance(), reinterpret_cast<LPCDLGTEMPLATEW>(resource.data()),
                                                   owner, procedure, reinterpret_cast<LPARAM>(&opened));
    return result > 0 ? result : IDCANCEL;
}

INT_PTR OpenDialogOf(ServerFile file, const char* templateName, HWND owner, DLGPROC procedure, void* context) {
    const std::string readOnly = ReadOnlyText(PathOf(file));
    if (!readOnly.empty()) SetStatusLine(readOnly, 2);
    const INT_PTR result = OpenDialog(templateName, owner, procedure, context);
    if (!readOnly.empty()) SetStatusLine("", 2);
    return result;
}

HWND CreatePlannedDialog(OpenedDialog& opened, HWND owner, DLGPROC procedure) {
    const DialogTemplate resource = opened.Load(owner);
    if (resource.empty()) return nullptr;
    return CreateDialogIndirectParamW(Instance(), reinterpret_cast<LPCDLGTEMPLATEW>(resource.data()), owner, procedure,
                                      reinterpret_cast<LPARAM>(&opened));
}

void TakeUp(HWND dialog, DialogPart& part) { OpenedOf(dialog)->TakeUp(part); }

std::string GetText(HWND dialog, int control) {
    std::size_t lacking = 0;
    return Encoded(LettersIn(GetDlgItem(dialog, control)), lacking);
}

void SetText(HWND dialog, int control, const std::string& text) { SetDlgItemTextA(dialog, control, text.c_str()); }

bool TakeText(HWND dialog, int control, std::string& text) {
    std::size_t lacking = 0;
    std::string taken = Encoded(LettersIn(GetDlgItem(dialog, control)), lacking);
    if (lacking != 0) {
        ShowError(kNotInCodePage, taken);
        FocusControl(dialog, control);
        return false;
    }
    text = std::move(taken);
    return true;
}

bool IsOfClass(HWND window, const char* name) {
    char found[32] = "";
    GetClassNameA(window, found, sizeof found);
    return lstrcmpiA(found, name) == 0;
}

HWND ArrowsOf(HWND edit) {
    const HWND next = GetWindow(edit, GW_HWNDNEXT);
    return next != nullptr && IsOfClass(next, UPDOWN_CLASSA) ? next : nullptr;
}

void EnableControl(HWND dialog, int control, bool enabled) {
    const HWND window = GetDlgItem(dialog, control);
    if (!enabled && GetFocus() == window) SendMessageA(dialog, WM_NEXTDLGCTL, 0, FALSE);
    EnableWindow(window, enabled);
    if (const HWND arrows = ArrowsOf(window)) EnableWindow(arrows, enabled);
}

void FocusControl(HWND dialog, int control) {
    // The dialog manager selects the text of the control that it moves the focus to.
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, control)), TRUE);
}

int UnitsAcross(HWND dialog, int units) {
    RECT area{0, 0, units, 0};
    MapDialogRect(dialog, &area);
    return area.right;
}

int UnitsDown(HWND dialog, int units) {
    RECT area{0, 0, 0, units};
    MapDialogRect(dialog, &area);
    return area.bottom;
}

KeepFocus::KeepFocus() : window_(GetFocus()) {}

KeepFocus::~KeepFocus() {
    if (IsWindow(window_) && IsWindowEnabled(window_)) SetFocus(window_);
}

WaitCursor::WaitCursor() { CurrentFront().ShowWaitCursor(true); }
WaitCursor::~WaitCursor() { CurrentFront().ShowWaitCursor(false); }

} // namespace bv
