// What the dialogs of an area ask of areas above theirs. The menu, which knows all areas, hands it in; a service that
// is not there disables its button.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/uses.h"

namespace bv {

struct DialogServices {
    // Shows the places that use the name.
    void (*ShowUses)(HWND owner, NamedThing kind, const std::string& name);

    // Deletes what has the names, after the question or, when others use it, after the dialog that says what becomes of
    // these.
    void (*Delete)(HWND owner, NamedThing kind, const std::vector<std::string>& names);

    // Opens the dialog of mail users, with those who send as a server user or, without a name, with all.
    void (*OpenMailUsers)(HWND owner, const std::string& serverUser) = nullptr;

    // Has the person choose a user of the mail system. The name; empty when it was cancelled.
    std::string (*PickMailName)(HWND owner, const std::string& beginning) = nullptr;

    // How many mail users send as a server user; none after a message.
    std::optional<std::size_t> (*CountMailUsers)(std::string_view serverUser) = nullptr;
};

} // namespace bv
