#include "users/user_import.h"

#include <algorithm>
#include <map>
#include <set>

#include "ctlfile/lines.h"
#include "platform/ascii.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr RecordKind kUser = RecordKind::User;
constexpr std::string_view kNameColumn = "Name";

// What the list holds that the rows are judged by; names in upper case.
struct KnownRecords {
    std::map<std::string, StoredRecord> Users; // those that the rows name
    std::set<std::string> Groups;
    StoredRecord Default;
};

bool ReadKnown(const std::set<std::string>& names, KnownRecords& known) {
    const auto keepNamed = [&](const StoredRecord& user) {
        std::string upper = UpperText(user.Name);
        if (names.contains(upper)) known.Users.try_emplace(std::move(upper), user);
        return true;
    };
    const auto keepGroup = [&](const StoredRecord& group) {
        known.Groups.insert(UpperText(group.Name));
        return true;
    };
    if (!VisitUserRecords(kUser, keepNamed) || !VisitUserRecords(RecordKind::Group, keepGroup)) return false;
    const bool addsAny = std::ranges::any_of(names, [&](const auto& name) { return !known.Users.contains(name); });
    if (!addsAny) return true;
    UserList list;
    const auto defaultUser = list ? list.ReadStored(std::nullopt, kUser) : std::nullopt;
    if (defaultUser) known.Default = *defaultUser;
    return defaultUser.has_value();
}

// Judges the rows of a file one by one.
class RowJudge {
  public:
    RowJudge(const std::vector<std::size_t>& columns, std::span<const std::string_view> names)
        : columns_(columns), names_(names),
          nameAt_(static_cast<std::size_t>(std::ranges::find(columns, 0U) - columns.begin())) {}

    [[nodiscard]] const std::string& NameIn(const CsvRecord& row) const { return row[nameAt_].Text; }

    // The row's user with its values, as far as they can be entered; what is wrong goes into the verdict.
    RecordEntry Enter(const CsvRecord& row, const KnownRecords& known, RowVerdict& verdict) {
        const std::string& name = NameIn(row);
        const std::string upper = UpperText(name);
        const auto user = known.Users.find(upper);
        const bool isNew = user == known.Users.end();
        if (!seen_.insert(upper).second) AddFault(verdict, nameAt_, "Name: \"" + CleanLine(name) + "\" is there twice");
        if (isNew) CheckNewName(name, known, verdict);
        RecordEntry entry = isNew ? RecordEntry::OfNew(kUser, name, known.Default) : RecordEntry(kUser, user->second);
        for (std::size_t at = 0; at < row.size(); ++at) {
            if (at != nameAt_) EnterField(row[at].Text, at, known, entry, verdict);
        }
        if (verdict.State != RowState::Wrong) CheckWhole(entry, verdict);
        if (verdict.State == RowState::Wrong) return entry;
        // A line that says other than what it reads as is no reason to write: a file gives what is in force.
        if (isNew)
            verdict.State = RowState::New;
        else if (entry.After() != entry.Before())
            verdict.State = RowState::Replaces;
        if (verdict.State == RowState::Replaces) {
            for (const auto& change : entry.Changes()) verdict.Notes.push_back({ColumnOf(*change.Key), change.Text});
        }
        verdict.Name = entry.Name();
        return entry;
    }

  private:
    static void AddFault(RowVerdict& verdict, std::size_t at, std::string text) {
        verdict.State = RowState::Wrong;
        verdict.Notes.push_back({at + 1, std::move(text)});
    }

    void CheckNewName(const std::string& name, const KnownRecords& known, RowVerdict& verdict) const {
        if (const auto fault = FaultOfNewName(name, kUser))
            AddFault(verdict, nameAt_, *fault);
        else if (known.Groups.contains(UpperText(name)))
            AddFault(verdict, nameAt_, FillMessage(kNameTaken, name));
    }

    void EnterField(const std::string& value, std::size_t at, const KnownRecords& known, RecordEntry& entry,
                    RowVerdict& verdict) const {
        const std::string_view key = names_[columns_[at]];
        const bool isInForce = value == FindRecordKey(kUser, key)->Show(entry.Before());
        if (const auto fault = entry.Enter(key, value)) AddFault(verdict, at, *fault);
        const bool isGroup = key == "Group" && !value.empty() && !isInForce;
        if (isGroup && !known.Groups.contains(UpperText(value)))
            AddFault(verdict, at, FillMessage(kNoSuchGroup, CleanLine(value)));
    }

    void CheckWhole(const RecordEntry& entry, RowVerdict& verdict) const {
        if (!entry.IsNew() && entry.After() == entry.Before()) return;
        if (const auto fault = entry.FaultOfWhole()) AddFault(verdict, ColumnOf(*fault->Key) - 1, fault->Text);
    }

    // The column of a key in the file; that of the name for a key that is not there.
    [[nodiscard]] std::size_t ColumnOf(const RecordKey& key) const {
        const auto isKey = [&](std::size_t column) { return names_[column] == KeyName(key); };
        const auto found = std::ranges::find_if(columns_, isKey);
        return 1 + (found == columns_.end() ? nameAt_ : static_cast<std::size_t>(found - columns_.begin()));
    }

    const std::vector<std::size_t>& columns_;
    std::span<const std::string_view> names_; // of all columns that there are
    std::size_t nameAt_;
    std::set<std::string> seen_; // in upper case
};

} // namespace

UserImport::UserImport() : columns_{kNameColumn} {
    for (const RecordKey& key : RecordKeys()) {
        if (HasKey(key, kUser)) columns_.push_back(KeyName(key));
    }
}

std::optional<std::vector<RowVerdict>> UserImport::Check(const CsvTable& table) {
    RowJudge judge(table.Columns, columns_);
    std::set<std::string> names;
    for (const CsvRecord& row : table.Rows) names.insert(UpperText(judge.NameIn(row)));
    KnownRecords known;
    if (!ReadKnown(names, known)) return {};
    added_.clear();
    updated_.clear();
    std::vector<RowVerdict> verdicts;
    verdicts.reserve(table.Rows.size());
    for (const CsvRecord& row : table.Rows) {
        RowVerdict& verdict = verdicts.emplace_back();
        const RecordEntry entry = judge.Enter(row, known, verdict);
        if (verdict.State == RowState::New) added_.push_back({entry.Name(), entry.After()});
        if (verdict.State == RowState::Replaces) updated_.push_back({entry.Name(), entry.Before(), entry.After()});
    }
    return verdicts;
}

ImportCounts UserImport::Apply(const ImportProgress& goOn) {
    const SavedUsers saved = SaveUsers(added_, updated_, kUser, goOn);
    return {saved.Added, saved.Updated};
}

} // namespace bv
