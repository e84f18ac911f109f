#include "users/directories.h"

#include <algorithm>

#include "platform/files.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

using platform::FileError;

// How much of the path is its drive or share, which nobody can make; 0 without either.
std::size_t RootSize(std::string_view path) {
    if (path.starts_with("\\\\")) {
        const std::size_t server = path.find('\\', 2);
        const std::size_t share = server == std::string_view::npos ? server : path.find('\\', server + 1);
        return std::min(share, path.size());
    }
    const std::size_t colon = path.find(':');
    return colon == std::string_view::npos ? 0 : colon + 1;
}

bool IsDirectory(const std::string& path) {
    const auto info = platform::Files().Find(path);
    return info && info->IsDirectory;
}

// Makes one that was not there.
bool CreateLevel(const std::string& path) {
    const FileError error = platform::Files().MakeDirectory(path);
    if (error == FileError::None) {
        ShowStatus("Created directory %s", path);
        return true;
    }
    if (error != FileError::AccessDenied && error != FileError::Exists) {
        ShowError("Unable to create directory %s", path);
        return false;
    }
    if (IsDirectory(path)) return true; // somebody else has just made it
    ShowError("Unable to create directory %s - access error", path);
    return false;
}

} // namespace

std::uint16_t CreateDirectoryPath(std::string_view path) {
    const std::size_t root = RootSize(path);
    if (root == 0) {
        ShowError("Unable to create directory %s - drive not specified", path);
        return kDirectoryFailed;
    }
    std::vector<std::string> levels;
    for (std::size_t at = root; at < path.size();) {
        const std::size_t name = path.find_first_not_of('\\', at);
        if (name == std::string_view::npos) break;
        at = std::min(path.find('\\', name), path.size());
        levels.emplace_back(path.substr(0, at));
    }
    // Those above one that is there are there, too.
    const auto present = std::find_if(levels.rbegin(), levels.rend(), IsDirectory);
    const bool isMade = std::all_of(present.base(), levels.end(), CreateLevel);
    return isMade ? 0 : kDirectoryFailed;
}

bool CheckDirectory(const std::string& directory) {
    const std::string path = directory.substr(0, directory.find_last_not_of('\\') + 1);
    if (path.empty() || IsDirectory(path) || !AskQuestion(kMakeDirectory, directory)) return true;
    return CreateDirectoryPath(path) == 0;
}

std::vector<std::string> ListDirectoryFiles(const std::string& directory, std::string_view pattern) {
    std::vector<std::string> paths;
    for (const std::string& name : platform::Files().List(directory, pattern == "*.*" ? "*" : pattern)) {
        if (!name.starts_with('.')) paths.push_back(directory + "\\" + name);
    }
    return paths;
}

bool IsLink(const std::string& path) {
    const auto info = platform::Files().Find(path);
    return info && info->IsLink;
}

void EmptyDirectory(const std::string& directory) {
    for (const std::string& path : ListDirectoryFiles(directory, "*.*")) platform::Files().Delete(path);
}

} // namespace bv
