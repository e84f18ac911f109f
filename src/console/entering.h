// Entering settings from the command line: each key is a row with its rule.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "console/assignments.h"
#include "console/output.h"
#include "ctlfile/key_fields.h"
#include "platform/ascii.h"
#include "voice/format.h"

namespace bv::console {

// The row of that name, in any case; null without one.
template <class Row>
const Row* FindRow(std::span<const Row> rows, std::string_view name) {
    const auto found = std::ranges::find_if(rows, [&](const Row& row) { return EqualFolded(row.Field.Name(), name); });
    return found == rows.end() ? nullptr : &*found;
}

// Stores the values in the record. False, after a line that names key and value, for a key that is none of the rows or
// a value that is not taken (EnterValue).
template <class Row, class Record>
bool EnterValues(const Session& session, std::span<const Row> rows, const std::vector<Assignment>& values,
                 Record& record) {
    for (const auto& [name, value] : values) {
        const Row* row = FindRow(rows, name);
        if (row == nullptr)
            return session.Refuse(FormatText("%s: \"%s\" - there is no such key", name, value)) == kExitDone;
        if (!EnterValue(row->Field, value, record)) return false;
    }
    return true;
}

// Whether the given keys have the same values in the record as it will be read again; false after a line that names
// one that has not.
template <class Row, class Record>
bool AreKept(const Session& session, std::span<const Row> rows, const std::vector<Assignment>& values,
             const Record& record, const Record& asRead) {
    for (const auto& [name, value] : values) {
        const Row* row = FindRow(rows, name);
        if (row->Field.Text(record) == row->Field.Text(asRead)) continue;
        return session.Refuse(FormatText("%s: \"%s\" is not kept beside the other values", name,
                                         ShownText(row->Field.Rule, value))) == kExitDone;
    }
    return true;
}

// The rows with their values; passwords are hidden unless they are to be revealed.
template <class Row, class Record>
console::Record ShownValues(std::span<const Row> rows, const Record& record, bool reveals) {
    console::Record shown;
    for (const Row& row : rows) {
        const std::string value = row.Field.Text(record);
        shown.emplace_back(row.Field.Name(), reveals ? value : ShownText(row.Field.Rule, value));
    }
    return shown;
}

// The name of the row that is a password.
template <class Row>
std::string PasswordKey(std::span<const Row> rows) {
    const auto found = std::ranges::find_if(rows, [](const Row& row) { return row.Field.Rule.IsPassword(); });
    return found == rows.end() ? std::string() : std::string(found->Field.Name());
}

inline bool HasKey(const std::vector<Assignment>& values, std::string_view key) {
    return std::ranges::any_of(values, [&](const Assignment& value) { return EqualFolded(value.Key, key); });
}

} // namespace bv::console
