#include "dialling/dialling_text.h"

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "dialling/dialling_file.h"

namespace bv {
namespace {

constexpr std::string_view kSelectionHeader = "[DIALPROPERTIES]";

// The value of the first line with the key.
std::optional<std::string> ValueIn(std::string_view body, std::string_view key) {
    while (!body.empty()) {
        const std::string line = CleanLine(TakeLine(body));
        if (BeginsWith(line, key)) return std::string(KeyValue(line).value_or(""));
    }
    return {};
}

// The values on a run of lines with the key, from the first such line on; any other line ends it.
void ReadPrefixes(std::string_view body, std::string_view key, DialPrefixes& prefixes) {
    std::string line;
    while (!body.empty() && !BeginsWith(line, key)) line = CleanLine(TakeLine(body));
    bool isEntry = BeginsWith(line, key);
    while (isEntry) {
        prefixes.Add(KeyValue(line).value_or(""));
        line = CleanLine(TakeLine(body));
        isEntry = !prefixes.IsFull() && line.starts_with(key);
    }
}

// A line without its line end, otherwise as it stands.
std::string_view BareLine(std::string_view rawLine) {
    if (rawLine.ends_with('\n')) rawLine.remove_suffix(1);
    if (rawLine.ends_with('\r')) rawLine.remove_suffix(1);
    return rawLine;
}

void CopyLines(std::string_view text, std::string& copy) {
    while (!text.empty()) AddLine(copy, BareLine(TakeLine(text)));
}

// The first line that is the header and nothing else, or, without one, the first that a reader takes for it; the
// text's size when there is neither.
std::size_t FindSelectionHeader(std::string_view text) {
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t at = text.size() - rest.size();
        if (CleanLine(TakeLine(rest)) == kSelectionHeader) return at;
    }
    return FindHeader(text, kSelectionHeader);
}

// Copies the lines up to and including the header; adds it when it is missing.
void CopyThroughSelection(std::string_view& text, std::string& copy) {
    const std::size_t header = FindSelectionHeader(text);
    CopyLines(text.substr(0, header), copy);
    text.remove_prefix(header);
    if (!text.empty()) return CopyLines(TakeLine(text), copy);
    if (!copy.empty() && !copy.ends_with("\n\r\n")) AddLine(copy, "");
    AddLine(copy, kSelectionHeader);
}

// Copies a location without what stands between its header and its description; one without a description whole.
void CopyLocation(const LocationText& location, std::string& copy) {
    std::string_view rest = location.Body;
    while (!rest.empty()) {
        const std::string line = CleanLine(TakeLine(rest));
        if (!BeginsWith(line, kDescriptionKey)) continue;
        AddLine(copy, kLocationHeader);
        AddKey(copy, kDescriptionKey, KeyValue(line).value_or(""));
        return CopyLines(rest, copy);
    }
    CopyLines(location.Header, copy);
    CopyLines(location.Body, copy);
}

// Copies the locations before the one of the name and steps behind that, or to the end without one.
void CopyOtherLocations(std::string_view& text, std::string_view name, std::string& copy) {
    LocationText location;
    while (TakeLocation(text, location)) {
        if (NameOf(location) == LocationName(name)) return;
        CopyLocation(location, copy);
    }
}

} // namespace

DialSelection SelectionIn(std::string_view text) {
    const std::size_t header = FindHeader(text, kSelectionHeader);
    if (header == text.size()) return {};
    std::string_view rest = text.substr(header);
    TakeLine(rest);
    DialSelection selection{std::nullopt, true, text.size() - rest.size()};
    if (const auto name = ValueIn(TakeBody(rest), kLocationKey)) selection.Name = *name;
    return selection;
}

bool TakeLocation(std::string_view& text, LocationText& location) {
    text.remove_prefix(FindHeader(text, kLocationHeader));
    if (text.empty()) return false;
    location.Header = TakeLine(text);
    location.Body = TakeBody(text);
    return true;
}

std::optional<LocationName> NameOf(const LocationText& location) {
    const auto name = ValueIn(location.Body, kDescriptionKey);
    return name ? std::optional<LocationName>(*name) : std::nullopt;
}

void ReadLocation(const LocationText& location, DialProperties& properties) {
    for (const DialKey& field : DialKeys())
        if (const auto value = ValueIn(location.Body, field.Key)) field.Store(properties, *value);
    for (const DialListKey& list : kDialListKeys) ReadPrefixes(location.Body, list.Key, properties.*list.List);
}

std::string_view TakeBody(std::string_view& text) {
    const std::string_view all = text;
    while (!text.empty() && !IsParagraphLine(text)) TakeLine(text);
    return all.substr(0, all.size() - text.size());
}

void AddLine(std::string& text, std::string_view line) { text.append(line).append(kLineEnd); }

void AddKey(std::string& text, std::string_view key, std::string_view value) {
    text.append(key).append(" ").append(value).append(kLineEnd);
}

void AddLocation(const DialProperties& properties, std::string& text) {
    AddLine(text, kLocationHeader);
    AddKey(text, kDescriptionKey, properties.Description);
    if (properties.Description != kTelephonyLocation) {
        for (const DialKey& field : DialKeys()) AddKey(text, field.Key, field.Text(properties));
        for (const auto& [key, list] : kDialListKeys)
            for (const DialPrefix& prefix : properties.*list) AddKey(text, key, prefix);
    }
    AddLine(text, "");
}

std::string WithSelected(std::string_view text, const DialProperties& properties) {
    std::string changed;
    CopyThroughSelection(text, changed);
    AddKey(changed, kLocationKey, SelectedLocation(properties));
    AddLine(changed, "");
    if (properties.Mode == kDialNoEditing || properties.Mode == kDialTelephony) return changed;
    CopyOtherLocations(text, properties.Description, changed);
    AddLocation(properties, changed);
    text.remove_prefix(FindHeader(text, kLocationHeader));
    CopyLines(text, changed);
    return changed;
}

} // namespace bv
