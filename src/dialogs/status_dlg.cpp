#include "dialogs/status_dlg.h"

#include <algorithm>
#include <array>
#include <vector>

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

void ShowStatusText(HWND dialog, const std::string& text) {
    const HWND line = GetDlgItem(dialog, ID_STATUS_LINE);
    SetWindowTextA(line, text.c_str());
    UpdateWindow(line);
    NotifyWinEvent(EVENT_OBJECT_LIVEREGIONCHANGED, line, OBJID_CLIENT, CHILDID_SELF);
}

} // namespace

void FollowStatus(HWND dialog) {
    if (GetDlgItem(dialog, ID_STATUS_LINE) == nullptr) return;
    Status& status = TheStatus();
    if (status.Dialogs.empty()) status.Lines = {};
    status.Dialogs.push_back(dialog);
}

void ShowStatusInDialogs(int line, const std::string& text) {
    Status& status = TheStatus();
    std::erase_if(status.Dialogs, [](HWND dialog) { return !IsWindow(dialog); });
    if (line != 1 && line != 2) return;
    status.Lines[static_cast<std::size_t>(line - 1)] = text;
    const std::string shown = StatusText(status);
    for (const HWND dialog : status.Dialogs) ShowStatusText(dialog, shown);
}

} // namespace bv
