// The settings that a person gives, by key and value, as they are taken into a record whose keys are rows of a table.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/key_fields.h"
#include "platform/ascii.h"
#include "voice/messages.h"

namespace bv {

struct EnteredValue {
    std::string Key;
    std::string Value;
};
using EnteredValues = std::vector<EnteredValue>;

inline bool HasKey(const EnteredValues& values, std::string_view key) {
    return std::ranges::any_of(values, [&](const EnteredValue& value) { return EqualFolded(value.Key, key); });
}

// The row of that name, in any case; null without one.
template <class Row>
const Row* FindRow(std::span<const Row> rows, std::string_view name) {
    const auto found = std::ranges::find_if(rows, [&](const Row& row) { return EqualFolded(row.Field.Name(), name); });
    return found == rows.end() ? nullptr : &*found;
}

// Stores the values in the record, one of those that the word names ("links"). False, after 9180 for a key that is none
// of the rows, or what EnterValue says of a value that is not taken; those before it are stored then.
template <class Row, class Record>
bool EnterValues(std::string_view records, std::span<const Row> rows, const EnteredValues& values, Record& record) {
    return std::ranges::all_of(values, [&](const auto& given) {
        const Row* row = FindRow(rows, given.Key);
        if (row == nullptr) ShowError(kNoSuchKey, given.Key, given.Value, records);
        return row != nullptr && EnterValue(row->Field, given.Value, record);
    });
}

// Whether the given keys, all of them rows, have the same values in the record as it will be read again; false after
// 9181, which names one that has not.
template <class Row, class Record>
bool AreKept(std::span<const Row> rows, const EnteredValues& values, const Record& record, const Record& asRead) {
    return std::ranges::all_of(values, [&](const auto& given) {
        const Row* row = FindRow(rows, given.Key);
        const bool isKept = row->Field.Text(record) == row->Field.Text(asRead);
        if (!isKept) ShowError(kNotKeptBeside, given.Key, ShownText(row->Field.Rule, given.Value));
        return isKept;
    });
}

// The name of the row that is a password; empty without one.
template <class Row>
std::string PasswordKey(std::span<const Row> rows) {
    const auto found = std::ranges::find_if(rows, [](const Row& row) { return row.Field.Rule.IsPassword(); });
    return found == rows.end() ? std::string() : std::string(found->Field.Name());
}

} // namespace bv
