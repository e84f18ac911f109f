#include "shell/uses.h"

#include "voice/messages.h"

namespace bv {

bool AskDespiteUses(std::span<const Use> uses, std::string_view name) {
    if (uses.empty()) return true;
    std::string places;
    for (const Use& use : uses)
        places.append(FillMessage(9144, use.File, use.Where, use.Widens ? FillMessage(9145) : std::string()));
    return AskWarning(9143, name, places);
}

} // namespace bv
