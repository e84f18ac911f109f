#include "ctlfile/csv_import.h"

#include <algorithm>

#include "ctlfile/lines.h"

namespace bv {
namespace {

bool IsTaken(const RowVerdict& verdict, const ImportChoice& choice) {
    if (verdict.State == RowState::New) return true;
    return verdict.State == RowState::Replaces && choice.Replace;
}

std::string RecordText(const CsvRecord& record) {
    std::string text;
    for (const CsvField& field : record) text.append(text.empty() ? "" : ",").append(CsvText(field.Text));
    return text;
}

} // namespace

std::size_t CountOf(std::span<const RowVerdict> verdicts, RowState state) {
    return static_cast<std::size_t>(std::ranges::count(verdicts, state, &RowVerdict::State));
}

CsvTable ChosenRows(const CsvTable& table, std::span<const RowVerdict> verdicts, const ImportChoice& choice) {
    CsvTable chosen;
    chosen.Columns = table.Columns;
    for (std::size_t i = 0; i < verdicts.size(); ++i)
        if (IsTaken(verdicts[i], choice)) chosen.Rows.push_back(table.Rows[i]);
    return chosen;
}

std::string WrongRowsAsCsv(const CsvTable& table, std::span<const RowVerdict> verdicts,
                           std::span<const std::string_view> columns) {
    std::string text;
    for (const std::size_t column : table.Columns) text.append(columns[column]).append(",");
    text.append("Fault").append(kLineEnd);
    for (std::size_t i = 0; i < verdicts.size(); ++i) {
        if (verdicts[i].State != RowState::Wrong) continue;
        std::string faults;
        for (const RowNote& note : verdicts[i].Notes) faults.append(faults.empty() ? "" : "; ").append(note.Text);
        text.append(RecordText(table.Rows[i])).append(",").append(CsvText(faults)).append(kLineEnd);
    }
    return text;
}

} // namespace bv
