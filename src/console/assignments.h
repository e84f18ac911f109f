// Arguments of the form KEY=VALUE.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/commands.h"
#include "ctlfile/entered_values.h"

namespace bv::console {

using Assignment = EnteredValue;

// The assignments among the arguments, under the parameter's name, in their order. None, after a message, when one has
// no "=" or no key, or a key is given twice.
std::optional<std::vector<Assignment>> ReadAssignments(const Session& session, const Arguments& arguments,
                                                       std::string_view parameter);

// Leaves out an assignment of what 'show' prints beside the keys, such as a name or a number, when it says the same.
void DropShown(std::vector<Assignment>& assignments, std::string_view key, std::string_view value);

} // namespace bv::console
