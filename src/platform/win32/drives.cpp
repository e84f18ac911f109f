#include "platform/drives.h"

#include <windows.h>

#include <array>

#include "platform/ascii.h"

namespace bv::platform {

namespace {

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

bool IsFullPath(const std::string& path) {
    if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1])) return true;
    return path.size() >= 3 && IsLetter(path[0]) && path[1] == ':' && IsSeparator(path[2]);
}

} // namespace

bool MapDrive(const std::string& /*driveOrShare*/, const std::string& /*hostDirectory*/) { return false; }

std::string ToWindowsPath(const std::string& userPath) {
    if (IsFullPath(userPath)) return userPath;
    std::array<char, 1024> full{};
    const DWORD length = GetFullPathNameA(userPath.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    return length == 0 || length >= full.size() ? userPath : std::string(full.data(), length);
}

} // namespace bv::platform
