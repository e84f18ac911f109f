// Taking a list's entries from a file of comma-separated values: what every face may ask before, and do.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/csv.h"

namespace bv {

// What a row would do to the list.
enum class RowState { New, Replaces, Same, Wrong };

// Something to be said of one field of a row, which is named in the text.
struct RowNote {
    std::size_t Column = 0; // counted from 1
    std::string Text;
};

struct RowVerdict {
    RowState State = RowState::Same;
    std::string Name;           // of the entry, as the list has it or will have it
    std::vector<RowNote> Notes; // of a wrong row what is wrong, of one that replaces an entry what changes
};

struct ImportCounts {
    std::size_t Added = 0;
    std::size_t Changed = 0;
    friend bool operator==(const ImportCounts&, const ImportCounts&) = default;
};

// Asked, with the number of entries that are done, whether to go on.
using ImportProgress = std::function<bool(std::size_t done)>;

class CsvImport {
  public:
    virtual ~CsvImport() = default;

    // The entries in words, as in "users" and "user".
    [[nodiscard]] virtual std::string_view Title() const = 0;
    [[nodiscard]] virtual std::string_view EntryTitle() const = 0;

    // The columns that a file may have; it must have the first one.
    [[nodiscard]] virtual std::span<const std::string_view> Columns() const = 0;

    // A verdict for each row, by the list as it is now; none, after a message, when that cannot be read.
    virtual std::optional<std::vector<RowVerdict>> Check(const CsvTable& table) = 0;

    // Puts the rows that were last checked, none of which may be wrong, into the list, and returns how many are in it.
    // Fewer than there are: a message has said why, or the progress wanted to stop.
    virtual ImportCounts Apply(const ImportProgress& goOn) = 0;
};

// Which of the rows that are not wrong go into the list.
struct ImportChoice {
    bool Replace = true;   // also those that replace an entry
    bool GoodOnly = false; // although others are wrong
};

std::size_t CountOf(std::span<const RowVerdict> verdicts, RowState state);

// The rows that are to be imported: new ones, and those that replace as the choice has it.
CsvTable ChosenRows(const CsvTable& table, std::span<const RowVerdict> verdicts, const ImportChoice& choice);

// The wrong rows with a last column "Fault", so that a person can mend them and import them again.
std::string WrongRowsAsCsv(const CsvTable& table, std::span<const RowVerdict> verdicts,
                           std::span<const std::string_view> columns);

// An import from the choice of the file to the list: a file is read and looked at before any of it is imported.
class ImportRun {
  public:
    explicit ImportRun(CsvImport& import) : import_(import) {}

    // Reads the file and judges its rows; in UTF-8 also without a mark of it. False after a message: nothing is read.
    bool Read(const std::string& path, bool isUtf8 = false);

    // Another file is meant from now on.
    void Forget() { isRead_ = false; }

    [[nodiscard]] bool IsRead() const { return isRead_; }
    [[nodiscard]] const CsvTable& Table() const { return table_; }
    [[nodiscard]] std::span<const RowVerdict> Verdicts() const { return verdicts_; }
    [[nodiscard]] std::size_t CountWrong() const; // rows, and faults of the file's form

    // Whether there is a next step: a file to be read, or rows to be imported.
    [[nodiscard]] bool CanProceed(const std::string& path, const ImportChoice& choice) const;

    // Takes it: reads the file, or imports what was read from it, of which the progress is told how much is done. Rows
    // that have become wrong meanwhile have the file read again. Status 9227 or, when it was stopped, 9237. Refused
    // after a message: 9225, or one of reading and writing.
    enum class Step { Refused, Read, Imported };
    using Progress = std::function<bool(std::size_t done, std::size_t all)>;
    Step Proceed(const std::string& path, const ImportChoice& choice, const Progress& goOn);

  private:
    bool Apply(const ImportCounts& planned, const Progress& goOn);

    CsvImport& import_;
    CsvTable table_;
    std::vector<RowVerdict> verdicts_;
    bool isRead_ = false;
};

} // namespace bv
