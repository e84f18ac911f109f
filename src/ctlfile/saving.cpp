#include "ctlfile/saving.h"

#include "voice/messages.h"

namespace bv {

bool SayingSave(const std::string& path, const std::function<bool()>& save, AfterFailure after) {
    ShowStatus(kUpdatingFile, path);
    const bool saved = save();
    if (!saved) ShowError(kErrorUpdatingFile, path);
    if (saved || after == AfterFailure::SayUpdated) ShowStatus(kUpdatedFile, path);
    return saved;
}

bool CheckOpened(const Rewrite& rewrite) {
    if (!rewrite) ShowError(kUnableToOpenFile, rewrite.UnopenedPath());
    return bool{rewrite};
}

bool SaveRewrite(Rewrite& rewrite, const std::function<bool()>& write, AfterFailure after) {
    const auto save = [&] {
        const bool written = write();
        return rewrite.Finish() && written;
    };
    return SayingSave(rewrite.Path(), save, after);
}

bool ReplaceText(Rewrite& rewrite, std::string_view newText) {
    return rewrite.Temporary.Write(newText) && rewrite.CopyBack();
}

} // namespace bv
