// Rules of inward routing from and to files of comma-separated values: a row a rule, of any kind.
#pragma once

#include <string>

#include "ctlfile/csv_import.h"
#include "routing/inward_rules.h"
#include "routing/routing_edit.h"

namespace bv {

// The columns: Kind (sender, subaddr or forward), then what rules of the kind have: Sender, Organisation, Addressee and
// User; Number and User; User, Target and Delete (YES or NO). A sender's row without addressee and user is a record
// without rules. Without a column Organisation a sender keeps its own.
class InwardImport : public CsvImport {
  public:
    [[nodiscard]] std::string_view Title() const override { return "inward rules"; }
    [[nodiscard]] std::string_view EntryTitle() const override { return "inward rule"; }
    [[nodiscard]] std::span<const std::string_view> Columns() const override;
    std::optional<std::vector<RowVerdict>> Check(const CsvTable& table) override;

    // In one rewrite of the file.
    ImportCounts Apply(const ImportProgress& goOn) override;

  private:
    RoutingChanges changes_;
};

// The rules with a first line of the columns.
std::string InwardRulesAsCsv(const InwardRules& rules);

} // namespace bv
