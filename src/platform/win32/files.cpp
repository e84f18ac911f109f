#include "platform/files.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "platform/file_names.h"
#include "platform/win32/errors.h"

namespace bv::platform {

namespace {

FileError LastError() { return ErrorOf(GetLastError()); }

// Windows counts in units of 100 ns since 1601.
constexpr std::int64_t kUnitsPerSecond = 10'000'000;
constexpr std::int64_t kSecondsTo1970 = 11'644'473'600;

std::int64_t ToSeconds(const FILETIME& time) {
    const auto units = static_cast<std::int64_t>((std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime);
    return units / kUnitsPerSecond - kSecondsTo1970;
}

FILETIME ToFileTime(std::int64_t seconds) {
    const auto units = static_cast<std::uint64_t>((seconds + kSecondsTo1970) * kUnitsPerSecond);
    return {static_cast<DWORD>(units & 0xffff'ffff), static_cast<DWORD>(units >> 32)};
}

bool IsAbsent(const std::string& path) { return path.empty() || path.find('\0') != std::string::npos; }

bool IsDirectory(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// Windows says "access denied" for a directory, too.
FileError ErrorAt(const std::string& path) {
    const FileError error = LastError();
    return error == FileError::AccessDenied && IsDirectory(path) ? FileError::NotAFile : error;
}

class Handle {
  public:
    explicit Handle(HANDLE handle) : handle_(handle) {}
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
    ~Handle() { Close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle& operator=(Handle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }

    [[nodiscard]] HANDLE Get() const { return handle_; }
    [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }

    FileError Close() {
        if (!IsOpen() || CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE)) != 0) return FileError::None;
        return LastError();
    }

  private:
    HANDLE handle_;
};

// One call to the system transfers at most this many bytes.
DWORD PieceOf(std::size_t size) { return static_cast<DWORD>(std::min(size, std::size_t{1} << 26)); }

OVERLAPPED AtOffset(std::uint64_t offset) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset & 0xffff'ffff);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

class WindowsFile final : public File {
  public:
    void Hold(Handle handle) { handle_ = std::move(handle); }

    Transfer Read(std::uint64_t offset, char* bytes, std::size_t size) override {
        Transfer done;
        while (done.Count < size) {
            OVERLAPPED place = AtOffset(offset + done.Count);
            DWORD count = 0;
            if (ReadFile(handle_.Get(), bytes + done.Count, PieceOf(size - done.Count), &count, &place) == 0) {
                const bool atEnd = GetLastError() == ERROR_HANDLE_EOF;
                return {done.Count, atEnd ? FileError::None : LastError()};
            }
            if (count == 0) break;
            done.Count += count;
        }
        return done;
    }

    // A disk that fills up is not always reported: the write then succeeds with fewer bytes, or fails without a
    // reason.
    Transfer Write(std::uint64_t offset, std::string_view bytes) override {
        Transfer done;
        while (done.Count < bytes.size()) {
            OVERLAPPED place = AtOffset(offset + done.Count);
            const DWORD piece = PieceOf(bytes.size() - done.Count);
            DWORD count = 0;
            SetLastError(ERROR_SUCCESS);
            const bool written = WriteFile(handle_.Get(), bytes.data() + done.Count, piece, &count, &place) != 0;
            const FileError error = written ? FileError::None : LastError();
            done.Count += count;
            if (error != FileError::None) return {done.Count, error};
            if (!written || count < piece) return {done.Count, FileError::DiskFull};
        }
        return done;
    }

    std::optional<std::uint64_t> Length() override {
        LARGE_INTEGER length{};
        if (GetFileSizeEx(handle_.Get(), &length) == 0) return std::nullopt;
        return static_cast<std::uint64_t>(length.QuadPart);
    }

    FileError SetLength(std::uint64_t length) override {
        LARGE_INTEGER end{};
        end.QuadPart = static_cast<LONGLONG>(length);
        const bool set = SetFilePointerEx(handle_.Get(), end, nullptr, FILE_BEGIN) != 0 && SetEndOfFile(handle_.Get());
        return set ? FileError::None : LastError();
    }

    std::optional<std::int64_t> WriteTime() override {
        FILETIME time{};
        if (GetFileTime(handle_.Get(), nullptr, nullptr, &time) == 0) return std::nullopt;
        return ToSeconds(time);
    }

    FileError SetWriteTime(std::int64_t seconds) override {
        const FILETIME time = ToFileTime(seconds);
        return SetFileTime(handle_.Get(), nullptr, nullptr, &time) != 0 ? FileError::None : LastError();
    }

    FileError Close() override { return handle_.Close(); }

  private:
    Handle handle_{INVALID_HANDLE_VALUE};
};

DWORD AccessOf(const OpenRequest& request) { return MayWrite(request) ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ; }

DWORD ShareOf(Deny denied) {
    switch (denied) {
    case Deny::Nothing: return FILE_SHARE_READ | FILE_SHARE_WRITE;
    case Deny::Writing: return FILE_SHARE_READ;
    case Deny::ReadingAndWriting: break;
    }
    return 0;
}

DWORD DispositionOf(Creation how) {
    switch (how) {
    case Creation::OpenExisting: break;
    case Creation::OpenOrCreate: return OPEN_ALWAYS;
    case Creation::CreateOrTruncate: return CREATE_ALWAYS;
    case Creation::CreateNew: return CREATE_NEW;
    }
    return OPEN_EXISTING;
}

// The access list of the file that a path names, to make another one with.
class AccessList {
  public:
    explicit AccessList(const std::string& path) {
        DWORD size = 0;
        GetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
        bytes_.resize(size);
        if (GetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, bytes_.data(), size, &size) == 0) bytes_.clear();
        attributes_.lpSecurityDescriptor = bytes_.data();
    }

    // None when the list cannot be had.
    SECURITY_ATTRIBUTES* Get() { return bytes_.empty() ? nullptr : &attributes_; }

  private:
    std::vector<std::byte> bytes_;
    SECURITY_ATTRIBUTES attributes_{sizeof attributes_, nullptr, FALSE};
};

// The files where one cannot take another's place in one step. What failed here is left with both, or with the new one.
FileError DeleteAndRename(const std::string& from, const std::string& to) {
    if (DeleteFileA(to.c_str()) == 0) return LastError();
    return MoveFileA(from.c_str(), to.c_str()) != 0 ? FileError::None : LastError();
}

// Whether a symbolic link or a mount point stands there; other reparse points are files and directories as any other.
bool IsLink(const std::string& path, DWORD attributes) {
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return false;
    WIN32_FIND_DATAA entry{};
    const HANDLE search = FindFirstFileA(path.c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return false;
    FindClose(search);
    return entry.dwReserved0 == IO_REPARSE_TAG_SYMLINK || entry.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT;
}

class WindowsFileSystem final : public FileSystem {
  public:
    OpenResult Open(const std::string& path, const OpenRequest& request) override {
        if (IsAbsent(path)) return {nullptr, FileError::NotFound};
        auto file = std::make_unique<WindowsFile>(); // without memory, no file is made
        AccessList list{std::string(request.StandsFor)};
        Handle handle(CreateFileA(path.c_str(), AccessOf(request), ShareOf(request.Denied), list.Get(),
                                  DispositionOf(request.How), FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!handle.IsOpen()) return {nullptr, ErrorAt(path)};
        if (GetFileType(handle.Get()) != FILE_TYPE_DISK) return {nullptr, FileError::NotAFile}; // CON, NUL, COM1
        file->Hold(std::move(handle));
        return {std::move(file), FileError::None};
    }

    FileError Delete(const std::string& path) override {
        if (IsAbsent(path)) return FileError::NotFound;
        return DeleteFileA(path.c_str()) != 0 ? FileError::None : ErrorAt(path);
    }

    FileError Rename(const std::string& from, const std::string& to) override {
        if (IsAbsent(from)) return FileError::NotFound;
        return MoveFileA(from.c_str(), to.c_str()) != 0 ? FileError::None : LastError();
    }

    FileError Replace(const std::string& from, const std::string& to) override {
        if (IsAbsent(from) || IsAbsent(to)) return FileError::NotFound;
        if (ReplaceFileA(to.c_str(), from.c_str(), nullptr, 0, nullptr, nullptr) != 0) return FileError::None;
        switch (GetLastError()) {
        case ERROR_UNABLE_TO_REMOVE_REPLACED: return FileError::AccessDenied;
        case ERROR_UNABLE_TO_MOVE_REPLACEMENT: // which then can be the only one
            if (GetFileAttributesA(to.c_str()) != INVALID_FILE_ATTRIBUTES) return FileError::AccessDenied;
            return MoveFileA(from.c_str(), to.c_str()) != 0 ? FileError::None : LastError();
        case ERROR_NOT_SUPPORTED:
        case ERROR_INVALID_FUNCTION:
        case ERROR_CALL_NOT_IMPLEMENTED: return DeleteAndRename(from, to);
        default: return LastError();
        }
    }

    std::optional<FileInfo> Find(const std::string& path) override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (IsAbsent(path) || GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data) == 0) {
            return std::nullopt;
        }
        return FileInfo{(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                        (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow, ToSeconds(data.ftLastWriteTime),
                        IsLink(path, data.dwFileAttributes)};
    }

    // The right to write attributes goes with that to write, and to ask for it keeps no other program out.
    bool IsWritable(const std::string& path) override {
        const DWORD attributes = GetFileAttributesA(path.c_str());
        if (IsAbsent(path) || attributes == INVALID_FILE_ATTRIBUTES) return true;
        if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) return false;
        const Handle handle(CreateFileA(path.c_str(), FILE_WRITE_ATTRIBUTES,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                        0, nullptr));
        return handle.IsOpen() || GetLastError() != ERROR_ACCESS_DENIED;
    }

    // The pattern is matched here: the system's own search also looks at short names, where "*.G3?" finds "*.G3XY".
    FileError ReadDirectory(const std::string& directory, std::string_view pattern,
                            std::vector<std::string>& names) override {
        if (IsAbsent(directory)) return FileError::NotFound;
        WIN32_FIND_DATAA entry{};
        const HANDLE search = FindFirstFileA((directory + "\\*").c_str(), &entry);
        if (search == INVALID_HANDLE_VALUE) return LastError();
        std::vector<std::string> found;
        do {
            const bool isDirectory = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            if (!isDirectory && MatchesWildcard(pattern, entry.cFileName)) found.emplace_back(entry.cFileName);
        } while (FindNextFileA(search, &entry) != 0);
        const FileError error = GetLastError() == ERROR_NO_MORE_FILES ? FileError::None : LastError();
        FindClose(search);
        if (error != FileError::None) return error;
        std::ranges::sort(found, ComesBefore);
        names.insert(names.end(), found.begin(), found.end());
        return FileError::None;
    }

    FileError MakeDirectory(const std::string& path) override {
        if (IsAbsent(path)) return FileError::NotFound;
        return CreateDirectoryA(path.c_str(), nullptr) != 0 ? FileError::None : LastError();
    }

    FileError RemoveEmptyDirectory(const std::string& path) override {
        if (IsAbsent(path)) return FileError::NotFound;
        return RemoveDirectoryA(path.c_str()) != 0 ? FileError::None : LastError();
    }
};

} // namespace

template <>
FileSystem& Service<FileSystem>::System() {
    static WindowsFileSystem files;
    return files;
}

} // namespace bv::platform
