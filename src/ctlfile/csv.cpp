#include "ctlfile/csv.h"

#include <algorithm>

#include "ctlfile/lines.h"
#include "ctlfile/utf8.h"
#include "platform/ascii.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr std::string_view kSeparators = ",;\t"; // in the order in which they are looked for
constexpr std::string_view kSeparatorKey = "sep=";

// The first line that is not empty.
std::string_view FirstLine(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kLineEnd), text.size()));
    return CountingPart(text.substr(0, text.find('\n')));
}

// The index of the column of that name, or how many there are.
std::size_t ColumnOf(std::span<const std::string_view> columns, std::string_view name) {
    const auto isIt = [name](std::string_view column) { return EqualFolded(column, name); };
    return static_cast<std::size_t>(std::ranges::find_if(columns, isIt) - columns.begin());
}

void ReadHeader(const CsvRecord& header, std::span<const std::string_view> columns, std::string_view things,
                CsvTable& table) {
    for (const CsvField& field : header) {
        const auto addFault = [&](const std::string& text) {
            table.Faults.push_back({field.Line, field.Column, text});
        };
        const std::size_t column = ColumnOf(columns, field.Text);
        if (column == columns.size())
            addFault(FormatText("\"%s\" is no key of %s", CleanLine(field.Text), things));
        else if (std::ranges::find(table.Columns, column) != table.Columns.end())
            addFault(FormatText("%s is there twice", columns[column]));
        table.Columns.push_back(column);
    }
    if (std::ranges::find(table.Columns, 0U) == table.Columns.end())
        table.Faults.push_back({header.front().Line, 1, FormatText("there is no column %s", columns.front())});
}

void AddRow(CsvRecord row, CsvTable& table) {
    if (row.size() == table.Columns.size()) {
        table.Rows.push_back(std::move(row));
        return;
    }
    const std::string why = FormatText("%d fields where the first line has %d", row.size(), table.Columns.size());
    table.Faults.push_back({row.back().Line, row.back().Column, why});
}

} // namespace

CsvReader::CsvReader(std::string_view text, bool isUtf8)
    : rest_(text), isUtf8_(isUtf8 || text.starts_with(kByteOrderMark)) {
    if (text.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
    FindSeparator();
}

void CsvReader::FindSeparator() {
    std::string_view line = FirstLine(rest_);
    if (BeginsWith(line, kSeparatorKey)) {
        line = rest_.substr(kSeparatorKey.size(), 1); // a tab would not count at the end of a line
        const bool isKnown = line.size() == 1 && kSeparators.find(line[0]) != std::string_view::npos;
        if (isKnown) separator_ = line[0];
        rest_.remove_prefix(std::min(rest_.find('\n'), rest_.size()));
        if (!isKnown) Stop(line_, 1, "the fields can be parted by commas, semicolons or tabs only");
        return;
    }
    const auto stands = [line](char separator) { return line.find(separator) != std::string_view::npos; };
    const auto found = std::ranges::find_if(kSeparators, stands);
    if (found != kSeparators.end()) separator_ = *found;
}

void CsvReader::Stop(std::size_t line, std::size_t column, std::string_view why) {
    faults_.push_back({line, column, std::string(why)});
    isStopped_ = true;
}

std::optional<CsvRecord> CsvReader::Next() {
    while (TakeLineEnd()) {
    }
    if (rest_.empty() || isStopped_) return {};
    CsvRecord record;
    for (;;) {
        CsvField& field = record.emplace_back(NextField(record.size() + 1));
        if (isStopped_) return {};
        const std::string fault = isUtf8_ ? ToCodePage(field.Text) : std::string();
        if (!fault.empty()) faults_.push_back({field.Line, field.Column, fault});
        if (!rest_.starts_with(separator_)) break;
        rest_.remove_prefix(1);
    }
    TakeLineEnd();
    return record;
}

CsvField CsvReader::NextField(std::size_t column) {
    CsvField field = {"", line_, column};
    if (rest_.starts_with('"')) {
        const bool isClosed = ReadQuoted(field);
        const bool ends =
            rest_.empty() || rest_.starts_with(separator_) || rest_.starts_with('\n') || rest_.starts_with("\r\n");
        if (!isClosed)
            Stop(field.Line, column, "the quotes are not closed");
        else if (!ends)
            Stop(line_, column, "text follows the closing quote");
        return field;
    }
    const char ends[] = {separator_, '\n'};
    field.Text = rest_.substr(0, rest_.find_first_of(std::string_view(ends, std::size(ends))));
    rest_.remove_prefix(field.Text.size());
    if (rest_.starts_with('\n') && field.Text.ends_with('\r')) field.Text.pop_back();
    if (field.Text.find('"') != std::string::npos) Stop(line_, column, "a quote stands in a field without quotes");
    return field;
}

bool CsvReader::ReadQuoted(CsvField& field) {
    rest_.remove_prefix(1);
    for (;;) {
        const std::size_t quote = rest_.find('"');
        if (quote == std::string_view::npos) return false;
        const std::string_view part = rest_.substr(0, quote);
        line_ += static_cast<std::size_t>(std::ranges::count(part, '\n'));
        field.Text += part;
        rest_.remove_prefix(quote + 1);
        if (!rest_.starts_with('"')) return true;
        field.Text += '"';
        rest_.remove_prefix(1);
    }
}

bool CsvReader::TakeLineEnd() {
    const std::size_t size = rest_.starts_with("\r\n") ? 2 : rest_.starts_with('\n') ? 1 : 0;
    rest_.remove_prefix(size);
    if (size != 0) ++line_;
    return size != 0;
}

CsvTable ReadCsvTable(std::string_view text, std::span<const std::string_view> columns, std::string_view things,
                      bool isUtf8) {
    CsvTable table;
    CsvReader reader(text, isUtf8);
    const std::optional<CsvRecord> header = reader.Next();
    if (header) ReadHeader(*header, columns, things, table);
    if (!header && reader.Faults().empty())
        table.Faults.push_back({1, 1, "a line with the names of the keys is missing"});
    const bool hasColumns = header && table.Faults.empty();
    while (hasColumns) {
        std::optional<CsvRecord> row = reader.Next();
        if (!row) break;
        AddRow(std::move(*row), table);
    }
    table.Faults.insert(table.Faults.end(), reader.Faults().begin(), reader.Faults().end());
    return table;
}

std::string CsvText(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
    std::string quoted = "\"";
    for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

} // namespace bv
