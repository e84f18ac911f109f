// What the verbs that delete take for the places that name what goes.
#pragma once

#include <optional>
#include <string_view>

#include "console/commands.h"
#include "shell/uses.h"

namespace bv::console {

inline constexpr Parameter kTakeOut = {"--take-out", "Take the name out of all places that have it",
                                       ParameterKind::Flag};
inline constexpr Parameter kDeleteEmptied = {
    "--delete-emptied", "The same, and delete rules that would then take more faxes", ParameterKind::Flag};
inline constexpr Parameter kReplaceBy = {"--replace-by", "Put another name into all places that have it",
                                         ParameterKind::Option, "OTHER"};
inline constexpr Parameter kLeave = {"--leave", "Leave the name in all places that have it", ParameterKind::Flag};

// Whether more than one of them was given, which is refused with this.
bool HasSeveralUseChanges(const Arguments& arguments);
inline constexpr std::string_view kOneUseChange = "Only one of --take-out, --replace-by and --leave can be given";

// What is to become of the places; none when it is to be asked.
std::optional<UseChange> ChosenUseChange(const Arguments& arguments);

} // namespace bv::console
