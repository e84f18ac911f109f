// The box of one link.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>

#include "lcr/link_session.h"

namespace bv {

// Opens it over its owner: a link at its place among those that are edited, or one that is to be added and begins so.
// Its place once it was ended with OK and is among the links as it was entered; none when it is cancelled.
std::optional<std::size_t> EditLinkByDialog(HWND owner, LinkSession& session, std::size_t place);
std::optional<std::size_t> AddLinkByDialog(HWND owner, LinkSession& session, const LinkRecord& beginning);

INT_PTR CALLBACK LinkEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
