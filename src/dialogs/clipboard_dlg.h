// The clipboard.
#pragma once

#include <windows.h>

#include <string>

namespace bv {

// Puts a text there; passes over a clipboard that another program holds.
void CopyToClipboard(HWND owner, const std::string& text);

} // namespace bv
