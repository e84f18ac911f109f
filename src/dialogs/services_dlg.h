// What the dialogs of an area ask of areas above theirs. The menu, which knows all areas, hands it in.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "shell/uses.h"

namespace bv {

struct DialogServices {
    // Shows the places that use the name.
    void (*ShowUses)(HWND owner, NamedThing kind, const std::string& name);

    // Deletes what has the names, after the question or, when others use it, after the dialog that says what becomes of
    // these.
    void (*Delete)(HWND owner, NamedThing kind, const std::vector<std::string>& names);
};

} // namespace bv
