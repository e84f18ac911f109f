#include "ctlfile/whole_file.h"

#include "ctlfile/control_stream.h"
#include "platform/files.h"

namespace bv {

using platform::FileError;
using platform::Files;

bool WriteWholeFile(const std::string& path, std::string_view text) {
    ControlStream file = OpenShared(path, "wb");
    if (!file) return false;
    file.Write(text);
    if (file.Close()) return true;
    Files().Delete(path);
    return false;
}

bool PutInPlace(const std::string& newPath, const std::string& livePath) {
    if (!Files().Find(newPath)) return false;
    const FileError deleted = Files().Delete(livePath);
    if (deleted != FileError::None && deleted != FileError::NotFound) return false;
    return Files().Rename(newPath, livePath) == FileError::None;
}

} // namespace bv
