#include "dialogs/list_view_dlg.h"

#include <windowsx.h>

#include <algorithm>
#include <sstream>
#include <unordered_set>
#include <utility>

#include "dialogs/button_menu_dlg.h"
#include "dialogs/clipboard_dlg.h"
#include "platform/ascii.h"
#include "platform/user_settings.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr int kFilterLimit = 100;
constexpr int kSortMenuBase = 0x100; // of menu items: a column each
constexpr UINT kSelected = LVIS_SELECTED;
constexpr UINT kFocusedAndSelected = LVIS_FOCUSED | LVIS_SELECTED;

LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageW(window, message, wParam, lParam);
}

void SetItemState(HWND list, int item, UINT state, UINT mask) {
    LVITEMW change{};
    change.state = state;
    change.stateMask = mask;
    Send(list, LVM_SETITEMSTATE, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&change));
}

int NextItem(HWND list, int after, UINT flags) {
    return static_cast<int>(Send(list, LVM_GETNEXTITEM, static_cast<WPARAM>(after), static_cast<LPARAM>(flags)));
}

std::wstring Widen(std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(std::max(length, 0)));
    return wide;
}

std::string Narrow(const wchar_t* text) {
    std::string narrow(static_cast<std::size_t>(lstrlenW(text)) * 2 + 1, '\0');
    const int length =
        WideCharToMultiByte(CP_ACP, 0, text, -1, narrow.data(), static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<std::size_t>(std::max(length - 1, 0)));
    return narrow;
}

bool IsDown(int key) { return GetKeyState(key) < 0; }

std::string ColumnName(const ListPlan& plan, std::size_t column) {
    return plan.Name + ("Column" + std::to_string(column + 1));
}

int NumberIn(const std::optional<std::string>& text, int otherwise) {
    std::istringstream numbers(text.value_or(""));
    int number = 0;
    return numbers >> number ? number : otherwise;
}

} // namespace

void ListView::Begin(HWND dialog) {
    dialog_ = dialog;
    dpi_ = DpiOf(dialog);
    if (plan_.Filter != 0) order_.Filter(GetText(dialog, plan_.Filter)); // of a page that is made anew: empty
    const HWND list = Window();
    constexpr LPARAM kStyles = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP | LVS_EX_INFOTIP;
    const LPARAM styles = kStyles | (plan_.HasTicks ? LVS_EX_CHECKBOXES : 0);
    Send(list, LVM_SETEXTENDEDLISTVIEWSTYLE, static_cast<WPARAM>(styles), styles);
    if (plan_.HasTicks) Send(list, LVM_SETCALLBACKMASK, LVIS_STATEIMAGEMASK); // the model has the ticks
    MakeColumns();
    if (plan_.Filter != 0) {
        SendDlgItemMessageW(dialog, plan_.Filter, EM_LIMITTEXT, kFilterLimit, 0);
        SetWindowSubclass(GetDlgItem(dialog, plan_.Filter), FilterKeys, 1, reinterpret_cast<DWORD_PTR>(this));
    }
    TakeUp(dialog, *this);
}

void ListView::Change(const ListPlan& plan) {
    RememberColumns();
    for (std::size_t i = plan_.Columns.size(); i > 0; --i) Send(Window(), LVM_DELETECOLUMN, i - 1);
    plan_ = plan;
    order_.Sort(std::nullopt);
    MakeColumns();
}

void ListView::MakeColumns() {
    const std::string folder = SettingsFolder(OpenedOf(dialog_)->TemplateName());
    platform::UserSettings& settings = platform::TheUserSettings();
    for (std::size_t i = 0; i < plan_.Columns.size(); ++i) {
        const ListColumn& column = plan_.Columns[i];
        std::wstring title = Widen(column.Title);
        LVCOLUMNW made{};
        made.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        made.fmt = column.IsRight ? LVCFMT_RIGHT : LVCFMT_LEFT;
        made.cx = UnitsAcross(dialog_, NumberIn(settings.Read(folder, ColumnName(plan_, i)), column.Units));
        made.pszText = title.data();
        Send(Window(), LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&made));
    }
    const int kept = NumberIn(settings.Read(folder, std::string(plan_.Name) + "Sort"),
                              plan_.IsSorted ? 1 : 0); // from 1; below 0 downwards
    const auto column = static_cast<std::size_t>(std::abs(kept));
    if (column == 0 || column > plan_.Columns.size()) return;
    order_.Sort(RowOrder::SortBy{column - 1, kept > 0});
}

// What is left of the list's width is the last column's.
void ListView::FillWidth() const {
    RECT client{};
    GetClientRect(Window(), &client);
    const WPARAM last = plan_.Columns.size() - 1;
    LRESULT others = 0;
    for (WPARAM i = 0; i < last; ++i) others += Send(Window(), LVM_GETCOLUMNWIDTH, i);
    const LRESULT least = UnitsAcross(dialog_, plan_.Columns.back().Units);
    Send(Window(), LVM_SETCOLUMNWIDTH, last, std::max<LRESULT>(client.right - others, least));
}

void ListView::RememberColumns() const {
    const std::string folder = SettingsFolder(OpenedOf(dialog_)->TemplateName());
    platform::UserSettings& settings = platform::TheUserSettings();
    constexpr int kManyUnits = 1000;
    const int pixels = std::max(UnitsAcross(dialog_, kManyUnits), 1);
    for (std::size_t i = 0; i + 1 < plan_.Columns.size(); ++i) {
        const int width = static_cast<int>(Send(Window(), LVM_GETCOLUMNWIDTH, i));
        const int units = MulDiv(width, kManyUnits, pixels);
        if (std::abs(units - plan_.Columns[i].Units) > 1 || settings.Read(folder, ColumnName(plan_, i)))
            settings.Write(folder, ColumnName(plan_, i), std::to_string(units));
    }
    const std::optional<RowOrder::SortBy> sorted = order_.Sorted();
    const int column = sorted ? static_cast<int>(sorted->Column) + 1 : 0;
    settings.Write(folder, std::string(plan_.Name) + "Sort", std::to_string(sorted && !sorted->Up ? -column : column));
}

void ListView::Rescale(int dpi) {
    const int before = std::exchange(dpi_, dpi);
    for (std::size_t i = 0; i < plan_.Columns.size(); ++i) {
        const int width = static_cast<int>(Send(Window(), LVM_GETCOLUMNWIDTH, i));
        Send(Window(), LVM_SETCOLUMNWIDTH, i, MulDiv(width, dpi_, before));
    }
    FillWidth();
}

void ListView::Refill(const std::function<bool()>& read) {
    const std::vector<std::string> names = SelectedNames();
    const int place = NextItem(Window(), -1, LVNI_SELECTED);
    order_.Clear(); // a box or a progress that shows meanwhile has the list drawn
    isRead_ = read();
    order_.Reset();
    const std::unordered_set<std::string> wanted(names.begin(), names.end());
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; !wanted.empty() && row < rows_.Count(); ++row)
        if (wanted.contains(rows_.Name(row))) rows.push_back(row);
    SelectRows(rows, static_cast<std::size_t>(std::max(place, 0)));
}

std::size_t ListView::CountSelected() const { return static_cast<std::size_t>(Send(Window(), LVM_GETSELECTEDCOUNT)); }

std::vector<std::size_t> ListView::Selected() const {
    std::vector<std::size_t> rows;
    if (CountSelected() == order_.Shown()) {
        for (std::size_t place = 0; place < order_.Shown(); ++place) rows.push_back(order_.RowAt(place));
        return rows;
    }
    for (int item = NextItem(Window(), -1, LVNI_SELECTED); item >= 0; item = NextItem(Window(), item, LVNI_SELECTED)) {
        const auto place = static_cast<std::size_t>(item);
        if (place < order_.Shown()) rows.push_back(order_.RowAt(place)); // none while the rows are read
    }
    return rows;
}

std::vector<std::string> ListView::SelectedNames() const {
    std::vector<std::string> names;
    for (const std::size_t row : Selected()) names.push_back(rows_.Name(row));
    return names;
}

void ListView::SelectName(std::string_view name) {
    for (std::size_t row = 0; row < rows_.Count(); ++row) {
        if (!EqualFolded(rows_.Name(row), name)) continue;
        if (!order_.PlaceOf(row)) SetText(dialog_, plan_.Filter, {});
        return SelectRows({row}, 0);
    }
}

// Selects the rows that are shown, or the place when none of them is.
void ListView::SelectRows(const std::vector<std::size_t>& rows, std::size_t place) {
    std::vector<std::size_t> places;
    for (const std::size_t row : rows)
        if (const std::optional<std::size_t> shown = order_.PlaceOf(row)) places.push_back(*shown);
    if (places.empty() && order_.Shown() > 0) places.push_back(std::min(place, order_.Shown() - 1));
    std::ranges::sort(places);
    ShowOrder();
    SelectPlaces(places);
}

// The control tells of each row by itself, which counts only when all are selected.
void ListView::SelectAll() {
    isChanging_ = true;
    Send(Window(), WM_SETREDRAW, FALSE);
    SetItemState(Window(), -1, kSelected, kSelected);
    Send(Window(), WM_SETREDRAW, TRUE);
    isChanging_ = false;
    ShowCount();
    Notify(kListSelected);
}

// A change of all rows at once visits all of them, so that a few are better changed one by one.
void ListView::Deselect() const {
    constexpr std::size_t kFew = 100;
    const HWND list = Window();
    if (CountSelected() > kFew) return SetItemState(list, -1, 0, kSelected);
    for (int item = NextItem(list, -1, LVNI_SELECTED); item >= 0; item = NextItem(list, item, LVNI_SELECTED))
        SetItemState(list, item, 0, kSelected);
}

void ListView::SelectPlaces(const std::vector<std::size_t>& places) {
    const HWND list = Window();
    isChanging_ = true;
    Send(list, WM_SETREDRAW, FALSE);
    const bool all = places.size() == order_.Shown();
    if (all && !places.empty()) {
        SetItemState(list, -1, kSelected, kSelected);
    } else {
        Deselect();
        for (const std::size_t place : places) SetItemState(list, static_cast<int>(place), kSelected, kSelected);
    }
    if (!places.empty()) {
        const int first = static_cast<int>(places.front());
        SetItemState(list, first, kFocusedAndSelected, kFocusedAndSelected);
        Send(list, LVM_SETSELECTIONMARK, 0, first);
        Send(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(first), FALSE);
    }
    Send(list, WM_SETREDRAW, TRUE);
    isChanging_ = false;
    ShowCount();
    Notify(kListSelected);
}

void ListView::ShowOrder() {
    isChanging_ = true;
    Send(Window(), LVM_SETITEMCOUNT, order_.Shown(), 0);
    isChanging_ = false;
    FillWidth(); // a scroll bar may have come or gone
    ShowArrow();
    InvalidateRect(Window(), nullptr, FALSE);
}

void ListView::ShowArrow() const {
    const auto header = reinterpret_cast<HWND>(Send(Window(), LVM_GETHEADER));
    const std::optional<RowOrder::SortBy> sorted = order_.Sorted();
    for (std::size_t i = 0; i < plan_.Columns.size(); ++i) {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        Send(header, HDM_GETITEMW, i, reinterpret_cast<LPARAM>(&item));
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (sorted && sorted->Column == i) item.fmt |= sorted->Up ? HDF_SORTUP : HDF_SORTDOWN;
        Send(header, HDM_SETITEMW, i, reinterpret_cast<LPARAM>(&item));
    }
}

void ListView::ShowCount() const {
    if (plan_.Count == 0) return;
    std::string text = plan_.HasTicks ? FillMessage(kRowsTicked, order_.Shown(), rows_.Count(), CountTicked())
                                      : FillMessage(kRowsShown, order_.Shown(), rows_.Count(), CountSelected());
    if (!isRead_)
        text = FillMessage(kListUnreadable);
    else if (rows_.Count() == 0)
        text = FillMessage(kListEmpty);
    else if (order_.Shown() == 0)
        text = FillMessage(kNothingFits, GetText(dialog_, plan_.Filter));
    SetText(dialog_, plan_.Count, text);
}

std::size_t ListView::CountTicked() const {
    std::size_t ticked = 0;
    for (std::size_t row = 0; row < rows_.Count(); ++row)
        if (rows_.IsTicked(row)) ++ticked;
    return ticked;
}

void ListView::ShowChanged() const {
    InvalidateRect(Window(), nullptr, FALSE);
    ShowCount();
}

void ListView::Notify(int code) const {
    SendMessageW(dialog_, WM_COMMAND, MAKEWPARAM(plan_.List, code), reinterpret_cast<LPARAM>(Window()));
}

bool ListView::Answer(const DialogMessage& message, INT_PTR& result) {
    if (message.Number == WM_NOTIFY) {
        const auto& notice = *reinterpret_cast<const NMHDR*>(message.LParam);
        return notice.idFrom == static_cast<UINT_PTR>(plan_.List) && AnswerNotice(notice, result);
    }
    if (message.Number == WM_COMMAND && plan_.Filter != 0 && LOWORD(message.WParam) == plan_.Filter &&
        HIWORD(message.WParam) == EN_CHANGE) {
        ApplyFilter();
        return true;
    }
    if (message.Number == WM_CONTEXTMENU && reinterpret_cast<HWND>(message.WParam) == Window()) {
        OpenMenu({GET_X_LPARAM(message.LParam), GET_Y_LPARAM(message.LParam)});
        return true;
    }
    if (message.Number == WM_DESTROY) RememberColumns();
    return false;
}

// The control itself would select the row at hand alone, and knows no keys that move it.
bool ListView::TakeKey(const MSG& message) {
    const bool isMove = message.message == WM_SYSKEYDOWN && (message.wParam == VK_UP || message.wParam == VK_DOWN);
    if (isMove && message.hwnd == Window()) {
        Notify(message.wParam == VK_UP ? kListMoveUp : kListMoveDown);
        return true;
    }
    const bool isSpace = message.message == WM_KEYDOWN && message.wParam == VK_SPACE && !IsDown(VK_CONTROL);
    if (!plan_.HasTicks || !isSpace || message.hwnd != Window()) return false;
    TickSelected();
    return true;
}

bool ListView::AnswerNotice(const NMHDR& notice, INT_PTR& result) {
    switch (notice.code) {
    case LVN_GETDISPINFOW: ShowCell(reinterpret_cast<NMLVDISPINFOW&>(const_cast<NMHDR&>(notice))); return true;
    case LVN_ITEMCHANGED:
    case LVN_ODSTATECHANGED:
        if (isChanging_) return true;
        ShowCount();
        Notify(kListSelected);
        return true;
    case LVN_ODFINDITEMW: {
        const auto& wanted = reinterpret_cast<const NMLVFINDITEMW&>(notice);
        const auto found = order_.Find(Narrow(wanted.lvfi.psz), static_cast<std::size_t>(std::max(wanted.iStart, 0)));
        SetWindowLongPtrW(dialog_, DWLP_MSGRESULT, found ? static_cast<LONG_PTR>(*found) : -1);
        result = TRUE;
        return true;
    }
    case LVN_COLUMNCLICK: ClickColumn(reinterpret_cast<const NMLISTVIEW&>(notice).iSubItem); return true;
    case LVN_KEYDOWN: PressKey(reinterpret_cast<const NMLVKEYDOWN&>(notice).wVKey); return true;
    case NM_CLICK:
        if (plan_.HasTicks) ClickBox(reinterpret_cast<const NMITEMACTIVATE&>(notice));
        return true;
    case NM_DBLCLK:
        if (reinterpret_cast<const NMITEMACTIVATE&>(notice).iItem >= 0) Notify(kListOpen);
        return true;
    case NM_SETFOCUS:
        if (plan_.DefaultButton == 0) return true;
        defaultButton_ = LOWORD(SendMessageW(dialog_, DM_GETDEFID, 0, 0));
        SendMessageW(dialog_, DM_SETDEFID, static_cast<WPARAM>(plan_.DefaultButton), 0);
        return true;
    case NM_KILLFOCUS:
        if (plan_.DefaultButton != 0) SendMessageW(dialog_, DM_SETDEFID, defaultButton_, 0);
        return true;
    default: return false;
    }
}

void ListView::ShowCell(NMLVDISPINFOW& cell) {
    const auto place = static_cast<std::size_t>(cell.item.iItem);
    const bool isShown = place < order_.Shown(); // none is while the rows are read
    if (isShown && plan_.HasTicks && (cell.item.mask & LVIF_STATE) != 0 && cell.item.iSubItem == 0) {
        cell.item.stateMask |= LVIS_STATEIMAGEMASK;
        cell.item.state |= INDEXTOSTATEIMAGEMASK(rows_.IsTicked(order_.RowAt(place)) ? 2U : 1U);
    }
    if ((cell.item.mask & LVIF_TEXT) == 0) return;
    const auto column = static_cast<std::size_t>(cell.item.iSubItem);
    cell_ = isShown ? Widen(rows_.Text(order_.RowAt(place), column)) : std::wstring();
    lstrcpynW(cell.item.pszText, cell_.c_str(), cell.item.cchTextMax);
}

void ListView::PressKey(WORD key) {
    struct KeyCode {
        WORD Key;
        int Code;
    };
    static constexpr KeyCode kCodes[] = {
        {VK_F2, kListRename}, {VK_INSERT, kListAdd}, {VK_DELETE, kListDelete}, {VK_F5, kListReload}};
    if (IsDown(VK_CONTROL)) {
        if (key == 'A') SelectAll();
        if (key == 'C' || key == VK_INSERT) CopySelected();
        if (key == 'F' && plan_.Filter != 0) FocusControl(dialog_, plan_.Filter);
        return;
    }
    for (const KeyCode& code : kCodes)
        if (code.Key == key) return Notify(code.Code);
}

// Ticks all the selected rows that can be ticked, or unticks them when all of these are.
void ListView::TickSelected() {
    const std::vector<std::size_t> rows = Selected();
    if (rows.empty() || !tick_) return;
    const std::size_t before = CountTicked();
    for (const std::size_t row : rows) tick_(row, true);
    if (CountTicked() == before)
        for (const std::size_t row : rows) tick_(row, false);
    ShowChanged();
    Notify(kListSelected);
}

void ListView::ClickBox(const NMITEMACTIVATE& click) {
    LVHITTESTINFO hit{};
    hit.pt = click.ptAction;
    const auto item = static_cast<int>(Send(Window(), LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    if (item < 0 || (hit.flags & LVHT_ONITEMSTATEICON) == 0 || !tick_) return;
    const std::size_t row = order_.RowAt(static_cast<std::size_t>(item));
    tick_(row, !rows_.IsTicked(row));
    ShowChanged();
    Notify(kListSelected);
}

// Up, down, file order.
void ListView::ClickColumn(int column) {
    const std::optional<RowOrder::SortBy> now = order_.Sorted();
    const auto wanted = static_cast<std::size_t>(column);
    if (!now || now->Column != wanted) return SortBy(RowOrder::SortBy{wanted, true});
    if (now->Up) return SortBy(RowOrder::SortBy{wanted, false});
    SortBy(std::nullopt);
}

void ListView::SortBy(std::optional<RowOrder::SortBy> by) {
    const WaitCursor wait;
    const std::vector<std::size_t> rows = Selected();
    order_.Sort(by);
    SelectRows(rows, 0);
}

void ListView::ApplyFilter() {
    const std::vector<std::size_t> rows = Selected();
    order_.Filter(GetText(dialog_, plan_.Filter));
    SelectRows(rows, 0);
}

void ListView::CopySelected() const {
    std::string text;
    for (const std::size_t row : Selected()) {
        for (std::size_t column = 0; column < plan_.Columns.size(); ++column) {
            if (column > 0) text += '\t';
            text += rows_.Text(row, column);
        }
        text += "\r\n";
    }
    CopyToClipboard(dialog_, text);
}

// The buttons that act on the rows, and "Sort by", which a header offers to the mouse alone.
void ListView::OpenMenu(POINT at) {
    if (at.x == -1 && at.y == -1) {
        RECT item{LVIR_LABEL, 0, 0, 0};
        const int focused = NextItem(Window(), -1, LVNI_FOCUSED);
        Send(Window(), LVM_GETITEMRECT, static_cast<WPARAM>(std::max(focused, 0)), reinterpret_cast<LPARAM>(&item));
        at = {item.left, item.bottom};
        ClientToScreen(Window(), &at);
    }
    const HMENU menu = MenuOfButtons(dialog_, plan_.Menu, plan_.DefaultButton);
    const bool canSort = (GetWindowLongW(Window(), GWL_STYLE) & LVS_NOSORTHEADER) == 0; // else their order counts
    const HMENU columns = canSort ? CreatePopupMenu() : nullptr;
    for (std::size_t i = 0; canSort && i < plan_.Columns.size(); ++i) {
        const bool isSorted = order_.Sorted() && order_.Sorted()->Column == i;
        AppendMenuW(columns, isSorted ? MF_CHECKED : MF_UNCHECKED, kSortMenuBase + i,
                    Widen(plan_.Columns[i].Title).c_str());
    }
    if (canSort) AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    if (canSort) AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(columns), Widen(FillMessage(kSortBy)).c_str());
    const int item = ChooseFromMenu(dialog_, menu, at);
    const int column = item - kSortMenuBase;
    const bool isColumn = column >= 0 && column < static_cast<int>(plan_.Columns.size());
    if (isColumn) return ClickColumn(column);
    PressButton(dialog_, item);
}

// Down goes to the list; Esc empties the filter, and closes the dialog when that is empty; F5 reads anew.
LRESULT CALLBACK ListView::FilterKeys(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR data) {
    auto& self = *reinterpret_cast<ListView*>(data);
    if (message == WM_GETDLGCODE && wParam == VK_ESCAPE && GetWindowTextLengthW(edit) > 0) return DLGC_WANTMESSAGE;
    if (message == WM_KEYDOWN) {
        if (wParam == VK_DOWN) FocusControl(self.dialog_, self.plan_.List);
        if (wParam == VK_F5) self.Notify(kListReload);
        if (wParam == VK_ESCAPE) SetWindowTextW(edit, L"");
        if (wParam == VK_DOWN || wParam == VK_F5 || wParam == VK_ESCAPE) return 0;
    }
    if (message == WM_CHAR && wParam == VK_ESCAPE) return 0;
    if (message == WM_NCDESTROY) RemoveWindowSubclass(edit, FilterKeys, id);
    return DefSubclassProc(edit, message, wParam, lParam);
}

} // namespace bv
