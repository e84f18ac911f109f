#include "dialling/dialling_actions.h"

#include <algorithm>

#include "ctlfile/whole_file.h"
#include "dialling/dial_locations.h"
#include "dialling/dialling_file.h"
#include "dialling/dialling_messages.h"
#include "platform/ascii.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

bool Refuse(std::string_view reason) {
    ShowError("%s", reason);
    return false;
}

bool CheckLocationName(std::string_view location) {
    if (location.empty()) return Refuse("Location: \"\" is not a name");
    const ValueRule rule = {ValueRule::Form::Text, decltype(DialProperties::Description)::kLimit};
    const auto fault = FaultOfValue("Location", rule, location);
    return !fault || Refuse(*fault);
}

std::optional<std::string> FaultOfPrefix(const DialListKey& list, std::string_view prefix) {
    if (prefix.empty()) return FillMessage(kEmptyPrefix, list.Name());
    return FaultOfValue(list.Name(), {ValueRule::Form::Text, DialPrefix::kLimit}, prefix);
}

// Puts the prefixes of a text with commas or blanks into the list; the reason when it cannot be.
std::optional<std::string> StorePrefixes(const DialListKey& list, std::string_view text, DialProperties& properties) {
    if (text == PrefixesText(properties.*list.List)) return {};
    DialPrefixes prefixes;
    while (!text.empty()) {
        const std::string_view prefix = text.substr(0, text.find_first_of(" ,"));
        const bool isLast = prefix.size() == text.size();
        if (auto fault = FaultOfPrefix(list, isLast || prefix.size() + 1 < text.size() ? prefix : "")) return fault;
        if (prefixes.IsFull()) return FillMessage(kTooManyPrefixes, list.Name(), DialPrefixes::kLimit);
        prefixes.Add(prefix);
        text.remove_prefix(isLast ? text.size() : prefix.size() + 1);
        if (!isLast) text = SkipBlanks(text);
    }
    properties.*list.List = prefixes;
    return {};
}

} // namespace

std::string PrefixesText(const DialPrefixes& prefixes) {
    std::string joined;
    std::string_view separator;
    for (const DialPrefix& prefix : prefixes) {
        joined.append(separator).append(prefix);
        separator = ",";
    }
    return joined;
}

bool SelectForChange(std::optional<std::string_view> location, DialProperties& properties) {
    if (location && !CheckLocationName(*location)) return false;
    const std::string path = DiallingFileToRead();
    const StatusCode status = IsMissing(path) ? kKeyMissing : ReadDialLocation(path, location, properties);
    if (status == kDone || status == kNumbersNotEdited) return true;
    if (status == kKeyMissing && location) {
        SelectLocation(properties, *location);
        return properties.Mode != kDialLocation || AskWarning(kMakeNewLocation, *location);
    }
    ShowError(status == kKeyMissing ? kNoSelectedLocation : kUnableToOpenFile, path);
    return status == kKeyMissing ? Refuse(FillMessage(kSelectLocation)) : false;
}

std::optional<std::string> StoreDialValue(DialProperties& properties, std::string_view name, std::string_view value) {
    const auto isIt = [name](const auto& key) { return EqualFolded(key.Name(), name); };
    const auto key = std::ranges::find_if(DialKeys(), isIt);
    const auto* const list = std::ranges::find_if(kDialListKeys, isIt);
    if (key == DialKeys().end() && list == std::end(kDialListKeys))
        return FillMessage(kNoSuchKey, name, value, "locations");
    if (properties.Mode != kDialLocation)
        return FormatText("%s: \"%s\" - the location %s has no keys", name, value, SelectedLocation(properties));
    if (list != std::end(kDialListKeys)) return StorePrefixes(*list, value, properties);
    if (auto fault = key->FaultIn(properties, value)) return fault;
    key->Store(properties, value);
    return {};
}

bool EnterDialValue(DialProperties& properties, std::string_view key, std::string_view value) {
    const auto fault = StoreDialValue(properties, key, value);
    return !fault || Refuse(*fault);
}

bool AddDialLocation(std::string_view name, const EnteredValues& values) {
    std::optional<DialLocations> locations = ReadDialLocations();
    if (!locations || !AddPlace(*locations, name)) return false;
    DialProperties& added = locations->Places.back().Now;
    const auto enter = [&](const EnteredValue& one) { return EnterDialValue(added, one.Key, one.Value); };
    return std::ranges::all_of(values, enter) && SaveDialLocations(*locations);
}

bool RenameDialLocation(std::string_view name, std::string_view newName) {
    std::optional<DialLocations> locations = ReadDialLocations();
    const auto place = locations ? FindPlace(*locations, name) : std::nullopt;
    return place && RenamePlace(*locations, *place, newName) && SaveDialLocations(*locations);
}

bool DeleteDialLocation(std::string_view name) {
    std::optional<DialLocations> locations = ReadDialLocations();
    const auto place = locations ? FindPlace(*locations, name) : std::nullopt;
    if (place && locations->Chosen == place) return Refuse(FillMessage(kDeletesSelected, name));
    return place && DeletePlace(*locations, *place) && SaveDialLocations(*locations);
}

KeyHelp HelpOfDialKey(std::string_view name) {
    const auto isIt = [name](const auto& key) { return key.Name() == name; };
    const auto key = std::ranges::find_if(DialKeys(), isIt);
    if (key != DialKeys().end()) return {std::string(key->Key), DescribeValues(key->Rule), key->Text(DialProperties())};
    const DialListKey& list = *std::ranges::find_if(kDialListKeys, isIt);
    return {std::string(list.Key),
            FormatText("up to %d prefixes of at most %d characters, a line for each", DialPrefixes::kLimit,
                       DialPrefix::kLimit),
            ""};
}

std::string DialledByText() {
    const std::string path = DiallingFileToRead();
    if (IsMissing(path)) return FillMessage(kNoDiallingProperties);
    DialProperties own;
    const StatusCode status = ReadDialLocation(path, std::nullopt, own);
    if (status == kNumbersNotEdited) return FillMessage(kDialledBy, FillMessage(kNoEditingWords));
    if (status == kKeyMissing) return FillMessage(kNoSelectedLocation, path);
    if (status != kDone) return FillMessage(kUnableToOpenFile, path);
    if (own.Mode == kDialTelephony) return FillMessage(kDialledBy, FillMessage(kTelephonyWords));
    if (own.Country.IsEmpty()) return FillMessage(kDialledBy, own.Description);
    const std::string_view blank = own.Area.IsEmpty() ? "" : " ";
    return FillMessage(kDialledBy, FormatText("%s (+%s%s%s)", own.Description, own.Country, blank, own.Area));
}

} // namespace bv
