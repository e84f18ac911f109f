#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include "platform/file_names.h"
#include "platform/posix/deny_locks.h"
#include "platform/posix/errors.h"
#include "platform/posix/host_paths.h"
#include "platform/posix/rights.h"

namespace bv::platform {

namespace {

FileError LastError() { return ErrorOf(errno); }

// Why a name could not be opened, deleted or renamed. Some shares say EINVAL while another program has its file for the
// last moment before it is deleted.
FileError LastNameError() { return errno == EINVAL ? FileError::AccessDenied : LastError(); }

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    [[nodiscard]] int Number() const { return number_; }
    [[nodiscard]] bool IsOpen() const { return number_ >= 0; }

    // An interrupted close has closed.
    FileError Close() {
        if (!IsOpen() || close(std::exchange(number_, -1)) == 0 || errno == EINTR) return FileError::None;
        return LastError();
    }

  private:
    int number_;
};

class PosixFile final : public File {
  public:
    void Hold(Descriptor descriptor) { descriptor_ = std::move(descriptor); }

    Transfer Read(std::uint64_t offset, char* bytes, std::size_t size) override {
        Transfer done;
        while (done.Count < size) {
            const ssize_t count = pread(descriptor_.Number(), bytes + done.Count, size - done.Count,
                                        static_cast<off_t>(offset + done.Count));
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) return {done.Count, LastError()};
            if (count == 0) break;
            done.Count += static_cast<std::size_t>(count);
        }
        return done;
    }

    Transfer Write(std::uint64_t offset, std::string_view bytes) override {
        Transfer done;
        while (done.Count < bytes.size()) {
            const ssize_t count = pwrite(descriptor_.Number(), bytes.data() + done.Count, bytes.size() - done.Count,
                                         static_cast<off_t>(offset + done.Count));
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) return {done.Count, LastError()};
            if (count == 0) return {done.Count, FileError::Failed};
            done.Count += static_cast<std::size_t>(count);
        }
        return done;
    }

    std::optional<std::uint64_t> Length() override {
        struct stat status {};
        if (fstat(descriptor_.Number(), &status) != 0) return std::nullopt;
        return static_cast<std::uint64_t>(status.st_size);
    }

    FileError SetLength(std::uint64_t length) override {
        while (ftruncate(descriptor_.Number(), static_cast<off_t>(length)) != 0) {
            if (errno != EINTR) return LastError();
        }
        return FileError::None;
    }

    std::optional<std::int64_t> WriteTime() override {
        struct stat status {};
        if (fstat(descriptor_.Number(), &status) != 0) return std::nullopt;
        return status.st_mtim.tv_sec;
    }

    FileError SetWriteTime(std::int64_t seconds) override {
        struct timespec times[2]{};
        times[0].tv_nsec = UTIME_OMIT;
        times[1].tv_sec = static_cast<time_t>(seconds);
        return futimens(descriptor_.Number(), times) == 0 ? FileError::None : LastError();
    }

    FileError Close() override { return descriptor_.Close(); }

  private:
    Descriptor descriptor_{-1};
};

int OpenFlags(const OpenRequest& request) {
    int flags = MayWrite(request) ? O_RDWR : O_RDONLY;
    if (request.How != Creation::OpenExisting) flags |= O_CREAT;
    if (request.How == Creation::CreateNew) flags |= O_EXCL;
    return flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK; // a pipe must not hold the opening up
}

Descriptor OpenDescriptor(const std::string& path, int flags, mode_t mode = 0) {
    int number = -1;
    do {
        number = open(path.c_str(), flags, mode);
    } while (number < 0 && errno == EINTR);
    return Descriptor(number);
}

// Does not follow a link, which gives way to the file. Nobody else may read it until it has its rights.
Descriptor OpenTemporary(const std::string& path, int flags) {
    Descriptor descriptor = OpenDescriptor(path, flags | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (descriptor.IsOpen() || errno != ELOOP || unlink(path.c_str()) != 0) return descriptor;
    return OpenDescriptor(path, flags | O_NOFOLLOW, S_IRUSR | S_IWUSR);
}

Descriptor OpenForEverybody(const std::string& path, int flags) {
    const mode_t mask = umask(0);
    Descriptor descriptor = OpenDescriptor(path, flags, 0666);
    umask(mask);
    return descriptor;
}

Descriptor OpenRequested(const std::string& path, const OpenRequest& request) {
    const int flags = OpenFlags(request);
    if (!request.StandsFor.empty()) return OpenTemporary(path, flags);
    if (request.ForEverybody) return OpenForEverybody(path, flags);
    return OpenDescriptor(path, flags, 0666);
}

// What stands for a file that is not there may be used as any new file. Rights that are refused are no reason to lose
// what is to be written: without them the file is for its owner alone, or as its file system makes all files.
FileError TakeRightsOf(int descriptor, std::string_view path) {
    const HostPath host = ToHostPath(std::string(path));
    if (!host) return host.Error;
    const Descriptor other = OpenDescriptor(*host, OpenFlags({}));
    if (other.IsOpen())
        TakeRights(descriptor, other.Number());
    else if (errno == ENOENT)
        TakeUsualMode(descriptor);
    return FileError::None;
}

// Makes sure of a file and takes its locks.
FileError Take(const Descriptor& descriptor, const OpenRequest& request) {
    struct stat status {};
    if (fstat(descriptor.Number(), &status) != 0) return LastError();
    if (!S_ISREG(status.st_mode)) return FileError::NotAFile;
    const DenyGuard guard(descriptor.Number());
    return HoldDenials(descriptor.Number(), request) ? FileError::None : FileError::AccessDenied;
}

bool IsRegular(const Descriptor& descriptor) {
    struct stat status {};
    return fstat(descriptor.Number(), &status) == 0 && S_ISREG(status.st_mode);
}

// The file that a path leads to, where it is a link.
std::string EndOfLinks(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> end(realpath(path.c_str(), nullptr), std::free);
    return end ? end.get() : path;
}

// In one step, or in two where the file system has no such one.
FileError RenameOver(const std::string& from, const std::string& to) {
    if (rename(from.c_str(), to.c_str()) == 0) return FileError::None;
    if (errno != EEXIST) return LastNameError();
    return unlink(to.c_str()) == 0 && rename(from.c_str(), to.c_str()) == 0 ? FileError::None : LastNameError();
}

bool IsDeleted(const Descriptor& descriptor) {
    struct stat status {};
    return fstat(descriptor.Number(), &status) == 0 && status.st_nlink == 0;
}

OpenResult OpenHostFile(const std::string& path, const OpenRequest& request) {
    constexpr int kTries = 10;
    auto file = std::make_unique<PosixFile>(); // without memory, no file is made
    for (int i = 0; i < kTries; ++i) {
        Descriptor descriptor = OpenRequested(path, request);
        if (!descriptor.IsOpen()) return {nullptr, LastNameError()};
        FileError error = Take(descriptor, request);
        if (error != FileError::None) return {nullptr, error};
        if (IsDeleted(descriptor)) continue; // before it was locked; the name may mean another file by now
        if (!request.StandsFor.empty()) error = TakeRightsOf(descriptor.Number(), request.StandsFor);

        file->Hold(std::move(descriptor));
        // An empty file is left alone: some file systems take any truncation for a reason to write at closing.
        if (error == FileError::None && request.How == Creation::CreateOrTruncate && file->Length() != 0)
            error = file->SetLength(0);
        if (error != FileError::None) return {nullptr, error};
        return {std::move(file), FileError::None};
    }
    return {nullptr, FileError::AccessDenied};
}

// The file itself is asked only where its directory does not tell the kind, and to follow a link.
bool IsRegularFile(const std::string& directory, const dirent& entry) {
    if (entry.d_type == DT_REG) return true;
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK) return false;
    struct stat status {};
    return stat((directory + "/" + entry.d_name).c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool IsLink(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

// Whether the link leads to a directory or nowhere.
bool IsDirectoryLink(const std::string& path) {
    struct stat status {};
    return IsLink(path) && (stat(path.c_str(), &status) != 0 || S_ISDIR(status.st_mode));
}

class PosixFileSystem final : public FileSystem {
  public:
    OpenResult Open(const std::string& path, const OpenRequest& request) override {
        const HostPath host = ToHostPath(path);
        return host ? OpenHostFile(*host, request) : OpenResult{nullptr, host.Error};
    }

    FileError Delete(const std::string& path) override {
        const HostPath host = ToHostPath(path);
        if (!host) return host.Error;
        const Descriptor descriptor = OpenDescriptor(*host, OpenFlags({}));
        if (!descriptor.IsOpen()) return LastNameError();

        if (!IsRegular(descriptor)) return FileError::NotAFile;
        const DenyGuard guard(descriptor.Number());
        if (IsHeldElsewhere(descriptor.Number())) return FileError::AccessDenied;
        return unlink(host->c_str()) == 0 ? FileError::None : LastNameError();
    }

    FileError Rename(const std::string& from, const std::string& to) override {
        const HostPath host = ToHostPath(from);
        const HostPath newHost = ToHostPath(to);
        if (!host || !newHost) return host ? newHost.Error : host.Error;
        const Descriptor descriptor = OpenDescriptor(*host, OpenFlags({}));
        if (!descriptor.IsOpen()) return LastNameError();

        struct stat status {};
        if (fstat(descriptor.Number(), &status) != 0) return LastError();
        if (!S_ISREG(status.st_mode)) return FileError::NotAFile;
        const DenyGuard guard(descriptor.Number());
        if (IsHeldElsewhere(descriptor.Number())) return FileError::AccessDenied;
        if (lstat(newHost->c_str(), &status) == 0) return FileError::Exists;
        return rename(host->c_str(), newHost->c_str()) == 0 ? FileError::None : LastNameError();
    }

    FileError Replace(const std::string& from, const std::string& to) override {
        const HostPath host = ToHostPath(from);
        const HostPath oldHost = ToHostPath(to);
        if (!host || !oldHost) return host ? oldHost.Error : host.Error;
        const Descriptor descriptor = OpenDescriptor(*host, OpenFlags({}) | O_NOFOLLOW);
        if (!descriptor.IsOpen()) return LastNameError();
        const Descriptor old = OpenDescriptor(*oldHost, OpenFlags({}));
        if (!old.IsOpen()) return LastNameError();
        if (!IsRegular(descriptor) || !IsRegular(old)) return FileError::NotAFile;

        const DenyGuard guard(descriptor.Number());
        const DenyGuard oldGuard(old.Number());
        if (IsHeldElsewhere(descriptor.Number()) || IsWrittenElsewhere(old.Number())) return FileError::AccessDenied;
        if (IsDeleted(old))
            return FileError::AccessDenied; // by another replacement: the name means another file by now
        if (!TakeRights(descriptor.Number(), old.Number())) return FileError::RightsNotKept;
        return RenameOver(*host, EndOfLinks(*oldHost));
    }

    std::optional<FileInfo> Find(const std::string& path) override {
        const HostPath host = ToHostPath(path);
        struct stat status {};
        if (!host || stat(host->c_str(), &status) != 0) return std::nullopt;
        return FileInfo{S_ISDIR(status.st_mode), static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec,
                        IsLink(*host)};
    }

    bool IsWritable(const std::string& path) override {
        const HostPath host = ToHostPath(path);
        return !host || access(host->c_str(), W_OK) == 0 || (errno != EACCES && errno != EROFS && errno != EPERM);
    }

    FileError ReadDirectory(const std::string& directory, std::string_view pattern,
                            std::vector<std::string>& names) override {
        const HostPath host = ToHostPath(directory);
        if (!host) return host.Error;
        const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(host->c_str()), closedir);
        if (!listing) return LastError();
        std::vector<std::string> found;
        errno = 0; // the end of a listing and a fault look alike otherwise
        while (const dirent* entry = readdir(listing.get())) {
            if (MatchesWildcard(pattern, entry->d_name) && IsRegularFile(*host, *entry))
                found.emplace_back(entry->d_name);
            errno = 0;
        }
        if (errno != 0) return LastError();
        std::ranges::sort(found, ComesBefore);
        names.insert(names.end(), found.begin(), found.end());
        return FileError::None;
    }

    FileError MakeDirectory(const std::string& path) override {
        const HostPath host = ToHostPath(path);
        if (!host) return host.Error;
        return mkdir(host->c_str(), 0777) == 0 ? FileError::None : LastError();
    }

    FileError RemoveEmptyDirectory(const std::string& path) override {
        const HostPath host = ToHostPath(path);
        if (!host) return host.Error;
        if (rmdir(host->c_str()) == 0) return FileError::None;
        if (errno != ENOTDIR || !IsDirectoryLink(*host)) return LastError();
        return unlink(host->c_str()) == 0 ? FileError::None : LastError();
    }
};

} // namespace

template <>
FileSystem& Service<FileSystem>::System() {
    static PosixFileSystem files;
    return files;
}

} // namespace bv::platform
