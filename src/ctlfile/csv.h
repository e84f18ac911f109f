// Comma-separated values as RFC 4180 has them: records of fields, parted by commas and CR LF or LF; a field with a
// comma, a quote or a line end stands in quotes, and a quote in it is doubled.
//
// What spreadsheets make of that is understood, too: semicolons or tabs part the fields when a first line "sep=;" says
// so, or when the first record has no comma but one of those; and a text that begins with the byte-order mark of UTF-8
// is taken for that, as is one of which it is known, and its fields are turned into the code page.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bv {

inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF"; // of UTF-8

struct CsvField {
    std::string Text;
    std::size_t Line = 0;   // where it starts, counted from 1
    std::size_t Column = 0; // its number in the record, counted from 1
};
using CsvRecord = std::vector<CsvField>;

// What is wrong at a place of a text.
struct CsvFault {
    std::size_t Line = 0;
    std::size_t Column = 0;
    std::string Text;
};

// Takes records off a text one by one.
class CsvReader {
  public:
    explicit CsvReader(std::string_view text, bool isUtf8 = false);

    // The next record; empty lines are passed over. None at the end of the text, and after a fault that leaves open
    // where its record ends.
    std::optional<CsvRecord> Next();

    // What is wrong with the text as far as it was read.
    [[nodiscard]] const std::vector<CsvFault>& Faults() const { return faults_; }

  private:
    CsvField NextField(std::size_t column);
    bool ReadQuoted(CsvField& field);
    bool TakeLineEnd();
    void FindSeparator();
    void Stop(std::size_t line, std::size_t column, std::string_view why);

    std::string_view rest_;
    std::size_t line_ = 1;
    char separator_ = ',';
    bool isUtf8_ = false;
    bool isStopped_ = false;
    std::vector<CsvFault> faults_;
};

// A file of records whose first one names their columns.
struct CsvTable {
    std::vector<std::size_t> Columns; // of each field of a record: its index among the columns that there are
    std::vector<CsvRecord> Rows;
    std::vector<CsvFault> Faults;
};

// Reads a text whose columns, named in any case and order, are some of those; the first of those must be among them. A
// row that has not a field for each column is a fault, and none of the rows. `things`, as in "users", are what the
// columns are keys of.
CsvTable ReadCsvTable(std::string_view text, std::span<const std::string_view> columns, std::string_view things,
                      bool isUtf8 = false);

// A field as it stands in a record: in quotes when it needs them.
std::string CsvText(std::string_view text);

} // namespace bv
