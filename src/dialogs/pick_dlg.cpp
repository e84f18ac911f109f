#include "dialogs/pick_dlg.h"

#include <commdlg.h>

#include <array>
#include <cstring>

namespace bv {

std::optional<std::string> PickCsvFile(HWND owner, PickFor what, const std::string& path) {
    constexpr const char* kFilter = "Comma-separated values (*.csv)\0*.csv\0All files (*.*)\0*.*\0";
    constexpr std::size_t kLongestPath = 268;
    std::array<char, kLongestPath + 1> file{};
    if (path.size() < file.size()) std::memcpy(file.data(), path.data(), path.size());
    OPENFILENAMEA dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = kFilter;
    dialog.lpstrFile = file.data();
    dialog.nMaxFile = static_cast<DWORD>(file.size());
    dialog.lpstrDefExt = "csv";
    dialog.Flags = OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST;
    dialog.Flags |= what == PickFor::Opening ? OFN_FILEMUSTEXIST : OFN_OVERWRITEPROMPT;
    const BOOL picked = what == PickFor::Opening ? GetOpenFileNameA(&dialog) : GetSaveFileNameA(&dialog);
    if (!picked) return std::nullopt;
    return std::string(file.data());
}

} // namespace bv
