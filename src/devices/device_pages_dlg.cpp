// The pages of a device's details.
#include "devices/device_dialog_dlg.h"
#include "devices/device_messages.h"
#include "dialogs/pick_dlg.h"
#include "dialogs/printer_choice_dlg.h"
#include "resources/ids.h"
#include "voice/messages.h"

namespace bv {
namespace {

// --- A page that is its rows and nothing else ---

template <const auto& kFields>
void FillFields(HWND page, DeviceDialog& context) {
    ShowFields(page, kFields, context.Fields);
    AddTooltips(page, kFields, context.Fields);
}
template <const auto& kFields>
int TakeRows(HWND page, DeviceDialog& context) {
    return TakeFields(page, kFields, context.Fields);
}

// --- Line ---

constexpr FieldControl kLine[] = {
    {ID_DEVICE_DESCRIPTION, "Description"}, {ID_DEVICE_PORT, "Port"},
    {ID_DEVICE_PHONE, "PhoneNum"},          {ID_DEVICE_ORGANISATION, "Organisation"},
    {ID_DEVICE_RECEIVER, "RecdUser"},       {ID_DEVICE_RECEIVE_ONLY, "ReceiveOnly", FieldForm::Check},
};
constexpr std::span<const FieldControl> kBeforeReceiver = std::span(kLine).first(4);
constexpr std::span<const FieldControl> kBehindReceiver = std::span(kLine).last(1);
constexpr FieldControl kConfigFile[] = {{ID_DEVICE_CONFIG_FILE, "BTConfigFile"}};

std::string WhatItIs(const DeviceDialog& context) {
    const std::string name = context.IsNew() ? context.New.Names() : context.Name;
    return FormatText("%s: %s", name, TypeTitle(context.Opened.Type));
}

bool HasConfigFile(const DeviceDialog& context) {
    return FindDeviceKey(context.Opened.Type, kConfigFile[0].Key) != nullptr;
}

void FillLine(HWND page, DeviceDialog& context) {
    SetText(page, ID_DEVICE_WHAT, WhatItIs(context));
    for (const std::string& port : OfferedPorts(context.Opened.Type))
        SendDlgItemMessageA(page, ID_DEVICE_PORT, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(port.c_str()));
    ShowFields(page, kBeforeReceiver, context.Fields);
    ShowFields(page, kBehindReceiver, context.Fields);
    context.Receiver.Begin(page, ID_DEVICE_RECEIVER, ID_DEVICE_CHOOSE_RECEIVER, kUserAndGroupNames,
                           FillMessage(kDisabledWords));
    context.Receiver.Put(context.Fields.TextOf("RecdUser"));
    AddTooltips(page, kLine, context.Fields);
    if (HasConfigFile(context)) return FillFields<kConfigFile>(page, context);
    for (const int control : {ID_DEVICE_CONFIG_LABEL, ID_DEVICE_CONFIG_FILE, ID_DEVICE_BROWSE})
        ShowWindow(GetDlgItem(page, control), SW_HIDE);
}

int TakeLine(HWND page, DeviceDialog& context) {
    if (const int fault = TakeFields(page, kBeforeReceiver, context.Fields)) return fault;
    std::string receiver;
    if (!context.Receiver.Take(receiver)) return ID_DEVICE_RECEIVER;
    if (const auto fault = context.Fields.Enter("RecdUser", receiver)) {
        ShowError("%s", *fault);
        return ID_DEVICE_RECEIVER;
    }
    if (const int fault = TakeFields(page, kBehindReceiver, context.Fields)) return fault;
    return HasConfigFile(context) ? TakeRows<kConfigFile>(page, context) : 0;
}

void PressBrowse(HWND page, DeviceDialog&) {
    constexpr FilePick kPick{"Configuration file of the board",
                             "Configuration files (*.cfg)\0*.cfg\0All files (*.*)\0*.*\0"};
    if (const auto path = PickFile(page, kPick, GetText(page, ID_DEVICE_CONFIG_FILE)))
        SetText(page, ID_DEVICE_CONFIG_FILE, *path);
}

constexpr DialogCommand<DeviceDialog> kLineCommands[] = {{ID_DEVICE_BROWSE, BN_CLICKED, PressBrowse}};
constexpr DialogPlan<DeviceDialog> kLinePlan{HELP_DEVICE_LINE, FillLine, kLineCommands};

// --- Dialling ---

constexpr FieldControl kDial[] = {
    {ID_DEVICE_DIAL_TYPE, "DialType", FieldForm::Radio, ChoiceWords<DialMethod>::kWords},
    {ID_DEVICE_DIAL_PREFIX, "DialPrefix"},
    {ID_DEVICE_DIAL_SUFFIX, "DialSuffix"},
    {ID_DEVICE_DETECT_DIAL, "DetectDial", FieldForm::Check},
    {ID_DEVICE_DETECT_BUSY, "DetectBusy", FieldForm::Check},
    {ID_DEVICE_CONNECT_TRIES, "ConnectTries", FieldForm::Number},
};
constexpr DialogPlan<DeviceDialog> kDialPlan{HELP_DEVICE_DIAL, FillFields<kDial>, {}};

// --- Retries ---

constexpr std::string_view kSpeeds[] = {"0", "2400", "4800", "7200", "9600", "12000", "14400", "28800", "33600"};
constexpr FieldControl kRetry[] = {
    {ID_DEVICE_SEND_TRIES, "SendMsgTries", FieldForm::Number},
    {ID_DEVICE_RETRY_PAGES, "MinSendRetryPages", FieldForm::Number},
    {ID_DEVICE_INITIAL_PAGES, "RestartInitialPages", FieldForm::Number},
    {ID_DEVICE_SPLIT_PAGES, "RestartSplitPages", FieldForm::Number},
    {ID_DEVICE_TRANSMIT_SPEED, "TransmitSpeed", FieldForm::Number, kSpeeds},
    {ID_DEVICE_RECEIVE_SPEED, "ReceiveSpeed", FieldForm::Number, kSpeeds},
};
constexpr DialogPlan<DeviceDialog> kRetryPlan{HELP_DEVICE_RETRY, FillFields<kRetry>, {}};

// --- Modem ---

constexpr std::string_view kBaudRates[] = {"1200", "2400", "4800", "9600", "19200", "38400", "57600"};
constexpr FieldControl kModem[] = {
    {ID_DEVICE_BAUD_RATE, "BaudRate", FieldForm::Number, kBaudRates},
    {ID_DEVICE_CLASS, "ClassPriority", FieldForm::Radio, ChoiceWords<ClassOrder>::kWords},
    {ID_DEVICE_SPEAKER, "Speaker", FieldForm::Radio, ChoiceWords<SpeakerMode>::kWords},
    {ID_DEVICE_VOLUME, "SpeakerVolume", FieldForm::Radio, ChoiceWords<SpeakerLevel>::kWords},
    {ID_DEVICE_IGNORE_CTS, "IgnoreCTS", FieldForm::Check},
    {ID_DEVICE_IGNORE_DSR, "IgnoreDSR", FieldForm::Check},
    {ID_DEVICE_IGNORE_PAGES, "IgnorePageErrors", FieldForm::Check},
};
constexpr int kSpeakerOff = ID_DEVICE_SPEAKER + static_cast<int>(SpeakerMode::Off);

void EnableVolume(HWND page, DeviceDialog&) {
    const bool speaks = IsDlgButtonChecked(page, kSpeakerOff) != BST_CHECKED;
    for (std::size_t i = 0; i < std::size(ChoiceWords<SpeakerLevel>::kWords); ++i)
        EnableControl(page, ID_DEVICE_VOLUME + static_cast<int>(i), speaks);
}

void FillModem(HWND page, DeviceDialog& context) {
    FillFields<kModem>(page, context);
    EnableVolume(page, context);
}

constexpr DialogCommand<DeviceDialog> kModemCommands[] = {
    {ID_DEVICE_SPEAKER, BN_CLICKED, EnableVolume},
    {ID_DEVICE_SPEAKER + 1, BN_CLICKED, EnableVolume},
    {ID_DEVICE_SPEAKER + 2, BN_CLICKED, EnableVolume},
};
constexpr DialogPlan<DeviceDialog> kModemPlan{HELP_DEVICE_MODEM, FillModem, kModemCommands};

// --- Commands ---

constexpr FieldControl kModemCommandFields[] = {
    {ID_DEVICE_CHECK_1, "CheckInit1"},
    {ID_DEVICE_CHECK_2, "CheckInit2"},
    {ID_DEVICE_SEND_COMMAND, "SendInit"},
    {ID_DEVICE_RECEIVE_COMMAND, "ReceiveInit"},
};
constexpr DialogPlan<DeviceDialog> kCommandsPlan{HELP_DEVICE_COMMANDS, FillFields<kModemCommandFields>, {}};

// --- Printer ---

constexpr FieldControl kPrinter[] = {{ID_PRINTER_DESCRIPTION, "Description"}};

void FillPrinter(HWND page, DeviceDialog& context) {
    SetText(page, ID_PRINTER_WHAT, WhatItIs(context));
    FillFields<kPrinter>(page, context);
}

// The name of an installed printer says what the device is, as far as it fits.
void PressWindowsPrinters(HWND page, DeviceDialog&) {
    if (const auto name = ChoosePrinter(page, GetText(page, ID_PRINTER_DESCRIPTION)))
        SetText(page, ID_PRINTER_DESCRIPTION, DeviceDescription(*name).String());
}

constexpr DialogCommand<DeviceDialog> kPrinterCommands[] = {{ID_PRINTER_CHOOSE, BN_CLICKED, PressWindowsPrinters}};
constexpr DialogPlan<DeviceDialog> kPrinterPlan{HELP_DEVICE_PRINTER, FillPrinter, kPrinterCommands};

template <int (*kTake)(HWND, DeviceDialog&)>
Page DevicePage(const char* name, const char* title, DLGPROC procedure) {
    return {name, title, procedure, TakePage<DeviceDialog, kTake>};
}

} // namespace

std::vector<Page> PagesOf(DeviceType type) {
    if (type == DeviceType::Printer)
        return {DevicePage<TakeRows<kPrinter>>("DevicePrinterBox", "Printer", DevicePrinterDlgBox)};
    std::vector<Page> pages = {
        DevicePage<TakeLine>("DeviceLineBox", "Line", DeviceLineDlgBox),
        DevicePage<TakeRows<kDial>>("DeviceDialBox", "Dialling", DeviceDialDlgBox),
        DevicePage<TakeRows<kRetry>>("DeviceRetryBox", "Retries", DeviceRetryDlgBox),
    };
    if (type != DeviceType::Modem) return pages;
    pages.push_back(DevicePage<TakeRows<kModem>>("DeviceModemBox", "Modem", DeviceModemDlgBox));
    pages.push_back(DevicePage<TakeRows<kModemCommandFields>>("DeviceCommandsBox", "Commands", DeviceCommandsDlgBox));
    return pages;
}

INT_PTR CALLBACK DeviceLineDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kLinePlan, {page, message, wParam, lParam});
}
INT_PTR CALLBACK DeviceDialDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kDialPlan, {page, message, wParam, lParam});
}
INT_PTR CALLBACK DeviceRetryDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kRetryPlan, {page, message, wParam, lParam});
}
INT_PTR CALLBACK DeviceModemDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kModemPlan, {page, message, wParam, lParam});
}
INT_PTR CALLBACK DeviceCommandsDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kCommandsPlan, {page, message, wParam, lParam});
}
INT_PTR CALLBACK DevicePrinterDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPrinterPlan, {page, message, wParam, lParam});
}

} // namespace bv
