// The part of the dialling properties' dialog in which a number is tried as it is typed.
#pragma once

#include <windows.h>

#include "dialling/number_trial.h"
#include "dialogs/list_view_dlg.h"
#include "shell/row_table.h"

namespace bv {

class TrialPane : public DialogPart {
  public:
    TrialPane();

    // Takes up the controls of a dialog that is being filled.
    void Begin(HWND dialog);

    // Tries the number by these properties, of which it keeps a copy. The telephony is asked only when the typing has
    // paused, as it may take its time.
    void Show(const DialProperties& properties);

    // The number is another one.
    void ShowAgain();

    // Shows the selected step in full, as its column may be too narrow.
    void ShowStep() const;

    // The number as it was typed.
    [[nodiscard]] std::string Number() const;

    bool Answer(const DialogMessage& message, INT_PTR& result) override;

  private:
    void Try();

    HWND dialog_ = nullptr;
    DialProperties properties_;
    RowTable rows_;
    ListView list_;
};

} // namespace bv
