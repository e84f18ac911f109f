#include "dialling/dialling_file.h"

#include "ctlfile/control_stream.h"
#include "ctlfile/file_gate.h"
#include "ctlfile/reading.h"
#include "ctlfile/replaced_file.h"
#include "dialling/dialling_text.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

struct LoadedProperties {
    DialProperties Properties;
    bool IsLoaded = false;
};

LoadedProperties& Loaded() {
    static LoadedProperties loaded;
    return loaded;
}

ReplacedFile File() { return ReplacedFileOf(ServerFile::Dialling); }

// The first location of that name in the text; one without a description is reported and passed over.
std::optional<LocationText> FindLocation(std::string_view text, std::string_view name, const std::string& path) {
    LocationText location;
    while (TakeLocation(text, location)) {
        const std::optional<LocationName> description = NameOf(location);
        if (description && *description == name) return location;
        if (!description)
            ReportMessage(static_cast<int>(MessageStyle::Status),
                          "Invalid '%s' line found in '%s' file - skipping paragraph", kDescriptionKey, path);
    }
    return {};
}

StatusCode ReadFrom(std::string_view text, const std::string& path, std::optional<std::string_view> wanted,
                    DialProperties& properties) {
    const DialSelection selection = SelectionIn(text);
    if (!selection.Name && !wanted) return kKeyMissing;
    const LocationName name = wanted ? LocationName(*wanted) : *selection.Name;
    SelectLocation(properties, name);
    if (properties.Mode == kDialTelephony) return kDone;
    if (properties.Mode == kDialNoEditing) return kNumbersNotEdited;
    const auto location = FindLocation(text.substr(selection.Behind), name, path);
    if (!location) return kKeyMissing;
    ReadLocation(*location, properties);
    return kDone;
}

} // namespace

void SelectLocation(DialProperties& properties, std::string_view name) {
    properties = {};
    properties.Mode = EqualFolded(name, kTelephonyLocation)   ? kDialTelephony
                      : EqualFolded(name, kNoEditingLocation) ? kDialNoEditing
                                                              : kDialLocation;
    if (properties.Mode == kDialLocation) properties.Description = name;
}

std::string_view SelectedLocation(const DialProperties& properties) {
    if (properties.Mode == kDialNoEditing) return kNoEditingLocation;
    if (properties.Mode == kDialTelephony) return kTelephonyLocation;
    return properties.Description;
}

StatusCode ReadDialLocation(const std::string& path, std::optional<std::string_view> location,
                            DialProperties& properties) {
    properties = {};
    ControlStream file = OpenToRead(path);
    if (!file) return kDialFileUnreadable;
    const std::string_view text = file.Rest();
    if (!WasRead(file)) return kDialFileUnreadable;
    const StatusCode status = ReadFrom(text, path, location, properties);
    if (status != kDone && status != kNumbersNotEdited) properties = {};
    return status;
}

StatusCode ReadDiallingProperties(const std::string& path) {
    const StatusCode status = ReadDialLocation(path, std::nullopt, Loaded().Properties);
    Loaded().IsLoaded = status == kDone || status == kNumbersNotEdited;
    return status;
}

const DialProperties& GetDialProperties() {
    if (!Loaded().IsLoaded) Loaded().Properties = {};
    return Loaded().Properties;
}

bool DialPropertiesAreLoaded() { return Loaded().IsLoaded; }

std::string DiallingFileToRead() { return PathToRead(File()); }

bool WithDiallingFileHeld(const std::function<bool()>& change) {
    const FileGate gate(PathOf(ServerFile::Dialling));
    if (!gate) ShowError(kUnableToOpenFile, PathOf(ServerFile::Dialling));
    return gate && change();
}

bool WriteDiallingProperties(const DialProperties& properties) {
    const std::string path = PathOf(ServerFile::Dialling);
    const auto newText = [&](const TextOfFile& live) {
        ShowStatus(kUpdatingFile, path);
        return WithSelected(live.IsThere ? live.Text : kNewDiallingText, properties);
    };
    if (!ChangeReplacedFile(File(), newText)) return false;
    ShowStatus(kUpdatedFile, path);
    Startup().SettingsChanged = true;
    return true;
}

} // namespace bv
