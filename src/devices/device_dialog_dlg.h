// What the dialog of a device's details and its pages share.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "devices/device_actions.h"
#include "dialogs/fields_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "dialogs/page_host_dlg.h"

namespace bv {

// The device that is edited, as the pages' controls see it.
class DeviceFields : public FieldRecord {
  public:
    explicit DeviceFields(Device& device) : device_(device) {}

    [[nodiscard]] std::string TextOf(std::string_view key) const override { return Key(key).Text(device_.Settings); }
    std::optional<std::string> Enter(std::string_view key, std::string_view text) override;
    [[nodiscard]] std::size_t LimitOf(std::string_view key) const override { return Key(key).Rule.Limit; }
    [[nodiscard]] std::string Describe(std::string_view key) const override;

  private:
    [[nodiscard]] const KeyField<DeviceSettings>& Key(std::string_view key) const {
        return FindDeviceKey(device_.Type, key)->Field;
    }

    Device& device_;
};

struct DeviceDialog {
    Device Opened;
    Device Edited = Opened;
    std::string Name; // of one that is there; empty for new ones
    NewDevices New{};
    DeviceFields Fields{Edited};
    PageHost Pages{};

    [[nodiscard]] bool IsNew() const { return Name.empty(); }

    // The parts of the pages.
    NameField Receiver{};
};

// The pages that a device of the type has.
std::vector<Page> PagesOf(DeviceType type);

INT_PTR CALLBACK DeviceLineDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK DeviceDialDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK DeviceRetryDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK DeviceModemDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK DeviceCommandsDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK DevicePrinterDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
