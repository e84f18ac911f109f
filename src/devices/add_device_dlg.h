// The box in which devices are added, and the one in which a device that has no type gets one.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "devices/device_settings.h"

namespace bv {

// Asks what is to be added, and opens its details, which add it; like a listed device, or a new one for no name. The
// name of the first device that was added; none when none was.
std::optional<std::string> AddDeviceByDialog(HWND owner, const std::string& like);

// Asks for the type of a listed device. None when it is cancelled.
std::optional<DeviceType> AskDeviceType(HWND owner, const std::string& name);

INT_PTR CALLBACK AddDeviceDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK DeviceTypeDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
