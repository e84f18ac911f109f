// A list of things to tick, in a list view with two columns: what, and a note about it.
//
// To its dialog it sends kListSelected when a tick has come or gone.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/dialog_dlg.h"
#include "dialogs/list_codes_dlg.h"

namespace bv {

class CheckList : public DialogPart {
  public:
    struct Row {
        std::string Text;
        std::string Note;
        bool IsLocked = false; // its tick cannot be changed
        std::string Tip = {};  // in the code page
    };

    // Takes up the control of a dialog that is being filled; at most 32 rows, the first column of so many units.
    void Begin(HWND dialog, int list, const char* what, const char* note, int units, const std::vector<Row>& rows);

    // The ticked rows, bit 0 the first.
    [[nodiscard]] std::uint32_t Mask() const;
    void SetMask(std::uint32_t mask);

    bool Answer(const DialogMessage& message, INT_PTR& result) override;

  private:
    [[nodiscard]] HWND Window() const { return GetDlgItem(dialog_, list_); }
    [[nodiscard]] bool RefusesChange(const NMLISTVIEW& change) const;

    HWND dialog_ = nullptr;
    int list_ = 0;
    bool isChanging_ = false; // by the program
    std::vector<bool> locked_;
    std::vector<std::string> tips_;
};

} // namespace bv
