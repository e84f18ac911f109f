// Routing rules from and to files of comma-separated values: a row a rule.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ctlfile/csv_import.h"
#include "ctlfile/entered_values.h"
#include "lcr/rule.h"
#include "lcr/rule_actions.h"
#include "lcr/rule_session.h"

namespace bv {

// The columns are the keys of a rule, with values as EnterRuleValue takes them. A row changes the rule of that
// description, in its place, or adds one behind the others.
class RuleImport final : public CsvImport {
  public:
    // Into the file of rules, with the edit lock, in one save (EditRules); or into rules that are being edited.
    RuleImport();
    explicit RuleImport(RuleSession& session);
    [[nodiscard]] std::string_view Title() const override { return "rules"; }
    [[nodiscard]] std::string_view EntryTitle() const override { return "rule"; }
    [[nodiscard]] std::span<const std::string_view> Columns() const override { return columns_; }
    std::optional<std::vector<RowVerdict>> Check(const CsvTable& table) override;
    ImportCounts Apply(const ImportProgress& goOn) override;

  private:
    [[nodiscard]] std::optional<RuleEdit> Begin() const;

    RuleSession* session_ = nullptr;
    std::vector<std::string_view> columns_;
    std::vector<EnteredValues> changes_; // the description first
};

// The rules with a first line of the columns.
std::string RulesAsCsv(const RuleList& rules);

} // namespace bv
