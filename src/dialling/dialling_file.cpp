#include "dialling/dialling_file.h"

#include "ctlfile/control_stream.h"
#include "ctlfile/file_gate.h"
#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/replaced_file.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kSelection = "[DIALPROPERTIES]";
constexpr std::string_view kLocation = "[LOCATION]";
constexpr std::string_view kDescription = "Description:";
constexpr std::string_view kNewFile =
    "[BRIVANE]\r\nType: DiallingProperties\r\nRevision: A\r\n\r\n[DIALPROPERTIES]\r\n";

using LocationName = FixedText<100>;

struct LoadedProperties {
    DialProperties Properties;
    bool IsLoaded = false;
};

LoadedProperties& Loaded() {
    static LoadedProperties loaded;
    return loaded;
}

ReplacedFile File() { return ReplacedFileOf(ServerFile::Dialling); }

// Steps to the body of the next location of that name; false when there is none.
bool FindLocation(ControlStream& file, std::string_view name, Position& body) {
    ControlLine line;
    while (FindParagraph(file, kLocation, line, &body)) {
        LocationName description;
        if (!GetKeyString(file, kDescription, description, body)) {
            if (file.Failed()) return false;
            ReportMessage(static_cast<int>(MessageStyle::Status),
                          "Invalid '%s' line found in '%s' file - skipping paragraph", kDescription, file.Path());
        } else if (description == name) {
            return true;
        }
    }
    return false;
}

// The values on a run of lines with the key, from the first such line of the paragraph on; any other line ends it.
void ReadPrefixes(ControlStream& file, Position body, std::string_view key, DialPrefixes& prefixes) {
    ControlLine line;
    bool isEntry = FindKeyLine(file, key, line, body);
    while (isEntry) {
        prefixes.Add(KeyValue(line).value_or(""));
        isEntry = !prefixes.IsFull() && ReadControlLine(file, line) && line.View().starts_with(key);
    }
}

void ReadLocation(ControlStream& file, Position body, DialProperties& properties) {
    for (const DialKey& field : DialKeys()) ReadField(file, body, field, properties);
    for (const DialListKey& list : kDialListKeys) ReadPrefixes(file, body, list.Key, properties.*list.List);
}

// Steps behind the line that names the selected location.
bool FindSelection(ControlStream& file, LocationName& name) {
    ControlLine line;
    Position body = 0;
    return FindParagraph(file, kSelection, line, &body) && GetKeyString(file, "Location:", name, body);
}

StatusCode ReadFrom(ControlStream& file, std::optional<std::string_view> wanted, DialProperties& properties) {
    LocationName name;
    const bool isSelected = FindSelection(file, name);
    if (!isSelected && !wanted) return kKeyMissing;
    if (wanted) name = *wanted;
    SelectLocation(properties, name);
    if (properties.Mode == kDialTelephony) return kDone;
    if (properties.Mode == kDialNoEditing) return kNumbersNotEdited;
    Position body = 0;
    if (!FindLocation(file, name, body)) return kKeyMissing;
    ReadLocation(file, body, properties);
    return kDone;
}

// A line without its line end, otherwise as it stands.
std::string_view BareLine(std::string_view rawLine) {
    if (rawLine.ends_with('\n')) rawLine.remove_suffix(1);
    if (rawLine.ends_with('\r')) rawLine.remove_suffix(1);
    return rawLine;
}

void AddLine(std::string& text, std::string_view line) { text.append(line).append(kLineEnd); }

// With its blank also when the value is empty.
void AddKey(std::string& text, std::string_view key, std::string_view value) {
    text.append(key).append(" ").append(value).append(kLineEnd);
}

// Takes the lines before the next paragraph off the front of the text.
std::string_view TakeBody(std::string_view& text) {
    const std::string_view all = text;
    while (!text.empty() && !IsParagraphLine(text)) TakeLine(text);
    return all.substr(0, all.size() - text.size());
}

void CopyLines(std::string_view text, std::string& copy) {
    while (!text.empty()) AddLine(copy, BareLine(TakeLine(text)));
}

// The first line that is the header and nothing else, or, without one, the first that a reader takes for it; the
// text's size when there is neither.
std::size_t FindSelectionHeader(std::string_view text) {
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t at = text.size() - rest.size();
        if (CleanLine(TakeLine(rest)) == kSelection) return at;
    }
    return FindHeader(text, kSelection);
}

// Copies the lines up to and including the header; adds it when it is missing.
void CopyThroughSelection(std::string_view& text, std::string& copy) {
    const std::size_t header = FindSelectionHeader(text);
    CopyLines(text.substr(0, header), copy);
    text.remove_prefix(header);
    if (!text.empty()) return CopyLines(TakeLine(text), copy);
    if (!copy.empty() && !copy.ends_with("\n\r\n")) AddLine(copy, "");
    AddLine(copy, kSelection);
}

void AddLocation(const DialProperties& properties, std::string& text) {
    AddLine(text, kLocation);
    AddKey(text, kDescription, properties.Description);
    if (properties.Description != kTelephonyLocation) {
        for (const DialKey& field : DialKeys()) AddKey(text, field.Key, field.Text(properties));
        for (const auto& [key, list] : kDialListKeys)
            for (const DialPrefix& prefix : properties.*list) AddKey(text, key, prefix);
    }
    AddLine(text, "");
}

// Copies a location without what stands between its header and its description; one without a description whole.
void CopyLocation(std::string_view header, std::string_view body, std::string& copy) {
    std::string_view rest = body;
    while (!rest.empty()) {
        const std::string line = CleanLine(TakeLine(rest));
        if (!BeginsWith(line, kDescription)) continue;
        AddLine(copy, kLocation);
        AddKey(copy, kDescription, KeyValue(line).value_or(""));
        return CopyLines(rest, copy);
    }
    CopyLines(header, copy);
    CopyLines(body, copy);
}

// The name of the location with that body; none without a description.
std::optional<LocationName> NameOf(std::string_view body) {
    while (!body.empty()) {
        const std::string line = CleanLine(TakeLine(body));
        if (BeginsWith(line, kDescription)) return LocationName(KeyValue(line).value_or(""));
    }
    return {};
}

// Steps to the next location's header; false at the end.
bool SkipToLocation(std::string_view& text) {
    text.remove_prefix(FindHeader(text, kLocation));
    return !text.empty();
}

// Copies the locations before the one of the name and steps behind that, or to the end without one.
void CopyOtherLocations(std::string_view& text, std::string_view name, std::string& copy) {
    while (SkipToLocation(text)) {
        const std::string_view header = TakeLine(text);
        const std::string_view body = TakeBody(text);
        if (NameOf(body) == LocationName(name)) return;
        CopyLocation(header, body, copy);
    }
}

std::string NewText(std::string_view text, const DialProperties& properties) {
    std::string changed;
    CopyThroughSelection(text, changed);
    AddKey(changed, "Location:", SelectedLocation(properties));
    AddLine(changed, "");
    if (properties.Mode == kDialNoEditing || properties.Mode == kDialTelephony) return changed;
    CopyOtherLocations(text, properties.Description, changed);
    AddLocation(properties, changed);
    if (SkipToLocation(text)) CopyLines(text, changed);
    return changed;
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
    const StatusCode found = ReadFrom(file, location, properties);
    const StatusCode status = WasRead(file) ? found : kDialFileUnreadable;
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
        return NewText(live.IsThere ? live.Text : kNewFile, properties);
    };
    if (!ChangeReplacedFile(File(), newText)) return false;
    ShowStatus(kUpdatedFile, path);
    Startup().SettingsChanged = true;
    return true;
}

} // namespace bv
