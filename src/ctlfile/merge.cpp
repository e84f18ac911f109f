#include "ctlfile/merge.h"

#include "ctlfile/ctlfile_messages.h"
#include "voice/messages.h"

namespace bv {

bool TakesMine(std::string_view whose, const MergedKey& key) {
    if (key.Mine == key.Before || key.Mine == key.Now) return false;
    if (key.Now == key.Before) return true;
    return AskWarning(kOverwriteTheirs, whose, FormatText("%s: \"%s\"", key.Name, key.Now));
}

} // namespace bv
