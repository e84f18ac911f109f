// Files that are written anew as a whole, and files that take the place of another one.
#pragma once

#include <string>
#include <string_view>

namespace bv {

enum class WriteFault { None, NotOpened, NotWritten };

// Writes a file anew ("wb"); one that stands for another gets its rights. When it cannot be written whole, a part of it
// does not stay. Shows nothing.
WriteFault TryWriteWholeFile(const std::string& path, std::string_view text, std::string_view standsFor = {});

// The same; false after either fault.
bool WriteWholeFile(const std::string& path, std::string_view text, std::string_view standsFor = {});

// Puts a new file in the place of another one, which keeps its owner, mode and access list: in one step where the
// system has one (platform/files.h). Where the new file cannot get those rights its text is copied over the old one's
// (copy_back.h), and where there is no old one it just gets the name. Tries for ten seconds while one of them is held.
// False when it cannot be done: then both are as they were, or the new one is there alone. Shows nothing.
bool PutInPlace(const std::string& newPath, const std::string& livePath);

// Whether there is certainly no such file: a look that failed says nothing, nor does one while another program replaces
// the file (file_gate.h).
bool IsMissing(const std::string& path);

} // namespace bv
