#include "dialogs/page_host_dlg.h"

#include <commctrl.h>
#include <uxtheme.h>

#include <algorithm>

#include "dialogs/fields_dlg.h"
#include "resources/ids.h"

namespace bv {
namespace {

// The pages' ground is that of the tab control, where the system draws one.
void GiveTexture(HWND page) {
    using Entry = HRESULT(WINAPI*)(HWND, DWORD);
    const HMODULE themes = GetModuleHandleA("UXTHEME.DLL");
    if (themes == nullptr) return;
    const auto enable =
        reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(themes, "EnableThemeDialogTexture")));
    if (enable != nullptr) enable(page, ETDT_ENABLETAB);
}

} // namespace

void PageHost::Begin(HWND dialog, int chooser, const std::vector<Page>& pages, std::size_t first) {
    dialog_ = dialog;
    chooser_ = GetDlgItem(dialog, chooser);
    for (const Page& page : pages) {
        pages_.emplace_back(page);
        AddTitle(pages_.size() - 1, page);
    }
    TakeUp(dialog, *this);
    front_ = first;
    Show(first);
}

void PageHost::AddTitle(std::size_t page, const Page& what) {
    TCITEMA item{};
    item.mask = TCIF_TEXT;
    std::string title = what.Title;
    item.pszText = title.data();
    SendMessageA(chooser_, TCM_INSERTITEMA, page, reinterpret_cast<LPARAM>(&item));
}

void PageHost::ShowChosen(std::size_t page) { SendMessageA(chooser_, TCM_SETCURSEL, page, 0); }

void PageHost::Place(HWND window) const {
    RECT area = PlaceInParent(chooser_);
    SendMessageA(chooser_, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    GiveTexture(window);
    // Behind the tab control in the order of the keyboard, in front of it on the screen.
    SetWindowPos(window, HWND_TOP, area.left, area.top, area.right - area.left, area.bottom - area.top, SWP_NOACTIVATE);
    SetWindowPos(chooser_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    SetWindowPos(window, chooser_, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

HWND PageHost::Window(std::size_t page) {
    Shown& shown = pages_.at(page);
    if (shown.Window != nullptr) return shown.Window;
    shown.Opened = std::make_unique<OpenedDialog>(
        shown.What.Template, shown.What.Context != nullptr ? shown.What.Context : OpenedOf(dialog_)->Context());
    shown.Window = CreatePlannedDialog(*shown.Opened, dialog_, shown.What.Procedure);
    SetWindowSubclass(shown.Window, FollowPage, 1, reinterpret_cast<DWORD_PTR>(this));
    Place(shown.Window);
    shown.State = StateOfControls(shown.Window);
    return shown.Window;
}

void PageHost::Show(std::size_t page, int control) {
    const HWND window = Window(page);
    const HWND before = pages_.at(front_).Window;
    ShowChosen(page);
    ShowWindow(window, SW_SHOWNA);
    if (before != nullptr && before != window) {
        if (IsChild(before, GetFocus())) SetFocus(chooser_);
        ShowWindow(before, SW_HIDE);
    }
    front_ = page;
    if (control != 0) SendMessageA(dialog_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(window, control)), TRUE);
}

void PageHost::ShowFault(const char* pageTemplate, int control) {
    for (std::size_t i = 0; i < pages_.size(); ++i)
        if (std::string_view(pages_[i].What.Template) == pageTemplate) return Show(i, control);
}

void PageHost::FocusFirst() {
    const HWND first = GetNextDlgTabItem(pages_.at(front_).Window, nullptr, FALSE);
    SendMessageA(dialog_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(first), TRUE);
}

int PageHost::Take(Shown& page) const {
    if (page.Window == nullptr || page.What.Take == nullptr) return 0;
    return page.What.Take(page.Window, page.Opened->Context());
}

bool PageHost::Leave() {
    const int fault = Take(pages_.at(front_));
    if (fault != 0) Show(front_, fault);
    return fault == 0;
}

bool PageHost::TakeAll() {
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        const int fault = Take(pages_[i]);
        if (fault == 0) continue;
        Show(i, fault);
        return false;
    }
    return true;
}

void PageHost::FillAnew() {
    const HWND front = pages_.at(front_).Window;
    HWND focus = GetFocus();
    while (focus != nullptr && GetParent(focus) != front) focus = GetAncestor(focus, GA_PARENT);
    const int control = focus == nullptr ? 0 : GetDlgCtrlID(focus);
    for (Shown& page : pages_) {
        if (page.Window != nullptr) DestroyWindow(page.Window);
        page.Window = nullptr;
    }
    Show(front_, control);
}

LRESULT CALLBACK PageHost::FollowPage(HWND page, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR data) {
    const LRESULT result = DefSubclassProc(page, message, wParam, lParam);
    if (message == WM_COMMAND) reinterpret_cast<PageHost*>(data)->Touched();
    if (message == WM_NCDESTROY) RemoveWindowSubclass(page, FollowPage, id);
    return result;
}

void PageHost::NoteAsFilled(HWND page) {
    for (Shown& shown : pages_)
        if (shown.Window == page) shown.State = StateOfControls(page);
}

bool PageHost::IsEdited() const {
    return std::ranges::any_of(
        pages_, [](const Shown& page) { return page.Window != nullptr && StateOfControls(page.Window) != page.State; });
}

bool PageHost::Answer(const DialogMessage& message, INT_PTR& result) {
    if (message.Number == WM_COMMAND && LOWORD(message.WParam) == ID_HELP_BUTTON) {
        SendMessageA(pages_.at(front_).Window, WM_COMMAND, ID_HELP_BUTTON, 0);
        return true;
    }
    if (message.Number != WM_NOTIFY) return false;
    const auto& notice = *reinterpret_cast<const NMHDR*>(message.LParam);
    return notice.hwndFrom == chooser_ && AnswerChooser(notice, result);
}

bool PageHost::AnswerChooser(const NMHDR& notice, INT_PTR& result) {
    if (notice.code == TCN_SELCHANGING) {
        SetWindowLongPtrA(dialog_, DWLP_MSGRESULT, Leave() ? FALSE : TRUE);
        result = TRUE;
    }
    if (notice.code == TCN_SELCHANGE) Show(static_cast<std::size_t>(SendMessageA(chooser_, TCM_GETCURSEL, 0, 0)));
    return true;
}

void PageHost::Turn(std::size_t page) {
    if (Leave()) return Show(page);
    ShowChosen(front_);
}

void PageHost::Step(int by) {
    const auto count = static_cast<int>(pages_.size());
    Turn(static_cast<std::size_t>((static_cast<int>(front_) + by + count) % count));
}

bool PageHost::TakeKey(const MSG& message) {
    if (message.message != WM_KEYDOWN || message.wParam != VK_TAB || GetKeyState(VK_CONTROL) >= 0) return false;
    Step(GetKeyState(VK_SHIFT) < 0 ? -1 : 1);
    return true;
}

} // namespace bv
