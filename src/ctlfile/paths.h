// Parts of a control file's path. Only "\" and ":" part the names of a path here.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bv {

inline constexpr std::size_t kMaxPath = 268; // characters of a control file's path

// The text after the last "." that follows the last "\" or ":"; empty when there is none.
std::string_view ExtensionOf(std::string_view path);

// The text after the last "\" or ":".
std::string_view FilePart(std::string_view path);

// The path without its file part: up to and including the last "\" or ":".
std::string_view DirectoryPart(std::string_view path);

// For a network path ("\\server\share\X") what follows the share's name ("\X"); else what follows the
// drive's ":", or the whole path without a drive.
std::string_view SharePart(std::string_view path);

// The path with its extension, if any, replaced by the given one (without its dot).
std::string WithExtension(std::string_view path, std::string_view extension);

// The path of the temporary that a rewrite of the file goes through: extension TMP, or TM2 for a file whose
// own extension is TMP.
std::string TemporaryPath(std::string_view path);

// A directory with a trailing "\"; an empty one stays empty.
std::string WithBackslash(std::string_view directory);

} // namespace bv
