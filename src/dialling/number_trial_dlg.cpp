#include "dialling/number_trial_dlg.h"

#include "dialogs/live_text_dlg.h"
#include "resources/ids.h"

namespace bv {
namespace {

constexpr ListColumn kColumns[] = {{"Form", 38}, {"Step", 122}, {"Number", 70}};
constexpr ListPlan kPlan{.List = ID_DIALLING_STEPS, .Columns = kColumns, .IsSorted = false};
constexpr const char* kShown = "shown";
constexpr const char* kDialled = "dialled";
constexpr const char* kMark = "> "; // of the step that decides
constexpr UINT_PTR kPauseTimer = 1;
constexpr UINT kPause = 150; // milliseconds

// Shown only when it is another, so that it is said only then.
void ShowOutcome(HWND dialog, int control, const std::string& text) {
    if (GetText(dialog, control) != text) ShowLiveText(GetDlgItem(dialog, control), text);
}

} // namespace

TrialPane::TrialPane() : list_(rows_, kPlan) { rows_.Begin(std::size(kColumns)); }

void TrialPane::Begin(HWND dialog) {
    dialog_ = dialog;
    TakeUp(dialog, *this);
    list_.Begin(dialog);
    SendDlgItemMessageA(dialog, ID_DIALLING_TRY, EM_LIMITTEXT, kMaxTelephoneNumber, 0);
    for (const int control : {ID_DIALLING_TRY_SHOWN, ID_DIALLING_TRY_DIALLED}) MakeLive(GetDlgItem(dialog, control));
}

std::string TrialPane::Number() const { return GetText(dialog_, ID_DIALLING_TRY); }

void TrialPane::Show(const DialProperties& properties) {
    properties_ = properties;
    ShowAgain();
}

void TrialPane::ShowAgain() {
    KillTimer(dialog_, kPauseTimer);
    if (properties_.Mode == kDialTelephony)
        SetTimer(dialog_, kPauseTimer, kPause, nullptr);
    else
        Try();
}

void TrialPane::Try() {
    const NumberTrial trial = TryNumber(Number(), properties_);
    ShowOutcome(dialog_, ID_DIALLING_TRY_SHOWN, trial.International);
    ShowOutcome(dialog_, ID_DIALLING_TRY_DIALLED, trial.Dialable);
    list_.Refill([&] {
        rows_.Begin(std::size(kColumns));
        for (const auto& [form, rule, number, decides] : trial.Steps) {
            const std::string name = form == NumberForm::Dialable ? kDialled : kShown;
            rows_.Add(decides ? kMark + name : name);
            rows_.Add(rule);
            rows_.Add(number);
        }
        return true;
    });
    list_.SelectName(std::string(kMark) + kDialled); // mostly what a person wants to know
    ShowStep();
}

void TrialPane::ShowStep() const {
    const std::vector<std::size_t> rows = list_.Selected();
    SetText(dialog_, ID_DIALLING_STEP, rows.empty() ? std::string() : std::string(rows_.Text(rows.front(), 1)));
}

bool TrialPane::Answer(const DialogMessage& message, INT_PTR& result) {
    if (message.Number != WM_TIMER || message.WParam != kPauseTimer) return false;
    KillTimer(dialog_, kPauseTimer);
    Try();
    result = TRUE;
    return true;
}

} // namespace bv
