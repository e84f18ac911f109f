// The mail gateway's page of the server's settings.
#pragma once

#include <windows.h>

#include <memory>

#include "dialogs/area_page_dlg.h"

namespace bv {

// A maker of the settings' pages (AreaPageMaker).
std::unique_ptr<AreaPage> MakeGatewayPage(FieldRecord& options);

INT_PTR CALLBACK MailGatewayDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK MailFolderDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
