#include "console/user_import.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "console/csv.h"
#include "console/dry_run.h"
#include "console/interrupt.h"
#include "ctlfile/lines.h"
#include "ctlfile/reading.h"
#include "platform/ascii.h"
#include "platform/clock.h"
#include "platform/drives.h"
#include "shell/messages.h"
#include "users/user_actions.h"
#include "users/user_entry.h"
#include "users/user_list.h"

namespace bv::console {
namespace {

constexpr RecordKind kUser = RecordKind::User;
constexpr std::string_view kNameColumn = "Name";
constexpr std::int64_t kProgressInterval = 100; // milliseconds

// What the list holds that the rows are judged by.
struct KnownRecords {
    std::map<std::string, NamedRecord> Users; // by name in upper case, those that the rows name
    std::set<std::string> Groups;             // in upper case
    UserRecord Default;
};

struct Plan {
    std::vector<NamedRecord> Added;
    std::vector<RecordUpdate> Updated;
};

// The rows of a file as a plan, and what is wrong with them.
class ImportPlanner {
  public:
    // False when the first line is no list of keys, so that nothing can be said of the rows.
    bool ReadFile(std::string_view text) {
        CsvReader reader(text);
        const std::optional<CsvRecord> header = reader.Next();
        if (header) ReadHeader(*header);
        if (!header && reader.Fault().empty()) AddFault(1, 1, "a line with the names of the keys is missing");
        const bool hasColumns = header && Faults.empty();
        while (hasColumns) {
            const std::optional<CsvRecord> row = reader.Next();
            if (!row) break;
            AddRow(*row);
        }
        if (!reader.Fault().empty()) Faults.push_back(reader.Fault());
        return hasColumns;
    }

    // The names in the rows, in upper case.
    [[nodiscard]] std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const CsvRecord& row : rows_) names.insert(UpperText(row[nameColumn_].Text));
        return names;
    }

    Plan MakePlan(const KnownRecords& known) {
        Plan plan;
        for (const CsvRecord& row : rows_) {
            const auto user = known.Users.find(UpperText(row[nameColumn_].Text));
            if (user == known.Users.end()) {
                PlanAddition(row, known, plan);
            } else {
                PlanUpdate(row, known, user->second, plan);
            }
        }
        return plan;
    }

    std::vector<std::string> Faults;

  private:
    void AddFault(std::size_t line, std::size_t column, std::string_view reason) {
        Faults.push_back(FormatText("line %d, column %d: %s", line, column, reason));
    }
    void AddFault(const CsvField& field, std::string_view reason) { AddFault(field.Line, field.Column, reason); }

    void ReadHeader(const CsvRecord& header) {
        for (const CsvField& field : header) {
            const bool isName = EqualFolded(field.Text, kNameColumn);
            const RecordKey* key = isName ? nullptr : FindRecordKey(kUser, field.Text);
            if (isName && hasName_) AddFault(field, "Name is there twice");
            if (!isName && key == nullptr)
                AddFault(field, FormatText("\"%s\" is no key of users", CleanLine(field.Text)));
            if (key != nullptr && std::ranges::find(columns_, key) != columns_.end())
                AddFault(field, FormatText("%s is there twice", KeyName(*key)));
            if (isName) nameColumn_ = columns_.size();
            hasName_ = hasName_ || isName;
            columns_.push_back(key);
        }
        if (!hasName_) AddFault(header.front(), "there is no column Name");
    }

    void AddRow(const CsvRecord& row) {
        if (row.size() != columns_.size()) {
            AddFault(row.back(), FormatText("%d fields where the first line has %d", row.size(), columns_.size()));
            return;
        }
        const CsvField& name = row[nameColumn_];
        if (!names_.insert(UpperText(name.Text)).second) {
            AddFault(name, FormatText("Name: \"%s\" is there twice", CleanLine(name.Text)));
            return;
        }
        rows_.push_back(row);
    }

    // The record with the row's values, as far as they can be entered. A value that is in force already is no change,
    // whether it can be entered or not.
    UserRecord Entered(const CsvRecord& row, const KnownRecords& known, const UserRecord& before) {
        UserRecord after = before;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const RecordKey* key = columns_[i];
            if (key == nullptr || row[i].Text == key->Show(before)) continue;
            if (const auto fault = EnterValue(after, kUser, KeyName(*key), row[i].Text)) AddFault(row[i], *fault);
            if (key->Key == "Group:" && !row[i].Text.empty() && !known.Groups.contains(UpperText(row[i].Text)))
                AddFault(row[i], FillMessage(9024, CleanLine(row[i].Text)));
        }
        const std::string& name = row[nameColumn_].Text;
        if (const auto fault = FaultOfChange(name, before, after, kUser)) AddFault(row[nameColumn_], *fault);
        return after;
    }

    void PlanAddition(const CsvRecord& row, const KnownRecords& known, Plan& plan) {
        const CsvField& name = row[nameColumn_];
        if (const auto fault = FaultOfNewName(name.Text)) AddFault(name, *fault);
        if (known.Groups.contains(UpperText(name.Text))) AddFault(name, FillMessage(9023, name.Text));
        plan.Added.push_back({name.Text, Entered(row, known, known.Default)});
    }

    void PlanUpdate(const CsvRecord& row, const KnownRecords& known, const NamedRecord& user, Plan& plan) {
        const UserRecord after = Entered(row, known, user.Record);
        if (after != user.Record) plan.Updated.push_back({user.Name, user.Record, after});
    }

    std::vector<const RecordKey*> columns_; // none for the name's
    std::size_t nameColumn_ = 0;
    bool hasName_ = false;
    std::vector<CsvRecord> rows_;
    std::set<std::string> names_; // in upper case
};

bool ReadKnown(const std::set<std::string>& names, KnownRecords& known) {
    const auto keepNamed = [&](std::string_view name, const UserRecord& record) {
        std::string upper = UpperText(name);
        if (names.contains(upper)) known.Users.try_emplace(std::move(upper), NamedRecord{std::string(name), record});
        return true;
    };
    const auto keepGroup = [&](std::string_view name, const UserRecord&) {
        known.Groups.insert(UpperText(name));
        return true;
    };
    if (!VisitUserRecords(kUser, keepNamed) || !VisitUserRecords(RecordKind::Group, keepGroup)) return false;
    const bool addsAny = std::ranges::any_of(names, [&](const auto& name) { return !known.Users.contains(name); });
    return !addsAny || ReadUserRecord(std::nullopt, known.Default, kUser);
}

// What a rehearsal shows before the differences of the files.
void ShowPlan(const Session& session, const Plan& plan) {
    for (const NamedRecord& added : plan.Added) session.Streams.PrintNotice("Would add user " + added.Name + '\n');
    for (const auto& [name, before, after] : plan.Updated) {
        session.Streams.PrintNotice("Would change user " + name + '\n');
        for (const RecordKey& key : RecordKeys()) {
            if (!HasKey(key, kUser) || key.Show(before) == key.Show(after)) continue;
            session.Streams.PrintNotice(
                FormatText("    %s: \"%s\" to \"%s\"\n", KeyName(key), key.Show(before), key.Show(after)));
        }
    }
}

// Shows a person how far it is, now and then.
class Progress {
  public:
    Progress(const Session& session, std::size_t all)
        : session_(session), all_(all), isShown_(session.Streams.IsTerminal() && !session.DryRun) {}
    ~Progress() {
        if (lastShown_) session_.Streams.PrintNotice("\n");
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(std::size_t done) {
        const std::int64_t now = platform::TheClock().Ticks();
        if (!isShown_ || now - lastShown_.value_or(start_) < kProgressInterval) return;
        session_.Streams.PrintNotice(FormatText("\rAdding user %d of %d", done + 1, all_));
        lastShown_ = now;
    }

  private:
    const Session& session_;
    std::size_t all_;
    bool isShown_;
    std::int64_t start_ = platform::TheClock().Ticks();
    std::optional<std::int64_t> lastShown_;
};

bool Save(const Session& session, const Plan& plan) {
    SavedUsers saved;
    {
        const InterruptWatch watch;
        Progress progress(session, plan.Added.size());
        session.Speaker.SetStatusShown(false); // a dozen for each user
        saved = SaveUsers(plan.Added, plan.Updated, kUser, [&](std::size_t done) {
            progress.Show(done);
            return !InterruptWatch::WasInterrupted();
        });
    }
    session.Speaker.SetStatusShown(!session.DryRun);
    const bool isAll = saved.Added == plan.Added.size() && saved.Updated == plan.Updated.size();
    if (isAll) {
        ShowStatus("Added %d users, changed %d", saved.Added, saved.Updated);
    } else {
        ShowStatus("Stopped: added %d of %d users, changed %d of %d", saved.Added, plan.Added.size(), saved.Updated,
                   plan.Updated.size());
    }
    return isAll;
}

} // namespace

int ImportUsers(Session& session, const Arguments& arguments) {
    const std::string& file = arguments["FILE"];
    ControlStream stream = OpenForReading(platform::ToWindowsPath(file));
    if (!stream) return kExitRefused;
    const std::string_view text = stream.Rest();
    if (!WasRead(stream)) return kExitRefused;

    ImportPlanner planner;
    KnownRecords known;
    Plan plan;
    if (planner.ReadFile(text)) {
        if (!ReadKnown(planner.Names(), known)) return kExitRefused;
        plan = planner.MakePlan(known);
    }
    for (const std::string& fault : planner.Faults) session.Streams.PrintNotice(file + ", " + fault + '\n');
    if (!planner.Faults.empty()) return kExitRefused;
    if (session.DryRun) ShowPlan(session, plan);
    return Perform(session, [&] { return Save(session, plan); });
}

} // namespace bv::console
