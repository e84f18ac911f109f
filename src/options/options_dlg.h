// The dialog of the server's settings.
#pragma once

#include <windows.h>

#include <span>

#include "dialogs/area_page_dlg.h"

namespace bv {

// Opens it over its owner, with the pages of further areas in the order of OptionPage; not without settings that could
// be read.
void ConfigureOptions(HWND owner, std::span<const AreaPageMaker> areas = {});

INT_PTR CALLBACK ConfigOptionsDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
