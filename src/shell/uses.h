// Places that refer to a name, what can become of them when the name goes, and the question before it does.
#pragma once

#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bv {

// What a name is that files refer to.
enum class NamedThing : unsigned { User = 1, UserGroup = 2, Printer = 4 };

// What a place is to the name.
enum class UseKind {
    Value, // the value of a key, which can be empty
    Entry, // an entry that is nothing without the name
    Limit, // one of several names, to which the place is limited
};

// A place in a control file that names a user, a group, a printer, a link or a destination.
struct Use {
    std::string_view File; // "LCRRULES.INI"
    std::string Where;     // "rule 2 \"Europe\""
    UseKind Kind = UseKind::Value;
    std::string Name = {};   // the name, of several that are looked for, that stands there
    bool Widens = false;     // it is the only name of its kind there: without it the place takes more faxes
    bool CanChange = true;   // this program can change the place
    bool GoesWithIt = false; // the entry is a part of what has the name
    std::vector<std::string> Barred = {}; // names that cannot stand there: with one of these the entry goes
    std::string KeyOf = {};  // what the name is a key of, in which it stands once; empty for a name that is no key
    bool IsBothEnds = false; // it leads from one of the names to one: with a single name in their place the entry goes

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

// The effects of a change, to be asked place by place in their order: of several that would get one name as the key of
// the same thing, the first has it and the others go.
class UseEffects {
  public:
    explicit UseEffects(UseChange change) : change_(std::move(change)) {}

    UseEffect Of(const Use& use);

    // The same in words: "is emptied", "loses ANNA", "would then apply to every user" (9218 to 9224).
    std::string TextOf(const Use& use);

  private:
    UseEffect OfReplacing(const Use& use);

    UseChange change_;
    std::set<std::string> keyed_; // what has the new name as a key by now
};

// Asks 9143, with a line (9144) for each place, at most 12 of them, whether the name is to go although it is used;
// without uses it is not asked, and true.
bool AskDespiteUses(std::span<const Use> uses, std::string_view name);

} // namespace bv
