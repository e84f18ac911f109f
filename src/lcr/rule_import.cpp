#include "lcr/rule_import.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "ctlfile/lines.h"
#include "lcr/edit_lock.h"
#include "lcr/lcr_messages.h"
#include "lcr/rule_actions.h"
#include "lcr/rule_file.h"
#include "lcr/rule_values.h"
#include "platform/ascii.h"
#include "voice/caught_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

// The places of the rules by their descriptions.
class RuleIndex {
  public:
    explicit RuleIndex(const RuleList& rules) {
        for (std::size_t i = 0; i < rules.size(); ++i) Add(rules[i].Description, i);
    }
    void Add(std::string_view description, std::size_t place) { places_.emplace(UpperText(description), place); }

    [[nodiscard]] std::size_t Count(std::string_view description) const {
        return places_.count(UpperText(description));
    }
    [[nodiscard]] std::optional<std::size_t> Find(std::string_view description) const {
        const auto found = places_.find(UpperText(description));
        return found == places_.end() ? std::nullopt : std::optional(found->second);
    }

  private:
    std::multimap<std::string, std::size_t> places_;
};

// The values of a row, the description first.
EnteredValues ValuesOf(const CsvTable& table, const CsvRecord& row, std::span<const std::string_view> columns) {
    EnteredValues values;
    for (std::size_t at = 0; at < row.size(); ++at) {
        const std::size_t column = table.Columns[at];
        values.insert(column == 0 ? values.begin() : values.end(), {std::string(columns[column]), row[at].Text});
    }
    return values;
}

// Takes the rows into a list one by one.
class RowJudge {
  public:
    RowJudge(RuleEdit& edit, const CsvTable& table, std::span<const std::string_view> columns)
        : edit_(edit), table_(table), columns_(columns), index_(edit.Rules) {}

    void Judge(const EnteredValues& values, RowVerdict& verdict) {
        verdict.Name = values.front().Value;
        if (!seen_.insert(UpperText(verdict.Name)).second)
            return AddFault(verdict, FillMessage(kRowIsThereTwice, columns_.front(), CleanLine(verdict.Name)));
        if (index_.Count(verdict.Name) > 1)
            return AddFault(verdict, FillMessage(kRuleIsThereTwice, CleanLine(verdict.Name)));
        const std::optional<std::size_t> place = index_.Find(verdict.Name);
        const RoutingRule before = place ? edit_.Rules[*place] : RoutingRule();
        RoutingRule rule = before;
        for (const auto& [key, value] : values) {
            const bool isName = place && key == columns_.front(); // in any case
            if (!isName && !EnterRuleValue(rule, key, value, edit_.Names)) AddNote(verdict, key, caught_.TakeLast());
        }
        if (!verdict.Notes.empty()) verdict.State = RowState::Wrong;
        if (verdict.Notes.empty()) Take(place, before, std::move(rule), verdict);
    }

  private:
    void Take(std::optional<std::size_t> place, const RoutingRule& before, RoutingRule rule, RowVerdict& verdict) {
        const RuleCheck check = ChangeRule(edit_.Rules, place, std::move(rule));
        if (check == RuleCheck::Unchanged) return;
        if (check != RuleCheck::Fine) return AddFault(verdict, caught_.TakeLast());
        verdict.State = place ? RowState::Replaces : RowState::New;
        if (!place) return index_.Add(verdict.Name, edit_.Rules.size() - 1);
        const std::vector<RuleValue> now = RuleValues(edit_.Rules[*place]);
        const std::vector<RuleValue> old = RuleValues(before);
        for (std::size_t i = 0; i < now.size(); ++i) {
            if (now[i].Value == old[i].Value) continue;
            AddNote(verdict, now[i].Key, FormatText("%s: \"%s\" -> \"%s\"", now[i].Key, old[i].Value, now[i].Value));
        }
    }

    void AddFault(RowVerdict& verdict, std::string text) const {
        verdict.State = RowState::Wrong;
        AddNote(verdict, columns_.front(), std::move(text));
    }

    void AddNote(RowVerdict& verdict, std::string_view key, std::string text) const {
        const auto isIt = [&](std::size_t column) { return columns_[column] == key; };
        auto found = std::ranges::find_if(table_.Columns, isIt);
        if (found == table_.Columns.end()) found = std::ranges::find(table_.Columns, 0U);
        verdict.Notes.push_back({static_cast<std::size_t>(found - table_.Columns.begin()) + 1, std::move(text)});
    }

    RuleEdit& edit_;
    const CsvTable& table_;
    std::span<const std::string_view> columns_;
    RuleIndex index_;
    std::set<std::string> seen_; // in upper case
    CaughtMessages caught_;
};

} // namespace

RuleImport::RuleImport() {
    for (const RuleKey& key : RuleKeys()) columns_.push_back(key.Name());
}

RuleImport::RuleImport(RuleSession& session) : RuleImport() { session_ = &session; }

// The rules as they are now; none after a message.
std::optional<RuleEdit> RuleImport::Begin() const {
    if (session_ != nullptr) return RuleEdit{session_->Names(), session_->Rules()};
    RuleEdit edit;
    if (!LoadRuleNames(edit.Names) || !CheckNoPendingRules()) return {};
    std::optional<RuleList> rules = ReadRules();
    if (!rules) return {};
    edit.Rules = std::move(*rules);
    return edit;
}

std::optional<std::vector<RowVerdict>> RuleImport::Check(const CsvTable& table) {
    changes_.clear();
    std::optional<RuleEdit> edit = Begin();
    if (!edit) return {};
    RowJudge judge(*edit, table, columns_);
    std::vector<RowVerdict> verdicts(table.Rows.size());
    for (std::size_t i = 0; i < table.Rows.size(); ++i) {
        EnteredValues values = ValuesOf(table, table.Rows[i], columns_);
        judge.Judge(values, verdicts[i]);
        const bool isChange = verdicts[i].State == RowState::New || verdicts[i].State == RowState::Replaces;
        if (isChange) changes_.push_back(std::move(values));
    }
    return verdicts;
}

ImportCounts RuleImport::Apply(const ImportProgress& goOn) {
    ImportCounts counts;
    const auto change = [&](RuleEdit& edit) {
        RuleIndex index(edit.Rules);
        RuleCheck whole = RuleCheck::Unchanged;
        for (std::size_t i = 0; i < changes_.size(); ++i) {
            const std::optional<std::size_t> place = index.Find(changes_[i].front().Value);
            EnteredValues values = changes_[i];
            if (place) values.erase(values.begin());
            const RuleCheck check = goOn(i) ? EnterRule(edit, place, values) : RuleCheck::Refused;
            if (check == RuleCheck::Refused || check == RuleCheck::Discarded) return check;
            if (!place) index.Add(changes_[i].front().Value, edit.Rules.size() - 1);
            ++(place ? counts.Changed : counts.Added);
            if (check == RuleCheck::Fine) whole = check;
        }
        return whole;
    };
    const auto changeSession = [&] {
        std::optional<RuleEdit> edit = Begin();
        const RuleCheck check = change(*edit);
        return check == RuleCheck::Unchanged || (check == RuleCheck::Fine && session_->Replace(std::move(edit->Rules)));
    };
    const bool isDone = session_ != nullptr ? changeSession()
                                            : RunLcrEditor([&] { return EditRules(LostNames::Ask, change); }, "rules");
    return isDone ? counts : ImportCounts();
}

std::string RulesAsCsv(const RuleList& rules) {
    std::string text;
    for (const RuleKey& key : RuleKeys()) text.append(text.empty() ? "" : ",").append(CsvText(key.Name()));
    text += kLineEnd;
    for (const RoutingRule& rule : rules) {
        bool isFirst = true;
        for (const auto& [key, value] : RuleValues(rule)) {
            text.append(std::exchange(isFirst, false) ? "" : ",").append(CsvText(value));
        }
        text += kLineEnd;
    }
    return text;
}

} // namespace bv
