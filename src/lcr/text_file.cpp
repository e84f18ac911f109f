#include "lcr/text_file.h"

#include "ctlfile/control_stream.h"
#include "ctlfile/reading.h"
#include "shell/messages.h"
#include "shell/startup.h"

namespace bv {

void ShowOpenFault(std::string_view path) { ShowError("File error: couldn't open %s", path); }

bool WriteTextFile(const std::string& path, std::string_view text) {
    switch (TryWriteWholeFile(path, text)) {
    case WriteFault::None: return true;
    case WriteFault::NotOpened: ShowOpenFault(path); break;
    case WriteFault::NotWritten: ShowError(5000, path); break;
    }
    return false;
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
                                           const std::function<bool(std::string_view text)>& isWhole) {
    std::optional<TextOfFile> file = ReadTextFile(path);
    if (!file || file->IsThere) return file;
    std::optional<TextOfFile> left = ReadTextFile(newPath);
    if (!left) return {};
    if (!left->IsThere || !isWhole(left->Text)) return file;
    ShowWarning(9012, path, newPath);
    return left;
}

bool PutTextInPlace(const std::string& newPath, const std::string& path) {
    if (!PutInPlace(newPath, path)) {
        ShowError(5004, path);
        return false;
    }
    Startup().SettingsChanged = true;
    return true;
}

} // namespace bv
