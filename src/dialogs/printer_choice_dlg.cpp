#include "dialogs/printer_choice_dlg.h"

#include "dialogs/list_view_dlg.h"
#include "resources/ids.h"
#include "shell/row_table.h"
#include "users/printers.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr ListColumn kColumns[] = {{"Name", 110}, {"Description or driver", 136}, {"Port, place", 110}};
constexpr ListPlan kList{.List = ID_PRINTERS_LIST,
                         .Columns = kColumns,
                         .Filter = ID_PRINTERS_FILTER,
                         .Count = ID_PRINTERS_COUNT,
                         .DefaultButton = IDOK};

struct PrinterDialog {
    std::string Name;
    PrinterSource Source = PrinterSource::FaxServer;
    std::vector<OfferedPrinter> Printers{};
    RowTable Rows{};
    ListView List{Rows, kList};
};

struct SourceButton {
    int Control;
    PrinterSource Source;
};
constexpr SourceButton kSources[] = {{ID_PRINTERS_OF_FAX_SERVER, PrinterSource::FaxServer},
                                     {ID_PRINTERS_OF_WORKSTATION, PrinterSource::Workstation},
                                     {ID_PRINTERS_OF_COMPUTER, PrinterSource::ServerComputer}};

void ListPrinters(HWND dialog, PrinterDialog& context, PrinterReading reading) {
    const WaitCursor wait;
    context.List.Refill([&] {
        context.Printers = OfferPrinters(context.Source, reading);
        context.Rows.Begin(std::size(kColumns));
        for (const OfferedPrinter& printer : context.Printers)
            for (const std::string* text : {&printer.Name, &printer.Description, &printer.Place})
                context.Rows.Add(*text);
        return true;
    });
    const bool isServers = context.Source == PrinterSource::FaxServer;
    SetText(dialog, ID_PRINTERS_HINT, isServers ? std::string() : FillMessage(kNotTheServersPrinters));
}

void ReadAgain(HWND dialog, PrinterDialog& context) { ListPrinters(dialog, context, PrinterReading::Anew); }

void ChooseSource(HWND dialog, PrinterDialog& context) {
    for (const auto& [control, source] : kSources)
        if (IsDlgButtonChecked(dialog, control) == BST_CHECKED) context.Source = source;
    ListPrinters(dialog, context, PrinterReading::Kept);
}

std::string Joined(const char* title, const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) text.append(text.empty() ? title : ", ").append(name);
    return text;
}

// Only those of the row at hand are asked for: a printer can take its time to answer.
void SelectPrinter(HWND dialog, PrinterDialog& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    EnableControl(dialog, IDOK, !rows.empty());
    const WaitCursor wait;
    const PrinterTrays trays = rows.empty() ? PrinterTrays() : TraysOf(context.Printers[rows.front()]);
    SetText(dialog, ID_PRINTERS_BINS, Joined("Bins: ", trays.Bins));
    SetText(dialog, ID_PRINTERS_PAPERS, Joined("Papers: ", trays.Papers));
}

void FillPrinters(HWND dialog, PrinterDialog& context) {
    for (const auto& [control, source] : kSources) EnableControl(dialog, control, HasPrinters(source));
    CheckDlgButton(dialog, ID_PRINTERS_OF_FAX_SERVER, BST_CHECKED);
    context.List.Begin(dialog);
    ListPrinters(dialog, context, PrinterReading::Kept);
    context.List.SelectName(context.Name);
    SelectPrinter(dialog, context);
    FocusControl(dialog, ID_PRINTERS_LIST);
}

void TakePrinter(HWND dialog, PrinterDialog& context) {
    const std::vector<std::string> names = context.List.SelectedNames();
    if (names.size() != 1 || !CheckPrinterName(names.front())) return;
    context.Name = names.front();
    EndDialog(dialog, IDOK);
}

constexpr DialogCommand<PrinterDialog> kCommands[] = {
    {ID_PRINTERS_OF_FAX_SERVER, BN_CLICKED, ChooseSource},
    {ID_PRINTERS_OF_WORKSTATION, BN_CLICKED, ChooseSource},
    {ID_PRINTERS_OF_COMPUTER, BN_CLICKED, ChooseSource},
    {ID_PRINTERS_LIST, kListSelected, SelectPrinter},
    {ID_PRINTERS_LIST, kListOpen, TakePrinter},
    {ID_PRINTERS_LIST, kListReload, ReadAgain},
    {ID_PRINTERS_REFRESH, BN_CLICKED, ReadAgain},
    {IDOK, BN_CLICKED, TakePrinter},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_PRINTERS_FILTER, kGrowsAcross},
    {ID_PRINTERS_REFRESH, kMovesAcross},
    {ID_PRINTERS_LIST, kGrowsBoth},
    {ID_PRINTERS_COUNT, kMovesDown | kGrowsAcross},
    {ID_PRINTERS_BINS, kMovesDown | kGrowsAcross},
    {ID_PRINTERS_PAPERS, kMovesDown | kGrowsAcross},
    {ID_PRINTERS_HINT, kMovesDown | kGrowsAcross},
    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<PrinterDialog> kPlan{HELP_SELECT_PRINTER, FillPrinters, kCommands, kAnchors};

} // namespace

std::optional<std::string> ChoosePrinter(HWND owner, const std::string& name) {
    PrinterDialog context{.Name = name};
    if (OpenDialog("SelectPrinterBox", owner, SelectPrinterDlgBox, &context) != IDOK) return std::nullopt;
    return context.Name;
}

INT_PTR CALLBACK SelectPrinterDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
