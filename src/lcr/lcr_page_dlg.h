// The page of the server's settings that switches least-cost routing on and off and opens its editors.
#pragma once

#include <windows.h>

#include <memory>

#include "dialogs/area_page_dlg.h"
#include "lcr/router_dlg.h"

namespace bv {

std::unique_ptr<AreaPage> MakeLcrPage(FieldRecord& options, const LcrServices& services);

INT_PTR CALLBACK ConfigLcrDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
