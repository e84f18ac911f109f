// Comma-separated values as RFC 4180 has them: records of fields, parted by commas and CR LF or LF; a field with a
// comma, a quote or a line end stands in quotes, and a quote in it is doubled. UTF-8's byte-order mark at the start is
// passed over.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bv::console {

struct CsvField {
    std::string Text;
    std::size_t Line = 0;   // where it starts, counted from 1
    std::size_t Column = 0; // its number in the record, counted from 1
};
using CsvRecord = std::vector<CsvField>;

// Takes records off a text one by one.
class CsvReader {
  public:
    explicit CsvReader(std::string_view text);

    // The next record; empty lines are passed over. None at the end of the text and after a fault.
    std::optional<CsvRecord> Next();

    // What is wrong with the text where reading stopped, in a sentence that names line and column; empty without fault.
    [[nodiscard]] const std::string& Fault() const { return fault_; }

  private:
    CsvField NextField(std::size_t column);
    bool ReadQuoted(CsvField& field);
    bool TakeLineEnd();

    std::string_view rest_;
    std::size_t line_ = 1;
    std::string fault_;
};

// A field as it stands in a record: in quotes when it needs them.
std::string CsvText(std::string_view text);

} // namespace bv::console
