#include "ctlfile/recovery.h"

#include <algorithm>

#include "ctlfile/copy_back.h"
#include "ctlfile/paths.h"
#include "ctlfile/reading.h"
#include "platform/files.h"
#include "shell/messages.h"

namespace bv {
namespace {

// None after a message.
std::optional<std::string> ReadText(const std::string& path) {
    ControlStream file = OpenShared(path, "rb");
    if (!file) {
        ShowError(413, path);
        return {};
    }
    std::string text(file.Rest());
    if (!WasRead(file)) return {};
    return text;
}

// False after a message; then nothing is left of the copy.
bool KeepText(const std::string& path, std::string_view text) {
    const std::optional<std::string> name = FreeNameBeside(path, "old");
    ControlStream copy = OpenShared(name.value_or(WithExtension(path, "old")), "c+b");
    if (!copy) {
        ShowError(5002, name.value_or(WithExtension(path, "old")));
        return false;
    }
    copy.Write(text);
    if (!copy.Close()) {
        ShowError(5001, *name);
        platform::Files().Delete(*name);
        return false;
    }
    SetStatusLine(FillMessage(9017, path, FilePart(*name)), 2);
    return true;
}

// What was put aside and now is the file's own text need not be kept any more; one that cannot be deleted does no harm.
void DropSaved(const std::vector<Leftover>& saved, std::string_view text) {
    for (const Leftover& one : saved)
        if (one.Text == text) platform::Files().Delete(one.Path);
}

bool PutInPlace(const std::string& path, std::string_view text, std::string_view newText) {
    Rewrite rewrite(path);
    if (!rewrite) {
        ShowError(413, rewrite.Fault() == Rewrite::Problem::Temporary ? rewrite.TemporaryName() : path);
        return false;
    }
    if (rewrite.Control.Rest() != text || rewrite.Control.Failed()) {
        ShowError(9025, path);
        return false;
    }
    // The constructor has put the temporary that was left over aside, so this is all there is.
    const std::vector<Leftover> saved = FindLeftovers(path, text);
    if (!KeepText(path, text)) return false;
    const bool copied = rewrite.Temporary.Write(newText) && rewrite.CopyBack();
    if (!rewrite.Finish() || !copied) {
        ShowError(5000, path);
        return false;
    }
    DropSaved(saved, newText);
    ShowStatus(471, path);
    return true;
}

} // namespace

bool RecoverFile(const std::string& path, const AgreeToRecover& agrees) {
    const std::optional<std::string> text = ReadText(path);
    if (!text) return false;
    const std::vector<Leftover> found = FindLeftovers(path, *text);
    if (found.empty()) ShowError(9016, path);
    const auto agreed = std::ranges::find_if(found, [&](const Leftover& one) { return agrees(one, *text); });
    return agreed != found.end() && PutInPlace(path, *text, agreed->Text);
}

bool AskToRecover(const std::string& path, const Leftover& leftover) {
    if (leftover.IsCutOff()) ShowWarning(9018, leftover.Path);
    return AskQuestion(9015, leftover.Path, path);
}

} // namespace bv
