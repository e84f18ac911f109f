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
    static bool Write(DestinationEdit& edit, const CountryEntry& entry) { return WriteCountry(edit, entry); }
    static bool Delete(DestinationEdit& edit, std::string_view name) { return DeleteCountry(edit, name); }

    // Why the entry cannot come in the place of the old one; empty when it can.
    static std::string FaultOf(const DestinationEdit& edit, const CountryEntry& entry, const CountryEntry& old);
};

struct RegionKind {
    using Entry = RegionEntry;
    static constexpr std::string_view kName = "region";
    static constexpr std::string_view kPlural = "regions";

    static const std::vector<RegionEntry>& All(const DestinationEdit& edit) { return edit.Tables.Regions(); }
    static bool Write(DestinationEdit& edit, const RegionEntry& entry) { return WriteRegion(edit, entry); }
    static bool Delete(DestinationEdit& edit, std::string_view name) { return DeleteRegion(edit, name); }
    static std::string FaultOf(const DestinationEdit& edit, const RegionEntry& entry, const RegionEntry& old);
};

struct AreaKind {
    using Entry = AreaEntry;
    static constexpr std::string_view kName = "area";
    static constexpr std::string_view kPlural = "areas";
    std::string Code;

    [[nodiscard]] const std::vector<AreaEntry>& All(const DestinationEdit& edit) const {
        return edit.Tables.FindCode(Code)->Areas;
    }
    [[nodiscard]] bool Write(DestinationEdit& edit, const AreaEntry& entry) const {
        return WriteArea(edit, Code, entry);
    }
    [[nodiscard]] bool Delete(DestinationEdit& edit, std::string_view name) const {
        return DeleteArea(edit, Code, name);
    }
    static std::string FaultOf(const DestinationEdit& edit, const AreaEntry& entry, const AreaEntry& old);
};

// The areas of the country with that identifier or dialling code; none, after 9130, without one.
std::optional<AreaKind> AreasOf(const Destinations& tables, std::string_view country);

// The entry of that identifier, in any case; null, after 9130, without one.
template <class Kind>
const typename Kind::Entry* FindEntry(const Kind& kind, const DestinationEdit& edit, std::string_view identifier);

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
