// Files of comma-separated values that are taken into a list.
#pragma once

#include "console/commands.h"
#include "ctlfile/csv_import.h"

namespace bv::console {

inline constexpr Parameter kUtf8Flag = {"--utf8", "The file is UTF-8, whatever the locale says", ParameterKind::Flag};

// Whether values are given and taken in UTF-8, by that flag or the locale; else they are in the files' code page, as
// spreadsheets without UTF-8 have them.
bool IsUtf8Csv(const Session& session, const Arguments& arguments);

// Prints such a text.
void PrintCsv(const Session& session, const Arguments& arguments, const std::string& text);

// Reads the arguments' FILE. Checks every row before anything is written, and says what is wrong with each by line and
// column. Then takes them over; a person may stop that (Ctrl+C). A rehearsal says before the differences what would be
// added and changed. Exit status 1 when not all was done.
int ImportFile(Session& session, const Arguments& arguments, CsvImport& import);

} // namespace bv::console
