// Names of files and directories, and what can be said of them without looking at any; the same on every system.
#pragma once

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

// The order of names in a list: alphabetical without regard to case.
constexpr bool ComesBefore(std::string_view a, std::string_view b) {
    const int order = CompareFolded(a, b);
    return order != 0 ? order < 0 : a < b;
}

} // namespace bv::platform
