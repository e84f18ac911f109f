// Sharing modes between the processes that use this module, and between the openings of one process.
//
// Each opening holds read locks on up to four bytes far behind any file's end: one says that it reads, one that it
// writes, one that it denies reading and one that it denies writing. An opening is refused when another one holds
// a byte that speaks against it. The locks belong to the open file description, so they end with the last
// descriptor: when the file is closed or its process killed. Programs that do not know them are not kept out, and
// those bytes never exist, so no reading or writing is ever held up.
#pragma once

#include "platform/files.h"

namespace bv::platform {

// Takes the locks of an opening, whose descriptor must be open for reading at least. False when another opening
// stands against it; none of the locks is held then. On a file system without such locks nothing is held and nothing
// refused.
bool HoldDenials(int descriptor, const OpenRequest& request);

// Whether any other opening of the file is held, here or in another process.
bool IsHeldElsewhere(int descriptor);

// Whether any other opening of the file writes it or denies something.
bool IsWrittenElsewhere(int descriptor);

// While it lives, no other opening takes its locks: two that meet would otherwise refuse each other. It is given up
// after some milliseconds, since other programs and network file systems may hold the same lock for reasons of their
// own, and the locks above are safe without it.
class DenyGuard {
  public:
    explicit DenyGuard(int descriptor);
    ~DenyGuard();
    DenyGuard(const DenyGuard&) = delete;
    DenyGuard& operator=(const DenyGuard&) = delete;

  private:
    int descriptor_;
    bool locked_ = false;
};

} // namespace bv::platform
