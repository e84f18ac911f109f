// List boxes and combo boxes as places for entries, and list boxes that find as one types.
#pragma once

#include <windows.h>

#include <string>

#include "voice/list_target.h"

namespace bv {

class ListBoxTarget : public ListTarget {
  public:
    ListBoxTarget(HWND dialog, int control) : list_(GetDlgItem(dialog, control)) {}

    void Clear() override;
    void Add(const std::string& entry) override;
    [[nodiscard]] bool Contains(const std::string& entry) const override;
    [[nodiscard]] bool IsComboBox() const override { return false; }

  private:
    HWND list_;
};

class ComboBoxTarget : public ListTarget {
  public:
    ComboBoxTarget(HWND dialog, int control) : combo_(GetDlgItem(dialog, control)) {}

    void Clear() override;
    void Add(const std::string& entry) override;
    [[nodiscard]] bool Contains(const std::string& entry) const override;
    [[nodiscard]] bool IsComboBox() const override { return true; }

  private:
    HWND combo_;
};

constexpr int kNoEntry = -1;

int SelectedEntry(HWND dialog, int list); // its index or kNoEntry

// Selects the entry, or the last one when the index is beyond the end; kNoEntry selects none.
void SelectEntry(HWND dialog, int list, int index);

// Makes a list box ready: what follows a tab stands in a column that begins at that many dialog units, and typing
// selects the next entry that begins with what was typed.
void PrepareList(HWND dialog, int list, int column);

// After filling: makes the widest entry reachable with the horizontal scroll bar.
void FitListWidth(HWND dialog, int list, int column);

} // namespace bv
