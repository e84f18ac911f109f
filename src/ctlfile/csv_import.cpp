#include "ctlfile/csv_import.h"

#include <algorithm>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/reading.h"
#include "voice/messages.h"

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

bool ImportRun::Read(const std::string& path, bool isUtf8) {
    isRead_ = false;
    table_ = {};
    verdicts_.clear();
    ControlStream stream = OpenForReading(path);
    if (!stream) return false;
    const std::string text(stream.Rest());
    if (!WasRead(stream)) return false;
    stream = {};
    CsvTable table = ReadCsvTable(text, import_.Columns(), import_.Title(), isUtf8);
    auto verdicts = import_.Check(table);
    if (!verdicts) return false;
    table_ = std::move(table);
    verdicts_ = std::move(*verdicts);
    isRead_ = true;
    return true;
}

std::size_t ImportRun::CountWrong() const { return CountOf(verdicts_, RowState::Wrong) + table_.Faults.size(); }

bool ImportRun::CanProceed(const std::string& path, const ImportChoice& choice) const {
    if (!isRead_) return !path.empty();
    return std::ranges::any_of(verdicts_, [&](const RowVerdict& verdict) { return IsTaken(verdict, choice); });
}

bool ImportRun::Apply(const ImportCounts& planned, const Progress& goOn) {
    const ImportCounts done = import_.Apply([&](std::size_t count) { return goOn(count, planned.Added); });
    if (done == planned)
        ShowStatus(kImported, done.Added, done.Changed);
    else
        ShowStatus(kImportStopped, done.Added, planned.Added, done.Changed, planned.Changed);
    return done == planned || done.Added + done.Changed > 0;
}

ImportRun::Step ImportRun::Proceed(const std::string& path, const ImportChoice& choice, const Progress& goOn) {
    if (!isRead_) return Read(path) ? Step::Read : Step::Refused;
    if (CountWrong() > 0 && !choice.GoodOnly) {
        ShowError(kNothingImported, CountWrong());
        return Step::Refused;
    }
    const auto verdicts = import_.Check(ChosenRows(table_, verdicts_, choice));
    if (!verdicts) return Step::Refused;
    if (CountOf(*verdicts, RowState::Wrong) > 0) return Read(path) ? Step::Read : Step::Refused;
    const ImportCounts planned = {CountOf(*verdicts, RowState::New), CountOf(*verdicts, RowState::Replaces)};
    return Apply(planned, goOn) ? Step::Imported : Step::Refused;
}

} // namespace bv
