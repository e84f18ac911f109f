// The dialling properties: those of the file, and those of the system's telephony.
#include <algorithm>
#include <optional>

#include "console/assignments.h"
#include "console/commands.h"
#include "console/dial_source.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "ctlfile/whole_file.h"
#include "dialling/dialling_file.h"
#include "platform/ascii.h"
#include "shell/format.h"
#include "shell/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";
constexpr std::string_view kLocation = "Location";

// The prefixes with commas between them.
std::string JoinPrefixes(const DialPrefixes& prefixes) {
    std::string joined;
    std::string_view separator;
    for (const DialPrefix& prefix : prefixes) {
        joined.append(separator).append(prefix);
        separator = ",";
    }
    return joined;
}

void AddProperties(const DialProperties& properties, Record& record) {
    for (const DialKey& field : DialKeys()) record.emplace_back(field.Name(), field.Text(properties));
    for (const DialListKey& list : kDialListKeys) record.emplace_back(list.Name(), JoinPrefixes(properties.*list.List));
}

int Show(Session& session, const Arguments&) {
    if (const int fault = LoadDialProperties()) return fault;
    const DialProperties& properties = GetDialProperties();
    Record record = {{std::string(kLocation), std::string(SelectedLocation(properties))}};
    if (properties.Mode == kDialLocation) AddProperties(properties, record);
    PrintRecord(session, record);
    return kExitDone;
}

int ShowTelephonyLocation(Session& session, const Arguments&) {
    const TelephonyUse telephony;
    DialProperties properties;
    const StatusCode status = telephony.Read(&properties, CountryFile());
    if (status != kDone) return session.Refuse(TapiFailureText(status));
    Record record = {{"Description", properties.Description.String()}};
    AddProperties(properties, record);
    PrintRecord(session, record);
    return kExitDone;
}

std::optional<std::string> FaultOfPrefix(const DialListKey& list, std::string_view prefix) {
    if (prefix.empty()) return FormatText("%s: an empty prefix would begin every number", list.Name());
    return FaultOfValue(list.Name(), {ValueRule::Form::Text, DialPrefix::kLimit}, prefix);
}

// Puts the prefixes of a text with commas into the list; the reason when it cannot be.
std::optional<std::string> StorePrefixes(const DialListKey& list, std::string_view text, DialProperties& properties) {
    DialPrefixes prefixes;
    while (!text.empty()) {
        const std::string_view prefix = text.substr(0, text.find(','));
        const bool isLast = prefix.size() == text.size();
        if (auto fault = FaultOfPrefix(list, isLast || prefix.size() + 1 < text.size() ? prefix : "")) return fault;
        if (prefixes.IsFull())
            return FormatText("%s: \"%s\" is one more than the %d prefixes that there can be", list.Name(), prefix,
                              DialPrefixes::kLimit);
        prefixes.Add(prefix);
        text.remove_prefix(isLast ? text.size() : prefix.size() + 1);
    }
    properties.*list.List = prefixes;
    return {};
}

// Sets a key of a location; the reason when it cannot be.
std::optional<std::string> StoreKey(const Assignment& assignment, DialProperties& properties) {
    const auto& [name, value] = assignment;
    const auto isIt = [&name = name](const auto& key) { return EqualFolded(key.Name(), name); };
    const auto key = std::ranges::find_if(DialKeys(), isIt);
    const auto* const list = std::ranges::find_if(kDialListKeys, isIt);
    if (key == DialKeys().end() && list == std::end(kDialListKeys)) return "There is no key " + name;
    if (properties.Mode != kDialLocation)
        return FormatText("%s: \"%s\" - the location %s has no keys", name, value, SelectedLocation(properties));
    if (list != std::end(kDialListKeys)) return StorePrefixes(*list, value, properties);
    if (auto fault = key->FaultOf(value)) return fault;
    key->Store(properties, value);
    return {};
}

// The properties to change: those of the location that is asked for, or of the selected one, or a new location.
bool LoadForChange(const Session& session, const std::optional<std::string>& location, DialProperties& properties) {
    const std::string path = DiallingFileToRead();
    const StatusCode status = IsMissing(path) ? StatusCode{kKeyMissing} : ReadDialLocation(path, location, properties);
    if (IsUsable(status)) return true;
    if (status == kKeyMissing && location) {
        SelectLocation(properties, *location);
        return true;
    }
    RefuseStatus(status, path);
    if (status == kKeyMissing) session.Streams.PrintNotice("Location=NAME selects one, or makes a new one\n");
    return false;
}

int Set(Session& session, const Arguments& arguments) {
    const auto assignments = ReadAssignments(session, arguments, kAssignments);
    if (!assignments) return kExitWrongUsage;
    std::optional<std::string> location;
    for (const auto& [key, value] : *assignments)
        if (EqualFolded(key, kLocation)) location = value;
    if (location == "") return session.Refuse("Location: \"\" is no name");
    if (location) {
        const ValueRule rule = {ValueRule::Form::Text, decltype(DialProperties::Description)::kLimit};
        if (const auto fault = FaultOfValue(kLocation, rule, *location)) return session.Refuse(*fault);
    }
    return Perform(session, [&] {
        DialProperties properties;
        if (!LoadForChange(session, location, properties)) return false;
        for (const Assignment& assignment : *assignments) {
            if (EqualFolded(assignment.Key, kLocation)) continue;
            if (const auto fault = StoreKey(assignment, properties)) {
                session.Streams.PrintNotice(*fault + '\n');
                return false;
            }
        }
        return WriteDiallingProperties(properties);
    });
}

constexpr Verb kVerbs[] = {
    {.Name = "show", .Help = "Show the selected location and its properties", .Run = Located<Show>},
    {.Name = "location",
     .Help = "Show the telephony service's current location, which counts when the selected one is TAPI",
     .Run = Located<ShowTelephonyLocation>},
    {.Name = "set",
     .Help = "Change the selected location, or select or make another by Location=NAME. The locations TAPI and "
             "NoTelNumEdit drop all others from the file",
     .Parameters = {{{kAssignments, "Keys as 'show' prints them, and values; prefixes are parted by commas",
                      ParameterKind::OneOrMore}}},
     .Example = "Location=London Country=44 Area=171 NatlAccess=0 IntlAccess=00 DialAsLocal=181",
     .Run = Located<Set>},
};

} // namespace

const Area kDiallingArea = {"dialling", "How telephone numbers are dialled from here", kVerbs};

} // namespace bv::console
