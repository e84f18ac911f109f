#include "console/table.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "ctlfile/lines.h"

namespace bv::console {
namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kLeast = 6; // a column is not made narrower
constexpr std::string_view kCut = "...";

} // namespace

Table::Table(TableRow names, WidthOf widthOf)
    : names_(std::move(names)), widthOf_(std::move(widthOf)), widths_(names_.size()) {
    Add(names_);
}

void Table::Add(const TableRow& row) {
    for (std::size_t i = 0; i < row.size(); ++i) widths_[i] = std::max(widths_[i], widthOf_(row[i]));
}

void Table::Fit(std::size_t width) {
    std::size_t whole = std::accumulate(widths_.begin(), widths_.end(), kGap * (widths_.size() - 1));
    for (; whole > width; --whole) {
        const auto widest = std::ranges::max_element(widths_);
        if (*widest <= kLeast) return;
        --*widest;
    }
}

std::string Table::Cell(std::string_view text, std::size_t width) const {
    std::string cell = CleanLine(text); // a tab or a line end would break the columns
    if (widthOf_(cell) <= width) return cell;
    while (!cell.empty() && widthOf_(cell) > width - kCut.size()) cell.pop_back();
    return cell.append(kCut);
}

std::string Table::Line(const TableRow& row) const {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const std::string cell = Cell(row[i], widths_[i]);
        line += cell;
        if (i + 1 < row.size()) line.append(widths_[i] - widthOf_(cell) + kGap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

} // namespace bv::console
