// The choice of several printers, for sent and for received faxes: a list of them, and the controls of the selected
// one.
#pragma once

#include <windows.h>

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "dialogs/dialog_dlg.h"
#include "dialogs/fields_dlg.h"
#include "dialogs/list_view_dlg.h"

namespace bv {

// One printer and its keys, without their colons.
struct PrinterSlot {
    const char* Title;
    std::string_view Device, Bin, Paper, Squash;
    std::span<const std::string_view> SquashWords;
};

// To its page it leaves that another slot is selected, when that slot's controls are filled.
class PrinterSlots : public RowModel, public DialogPart {
  public:
    // Takes up the page's controls while it is filled; what stands for a slot without a printer.
    void Begin(HWND page, std::span<const PrinterSlot> slots, FieldRecord& record, std::string empty);

    // Takes the selected slot's controls. Returns the control of the first fault, after its message, or 0.
    int Take();

    bool Answer(const DialogMessage& message, INT_PTR& result) override;

    [[nodiscard]] std::size_t Count() const override { return slots_.size(); }
    [[nodiscard]] std::size_t Columns() const override { return 5; }
    [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const override;

  private:
    [[nodiscard]] std::vector<FieldControl> FieldsOf(const PrinterSlot& slot) const;
    void EnableFields() const;
    void ShowSelected();
    void ChangePrinter();
    void ClearPrinter();
    void ChoosePrinter();
    void TakeListedPrinter();

    // A list drops down: has it offer the fax server's printers, or the bins and papers of the printer.
    void OfferPrinters();
    void OfferBins();
    void OfferPapers();

    void ShowFieldsOf(const PrinterSlot& slot);

    HWND page_ = nullptr;
    HWND tips_ = nullptr; // for the keys of the slot
    std::span<const PrinterSlot> slots_;
    FieldRecord* record_ = nullptr;
    std::string empty_;
    std::size_t shown_ = 0;
    mutable std::string cell_;
    std::unique_ptr<ListView> list_;
};

} // namespace bv
