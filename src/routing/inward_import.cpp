#include "routing/inward_import.h"

#include <algorithm>
#include <array>
#include <set>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"
#include "routing/forwardings.h"
#include "routing/routing_messages.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

enum Column { kKind, kSender, kOrganisation, kAddressee, kNumber, kUser, kTarget, kDelete, kColumnCount };
constexpr std::array<std::string_view, kColumnCount> kColumns = {"Kind",   "Sender", "Organisation", "Addressee",
                                                                 "Number", "User",   "Target",       "Delete"};
constexpr std::string_view kSenderWord = "sender";
constexpr std::string_view kSubAddressWord = "subaddr";
constexpr std::string_view kForwardWord = "forward";

// One row: its fields by their columns, and the verdict on it.
class JudgedRow {
  public:
    JudgedRow(const std::vector<std::size_t>& columns, const CsvRecord& row, RowVerdict& verdict)
        : columns_(columns), row_(row), verdict_(verdict) {}

    [[nodiscard]] bool Has(Column column) const { return At(column) < row_.size(); }
    [[nodiscard]] std::string Text(Column column) const { return Has(column) ? row_[At(column)].Text : std::string(); }

    void AddFault(Column column, std::string text) {
        verdict_.State = RowState::Wrong;
        AddNote(column, std::move(text));
    }
    void AddNote(Column column, std::string text) {
        verdict_.Notes.push_back({(Has(column) ? At(column) : At(kKind)) + 1, std::move(text)});
    }
    void SayChange(Column column, const std::string& before, const std::string& after) {
        if (before != after) AddNote(column, FormatText("%s: \"%s\" -> \"%s\"", kColumns[column], before, after));
    }

    [[nodiscard]] bool IsWrong() const { return verdict_.State == RowState::Wrong; }
    void Finish(RowState state, const std::string& name) {
        verdict_.State = state;
        verdict_.Name = name;
    }

  private:
    [[nodiscard]] std::size_t At(Column column) const {
        const auto isIt = [&](std::size_t index) { return index == static_cast<std::size_t>(column); };
        return static_cast<std::size_t>(std::ranges::find_if(columns_, isIt) - columns_.begin());
    }

    const std::vector<std::size_t>& columns_;
    const CsvRecord& row_;
    RowVerdict& verdict_;
};

// The row's change of a rule: what it replaces, when there is something, or a new one; none when all is as it should
// be.
template <class Rule>
void Conclude(JudgedRow& row, const std::optional<Rule>& before, const Rule& after, const std::string& name,
              std::vector<RuleChange<Rule>>& changes) {
    if (row.IsWrong()) return;
    row.Finish(before ? RowState::Replaces : RowState::New, name);
    changes.push_back({before, after});
}

class InwardJudge {
  public:
    InwardJudge(const InwardRules& rules, const NameSet& names, RoutingChanges& changes)
        : rules_(rules), names_(names), changes_(changes), unread_(UnreadForwards()), forwards_(rules.Forwards) {}

    void Judge(JudgedRow& row) {
        const std::string kind = UpperText(row.Text(kKind));
        if (kind == UpperText(kSenderWord)) return JudgeSender(row);
        if (kind == UpperText(kSubAddressWord)) return JudgeSubAddress(row);
        if (kind == UpperText(kForwardWord)) return JudgeForward(row);
        row.AddFault(kKind, FormatText("Kind: \"%s\" is not sender, subaddr or forward", CleanLine(row.Text(kKind))));
    }

  private:
    // The name as the file has names; a fault when there is no such user.
    std::string NameIn(JudgedRow& row, Column column, bool maySpecial) {
        std::string name = row.Text(column);
        if (maySpecial && IsSpecialWord(name)) return name;
        if (name.empty() || !names_.Has(name)) row.AddFault(column, FillMessage(kNoSuchUser, CleanLine(name)));
        return UpperText(name);
    }

    void CheckOnce(JudgedRow& row, Column column, const std::string& key) {
        if (!seen_.insert(UpperText(key)).second)
            row.AddFault(column,
                         FormatText("%s: \"%s\" is there twice", kColumns[column], CleanLine(row.Text(column))));
    }

    template <class Rule>
    static void CheckKept(JudgedRow& row, Column column, const Rule& rule) {
        if (!row.IsWrong() && !CanBeKept(rule))
            row.AddFault(column, FillMessage(kNotKeptInRouting, kColumns[column], CleanLine(row.Text(column))));
    }

    void JudgeSender(JudgedRow& row) {
        SenderIdRule rule = {.RecordKey = "",
                             .Sender = row.Text(kSender),
                             .Organisation = row.Text(kOrganisation),
                             .Addressee = row.Text(kAddressee),
                             .User = row.Text(kUser),
                             .Record = kNewRecord};
        const std::vector<SenderIdRule> records = SenderRecordsOf(rules_.Senders, rule.Sender);
        if (!row.Has(kOrganisation) && !records.empty()) rule.Organisation = records.front().Organisation;
        const auto isIt = [&](const SenderIdRule& other) {
            return other.Sender == rule.Sender && other.Organisation == rule.Organisation &&
                   EqualFolded(other.Addressee, rule.Addressee) && EqualFolded(other.User, rule.User);
        };
        if (std::ranges::any_of(rules_.Senders, isIt)) return row.Finish(RowState::Same, rule.Sender);
        JudgeOtherSender(row, rule, records);
    }

    void JudgeOtherSender(JudgedRow& row, SenderIdRule& rule, const std::vector<SenderIdRule>& records) {
        const std::string key = SenderRecordKey(rule.Sender);
        if (key.empty()) return row.AddFault(kSender, FillMessage(kSenderHasNoKey, CleanLine(rule.Sender)));
        if (records.size() > 1)
            return row.AddFault(kSender, FillMessage(kSenderHasManyRecords, rule.Sender, records.size()));
        CheckOnce(row, kSender, "sender " + key + ' ' + rule.Addressee);
        if (!rule.Addressee.empty() || !rule.User.empty()) {
            rule.Addressee = NameIn(row, kAddressee, true);
            rule.User = NameIn(row, kUser, false);
        }
        if (!records.empty()) {
            rule.Record = records.front().Record;
            rule.RecordKey = records.front().RecordKey;
        }
        CheckKept(row, kSender, rule);
        std::optional<SenderIdRule> before;
        for (const SenderIdRule& other : rules_.Senders) {
            if (other.Record != rule.Record || !EqualFolded(other.Addressee, rule.Addressee)) continue;
            before = other;
            row.SayChange(kSender, other.Sender, rule.Sender);
            row.SayChange(kOrganisation, other.Organisation, rule.Organisation);
            row.SayChange(kUser, other.User, rule.User);
            break;
        }
        Conclude(row, before, rule, rule.Sender, changes_.Senders);
    }

    void JudgeSubAddress(JudgedRow& row) {
        SubAddressRule rule = {row.Text(kNumber), UpperText(row.Text(kUser))};
        if (std::ranges::find(rules_.SubAddresses, rule) != rules_.SubAddresses.end())
            return row.Finish(RowState::Same, rule.SubAddress);
        if (rule.SubAddress.empty()) return row.AddFault(kNumber, FillMessage(kNoSubAddress));
        CheckOnce(row, kNumber, "subaddr " + rule.SubAddress);
        rule.User = NameIn(row, kUser, false);
        CheckKept(row, kNumber, rule);
        const auto before = Before(rules_.SubAddresses, &SubAddressRule::SubAddress, rule.SubAddress);
        if (before) row.SayChange(kUser, before->User, rule.User);
        Conclude(row, before, rule, rule.SubAddress, changes_.SubAddresses);
    }

    void JudgeForward(JudgedRow& row) {
        ForwardRule rule = {row.Text(kUser), UpperText(row.Text(kTarget)), false};
        const auto deletes = row.Text(kDelete).empty() ? false : ParseBool(row.Text(kDelete));
        if (!deletes)
            return row.AddFault(kDelete, FormatText("Delete: \"%s\" is not YES or NO", CleanLine(row.Text(kDelete))));
        rule.Deletes = *deletes;
        if (std::ranges::find(rules_.Forwards, rule) != rules_.Forwards.end())
            return row.Finish(RowState::Same, rule.User);
        CheckOnce(row, kUser, "forward " + rule.User);
        rule.User = NameIn(row, kUser, true);
        rule.Target = NameIn(row, kTarget, false);
        CheckForward(row, rule);
        const auto before = Before(rules_.Forwards, &ForwardRule::User, rule.User);
        if (before) {
            row.SayChange(kTarget, before->Target, rule.Target);
            row.SayChange(kDelete, before->Deletes ? "YES" : "NO", rule.Deletes ? "YES" : "NO");
        }
        Conclude(row, before, rule, rule.User, changes_.Forwards);
    }

    // Circles are looked for with the rows before, so that the row which closes one is wrong.
    void CheckForward(JudgedRow& row, const ForwardRule& rule) {
        CheckKept(row, kUser, rule);
        if (row.IsWrong()) return;
        if (EqualFolded(rule.User, rule.Target))
            return row.AddFault(kTarget, FillMessage(kForwardsToItself, rule.Target));
        if (unread_.contains(UpperText(rule.User)))
            return row.AddFault(kUser,
                                FormatText("User: \"%s\" has a line that this program does not understand", rule.User));
        const auto before = forwards_.Set(rule.User, rule.Target);
        if (!forwards_.IsInCircle(rule.User)) return;
        row.AddFault(kTarget, FillMessage(kComesBack, forwards_.CircleText(rule.User)));
        forwards_.Set(rule.User, before);
    }

    template <class Rule>
    static std::optional<Rule> Before(const std::vector<Rule>& rules, std::string Rule::*key, const std::string& name) {
        const auto found = std::ranges::find_if(rules, [&](const Rule& rule) { return EqualFolded(rule.*key, name); });
        return found == rules.end() ? std::nullopt : std::optional(*found);
    }

    const InwardRules& rules_;
    const NameSet& names_;
    RoutingChanges& changes_;
    std::map<std::string, std::string> unread_;
    Forwardings forwards_;
    std::set<std::string> seen_; // kind and key, in upper case
};

} // namespace

std::span<const std::string_view> InwardImport::Columns() const { return kColumns; }

std::optional<std::vector<RowVerdict>> InwardImport::Check(const CsvTable& table) {
    changes_ = {};
    InwardRules rules;
    NameSet names;
    if (!ReadInwardRules(rules) || !ReadRoutingNames(names)) return {};
    InwardJudge judge(rules, names, changes_);
    std::vector<RowVerdict> verdicts(table.Rows.size());
    for (std::size_t i = 0; i < table.Rows.size(); ++i) {
        JudgedRow row(table.Columns, table.Rows[i], verdicts[i]);
        judge.Judge(row);
    }
    return verdicts;
}

ImportCounts InwardImport::Apply(const ImportProgress& goOn) {
    ImportCounts counts;
    const auto count = [&counts](const auto& changes) {
        for (const auto& change : changes) ++(change.Before ? counts.Changed : counts.Added);
    };
    count(changes_.Senders);
    count(changes_.SubAddresses);
    count(changes_.Forwards);
    return goOn(0) && ChangeRoutingRules(changes_) ? counts : ImportCounts();
}

std::string InwardRulesAsCsv(const InwardRules& rules) {
    std::string text;
    const auto add = [&text](const std::array<std::string_view, kColumnCount>& fields) {
        for (std::size_t i = 0; i < fields.size(); ++i) text.append(i == 0 ? "" : ",").append(CsvText(fields[i]));
        text += kLineEnd;
    };
    add(kColumns);
    for (const SenderIdRule& rule : rules.Senders)
        add({kSenderWord, rule.Sender, rule.Organisation, rule.Addressee, "", rule.User, "", ""});
    for (const SubAddressRule& rule : rules.SubAddresses)
        add({kSubAddressWord, "", "", "", rule.SubAddress, rule.User});
    for (const ForwardRule& rule : rules.Forwards)
        add({kForwardWord, "", "", "", "", rule.User, rule.Target, rule.Deletes ? "YES" : "NO"});
    return text;
}

} // namespace bv
