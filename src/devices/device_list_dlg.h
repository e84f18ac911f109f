// The dialog of the server's devices.
#pragma once

#include <windows.h>

#include "dialogs/services_dlg.h"

namespace bv {

// Runs the dialog over its owner.
void ConfigureDevices(HWND owner, const DialogServices& services);

INT_PTR CALLBACK ConfigDevicesDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
