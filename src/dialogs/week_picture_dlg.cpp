#include "dialogs/week_picture_dlg.h"

#include <algorithm>
#include <array>

#include "lcr/lcr_messages.h"
#include "users/week_days.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr int kHoursApart = 6; // of the lines that have a number

// Draws into one picture.
class WeekDrawing {
  public:
    WeekDrawing(HDC device, const RECT& area) : device_(device), area_(area) {
        SIZE size{};
        for (const WeekDay& day : kWeekDays) {
            GetTextExtentPoint32A(device, day.Word.data(), static_cast<int>(day.Word.size()), &size);
            labels_ = std::max(labels_, size.cx);
        }
        margin_ = size.cy / 4;
        labels_ += margin_ + size.cy / 2;
        row_ = (area.bottom - area.top - margin_) / (kDaysOfWeek + 1);
        grid_ = {area.left + labels_, area.top + row_, area.right - size.cy, area.top + row_ * (kDaysOfWeek + 1)};
    }

    void Draw(const std::optional<WeekMask>& week) const {
        SetBkMode(device_, TRANSPARENT);
        SetTextColor(device_, GetSysColor(COLOR_WINDOWTEXT));
        FillRect(device_, &area_, GetSysColorBrush(COLOR_WINDOW));
        FrameRect(device_, &area_, GetSysColorBrush(COLOR_BTNSHADOW));
        if (week) Hatch(*week);
        DrawHours();
        DrawDays();
    }

  private:
    [[nodiscard]] LONG Across(int minute) const {
        return grid_.left + MulDiv(grid_.right - 1 - grid_.left, minute, kMinutesOfDay);
    }
    [[nodiscard]] LONG Down(int row) const { return grid_.top + row * row_; }

    void HatchTime(int row, int from, int to) const {
        const RECT time{Across(from), Down(row), Across(to), Down(row + 1)};
        SetBkColor(device_, GetSysColor(COLOR_WINDOW));
        const HBRUSH hatch = CreateHatchBrush(HS_FDIAGONAL, GetSysColor(COLOR_WINDOWTEXT));
        SetBkMode(device_, OPAQUE);
        FillRect(device_, &time, hatch);
        SetBkMode(device_, TRANSPARENT);
        DeleteObject(hatch);
        FrameRect(device_, &time, GetSysColorBrush(COLOR_WINDOWTEXT));
    }

    void Hatch(const WeekMask& week) const {
        for (int row = 0; row < kDaysOfWeek; ++row) {
            const int midnight = (row + 1) % kDaysOfWeek * kMinutesOfDay; // a mask begins with Sunday
            const auto isIn = [&](int minute) {
                return minute < kMinutesOfDay && week[static_cast<std::size_t>(midnight + minute)];
            };
            for (int from = 0; from < kMinutesOfDay; ++from) {
                if (!isIn(from)) continue;
                int to = from;
                while (isIn(to)) ++to;
                HatchTime(row, from, to);
                from = to;
            }
        }
    }

    void DrawHours() const {
        for (int hour = 0; hour <= kHoursOfDay; ++hour) {
            const LONG across = Across(hour * kMinutesOfHour);
            const bool isNumbered = hour % kHoursApart == 0;
            const RECT line{across, grid_.top, across + 1, isNumbered ? grid_.bottom : grid_.top + row_ / 4};
            FillRect(device_, &line, GetSysColorBrush(COLOR_BTNSHADOW));
            if (!isNumbered) continue;
            const std::string text = std::to_string(hour);
            RECT place{across - labels_, area_.top, across + labels_, grid_.top};
            DrawTextA(device_, text.c_str(), -1, &place, DT_CENTER | DT_BOTTOM | DT_SINGLELINE);
        }
    }

    void DrawDays() const {
        for (int row = 0; row <= kDaysOfWeek; ++row) {
            const RECT line{grid_.left, Down(row), grid_.right, Down(row) + 1};
            FillRect(device_, &line, GetSysColorBrush(COLOR_BTNSHADOW));
            if (row == kDaysOfWeek) break;
            RECT place{area_.left + margin_, Down(row), grid_.left, Down(row + 1)};
            const std::string_view word = kWeekDays[static_cast<std::size_t>(row)].Word;
            DrawTextA(device_, word.data(), static_cast<int>(word.size()), &place, DT_VCENTER | DT_SINGLELINE);
        }
    }

    HDC device_;
    RECT area_;
    RECT grid_{};
    LONG labels_ = 0; // how wide the days' names are
    LONG margin_ = 0;
    LONG row_ = 0;
};

} // namespace

void WeekPicture::Begin(HWND dialog, int picture, int words) {
    dialog_ = dialog;
    picture_ = picture;
    words_ = words;
    Show({});
    TakeUp(dialog, *this);
}

void WeekPicture::Show(const std::optional<WeekMask>& week) {
    week_ = week;
    const std::string words = week ? WeekInWords(*week) : FillMessage(kNotKnown);
    SetText(dialog_, picture_, words);
    SetText(dialog_, words_, words);
    InvalidateRect(GetDlgItem(dialog_, picture_), nullptr, FALSE);
}

bool WeekPicture::Answer(const DialogMessage& message, INT_PTR& result) {
    if (message.Number != WM_DRAWITEM || static_cast<int>(message.WParam) != picture_) return false;
    const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(message.LParam);
    const auto font = reinterpret_cast<HFONT>(SendMessageA(dialog_, WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(item.hDC, font);
    WeekDrawing(item.hDC, item.rcItem).Draw(week_);
    SelectObject(item.hDC, before);
    result = TRUE;
    return true;
}

} // namespace bv
