#include "devices/device_actions.h"

#include <algorithm>

#include "devices/device_messages.h"
#include "platform/ascii.h"
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

} // namespace

bool AddDevice(std::string_view name, Device& device) {
    if (!IsValidDeviceName(name) || IsNetworkDevice(name)) return Refuse("Device name '%s' invalid", name);
    FoundDevice found;
    if (!FindDevice(name, found)) return false;
    if (found.IsListed || found.IsPrinter || found.IsScanner) return Refuse("Device %s is already installed", name);
    if (!CheckDevice(name, device) || !WriteDeviceSettings(name, device)) return false;
    if (!UpdateDeviceList(name, device.Settings.Description, {.Printers = device.Type == DeviceType::Printer}))
        return false;
    ShowStatus(kAddedDevice, name);
    return true;
}

bool ChangeDevice(std::string_view name, Device& device) {
    FoundDevice found;
    if (!FindForChange(name, found) || !CheckDevice(name, device)) return false;
    // A description that nobody gave or edited stays as it is listed, whatever the paragraph says.
    const bool isDescribed = device.IsDescribed || IsEdited(device, "Description");
    const auto isOther = [&](const DeviceDescription& listed) { return listed != device.Settings.Description; };
    const bool relist = isDescribed && std::ranges::any_of(found.ListedAs, isOther);
    if (!IsChanged(device) && !relist) return true;
    const bool changed = WriteDeviceSettings(name, device) && (!relist || UpdateLists(name, device, found));
    ShowStatus(changed ? kModifiedDevice : kUnableToModifyDevice, name);
    return changed;
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

bool DeleteDevice(std::string_view name) {
    FoundDevice found;
    if (!FindForChange(name, found)) return false;
    if (!AskDelete("device", name, found.Description)) return false;
    const bool deleted = UpdateDeviceList(name, {});
    ShowStatus(deleted ? kDeletedDevice : kUnableToDeleteDevice, name);
    return deleted;
}

} // namespace bv
