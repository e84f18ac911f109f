#include "devices/device_list_dlg.h"

#include <algorithm>

#include "ctlfile/file_stamp.h"
#include "devices/add_device_dlg.h"
#include "devices/device_actions.h"
#include "devices/device_details_dlg.h"
#include "devices/device_messages.h"
#include "devices/device_rows.h"
#include "dialogs/list_view_dlg.h"
#include "resources/ids.h"
#include "shell/server_files.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr int kActions[] = {ID_DEVICES_ADD, ID_DEVICES_EDIT, ID_DEVICES_CLONE, ID_DEVICES_DELETE,
                            ID_DEVICES_WHERE_USED};

// In the order of DeviceColumn.
constexpr ListColumn kTitles[] = {{"Name", 46}, {"Description", 102}, {"Type", 78},
                                  {"Port", 44}, {"Fax number", 68},   {"Faxes go to", 50}};
static_assert(std::size(kTitles) == kDeviceColumns);

constexpr ListPlan kList{.List = ID_DEVICES_LIST,
                         .Columns = kTitles,
                         .Filter = ID_DEVICES_FILTER,
                         .Count = ID_DEVICES_COUNT,
                         .DefaultButton = ID_DEVICES_EDIT,
                         .Menu = kActions,
                         .IsSorted = false};

struct DeviceListDialog {
    const DialogServices& Services;
    bool IsRead = true;
    FileStamp Stamp{};      // of the settings as they are shown
    bool IsListing = false; // what the status line says of the last action stays
    RowTable Rows{};
    ListView List{Rows, kList};
};

// The selected devices that can be changed; none when the network is among them.
std::vector<std::string> Changeable(const DeviceListDialog& context) {
    std::vector<std::string> names = context.List.SelectedNames();
    if (std::ranges::any_of(names, IsNetworkDevice)) names.clear();
    return names;
}

bool IsPrinter(const DeviceListDialog& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    return rows.size() == 1 && context.Rows.Text(rows.front(), kDeviceTypeColumn) == TypeTitle(DeviceType::Printer);
}

void EnableButtons(HWND dialog, DeviceListDialog& context) {
    const std::size_t count = Changeable(context).size();
    EnableControl(dialog, ID_DEVICES_ADD, context.IsRead);
    for (const int button : {ID_DEVICES_EDIT, ID_DEVICES_CLONE}) EnableControl(dialog, button, count == 1);
    EnableControl(dialog, ID_DEVICES_DELETE, count > 0);
    EnableControl(dialog, ID_DEVICES_WHERE_USED, IsPrinter(context));
}

void SelectRows(HWND dialog, DeviceListDialog& context) {
    EnableButtons(dialog, context);
    if (context.IsListing) return;
    const std::vector<std::string> names = context.List.SelectedNames();
    const auto network = std::ranges::find_if(names, IsNetworkDevice);
    if (network == names.end()) return SetStatusLine("", 1);
    ShowStatus(kIsTheNetwork, *network);
}

void ListDevices(HWND dialog, DeviceListDialog& context) {
    const WaitCursor wait;
    context.Stamp = StampOf(PathOf(ServerFile::Setup));
    const bool withNetwork = IsDlgButtonChecked(dialog, ID_DEVICES_NETWORK) == BST_CHECKED;
    context.IsListing = true;
    context.List.Refill([&] {
        const auto network = withNetwork ? NetworkDevices::Shown : NetworkDevices::Hidden;
        return context.IsRead = ReadDeviceRows(network, context.Rows);
    });
    context.IsListing = false;
    EnableButtons(dialog, context);
}

// Reads the list anew when the file is another one: this program or another has changed it.
void FollowList(HWND dialog, DeviceListDialog& context) {
    if (!IsUnchanged(PathOf(ServerFile::Setup), context.Stamp)) ListDevices(dialog, context);
}

void FillDevices(HWND dialog, DeviceListDialog& context) {
    context.List.Begin(dialog);
    ListDevices(dialog, context);
    FocusControl(dialog, context.Rows.Count() > 0 ? ID_DEVICES_LIST : ID_DEVICES_ADD);
}

void AddLike(HWND dialog, DeviceListDialog& context, const std::string& like) {
    const std::optional<std::string> name = AddDeviceByDialog(dialog, like);
    FollowList(dialog, context);
    if (name) context.List.SelectName(*name);
}

void PressAdd(HWND dialog, DeviceListDialog& context) {
    if (context.IsRead) AddLike(dialog, context, {});
}

void PressClone(HWND dialog, DeviceListDialog& context) {
    const std::vector<std::string> names = Changeable(context);
    if (names.size() == 1) AddLike(dialog, context, names.front());
}

void PressEdit(HWND dialog, DeviceListDialog& context) {
    const std::vector<std::string> names = Changeable(context);
    if (names.size() == 1) EditDeviceByDialog(dialog, names.front());
    FollowList(dialog, context);
}

void PressDelete(HWND dialog, DeviceListDialog& context) {
    const std::vector<std::string> names = Changeable(context);
    if (!names.empty()) context.Services.Delete(dialog, NamedThing::Printer, names);
    FollowList(dialog, context);
}

void PressWhereUsed(HWND dialog, DeviceListDialog& context) {
    if (IsPrinter(context))
        context.Services.ShowUses(dialog, NamedThing::Printer, context.List.SelectedNames().front());
}

void CloseDevices(HWND dialog, DeviceListDialog&) {
    WarnWithoutFaxDevice();
    EndDialog(dialog, IDOK);
}

constexpr DialogCommand<DeviceListDialog> kCommands[] = {
    {ID_DEVICES_NETWORK, BN_CLICKED, ListDevices},
    {ID_DEVICES_LIST, kListSelected, SelectRows},
    {ID_DEVICES_LIST, kListOpen, PressEdit},
    {ID_DEVICES_LIST, kListRename, PressEdit},
    {ID_DEVICES_LIST, kListAdd, PressAdd},
    {ID_DEVICES_LIST, kListDelete, PressDelete},
    {ID_DEVICES_LIST, kListReload, ListDevices},
    {ID_DEVICES_ADD, BN_CLICKED, PressAdd},
    {ID_DEVICES_EDIT, BN_CLICKED, PressEdit},
    {ID_DEVICES_CLONE, BN_CLICKED, PressClone},
    {ID_DEVICES_DELETE, BN_CLICKED, PressDelete},
    {ID_DEVICES_WHERE_USED, BN_CLICKED, PressWhereUsed},
    {IDOK, BN_CLICKED, CloseDevices},
    {IDCANCEL, BN_CLICKED, CloseDevices},
};
constexpr Anchor kAnchors[] = {
    {ID_DEVICES_LIST, kGrowsBoth},
    {ID_DEVICES_COUNT, kMovesDown | kGrowsAcross},
    {ID_STATUS_LINE, kMovesDown | kGrowsAcross},
    {ID_DEVICES_ADD, kMovesAcross},
    {ID_DEVICES_EDIT, kMovesAcross},
    {ID_DEVICES_CLONE, kMovesAcross},
    {ID_DEVICES_DELETE, kMovesAcross},
    {ID_DEVICES_WHERE_USED, kMovesAcross},
    {ID_HELP_BUTTON, kMovesBoth},
    {IDOK, kMovesBoth},
};
constexpr DialogPlan<DeviceListDialog> kPlan{HELP_DEVICES, FillDevices, kCommands, kAnchors, FollowList};

} // namespace

void ConfigureDevices(HWND owner, const DialogServices& services) {
    DeviceListDialog context{.Services = services};
    OpenDialogOf(ServerFile::Setup, "ConfigDevicesBox", owner, ConfigDevicesDlgBox, &context);
}

INT_PTR CALLBACK ConfigDevicesDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
