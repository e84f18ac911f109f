// Importing entries from a file of comma-separated values: the rows are shown with what each would do before any of
// them is taken.
#pragma once

#include <windows.h>

#include <string>

#include "ctlfile/csv_import.h"

namespace bv {

// Runs the dialog; true when entries were imported.
bool ImportByDialog(HWND owner, CsvImport& import);

// Asks for a file and writes the text there. False when it was cancelled, or after a message.
bool ExportByDialog(HWND owner, const std::string& text);

INT_PTR CALLBACK CsvImportDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
