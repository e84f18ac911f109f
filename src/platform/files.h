// Files and directories, by Windows paths on every system: `C:\X\Y`, `\\server\share\X`, names in any case.
// On systems without drives, drives.h says where a drive or a share lies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/service.h"

namespace bv::platform {

enum class FileError {
    None,
    NotFound,     // no such file, directory, drive or share
    AccessDenied, // sharing refused by another opening, read-only, or no right to it
    Exists,       // CreateNew found a file
    NotAFile,     // a directory, a device or a pipe stands where a file is expected
    DiskFull,
    RightsNotKept, // of Replace
    Failed,        // any other fault
};

// The error as the end of a sentence.
constexpr std::string_view ErrorWords(FileError error) {
    switch (error) {
    case FileError::None: return "no error";
    case FileError::NotFound: return "there is no such file or directory";
    case FileError::AccessDenied: return "access is denied";
    case FileError::Exists: return "it is there already";
    case FileError::NotAFile: return "something that is not a file stands there";
    case FileError::DiskFull: return "the disk is full";
    case FileError::RightsNotKept: return "its rights cannot be given to another file";
    case FileError::Failed: break;
    }
    return "the system reports a fault";
}

enum class Access { Read, ReadWrite };

// What an opening refuses to others, in this and every other process, until it is closed. An opening that
// asks for what another one denies, or denies what another one has, fails with AccessDenied.
enum class Deny { Nothing, Writing, ReadingAndWriting };

enum class Creation {
    OpenExisting,
    OpenOrCreate,
    CreateOrTruncate, // asks for ReadWrite, too; a refused opening leaves the old contents
    CreateNew,        // fails with Exists
};

struct OpenRequest {
    Access Wanted = Access::Read;
    Deny Denied = Deny::Nothing;
    Creation How = Creation::OpenExisting;

    // The path of the file whose new text is to be written. The opened file then gets its owner, its mode and its
    // access list, as far as the system lets it, and is never more readable; a link that stands in its place gives way
    // to it.
    std::string_view StandsFor = {};

    // A file that is made may be opened by everybody, whatever the process's other files are given.
    bool ForEverybody = false;
};

constexpr bool MayWrite(const OpenRequest& request) {
    return request.Wanted == Access::ReadWrite || request.How == Creation::CreateOrTruncate;
}

// How many bytes were transferred before the end of the file or the error.
struct Transfer {
    std::size_t Count = 0;
    FileError Error = FileError::None;
};

// An open file. It holds its denials while it lives; destroying it closes it.
class File {
  public:
    virtual ~File() = default;

    // Reads up to `size` bytes at `offset`; fewer only at the end of the file or with an error.
    virtual Transfer Read(std::uint64_t offset, char* bytes, std::size_t size) = 0;

    // Writes at `offset`, past the end if need be; with an error, Count bytes were written.
    virtual Transfer Write(std::uint64_t offset, std::string_view bytes) = 0;

    virtual std::optional<std::uint64_t> Length() = 0;
    virtual FileError SetLength(std::uint64_t length) = 0;

    // Time of the last write, in seconds since 1970 in universal time.
    virtual std::optional<std::int64_t> WriteTime() = 0;
    virtual FileError SetWriteTime(std::int64_t seconds) = 0;

    // Closes early, to learn whether what was written has arrived. Nothing else may be called afterwards.
    virtual FileError Close() = 0;
};

struct OpenResult {
    std::unique_ptr<File> Opened; // none with an error
    FileError Error = FileError::None;
};

struct FileInfo {
    bool IsDirectory = false;
    std::uint64_t Length = 0;   // bytes
    std::int64_t WriteTime = 0; // seconds since 1970 in universal time
    bool IsLink = false;        // the rest is about what a link at the path leads to
};

class FileSystem {
  public:
    virtual ~FileSystem() = default;

    virtual OpenResult Open(const std::string& path, const OpenRequest& request) = 0;
    virtual FileError Delete(const std::string& path) = 0;

    // Gives a file another name, as written, in the same directory. Exists: something stands there already.
    virtual FileError Rename(const std::string& from, const std::string& to) = 0;

    // Gives a file the name of another one in the same directory, which it replaces: in one step wherever the system
    // has one, so that there is always a file of that name, else by deleting and renaming. It gets the owner, the mode
    // and the access list of the one that it replaces; RightsNotKept, with nothing done, when it cannot. AccessDenied:
    // one of them is held by others, the old one for more than reading. NotFound: one of them is missing.
    virtual FileError Replace(const std::string& from, const std::string& to) = 0;

    // What stands at the path. None also when that cannot be told: whether there is certainly no file, an opening says.
    virtual std::optional<FileInfo> Find(const std::string& path) = 0;

    // False for a file that is read-only or that the person has no right to write; that others hold it is no reason.
    virtual bool IsWritable(const std::string& /*path*/) { return true; }

    // Adds the names of the files (no directories) that match a pattern of "*" and "?" without regard to case, in
    // alphabetical order. NotFound: there is no such directory. With any error no name is added.
    virtual FileError ReadDirectory(const std::string& directory, std::string_view pattern,
                                    std::vector<std::string>& names) = 0;

    // The same for who has no use for the error.
    std::vector<std::string> List(const std::string& directory, std::string_view pattern) {
        std::vector<std::string> names;
        ReadDirectory(directory, pattern, names);
        return names;
    }

    // Makes a directory in one that is there. Exists: something stands at the path already.
    virtual FileError MakeDirectory(const std::string& path) = 0;

    // A link to a directory is itself removed, whatever that holds. Failed: the directory holds something. NotFound:
    // there is none, or no directory.
    virtual FileError RemoveEmptyDirectory(const std::string& path) = 0;
};

template <>
FileSystem& Service<FileSystem>::System();

inline FileSystem& Files() { return Service<FileSystem>::InUse(); }

} // namespace bv::platform
