#include "lcr/text_file.h"

#include "ctlfile/control_stream.h"
#include "ctlfile/reading.h"
#include "platform/files.h"
#include "shell/messages.h"

namespace bv {

void ShowOpenFault(std::string_view path) { ShowError("File error: couldn't open %s", path); }

bool IsMissing(const std::string& path) {
    return platform::Files().Open(path, {}).Error == platform::FileError::NotFound;
}

std::optional<TextOfFile> ReadTextFile(const std::string& path) {
    ControlStream stream = OpenShared(path, "rb");
    if (!stream && IsMissing(path)) return TextOfFile{};
    if (!stream) {
        ShowOpenFault(path);
        return {};
    }
    TextOfFile file{true, std::string(stream.Rest())};
    if (!WasRead(stream)) return {};
    return file;
}

std::optional<TextOfFile> ReadReplacedFile(const std::string& path, const std::string& newPath,
                                           bool (*isWhole)(std::string_view text)) {
    std::optional<TextOfFile> file = ReadTextFile(path);
    if (!file || file->IsThere) return file;
    std::optional<TextOfFile> left = ReadTextFile(newPath);
    if (!left) return {};
    if (!left->IsThere || !isWhole(left->Text)) return file;
    ShowWarning("File %s is missing: a save was cut off.  Its new text is taken from file %s", path, newPath);
    return left;
}

} // namespace bv
