#include "shell/uses.h"

#include "voice/messages.h"

namespace bv {

bool AskDespiteUses(std::span<const Use> uses, std::string_view name) {
    if (uses.empty()) return true;
    std::string places;
    for (const Use& use : uses)
        places.append(
            FillMessage(kUsedInPlace, use.File, use.Where, use.Widens ? FillMessage(kTakesMoreFaxes) : std::string()));
    return AskWarning(kUsedIn, name, places);
}

} // namespace bv
