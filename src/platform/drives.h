// Where Windows paths lie on a system without drives.
#pragma once

#include <optional>
#include <string>

namespace bv::platform {

// Says that a drive ("F:") or a share ("\\server\share") lies at a directory of the host. False when the
// first is neither, when the directory does not exist, or where the system has drives of its own.
// Until told otherwise, Z: is the host's root directory.
bool MapDrive(const std::string& driveOrShare, const std::string& hostDirectory);

// The Windows path of a path as the user of this system writes it: a Windows path as it stands, a host path
// made absolute and put below the mapped drive or share that is nearest to it.
std::string ToWindowsPath(const std::string& userPath);

// The path by the share ("\\server\share\...") that its drive, or where its drive lies, belongs to; none when it
// belongs to none. A path that is already one of a share stays as it is.
std::optional<std::string> ToNetworkPath(const std::string& path);

} // namespace bv::platform
