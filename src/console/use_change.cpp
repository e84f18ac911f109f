#include "console/use_change.h"

#include <algorithm>

namespace bv::console {
namespace {

bool TakesOut(const Arguments& arguments) { return arguments.Has(kTakeOut.Name) || arguments.Has(kDeleteEmptied.Name); }

} // namespace

bool HasSeveralUseChanges(const Arguments& arguments) {
    const bool chosen[] = {TakesOut(arguments), arguments.Has(kReplaceBy.Name), arguments.Has(kLeave.Name)};
    return std::ranges::count(chosen, true) > 1;
}

std::optional<UseChange> ChosenUseChange(const Arguments& arguments) {
    if (TakesOut(arguments)) return UseChange{UseChange::Kind::TakeOut, {}, arguments.Has(kDeleteEmptied.Name)};
    if (arguments.Has(kReplaceBy.Name)) return UseChange{UseChange::Kind::Replace, arguments[kReplaceBy.Name]};
    if (arguments.Has(kLeave.Name)) return UseChange{};
    return {};
}

} // namespace bv::console
