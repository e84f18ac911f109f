// The system's own dialogs for files and directories.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace bv {

enum class PickFor { Opening, Saving };

struct FilePick {
    const char* Title;  // none: the system's
    const char* Filter; // pairs of a name and a pattern, each ended by '\0'
    const char* Extension = nullptr;
    PickFor What = PickFor::Opening;
};

// A file; none when it was cancelled. Begins with the path that is given.
std::optional<std::string> PickFile(HWND owner, const FilePick& pick, const std::string& path);

// A file of comma-separated values.
std::optional<std::string> PickCsvFile(HWND owner, PickFor what, const std::string& path);

// A directory, with a trailing "\"; none when it was cancelled. Begins at the path that is given.
std::optional<std::string> PickDirectory(HWND owner, const char* title, const std::string& path);

} // namespace bv
