// Users from a file of comma-separated values.
#pragma once

#include <vector>

#include "ctlfile/csv_import.h"
#include "users/user_actions.h"

namespace bv {

// A row adds the user that it names, who begins with what the default user has, or changes the user of that name. A
// value that is in force already is no change, whether it could be entered or not; one that the list would not give
// back is wrong. All go into the list in one rewrite; when it is stopped, the users that have got their directories are
// added whole, and none is changed.
class UserImport final : public CsvImport {
  public:
    UserImport();
    [[nodiscard]] std::string_view Title() const override { return "users"; }
    [[nodiscard]] std::string_view EntryTitle() const override { return "user"; }
    [[nodiscard]] std::span<const std::string_view> Columns() const override { return columns_; }
    std::optional<std::vector<RowVerdict>> Check(const CsvTable& table) override;
    ImportCounts Apply(const ImportProgress& goOn) override;

  private:
    std::vector<std::string_view> columns_;
    std::vector<NamedRecord> added_;
    std::vector<RecordUpdate> updated_;
};

} // namespace bv
