// The server's devices.
#include <algorithm>
#include <optional>

#include "console/assignments.h"
#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "console/use_change.h"
#include "devices/device_actions.h"
#include "devices/device_list.h"
#include "devices/device_settings.h"
#include "platform/ascii.h"
#include "users/user_list.h"
#include "whereused/where_used.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";

int List(Session& session, const Arguments& arguments) {
    std::vector<ListedDevice> devices;
    if (!ReadDeviceList(devices)) return kExitRefused;
    std::vector<Record> records;
    for (const auto& [name, description] : devices) {
        if (IsNetworkDevice(name) && !arguments.Has("--network")) continue;
        if (!IsNetworkDevice(name) && !IsFaxDevice(name) && arguments.Has("--fax")) continue;
        records.push_back({{"Name", name.String()}, {"Description", description.String()}});
    }
    PrintRecords(session, records);
    return kExitDone;
}

// Reads a listed device; the name becomes as its paragraph has it, in upper case. 0 or the exit status, a message
// shown.
int ReadListed(const Session& session, std::string& name, Device& device) {
    FoundDevice found;
    if (!FindDevice(name, found)) return kExitRefused;
    if (!found.IsListed) return session.Refuse("Device " + name + " not found");
    if (!found.Type) return session.Refuse("Device " + name + " has no type that this program knows");
    name = UpperText(name);
    return ReadDeviceSettings(name, *found.Type, device) ? 0 : kExitRefused;
}

int Show(Session& session, const Arguments& arguments) {
    std::string name = arguments["NAME"];
    Device device;
    session.SayWhatIsDone(false); // what is read is no news here
    if (const int fault = ReadListed(session, name, device)) return fault;
    Record shown = {{"Name", name}};
    for (const DeviceKey& key : DeviceKeys()) {
        if (key.IsOf(device.Type)) shown.emplace_back(key.Field.Name(), key.Field.Text(device.Settings));
    }
    PrintRecord(session, shown);
    return kExitDone;
}

// Puts the given values into the settings; 0 or the exit status, a message shown.
int Enter(const Session& session, const Arguments& arguments, Device& device) {
    auto assignments = ReadAssignments(session, arguments, kAssignments);
    if (!assignments) return kExitWrongUsage;
    DropShown(*assignments, "Name", arguments["NAME"]);
    const auto isEntered = [&](const Assignment& given) { return EnterDeviceValue(device, given.Key, given.Value); };
    return std::ranges::all_of(*assignments, isEntered) ? 0 : kExitRefused;
}

// The type that is asked for; none after a message.
std::optional<DeviceType> GivenType(const Session& session, const Arguments& arguments) {
    const std::optional<DeviceType> type = ParseDeviceType(arguments["TYPE"]);
    if (!type)
        session.Streams.PrintNotice("Type: \"" + arguments["TYPE"] + "\" is not FCLASS, GAMMA, BTROUT or PRINT\n");
    return type;
}

// How many are to be added; none after a message.
std::optional<int> GivenCount(const Arguments& arguments) {
    return arguments.Has("--count") ? ParseDeviceCount(arguments["--count"]) : 1;
}

// Adds devices that begin as the one given, under the first free numbers of the stem, and prints their names.
int AddNumbered(Session& session, const Arguments& arguments, const std::string& stem, Device device) {
    if (const int fault = Enter(session, arguments, device)) return fault;
    const std::optional<int> count = GivenCount(arguments);
    const std::optional<int> first = count ? FreeNumbers(stem, *count) : std::nullopt;
    if (!first) return kExitRefused;
    NewDevices devices{stem, *first, *count};
    const int status = Perform(session, [&] { return AddDevices(devices, device, [](int) { return true; }); });
    for (int i = 0; i < devices.Done; ++i)
        if (!session.Json && !session.DryRun) PrintLines(session, {devices.Name(i)});
    return status;
}

int Add(Session& session, const Arguments& arguments) {
    const std::optional<DeviceType> type = GivenType(session, arguments);
    if (!type) return kExitRefused;
    std::optional<Device> device = BeginningOf(*type, {});
    if (!device) return kExitRefused;
    // One device has the port that a new one has; several begin with the first that is free.
    if (!arguments.Has("--count")) device->Settings.Port = NewDevice(*type).Settings.Port;
    return AddNumbered(session, arguments, arguments["STEM"], *device);
}

int Clone(Session& session, const Arguments& arguments) {
    std::string name = arguments["NAME"];
    Device like;
    if (const int fault = ReadListed(session, name, like)) return fault;
    const std::optional<Device> device = BeginningOf(like.Type, name);
    if (!device) return kExitRefused;
    return AddNumbered(session, arguments, std::string(StemOf(name)), *device);
}

int Set(Session& session, const Arguments& arguments) {
    std::string name = arguments["NAME"];
    Device device;
    if (const int fault = ReadListed(session, name, device)) return fault;
    if (const int fault = Enter(session, arguments, device)) return fault;
    return Perform(session, [&] { return ChangeDevice(name, device); });
}

int Repair(Session& session, const Arguments& arguments) {
    const std::optional<DeviceType> type = GivenType(session, arguments);
    if (!type) return kExitRefused;
    return Perform(session, [&] { return RepairDevice(UpperText(arguments["NAME"]), *type); });
}

// What users and options name as their printer is changed as is said, or asked about first.
int Delete(Session& session, const Arguments& arguments) {
    const std::string& name = arguments["NAME"];
    if (HasSeveralUseChanges(arguments)) return session.WrongUsage(kOneUseChange);
    const auto goOn = [](std::size_t) { return true; };
    return Perform(session, [&] {
        if (const auto change = ChosenUseChange(arguments))
            return DeleteWithUses(NamedThing::Printer, {name}, *change, goOn);
        return AgreeToDeletion(NamedThing::Printer, {name}) && DeleteDevice(name);
    });
}

constexpr Parameter kName = {"NAME", "Name as listed, in any case"};
constexpr Parameter kCount = {"--count", "Add so many (up to 24), of numbers and ports in a row",
                              ParameterKind::Option};
constexpr Parameter kType = {"TYPE", "FCLASS (modem), GAMMA, BTROUT (boards) or PRINT (printer)"};

constexpr Verb kVerbs[] = {
    {.Name = "list",
     .Help = "List the devices with their descriptions",
     .Parameters = {{{"--fax", "Only those that fax, not the printers", ParameterKind::Flag},
                     {"--network", "Also those that stand for the network connection", ParameterKind::Flag}}},
     .Run = Located<List>},
    {.Name = "show",
     .Help = "Show every key of a device with the value that is in force",
     .Parameters = {{kName}},
     .Example = "MODEM-1",
     .Run = Located<Show>},
    {.Name = "add",
     .Help = "Add a device, or several, under the first free numbers, and print their names",
     .Parameters = {{{"STEM", "The name without its number: MODEM makes MODEM-1 to MODEM-99"},
                     kType,
                     {kAssignments, "Keys and values as 'show' prints them; the others are a new device's",
                      ParameterKind::ZeroOrMore},
                     kCount}},
     .Example = "MODEM FCLASS 'Description=Second line' Port=COM2",
     .Change = Located<Add>},
    {.Name = "clone",
     .Help = "Add a device like another one, with the next number and the first free port, and print its name",
     .Parameters = {{kName,
                     {kAssignments, "Keys and values that differ, as 'show' prints them", ParameterKind::ZeroOrMore},
                     kCount}},
     .Example = "GAMMA-1 --count 3",
     .Change = Located<Clone>},
    {.Name = "set",
     .Help = "Change keys of a device",
     .Parameters = {{kName, {kAssignments, "Keys and values as 'show' prints them", ParameterKind::OneOrMore}}},
     .Example = "MODEM-1 RecdUser=RECEPT Speaker=ON",
     .Change = Located<Set>},
    {.Name = "repair",
     .Help = "Give a listed device that has no paragraph, or no type in it, a type and what else is missing",
     .Parameters = {{kName, kType}},
     .Example = "MODEM-1 FCLASS",
     .Change = Located<Repair>},
    {.Name = "delete",
     .Help = "Take a device out of the lists; its settings stay in the file, and places that print on it are asked "
             "about, or changed as is said",
     .Parameters = {{kTakeOut, kReplaceBy, kLeave, kName}},
     .Example = "PRINT-2 --replace-by PRINT-1",
     .Change = Located<Delete>},
};

} // namespace

const Area kDeviceArea = {"device", "The fax devices and printers of the server", kVerbs};

} // namespace bv::console
