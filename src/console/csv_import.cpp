#include "console/csv_import.h"

#include <cstdint>
#include <optional>
#include <span>

#include "console/dry_run.h"
#include "console/interrupt.h"
#include "ctlfile/utf8.h"
#include "platform/clock.h"
#include "voice/messages.h"

namespace bv::console {
namespace {

constexpr std::int64_t kProgressInterval = 100; // milliseconds

using Verdicts = std::span<const RowVerdict>;

ImportCounts Planned(Verdicts verdicts) {
    return {CountOf(verdicts, RowState::New), CountOf(verdicts, RowState::Replaces)};
}

// What is wrong, in the order of the file: with its form, then with its rows.
std::vector<CsvFault> FaultsOf(const CsvTable& table, Verdicts verdicts) {
    std::vector<CsvFault> faults = table.Faults;
    for (std::size_t i = 0; i < verdicts.size(); ++i) {
        if (verdicts[i].State != RowState::Wrong) continue;
        for (const RowNote& note : verdicts[i].Notes) {
            const CsvField& field = table.Rows[i][note.Column - 1];
            faults.push_back({field.Line, field.Column, note.Text});
        }
    }
    return faults;
}

// What a rehearsal shows before the differences of the files.
void ShowPlan(const Session& session, Verdicts verdicts, std::string_view what) {
    for (const auto& [state, name, notes] : verdicts) {
        if (state == RowState::New) session.Streams.PrintNotice(FormatText("Would add %s %s\n", what, name));
        if (state != RowState::Replaces) continue;
        session.Streams.PrintNotice(FormatText("Would change %s %s\n", what, name));
        for (const RowNote& note : notes) session.Streams.PrintNotice("    " + note.Text + '\n');
    }
}

// Shows a person how far it is, now and then.
class Progress {
  public:
    Progress(const Session& session, std::string_view what, std::size_t all)
        : session_(session), what_(what), all_(all), isShown_(session.Streams.IsTerminal() && !session.DryRun) {}
    ~Progress() {
        if (lastShown_) session_.Streams.PrintNotice("\n");
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(std::size_t done) {
        const std::int64_t now = platform::TheClock().Ticks();
        if (!isShown_ || now - lastShown_.value_or(start_) < kProgressInterval) return;
        session_.Streams.PrintProgress(FormatText("Adding %s %d of %d", what_, done + 1, all_));
        lastShown_ = now;
    }

  private:
    const Session& session_;
    std::string_view what_;
    std::size_t all_;
    bool isShown_;
    std::int64_t start_ = platform::TheClock().Ticks();
    std::optional<std::int64_t> lastShown_;
};

bool Save(const Session& session, CsvImport& import, const ImportCounts& planned) {
    ImportCounts saved;
    {
        const InterruptWatch watch;
        Progress progress(session, import.EntryTitle(), planned.Added);
        session.SayWhatIsDone(false); // a dozen for each entry
        saved = import.Apply([&](std::size_t done) {
            progress.Show(done);
            return !InterruptWatch::WasInterrupted();
        });
    }
    session.SayWhatIsDone();
    if (saved == planned) {
        const std::string_view things = saved.Added == 1 ? import.EntryTitle() : import.Title();
        ShowStatus("Added %d %s, changed %d", saved.Added, things, saved.Changed);
    } else {
        const std::string_view things = planned.Added == 1 ? import.EntryTitle() : import.Title();
        ShowStatus("Stopped: added %d of %d %s, changed %d of %d", saved.Added, planned.Added, things, saved.Changed,
                   planned.Changed);
    }
    return saved == planned;
}

} // namespace

bool IsUtf8Csv(const Session& session, const Arguments& arguments) {
    return arguments.Has(kUtf8Flag.Name) || session.Streams.IsUtf8();
}

void PrintCsv(const Session& session, const Arguments& arguments, const std::string& text) {
    if (arguments.Has(kUtf8Flag.Name))
        session.Streams.PrintDocument(kByteOrderMark); // the locale cannot be known later
    session.Streams.PrintDocument(IsUtf8Csv(session, arguments) ? FromCodePage(text) : text);
}

int ImportFile(Session& session, const Arguments& arguments, CsvImport& import) {
    const std::string& file = arguments["FILE"];
    ImportRun run(import);
    if (!run.Read(file, IsUtf8Csv(session, arguments))) return kExitRefused;
    const std::vector<CsvFault> faults = FaultsOf(run.Table(), run.Verdicts());
    for (const auto& [line, column, why] : faults)
        session.Streams.PrintNotice(FormatText("%s, line %d, column %d: %s\n", file, line, column, why));
    if (!faults.empty()) return kExitRefused;
    if (session.DryRun) ShowPlan(session, run.Verdicts(), import.EntryTitle());
    return Perform(session, [&] { return Save(session, import, Planned(run.Verdicts())); });
}

} // namespace bv::console
