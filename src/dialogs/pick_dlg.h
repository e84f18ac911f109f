// The system's own dialogs for files.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace bv {

enum class PickFor { Opening, Saving };

// A file of comma-separated values; none when it was cancelled. Begins with the path that is given.
std::optional<std::string> PickCsvFile(HWND owner, PickFor what, const std::string& path);

} // namespace bv
