// The boxes of one country, area, region and other name of a destination. Each changes the working copies on OK.
#pragma once

#include <windows.h>

#include <optional>

#include "lcr/destination_session.h"

namespace bv {

// Changes the entry, or adds a new one in place of one without a name, which begins as `entered`. The place that it is
// then; none when it was cancelled.
std::optional<PlaceName> CountryByDialog(HWND owner, DestinationSession& session, const CountryEntry& before,
                                         const CountryEntry& entered);
std::optional<PlaceName> AreaByDialog(HWND owner, DestinationSession& session, const AreaKind& kind,
                                      const AreaEntry& before, const AreaEntry& entered);
std::optional<PlaceName> RegionByDialog(HWND owner, DestinationSession& session, const RegionEntry& before,
                                        const RegionEntry& entered);
std::optional<PlaceName> SynonymByDialog(HWND owner, DestinationSession& session, const Synonym& before);

INT_PTR CALLBACK CountryEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK AreaEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK RegionEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK SynonymEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
