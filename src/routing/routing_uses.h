// Where inward routing refers to users and groups.
#pragma once

#include <optional>
#include <vector>

#include "shell/name_set.h"
#include "shell/uses.h"

namespace bv {

// The rules that name one of them, as addressee or as who gets the fax. Without a routing file, or one of its
// paragraphs, there are none. None after a message: the file cannot be read.
std::optional<std::vector<Use>> FindRoutingUses(const NameSet& names);

// Makes the change to these rules in one rewrite, and to nothing else of the file. A rule that would stand beside
// another one of its key, as when two names of it become one, or forward to the user whose faxes it forwards, goes.
// Sets SettingsChanged. False after a message of OpenRoutingFile or EditControlFile.
bool ChangeRoutingUses(const NameSet& names, const UseChange& change);

} // namespace bv
