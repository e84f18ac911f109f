#include "platform/posix/deny_locks.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

namespace bv::platform {

namespace {

constexpr off_t kReading = 0x7fff'ffff'0000'0000;
constexpr off_t kWriting = kReading + 1;
constexpr off_t kDenyReading = kReading + 2;
constexpr off_t kDenyWriting = kReading + 3;

struct flock ByteRange(short type, off_t first, off_t count) {
    struct flock range {};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = first;
    range.l_len = count;
    return range;
}

// 0, EAGAIN when another opening stands against it, or the reason why there are no such locks here.
int SetLock(int descriptor, short type, off_t first, off_t count) {
    struct flock range = ByteRange(type, first, count);
    while (fcntl(descriptor, F_OFD_SETLK, &range) != 0) {
        if (errno == EACCES) return EAGAIN;
        if (errno != EINTR) return errno;
    }
    return 0;
}

bool HoldsAnyOf(int descriptor, off_t first, off_t count) {
    struct flock range = ByteRange(F_WRLCK, first, count); // would collide with a lock of either kind
    return fcntl(descriptor, F_OFD_GETLK, &range) == 0 && range.l_type != F_UNLCK;
}

bool IsHeldByOthers(int descriptor, off_t byte) { return HoldsAnyOf(descriptor, byte, 1); }

} // namespace

bool HoldDenials(int descriptor, const OpenRequest& request) {
    const bool writes = MayWrite(request);
    const bool deniesReading = request.Denied == Deny::ReadingAndWriting;
    const bool deniesWriting = request.Denied != Deny::Nothing;

    // First taken, then compared: whatever the order in which two openings meet, at least one sees the other.
    int error = SetLock(descriptor, F_RDLCK, kReading, 1);
    if (error == 0 && writes) error = SetLock(descriptor, F_RDLCK, kWriting, 1);
    if (error == 0 && deniesReading) error = SetLock(descriptor, F_RDLCK, kDenyReading, 1);
    if (error == 0 && deniesWriting) error = SetLock(descriptor, F_RDLCK, kDenyWriting, 1);
    if (error != 0 && error != EAGAIN) return true; // there are no such locks here

    const bool refused = error == EAGAIN || IsHeldByOthers(descriptor, kDenyReading) ||
                         (writes && IsHeldByOthers(descriptor, kDenyWriting)) ||
                         (deniesReading && IsHeldByOthers(descriptor, kReading)) ||
                         (deniesWriting && IsHeldByOthers(descriptor, kWriting));
    if (refused) SetLock(descriptor, F_UNLCK, kReading, 4);
    return !refused;
}

bool IsHeldElsewhere(int descriptor) { return HoldsAnyOf(descriptor, kReading, 4); }

bool IsWrittenElsewhere(int descriptor) { return HoldsAnyOf(descriptor, kWriting, 3); }

DenyGuard::DenyGuard(int descriptor) : descriptor_(descriptor) {
    constexpr int kTries = 50;
    for (int i = 0; i < kTries && !locked_; ++i) {
        locked_ = flock(descriptor_, LOCK_EX | LOCK_NB) == 0;
        if (!locked_ && errno != EWOULDBLOCK && errno != EINTR) return;
        if (!locked_) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

DenyGuard::~DenyGuard() {
    if (locked_) flock(descriptor_, LOCK_UN);
}

} // namespace bv::platform
