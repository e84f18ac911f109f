// What a person does to a device, whole: the checks, the question, the changes and the status text that goes with them.
// Each returns whether the device was changed as asked; when not, a message has said why (except a question answered
// No). A change of SETUP.INI sets SettingsChanged.
#pragma once

#include <string_view>

#include "devices/device_list.h"

namespace bv {

// Adds a new device under a name that is valid, in none of the lists and not the network's: its settings, and only when
// they are written its lines in the lists. Status 459.
bool AddDevice(std::string_view name, Device& device);

// Saves a device that has been read and edited; a description that was given or edited in the lists, too. Status 461 or
// 460; nothing changed writes and says nothing.
bool ChangeDevice(std::string_view name, Device& device);

// Makes a device of that type out of one that is listed but has no paragraph or no type in it: what is missing becomes
// as for a new device, or as an old paragraph without the keys means it. Refused for scanners and for a device with a
// type, known or not. Status 461 or 460.
bool RepairDevice(std::string_view name, DeviceType type);

// Asks 5193 and takes a device out of the lists; its settings stay in the file. Status 463 or 462.
bool DeleteDevice(std::string_view name);

} // namespace bv
