// The details of a device, on the pages that its type has.
#pragma once

#include <windows.h>

#include <string>

#include "devices/device_actions.h"

namespace bv {

// Opens the details of a listed device and writes what is changed. One whose type the file does not say is asked for it
// first and repaired.
void EditDeviceByDialog(HWND owner, const std::string& name);

// The same for devices that are to be added, with what they begin with; adds them. Devices.Done says how many of them.
void AddDevicesByDialog(HWND owner, NewDevices& devices, const Device& beginning);

INT_PTR CALLBACK DeviceEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
