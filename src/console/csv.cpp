#include "console/csv.h"

#include <algorithm>

#include "shell/format.h"

namespace bv::console {

CsvReader::CsvReader(std::string_view text) : rest_(text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
}

std::optional<CsvRecord> CsvReader::Next() {
    while (TakeLineEnd()) {
    }
    if (rest_.empty() || !fault_.empty()) return {};
    CsvRecord record;
    for (;;) {
        record.push_back(NextField(record.size() + 1));
        if (!fault_.empty()) return {};
        if (!rest_.starts_with(',')) break;
        rest_.remove_prefix(1);
    }
    TakeLineEnd();
    return record;
}

CsvField CsvReader::NextField(std::size_t column) {
    CsvField field = {"", line_, column};
    if (rest_.starts_with('"')) {
        if (!ReadQuoted(field))
            fault_ = FormatText("line %d, column %d: the quotes are not closed", field.Line, column);
        const bool ends =
            rest_.empty() || rest_.starts_with(',') || rest_.starts_with('\n') || rest_.starts_with("\r\n");
        if (fault_.empty() && !ends)
            fault_ = FormatText("line %d, column %d: text follows the closing quote", line_, column);
        return field;
    }
    field.Text = rest_.substr(0, rest_.find_first_of(",\n"));
    rest_.remove_prefix(field.Text.size());
    if (rest_.starts_with('\n') && field.Text.ends_with('\r')) field.Text.pop_back();
    if (field.Text.find('"') != std::string::npos)
        fault_ = FormatText("line %d, column %d: a quote stands in a field without quotes", line_, column);
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

std::string CsvText(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
    std::string quoted = "\"";
    for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

} // namespace bv::console
