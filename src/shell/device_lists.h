// The lists of devices in SETUP.INI: "[DEVICES]", and of these the "[PRINTERS]" and "[SCANNERS]", with a line
// `Device: NAME "description"` for each. A line with a name of 12 characters or more, or without a description, is
// passed over by every reader.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "ctlfile/control_stream.h"
#include "ctlfile/fixed_text.h"

namespace bv {

using DeviceName = FixedText<11>;
using DeviceDescription = FixedText<50>;

struct ListedDevice {
    DeviceName Name;
    DeviceDescription Description;
};

inline constexpr std::string_view kDeviceList = "[DEVICES]";
inline constexpr std::string_view kPrinterList = "[PRINTERS]";
inline constexpr std::string_view kScannerList = "[SCANNERS]";
inline constexpr std::string_view kDeviceKey = "Device:";

// The device on a line of a list; none when readers pass over the line.
std::optional<ListedDevice> ParseDeviceLine(std::string_view line);

// The devices of the first list with the header, in file order.
std::vector<ListedDevice> ReadDevicesOf(ControlStream& setup, std::string_view header);

} // namespace bv
