// Places that refer to a name, what can become of them when the name goes, and the question before it does.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bv {

// What a name is that other files can refer to.
enum class NamedThing { User, UserGroup, Printer };

// What a place is to the name.
enum class UseKind {
    Value, // the value of a key, which can be empty
    Entry, // an entry that is nothing without the name
    Limit, // one of several names, to which the place is limited
};

// A place in a control file that names a user, a group, a link or a destination.
struct Use {
    std::string_view File; // "LCRRULES.INI"
    std::string Where;     // "rule 2 \"Europe\""
    UseKind Kind = UseKind::Value;
    std::string Name = {};   // the name, of several that are looked for, that stands there
    bool Widens = false;     // it is the only name of its kind there: without it the place takes more faxes
    bool CanChange = true;   // this program can change the place
    bool GoesWithIt = false; // the entry is a part of what has the name
    std::vector<std::string> Barred = {}; // names that cannot stand there: with one of these the entry goes

    friend bool operator==(const Use&, const Use&) = default;
};

// What is to become of the places.
struct UseChange {
    enum class Kind { Leave, TakeOut, Replace };
    Kind What = Kind::Leave;
    std::string By = {};        // of Replace: the name that they get
    bool DeleteEmptied = false; // of TakeOut: entries that would widen go
};

enum class UseEffect { Stays, IsEmptied, Goes, LosesName, Widens, Becomes };
UseEffect EffectOf(const Use& use, const UseChange& change);

// The effect in words: "is emptied", "loses ANNA", "would then apply to every user" (9218 to 9224).
std::string EffectText(const Use& use, const UseChange& change);

// Asks 9143, with a line (9144) for each place, at most 12 of them, whether the name is to go although it is used;
// without uses it is not asked, and true.
bool AskDespiteUses(std::span<const Use> uses, std::string_view name);

} // namespace bv
