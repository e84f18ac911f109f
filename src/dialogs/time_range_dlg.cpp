#include "dialogs/time_range_dlg.h"

#include <commctrl.h>

#include <algorithm>
#include <cstdint>

#include "platform/ascii.h"
#include "users/week_days.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr int kLongestTime = 5;
constexpr int kMinutesADay = 24 * 60;

int NumberOf(const std::string& digits) {
    int number = 0;
    for (const char digit : digits) number = number * 10 + (digit - '0');
    return number;
}

// Minutes since midnight; -1 for what is no time.
int MinutesOf(const std::string& text) {
    const std::string time = FullTime(text);
    if (time.size() != kLongestTime || time[2] != ':') return -1;
    const int hours = NumberOf(time.substr(0, 2));
    const int minutes = NumberOf(time.substr(3));
    return minutes < 60 && hours * 60 + minutes <= kMinutesADay ? hours * 60 + minutes : -1;
}

} // namespace

std::string FullTime(const std::string& text) {
    std::string digits;
    for (const char character : text)
        if (character != ':') digits += character;
    const bool isTime = (digits.size() == 3 || digits.size() == 4) && std::ranges::all_of(digits, IsDigit);
    if (!isTime) return text;
    if (digits.size() == 3) digits.insert(0, 1, '0');
    return digits.substr(0, 2) + ":" + digits.substr(2);
}

void TimeRangeField::Begin(HWND dialog, int base, const std::string& text, std::string_view atOnce) {
    dialog_ = dialog;
    base_ = base;
    atOnce_ = atOnce;
    for (const int time : {kTimeAfter, kTimeBefore}) {
        SendDlgItemMessageA(dialog, base + time, EM_LIMITTEXT, kLongestTime, 0);
        SetWindowSubclass(GetDlgItem(dialog, base + time), TimeKeys, 1, 0);
    }
    if (GetDlgItem(dialog, base + kTimePicture) != nullptr) week_.Begin(dialog, base + kTimePicture, base + kTimeWords);
    Show(text);
    TakeUp(dialog, *this);
}

void TimeRangeField::Show(const std::string& text) {
    SendTimeRange range = kAnyTime;
    if (!text.empty()) {
        range.Days = 0;
        ParseSendTime(text, range);
    }
    CheckRadioButton(dialog_, base_ + kTimeAny, base_ + kTimeOnly, base_ + (text.empty() ? kTimeAny : kTimeOnly));
    if (!text.empty()) {
        ShowTimes(range);
        CheckDays(range.Days);
    }
    Update();
}

void TimeRangeField::ShowTimes(const SendTimeRange& range) {
    SetText(dialog_, base_ + kTimeAfter, FormatText("%.2d:%.2d", range.FromHour, range.FromMinute));
    SetText(dialog_, base_ + kTimeBefore, FormatText("%.2d:%.2d", range.ToHour, range.ToMinute));
}

void TimeRangeField::ChooseAtOnce() {
    SendTimeRange range{};
    ParseSendTime(atOnce_, range);
    if (StartsWithFolded(atOnce_, "AFTER")) ShowTimes(range);
    CheckDays(range.Days);
}

void TimeRangeField::CheckDays(std::uint16_t days) {
    for (std::size_t i = 0; i < std::size(kWeekDays); ++i)
        CheckDlgButton(dialog_, base_ + kTimeMonday + static_cast<int>(i),
                       (days & kWeekDays[i].Bit) != 0 ? BST_CHECKED : BST_UNCHECKED);
}

std::string TimeRangeField::Time(int which) const { return FullTime(GetText(dialog_, base_ + which)); }

std::string TimeRangeField::Text() const {
    if (IsDlgButtonChecked(dialog_, base_ + kTimeAny) == BST_CHECKED) return {};
    std::string text;
    if (const std::string after = Time(kTimeAfter); !after.empty()) text = "AFTER " + after;
    if (const std::string before = Time(kTimeBefore); !before.empty())
        text.append(text.empty() ? "" : " ").append("BEFORE ").append(before);
    std::string days;
    for (std::size_t i = 0; i < std::size(kWeekDays); ++i) {
        const int control = base_ + kTimeMonday + static_cast<int>(i);
        if (IsDlgButtonChecked(dialog_, control) == BST_CHECKED) days.append(" ").append(kWeekDays[i].Word);
    }
    // Two blanks before the first day, as the file has them.
    if (!days.empty()) text.append(text.empty() ? "" : " ").append(text.empty() ? days.substr(1) : days);
    return text;
}

int TimeRangeField::Fault() const {
    for (const int time : {kTimeAfter, kTimeBefore})
        if (MinutesOf(Time(time)) < 0) return base_ + time;
    return base_ + kTimeMonday;
}

void TimeRangeField::Update() {
    const bool only = IsDlgButtonChecked(dialog_, base_ + kTimeOnly) == BST_CHECKED;
    for (int control = kTimeAfter; control <= kTimeClearDays; ++control) EnableControl(dialog_, base_ + control, only);
    const std::string text = Text();
    SetText(dialog_, base_ + kTimeLine, text);
    if (GetDlgItem(dialog_, base_ + kTimePicture) == nullptr) return;
    const std::optional<SendTimeRange> range = ParseTimeRange(text);
    week_.Show(range ? std::optional(WeekOf(*range)) : std::nullopt);
}

bool TimeRangeField::Answer(const DialogMessage& message, INT_PTR&) {
    if (message.Number != WM_COMMAND || dialog_ == nullptr) return false;
    const int control = LOWORD(message.WParam) - base_;
    const int code = HIWORD(message.WParam);
    if (control < kTimeAny || control >= kTimeLine) return false;
    if (code == BN_CLICKED && control == kTimeDaysAtOnce) ChooseAtOnce();
    if (code == BN_CLICKED && control == kTimeClearDays) CheckDays(0);
    if (code == BN_CLICKED || code == EN_CHANGE) Update();
    return true;
}

// Up and Down a minute, PgUp and PgDn an hour.
LRESULT CALLBACK TimeRangeField::TimeKeys(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR) {
    struct Step {
        WPARAM Key;
        int Minutes;
    };
    static constexpr Step kSteps[] = {{VK_UP, 1}, {VK_DOWN, -1}, {VK_PRIOR, 60}, {VK_NEXT, -60}};
    const auto* const step = std::ranges::find(kSteps, wParam, &Step::Key);
    if (message == WM_KEYDOWN && step != std::end(kSteps)) {
        char text[kLongestTime + 1] = "";
        GetWindowTextA(edit, text, sizeof text);
        const int minutes = (std::max(MinutesOf(text), 0) + step->Minutes + kMinutesADay) % kMinutesADay;
        SetWindowTextA(edit, FormatText("%.2d:%.2d", minutes / 60, minutes % 60).c_str());
        SendMessageA(edit, EM_SETSEL, 0, -1);
        return 0;
    }
    if (message == WM_CHAR && wParam > ' ' && wParam != ':' && (wParam < '0' || wParam > '9')) return 0;
    if (message == WM_KILLFOCUS) {
        char text[kLongestTime + 1] = "";
        GetWindowTextA(edit, text, sizeof text);
        if (const std::string full = FullTime(text); full != text) SetWindowTextA(edit, full.c_str());
    }
    if (message == WM_NCDESTROY) RemoveWindowSubclass(edit, TimeKeys, id);
    return DefSubclassProc(edit, message, wParam, lParam);
}

} // namespace bv
