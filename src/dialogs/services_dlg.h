// What the dialogs of an area ask of areas above theirs. The menu, which knows all areas, hands it in.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "shell/uses.h"

namespace bv {

// What has become of the places that use what is to be deleted.
enum class UsesFate { Cancelled, None, Settled };

struct DialogServices {
    // Shows the places that use the name.
    void (*ShowUses)(HWND owner, NamedThing kind, const std::string& name);

    // Deletes what has the names, after the question or, when others use it, after the dialog that says what becomes of
    // these.
    void (*Delete)(HWND owner, NamedThing kind, const std::vector<std::string>& names);

    // Settles in that dialog what becomes of the places that use printers, and deletes nothing. None: there are none,
    // and nobody was asked. Cancelled: the printers are to stay, as after a message.
    UsesFate (*SettlePrinterUses)(HWND owner, const std::vector<std::string>& names);
};

} // namespace bv
