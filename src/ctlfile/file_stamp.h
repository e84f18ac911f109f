// Whether a file is as it was when it was read: by its length and its time of writing.
#pragma once

#include <cstdint>
#include <string>

namespace bv {

struct FileStamp {
    std::uint64_t Length = 0;
    std::int64_t WriteTime = -1; // seconds since 1970; -1: there was no file
    bool IsCertain = false;      // the file was not written in the moments before, in which a time says nothing
};

// Of the file as it is now; to be taken before it is read.
FileStamp StampOf(const std::string& path);

// False when the file has changed since the stamp was taken, or may have.
bool IsUnchanged(const std::string& path, const FileStamp& since);

} // namespace bv
