// Which lines of control files hold a password, scrambled or not: for everything that shows lines of files.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace bv {

// Whether a key of that name, without separator and in any case, holds a password. The paragraph and the file do not
// matter, so that copies of a file and lines that have lost their place count as well.
bool IsPasswordKey(std::string_view name);

// Where the password begins in a line, behind key and separator; none in a line that holds none. A line that is
// commented out counts, too.
std::optional<std::size_t> FindPassword(std::string_view line);

// The line with eight asterisks in place of its password, and without a line end then; any other line as it is.
std::string WithMaskedPassword(std::string_view line);

} // namespace bv
