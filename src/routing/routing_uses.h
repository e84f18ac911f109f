// Where inward routing refers to a user or a group.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "shell/uses.h"

namespace bv {

// The rules that name it, as addressee or as who gets the fax. Without a routing file, or one of its paragraphs, there
// are none. None after a message: the file cannot be read.
std::optional<std::vector<Use>> FindRoutingUses(std::string_view name);

} // namespace bv
