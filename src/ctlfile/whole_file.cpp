#include "ctlfile/whole_file.h"

#include <cstdint>

#include "ctlfile/control_stream.h"
#include "ctlfile/copy_back.h"
#include "ctlfile/file_gate.h"
#include "ctlfile/open_retry.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "voice/messages.h"

namespace bv {
namespace {

using platform::FileError;
using platform::Files;

constexpr std::int64_t kPatience = 10'000; // milliseconds
constexpr std::int64_t kPause = 10;

bool CopyOver(const std::string& newPath, const std::string& livePath) {
    ControlStream live = OpenShared(livePath, "r+b");
    ControlStream fresh = OpenShared(newPath, "r+b");
    if (!live || !fresh || CopyFileBack(fresh, live) != kDone || !live.Close()) return false;
    fresh.Close();
    Files().Delete(newPath); // one that stays does no harm: the next writer writes over it
    return true;
}

FileError TryToPutInPlace(const std::string& newPath, const std::string& livePath) {
    const FileError error = Files().Replace(newPath, livePath);
    return error == FileError::NotFound && IsMissing(livePath) ? Files().Rename(newPath, livePath) : error;
}

} // namespace

WriteFault TryWriteWholeFile(const std::string& path, std::string_view text, std::string_view standsFor) {
    ControlStream file = OpenShared(path, "wb", kDefaultTimeout, standsFor);
    if (!file) return WriteFault::NotOpened;
    file.Write(text);
    if (file.Close()) return WriteFault::None;
    Files().Delete(path);
    return WriteFault::NotWritten;
}

bool WriteWholeFile(const std::string& path, std::string_view text, std::string_view standsFor) {
    return TryWriteWholeFile(path, text, standsFor) == WriteFault::None;
}

bool PutInPlace(const std::string& newPath, const std::string& livePath) {
    const std::int64_t end = platform::TheClock().Ticks() + kPatience;
    FileWait wait(livePath);
    for (;;) {
        const FileError error = TryToPutInPlace(newPath, livePath);
        if (error == FileError::RightsNotKept) return CopyOver(newPath, livePath);
        const bool mayComeOff = error == FileError::AccessDenied || error == FileError::Exists ||
                                (error == FileError::NotFound && !IsMissing(newPath)); // the old one comes or goes
        if (!mayComeOff || platform::TheClock().Ticks() >= end) return error == FileError::None;
        wait.Pause(kPause);
    }
}

bool IsMissing(const std::string& path) {
    const auto isNotFound = [&] { return Files().Open(path, {}).Error == FileError::NotFound; };
    return isNotFound() && !GateIsHeldElsewhere(path) && isNotFound(); // it may have come back before the gate was free
}

} // namespace bv
