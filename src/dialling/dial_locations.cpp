#include "dialling/dial_locations.h"

#include <algorithm>
#include <map>

#include "dialling/dialling_file.h"
#include "dialling/dialling_messages.h"
#include "dialling/dialling_text.h"
#include "dialling/location_text.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

ReplacedFile File() { return ReplacedFileOf(ServerFile::Dialling); }

bool Refuse(const std::string& reason) {
    ShowError("%s", reason);
    return false;
}

DialLocations LocationsIn(std::string_view text) {
    DialLocations locations;
    const DialSelection selection = SelectionIn(text);
    DialProperties selected;
    SelectLocation(selected, selection.Name.value_or(LocationName()));
    locations.Mode = selected.Mode;
    locations.Selected = SelectedLocation(selected);
    std::map<std::string, std::size_t> counts;
    LocationText location;
    for (std::string_view rest = text.substr(selection.Behind); TakeLocation(rest, location);) {
        const std::optional<LocationName> name = NameOf(location);
        if (!name) {
            ++locations.Unnamed;
            continue;
        }
        DialProperties properties;
        properties.Mode = kDialLocation;
        properties.Description = *name;
        ReadLocation(location, properties);
        const bool isChosen = locations.Mode == kDialLocation && selection.Name == name && !locations.Chosen;
        if (isChosen) locations.Chosen = locations.Places.size();
        locations.Places.push_back({properties, counts[name->String()]++, properties});
    }
    return locations;
}

std::string SelectionOf(const DialLocations& locations) {
    if (locations.Mode == kDialNoEditing) return std::string(kNoEditingLocation);
    if (locations.Mode == kDialTelephony) return std::string(kTelephonyLocation);
    return locations.Chosen ? locations.Places[*locations.Chosen].Now.Description.String() : std::string();
}

// The first place of that name that is not deleted.
std::optional<std::size_t> PlaceNamed(const DialLocations& locations, std::string_view name) {
    const auto found = std::ranges::find_if(
        locations.Places, [name](const DialPlace& place) { return !place.IsDeleted && place.Now.Description == name; });
    return found == locations.Places.end() ? std::nullopt
                                           : std::optional(static_cast<std::size_t>(found - locations.Places.begin()));
}

bool IsModeName(std::string_view name) {
    return EqualFolded(name, kTelephonyLocation) || EqualFolded(name, kNoEditingLocation);
}

// Whether locations are kept beside the selection; false after 9416.
bool KeepsLocations(const DialLocations& locations) {
    return locations.Mode == kDialLocation ||
           Refuse(FillMessage(kKeepsNoLocations, File().Path, SelectionOf(locations)));
}

// Why a place cannot be named so.
std::optional<std::string> FaultOfName(const DialLocations& locations, std::string_view name) {
    if (name.empty() || IsModeName(name)) return FillMessage(kNotALocationName, name);
    if (PlaceNamed(locations, name)) return FillMessage(kLocationIsThere, name);
    return FaultOfValue("Location", {ValueRule::Form::Text, LocationName::kLimit}, name);
}

// A name that a location was newly given and that the text has twice.
std::optional<std::string> NameTakenMeanwhile(const DialLocations& locations, std::string_view text) {
    const DialLocations now = LocationsIn(text);
    for (const DialPlace& place : locations.Places) {
        const DialProperties& own = place.Now;
        if (place.IsDeleted || (place.Before && place.Before->Description == own.Description)) continue;
        const auto isAnother = [&](const DialPlace& other) {
            return other.Nth > 0 && other.Now.Description == own.Description;
        };
        if (std::ranges::any_of(now.Places, isAnother)) return own.Description.String();
    }
    return {};
}

// What the file is to be; none after a message or a No.
std::optional<std::string> NewText(const TextOfFile& live, const DialLocations& locations) {
    const std::string_view text = live.IsThere ? live.Text : kNewDiallingText;
    if (locations.Mode == kDialLocation) {
        std::string changed = WithLocations(live, locations, SelectionOf(locations));
        const auto taken = NameTakenMeanwhile(locations, changed);
        if (!taken) return changed;
        Refuse(FillMessage(kLocationIsThere, *taken));
        return {};
    }
    const std::string dropped = DroppedParagraphs(text);
    if (!dropped.empty() && !AskWarning(kParagraphsGo, File().Path, dropped)) return {};
    DialProperties selected;
    SelectLocation(selected, SelectionOf(locations));
    return WithSelected(text, selected);
}

} // namespace

std::optional<DialLocations> ReadDialLocations() {
    const std::optional<TextOfFile> file = ReadReplacedFile(File());
    if (!file) return {};
    DialLocations locations = LocationsIn(file->Text);
    locations.Stamp = StampOf(*file);
    return locations;
}

std::optional<std::size_t> FindPlace(const DialLocations& locations, std::string_view name) {
    const auto place = PlaceNamed(locations, name);
    if (!place) ShowError(kNoSuchLocation, name, File().Path);
    return place;
}

std::string ShownName(const DialLocations& locations, std::size_t place) {
    const LocationName& name = locations.Places[place].Now.Description;
    return PlaceNamed(locations, name) == place ? name.String() : FillMessage(kNameThereAlready, name);
}

bool AddPlace(DialLocations& locations, std::string_view name, std::optional<std::size_t> like) {
    if (!KeepsLocations(locations)) return false;
    if (const auto fault = FaultOfName(locations, name)) return Refuse(*fault);
    DialPlace place;
    if (like) place.Now = locations.Places[*like].Now;
    place.Now.Mode = kDialLocation;
    place.Now.Description = name;
    if (!locations.Chosen) locations.Chosen = locations.Places.size();
    locations.Places.push_back(place);
    return true;
}

bool RenamePlace(DialLocations& locations, std::size_t place, std::string_view name) {
    if (!KeepsLocations(locations)) return false;
    LocationName& own = locations.Places[place].Now.Description;
    if (own == name && PlaceNamed(locations, name) == place) return true;
    if (const auto fault = FaultOfName(locations, name)) return Refuse(*fault);
    own = name;
    return true;
}

bool DeletePlace(DialLocations& locations, std::size_t place) {
    if (!KeepsLocations(locations)) return false;
    if (!AskDelete(FillMessage(kLocationWord), locations.Places[place].Now.Description, "")) return false;
    locations.Places[place].IsDeleted = true;
    if (locations.Chosen == place) locations.Chosen.reset();
    return true;
}

void FillPlace(DialLocations& locations, std::size_t place, const DialProperties& values) {
    DialProperties& own = locations.Places[place].Now;
    const LocationName name = own.Description;
    own = values;
    own.Mode = kDialLocation;
    own.Description = name;
}

bool IsChanged(const DialLocations& locations) {
    return SelectionOf(locations) != locations.Selected ||
           std::ranges::any_of(locations.Places, [](const DialPlace& place) {
               return place.Before ? place.IsDeleted || place.Now != *place.Before : !place.IsDeleted;
           });
}

std::optional<std::string> FaultOfSelection(const DialLocations& locations) {
    if (locations.Mode != kDialLocation) return {};
    if (!locations.Chosen) return FillMessage(kNoLocationChosen);
    const LocationName& name = locations.Places[*locations.Chosen].Now.Description;
    if (name.IsEmpty() || IsModeName(name)) return FillMessage(kNotALocationName, name);
    if (PlaceNamed(locations, name) != *locations.Chosen) return FillMessage(kLocationIsThere, name);
    return {};
}

bool SaveDialLocations(const DialLocations& locations) {
    if (!IsChanged(locations)) return true;
    if (const auto fault = FaultOfSelection(locations)) return Refuse(*fault);
    const ReplacedFile file = File();
    if (!OfferRecovery(file)) return false;
    const std::optional<TextOfFile> live = ReadText(file.Path, file.NotOpened);
    if (!live) return false;
    if (StampOf(*live) != locations.Stamp && !AskWarning(kSaveOverChanges, file.Path)) return false;
    std::optional<std::string> text = NewText(*live, locations);
    const auto change = [&](const TextOfFile&) {
        ShowStatus(kUpdatingFile, file.Path);
        return text;
    };
    if (!text || !ChangeReplacedFile(file, change, StampOf(*live))) return false;
    ShowStatus(kUpdatedFile, file.Path);
    Startup().SettingsChanged = true;
    ReadDiallingProperties(file.Path);
    return true;
}

} // namespace bv
