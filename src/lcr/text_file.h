// Reading a whole file of least-cost routing, and its one message when it cannot be opened.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace bv {

// "File error: couldn't open" and the path.
void ShowOpenFault(std::string_view path);

// Whether there is certainly no such file: a look that failed says nothing.
bool IsMissing(const std::string& path);

struct TextOfFile {
    bool IsThere = false; // false: no file, no text
    std::string Text;
};

// None, after "File error: couldn't open" or message 9011, for a file that is there and cannot be read to its end.
std::optional<TextOfFile> ReadTextFile(const std::string& path);

// The text of a file that is replaced as a whole. When it is not there but its new text is, which must pass the check,
// that: a save was cut off. Said as a warning, with both paths.
std::optional<TextOfFile> ReadReplacedFile(const std::string& path, const std::string& newPath,
                                           bool (*isWhole)(std::string_view text));

} // namespace bv
