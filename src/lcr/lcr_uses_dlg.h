// The places that refer to a destination or a link: to look at, or with what is to become of them when it goes or gets
// another name.
#pragma once

#include <windows.h>

#include "lcr/destination_session.h"

namespace bv {

// Shows them.
void ShowUsesOfPlace(HWND owner, const PlaceName& place, const std::vector<Use>& uses);
void ShowUsesOfLink(HWND owner, const std::string& identifier, const std::vector<Use>& uses);

// What AskAboutUses asks, of what goes or, with another name, is renamed.
std::optional<UseChange> AskUsesOfPlace(HWND owner, const PlaceName& place, const std::string& newName,
                                        const std::vector<Use>& uses);
std::optional<UseChange> AskUsesOfLink(HWND owner, const std::string& identifier, const std::string& newName,
                                       const std::vector<Use>& uses);

INT_PTR CALLBACK PlaceUsesDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK LinkUsesDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
