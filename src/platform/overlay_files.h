// A file system on top of another one, whose changes stay in memory.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/files.h"

namespace bv::platform {

struct OverlayEntry;

// Things by their paths, made absolute and lower-cased: in order, and found by hash, as a dry run asks for every path
// several times.
template <class Thing>
class PathMap {
  public:
    using const_iterator = typename std::map<std::string, Thing>::const_iterator;

    [[nodiscard]] const Thing* Find(std::string_view key) const {
        const auto found = byHash_.find(key);
        return found == byHash_.end() ? nullptr : found->second;
    }
    void Set(const std::string& key, const Thing& thing) {
        const auto place = inOrder_.insert_or_assign(key, thing).first;
        byHash_[place->first] = &place->second;
    }
    [[nodiscard]] const std::map<std::string, Thing>& InOrder() const { return inOrder_; }

  private:
    std::map<std::string, Thing> inOrder_;
    std::unordered_map<std::string_view, const Thing*> byHash_; // what stands in the other; nothing is ever removed
};

// Shows a file of the base until it is opened for writing, created or deleted through the overlay; from then on the
// overlay's own copy. The base is never changed, but it is asked as if it were: as long as a file of the base is
// open here, it is open there with the same access and the same denial, so that what would be refused there is
// refused here. A file that only the overlay has denies to the overlay's own openings. A path is one and the same
// in any case, but not by way of another drive or share.
//
// Directories that are made or removed through the overlay are remembered, too. A directory of the base counts as empty
// when no file is left in it: directories of the base inside it are not seen.
//
// Without a base it is a file system in memory alone. A file may then be created in any directory, made or not, that
// was not removed, and what holds a file is a directory.
class OverlayFiles final : public FileSystem {
  public:
    // What has become of a file: no Before when it was created, no After when it was deleted.
    struct Change {
        std::string Path; // as it was first given, or last created with
        std::optional<std::string> Before;
        std::optional<std::string> After;
    };

    OverlayFiles() = default;
    explicit OverlayFiles(FileSystem& base) : base_(&base) {}

    OpenResult Open(const std::string& path, const OpenRequest& request) override;
    FileError Delete(const std::string& path) override;
    FileError Rename(const std::string& from, const std::string& to) override;
    FileError Replace(const std::string& from, const std::string& to) override;
    std::optional<FileInfo> Find(const std::string& path) override;
    FileError ReadDirectory(const std::string& directory, std::string_view pattern,
                            std::vector<std::string>& names) override;
    FileError MakeDirectory(const std::string& path) override;
    FileError RemoveEmptyDirectory(const std::string& path) override;

    // The files whose contents are no longer the base's, in the order of their paths.
    [[nodiscard]] std::vector<Change> Changes() const;

  private:
    [[nodiscard]] const std::string& KeyOf(const std::string& path) const;
    [[nodiscard]] std::shared_ptr<OverlayEntry> FindEntry(const std::string& path) const;
    [[nodiscard]] OpenResult OpenInBase(const std::string& path, const OpenRequest& request) const;
    [[nodiscard]] std::optional<bool> KnownDirectory(const std::string& path) const;
    [[nodiscard]] bool IsInOwnDirectory(const std::string& path) const;
    [[nodiscard]] bool HasDirectoryOf(const std::string& path) const;
    [[nodiscard]] bool HasFileBelow(const std::string& directory) const;
    [[nodiscard]] bool HoldsSomething(const std::string& directory);

    FileSystem* base_ = nullptr;
    PathMap<std::shared_ptr<OverlayEntry>> entries_;
    PathMap<bool> directories_; // made (true) or removed

    // The path that was asked for last, and its key: one call asks for the same several times.
    mutable std::string lastPath_;
    mutable std::string lastKey_;
};

} // namespace bv::platform
