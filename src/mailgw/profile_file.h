// Files of the system and of other programs in the form of WIN.INI: sections "[Mail]" of lines "key=value".
#pragma once

#include <string>
#include <string_view>

namespace bv {

// The value of the first such key in the first such section of a file in the Windows directory, names compared without
// case; without blanks at its ends and one pair of quotes, and of at most 268 characters. Empty when anything of it is
// not there or the file cannot be read. Shows nothing.
std::string ReadProfileText(std::string_view fileName, std::string_view section, std::string_view key);

} // namespace bv
