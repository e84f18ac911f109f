#include "ctlfile/recovery.h"

#include <algorithm>

#include "ctlfile/paths.h"
#include "ctlfile/replaced_file.h"
#include "ctlfile/saving.h"
#include "platform/files.h"
#include "voice/messages.h"

namespace bv {
namespace {

// False after a message; then nothing is left of the copy.
bool KeepText(const std::string& path, std::string_view text) {
    const std::optional<std::string> name = FreeNameBeside(path, "old");
    ControlStream copy = OpenShared(name.value_or(WithExtension(path, "old")), "c+b");
    if (!copy) {
        ShowError(kUnableToCreateFile, name.value_or(WithExtension(path, "old")));
        return false;
    }
    copy.Write(text);
    if (!copy.Close()) {
        ShowError(kErrorWritingFile, *name);
        platform::Files().Delete(*name);
        return false;
    }
    SetStatusLine(FillMessage(kOldTextKept, path, FilePart(*name)), 2);
    return true;
}

// What was put aside and now is the file's own text need not be kept any more; one that cannot be deleted does no harm.
void DropSaved(const std::vector<Leftover>& saved, std::string_view text) {
    for (const Leftover& one : saved)
        if (one.Text == text) platform::Files().Delete(one.Path);
}

bool PutOver(const std::string& path, std::string_view text, std::string_view newText) {
    Rewrite rewrite(path);
    if (!CheckOpened(rewrite)) return false;
    if (rewrite.Control.Rest() != text || rewrite.Control.Failed()) {
        ShowError(kChangedMeanwhile, path);
        return false;
    }
    // The constructor has put the temporary that was left over aside, so this is all there is.
    const std::vector<Leftover> saved = FindLeftovers(path, text);
    if (!KeepText(path, text)) return false;
    const bool copied = ReplaceText(rewrite, newText);
    if (!rewrite.Finish() || !copied) {
        ShowError(kErrorUpdatingFile, path);
        return false;
    }
    DropSaved(saved, newText);
    ShowStatus(kUpdatedFile, path);
    return true;
}

// A file that was being replaced and is gone: its new text is all there is.
bool RecoverMissingFile(const std::string& path, const AgreeToRecover& agrees) {
    const ReplacedFile file{path, WithExtension(path, "new"), ""};
    if (!IsCutOff(file)) {
        ShowError(kNoCutOffText, path);
        return false;
    }
    const std::optional<TextOfFile> left = ReadText(file.NewPath, file.NotOpened);
    if (!left || !agrees({file.NewPath, left->Text}, "") || !RecoverReplacedFile(file)) return false;
    ShowStatus(kUpdatedFile, path);
    return true;
}

} // namespace

bool RecoverFile(const std::string& path, const AgreeToRecover& agrees) {
    const std::optional<TextOfFile> file = ReadText(path, kUnableToOpenFile);
    if (!file) return false;
    if (!file->IsThere) return RecoverMissingFile(path, agrees);
    const std::vector<Leftover> found = FindLeftovers(path, file->Text);
    if (found.empty()) ShowError(kNoCutOffText, path);
    const auto agreed = std::ranges::find_if(found, [&](const Leftover& one) { return agrees(one, file->Text); });
    return agreed != found.end() && PutOver(path, file->Text, agreed->Text);
}

bool AskToRecover(const std::string& path, const Leftover& leftover) {
    if (leftover.IsCutOff()) ShowWarning(kTextHasNoEnd, leftover.Path);
    return AskQuestion(kReplaceByCutOffText, leftover.Path, path);
}

} // namespace bv
