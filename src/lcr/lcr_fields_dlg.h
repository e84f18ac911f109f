// Records of routing that are edited, as the controls of their dialogs see them.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ctlfile/entered_values.h"
#include "dialogs/fields_dlg.h"

namespace bv {

// Row is one of a table of keys (RouterKey, LinkSetting). An empty text is always taken: which values must be there is
// a rule of the whole record.
template <class Row, class Record>
class RowFields : public FieldRecord {
  public:
    RowFields(std::span<const Row> rows, Record& record) : rows_(rows), record_(record) {}

    [[nodiscard]] std::string TextOf(std::string_view key) const override { return FieldOf(key).Text(record_); }
    std::optional<std::string> Enter(std::string_view key, std::string_view text) override {
        if (auto fault = FieldOf(key).FaultIn(record_, text); fault && !text.empty()) return fault;
        FieldOf(key).Store(record_, text);
        return std::nullopt;
    }
    [[nodiscard]] std::size_t LimitOf(std::string_view key) const override { return FieldOf(key).Rule.Limit; }
    [[nodiscard]] std::string Describe(std::string_view key) const override {
        return DescribeValues(FieldOf(key).Rule);
    }

  private:
    [[nodiscard]] const KeyField<Record>& FieldOf(std::string_view key) const { return FindRow(rows_, key)->Field; }

    std::span<const Row> rows_;
    Record& record_;
};

// The control of a key; 0 without one.
inline int ControlOfKey(std::span<const FieldControl> fields, std::string_view key) {
    for (const FieldControl& field : fields)
        if (field.Key == key) return field.Control;
    return 0;
}

} // namespace bv
