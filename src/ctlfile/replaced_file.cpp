#include "ctlfile/replaced_file.h"

#include "ctlfile/control_stream.h"
#include "ctlfile/file_gate.h"
#include "ctlfile/lines.h"
#include "ctlfile/paths.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/whole_file.h"
#include "platform/ascii.h"
#include "platform/files.h"

namespace bv {

namespace {

// Whether the new text waits there already. Writing it anew would lay it open to a crash for nothing.
bool IsPending(const ReplacedFile& file, std::string_view text) {
    if (!file.MayBePending) return false;
    ControlStream stream = OpenShared(file.NewPath, "rb");
    return stream && stream.Rest() == text && !stream.Failed();
}

} // namespace

TextStamp StampOf(const TextOfFile& file) {
    constexpr std::uint64_t kOffset = 0xcbf2'9ce4'8422'2325;
    constexpr std::uint64_t kPrime = 0x0000'0100'0000'01b3;
    if (!file.IsThere) return {};
    TextStamp stamp{true, file.Text.size(), kOffset};
    for (const char c : file.Text) stamp.Hash = (stamp.Hash ^ static_cast<unsigned char>(c)) * kPrime;
    return stamp;
}

std::optional<TextOfFile> ReadText(const std::string& path, const MessageWith<1>& notOpened) {
    ControlStream stream = OpenToRead(path);
    if (!stream && IsMissing(path)) return TextOfFile{};
    if (!stream) {
        ShowError(notOpened, path);
        return {};
    }
    TextOfFile file{true, std::string(stream.Rest())};
    if (!WasRead(stream)) return {};
    return file;
}

std::string PathToRead(const ReplacedFile& file) {
    if (!IsCutOff(file)) return file.Path;
    ShowWarning(kUsingNewText, file.Path, file.NewPath);
    return file.NewPath;
}

std::optional<TextOfFile> ReadReplacedFile(const ReplacedFile& file) {
    std::optional<TextOfFile> live = ReadText(file.Path, file.NotOpened);
    return live && !live->IsThere ? ReadText(PathToRead(file), file.NotOpened) : live;
}

bool IsWholeText(std::string_view text, std::string_view type) {
    if (!text.ends_with('\n')) return false;
    std::string header;
    while (!text.empty() && !IsSignificantLine(header)) header = CleanLine(TakeLine(text));
    if (type.empty()) return IsParagraphLine(header);
    if (!BeginsWith(header, "[BRIVANE]")) return false;
    while (!text.empty()) {
        const std::string line = CleanLine(TakeLine(text));
        if (IsParagraphLine(line)) return false;
        if (BeginsWith(line, "Type:")) return EqualFolded(KeyValue(line).value_or(""), type);
    }
    return false;
}

bool IsCutOff(const ReplacedFile& file) {
    if (!IsMissing(file.Path)) return false;
    ControlStream stream = OpenShared(file.NewPath, "rb");
    return IsWholeText(stream.Rest(), file.Type) && !stream.Failed();
}

bool KeepAsOld(const std::string& path) {
    const std::string oldPath = WithExtension(path, "old");
    const std::optional<TextOfFile> file = ReadText(path, kUnableToOpenFile);
    if (!file) return false;
    if (!file->IsThere || WriteWholeFile(oldPath, file->Text, path)) return true;
    ShowError(kUnableToCreateFile, oldPath);
    return false;
}

bool RecoverReplacedFile(const ReplacedFile& file) {
    const FileGate gate(file.Path);
    if (!gate) ShowError(file.NotOpened, file.Path);
    return gate && IsCutOff(file) && PutNewTextInPlace(file);
}

bool OfferRecovery(const ReplacedFile& file) {
    if (!IsCutOff(file)) return true;
    return AskForItself(kPutNewTextInPlace, file.Path, file.NewPath) && RecoverReplacedFile(file);
}

bool WriteNewText(const ReplacedFile& file, std::string_view text) {
    if (IsPending(file, text)) return true;
    switch (TryWriteWholeFile(file.NewPath, text, file.Path)) {
    case WriteFault::None: return true;
    case WriteFault::NotOpened: ShowError(file.NotOpened, file.NewPath); break;
    case WriteFault::NotWritten: ShowError(file.NotWritten, file.NewPath); break;
    }
    return false;
}

bool PutNewTextInPlace(const ReplacedFile& file) {
    if (PutInPlace(file.NewPath, file.Path)) return true;
    ShowError(file.NotReplaced, file.Path);
    return false;
}

bool ChangeReplacedFile(const ReplacedFile& file, const TextChange& change, const std::optional<TextStamp>& expected) {
    if (!file.MayBePending && !OfferRecovery(file)) return false;
    const FileGate gate(file.Path);
    if (!gate) {
        ShowError(file.NotOpened, file.Path);
        return false;
    }
    const std::optional<TextOfFile> live = ReadText(file.Path, file.NotOpened);
    if (!live) return false;
    if (expected && *expected != StampOf(*live)) {
        ShowError(kChangedMeanwhile, file.Path);
        return false;
    }
    const std::optional<std::string> text = change(*live);
    if (!text) return false;
    if (live->IsThere && *text == live->Text) return true;
    if (!WriteNewText(file, *text)) return false;
    if (PutNewTextInPlace(file)) return true;
    const bool isLiveThere = static_cast<bool>(OpenShared(file.Path, "rb")); // one about to be deleted cannot be opened
    if (isLiveThere) platform::Files().Delete(file.NewPath);
    return false;
}

} // namespace bv
