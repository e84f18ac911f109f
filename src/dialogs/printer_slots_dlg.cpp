#include "dialogs/printer_slots_dlg.h"

#include "dialogs/printer_choice_dlg.h"
#include "resources/ids.h"
#include "users/printers.h"

namespace bv {
namespace {

constexpr ListColumn kColumns[] = {{"For", 58}, {"Printer", 84}, {"Bin", 44}, {"Paper", 44}, {"Squash", 34}};
constexpr ListPlan kList{.List = ID_PRINT_SLOTS, .Columns = kColumns, .IsSorted = false};

// Gives a combo box other entries; what stands in its field stays.
void Offer(HWND page, int combo, const std::vector<std::string>& entries) {
    const HWND window = GetDlgItem(page, combo);
    const int length = GetWindowTextLengthW(window);
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    GetWindowTextW(window, text.data(), length + 1);
    SendMessageW(window, CB_RESETCONTENT, 0, 0);
    for (const std::string& entry : entries)
        SendMessageA(window, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    SetWindowTextW(window, text.c_str());
}

} // namespace

void PrinterSlots::Begin(HWND page, std::span<const PrinterSlot> slots, FieldRecord& record, std::string empty) {
    page_ = page;
    slots_ = slots;
    record_ = &record;
    empty_ = std::move(empty);
    list_ = std::make_unique<ListView>(*this, kList);
    list_->Begin(page);
    list_->Refill([] { return true; });
    shown_ = 0;
    ShowFieldsOf(slots_.front());
    TakeUp(page, *this);
}

bool PrinterSlots::Answer(const DialogMessage& message, INT_PTR&) {
    struct Command {
        int Control;
        int Code;
        void (PrinterSlots::*Do)();
    };
    static constexpr Command kCommands[] = {
        {ID_PRINT_SLOTS, kListSelected, &PrinterSlots::ShowSelected},
        {ID_PRINT_PRINTER, CBN_EDITCHANGE, &PrinterSlots::ChangePrinter},
        {ID_PRINT_PRINTER, CBN_SELCHANGE, &PrinterSlots::TakeListedPrinter},
        {ID_PRINT_PRINTER, CBN_DROPDOWN, &PrinterSlots::OfferPrinters},
        {ID_PRINT_BIN, CBN_DROPDOWN, &PrinterSlots::OfferBins},
        {ID_PRINT_PAPER, CBN_DROPDOWN, &PrinterSlots::OfferPapers},
        {ID_PRINT_CHOOSE, BN_CLICKED, &PrinterSlots::ChoosePrinter},
        {ID_PRINT_CLEAR, BN_CLICKED, &PrinterSlots::ClearPrinter},
    };
    CommandCode code{};
    if (!ReadCommand(message, code) || !OpenedOf(page_)->IsFilled()) return false;
    for (const Command& command : kCommands)
        if (command.Control == code.Control && command.Code == code.Notification) (this->*command.Do)();
    return false;
}

void PrinterSlots::ShowFieldsOf(const PrinterSlot& slot) {
    const std::vector<FieldControl> fields = FieldsOf(slot);
    ShowFields(page_, fields, *record_);
    if (tips_ != nullptr) DestroyWindow(tips_);
    tips_ = AddTooltips(page_, fields, *record_);
    EnableFields();
}

std::vector<FieldControl> PrinterSlots::FieldsOf(const PrinterSlot& slot) const {
    return {{ID_PRINT_PRINTER, slot.Device},
            {ID_PRINT_BIN, slot.Bin},
            {ID_PRINT_PAPER, slot.Paper},
            {ID_PRINT_SQUASH, slot.Squash, FieldForm::Choice, slot.SquashWords}};
}

std::string_view PrinterSlots::Text(std::size_t row, std::size_t column) const {
    const PrinterSlot& slot = slots_[row];
    const std::string_view keys[] = {{}, slot.Device, slot.Bin, slot.Paper, slot.Squash};
    if (column == 0) return slot.Title;
    const bool isEmpty = record_->TextOf(slot.Device).empty();
    if (isEmpty) return column == 1 ? std::string_view(empty_) : std::string_view();
    cell_ = record_->TextOf(keys[column]);
    return cell_;
}

void PrinterSlots::EnableFields() const {
    const bool hasPrinter = !GetText(page_, ID_PRINT_PRINTER).empty();
    for (const int control : {ID_PRINT_BIN, ID_PRINT_PAPER, ID_PRINT_SQUASH, ID_PRINT_CLEAR})
        EnableControl(page_, control, hasPrinter);
}

int PrinterSlots::Take() {
    const int fault = TakeFields(page_, FieldsOf(slots_[shown_]), *record_);
    InvalidateRect(GetDlgItem(page_, ID_PRINT_SLOTS), nullptr, FALSE);
    return fault;
}

void PrinterSlots::ShowSelected() {
    const std::vector<std::size_t> selected = list_->Selected();
    if (selected.empty() || selected.front() == shown_) return;
    if (const int fault = Take(); fault != 0) return FocusControl(page_, fault);
    shown_ = selected.front();
    ShowFieldsOf(slots_[shown_]);
}

void PrinterSlots::ChangePrinter() {
    EnableFields();
    Take();
}

void PrinterSlots::ChoosePrinter() {
    const std::optional<std::string> name = bv::ChoosePrinter(page_, GetText(page_, ID_PRINT_PRINTER));
    if (!name) return;
    SetText(page_, ID_PRINT_PRINTER, *name);
    ChangePrinter();
    FocusControl(page_, ID_PRINT_PRINTER);
}

// The list's entry comes into the field only after this.
void PrinterSlots::TakeListedPrinter() {
    char name[kPrinterNameLimit + 1] = "";
    const LRESULT entry = SendDlgItemMessageA(page_, ID_PRINT_PRINTER, CB_GETCURSEL, 0, 0);
    const LRESULT length = SendDlgItemMessageA(page_, ID_PRINT_PRINTER, CB_GETLBTEXTLEN, static_cast<WPARAM>(entry), 0);
    if (length <= 0 || length > static_cast<LRESULT>(kPrinterNameLimit)) return;
    SendDlgItemMessageA(page_, ID_PRINT_PRINTER, CB_GETLBTEXT, static_cast<WPARAM>(entry),
                        reinterpret_cast<LPARAM>(name));
    SetText(page_, ID_PRINT_PRINTER, name);
    ChangePrinter();
}

void PrinterSlots::OfferPrinters() {
    const WaitCursor wait;
    std::vector<std::string> names;
    for (const OfferedPrinter& printer : bv::OfferPrinters(PrinterSource::FaxServer, PrinterReading::Kept))
        names.push_back(printer.Name);
    Offer(page_, ID_PRINT_PRINTER, names);
}

void PrinterSlots::OfferBins() {
    const WaitCursor wait;
    Offer(page_, ID_PRINT_BIN, TraysOf(GetText(page_, ID_PRINT_PRINTER)).Bins);
}

void PrinterSlots::OfferPapers() {
    const WaitCursor wait;
    Offer(page_, ID_PRINT_PAPER, TraysOf(GetText(page_, ID_PRINT_PRINTER)).Papers);
}

void PrinterSlots::ClearPrinter() {
    for (const int control : {ID_PRINT_PRINTER, ID_PRINT_BIN, ID_PRINT_PAPER}) SetText(page_, control, {});
    SendDlgItemMessageA(page_, ID_PRINT_SQUASH, CB_SETCURSEL, 0, 0);
    ChangePrinter();
    FocusControl(page_, ID_PRINT_PRINTER);
}

} // namespace bv
