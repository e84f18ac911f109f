#include "devices/device_actions.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "ctlfile/merge.h"
#include "ctlfile/paths.h"
#include "ctlfile/whole_file.h"
#include "devices/device_messages.h"
#include "devices/device_rows.h"
#include "platform/ascii.h"
#include "platform/files.h"
#include "users/receiver.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {
namespace {

bool Refuse(const MessageWith<1>& message, std::string_view name) {
    ShowError(message, name);
    return false;
}

// Whether the person has given the key another value; a new device's are all given.
bool IsEdited(const Device& device, std::string_view keyName) {
    const DeviceKey* key = FindDeviceKey(device.Type, keyName);
    return key != nullptr && StoredValueOf(device, *key).value_or("") != key->Field.Text(device.Settings);
}

// What holds for new and changed devices alike. A receiver that was there already may be anybody.
bool CheckDevice(std::string_view name, Device& device) {
    DeviceSettings& settings = device.Settings;
    if (settings.Type.IsEmpty()) settings.Type = TypeWord(device.Type);
    if (ParseDeviceType(settings.Type) != device.Type) return Refuse("The type of device %s cannot be changed", name);
    return !IsEdited(device, "RecdUser") || CheckReceiver(settings.RecdUser);
}

// The device as SETUP.INI has it; false after a message when it is not listed, or stands for the network.
bool FindForChange(std::string_view name, FoundDevice& found) {
    if (IsNetworkDevice(name)) return Refuse("Device %s is the network connection and cannot be changed", name);
    if (!FindDevice(name, found)) return false;
    return found.IsListed || Refuse("Device %s not found", name);
}

bool UpdateLists(std::string_view name, const Device& device, const FoundDevice& found) {
    const DevicePlaces places = {found.IsPrinter || device.Type == DeviceType::Printer, found.IsScanner};
    return UpdateDeviceList(name, device.Settings.Description, places);
}

bool CheckName(std::string_view name) {
    return (IsValidDeviceName(name) && !IsNetworkDevice(name)) || Refuse("Device name '%s' invalid", name);
}

bool AgreeToPort(std::string_view name, const Device& device) {
    const auto devices = ReadDeviceSummaries();
    if (!devices) return false;
    const DeviceSummary* other = FindByPort(*devices, device.Settings.Port, name);
    return other == nullptr || AskContinue("Port %s is used by device %s as well", device.Settings.Port, other->Name);
}

// A path is the server's: this computer knows that the file is missing only where it sees the directory.
bool AgreeToFile(const Device& device) {
    const std::string path = device.Settings.BTConfigFile.String();
    if (path.empty() || !IsMissing(path) || !platform::Files().Find(std::string(DirectoryPart(path)))) return true;
    return AskContinue("File %s is not there", path);
}

// What a person has entered that may be meant all the same.
bool AgreeToValues(std::string_view name, const Device& device) {
    const bool hasOtherPort = device.IsPortGiven && IsEdited(device, "Port") && !device.Settings.Port.IsEmpty();
    if (hasOtherPort && !AgreeToPort(name, device)) return false;
    return !IsEdited(device, "BTConfigFile") || AgreeToFile(device);
}

bool Install(std::string_view name, Device& device) {
    if (!WriteDeviceSettings(name, device)) return false;
    if (!UpdateDeviceList(name, device.Settings.Description, {.Printers = device.Type == DeviceType::Printer}))
        return false;
    ShowStatus(kAddedDevice, name);
    return true;
}

std::optional<int> NumberWithin(std::string_view text, int last, const MessageWith<1>& fault) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc() && end == text.data() + text.size() && number >= 1 && number <= last) return number;
    ShowError(fault, text);
    return {};
}

// The device of that index among the new ones. None after a message: its description is too long.
std::optional<Device> NthOf(const NewDevices& devices, const Device& first, int index) {
    Device device = first;
    if (devices.Count == 1) return device;
    if (index > 0) device.AsRead = NewDevice(first.Type).AsRead;
    device.Settings.Port = PortBehind(first.Settings.Port, index);
    device.IsPortGiven = true;
    if (first.Settings.Description.IsEmpty()) return device;
    const std::string description = FormatText("%s %d", first.Settings.Description, index + 1);
    if (!EnterDeviceValue(device, "Description", description)) return {};
    return device;
}

void TakeMine(const DeviceKey& key, std::string_view name, const Device& opened, const Device& edited, Device& now) {
    const std::string mine = key.Field.Text(edited.Settings);
    const MergedKey texts{key.Field.Name(), key.Field.Text(opened.Settings), mine, key.Field.Text(now.Settings)};
    if (TakesMine(FormatText("Device %s", name), texts)) key.Field.Store(now.Settings, mine);
}

bool Remove(std::string_view name) {
    const bool deleted = UpdateDeviceList(name, {});
    ShowStatus(deleted ? kDeletedDevice : kUnableToDeleteDevice, name);
    return deleted;
}

} // namespace

std::string NewDevices::Names() const {
    return Count <= 1 ? Name(0) : FormatText("%s to %s", Name(0), Name(Count - 1));
}

std::optional<int> ParseDeviceNumber(std::string_view text) {
    return NumberWithin(text, kLastDeviceNumber, kDeviceNumberRange);
}

std::optional<int> ParseDeviceCount(std::string_view text) {
    return NumberWithin(text, kMostNewDevices, kHowManyDevices);
}

bool CheckNewDevices(const NewDevices& devices) {
    if (devices.Last() > kLastDeviceNumber) return Refuse(kDeviceNumberRange, std::to_string(devices.Last()));
    const std::optional<NameSet> taken = ReadDeviceNames();
    if (!taken) return false;
    for (int i = devices.Done; i < devices.Count; ++i) {
        const std::string name = devices.Name(i);
        if (devices.Stem.empty()) return Refuse("Device name '%s' invalid", name);
        if (!CheckName(name)) return false;
        if (!taken->Has(name)) continue;
        if (devices.Count == 1) return Refuse("Device %s is already installed", name);
        ShowError(kNumbersNotFree, devices.First + devices.Done, devices.Last(), devices.Stem);
        return false;
    }
    return true;
}

std::optional<Device> BeginningOf(DeviceType type, std::string_view like) {
    const auto devices = ReadDeviceSummaries();
    if (!devices) return {};
    Device device = NewDevice(type, type == DeviceType::Printer ? std::string() : DefaultOrganisation(*devices));
    if (!like.empty()) {
        FoundDevice found;
        if (!FindForChange(like, found)) return {};
        if (!ReadDeviceSettings(like, type, device)) return {};
        device.AsRead = NewDevice(type).AsRead;
        device.Settings.Type = TypeWord(type);
    }
    if (type != DeviceType::Printer) device.Settings.Port = FirstFreePort(*devices, type);
    return device;
}

bool OfferEarlierSettings(std::string_view name, Device& device) {
    FoundDevice found;
    if (!FindDevice(name, found)) return false;
    if (found.Type != device.Type || !AskQuestion(kUseEarlierSettings, name)) return true;
    return ReadDeviceSettings(name, device.Type, device);
}

bool AddDevices(NewDevices& devices, const Device& first, const AddProgress& goOn) {
    if (!CheckNewDevices(devices)) return false;
    std::vector<Device> all;
    for (int i = 0; i < devices.Count; ++i) {
        std::optional<Device> device = NthOf(devices, first, i);
        if (!device || !CheckDevice(devices.Name(i), *device)) return false;
        if (i >= devices.Done && !AgreeToValues(devices.Name(i), *device)) return false;
        all.push_back(std::move(*device));
    }
    for (; devices.Done < devices.Count; ++devices.Done) {
        Device& device = all[static_cast<std::size_t>(devices.Done)];
        if (!goOn(devices.Done) || !Install(devices.Name(devices.Done), device)) return false;
    }
    return true;
}

bool ChangeDevice(std::string_view name, Device& device) {
    FoundDevice found;
    if (!FindForChange(name, found) || !CheckDevice(name, device) || !AgreeToValues(name, device)) return false;
    // A description that nobody gave or edited stays as it is listed, whatever the paragraph says.
    const bool isDescribed = device.IsDescribed || IsEdited(device, "Description");
    const auto isOther = [&](const DeviceDescription& listed) { return listed != device.Settings.Description; };
    const bool relist = isDescribed && std::ranges::any_of(found.ListedAs, isOther);
    if (!IsChanged(device) && !relist) return true;
    const bool changed = WriteDeviceSettings(name, device) && (!relist || UpdateLists(name, device, found));
    ShowStatus(changed ? kModifiedDevice : kUnableToModifyDevice, name);
    return changed;
}

bool ChangeDevice(std::string_view name, const Device& opened, const Device& edited) {
    if (edited.Settings == opened.Settings) return true;
    FoundDevice found;
    if (!FindForChange(name, found)) return false;
    Device now;
    if (!ReadDeviceSettings(name, edited.Type, now)) return false;
    for (const DeviceKey& key : DeviceKeys())
        if (key.IsOf(edited.Type)) TakeMine(key, name, opened, edited, now);
    // Also when it is in the paragraph already, and only the lists could not be written.
    now.IsDescribed = edited.Settings.Description != opened.Settings.Description;
    now.IsPortGiven = edited.Settings.Port != opened.Settings.Port;
    return ChangeDevice(name, now);
}

bool FindEditable(std::string_view name, std::optional<DeviceType>& type) {
    FoundDevice found;
    if (!FindForChange(name, found)) return false;
    type = found.Type;
    if (type || found.TypeText.empty()) return true;
    return Refuse("Device %s has no type that this program knows", name);
}

bool RepairDevice(std::string_view name, DeviceType type) {
    FoundDevice found;
    if (!FindForChange(name, found)) return false;
    if (found.IsScanner) return Refuse("Device %s is a scanner", name);
    if (found.Type || !found.TypeText.empty()) {
        constexpr MessageWith<2> kKnown = "Device %s has the type %s already";
        constexpr MessageWith<2> kUnknown = "Device %s has the type %s, which this program does not know";
        ShowError(found.Type ? kKnown : kUnknown, name, found.TypeText);
        return false;
    }
    Device device;
    if (!ReadDeviceSettings(name, type, device)) return false;
    device.Settings.Type = TypeWord(type);
    if (device.Settings.Description.IsEmpty()) device.Settings.Description = found.Description;
    const bool relist = type == DeviceType::Printer && !found.IsPrinter;
    const bool repaired = WriteDeviceSettings(name, device) &&
                          (!relist || UpdateDeviceList(name, found.ListedAs.front(), {.Printers = true}));
    ShowStatus(repaired ? kModifiedDevice : kUnableToModifyDevice, name);
    return repaired;
}

bool CheckRemovable(std::span<const std::string> names) {
    FoundDevice found;
    return std::ranges::all_of(names, [&](const std::string& name) { return FindForChange(name, found); });
}

bool RemoveDevices(std::span<const std::string> names) {
    if (!std::ranges::all_of(names, Remove)) return false;
    if (names.size() > 1) ShowStatus(kDeletedMany, names.size(), "devices");
    return true;
}

bool DeleteDevice(std::string_view name) {
    FoundDevice found;
    return FindForChange(name, found) && AskDelete("device", name, found.Description) && Remove(name);
}

bool DeleteDevices(std::span<const std::string> names) {
    if (names.size() == 1) return DeleteDevice(names.front());
    return CheckRemovable(names) && AskDeleteMany(names.size(), "devices") && RemoveDevices(names);
}

void WarnWithoutFaxDevice() {
    std::size_t count = 0;
    if (CountDevices(count, CountedDevices::FaxOnly) && count == 0) ShowWarning(kNoFaxDevice);
}

} // namespace bv
