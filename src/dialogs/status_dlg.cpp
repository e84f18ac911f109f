#include "dialogs/status_dlg.h"

#include <algorithm>
#include <array>
#include <vector>

#include "dialogs/live_text_dlg.h"
#include "resources/ids.h"

namespace bv {
namespace {

constexpr std::string_view kBetween = "  -  ";

struct Status {
    std::array<std::string, 2> Lines;
    std::vector<HWND> Dialogs;
};

Status& TheStatus() {
    static Status status;
    return status;
}

std::string StatusText(const Status& status) {
    const auto& [what, details] = status.Lines;
    if (what.empty() || details.empty()) return what + details;
    return what + std::string(kBetween) + details;
}

} // namespace

void FollowStatus(HWND dialog) {
    const HWND line = GetDlgItem(dialog, ID_STATUS_LINE);
    if (line == nullptr) return;
    MakeLive(line);
    Status& status = TheStatus();
    if (status.Dialogs.empty()) status.Lines = {};
    status.Dialogs.push_back(dialog);
}

bool ShowStatusInDialogs(int line, const std::string& text) {
    Status& status = TheStatus();
    std::erase_if(status.Dialogs, [](HWND dialog) { return !IsWindow(dialog); });
    if (line != 1 && line != 2) return true;
    status.Lines[static_cast<std::size_t>(line - 1)] = text;
    const std::string shown = StatusText(status);
    for (const HWND dialog : status.Dialogs) ShowLiveText(GetDlgItem(dialog, ID_STATUS_LINE), shown);
    return !status.Dialogs.empty();
}

} // namespace bv
