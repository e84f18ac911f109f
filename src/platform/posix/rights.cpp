#include "platform/posix/rights.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace bv::platform {
namespace {

constexpr uid_t kSameOwner = static_cast<uid_t>(-1);
constexpr gid_t kSameGroup = static_cast<gid_t>(-1);

// True also where the file system has no such lists.
bool CopyAccessList(int from, int to) {
    constexpr const char* kName = "system.posix_acl_access";
    const ssize_t size = fgetxattr(from, kName, nullptr, 0);
    if (size < 0 && errno != ENODATA) return true;
    if (size <= 0) return fremovexattr(to, kName) == 0 || errno == ENODATA || errno == ENOTSUP;
    std::vector<char> list(static_cast<std::size_t>(size));
    const ssize_t count = fgetxattr(from, kName, list.data(), list.size());
    return count > 0 && fsetxattr(to, kName, list.data(), static_cast<std::size_t>(count), 0) == 0;
}

} // namespace

bool TakeRights(int descriptor, int other) {
    constexpr mode_t kRights = S_IRWXU | S_IRWXG | S_IRWXO;
    struct stat wanted {};
    struct stat own {};
    if (fstat(other, &wanted) != 0 || fstat(descriptor, &own) != 0) return false;
    const bool hasOwner = own.st_uid == wanted.st_uid || fchown(descriptor, wanted.st_uid, kSameGroup) == 0;
    const bool hasGroup = own.st_gid == wanted.st_gid || fchown(descriptor, kSameOwner, wanted.st_gid) == 0;
    mode_t mode = wanted.st_mode & kRights;
    if (!hasGroup) mode &= ~static_cast<mode_t>(S_IRWXG);
    const bool hasList = !hasGroup || CopyAccessList(other, descriptor);
    const bool hasMode = (own.st_mode & kRights) == mode || fchmod(descriptor, mode) == 0;
    return hasOwner && hasGroup && hasList && hasMode;
}

void TakeUsualMode(int descriptor) {
    const mode_t mask = umask(0);
    umask(mask);
    static_cast<void>(fchmod(descriptor, 0666 & ~mask));
}

} // namespace bv::platform
