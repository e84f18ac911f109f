#include "platform/drives.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/ascii.h"
#include "platform/file_names.h"
#include "platform/posix/host_paths.h"
#include "platform/posix/watched_names.h"

namespace bv::platform {

namespace {

// Drives ("F:") and shares ("\\SERVER\SHARE") with the host directory of each: absolute, without a trailing "/",
// and so empty for the host's root.
std::map<std::string, std::string>& Mappings() {
    static std::map<std::string, std::string> mappings{{"Z:", ""}};
    return mappings;
}

bool IsSeparator(char c) { return c == '\\' || c == '/'; }
bool BeginsWithDrive(std::string_view path) { return path.size() >= 2 && IsLetter(path[0]) && path[1] == ':'; }

// A path parted behind its drive or share; the root is upper-cased, as in the mappings, and empty without one.
struct RootedPath {
    std::string Root;
    std::string_view Rest;
};

RootedPath PartRoot(std::string_view path) {
    if (BeginsWithDrive(path)) return {UpperText(path.substr(0, 2)), path.substr(2)};
    if (!path.starts_with("\\\\")) return {"", path};
    const std::size_t share = path.find_first_of("\\/", 2);
    if (share == std::string_view::npos) return {"", path};
    const std::size_t end = std::min(path.find_first_of("\\/", share + 1), path.size());
    std::string root = UpperText(path.substr(0, end));
    std::ranges::replace(root, '/', '\\');
    return {root, path.substr(end)};
}

// The current directory in the form of a mapping's directory.
std::string CurrentHostDirectory() {
    std::error_code error;
    const std::string directory = std::filesystem::current_path(error).string();
    return directory == "/" ? "" : directory;
}

bool Exists(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0;
}

// What a listing that has ended, or did not begin, says of a name that it did not show.
FileError ErrorOfListing() {
    return errno == 0 || errno == ENOENT || errno == ENOTDIR ? FileError::NotFound : FileError::Failed;
}

// The name that stands in the directory for the given one, the first in order when several do. NotFound without any,
// Failed when the directory cannot be listed to its end.
HostPath FindInAnyCase(const std::string& directory, const std::string& name) {
    if (Exists(directory + "/" + name)) return {name};
    if (const std::optional<HostPath> known = FindWatchedName(directory, name)) return *known;
    errno = 0;
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir((directory + "/").c_str()), closedir);
    std::string found;
    std::size_t count = 0;
    while (const dirent* entry = listing ? readdir(listing.get()) : nullptr) {
        const std::string_view candidate = entry->d_name;
        ++count;
        if (EqualFolded(candidate, name) && (found.empty() || candidate < found)) found = candidate;
    }
    const FileError error = ErrorOfListing();
    if (count >= kManyNames) WatchNames(directory);
    return found.empty() || error == FileError::Failed ? HostPath{"", error} : HostPath{found};
}

std::string Join(std::string path, const std::vector<std::string>& names, char separator) {
    for (const std::string& name : names) path += separator + name;
    return path;
}

// Most of a path is there as it is written: only the names behind that are looked for.
HostPath FindNames(const std::string& directory, const std::vector<std::string>& names) {
    std::string path = Join(directory, names, '/');
    auto name = names.end();
    while (name != names.begin() && !Exists(path)) path.resize(path.size() - (--name)->size() - 1);

    bool missing = false;
    for (; name != names.end(); ++name) {
        HostPath found = missing ? HostPath{*name} : FindInAnyCase(path, *name);
        if (found.Error == FileError::Failed) return found;
        missing = missing || !found;
        path += "/" + (missing ? *name : *found);
    }
    return {path};
}

// The directory that a path's names are looked up in.
std::optional<std::string> StartOf(const RootedPath& path) {
    const auto& mappings = Mappings();
    if (!path.Root.empty()) {
        const auto found = mappings.find(path.Root);
        return found == mappings.end() ? std::nullopt : std::optional(found->second);
    }
    if (path.Rest.starts_with("\\\\")) return std::nullopt; // a server without a share
    if (path.Rest.starts_with('/')) return "";
    if (path.Rest.starts_with('\\')) return StartOf(PartRoot(ToWindowsPath("/" + CurrentHostDirectory())));
    return CurrentHostDirectory();
}

// The names of the path below the directory, when it lies there.
std::optional<std::vector<std::string>> NamesBelow(const std::string& directory, const std::vector<std::string>& path) {
    const std::vector<std::string> above = PathNames(directory);
    if (above.size() > path.size() || !std::equal(above.begin(), above.end(), path.begin())) return std::nullopt;
    return std::vector<std::string>(path.begin() + static_cast<std::ptrdiff_t>(above.size()), path.end());
}

} // namespace

HostPath ToHostPath(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) return {"", FileError::NotFound};
    const RootedPath rooted = PartRoot(path);
    const std::optional<std::string> start = StartOf(rooted);
    if (!start) return {"", FileError::NotFound};

    // What stands behind a relative path's ".." is the current directory's, so both are taken apart together;
    // ".." in a mapped drive or share does not lead out of it.
    const bool relative = rooted.Root.empty() && !IsSeparator(rooted.Rest.front());
    const std::string below = relative ? *start + "/" + std::string(rooted.Rest) : std::string(rooted.Rest);
    HostPath found = FindNames(relative ? "" : *start, PathNames(below));
    if (found && (found->empty() || IsSeparator(path.back()))) found.Path += '/';
    return found;
}

bool MapDrive(const std::string& driveOrShare, const std::string& hostDirectory) {
    const RootedPath rooted = PartRoot(driveOrShare);
    if (rooted.Root.empty() || !rooted.Rest.empty()) return false;
    if (rooted.Root.starts_with("\\\\") && PathNames(rooted.Root).size() != 2) return false;

    std::error_code error;
    const std::filesystem::path directory = std::filesystem::absolute(hostDirectory, error);
    if (hostDirectory.empty() || error || !std::filesystem::is_directory(directory, error)) return false;
    Mappings()[rooted.Root] = Join("", PathNames(directory.string()), '/');
    return true;
}

std::string ToWindowsPath(const std::string& userPath) {
    if (userPath.starts_with('\\') || BeginsWithDrive(userPath)) return userPath;
    const bool absolute = userPath.starts_with('/');
    const std::vector<std::string> names = PathNames(absolute ? userPath : CurrentHostDirectory() + "/" + userPath);

    std::optional<std::string> nearest;
    std::size_t fewest = 0;
    for (const auto& [root, directory] : Mappings()) {
        const auto below = NamesBelow(directory, names);
        if (!below || (nearest && below->size() >= fewest)) continue;
        nearest = below->empty() ? root + "\\" : Join(root, *below, '\\');
        fewest = below->size();
    }
    return nearest.value_or(Join("", names, '/'));
}

std::optional<std::string> ToNetworkPath(const std::string& path) {
    const RootedPath rooted = PartRoot(path);
    if (rooted.Root.starts_with("\\\\")) return path;
    const HostPath host = ToHostPath(path);
    if (rooted.Root.empty() || !host) return std::nullopt;
    for (const auto& [root, directory] : Mappings()) {
        const auto below = NamesBelow(directory, PathNames(*host));
        if (root.starts_with("\\\\") && below) return Join(root, *below, '\\');
    }
    return std::nullopt;
}

} // namespace bv::platform
