#include "shell/uses.h"

#include <algorithm>

#include "platform/ascii.h"
#include "voice/messages.h"

namespace bv {
namespace {

UseEffect EffectOfTakingOut(const Use& use, bool deleteEmptied) {
    if (use.Kind == UseKind::Value) return UseEffect::IsEmptied;
    if (use.Kind == UseKind::Entry) return UseEffect::Goes;
    if (!use.Widens) return UseEffect::LosesName;
    return deleteEmptied ? UseEffect::Goes : UseEffect::Widens;
}

} // namespace

UseEffect UseEffects::OfReplacing(const Use& use) {
    const auto isBy = [this](const std::string& name) { return EqualFolded(name, change_.By); };
    if (use.IsBothEnds || std::ranges::any_of(use.Barred, isBy)) return UseEffect::Goes;
    const bool isFirst = use.KeyOf.empty() || keyed_.insert(use.KeyOf).second;
    return isFirst ? UseEffect::Becomes : UseEffect::Goes;
}

UseEffect UseEffects::Of(const Use& use) {
    if (!use.CanChange) return UseEffect::Stays;
    switch (change_.What) {
    case UseChange::Kind::TakeOut: return EffectOfTakingOut(use, change_.DeleteEmptied);
    case UseChange::Kind::Replace: return OfReplacing(use);
    case UseChange::Kind::Leave: break;
    }
    return use.GoesWithIt ? UseEffect::Goes : UseEffect::Stays;
}

std::string UseEffects::TextOf(const Use& use) {
    switch (Of(use)) {
    case UseEffect::IsEmptied: return FillMessage(kIsEmptied);
    case UseEffect::Goes: return FillMessage(kEntryGoes);
    case UseEffect::LosesName: return FillMessage(kLosesName, use.Name);
    case UseEffect::Widens: return FillMessage(kWouldApplyToEvery, "user");
    case UseEffect::Becomes: return FillMessage(kBecomes, change_.By);
    case UseEffect::Stays: break;
    }
    return FillMessage(kStaysAsItIs);
}

bool AskDespiteUses(std::span<const Use> uses, std::string_view name) {
    constexpr std::size_t kNamed = 12;
    if (uses.empty()) return true;
    std::string places;
    for (const Use& use : uses.first(std::min(uses.size(), kNamed)))
        places.append(
            FillMessage(kUsedInPlace, use.File, use.Where, use.Widens ? FillMessage(kTakesMoreFaxes) : std::string()));
    if (uses.size() > kNamed) places += FormatText("\nand %d more", uses.size() - kNamed);
    return AskWarning(kUsedIn, name, places);
}

} // namespace bv
