#include "ctlfile/file_stamp.h"

#include "platform/clock.h"
#include "platform/files.h"

namespace bv {

FileStamp StampOf(const std::string& path) {
    constexpr std::int64_t kMoments = 3; // seconds: file servers keep times by two of them, and clocks differ
    const auto info = platform::Files().Find(path);
    if (!info) return {};
    const std::int64_t age = platform::TheClock().Now() / 1000 - info->WriteTime;
    return {info->Length, info->WriteTime, age > kMoments};
}

bool IsUnchanged(const std::string& path, const FileStamp& since) {
    const FileStamp now = StampOf(path);
    return since.IsCertain && now.Length == since.Length && now.WriteTime == since.WriteTime;
}

} // namespace bv
