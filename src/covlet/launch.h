// The programs of the server's installation that show and edit coversheets and letterheads.
#pragma once

#include <string>
#include <string_view>

#include "covlet/catalogue.h"

namespace bv {

// Starts the fax viewer on the item's .G3F or else .G3N file, without waiting for it. False after 5112 or 5111 (neither
// exists) or 5020 (the viewer cannot be started).
bool ViewItem(ItemKind kind, std::string_view name);

// Runs the coversheet editor on an item ("*" for a new one) and waits for its end. False when it cannot be started.
bool RunItemEditor(std::string_view name);

// The command line of an editor command: leading blanks skipped, "%FILE%" (in any case) replaced by the item's name,
// or a blank and the name appended.
std::string EditorCommandLine(std::string_view command, std::string_view name);

} // namespace bv
