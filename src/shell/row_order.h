// The order in which a list shows its rows: filtered by words, sorted by a column. A view only, over rows that stay
// where they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bv {

// Rows of texts as a list shows them, numbered from 0 in the order of their file.
class RowModel {
  public:
    virtual ~RowModel() = default;

    [[nodiscard]] virtual std::size_t Count() const = 0;
    [[nodiscard]] virtual std::size_t Columns() const = 0;

    // Stays valid until the rows change.
    [[nodiscard]] virtual std::string_view Text(std::size_t row, std::size_t column) const = 0;

    // By what a list finds a row again when the rows have changed.
    [[nodiscard]] virtual std::string Name(std::size_t row) const { return std::string(Text(row, 0)); }

    // Of a list with boxes to tick.
    [[nodiscard]] virtual bool IsTicked(std::size_t) const { return false; }
};

class RowOrder {
  public:
    struct SortBy {
        std::size_t Column = 0;
        bool Up = true;
    };

    // Begins with all rows in file order.
    explicit RowOrder(const RowModel& rows) : rows_(rows) { Reset(); }

    // The rows have changed: filters and sorts anew, as before.
    void Reset();

    // Shows no row, until the rows have changed.
    void Clear();

    // Shows the rows in which each word of the text stands somewhere, in any case of the letters A to Z.
    void Filter(std::string_view text);
    [[nodiscard]] const std::string& Words() const { return filter_; }

    // By the column's text without regard to case, two numbers by their value; equal ones stay in file order. None:
    // file order.
    void Sort(std::optional<SortBy> by);
    [[nodiscard]] std::optional<SortBy> Sorted() const { return sort_; }

    [[nodiscard]] std::size_t Shown() const { return shown_.size(); }
    [[nodiscard]] std::size_t RowAt(std::size_t place) const { return shown_[place]; }
    [[nodiscard]] std::optional<std::size_t> PlaceOf(std::size_t row) const;

    // The first place from there on, round the end, whose text in the sorted column (the first one in file order)
    // begins with the text in any case; for typing in a list.
    [[nodiscard]] std::optional<std::size_t> Find(std::string_view beginning, std::size_t from) const;

  private:
    using Row = std::uint32_t;
    void Fold();
    [[nodiscard]] bool Fits(Row row, const std::vector<std::string_view>& words) const;
    void Show(const std::vector<Row>& candidates);

    const RowModel& rows_;
    std::string filter_; // folded
    std::optional<SortBy> sort_;
    std::vector<Row> order_; // all rows as sorted
    std::vector<Row> shown_; // those of them that fit the filter
    mutable std::vector<Row> places_;
    std::string folded_;             // the rows' texts in lower case, made for the first filter
    std::vector<std::size_t> lines_; // where each row begins there, and the end
};

} // namespace bv
