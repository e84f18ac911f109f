// Destinations from and to files of comma-separated values: a row a country, an area or a region.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ctlfile/csv_import.h"
#include "lcr/destination_edit.h"
#include "lcr/destinations.h"

namespace bv {

// What an import writes; areas by the dialling codes of their countries.
struct DestinationChanges {
    std::vector<CountryEntry> Countries;
    std::map<std::string, std::vector<AreaEntry>> Areas;
    std::vector<RegionEntry> Regions;
    ImportCounts Counts;
    Destinations After; // the tables with all of it
};

// The columns: Kind (country, area or region), Country (of an area), then what entries have: Identifier and
// Description; DiallingCode and LastField of countries; Matches of areas and regions. An entry keeps what has no
// column. Countries go before areas and those before regions, whatever the order of the rows. An entry that would take
// another one's place, since that begins with its name, is wrong.
class DestinationImport final : public CsvImport {
  public:
    // Into an edit that is open, or, without one, from the files to the files.
    explicit DestinationImport(DestinationEdit* open = nullptr) : open_(open) {}

    [[nodiscard]] std::string_view Title() const override { return "destinations"; }
    [[nodiscard]] std::string_view EntryTitle() const override { return "destination"; }
    [[nodiscard]] std::span<const std::string_view> Columns() const override;
    std::optional<std::vector<RowVerdict>> Check(const CsvTable& table) override;

    // With the edit lock, in one edit that is put in place, unless one is open; asks whether references by a dialling
    // code may lose their place (AskDespiteUses).
    ImportCounts Apply(const ImportProgress& goOn) override;

  private:
    bool Write(DestinationEdit& edit) const;
    bool WriteFiles() const;

    DestinationEdit* open_;

    DestinationChanges changes_;
};

// The countries, each with its areas, and the regions, with a first line of the columns.
std::string DestinationsAsCsv(const Destinations& places);

} // namespace bv
