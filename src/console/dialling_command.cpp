// The dialling properties: those of the file, and those of the system's telephony.
#include <algorithm>
#include <optional>

#include "console/assignments.h"
#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "dialling/dial_locations.h"
#include "dialling/dialling_actions.h"
#include "dialling/dialling_file.h"
#include "dialling/number_converter.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";
constexpr std::string_view kLocation = "Location";
constexpr std::string_view kName = "NAME";
constexpr std::string_view kNewName = "NEWNAME";

void AddProperties(const DialProperties& properties, Record& record) {
    for (const DialKey& field : DialKeys()) record.emplace_back(field.Name(), field.Text(properties));
    for (const DialListKey& list : kDialListKeys) record.emplace_back(list.Name(), PrefixesText(properties.*list.List));
}

int Show(Session& session, const Arguments&) {
    if (!LoadDialProperties()) return kExitRefused;
    const DialProperties& properties = GetDialProperties();
    Record record = {{std::string(kLocation), std::string(SelectedLocation(properties))}};
    if (properties.Mode == kDialLocation) AddProperties(properties, record);
    PrintRecord(session, record);
    return kExitDone;
}

int ShowTelephonyLocation(Session& session, const Arguments&) {
    const TelephonyUse telephony("BVCTL");
    DialProperties properties;
    const StatusCode status = telephony.Read(&properties, PathOf(ServerFile::Countries));
    if (status != kDone) return session.Refuse(TapiFailureText(status));
    Record record = {{"Description", properties.Description.String()}};
    AddProperties(properties, record);
    PrintRecord(session, record);
    return kExitDone;
}

int ListLocations(Session& session, const Arguments&) {
    const std::optional<DialLocations> locations = ReadDialLocations();
    if (!locations) return kExitRefused;
    std::vector<Record> records;
    for (std::size_t i = 0; i < locations->Places.size(); ++i) {
        const DialProperties& own = locations->Places[i].Now;
        records.push_back({{"Location", ShownName(*locations, i)},
                           {"Country", own.Country.String()},
                           {"Area", own.Area.String()},
                           {"Selected", locations->Chosen == i}});
    }
    PrintRecords(session, records);
    return kExitDone;
}

int AddLocation(Session& session, const Arguments& arguments) {
    const auto assignments = ReadAssignments(session, arguments, kAssignments);
    if (!assignments) return kExitWrongUsage;
    return Perform(session, [&] { return AddDialLocation(arguments[kName], *assignments); });
}

int RenameLocation(Session& session, const Arguments& arguments) {
    return Perform(session, [&] { return RenameDialLocation(arguments[kName], arguments[kNewName]); });
}

int DeleteLocation(Session& session, const Arguments& arguments) {
    return Perform(session, [&] { return DeleteDialLocation(arguments[kName]); });
}

int Set(Session& session, const Arguments& arguments) {
    const auto assignments = ReadAssignments(session, arguments, kAssignments);
    if (!assignments) return kExitWrongUsage;
    std::optional<std::string> location;
    for (const auto& [key, value] : *assignments)
        if (EqualFolded(key, kLocation)) location = value;
    const auto change = [&] {
        DialProperties properties;
        if (!SelectForChange(location, properties)) return false;
        for (const auto& [key, value] : *assignments)
            if (!EqualFolded(key, kLocation) && !EnterDialValue(properties, key, value)) return false;
        return WriteDiallingProperties(properties);
    };
    return Perform(session, [&] { return WithDiallingFileHeld(change); });
}

constexpr Parameter kKeys = {kAssignments, "Keys as 'show' prints them, and values; prefixes are parted by commas",
                             ParameterKind::ZeroOrMore};

constexpr Verb kVerbs[] = {
    {.Name = "show", .Help = "Show the selected location and its properties", .Run = Located<Show>},
    {.Name = "location list",
     .Help = "List the locations of the file: name, country, area, and whether it is selected",
     .Run = Located<ListLocations>},
    {.Name = "location add",
     .Help = "Add a location to the file; it is selected if none was",
     .Parameters = {{{kName, "Name of the new location"}, kKeys}},
     .Example = "Leeds Country=44 Area=113 NatlAccess=0 IntlAccess=00",
     .Change = Located<AddLocation>},
    {.Name = "location rename",
     .Help = "Give a location another name; the selected one stays selected",
     .Parameters = {{{kName, "Name of the location"}, {kNewName, "Its new name"}}},
     .Example = "Leeds 'Leeds stores'",
     .Change = Located<RenameLocation>},
    {.Name = "location delete",
     .Help = "Delete a location that is not selected",
     .Parameters = {{{kName, "Name of the location"}}},
     .Example = "Leeds",
     .Change = Located<DeleteLocation>},
    {.Name = "location telephony",
     .Help = "Show the telephony service's current location, which counts when the selected one is TAPI",
     .Run = Located<ShowTelephonyLocation>},
    {.Name = "set",
     .Help = "Change the selected location, or select or make another by Location=NAME. The locations TAPI and "
             "NoTelNumEdit drop all others from the file",
     .Parameters = {{{kAssignments, "Keys as 'show' prints them, and values; prefixes are parted by commas",
                      ParameterKind::OneOrMore}}},
     .Example = "Location=London Country=44 Area=171 NatlAccess=0 IntlAccess=00 DialAsLocal=181",
     .Change = Located<Set>},
};

} // namespace

const Area kDiallingArea = {"dialling", "How telephone numbers are dialled from here", kVerbs};

} // namespace bv::console
