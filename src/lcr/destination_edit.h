// Editing the destinations: all changes go into working copies beside the live files, which are then put in their place
// or thrown away together. Two administrators are kept apart by the edit lock (edit_lock.h).
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lcr/destination_files.h"
#include "lcr/destinations.h"
#include "lcr/synonyms.h"

namespace bv {

// A file that is being edited.
struct WorkingCopy {
    DestinationFile File;
    std::string DiallingCode = {}; // of an area file
    TextStamp Before = {};         // of the live file, as it was read
    bool IsOnlyText = false;       // a commit has deleted the live file and then failed
};

struct DestinationEdit {
    Destinations Tables;             // as the working copies have them
    std::vector<Synonym> Synonyms;   // the same
    std::vector<WorkingCopy> Copies; // the region file, the country file and each area file touched
    bool Changed = false;
};

// Makes the working copies of the region file and the country file, new ones where there is no such file. To put in
// place what a save that was cut off has left is offered first. False, with no working copy left, after "File error:
// couldn't open", or when that is not wanted.
bool BeginDestinationEdit(DestinationEdit& edit);

// Put an entry into its working copy: in the place of the first one whose identifier begins with the entry's, or at the
// end of the list. An entry that is there already is not written. False after "File error: couldn't open", 5000 or
// 5004, the working copy unchanged or, where it could not be put back, gone: then no commit comes off. The dialling
// code is that of the area's country. An entry that it comes instead of goes in the same change (9130 without it).
bool WriteRegion(DestinationEdit& edit, const RegionEntry& entry, std::string_view insteadOf = {});
bool WriteCountry(DestinationEdit& edit, const CountryEntry& entry, std::string_view insteadOf = {});
bool WriteArea(DestinationEdit& edit, std::string_view diallingCode, const AreaEntry& entry,
               std::string_view insteadOf = {});

// Puts another name of a destination into the country file's working copy: in the place of the one that it comes
// instead of, or as a new one. False as above.
bool WriteSynonym(DestinationEdit& edit, const Synonym& synonym, std::string_view insteadOf = {});

// Changes the regions' matches (WithChangedMatches). False as above.
bool ChangeMatches(DestinationEdit& edit, const MatchChange& change);

// The same with several entries of a kind, which are written at once or not at all.
bool WriteRegions(DestinationEdit& edit, std::span<const RegionEntry> entries);
bool WriteCountries(DestinationEdit& edit, std::span<const CountryEntry> entries);
bool WriteAreas(DestinationEdit& edit, std::string_view diallingCode, std::span<const AreaEntry> entries);

// Take the first entry of exactly that identifier, in any case, out of its working copy. False, with it unchanged,
// after a message; without such an entry, message 9130. A country's area file stays.
bool DeleteRegion(DestinationEdit& edit, std::string_view identifier);
bool DeleteCountry(DestinationEdit& edit, std::string_view identifier);
bool DeleteArea(DestinationEdit& edit, std::string_view diallingCode, std::string_view identifier);
bool DeleteSynonym(DestinationEdit& edit, std::string_view name);

// Puts the working copies in the place of the live files, which must all be as they were read; sets SettingsChanged.
// False after "File error: couldn't open" or 9025, with nothing done, or after 5004: then it may be called again for
// those that are left.
bool CommitDestinationEdit(DestinationEdit& edit);

// Throws the working copies away; changes only when the person says so. False when not.
bool AbandonDestinationEdit(DestinationEdit& edit);

// The same without asking. A working copy that is the only text of its file stays, for the next editing to find.
void DropDestinationEdit(DestinationEdit& edit);

} // namespace bv
