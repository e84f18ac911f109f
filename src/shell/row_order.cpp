#include "shell/row_order.h"

#include <algorithm>
#include <numeric>

#include "platform/ascii.h"

namespace bv {
namespace {

constexpr char kBetweenColumns = '\n'; // in no word of a filter
constexpr std::size_t kHeadSize = 8;

std::vector<std::string_view> WordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    for (text = SkipBlanks(text); !text.empty(); text = SkipBlanks(text)) {
        const std::size_t length = std::min(text.find_first_of(" \t\r\n"), text.size());
        words.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return words;
}

void FoldText(std::string& text) {
    std::ranges::transform(text, text.begin(), [](char c) { return ToLower(c); });
}

bool IsNumber(std::string_view text) { return !text.empty() && std::ranges::all_of(text, IsDigit); }

// A text's first characters, behind those that all have, as a number that sorts as they do. Numbers sort before other
// texts, by their length first.
std::uint64_t HeadOf(std::string_view text, std::size_t common) {
    std::uint64_t head = 0;
    if (IsNumber(text)) return std::min<std::size_t>(text.size(), 255);
    for (std::size_t i = common; i < common + kHeadSize; ++i)
        head = head << 8 | (i < text.size() ? static_cast<unsigned char>(ToLower(text[i])) : 0U);
    return head;
}

// How many characters all texts of a column begin with; none where one of them is a number.
std::size_t CommonBeginning(const RowModel& rows, std::size_t column) {
    const std::string_view first = rows.Count() == 0 ? std::string_view() : rows.Text(0, column);
    std::size_t common = first.size();
    for (std::size_t row = 0; row < rows.Count() && common > 0; ++row) {
        const std::string_view text = rows.Text(row, column);
        std::size_t same = 0;
        while (same < std::min(common, text.size()) && ToLower(text[same]) == ToLower(first[same])) ++same;
        common = IsNumber(text) ? 0 : same;
    }
    return common;
}

struct SortKey {
    std::uint64_t Head;
    std::uint32_t Row;
};

} // namespace

void RowOrder::Reset() {
    folded_.clear();
    lines_.clear();
    Sort(sort_);
}

void RowOrder::Clear() {
    order_.clear();
    shown_.clear();
    places_.clear();
}

void RowOrder::Fold() {
    if (!lines_.empty()) return;
    lines_.reserve(rows_.Count() + 1);
    for (std::size_t row = 0; row < rows_.Count(); ++row) {
        lines_.push_back(folded_.size());
        for (std::size_t column = 0; column < rows_.Columns(); ++column) {
            folded_ += rows_.Text(row, column);
            folded_ += kBetweenColumns;
        }
    }
    lines_.push_back(folded_.size());
    FoldText(folded_);
}

bool RowOrder::Fits(Row row, const std::vector<std::string_view>& words) const {
    const auto line = std::string_view(folded_).substr(lines_[row], lines_[row + 1] - lines_[row]);
    return std::ranges::all_of(words, [&](std::string_view word) { return line.find(word) != std::string_view::npos; });
}

void RowOrder::Show(const std::vector<Row>& candidates) {
    const std::vector<std::string_view> words = WordsOf(filter_);
    std::vector<Row> fitting;
    if (words.empty()) {
        fitting = candidates;
    } else {
        Fold();
        std::ranges::copy_if(candidates, std::back_inserter(fitting), [&](Row row) { return Fits(row, words); });
    }
    shown_ = std::move(fitting);
    places_.clear();
}

void RowOrder::Filter(std::string_view text) {
    std::string folded(text);
    FoldText(folded);
    const bool grows = folded.starts_with(filter_); // every hit is one of the hits so far
    filter_ = std::move(folded);
    Show(grows ? shown_ : order_);
}

void RowOrder::Sort(std::optional<SortBy> by) {
    sort_ = by;
    order_.resize(rows_.Count());
    std::iota(order_.begin(), order_.end(), Row{0});
    if (by && by->Column < rows_.Columns()) {
        std::vector<SortKey> keys;
        keys.reserve(order_.size());
        const std::size_t common = CommonBeginning(rows_, by->Column);
        for (const Row row : order_) keys.push_back({HeadOf(rows_.Text(row, by->Column), common), row});
        const auto isBefore = [&](const SortKey& a, const SortKey& b) {
            if (a.Head != b.Head) return (a.Head < b.Head) == by->Up;
            const int compared = CompareFolded(rows_.Text(a.Row, by->Column), rows_.Text(b.Row, by->Column));
            return compared == 0 ? a.Row < b.Row : (compared < 0) == by->Up;
        };
        if (!std::ranges::is_sorted(keys, isBefore)) std::ranges::sort(keys, isBefore);
        std::ranges::transform(keys, order_.begin(), &SortKey::Row);
    }
    Show(order_);
}

std::optional<std::size_t> RowOrder::PlaceOf(std::size_t row) const {
    constexpr Row kHidden = static_cast<Row>(-1);
    if (places_.empty()) {
        places_.assign(rows_.Count(), kHidden);
        for (std::size_t place = 0; place < shown_.size(); ++place) places_[shown_[place]] = static_cast<Row>(place);
    }
    if (row >= places_.size() || places_[row] == kHidden) return std::nullopt;
    return places_[row];
}

std::optional<std::size_t> RowOrder::Find(std::string_view beginning, std::size_t from) const {
    const std::size_t column = sort_ ? sort_->Column : 0;
    for (std::size_t i = 0; i < shown_.size(); ++i) {
        const std::size_t place = (from + i) % shown_.size();
        if (StartsWithFolded(rows_.Text(shown_[place], column), beginning)) return place;
    }
    return std::nullopt;
}

} // namespace bv
