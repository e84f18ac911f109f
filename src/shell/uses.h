// Places that refer to a name, and the question before the name goes from under them.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace bv {

// A place in a control file that names a user, a link or a destination.
struct Use {
    std::string_view File; // "LCRRULES.INI"
    std::string Where;     // "rule 2 \"Europe\""
    bool TakenOut = false; // the place loses the name with its next change, and lives on without it
    bool Widens = false;   // it is the only name of its kind there: the place then takes more faxes
    bool CanChange = true; // this program can change the place

    friend bool operator==(const Use&, const Use&) = default;
};

// Asks 9143, with a line (9144) for each place, whether the name is to go although it is used; without uses it is not
// asked, and true.
bool AskDespiteUses(std::span<const Use> uses, std::string_view name);

} // namespace bv
