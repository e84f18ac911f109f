// Reading and writing the files of least-cost routing as wholes, and what is said when that cannot be done.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "ctlfile/whole_file.h"

namespace bv {

// "File error: couldn't open" and the path.
void ShowOpenFault(std::string_view path);

// Writes a file as a whole. False after "File error: couldn't open" and the path or, when the file was opened but could
// not be written to its end, message 5000.
bool WriteTextFile(const std::string& path, std::string_view text);

struct TextOfFile {
    bool IsThere = false; // false: no file, no text
    std::string Text;
};

// None, after "File error: couldn't open" or message 9011, for a file that is there and cannot be read to its end.
std::optional<TextOfFile> ReadTextFile(const std::string& path);

// The text of a file that is replaced as a whole. When it is not there but its new text is, which must pass the check,
// that, after warning 9012: a save was cut off.
std::optional<TextOfFile> ReadReplacedFile(const std::string& path, const std::string& newPath,
                                           const std::function<bool(std::string_view text)>& isWhole);

// Puts the new text of a file in its place, and sets SettingsChanged. False after message 5004: then the live file is
// as it was, or gone with the new one beside.
bool PutTextInPlace(const std::string& newPath, const std::string& path);

} // namespace bv
