// A file system that fails on purpose.
//
// Run the code under test with AtCall 1, 2, 3, ... until a run goes by without Fired(): then every call has failed
// once. Look at what is left through the wrapped file system.
#pragma once

#include <cstddef>
#include <memory>

#include "platform/files.h"

namespace bv::test {

enum class CallKind {
    Changes, // an opening that creates or truncates, Write, SetLength, SetWriteTime, Delete, Rename, Replace,
             // Close after writing, MakeDirectory, RemoveEmptyDirectory
    Looks,   // any other opening, Read, Length, WriteTime, Find, ReadDirectory
};

enum class FaultKind {
    FailOnce,
    FailFromThenOn,  // all calls of the counted kind
    ShortWrite,      // a Write writes half of its bytes and finds the disk full; any other call fails
    Kill,            // nothing reaches the wrapped files any more; their openings end, as a dead process's do
    KillHalfWritten, // the same, behind half of the bytes of a Write
};

struct FaultPlan {
    FaultKind Kind = FaultKind::FailOnce;
    int AtCall = 0; // counted from 1; 0 never fails
    CallKind Counted = CallKind::Changes;
    platform::FileError Error = platform::FileError::Failed; // what a failing call reports; DiskFull for ShortWrite
};

struct FaultState;

class FaultyFiles final : public platform::FileSystem {
  public:
    FaultyFiles(platform::FileSystem& wrapped, const FaultPlan& plan);

    platform::OpenResult Open(const std::string& path, const platform::OpenRequest& request) override;
    platform::FileError Delete(const std::string& path) override;
    platform::FileError Rename(const std::string& from, const std::string& to) override;
    platform::FileError Replace(const std::string& from, const std::string& to) override;
    std::optional<platform::FileInfo> Find(const std::string& path) override;
    bool IsWritable(const std::string& path) override { return wrapped_.IsWritable(path); }
    platform::FileError ReadDirectory(const std::string& directory, std::string_view pattern,
                                      std::vector<std::string>& names) override;
    platform::FileError MakeDirectory(const std::string& path) override;
    platform::FileError RemoveEmptyDirectory(const std::string& path) override;

    // Whether the call of the plan has come.
    [[nodiscard]] bool Fired() const;

    // How many calls of a kind have been made.
    [[nodiscard]] int Calls(CallKind kind) const;

  private:
    platform::FileSystem& wrapped_;
    std::shared_ptr<FaultState> state_;
};

} // namespace bv::test
