#include "dialogs/check_list_dlg.h"

namespace bv {
namespace {

LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageA(window, message, wParam, lParam);
}

void AddColumn(HWND list, int index, const char* title, int width) {
    std::string text = title;
    LVCOLUMNA column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.cx = width;
    column.pszText = text.data();
    Send(list, LVM_INSERTCOLUMNA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&column));
}

void AddRow(HWND list, int index, const CheckList::Row& row) {
    std::string text = row.Text;
    LVITEMA item{};
    item.mask = LVIF_TEXT;
    item.iItem = index;
    item.pszText = text.data();
    Send(list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
    text = row.Note;
    item.iSubItem = 1;
    item.pszText = text.data();
    Send(list, LVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item));
}

} // namespace

void CheckList::Begin(HWND dialog, int list, const char* what, const char* note, int units,
                      const std::vector<Row>& rows) {
    dialog_ = dialog;
    list_ = list;
    isChanging_ = true;
    constexpr LPARAM kStyles = LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_INFOTIP;
    Send(Window(), LVM_SETEXTENDEDLISTVIEWSTYLE, kStyles, kStyles);
    AddColumn(Window(), 0, what, UnitsAcross(dialog, units));
    AddColumn(Window(), 1, note, 0);
    for (const Row& row : rows) {
        AddRow(Window(), static_cast<int>(locked_.size()), row);
        locked_.push_back(row.IsLocked);
        tips_.push_back(row.Tip);
    }
    Send(Window(), LVM_SETCOLUMNWIDTH, 1, LVSCW_AUTOSIZE_USEHEADER);
    LVITEMA first{};
    first.state = first.stateMask = LVIS_FOCUSED;
    Send(Window(), LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&first));
    TakeUp(dialog, *this);
    isChanging_ = false;
}

std::uint32_t CheckList::Mask() const {
    std::uint32_t mask = 0;
    for (std::size_t row = 0; row < locked_.size(); ++row) {
        const LRESULT state = Send(Window(), LVM_GETITEMSTATE, row, LVIS_STATEIMAGEMASK);
        if (static_cast<UINT>(state) == INDEXTOSTATEIMAGEMASK(2)) mask |= 1U << row;
    }
    return mask;
}

void CheckList::SetMask(std::uint32_t mask) {
    isChanging_ = true;
    for (std::size_t row = 0; row < locked_.size(); ++row) {
        LVITEMA item{};
        item.stateMask = LVIS_STATEIMAGEMASK;
        item.state = INDEXTOSTATEIMAGEMASK((mask >> row & 1U) != 0 ? 2U : 1U);
        Send(Window(), LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
    }
    isChanging_ = false;
    Send(dialog_, WM_COMMAND, MAKEWPARAM(list_, kListSelected), reinterpret_cast<LPARAM>(Window()));
}

bool CheckList::RefusesChange(const NMLISTVIEW& change) const {
    const bool isTick = (change.uChanged & LVIF_STATE) != 0 && (change.uNewState & LVIS_STATEIMAGEMASK) != 0 &&
                        ((change.uNewState ^ change.uOldState) & LVIS_STATEIMAGEMASK) != 0;
    const auto row = static_cast<std::size_t>(change.iItem);
    return isTick && !isChanging_ && row < locked_.size() && locked_[row];
}

bool CheckList::Answer(const DialogMessage& message, INT_PTR& result) {
    if (message.Number != WM_NOTIFY) return false;
    const auto& change = *reinterpret_cast<const NMLISTVIEW*>(message.LParam);
    if (change.hdr.idFrom != static_cast<UINT_PTR>(list_)) return false;
    if (change.hdr.code == LVN_GETINFOTIPW) {
        const auto& tip = *reinterpret_cast<const NMLVGETINFOTIPW*>(message.LParam);
        const std::string& text = tips_[static_cast<std::size_t>(tip.iItem)];
        if (!text.empty()) MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, tip.pszText, tip.cchTextMax);
    }
    if (change.hdr.code == LVN_ITEMCHANGING) {
        SetWindowLongPtrA(dialog_, DWLP_MSGRESULT, RefusesChange(change) ? TRUE : FALSE);
        result = TRUE;
    }
    const bool isTick = ((change.uNewState ^ change.uOldState) & LVIS_STATEIMAGEMASK) != 0;
    if (change.hdr.code == LVN_ITEMCHANGED && isTick && !isChanging_)
        Send(dialog_, WM_COMMAND, MAKEWPARAM(list_, kListSelected), reinterpret_cast<LPARAM>(Window()));
    return true;
}

} // namespace bv
