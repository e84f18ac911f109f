#include "devices/add_device_dlg.h"

#include "ctlfile/digits.h"
#include "devices/device_actions.h"
#include "devices/device_details_dlg.h"
#include "devices/device_messages.h"
#include "devices/device_rows.h"
#include "dialogs/dialog_dlg.h"
#include "dialogs/fields_dlg.h"
#include "resources/ids.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr int kTypes = 4;
constexpr std::size_t kStemLimit = DeviceName::kLimit - std::string_view("-1").size();

struct AddDialog {
    std::string Like; // which one the new ones are to be like at first
    DeviceType Type = DeviceType::Modem;
    std::vector<DeviceSummary> Devices{};
    NameSet Taken{};
    std::string Offered{}; // the number that the stem was offered
    NewDevices New{};
    Device Beginning{};
};

DeviceType CheckedType(HWND dialog) {
    int type = 0;
    while (type < kTypes - 1 && IsDlgButtonChecked(dialog, ID_NEW_DEVICE_TYPE + type) != BST_CHECKED) ++type;
    return static_cast<DeviceType>(type);
}

void CheckType(HWND dialog, DeviceType type) {
    const int button = ID_NEW_DEVICE_TYPE + static_cast<int>(type);
    CheckDlgButton(dialog, button, BST_CHECKED);
    FocusControl(dialog, button);
}

// --- How many, and under which names ---

void ShowNames(HWND dialog, AddDialog&) {
    const NewDevices devices{GetText(dialog, ID_NEW_DEVICE_STEM),
                             ParseDigits(GetText(dialog, ID_NEW_DEVICE_NUMBER)).value_or(0),
                             ParseDigits(GetText(dialog, ID_NEW_DEVICE_COUNT)).value_or(0)};
    SetText(dialog, ID_NEW_DEVICE_NAME, devices.Names());
}

// As long as nobody has given another number, it is the stem's first free one.
void FollowStem(HWND dialog, AddDialog& context) {
    if (GetText(dialog, ID_NEW_DEVICE_NUMBER) == context.Offered) {
        context.Offered = std::to_string(OfferedNumber(context.Taken, GetText(dialog, ID_NEW_DEVICE_STEM)));
        SetText(dialog, ID_NEW_DEVICE_NUMBER, context.Offered);
    }
    ShowNames(dialog, context);
}

// --- What the type says ---

void AddEntry(HWND dialog, int combo, const std::string& text) {
    SendDlgItemMessageA(dialog, combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void OfferPorts(HWND dialog, const AddDialog& context) {
    SendDlgItemMessageA(dialog, ID_NEW_DEVICE_PORT, CB_RESETCONTENT, 0, 0);
    for (const std::string& port : OfferedPorts(context.Type)) AddEntry(dialog, ID_NEW_DEVICE_PORT, port);
    SetText(dialog, ID_NEW_DEVICE_PORT, FirstFreePort(context.Devices, context.Type));
}

void OfferLikes(HWND dialog, const AddDialog& context) {
    SendDlgItemMessageA(dialog, ID_NEW_DEVICE_LIKE, CB_RESETCONTENT, 0, 0);
    AddEntry(dialog, ID_NEW_DEVICE_LIKE, FillMessage(kNewDeviceWords));
    for (const DeviceSummary& device : context.Devices)
        if (ParseDeviceType(device.Type) == context.Type && !IsNetworkDevice(device.Name))
            AddEntry(dialog, ID_NEW_DEVICE_LIKE, device.Name.String());
    SendDlgItemMessageA(dialog, ID_NEW_DEVICE_LIKE, CB_SETCURSEL, 0, 0);
}

void ChooseType(HWND dialog, AddDialog& context) {
    context.Type = CheckedType(dialog);
    const bool isPrinter = context.Type == DeviceType::Printer;
    for (const int control : {ID_NEW_DEVICE_COUNT, ID_NEW_DEVICE_PORT}) EnableControl(dialog, control, !isPrinter);
    if (isPrinter) SetText(dialog, ID_NEW_DEVICE_COUNT, "1");
    OfferPorts(dialog, context);
    OfferLikes(dialog, context);
    SetText(dialog, ID_NEW_DEVICE_NUMBER, context.Offered);
    SetText(dialog, ID_NEW_DEVICE_STEM, std::string(OfferedStem(context.Type)));
    FollowStem(dialog, context);
}

// --- Opening ---

void LimitFields(HWND dialog) {
    SendDlgItemMessageA(dialog, ID_NEW_DEVICE_STEM, EM_LIMITTEXT, kStemLimit, 0);
    GiveArrows(dialog, ID_NEW_DEVICE_NUMBER, 1, kLastDeviceNumber);
    GiveArrows(dialog, ID_NEW_DEVICE_COUNT, 1, kMostNewDevices);
    SendDlgItemMessageA(dialog, ID_NEW_DEVICE_PORT, CB_LIMITTEXT, decltype(DeviceSettings::Port)::kLimit, 0);
}

void FillAdd(HWND dialog, AddDialog& context) {
    LimitFields(dialog);
    SetText(dialog, ID_NEW_DEVICE_COUNT, "1");
    CheckType(dialog, context.Type);
    ChooseType(dialog, context);
    if (context.Like.empty()) return;
    SetText(dialog, ID_NEW_DEVICE_STEM, std::string(StemOf(context.Like)));
    SendDlgItemMessageA(dialog, ID_NEW_DEVICE_LIKE, CB_SELECTSTRING, 0, reinterpret_cast<LPARAM>(context.Like.c_str()));
    FollowStem(dialog, context);
}

// --- OK ---

// Takes number, count and names. Returns the control with a fault, after its message, or 0.
int TakeNames(HWND dialog, AddDialog& context) {
    if (!TakeText(dialog, ID_NEW_DEVICE_STEM, context.New.Stem)) return ID_NEW_DEVICE_STEM;
    const std::optional<int> number = ParseDeviceNumber(GetText(dialog, ID_NEW_DEVICE_NUMBER));
    if (!number) return ID_NEW_DEVICE_NUMBER;
    const std::optional<int> count = ParseDeviceCount(GetText(dialog, ID_NEW_DEVICE_COUNT));
    if (!count) return ID_NEW_DEVICE_COUNT;
    context.New.First = *number;
    context.New.Count = *count;
    return CheckNewDevices(context.New) ? 0 : ID_NEW_DEVICE_NUMBER;
}

bool TakePort(HWND dialog, Device& device) {
    std::string port;
    const bool taken = TakeText(dialog, ID_NEW_DEVICE_PORT, port) && EnterDeviceValue(device, "Port", port);
    if (!taken) FocusControl(dialog, ID_NEW_DEVICE_PORT);
    return taken;
}

void TakeAdd(HWND dialog, AddDialog& context) {
    if (const int fault = TakeNames(dialog, context)) return FocusControl(dialog, fault);
    const bool isNew = SendDlgItemMessageA(dialog, ID_NEW_DEVICE_LIKE, CB_GETCURSEL, 0, 0) <= 0;
    auto device = BeginningOf(context.Type, isNew ? std::string() : GetText(dialog, ID_NEW_DEVICE_LIKE));
    if (!device) return;
    if (context.Type != DeviceType::Printer && !TakePort(dialog, *device)) return;
    if (!OfferEarlierSettings(context.New.Name(0), *device)) return;
    context.Beginning = *device;
    EndDialog(dialog, IDOK);
}

constexpr DialogCommand<AddDialog> kCommands[] = {
    {ID_NEW_DEVICE_TYPE, BN_CLICKED, ChooseType},
    {ID_NEW_DEVICE_TYPE + 1, BN_CLICKED, ChooseType},
    {ID_NEW_DEVICE_TYPE + 2, BN_CLICKED, ChooseType},
    {ID_NEW_DEVICE_TYPE + 3, BN_CLICKED, ChooseType},
    {ID_NEW_DEVICE_STEM, EN_CHANGE, FollowStem},
    {ID_NEW_DEVICE_NUMBER, EN_CHANGE, ShowNames},
    {ID_NEW_DEVICE_COUNT, EN_CHANGE, ShowNames},
    {IDOK, BN_CLICKED, TakeAdd},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr DialogPlan<AddDialog> kPlan{HELP_ADD_DEVICE, FillAdd, kCommands};

// --- The type of a device that is there ---

struct TypeDialog {
    std::string Name;
    DeviceType Type;
};

void FillType(HWND dialog, TypeDialog& context) {
    SetWindowTextA(dialog, FormatText("Type of device %s", context.Name).c_str());
    SetText(dialog, ID_NEW_DEVICE_NAME, FillMessage(kChooseDeviceType, context.Name));
    CheckType(dialog, context.Type);
}

void TakeType(HWND dialog, TypeDialog& context) {
    context.Type = CheckedType(dialog);
    EndDialog(dialog, IDOK);
}

constexpr DialogCommand<TypeDialog> kTypeCommands[] = {{IDOK, BN_CLICKED, TakeType},
                                                       {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<TypeDialog> kTypePlan{HELP_ADD_DEVICE, FillType, kTypeCommands};

} // namespace

std::optional<std::string> AddDeviceByDialog(HWND owner, const std::string& like) {
    AddDialog context{.Like = like};
    auto devices = ReadDeviceSummaries();
    auto taken = ReadDeviceNames();
    if (!devices || !taken) return std::nullopt;
    for (const DeviceSummary& device : *devices)
        if (device.Name.View() == like) context.Type = ParseDeviceType(device.Type).value_or(context.Type);
    context.Devices = std::move(*devices);
    context.Taken = std::move(*taken);
    if (OpenDialog("AddDeviceBox", owner, AddDeviceDlgBox, &context) != IDOK) return std::nullopt;
    AddDevicesByDialog(owner, context.New, context.Beginning);
    return context.New.Done == 0 ? std::nullopt : std::optional(context.New.Name(0));
}

std::optional<DeviceType> AskDeviceType(HWND owner, const std::string& name) {
    TypeDialog context{name, TypeOfName(name)};
    if (OpenDialog("DeviceTypeBox", owner, DeviceTypeDlgBox, &context) != IDOK) return std::nullopt;
    return context.Type;
}

INT_PTR CALLBACK AddDeviceDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}
INT_PTR CALLBACK DeviceTypeDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kTypePlan, {dialog, message, wParam, lParam});
}

} // namespace bv
