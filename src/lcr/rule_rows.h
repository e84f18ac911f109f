// The rules that are being edited as rows of a list: number and marks, description, criteria and servers in words.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ctlfile/dates.h"
#include "lcr/dead_rules.h"
#include "lcr/rule_filter.h"
#include "lcr/rule_session.h"
#include "shell/row_order.h"

namespace bv {

enum RuleColumn { kRuleNumber, kRuleDescription, kRuleCriteria, kRuleServers, kRuleColumns };

enum class RulesShown { All, Marked, Filtered };

class RuleRows final : public RowModel {
  public:
    RuleRows(const RuleSession& session, const CalendarTime& today);

    // Which rules are shown, and marked, by a filter.
    void Show(RulesShown shown, FilterEntry entry, std::vector<RuleFilter> filters);
    [[nodiscard]] RulesShown Shown() const { return shown_; }
    [[nodiscard]] const FilterEntry& Filter() const { return entry_; }

    // The filter in words and how many rules meet it; empty without one.
    [[nodiscard]] std::string FilterText() const;

    // The rule that decides the fax that is tried.
    void SetDeciding(std::optional<std::size_t> place);

    // The list is another one: what is known of dead rules is forgotten.
    void Refresh();

    // Looks for dead rules for so many milliseconds; whether there is more to do.
    bool LookForDead(std::int64_t milliseconds);

    // The place of a row's rule in the list, and the row that shows a rule.
    [[nodiscard]] std::size_t RuleAt(std::size_t row) const;
    [[nodiscard]] std::optional<std::size_t> RowOf(std::size_t place) const;

    // The first row from there on, round the end, in which each word stands somewhere in any case.
    [[nodiscard]] std::optional<std::size_t> Find(std::string_view words, std::size_t from) const;

    // What a rule's marks say, in sentences.
    [[nodiscard]] std::string DescribeMarks(std::size_t place) const;

    // Why it can never decide; empty when it can, or it is not known yet.
    [[nodiscard]] std::string WhyDead(std::size_t place) const;

    [[nodiscard]] MatchBasis Basis() const { return {session_.Names().Places, session_.Offpeak(), today_}; }

    [[nodiscard]] std::size_t Count() const override;
    [[nodiscard]] std::size_t Columns() const override { return kRuleColumns; }
    [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const override;
    [[nodiscard]] std::string Name(std::size_t row) const override { return std::to_string(RuleAt(row)); }

  private:
    using Texts = std::array<std::string, kRuleColumns>;
    [[nodiscard]] Texts TextsOf(std::size_t place) const;
    [[nodiscard]] const std::string& Folded(std::size_t place) const;
    [[nodiscard]] bool MeetsFilter(std::size_t place) const;

    const RuleSession& session_;
    CalendarTime today_;
    RulesShown shown_ = RulesShown::All;
    FilterEntry entry_;
    std::vector<RuleFilter> filters_;
    std::vector<std::size_t> met_; // the places of the rules that meet the filter
    std::optional<std::size_t> deciding_;
    std::unique_ptr<DeadRuleSearch> search_; // none: nothing is known yet
    std::unordered_map<std::size_t, DeadRule> dead_;
    std::size_t noted_ = 0; // of what the search has found
    mutable std::unordered_map<std::size_t, Texts> texts_;
    mutable std::vector<std::string> folded_; // of each rule, in upper case, once something was looked for
};

} // namespace bv
