#include "dialogs/csv_import_dlg.h"

#include <array>
#include <optional>

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
    explicit ImportDialog(CsvImport& import) : Import(import), Run(import) {}

    CsvImport& Import;
    ImportRun Run;
    RowTable Rows;
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
    const CsvTable& table = context.Run.Table();
    context.Rows.Begin(std::size(kColumns));
    for (const CsvFault& fault : table.Faults)
        AddRow(context.Rows, fault.Line, ResultWord(RowState::Wrong), fault.Text);
    for (std::size_t i = 0; i < context.Run.Verdicts().size(); ++i) {
        const auto& [state, name, notes] = context.Run.Verdicts()[i];
        const std::size_t line = table.Rows[i].empty() ? 0 : table.Rows[i].front().Line;
        if (notes.empty()) AddRow(context.Rows, line, ResultWord(state), name);
        const std::string before = name.empty() ? name : name + ": ";
        for (const RowNote& note : notes) AddRow(context.Rows, line, ResultWord(state), before + note.Text);
    }
    return context.Run.IsRead();
}

ImportChoice ChoiceOf(HWND dialog) {
    return {.Replace = IsDlgButtonChecked(dialog, ID_IMPORT_REPLACE) == BST_CHECKED,
            .GoodOnly = IsDlgButtonChecked(dialog, ID_IMPORT_GOOD_ONLY) == BST_CHECKED};
}

void EnableImport(HWND dialog, ImportDialog& context) {
    EnableControl(dialog, IDOK, context.Run.CanProceed(GetText(dialog, ID_IMPORT_FILE), ChoiceOf(dialog)));
    EnableControl(dialog, ID_IMPORT_SAVE_WRONG, CountOf(context.Run.Verdicts(), RowState::Wrong) > 0);
}

void ShowCounts(HWND dialog, const ImportRun& run) {
    const auto count = [&](RowState state) { return CountOf(run.Verdicts(), state); };
    const std::string text = FillMessage(kImportRows, count(RowState::New), count(RowState::Replaces),
                                         count(RowState::Same), run.CountWrong());
    SetText(dialog, ID_IMPORT_COUNT, run.IsRead() ? text : std::string());
}

void ShowRows(HWND dialog, ImportDialog& context) {
    context.List.Refill([&] { return ListRows(context); });
    ShowCounts(dialog, context.Run);
    EnableImport(dialog, context);
}

void ReadFile(HWND dialog, ImportDialog& context) {
    const WaitCursor wait;
    context.Run.Read(GetText(dialog, ID_IMPORT_FILE));
    ShowRows(dialog, context);
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

void ChangeFile(HWND dialog, ImportDialog& context) {
    context.Run.Forget();
    EnableImport(dialog, context);
}

void PressImport(HWND dialog, ImportDialog& context) {
    const WaitCursor wait;
    std::optional<ProgressBox> progress;
    const auto goOn = [&](std::size_t done, std::size_t all) {
        if (!progress) progress.emplace(dialog, static_cast<int>(all));
        const std::string text = FillMessage(kImportProgress, done + 1, all, context.Import.Title());
        return progress->Advance(static_cast<int>(done), text, {});
    };
    const ImportRun::Step step = context.Run.Proceed(GetText(dialog, ID_IMPORT_FILE), ChoiceOf(dialog), goOn);
    progress.reset();
    context.IsDone = step == ImportRun::Step::Imported;
    if (context.IsDone) return EndWithOk(dialog, context);
    ShowRows(dialog, context);
}

void SaveWrong(HWND dialog, ImportDialog& context) {
    const ImportRun& run = context.Run;
    ExportByDialog(dialog, WrongRowsAsCsv(run.Table(), run.Verdicts(), context.Import.Columns()));
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
    ImportDialog context(import);
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
