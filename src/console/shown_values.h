// The settings of a record, as rows of a table, for printing.
#pragma once

#include <span>

#include "console/output.h"
#include "ctlfile/key_fields.h"

namespace bv::console {

// The rows with their values; passwords are hidden unless they are to be revealed.
template <class Row, class Settings>
Record ShownValues(std::span<const Row> rows, const Settings& settings, bool reveals) {
    Record shown;
    for (const Row& row : rows) {
        const std::string value = row.Field.Text(settings);
        shown.emplace_back(row.Field.Name(), reveals ? value : ShownText(row.Field.Rule, value));
    }
    return shown;
}

} // namespace bv::console
