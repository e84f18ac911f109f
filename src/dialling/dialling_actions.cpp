#include "dialling/dialling_actions.h"

#include <algorithm>

#include "ctlfile/whole_file.h"
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
    if (prefix.empty()) return FormatText("%s: an empty prefix would begin every number", list.Name());
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
        if (prefixes.IsFull())
            return FormatText("%s: \"%s\" is one more than the %d prefixes that there can be", list.Name(), prefix,
                              DialPrefixes::kLimit);
        prefixes.Add(prefix);
        text.remove_prefix(isLast ? text.size() : prefix.size() + 1);
        if (!isLast) text = SkipBlanks(text);
    }
    properties.*list.List = prefixes;
    return {};
}

// Sets a key of a location; the reason when it cannot be.
std::optional<std::string> StoreKey(std::string_view name, std::string_view value, DialProperties& properties) {
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

bool EnterDialValue(DialProperties& properties, std::string_view key, std::string_view value) {
    const auto fault = StoreKey(key, value, properties);
    return !fault || Refuse(*fault);
}

} // namespace bv
