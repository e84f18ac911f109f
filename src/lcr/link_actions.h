// Links as a person renames and deletes them.
#pragma once

#include <string_view>

#include "lcr/links.h"

namespace bv {

// Whether a link may get another identifier, with which it is a new link and leaves the rules that name it: asks about
// the rules (AskDespiteUses) and then whether its run-time information may go. Marks the changed link as new.
bool AgreeToNewLink(const LinkRecord& link, LinkRecord& changed);

// Takes the link out of the table, when it is agreed to that rules name it. Status "Deleted link %s".
bool RemoveLink(LinkTable& links, LinkTable::iterator link);

} // namespace bv
