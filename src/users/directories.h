// Making, listing and removing directories.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bv {

inline constexpr std::uint16_t kDirectoryFailed = 0xF00C;

// Makes a directory and the missing ones above it, each with the status "Created directory %s". The path begins with a
// drive or with "\\server\share\". 0, or kDirectoryFailed after one of
//   "Unable to create directory %s - drive not specified"
//   "Unable to create directory %s - access error"         no directory stands there, or it cannot be reached
//   "Unable to create directory %s"
std::uint16_t CreateDirectoryPath(std::string_view path);

// For a directory that a person gives for a setting: when it is not there, 9208 asks whether to make it. No keeps it as
// given, as the server may see it where this computer does not. False when it is to be made and cannot be, after the
// message.
bool CheckDirectory(const std::string& directory);

// The paths of the files in the directory that match the pattern, of which "*.*" matches all; names that begin with "."
// are passed over.
std::vector<std::string> ListDirectoryFiles(const std::string& directory, std::string_view pattern);

// Whether a link stands at the path, so that what is done below it is done elsewhere.
bool IsLink(const std::string& path);

// Deletes the files that are listed in a directory, as far as they can be deleted.
void EmptyDirectory(const std::string& directory);

} // namespace bv
