#include "platform/overlay_files.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/clock.h"
#include "platform/drives.h"
#include "platform/file_names.h"

namespace bv::platform {

struct OverlayEntry {
    std::string Path; // as it was first given, or last created with
    std::optional<std::string> Before;
    std::optional<std::string> Now;
    bool Created = false; // its name is not the base's
    std::int64_t WriteTime = 0;
    std::vector<const OpenRequest*> Openings; // those of this moment
};

namespace {

constexpr std::size_t kLargestFile = std::size_t{1} << 28;

// The names of PathNames, in lower case and each behind a separator.
std::string MakeKey(const std::string& path) {
    const std::string whole = ToWindowsPath(path);
    std::string key;
    key.reserve(whole.size() + 1);
    for (std::string_view rest = whole; !rest.empty();) {
        const auto end = std::ranges::find_if(rest, [](char c) { return c == '\\' || c == '/'; });
        const std::string_view name = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
        rest.remove_prefix(std::min(name.size() + 1, rest.size()));
        if (name == "..") {
            key.resize(key.empty() ? 0 : key.rfind('\\'));
        } else if (!name.empty() && name != ".") {
            key.append(1, '\\').append(name);
        }
    }
    std::ranges::transform(key, key.begin(), ToLower);
    return key;
}

bool NamesAFile(const std::string& path) {
    return !path.empty() && path.find('\0') == std::string::npos && !path.ends_with('\\') && !path.ends_with('/');
}

// Without separators at its end.
std::string TrimmedDirectory(const std::string& path) { return path.substr(0, path.find_last_not_of("\\/") + 1); }

// Those of the things, which are sorted by their keys, that lie below a directory at any depth: "]" follows "\\".
template <class Thing>
struct Below {
    typename PathMap<Thing>::const_iterator First;
    typename PathMap<Thing>::const_iterator Last;
    Below(const PathMap<Thing>& things, const std::string& directoryKey)
        : First(things.InOrder().lower_bound(directoryKey + '\\')),
          Last(things.InOrder().lower_bound(directoryKey + ']')) {}
    auto begin() const { return First; }
    auto end() const { return Last; }
};

// Every opening reads.
bool DeniesTo(const OpenRequest& holder, const OpenRequest& other) {
    return holder.Denied == Deny::ReadingAndWriting || (holder.Denied == Deny::Writing && MayWrite(other));
}

bool IsRefused(const OverlayEntry& entry, const OpenRequest& request) {
    return std::ranges::any_of(entry.Openings, [&](const OpenRequest* holder) {
        return DeniesTo(*holder, request) || DeniesTo(request, *holder);
    });
}

void Touch(OverlayEntry& entry) { entry.WriteTime = TheClock().Now() / 1000; }

void CreateOrTruncate(OverlayEntry& entry, const std::string& path) {
    if (!entry.Now) {
        entry.Path = path;
        entry.Created = true;
    }
    entry.Now.emplace();
    Touch(entry);
}

class OverlayFile final : public File {
  public:
    OverlayFile(std::shared_ptr<OverlayEntry> entry, std::unique_ptr<File> inBase, const OpenRequest& request)
        : entry_(std::move(entry)), inBase_(std::move(inBase)), request_(request) {
        entry_->Openings.push_back(&request_);
    }
    ~OverlayFile() override { OverlayFile::Close(); }
    OverlayFile(const OverlayFile&) = delete;
    OverlayFile& operator=(const OverlayFile&) = delete;

    Transfer Read(std::uint64_t offset, char* bytes, std::size_t size) override {
        const std::string& contents = *entry_->Now;
        if (offset >= contents.size()) return {};
        const std::size_t count = std::min(size, contents.size() - static_cast<std::size_t>(offset));
        if (count > 0) std::memcpy(bytes, contents.data() + offset, count);
        return {count, FileError::None};
    }

    Transfer Write(std::uint64_t offset, std::string_view bytes) override {
        if (!MayWrite(request_)) return {0, FileError::AccessDenied};
        if (bytes.empty()) return {}; // does not extend a file
        if (offset > kLargestFile || bytes.size() > kLargestFile - offset) return {0, FileError::DiskFull};
        const auto start = static_cast<std::size_t>(offset);
        std::string& contents = *entry_->Now;
        contents.resize(std::max(contents.size(), start + bytes.size()));
        contents.replace(start, bytes.size(), bytes);
        Touch(*entry_);
        return {bytes.size(), FileError::None};
    }

    std::optional<std::uint64_t> Length() override { return entry_->Now->size(); }

    FileError SetLength(std::uint64_t length) override {
        if (!MayWrite(request_)) return FileError::AccessDenied;
        if (length > kLargestFile) return FileError::DiskFull;
        entry_->Now->resize(static_cast<std::size_t>(length));
        Touch(*entry_);
        return FileError::None;
    }

    std::optional<std::int64_t> WriteTime() override { return entry_->WriteTime; }

    FileError SetWriteTime(std::int64_t seconds) override {
        if (!MayWrite(request_)) return FileError::AccessDenied;
        entry_->WriteTime = seconds;
        return FileError::None;
    }

    FileError Close() override {
        std::erase(entry_->Openings, &request_);
        const std::unique_ptr<File> inBase = std::move(inBase_);
        return inBase ? inBase->Close() : FileError::None;
    }

  private:
    std::shared_ptr<OverlayEntry> entry_;
    std::unique_ptr<File> inBase_; // holds the denials there
    OpenRequest request_;
};

// The overlay's copy of an opened file of the base; none when it cannot be read.
std::shared_ptr<OverlayEntry> CopyFromBase(const std::string& path, File& file) {
    const std::optional<std::uint64_t> length = file.Length();
    if (!length || *length > kLargestFile) return nullptr;
    std::string contents(static_cast<std::size_t>(*length), '\0');
    const Transfer read = file.Read(0, contents.data(), contents.size());
    if (read.Error != FileError::None) return nullptr;
    contents.resize(read.Count);
    auto entry = std::make_shared<OverlayEntry>();
    entry->Path = path;
    entry->Before = entry->Now = contents;
    entry->WriteTime = file.WriteTime().value_or(0);
    return entry;
}

} // namespace

const std::string& OverlayFiles::KeyOf(const std::string& path) const {
    if (lastKey_.empty() || path != lastPath_) {
        lastKey_ = MakeKey(path);
        lastPath_ = path;
    }
    return lastKey_;
}

std::shared_ptr<OverlayEntry> OverlayFiles::FindEntry(const std::string& path) const {
    const auto* const found = entries_.Find(KeyOf(path));
    return found == nullptr ? nullptr : *found;
}

OpenResult OverlayFiles::OpenInBase(const std::string& path, const OpenRequest& request) const {
    if (base_ == nullptr || KnownDirectory(path) || IsInOwnDirectory(path)) return {nullptr, FileError::NotFound};
    return base_->Open(path, {MayWrite(request) ? Access::ReadWrite : Access::Read, request.Denied});
}

// Whether a directory is there as far as the overlay itself has made or removed it.
std::optional<bool> OverlayFiles::KnownDirectory(const std::string& path) const {
    const bool* const found = directories_.Find(KeyOf(path));
    return found == nullptr ? std::nullopt : std::optional(*found);
}

// Whether the base knows nothing of a path, since the directory that it lies in was made or removed here.
bool OverlayFiles::IsInOwnDirectory(const std::string& path) const {
    const std::string& key = KeyOf(path);
    return directories_.Find(std::string_view(key).substr(0, key.rfind('\\'))) != nullptr;
}

bool OverlayFiles::HasDirectoryOf(const std::string& path) const {
    const std::size_t separator = path.find_last_of("\\/");
    if (separator == std::string::npos) return true;
    const std::string parent = path.substr(0, separator + 1);
    if (const std::optional<bool> known = KnownDirectory(parent)) return *known;
    if (base_ == nullptr) return true;
    const std::optional<FileInfo> directory = base_->Find(parent);
    return directory && directory->IsDirectory;
}

bool OverlayFiles::HasFileBelow(const std::string& directory) const {
    return std::ranges::any_of(Below(entries_, KeyOf(TrimmedDirectory(directory))),
                               [](const auto& file) { return file.second->Now.has_value(); });
}

bool OverlayFiles::HoldsSomething(const std::string& directory) {
    return std::ranges::any_of(Below(directories_, KeyOf(directory)), [](const auto& made) { return made.second; }) ||
           HasFileBelow(directory) || !List(directory, "*").empty();
}

OpenResult OverlayFiles::Open(const std::string& path, const OpenRequest& request) {
    if (!NamesAFile(path)) return {nullptr, FileError::NotFound};
    if (KnownDirectory(path).value_or(false)) {
        return {nullptr, request.How == Creation::CreateNew ? FileError::Exists : FileError::NotAFile};
    }
    std::shared_ptr<OverlayEntry> entry = FindEntry(path);
    const bool exists = Find(path).has_value();
    if (exists && request.How == Creation::CreateNew) return {nullptr, FileError::Exists};
    if (!exists && request.How == Creation::OpenExisting) return {nullptr, FileError::NotFound};
    if (!exists && !HasDirectoryOf(path)) return {nullptr, FileError::NotFound};
    if (entry && IsRefused(*entry, request)) return {nullptr, FileError::AccessDenied};

    OpenResult inBase = OpenInBase(path, request);
    if (inBase.Error != FileError::None && inBase.Error != FileError::NotFound) return inBase;
    if (!entry && inBase.Opened && !MayWrite(request)) return inBase;

    if (!entry && inBase.Opened) entry = CopyFromBase(path, *inBase.Opened);
    if (!entry && inBase.Opened) return {nullptr, FileError::Failed};
    if (!entry) entry = std::make_shared<OverlayEntry>();
    if (!entry->Now || request.How == Creation::CreateOrTruncate) CreateOrTruncate(*entry, path);
    entries_.Set(KeyOf(path), entry);
    return {std::make_unique<OverlayFile>(entry, std::move(inBase.Opened), request), FileError::None};
}

FileError OverlayFiles::Delete(const std::string& path) {
    if (KnownDirectory(path).value_or(false)) return FileError::NotAFile;
    std::shared_ptr<OverlayEntry> entry = FindEntry(path);
    if (entry && !entry->Now) return FileError::NotFound;
    if (entry && !entry->Openings.empty()) return FileError::AccessDenied;

    const OpenResult inBase = OpenInBase(path, {Access::Read, Deny::ReadingAndWriting});
    if (inBase.Error != FileError::None && (!entry || inBase.Error != FileError::NotFound)) return inBase.Error;
    if (!entry) entry = CopyFromBase(path, *inBase.Opened);
    if (!entry) return FileError::Failed;
    entry->Now.reset();
    entries_.Set(KeyOf(path), entry);
    return FileError::None;
}

FileError OverlayFiles::Rename(const std::string& from, const std::string& to) {
    const std::optional<FileInfo> info = Find(from);
    if (!info || info->IsDirectory) return info ? FileError::NotAFile : FileError::NotFound;
    OpenResult source = Open(from, {Access::Read, Deny::ReadingAndWriting});
    if (!source.Opened) return source.Error;
    if (Find(to)) return FileError::Exists;
    if (!HasDirectoryOf(to)) return FileError::NotFound;
    std::string text(static_cast<std::size_t>(info->Length), '\0');
    const Transfer read = source.Opened->Read(0, text.data(), text.size());
    source.Opened.reset();
    if (read.Error != FileError::None) return read.Error;
    if (const FileError error = Delete(from); error != FileError::None) return error;
    const OpenResult target = Open(to, {Access::ReadWrite, Deny::ReadingAndWriting, Creation::CreateNew});
    if (!target.Opened) return target.Error;
    const Transfer written = target.Opened->Write(0, text);
    if (written.Error != FileError::None) return written.Error;
    return target.Opened->SetWriteTime(info->WriteTime);
}

FileError OverlayFiles::Replace(const std::string& from, const std::string& to) {
    if (!Find(from)) return FileError::NotFound;
    const FileError deleted = Delete(to);
    return deleted == FileError::None ? Rename(from, to) : deleted;
}

std::optional<FileInfo> OverlayFiles::Find(const std::string& path) {
    const std::shared_ptr<OverlayEntry> entry = FindEntry(path);
    const std::optional<bool> isDirectory = KnownDirectory(path);
    if (isDirectory.value_or(false)) return FileInfo{true, 0, 0};
    if (!entry && isDirectory) return std::nullopt;
    if (!entry && base_ != nullptr) return IsInOwnDirectory(path) ? std::nullopt : base_->Find(path);
    if (!entry) return HasFileBelow(path) ? std::optional(FileInfo{true, 0, 0}) : std::nullopt;
    if (!entry->Now) return std::nullopt;
    return FileInfo{false, entry->Now->size(), entry->WriteTime};
}

FileError OverlayFiles::ReadDirectory(const std::string& directory, std::string_view pattern,
                                      std::vector<std::string>& names) {
    std::vector<std::string> found;
    if (base_ != nullptr && !KnownDirectory(directory)) {
        const FileError error = base_->ReadDirectory(directory, pattern, found);
        if (error != FileError::None && error != FileError::NotFound) return error;
    }
    std::erase_if(found, [&](const std::string& name) {
        const std::shared_ptr<OverlayEntry> entry = FindEntry(directory + "\\" + name);
        return entry && (entry->Created || !entry->Now);
    });

    const std::string directoryKey = KeyOf(directory);
    for (const auto& [key, entry] : Below(entries_, directoryKey)) {
        if (!entry->Created || !entry->Now || key.rfind('\\') != directoryKey.size()) continue;
        const std::string name = PathNames(entry->Path).back();
        if (MatchesWildcard(pattern, name)) found.push_back(name);
    }
    std::ranges::sort(found, ComesBefore);
    names.insert(names.end(), found.begin(), found.end());
    return FileError::None;
}

FileError OverlayFiles::MakeDirectory(const std::string& path) {
    if (Find(path)) return FileError::Exists;
    if (!HasDirectoryOf(TrimmedDirectory(path))) return FileError::NotFound;
    directories_.Set(KeyOf(path), true);
    return FileError::None;
}

FileError OverlayFiles::RemoveEmptyDirectory(const std::string& path) {
    const std::optional<FileInfo> info = Find(path);
    if (!info || !info->IsDirectory) return FileError::NotFound;
    if (!info->IsLink && HoldsSomething(path)) return FileError::Failed;
    directories_.Set(KeyOf(path), false);
    return FileError::None;
}

std::vector<OverlayFiles::Change> OverlayFiles::Changes() const {
    std::vector<Change> changes;
    for (const auto& [key, entry] : entries_.InOrder()) {
        if (entry->Before != entry->Now) changes.push_back({entry->Path, entry->Before, entry->Now});
    }
    return changes;
}

} // namespace bv::platform
