// All listed devices at once, with what the lists show of their settings: SETUP.INI is opened and read a single time.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "devices/device_settings.h"
#include "shell/row_table.h"

namespace bv {

struct DeviceSummary {
    DeviceName Name;
    DeviceDescription Description; // as listed
    std::string Type;              // as its paragraph has it; empty without either
    FixedText<100> Port;
    FixedText<100> PhoneNum;
    FixedText<100> Organisation;
    FixedText<8> RecdUser;
};

// The devices of "[DEVICES]" in file order. None after 413 or 9011.
std::optional<std::vector<DeviceSummary>> ReadDeviceSummaries();

// The columns of the list: name, description, type in words, port, fax number, who gets what is received.
enum DeviceColumn {
    kDeviceNameColumn,
    kDeviceDescriptionColumn,
    kDeviceTypeColumn,
    kDevicePortColumn,
    kDevicePhoneColumn,
    kDeviceReceiverColumn,
    kDeviceColumns
};

// The same as rows of a list, network connections only when asked for. A device without a type shows 9288, and one that
// receives for nobody 9285. False, without rows, after 413 or 9011.
enum class NetworkDevices { Hidden, Shown };
bool ReadDeviceRows(NetworkDevices network, RowTable& rows);

// The organisation of the first listed fax device that has one, which is taken for the server's.
std::string DefaultOrganisation(const std::vector<DeviceSummary>& devices);

// Another device that has the port; none for no port.
const DeviceSummary* FindByPort(const std::vector<DeviceSummary>& devices, std::string_view port,
                                std::string_view except);

// The first of the type's ports that no device has; of none are free, and for a printer, empty.
std::string FirstFreePort(const std::vector<DeviceSummary>& devices, DeviceType type);

// The port so many places on: "COM4" two behind "COM2". One that does not end in a number is the same.
std::string PortBehind(std::string_view port, int places);

} // namespace bv
