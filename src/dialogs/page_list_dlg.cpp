#include "dialogs/page_list_dlg.h"

#include <algorithm>
#include <utility>

#include "dialogs/font_dlg.h"
#include "dialogs/layout_dlg.h"
#include "platform/user_settings.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr UINT kTurnPage = WM_APP + 2;
constexpr UINT kPageTouched = WM_APP + 3;
constexpr int kIconSize = 20; // pixels at 96 to the inch
constexpr std::size_t kLongestSearch = 100;
constexpr const char* kLastPage = "Page"; // its template: in another version it may have another number

std::string FolderOf(HWND dialog) { return SettingsFolder(OpenedOf(dialog)->TemplateName()); }

// The page in front when the dialog was closed; the first one if there is none such.
std::size_t LastPage(HWND dialog, const std::vector<Page>& pages) {
    const auto kept = platform::TheUserSettings().Read(FolderOf(dialog), kLastPage);
    const auto isKept = [&](const Page& page) { return kept == page.Template; };
    const auto found = std::ranges::find_if(pages, isKept);
    return found == pages.end() ? 0 : static_cast<std::size_t>(found - pages.begin());
}

} // namespace

void PageList::Begin(HWND dialog, const PageListPlan& plan, const std::vector<Page>& pages, Finder find) {
    plan_ = plan;
    find_ = std::move(find);
    SendDlgItemMessageA(dialog, plan.Find, EM_LIMITTEXT, kLongestSearch, 0);
    const HWND list = GetDlgItem(dialog, plan.List);
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
    LVCOLUMNA column{};
    SendMessageA(list, LVM_INSERTCOLUMNA, 0, reinterpret_cast<LPARAM>(&column));
    isListing_ = true;
    PageHost::Begin(dialog, plan.List, pages, LastPage(dialog, pages));
    isListing_ = false;
    MakeIcons(DpiOf(dialog));
    FillWidth();
}

void PageList::RememberPage() const {
    platform::TheUserSettings().Write(FolderOf(Dialog()), kLastPage, What(Front()).Template);
}

// The last column is as wide as the list, beside a scroll bar if there is one.
void PageList::FillWidth() const { SendMessageA(Chooser(), LVM_SETCOLUMNWIDTH, 0, LVSCW_AUTOSIZE_USEHEADER); }

// One image for each page.
void PageList::MakeIcons(int dpi) {
    const int size = MulDiv(kIconSize, dpi, USER_DEFAULT_SCREEN_DPI);
    const HIMAGELIST icons = ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, static_cast<int>(Count()), 0);
    for (std::size_t page = 0; page < Count(); ++page) {
        const auto icon = static_cast<HICON>(
            LoadImageA(GetModuleHandleA(nullptr), What(page).Icon, IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
        ImageList_ReplaceIcon(icons, -1, icon);
        DestroyIcon(icon);
    }
    const auto before = reinterpret_cast<HIMAGELIST>(
        SendMessageA(Chooser(), LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(icons)));
    if (before != nullptr) ImageList_Destroy(before);
}

void PageList::Rescale(int dpi) {
    PageHost::Rescale(dpi);
    MakeIcons(dpi);
    FillWidth();
}

void PageList::AddTitle(std::size_t page, const Page& what) {
    LVITEMA item{};
    item.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
    item.iItem = static_cast<int>(SendMessageA(Chooser(), LVM_GETITEMCOUNT, 0, 0));
    std::string title = what.Title;
    item.pszText = title.data();
    item.iImage = static_cast<int>(page);
    item.lParam = static_cast<LPARAM>(page);
    SendMessageA(Chooser(), LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
}

void PageList::ShowChosen(std::size_t page) {
    LVFINDINFOA wanted{};
    wanted.flags = LVFI_PARAM;
    wanted.lParam = static_cast<LPARAM>(page);
    const auto find = [&] {
        return SendMessageA(Chooser(), LVM_FINDITEMA, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&wanted));
    };
    if (find() < 0) SetText(Dialog(), plan_.Find, {}); // which lists all pages
    LVITEMA state{};
    state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    state.state = state.stateMask;
    const bool wasListing = std::exchange(isListing_, true);
    const LRESULT row = find();
    SendMessageA(Chooser(), LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&state));
    SendMessageA(Chooser(), LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
    isListing_ = wasListing;
    SetText(Dialog(), plan_.Title, What(page).Title);
}

bool PageList::AnswerChooser(const NMHDR& notice, INT_PTR&) {
    if (notice.code != LVN_ITEMCHANGED || isListing_) return false;
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(notice);
    const bool isChosen = (change.uNewState & LVIS_SELECTED) != 0 && (change.uOldState & LVIS_SELECTED) == 0;
    if (isChosen) PostMessageW(Dialog(), kTurnPage, static_cast<WPARAM>(change.lParam), 0);
    return true;
}

void PageList::Place(HWND window) const {
    const RECT area = PlaceInParent(GetDlgItem(Dialog(), plan_.Frame));
    const int inside = UnitsAcross(Dialog(), 1);
    SetWindowPos(window, GetDlgItem(Dialog(), plan_.Title), area.left + inside, area.top + inside,
                 area.right - area.left - 2 * inside, area.bottom - area.top - 2 * inside, SWP_NOACTIVATE);
}

void PageList::Touched() {
    if (!isTouched_) PostMessageW(Dialog(), kPageTouched, 0, 0);
    isTouched_ = true;
}

// Lists the pages that have a hit; the one in front stays there, listed or not.
void PageList::ListFound() {
    const std::string words = GetText(Dialog(), plan_.Find);
    const std::vector<Hit> hits = find_(words);
    isListing_ = true;
    SendMessageA(Chooser(), LVM_DELETEALLITEMS, 0, 0);
    bool hasFront = false;
    for (std::size_t page = 0; page < Count(); ++page) {
        if (std::ranges::find(hits, page, &Hit::Page) == hits.end()) continue;
        AddTitle(page, What(page));
        hasFront = hasFront || page == Front();
    }
    FillWidth();
    if (hasFront) ShowChosen(Front());
    isListing_ = false;
    SetStatusLine(hits.empty() ? FillMessage(kNothingFits, words) : std::string(), 1);
}

void PageList::GoToFirstHit() {
    const std::vector<Hit> hits = find_(GetText(Dialog(), plan_.Find));
    if (hits.empty()) return;
    Turn(hits.front().Page);
    if (Front() == hits.front().Page) Show(Front(), hits.front().Control);
}

bool PageList::Answer(const DialogMessage& message, INT_PTR& result) {
    switch (message.Number) {
    case kTurnPage:
        if (message.WParam != Front() && message.WParam < Count()) Turn(message.WParam);
        return true;
    case kPageTouched:
        isTouched_ = false;
        if (touched_) touched_();
        return true;
    case WM_DESTROY: RememberPage(); break;
    case WM_COMMAND:
        if (LOWORD(message.WParam) == plan_.Find && HIWORD(message.WParam) == EN_CHANGE) {
            ListFound();
            return true;
        }
        break;
    default: break;
    }
    return PageHost::Answer(message, result);
}

bool PageList::TakeKeyInFind(WPARAM key) {
    if (key == VK_RETURN) GoToFirstHit();
    if (key == VK_DOWN) SetFocus(Chooser());
    const bool isFilled = GetWindowTextLengthW(GetDlgItem(Dialog(), plan_.Find)) > 0;
    if (key == VK_ESCAPE && isFilled) SetText(Dialog(), plan_.Find, {});
    return key == VK_RETURN || key == VK_DOWN || (key == VK_ESCAPE && isFilled);
}

bool PageList::TakeKey(const MSG& message) {
    if (message.message == WM_KEYDOWN) {
        if (message.wParam == 'F' && GetKeyState(VK_CONTROL) < 0) {
            FocusControl(Dialog(), plan_.Find);
            return true;
        }
        if (message.hwnd == GetDlgItem(Dialog(), plan_.Find) && TakeKeyInFind(message.wParam)) return true;
    }
    return PageHost::TakeKey(message);
}

} // namespace bv
