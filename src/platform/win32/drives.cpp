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

std::optional<std::string> ToNetworkPath(const std::string& path) {
    if (path.starts_with("\\\\")) return path;
    alignas(UNIVERSAL_NAME_INFOA) std::array<char, 1024> buffer{};
    DWORD size = static_cast<DWORD>(buffer.size());
    if (WNetGetUniversalNameA(path.c_str(), UNIVERSAL_NAME_INFO_LEVEL, buffer.data(), &size) != NO_ERROR)
        return std::nullopt;
    return std::string(reinterpret_cast<const UNIVERSAL_NAME_INFOA*>(buffer.data())->lpUniversalName);
}

} // namespace bv::platform
