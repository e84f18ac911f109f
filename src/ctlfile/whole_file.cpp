#include "ctlfile/whole_file.h"

#include "ctlfile/control_stream.h"
#include "platform/files.h"
#include "shell/messages.h"

namespace bv {

using platform::FileError;
using platform::Files;

WriteFault TryWriteWholeFile(const std::string& path, std::string_view text) {
    ControlStream file = OpenShared(path, "wb");
    if (!file) return WriteFault::NotOpened;
    file.Write(text);
    if (file.Close()) return WriteFault::None;
    Files().Delete(path);
    return WriteFault::NotWritten;
}

bool WriteWholeFile(const std::string& path, std::string_view text) {
    return TryWriteWholeFile(path, text) == WriteFault::None;
}

bool PutInPlace(const std::string& newPath, const std::string& livePath) {
    if (!Files().Find(newPath)) return false;
    const FileError deleted = Files().Delete(livePath);
    if (deleted != FileError::None && deleted != FileError::NotFound) return false;
    return Files().Rename(newPath, livePath) == FileError::None;
}

bool IsMissing(const std::string& path) { return Files().Open(path, {}).Error == FileError::NotFound; }

bool IsCutOff(const std::string& newPath, const std::string& livePath) {
    return IsMissing(livePath) && Files().Find(newPath);
}

std::string PathToRead(const std::string& livePath, const std::string& newPath) {
    if (!IsCutOff(newPath, livePath)) return livePath;
    ShowWarning(9012, livePath, newPath);
    return newPath;
}

} // namespace bv
