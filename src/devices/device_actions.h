// What a person does to a device, whole: the checks, the question, the changes and the status text that goes with them.
// Each returns whether the device was changed as asked; when not, a message has said why (except a question answered
// No). A change of SETUP.INI sets SettingsChanged.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "devices/device_list.h"

namespace bv {

// One new device, or several of numbers in a row.
struct NewDevices {
    std::string Stem;
    int First = 1;
    int Count = 1;
    int Done = 0; // of them are in the lists

    [[nodiscard]] std::string Name(int index) const { return DeviceNameOf(Stem, First + index); }
    [[nodiscard]] std::string Names() const; // "GAMMA-2", "GAMMA-2 to GAMMA-4"
    [[nodiscard]] int Last() const { return First + Count - 1; }
};
inline constexpr int kMostNewDevices = 24;

// A device number, or how many are to be added, as a person types it. None after 9286 or 9270.
std::optional<int> ParseDeviceNumber(std::string_view text);
std::optional<int> ParseDeviceCount(std::string_view text);

// Whether those that are still to be done can have their names. False after 9286, "Device name '%s' invalid", "Device
// %s is already installed" or, for several, 9287.
bool CheckNewDevices(const NewDevices& devices);

// What a new device begins with: the settings of the listed one that it is to be like, or those of a new one in the
// server's organisation; and the first port that no device has. None after a message.
std::optional<Device> BeginningOf(DeviceType type, std::string_view like);

// When the settings of a deleted device of that name and type are still in the file, asks 9280 whether the new one is
// to have them; otherwise they are written over. False only after 413 or 9011.
bool OfferEarlierSettings(std::string_view name, Device& device);

// Asked, with how many are done, whether to go on.
using AddProgress = std::function<bool(int done)>;

// Adds those that are still to be done, of several each with the next port and its number behind the description: the
// settings, and only when they are written the lines in the lists. Status 459 of each. What can be checked is checked
// for all of them first; another device with a port that was given, and a file that is not in its directory, are asked
// about. Stops at the first that fails: Done says how many are added.
bool AddDevices(NewDevices& devices, const Device& first, const AddProgress& goOn);

// Saves a device that has been read and edited; a description that was given or edited in the lists, too. Status 461 or
// 460; nothing changed writes and says nothing. Asks as AddDevices does.
bool ChangeDevice(std::string_view name, Device& device);

// The same for what was edited since it was opened, on top of what the file has now: keys that only somebody else has
// changed stay as they are there, of a key that both have changed 9204 asks whose value it shall be.
bool ChangeDevice(std::string_view name, const Device& opened, const Device& edited);

// The type of a device that is to be edited; none after a message: it is not there any more, is the network's, or has a
// type that this program does not know. The place is empty for one that is to be repaired first.
bool FindEditable(std::string_view name, std::optional<DeviceType>& type);

// Makes a device of that type out of one that is listed but has no paragraph or no type in it: what is missing becomes
// as for a new device, or as an old paragraph without the keys means it. Refused for scanners and for a device with a
// type, known or not. Status 461 or 460.
bool RepairDevice(std::string_view name, DeviceType type);

// Asks 5193, or 9210 for several, and takes devices out of the lists; their settings stay in the file. Status 463 or
// 462, and 9229 at the end of several.
bool DeleteDevice(std::string_view name);
bool DeleteDevices(std::span<const std::string> names);

// Whether all of them are in the list, and none is the network's. False after a message.
bool CheckRemovable(std::span<const std::string> names);

// Deletes them without a question, as one was asked before.
bool RemoveDevices(std::span<const std::string> names);

// Status 472, and the warning 9283 when no fax device is listed, to be said once devices have been configured.
void WarnWithoutFaxDevice();

} // namespace bv
