// Files of comma-separated values that are taken into a list.
#pragma once

#include <string>

#include "console/commands.h"
#include "ctlfile/csv_import.h"

namespace bv::console {

// Checks every row before anything is written, and says what is wrong with each by line and column. Then takes them
// over; a person may stop that (Ctrl+C). A rehearsal says before the differences what would be added and changed. Exit
// status 1 when not all was done.
int ImportFile(Session& session, const std::string& file, CsvImport& import);

} // namespace bv::console
