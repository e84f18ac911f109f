// Countries, areas and regions as a person enters, changes and deletes them: what may be entered, what is asked first,
// and what is said. All of it goes into the working copies of an edit.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/key_fields.h"
#include "lcr/destination_edit.h"

namespace bv {

// The characters of a new name: a reference to it is to fit where rules hold it, with its country where it has one.
inline constexpr std::size_t kMostOfPlaceName = 29;

// What is shown and entered of an entry.
template <class Entry>
struct EntryRow {
    KeyField<Entry> Field;
};
std::span<const EntryRow<MatchEntry>> RowsOf(const MatchEntry&);
std::span<const EntryRow<CountryEntry>> RowsOf(const CountryEntry&);

// The kinds of entries; areas are those of the country with the dialling code.
struct CountryKind {
    using Entry = CountryEntry;
    static constexpr std::string_view kName = "country";
    static constexpr std::string_view kPlural = "countries";

    static const std::vector<CountryEntry>& All(const DestinationEdit& edit) { return edit.Tables.Countries(); }
    static bool Write(DestinationEdit& edit, const CountryEntry& entry, std::string_view insteadOf) {
        return WriteCountry(edit, entry, insteadOf);
    }
    static bool Delete(DestinationEdit& edit, std::string_view name) { return DeleteCountry(edit, name); }

    // Why the entry cannot come in the place of the old one; empty when it can.
    static std::string FaultOf(const DestinationEdit& edit, const CountryEntry& entry, const CountryEntry& old);

    // Asks before a country gets another one's dialling code (9363). The field that is to be changed; empty for Yes.
    static std::string_view Ask(const DestinationEdit& edit, const CountryEntry& entry, const CountryEntry& old);
};

struct RegionKind {
    using Entry = RegionEntry;
    static constexpr std::string_view kName = "region";
    static constexpr std::string_view kPlural = "regions";

    static const std::vector<RegionEntry>& All(const DestinationEdit& edit) { return edit.Tables.Regions(); }
    static bool Write(DestinationEdit& edit, const RegionEntry& entry, std::string_view insteadOf) {
        return WriteRegion(edit, entry, insteadOf);
    }
    static bool Delete(DestinationEdit& edit, std::string_view name) { return DeleteRegion(edit, name); }
    static std::string FaultOf(const DestinationEdit& edit, const RegionEntry& entry, const RegionEntry& old);
    static std::string_view Ask(const DestinationEdit&, const RegionEntry&, const RegionEntry&) { return {}; }
};

struct AreaKind {
    using Entry = AreaEntry;
    static constexpr std::string_view kName = "area";
    static constexpr std::string_view kPlural = "areas";
    std::string Code;

    [[nodiscard]] const std::vector<AreaEntry>& All(const DestinationEdit& edit) const {
        return edit.Tables.FindCode(Code)->Areas;
    }
    [[nodiscard]] bool Write(DestinationEdit& edit, const AreaEntry& entry, std::string_view insteadOf) const {
        return WriteArea(edit, Code, entry, insteadOf);
    }
    [[nodiscard]] bool Delete(DestinationEdit& edit, std::string_view name) const {
        return DeleteArea(edit, Code, name);
    }
    [[nodiscard]] std::string FaultOf(const DestinationEdit& edit, const AreaEntry& entry, const AreaEntry& old) const;
    static std::string_view Ask(const DestinationEdit&, const AreaEntry&, const AreaEntry&) { return {}; }
};

// The areas of the country with that identifier or dialling code; none, after 9130, without one.
std::optional<AreaKind> AreasOf(const Destinations& tables, std::string_view country);

// The entry of that identifier, in any case; null, after 9130, without one.
template <class Kind>
const typename Kind::Entry* FindEntry(const Kind& kind, const DestinationEdit& edit, std::string_view identifier);

// Whether an entry may come in the place of the old one; of none, which has no identifier. The name of the field that
// is to be changed, "DiallingCode", after a message or a question answered No; empty when it may.
template <class Kind>
std::string CheckDestination(const Kind& kind, const DestinationEdit& edit, const typename Kind::Entry& entry,
                             const typename Kind::Entry& old);

// The same of another name of a destination: "Name" or "StandsFor".
std::string CheckSynonym(const DestinationEdit& edit, const Synonym& synonym, const Synonym& old);

// Puts another name in the place of the old one, or in as a new one for an old one without a name; returns as
// CheckSynonym does. RemoveSynonym is false after a message.
std::string SaveSynonym(DestinationEdit& edit, const Synonym& old, const Synonym& synonym);
bool RemoveSynonym(DestinationEdit& edit, std::string_view name);

// What is worth knowing of an entry while it is entered; empty for nothing: that rules cannot name it, and that one of
// an area's numbers is another area's, too.
std::string NoteOfName(std::string_view reference);
std::string NoteOfNumbers(const DestinationEdit& edit, const AreaKind& kind, const AreaEntry& entry,
                          std::string_view oldIdentifier);

// The number of an area as its line has it: whole, or with a "*" behind. None, after 9367, for what is none.
std::optional<std::string> MakeMatch(const std::string& number, bool isWhole);

// Each is false, after a message or a question answered No, when the edit is to be dropped. Asked is whether an entry
// may take the place of another whose identifier begins with its own (9141), and whether references of rules, regions
// and synonyms may lose their place (AskDespiteUses). An entry that is not changed is asked nothing.
template <class Kind>
bool AddDestination(const Kind& kind, DestinationEdit& edit, const typename Kind::Entry& entry);
template <class Kind>
bool ChangeDestination(const Kind& kind, DestinationEdit& edit, std::string_view identifier,
                       const typename Kind::Entry& entry);
template <class Kind>
bool RemoveDestination(const Kind& kind, DestinationEdit& edit, std::string_view identifier);

} // namespace bv
