#include "dialogs/list_dlg.h"

#include "platform/ascii.h"

namespace bv {
namespace {

std::string EntryText(HWND combo, int index) {
    const auto which = static_cast<WPARAM>(index);
    const LRESULT length = SendMessageA(combo, CB_GETLBTEXTLEN, which, 0);
    if (length < 0) return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    const LRESULT copied = SendMessageA(combo, CB_GETLBTEXT, which, reinterpret_cast<LPARAM>(text.data()));
    text.resize(copied < 0 ? 0 : static_cast<std::size_t>(copied));
    return text;
}

} // namespace

void ComboBoxTarget::Clear() { SendMessageA(combo_, CB_RESETCONTENT, 0, 0); }

void ComboBoxTarget::Add(const std::string& entry) {
    SendMessageA(combo_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
}

bool ComboBoxTarget::Contains(const std::string& entry) const {
    const auto count = static_cast<int>(SendMessageA(combo_, CB_GETCOUNT, 0, 0));
    for (int i = 0; i < count; ++i)
        if (EqualFolded(EntryText(combo_, i), entry)) return true;
    return false;
}

} // namespace bv
