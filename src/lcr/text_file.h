// The files of least-cost routing, which are read and replaced as wholes, and what is said when that cannot be done.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ctlfile/replaced_file.h"

namespace bv {

// "File error: couldn't open" and the path.
void ShowOpenFault(std::string_view path);

// A file of the database directory and the name of its new text. What is said of it: "File error: couldn't open", 5000,
// 5004.
ReplacedFile LcrFile(std::string_view name, std::string_view newName, std::string_view type);

// None, after "File error: couldn't open" or message 9011, for a file that is there and cannot be read to its end.
std::optional<TextOfFile> ReadTextFile(const std::string& path);

// A change of such a file (ChangeReplacedFile); sets SettingsChanged when it comes off.
bool ChangeLcrFile(const ReplacedFile& file, const TextChange& change, const std::optional<TextStamp>& expected = {});

} // namespace bv
