// Controls for a time such as "AFTER 18:00 BEFORE 08:00  SAT SUN": at any time or only at these, two times of day,
// seven days, and the line that the file gets; with a picture of the week, if there is a control for it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "dialogs/dialog_dlg.h"
#include "dialogs/week_picture_dlg.h"
#include "users/permissions.h"

namespace bv {

// The controls, counted from the first one's number.
enum TimeRangeControl : int {
    kTimeAny,
    kTimeOnly,
    kTimeAfter,
    kTimeBefore,
    kTimeMonday, // six more days follow
    kTimeDaysAtOnce = kTimeMonday + 7,
    kTimeClearDays,
    kTimeLine,
    kTimePicture, // of the week, where days that are chosen are so all day
    kTimeWords,
};

class TimeRangeField : public DialogPart {
  public:
    // Takes up the controls of a dialog that is being filled. The key's text; empty: at any time. At once are chosen,
    // by their button, days alone ("MON TUE") or times and days.
    void Begin(HWND dialog, int base, const std::string& text, std::string_view atOnce = "MON TUE WED THU FRI");

    // The text that the controls make; what is no time stands in it as it was typed.
    [[nodiscard]] std::string Text() const;

    // The control to look at when the text is refused.
    [[nodiscard]] int Fault() const;

    bool Answer(const DialogMessage& message, INT_PTR& result) override;

  private:
    void Show(const std::string& text);
    void Update();
    void ShowTimes(const SendTimeRange& range);
    void ChooseAtOnce();
    void CheckDays(std::uint16_t days);
    [[nodiscard]] std::string Time(int which) const;
    static LRESULT CALLBACK TimeKeys(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                     DWORD_PTR data);

    HWND dialog_ = nullptr;
    int base_ = 0;
    std::string atOnce_;
    WeekPicture week_;
};

// "130" and "1:30" as "01:30"; another text as it is.
std::string FullTime(const std::string& text);

} // namespace bv
