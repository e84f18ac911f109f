// Combo boxes as places for entries.
#pragma once

#include <windows.h>

#include <string>

#include "voice/list_target.h"

namespace bv {

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

} // namespace bv
