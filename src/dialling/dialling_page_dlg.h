// The page of the server's settings that opens the dialling properties.
#pragma once

#include <memory>

#include "dialogs/area_page_dlg.h"

namespace bv {

std::unique_ptr<AreaPage> MakeDiallingPage(FieldRecord& options);

INT_PTR CALLBACK ConfigDiallingDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
