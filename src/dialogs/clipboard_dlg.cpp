#include "dialogs/clipboard_dlg.h"

#include <cstring>

namespace bv {

void CopyToClipboard(HWND owner, const std::string& text) {
    if (!OpenClipboard(owner)) return;
    EmptyClipboard();
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, text.size() + 1);
    if (memory != nullptr) {
        std::memcpy(GlobalLock(memory), text.c_str(), text.size() + 1);
        GlobalUnlock(memory);
        if (SetClipboardData(CF_TEXT, memory) == nullptr)
            GlobalFree(memory); // the system has the other forms made of it
    }
    CloseClipboard();
}

} // namespace bv
