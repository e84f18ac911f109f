// Rows of texts, kept together: a list of 200,000 takes little more memory than its letters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "shell/row_order.h"

namespace bv {

class RowTable : public RowModel {
  public:
    // Empty, and of rows of so many columns from now on; with room for so many characters, where that is known.
    void Begin(std::size_t columns, std::size_t characters = 0) {
        columns_ = columns;
        texts_.clear();
        ends_.clear();
        texts_.reserve(characters);
        ends_.reserve(characters / kUsualCell);
    }

    // The next cell of the row that is being added; a row is there with its last cell.
    void Add(std::string_view text) {
        texts_ += text;
        ends_.push_back(static_cast<std::uint32_t>(texts_.size()));
    }

    [[nodiscard]] std::size_t Count() const override { return columns_ == 0 ? 0 : ends_.size() / columns_; }
    [[nodiscard]] std::size_t Columns() const override { return columns_; }
    [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const override {
        const std::size_t cell = row * columns_ + column;
        const std::size_t start = cell == 0 ? 0 : ends_[cell - 1];
        return std::string_view(texts_).substr(start, ends_[cell] - start);
    }

  private:
    static constexpr std::size_t kUsualCell = 12; // characters

    std::size_t columns_ = 0;
    std::string texts_;
    std::vector<std::uint32_t> ends_; // of each cell in the texts
};

} // namespace bv
