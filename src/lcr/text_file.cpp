#include "lcr/text_file.h"

#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr MessageWith<1> kOpenFault = "File error: couldn't open %s";

} // namespace

void ShowOpenFault(std::string_view path) { ShowError(kOpenFault, path); }

ReplacedFile LcrFile(ReplacedFile file) {
    file.NotOpened = kOpenFault;
    file.NotWritten = kErrorUpdatingFile;
    file.NotReplaced = kUnableToUpdateFile;
    return file;
}

ReplacedFile LcrFile(ServerFile file) { return LcrFile(ReplacedFileOf(file)); }

std::optional<TextOfFile> ReadTextFile(const std::string& path) { return ReadText(path, kOpenFault); }

bool ChangeLcrFile(const ReplacedFile& file, const TextChange& change, const std::optional<TextStamp>& expected) {
    bool isChanged = false;
    const auto noting = [&](const TextOfFile& live) {
        std::optional<std::string> text = change(live);
        isChanged = text && *text != live.Text;
        return text;
    };
    if (!ChangeReplacedFile(file, noting, expected)) return false;
    if (isChanged) Startup().SettingsChanged = true;
    return true;
}

} // namespace bv
