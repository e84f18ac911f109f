// What the dialogs of an area ask of areas above theirs. The menu, which knows all areas, hands it in.
#pragma once

#include <string_view>

namespace bv {

// What a name is that other files can refer to.
enum class NamedThing { User, UserGroup };

struct DialogServices {
    // Asks, with the places that use the name, whether it is to go; true also when there are none.
    bool (*AgreeToDeletion)(NamedThing kind, std::string_view name);
};

} // namespace bv
