// Opening and deleting a file that another process may hold.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"

namespace bv {

// The wait for one file that another program holds, as the person sees it: whoever tries again pauses by it in between.
class FileWait {
  public:
    explicit FileWait(const std::string& path) : path_(path) {}
    ~FileWait();
    FileWait(const FileWait&) = delete;
    FileWait& operator=(const FileWait&) = delete;

    // Yields to the system and sleeps. The first pause shows the wait cursor; after half a second of them 9204 names
    // the file.
    void Pause(std::int64_t milliseconds);

  private:
    const std::string& path_;
    std::optional<std::int64_t> begin_; // by the clock's ticks
    std::string said_;
};

// Opens the file; while that is refused as access-denied, yields to the system and tries again until so many
// seconds have passed since the first try. Any other outcome returns at once.
platform::OpenResult OpenRetrying(const std::string& path, const platform::OpenRequest& request, int seconds);

// Deletes the file, likewise: Windows refuses that while somebody reads it.
platform::FileError DeleteRetrying(const std::string& path, int seconds);

// While one lives, no opening waits longer than so many seconds, and a path whose opening has timed out is not waited
// for again: the steps of one command, which open the same file one after the other, share their patience. One that is
// made while another lives changes nothing.
class SharedPatience {
  public:
    explicit SharedPatience(int seconds);
    ~SharedPatience();
    SharedPatience(const SharedPatience&) = delete;
    SharedPatience& operator=(const SharedPatience&) = delete;

    // How long an opening of the path still waits that would wait so many seconds.
    [[nodiscard]] int Left(const std::string& path, int seconds) const;
    void WearOut(const std::string& path) { worn_.push_back(path); }

  private:
    bool isOutermost_;
    int seconds_;
    std::vector<std::string> worn_; // paths
};

} // namespace bv
