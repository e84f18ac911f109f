// The files of least-cost routing, which are read and replaced as wholes, and what is said when that cannot be done.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ctlfile/replaced_file.h"
#include "shell/server_files.h"

namespace bv {

// "File error: couldn't open" and the path.
void ShowOpenFault(std::string_view path);

// The file with what is said of it: "File error: couldn't open", 5000, 5004.
ReplacedFile LcrFile(ReplacedFile file);
ReplacedFile LcrFile(ServerFile file);

// None, after "File error: couldn't open" or message 9011, for a file that is there and cannot be read to its end.
std::optional<TextOfFile> ReadTextFile(const std::string& path);

// A change of such a file (ChangeReplacedFile); sets SettingsChanged when it comes off.
bool ChangeLcrFile(const ReplacedFile& file, const TextChange& change, const std::optional<TextStamp>& expected = {});

} // namespace bv
