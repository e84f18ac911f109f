#include "lcr/destination_import.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <utility>

#include "ctlfile/lines.h"
#include "lcr/destination_entry.h"
#include "lcr/edit_lock.h"
#include "lcr/lcr_messages.h"
#include "lcr/lcr_uses.h"
#include "platform/ascii.h"
#include "voice/messages.h"

namespace bv {
namespace {

enum Column { kKind, kCountry, kIdentifier, kDescription, kDiallingCode, kLastField, kMatches, kColumnCount };
constexpr std::array<std::string_view, kColumnCount> kColumns = {
    "Kind", "Country", "Identifier", "Description", "DiallingCode", "LastField", "Matches"};

// One row: its fields by their columns, and the verdict on it.
class JudgedRow {
  public:
    JudgedRow(const CsvTable& table, std::size_t index, RowVerdict& verdict)
        : columns_(table.Columns), row_(table.Rows[index]), verdict_(verdict) {}

    [[nodiscard]] std::optional<std::string> Text(std::string_view column) const {
        const std::size_t at = At(column);
        return at < row_.size() ? std::optional(row_[at].Text) : std::nullopt;
    }
    [[nodiscard]] std::string Text(Column column) const { return Text(kColumns[column]).value_or(""); }
    [[nodiscard]] bool IsOfKind(std::string_view kind) const { return EqualFolded(Text(kKind), kind); }

    void AddFault(std::string_view column, std::string text) {
        verdict_.State = RowState::Wrong;
        AddNote(column, std::move(text));
    }
    void AddNote(std::string_view column, std::string text) {
        const std::size_t at = At(column);
        verdict_.Notes.push_back({(at < row_.size() ? at : At(kColumns[kKind])) + 1, std::move(text)});
    }
    [[nodiscard]] bool IsWrong() const { return verdict_.State == RowState::Wrong; }
    void Finish(RowState state, const std::string& name) {
        verdict_.State = state;
        verdict_.Name = name;
    }

  private:
    [[nodiscard]] std::size_t At(std::string_view column) const {
        const auto isIt = [&](std::size_t index) { return kColumns[index] == column; };
        return static_cast<std::size_t>(std::ranges::find_if(columns_, isIt) - columns_.begin());
    }

    const std::vector<std::size_t>& columns_;
    const CsvRecord& row_;
    RowVerdict& verdict_;
};

// Takes the rows of one kind into the tables, which are as an edit would make them.
class DestinationJudge {
  public:
    DestinationJudge(DestinationEdit& edit, DestinationChanges& changes) : edit_(edit), changes_(changes) {}

    void JudgeCountry(JudgedRow& row) {
        if (const CountryEntry* entry = Judge(CountryKind(), row, countries_, "")) changes_.Countries.push_back(*entry);
    }

    void JudgeArea(JudgedRow& row) {
        const CountryEntry* country = edit_.Tables.FindCountry(row.Text(kCountry));
        if (country == nullptr)
            return row.AddFault(kColumns[kCountry], FillMessage(kAreaNeedsCountry, CleanLine(row.Text(kCountry))));
        const AreaKind kind = {country->DiallingCode};
        auto& areas = areas_.try_emplace(kind.Code, kind.All(edit_)).first->second;
        if (const AreaEntry* entry = Judge(kind, row, areas, country->Identifier + "/"))
            changes_.Areas[kind.Code].push_back(*entry);
    }

    void JudgeRegion(JudgedRow& row) {
        if (const RegionEntry* entry = Judge(RegionKind(), row, regions_, "")) changes_.Regions.push_back(*entry);
    }

    // Puts what was judged into the tables, for the next kind to refer to.
    void Store() {
        for (CountryEntry& country : countries_) {
            const auto areas = areas_.find(country.DiallingCode);
            if (areas != areas_.end()) country.Areas = areas->second;
        }
        edit_.Tables = {regions_, countries_};
    }

  private:
    // The entry as the row changes it, in the list; null for a row that changes nothing or is wrong.
    template <class Kind, class Entry>
    const Entry* Judge(const Kind& kind, JudgedRow& row, std::vector<Entry>& all, const std::string& before) {
        const std::string name = row.Text(kIdentifier);
        const auto isIt = [&](const Entry& one) { return EqualFolded(one.Identifier, name); };
        const auto found = std::ranges::find_if(all, isIt);
        const bool isNew = found == all.end();
        const Entry old = isNew ? Entry() : *found;
        Entry entry = old;
        EnterRow(row, isNew, old, entry);
        const std::string shown = before + entry.Identifier;
        if (!seen_.insert(UpperText(std::string(Kind::kName) + ' ' + before + name)).second)
            row.AddFault(kColumns[kIdentifier], FillMessage(kRowIsThereTwice, kColumns[kIdentifier], CleanLine(name)));
        if (!row.IsWrong() && entry == old) row.Finish(RowState::Same, shown);
        if (row.IsWrong() || entry == old) return nullptr;
        CheckWhole(kind, row, all, entry, old);
        if (row.IsWrong()) return nullptr;
        row.Finish(isNew ? RowState::New : RowState::Replaces, shown);
        ++(isNew ? changes_.Counts.Added : changes_.Counts.Changed);
        if (!isNew) {
            NoteChanges(row, old, entry);
            *found = entry;
            return &*found;
        }
        return &all.emplace_back(entry);
    }

    template <class Entry>
    static void EnterRow(JudgedRow& row, bool isNew, const Entry& old, Entry& entry) {
        for (const auto& [field] : RowsOf(entry)) {
            const std::string_view name = field.Name();
            const std::optional<std::string> text = row.Text(name);
            if (!text) continue;
            if (!isNew && name == kColumns[kIdentifier]) continue; // in any case
            if (const auto fault = isNew ? field.FaultOf(*text) : field.FaultIn(old, *text)) {
                row.AddFault(name, *fault);
                continue;
            }
            field.Store(entry, *text);
        }
    }

    template <class Entry>
    static void NoteChanges(JudgedRow& row, const Entry& old, const Entry& entry) {
        for (const auto& [field] : RowsOf(entry)) {
            const std::string before = field.Text(old);
            const std::string now = field.Text(entry);
            if (now != before) row.AddNote(field.Name(), FormatText("%s: \"%s\" -> \"%s\"", field.Name(), before, now));
        }
    }

    // What an entry may not be beside the others. A fault names its field first.
    template <class Kind, class Entry>
    void CheckWhole(const Kind& kind, JudgedRow& row, const std::vector<Entry>& all, const Entry& entry,
                    const Entry& old) {
        if (const std::string fault = kind.FaultOf(edit_, entry, old); !fault.empty())
            return row.AddFault(fault.substr(0, fault.find(':')), fault);
        const auto begins = [&](const Entry& one) { return StartsWithFolded(one.Identifier, entry.Identifier); };
        const auto first = std::ranges::find_if(all, begins);
        if (first != all.end() && !EqualFolded(first->Identifier, entry.Identifier))
            row.AddFault(kColumns[kIdentifier], FillMessage(kWouldReplace, entry.Identifier, first->Identifier));
    }

    DestinationEdit& edit_;
    DestinationChanges& changes_;
    std::vector<CountryEntry> countries_ = edit_.Tables.Countries();
    std::map<std::string, std::vector<AreaEntry>> areas_; // by dialling codes
    std::vector<RegionEntry> regions_ = edit_.Tables.Regions();
    std::set<std::string> seen_; // kind and name, in upper case
};

struct KindOfRow {
    std::string_view Word;
    void (DestinationJudge::*Judge)(JudgedRow& row);
};
constexpr KindOfRow kKinds[] = {{CountryKind::kName, &DestinationJudge::JudgeCountry},
                                {AreaKind::kName, &DestinationJudge::JudgeArea},
                                {RegionKind::kName, &DestinationJudge::JudgeRegion}};

} // namespace

std::span<const std::string_view> DestinationImport::Columns() const { return kColumns; }

std::optional<std::vector<RowVerdict>> DestinationImport::Check(const CsvTable& table) {
    changes_ = {};
    DestinationEdit edit; // of which no file is touched
    if (open_ != nullptr)
        edit.Tables = open_->Tables;
    else if (!LoadDestinations(edit.Tables))
        return {};
    DestinationJudge judge(edit, changes_);
    std::vector<RowVerdict> verdicts(table.Rows.size());
    for (const KindOfRow& kind : kKinds) {
        for (std::size_t i = 0; i < table.Rows.size(); ++i) {
            JudgedRow row(table, i, verdicts[i]);
            if (row.IsOfKind(kind.Word)) (judge.*kind.Judge)(row);
        }
        judge.Store();
    }
    for (std::size_t i = 0; i < table.Rows.size(); ++i) {
        JudgedRow row(table, i, verdicts[i]);
        const bool isKind = std::ranges::any_of(kKinds, [&](const auto& kind) { return row.IsOfKind(kind.Word); });
        if (!isKind) row.AddFault(kColumns[kKind], FillMessage(kNotAKindOfPlace, CleanLine(row.Text(kKind))));
    }
    changes_.After = std::move(edit.Tables);
    return verdicts;
}

bool DestinationImport::Write(DestinationEdit& edit) const {
    const auto uses = FindLostDestinations(edit.Tables, changes_.After);
    if (!uses || !AskDespiteUses(*uses, Title())) return false;
    bool isDone = WriteCountries(edit, changes_.Countries);
    for (const auto& [code, areas] : changes_.Areas) isDone = isDone && WriteAreas(edit, code, areas);
    return isDone && WriteRegions(edit, changes_.Regions);
}

bool DestinationImport::WriteFiles() const {
    DestinationEdit edit;
    if (!BeginDestinationEdit(edit)) return false;
    const bool isDone = Write(edit) && CommitDestinationEdit(edit);
    DropDestinationEdit(edit);
    return isDone;
}

ImportCounts DestinationImport::Apply(const ImportProgress& goOn) {
    const auto write = [&] {
        return open_ != nullptr ? Write(*open_) : RunLcrEditor([&] { return WriteFiles(); }, Title());
    };
    const bool isDone = goOn(0) && write();
    return isDone ? changes_.Counts : ImportCounts();
}

std::string DestinationsAsCsv(const Destinations& places) {
    std::string text;
    const auto add = [&text](const std::array<std::string, kColumnCount>& fields) {
        for (std::size_t i = 0; i < fields.size(); ++i) text.append(i == 0 ? "" : ",").append(CsvText(fields[i]));
        text += kLineEnd;
    };
    // Each field of an entry has the column of its name.
    const auto addEntry = [&](std::string_view kind, const std::string& country, const auto& entry) {
        std::array<std::string, kColumnCount> fields = {std::string(kind), country};
        for (const auto& [field] : RowsOf(entry))
            fields[static_cast<std::size_t>(std::ranges::find(kColumns, field.Name()) - kColumns.begin())] =
                field.Text(entry);
        add(fields);
    };
    for (std::size_t i = 0; i < kColumns.size(); ++i) text.append(i == 0 ? "" : ",").append(kColumns[i]);
    text += kLineEnd;
    for (const CountryEntry& country : places.Countries()) {
        addEntry(CountryKind::kName, "", country);
        for (const AreaEntry& area : country.Areas) addEntry(AreaKind::kName, country.Identifier, area);
    }
    for (const RegionEntry& region : places.Regions()) addEntry(RegionKind::kName, "", region);
    return text;
}

} // namespace bv
