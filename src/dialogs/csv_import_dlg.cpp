#include "dialogs/csv_import_dlg.h"

#include <array>

#include "ctlfile/reading.h"
#include "ctlfile/whole_file.h"
#include "dialogs/list_view_dlg.h"
#include "dialogs/pick_dlg.h"
#include "dialogs/progress_dlg.h"
#include "resources/ids.h"
#include "shell/row_table.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr ListColumn kColumns[] = {{"Line", 30, true}, {"Result", 60}, {"What it does, or why not", 290}};
constexpr ListPlan kList{.List = ID_IMPORT_ROWS, .Columns = kColumns, .IsSorted = false};

struct ImportDialog {
    CsvImport& Import;
    CsvTable Table{};
    std::vector<RowVerdict> Verdicts{};
    bool IsRead = false;
    RowTable Rows{};
    ListView List{Rows, kList};
    bool IsDone = false;
};

std::string ResultWord(RowState state) {
    static constexpr std::array kWords = {kRowIsNew, kRowReplaces, kRowIsSame, kRowIsWrong};
    return FillMessage(kWords.at(static_cast<std::size_t>(state)));
}

void AddRow(RowTable& rows, std::size_t line, const std::string& result, std::string_view text) {
    rows.Add(std::to_string(line));
    rows.Add(result);
    rows.Add(text);
}

// Each fault of a wrong row has a line of its own, as has each fault of the file's form.
bool ListRows(ImportDialog& context) {
    context.Rows.Begin(std::size(kColumns));
    for (const CsvFault& fault : context.Table.Faults)
        AddRow(context.Rows, fault.Line, ResultWord(RowState::Wrong), fault.Text);
    for (std::size_t i = 0; i < context.Verdicts.size(); ++i) {
        const auto& [state, name, notes] = context.Verdicts[i];
        const std::size_t line = context.Table.Rows[i].empty() ? 0 : context.Table.Rows[i].front().Line;
        if (notes.empty()) AddRow(context.Rows, line, ResultWord(state), name);
        const std::string before = name.empty() ? name : name + ": ";
        for (const RowNote& note : notes) AddRow(context.Rows, line, ResultWord(state), before + note.Text);
    }
    return context.IsRead;
}

std::size_t Wrong(const ImportDialog& context) {
    return CountOf(context.Verdicts, RowState::Wrong) + context.Table.Faults.size();
}

ImportChoice ChoiceOf(HWND dialog) { return {IsDlgButtonChecked(dialog, ID_IMPORT_REPLACE) == BST_CHECKED}; }

void EnableImport(HWND dialog, ImportDialog& context) {
    const CsvTable chosen = ChosenRows(context.Table, context.Verdicts, ChoiceOf(dialog));
    const bool isToBeRead = !context.IsRead && !GetText(dialog, ID_IMPORT_FILE).empty();
    EnableControl(dialog, IDOK, isToBeRead || !chosen.Rows.empty());
    EnableControl(dialog, ID_IMPORT_SAVE_WRONG, CountOf(context.Verdicts, RowState::Wrong) > 0);
}

void ShowCounts(HWND dialog, ImportDialog& context) {
    const auto count = [&](RowState state) { return CountOf(context.Verdicts, state); };
    SetText(dialog, ID_IMPORT_COUNT,
            context.IsRead ? FillMessage(kImportRows, count(RowState::New), count(RowState::Replaces),
                                         count(RowState::Same), Wrong(context))
                           : std::string());
}

void ReadFile(HWND dialog, ImportDialog& context) {
    const WaitCursor wait;
    context.Table = {};
    context.Verdicts.clear();
    context.IsRead = false;
    ControlStream stream = OpenForReading(GetText(dialog, ID_IMPORT_FILE));
    if (stream) {
        const std::string text(stream.Rest());
        if (WasRead(stream)) {
            context.Table = ReadCsvTable(text, context.Import.Columns(), context.Import.Title());
            if (auto verdicts = context.Import.Check(context.Table)) {
                context.Verdicts = std::move(*verdicts);
                context.IsRead = true;
            }
        }
    }
    context.List.Refill([&] { return ListRows(context); });
    ShowCounts(dialog, context);
    EnableImport(dialog, context);
}

void FillImport(HWND dialog, ImportDialog& context) {
    SetWindowTextA(dialog, ("Import " + std::string(context.Import.Title())).c_str());
    std::string columns;
    for (const std::string_view column : context.Import.Columns())
        columns.append(columns.empty() ? "" : ",").append(column);
    SetText(dialog, ID_IMPORT_COLUMNS, columns);
    SendDlgItemMessageA(dialog, ID_IMPORT_FILE, EM_LIMITTEXT, MAX_PATH, 0);
    context.List.Begin(dialog);
    EnableImport(dialog, context);
}

void Browse(HWND dialog, ImportDialog& context) {
    const auto path = PickCsvFile(dialog, PickFor::Opening, GetText(dialog, ID_IMPORT_FILE));
    if (!path) return;
    SetText(dialog, ID_IMPORT_FILE, *path);
    ReadFile(dialog, context);
}

// Applies the rows that were chosen and checked once more. False after a message.
bool Apply(HWND dialog, ImportDialog& context, std::size_t added, std::size_t changed) {
    ProgressBox progress(dialog, static_cast<int>(added));
    const ImportCounts done = context.Import.Apply([&](std::size_t count) {
        const std::string text = FillMessage(kImportProgress, count + 1, added, context.Import.Title());
        return progress.Advance(static_cast<int>(count), text, {});
    });
    const bool isWhole = done == ImportCounts{added, changed};
    if (isWhole)
        ShowStatus(kImported, done.Added, done.Changed);
    else
        ShowStatus(kImportStopped, done.Added, added, done.Changed, changed);
    return isWhole || done.Added + done.Changed > 0;
}

void ChangeFile(HWND dialog, ImportDialog& context) {
    context.IsRead = false;
    EnableImport(dialog, context);
}

void PressImport(HWND dialog, ImportDialog& context) {
    if (!context.IsRead) return ReadFile(dialog, context); // and is looked at before it is imported
    if (Wrong(context) > 0 && IsDlgButtonChecked(dialog, ID_IMPORT_GOOD_ONLY) != BST_CHECKED)
        return ShowError(kNothingImported, Wrong(context));
    const CsvTable chosen = ChosenRows(context.Table, context.Verdicts, ChoiceOf(dialog));
    const auto verdicts = context.Import.Check(chosen);
    if (!verdicts) return;
    if (CountOf(*verdicts, RowState::Wrong) > 0) return ReadFile(dialog, context); // the list has changed meanwhile
    const WaitCursor wait;
    context.IsDone = Apply(dialog, context, CountOf(*verdicts, RowState::New), CountOf(*verdicts, RowState::Replaces));
    if (context.IsDone) EndDialog(dialog, IDOK);
}

void SaveWrong(HWND dialog, ImportDialog& context) {
    ExportByDialog(dialog, WrongRowsAsCsv(context.Table, context.Verdicts, context.Import.Columns()));
}

constexpr DialogCommand<ImportDialog> kCommands[] = {
    {ID_IMPORT_FILE, EN_CHANGE, ChangeFile},       {ID_IMPORT_BROWSE, BN_CLICKED, Browse},
    {ID_IMPORT_REPLACE, BN_CLICKED, EnableImport}, {ID_IMPORT_SAVE_WRONG, BN_CLICKED, SaveWrong},
    {ID_IMPORT_ROWS, kListReload, ReadFile},       {IDOK, BN_CLICKED, PressImport},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_IMPORT_FILE, kGrowsAcross},
    {ID_IMPORT_BROWSE, kMovesAcross},
    {ID_IMPORT_COLUMNS, kGrowsAcross},
    {ID_IMPORT_ROWS, kGrowsBoth},
    {ID_IMPORT_REPLACE, kMovesDown},
    {ID_IMPORT_GOOD_ONLY, kMovesDown},
    {ID_IMPORT_SAVE_WRONG, kMovesBoth},
    {ID_IMPORT_COUNT, kMovesDown | kGrowsAcross},
    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<ImportDialog> kPlan{HELP_IMPORT, FillImport, kCommands, kAnchors};

} // namespace

bool ImportByDialog(HWND owner, CsvImport& import) {
    ImportDialog context{.Import = import};
    OpenDialog("CsvImportBox", owner, CsvImportDlgBox, &context);
    return context.IsDone;
}

bool ExportByDialog(HWND owner, const std::string& text) {
    const auto path = PickCsvFile(owner, PickFor::Saving, {});
    if (!path) return false;
    const bool isWritten = WriteWholeFile(*path, text);
    if (!isWritten) ShowError(kUnableToUpdateFile, *path);
    return isWritten;
}

INT_PTR CALLBACK CsvImportDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
