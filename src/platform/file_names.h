// Names of files and directories, and what can be said of them without looking at any; the same on every system.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ascii.h"

namespace bv::platform {

// The names between the separators "\" and "/" of a path; "." is left out, ".." takes the name before it away.
inline std::vector<std::string> PathNames(std::string_view path) {
    std::vector<std::string> names;
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find_first_of("\\/"));
        path.remove_prefix(name.size() < path.size() ? name.size() + 1 : name.size());
        if (name == ".." && !names.empty()) names.pop_back();
        if (!name.empty() && name != "." && name != "..") names.emplace_back(name);
    }
    return names;
}

// Whether the whole name matches a pattern in which "*" stands for any characters, none included, and "?" for
// exactly one. Letters match in either case. A dot is a character as any other: "*.*" does not match "README".
constexpr bool MatchesWildcard(std::string_view pattern, std::string_view name) {
    std::size_t at = 0;
    std::size_t afterStar = std::string_view::npos; // where to go on when a guess for the last "*" was too short
    std::size_t starEnd = 0;                        // what that "*" has taken of the name so far ends here
    for (std::size_t i = 0; i < name.size();) {
        if (at < pattern.size() && pattern[at] == '*') {
            afterStar = ++at;
            starEnd = i;
        } else if (at < pattern.size() && (pattern[at] == '?' || ToLower(pattern[at]) == ToLower(name[i]))) {
            ++at;
            ++i;
        } else if (afterStar != std::string_view::npos) {
            at = afterStar;
            i = ++starEnd;
        } else {
            return false;
        }
    }
    while (at < pattern.size() && pattern[at] == '*') ++at;
    return at == pattern.size();
}

// Whether Windows takes the name, whatever follows its first dot, for a device: opening such a file opens the device.
constexpr bool IsDeviceName(std::string_view name) {
    std::string_view base = name.substr(0, name.find('.'));
    while (base.ends_with(' ')) base.remove_suffix(1);
    for (const std::string_view device : {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"}) {
        if (EqualFolded(base, device)) return true;
    }
    constexpr std::string_view kNumbers = "123456789\xB9\xB2\xB3"; // 1, 2 and 3 also as superscripts
    return base.size() == 4 && (EqualFolded(base.substr(0, 3), "COM") || EqualFolded(base.substr(0, 3), "LPT")) &&
           kNumbers.find(base[3]) != std::string_view::npos;
}

// Why no new file or directory gets the name, on any system, as Windows cannot have it or would make another one of it;
// a sentence without its end. Empty without a fault.
constexpr std::string_view FaultOfFileName(std::string_view name) {
    constexpr auto isForbidden = [](char c) {
        return (c >= 0 && c < ' ') || c == '\x7F' || std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos;
    };
    if (name.empty()) return "a file name has at least one character";
    if (std::ranges::any_of(name, isForbidden))
        return "no file name has a control character or one of \\ / : * ? \" < > |";
    if (name.starts_with(' ') || name.ends_with(' ')) return "no file name has a blank at an end";
    if (name.ends_with('.')) return "no file name has a dot at its end";
    if (IsDeviceName(name)) return "Windows keeps CON, PRN, AUX, NUL, COM1 to COM9 and LPT1 to LPT9 for devices";
    return {};
}

// A computer as the network names it, "\\NAME", with or without its backslashes; empty for nothing.
inline std::string NetworkComputer(std::string_view name) {
    const std::size_t start = name.find_first_not_of('\\');
    return start == std::string_view::npos ? std::string() : std::string("\\\\").append(name.substr(start));
}

// The order of names in a list: alphabetical without regard to case.
constexpr bool ComesBefore(std::string_view a, std::string_view b) {
    const int order = CompareFolded(a, b);
    return order != 0 ? order < 0 : a < b;
}

} // namespace bv::platform
