// Lists as a person reads them: a line of names, and columns below each other.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace bv::console {

using TableRow = std::vector<std::string>; // a text for each column

class Table {
  public:
    using WidthOf = std::function<std::size_t(std::string_view text)>;

    Table(TableRow names, WidthOf widthOf);

    // Makes room for the row.
    void Add(const TableRow& row);

    // Narrows the widest columns until a line fits, as far as a few letters are left of each.
    void Fit(std::size_t width);

    // A line of the table, with its line end. Texts that do not fit end in "...".
    [[nodiscard]] std::string Header() const { return Line(names_); }
    [[nodiscard]] std::string Line(const TableRow& row) const;

  private:
    [[nodiscard]] std::string Cell(std::string_view text, std::size_t width) const;

    TableRow names_;
    WidthOf widthOf_;
    std::vector<std::size_t> widths_;
};

} // namespace bv::console
