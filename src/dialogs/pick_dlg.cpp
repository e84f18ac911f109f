#include "dialogs/pick_dlg.h"

#include <cderr.h>
#include <commdlg.h>
#include <objbase.h>
#include <shlobj.h>

#include <array>
#include <cstring>

#include "ctlfile/paths.h"

namespace bv {
namespace {

// The dialog for directories in its larger form needs the system's objects.
class UseObjects {
  public:
    UseObjects() : isReady_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~UseObjects() {
        if (isReady_) CoUninitialize();
    }
    UseObjects(const UseObjects&) = delete;
    UseObjects& operator=(const UseObjects&) = delete;

  private:
    bool isReady_;
};

int CALLBACK SelectBeginning(HWND dialog, UINT message, LPARAM, LPARAM path) {
    if (message == BFFM_INITIALIZED) SendMessageA(dialog, BFFM_SETSELECTIONA, TRUE, path);
    return 0;
}

} // namespace

std::optional<std::string> PickFile(HWND owner, const FilePick& pick, const std::string& path) {
    std::array<char, kMaxPath + 1> file{};
    if (path.size() < file.size()) std::memcpy(file.data(), path.data(), path.size());
    OPENFILENAMEA dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrTitle = pick.Title;
    dialog.lpstrFilter = pick.Filter;
    dialog.lpstrFile = file.data();
    dialog.nMaxFile = static_cast<DWORD>(file.size());
    dialog.lpstrDefExt = pick.Extension;
    dialog.Flags = OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST;
    dialog.Flags |= pick.What == PickFor::Opening ? OFN_FILEMUSTEXIST : OFN_OVERWRITEPROMPT;
    const auto open = [&] {
        return pick.What == PickFor::Opening ? GetOpenFileNameA(&dialog) : GetSaveFileNameA(&dialog);
    };
    BOOL picked = open();
    if (!picked && CommDlgExtendedError() == FNERR_INVALIDFILENAME) { // what was typed is no path: without it
        file.front() = '\0';
        picked = open();
    }
    if (!picked) return std::nullopt;
    return std::string(file.data());
}

std::optional<std::string> PickCsvFile(HWND owner, PickFor what, const std::string& path) {
    constexpr const char* kFilter = "Comma-separated values (*.csv)\0*.csv\0All files (*.*)\0*.*\0";
    return PickFile(owner, {.Title = nullptr, .Filter = kFilter, .Extension = "csv", .What = what}, path);
}

std::optional<std::string> PickDirectory(HWND owner, const char* title, const std::string& path) {
    const UseObjects objects;
    BROWSEINFOA dialog{};
    dialog.hwndOwner = owner;
    dialog.lpszTitle = title;
    dialog.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    dialog.lpfn = SelectBeginning;
    dialog.lParam = reinterpret_cast<LPARAM>(path.c_str());
    const LPITEMIDLIST picked = SHBrowseForFolderA(&dialog);
    if (picked == nullptr) return std::nullopt;
    std::array<char, MAX_PATH> directory{};
    const bool isDirectory = SHGetPathFromIDListA(picked, directory.data()) != FALSE;
    CoTaskMemFree(picked);
    if (!isDirectory) return std::nullopt;
    return WithBackslash(directory.data());
}

} // namespace bv
