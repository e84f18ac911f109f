#include "devices/device_details_dlg.h"

#include <optional>

#include "devices/add_device_dlg.h"
#include "devices/device_dialog_dlg.h"
#include "devices/device_messages.h"
#include "dialogs/progress_dlg.h"
#include "resources/ids.h"
#include "shell/server_files.h"
#include "users/receiver.h"
#include "voice/messages.h"

namespace bv {

std::optional<std::string> DeviceFields::Enter(std::string_view key, std::string_view text) {
    return TakeDeviceValue(device_, *FindDeviceKey(device_.Type, key), text);
}

std::string DeviceFields::Describe(std::string_view key) const {
    return TooltipOf(HelpOf(*FindDeviceKey(device_.Type, key), device_.Type));
}

namespace {

void FillDetails(HWND dialog, DeviceDialog& context) {
    const std::string names = context.IsNew() ? context.New.Names() : context.Name;
    const char* title = context.IsNew() ? "Add new device" : "Brivane device details";
    SetWindowTextA(dialog, FormatText("%s - %s", title, names).c_str());
    const std::size_t missing = CountChanged(context.Opened);
    if (!context.IsNew() && missing != 0)
        SetText(dialog, ID_DEVICE_HINT, FillMessage(kSettingsAbsent, NameOf(ServerFile::Setup), missing));
    context.Pages.Begin(dialog, ID_DEVICE_PAGES, PagesOf(context.Opened.Type));
    context.Pages.FocusFirst();
}

// A receiver that was there already may be anybody.
bool CheckNewReceiver(DeviceDialog& context) {
    const std::string_view receiver = context.Edited.Settings.RecdUser;
    if (receiver == context.Opened.Settings.RecdUser.View() || CheckReceiver(receiver)) return true;
    context.Pages.ShowFault("DeviceLineBox", ID_DEVICE_RECEIVER);
    return false;
}

bool AddAll(HWND dialog, DeviceDialog& context) {
    std::optional<ProgressBox> progress;
    if (context.New.Count > 1) progress.emplace(dialog, context.New.Count);
    return AddDevices(context.New, context.Edited, [&](int done) {
        if (!progress) return true;
        const std::string count = FillMessage(kAddingDevice, done + 1, context.New.Count);
        return progress->Advance(done, count, context.New.Name(done));
    });
}

void TakeDetails(HWND dialog, DeviceDialog& context) {
    if (!context.Pages.TakeAll() || !CheckNewReceiver(context)) return;
    const WaitCursor wait;
    const bool isDone =
        context.IsNew() ? AddAll(dialog, context) : ChangeDevice(context.Name, context.Opened, context.Edited);
    if (isDone) EndDialog(dialog, IDOK);
}

bool IsChanged(HWND, const DeviceDialog& context) { return context.Pages.IsEdited(); }

constexpr DialogCommand<DeviceDialog> kCommands[] = {{IDOK, BN_CLICKED, TakeDetails},
                                                     {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<DeviceDialog> kPlan{HELP_DEVICE, FillDetails, kCommands, {}, nullptr, IsChanged};

} // namespace

void EditDeviceByDialog(HWND owner, const std::string& name) {
    std::optional<DeviceType> type;
    if (!FindEditable(name, type)) return;
    if (!type) {
        type = AskDeviceType(owner, name);
        if (!type || !RepairDevice(name, *type)) return;
    }
    Device device;
    if (!ReadDeviceSettings(name, *type, device)) return;
    DeviceDialog context{.Opened = device, .Name = name};
    OpenDialog("DeviceEditBox", owner, DeviceEditDlgBox, &context);
}

void AddDevicesByDialog(HWND owner, NewDevices& devices, const Device& beginning) {
    DeviceDialog context{.Opened = beginning, .Name = {}, .New = devices};
    OpenDialog("DeviceEditBox", owner, DeviceEditDlgBox, &context);
    devices = context.New;
}

INT_PTR CALLBACK DeviceEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
