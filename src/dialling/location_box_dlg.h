// The values of a location as controls see them, and the box for a location's name.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

#include "dialling/dial_locations.h"
#include "dialogs/fields_dlg.h"

namespace bv {

// Of lists, a prefix a line.
class LocationFields : public FieldRecord {
  public:
    // The location that is shown and entered from now on, which must stay where it is until then.
    void Become(DialProperties& location) { location_ = &location; }

    [[nodiscard]] std::string TextOf(std::string_view key) const override;
    std::optional<std::string> Enter(std::string_view key, std::string_view text) override;
    [[nodiscard]] std::size_t LimitOf(std::string_view key) const override;
    [[nodiscard]] std::string Describe(std::string_view key) const override;

  private:
    DialProperties* location_ = nullptr;
};

// Asks the name of a new location, with the values of another one if there is one, or another name of one, and takes it
// into the locations. False when it was cancelled.
bool AddPlaceByDialog(HWND owner, DialLocations& locations, std::optional<std::size_t> like);
bool RenamePlaceByDialog(HWND owner, DialLocations& locations, std::size_t place);

INT_PTR CALLBACK LocationNameDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
