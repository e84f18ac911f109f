#include "devices/device_settings.h"

#include <algorithm>

#include "ctlfile/control_stream.h"
#include "ctlfile/reading.h"
#include "ctlfile/saving.h"
#include "devices/device_messages.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {

namespace {

using Settings = DeviceSettings;

constexpr std::string_view kTypeWords[] = {"FCLASS", "GAMMA", "BTROUT", "PRINT"}; // by DeviceType

constexpr std::string_view kTypeTitles[] = {"Fax modem", "GammaLink channel", "Brooktrout port", "Windows printer"};

constexpr unsigned Bit(DeviceType type) { return 1U << static_cast<unsigned>(type); }
constexpr unsigned kModem = Bit(DeviceType::Modem);
constexpr unsigned kBrooktrout = Bit(DeviceType::Brooktrout);
constexpr unsigned kFax = kModem | Bit(DeviceType::GammaLink) | kBrooktrout;
constexpr unsigned kAll = kFax | Bit(DeviceType::Printer);

constexpr std::string_view kDescriptionKey = "Description:";
constexpr std::string_view kPortKey = "Port:";

// The description also stands in quotes, in the list of devices.
constexpr ValueRule kQuotable = {ValueRule::Form::Other,
                                 DeviceDescription::kLimit,
                                 {},
                                 "a text of at most 50 characters without quotes",
                                 [](std::string_view text) {
                                     return text.size() <= DeviceDescription::kLimit &&
                                            text.find('"') == std::string_view::npos;
                                 }};

constexpr ValueRule kType = {
    ValueRule::Form::Other, 100, {}, "FCLASS, GAMMA, BTROUT or PRINT", [](std::string_view text) {
        return std::ranges::find(kTypeWords, text) != std::end(kTypeWords);
    }};

// The first class of the list decides, whatever follows.
constexpr KeyField<Settings> kClassPriority = [] {
    KeyField<Settings> field = FieldOf<&Settings::ClassPriority>("ClassPriority:");
    field.Store = [](Settings& settings, std::string_view text) {
        if (text.empty()) return false;
        settings.ClassPriority = ParseNumber(text) == 1 ? ClassOrder::Class1First : ClassOrder::Class2First;
        return true;
    };
    return field;
}();

constexpr DeviceKey kKeys[] = {
    {FieldOf<&Settings::Description>(kDescriptionKey, kQuotable), kAll},
    {FieldOf<&Settings::Type>("Type:", kType), kAll},
    {kClassPriority, kModem},
    {FieldOf<&Settings::BaudRate>("BaudRate:", kSettingNumber), kModem},
    {FieldOf<&Settings::CheckInit1>("CheckInit1:"), kModem},
    {FieldOf<&Settings::CheckInit2>("CheckInit2:"), kModem},
    {FieldOf<&Settings::ConnectTries>("ConnectTries:", kSettingNumber), kFax},
    {FieldOf<&Settings::DetectBusy>("DetectBusy:"), kFax},
    {FieldOf<&Settings::DetectDial>("DetectDial:"), kFax},
    {FieldOf<&Settings::DialPrefix>("DialPrefix:"), kFax},
    {FieldOf<&Settings::DialSuffix>("DialSuffix:"), kFax},
    {FieldOf<&Settings::DialType>("DialType:"), kFax},
    {FieldOf<&Settings::IgnoreCTS>("IgnoreCTS:"), kModem},
    {FieldOf<&Settings::IgnoreDSR>("IgnoreDSR:"), kModem},
    {FieldOf<&Settings::IgnorePageErrors>("IgnorePageErrors:"), kModem},
    {FieldOf<&Settings::MinSendRetryPages>("MinSendRetryPages:", kSettingNumber), kFax},
    {FieldOf<&Settings::PhoneNum>("PhoneNum:"), kFax},
    {FieldOf<&Settings::Organisation>("Organisation:"), kFax},
    {FieldOf<&Settings::Port>(kPortKey), kFax},
    {FieldOf<&Settings::RecdUser>("RecdUser:"), kFax},
    {FieldOf<&Settings::ReceiveInit>("ReceiveInit:"), kModem},
    {FieldOf<&Settings::ReceiveOnly>("ReceiveOnly:"), kFax},
    {FieldOf<&Settings::ReceiveSpeed>("ReceiveSpeed:", kSettingNumber), kFax},
    {FieldOf<&Settings::RestartInitialPages>("RestartInitialPages:", kSettingNumber), kFax},
    {FieldOf<&Settings::RestartSplitPages>("RestartSplitPages:", kSettingNumber), kFax},
    {FieldOf<&Settings::SendInit>("SendInit:"), kModem},
    {FieldOf<&Settings::SendMsgTries>("SendMsgTries:", kSettingNumber), kFax},
    {FieldOf<&Settings::Speaker>("Speaker:"), kModem},
    {FieldOf<&Settings::SpeakerVolume>("SpeakerVolume:"), kModem},
    {FieldOf<&Settings::TransmitSpeed>("TransmitSpeed:", kSettingNumber), kFax},
    {FieldOf<&Settings::BTConfigFile>("BTConfigFile:"), kBrooktrout},
};

std::string Header(std::string_view name) { return FormatText("[%s]", UpperText(name)); }

bool IsKeyChanged(const Device& device, const DeviceKey& key) {
    return key.IsOf(device.Type) && StoredValueOf(device, key) != key.Field.Text(device.Settings);
}

bool WriteChangedKeys(Rewrite& rewrite, const std::string& header, Device& device) {
    for (std::size_t i = 0; i < std::size(kKeys); ++i) {
        if (!IsKeyChanged(device, kKeys[i])) continue;
        const std::string value = kKeys[i].Field.Text(device.Settings);
        if (!RewriteKey(rewrite, {header, kKeys[i].Field.Key, value})) return false;
        device.AsRead[i] = value;
    }
    return true;
}

std::vector<std::string> NumberedPorts(std::string_view format, int first, int last) {
    std::vector<std::string> ports;
    for (int number = first; number <= last; ++number) ports.push_back(FormatText(format, number));
    return ports;
}

} // namespace

std::string_view TypeWord(DeviceType type) { return kTypeWords[static_cast<std::size_t>(type)]; }

std::optional<DeviceType> ParseDeviceType(std::string_view word) {
    const std::optional<std::size_t> code = FindWord(kTypeWords, word);
    if (!code) return {};
    return static_cast<DeviceType>(*code);
}

std::string_view TypeTitle(DeviceType type) { return kTypeTitles[static_cast<std::size_t>(type)]; }

std::span<const DeviceKey> DeviceKeys() { return kKeys; }

const DeviceKey* FindDeviceKey(DeviceType type, std::string_view name) {
    const auto isWanted = [=](const DeviceKey& key) { return key.IsOf(type) && EqualFolded(key.Field.Name(), name); };
    const auto* found = std::ranges::find_if(kKeys, isWanted);
    return found == std::end(kKeys) ? nullptr : found;
}

KeyHelp HelpOf(const DeviceKey& key, DeviceType type) {
    return {.Key = std::string(key.Field.Key),
            .Values = DescribeValues(key.Field.Rule),
            .Default = key.Field.Text(DeviceSettings()),
            .OfNew = key.Field.Text(NewDevice(type).Settings)};
}

std::optional<std::string> TakeDeviceValue(Device& device, const DeviceKey& key, std::string_view text) {
    if (auto fault = key.Field.FaultIn(device.Settings, text)) return fault;
    key.Field.Store(device.Settings, text);
    device.IsDescribed = device.IsDescribed || key.Field.Key == kDescriptionKey;
    device.IsPortGiven = device.IsPortGiven || key.Field.Key == kPortKey;
    return {};
}

bool EnterDeviceValue(Device& device, std::string_view keyName, std::string_view text) {
    const DeviceKey* key = FindDeviceKey(device.Type, keyName);
    if (key == nullptr) {
        ShowError(kNoSuchKey, keyName, text, FormatText("%s devices", TypeWord(device.Type)));
        return false;
    }
    const std::optional<std::string> fault = TakeDeviceValue(device, *key, text);
    if (fault) ShowError("%s", *fault);
    return !fault;
}

const StoredValue& StoredValueOf(const Device& device, const DeviceKey& key) {
    return device.AsRead[static_cast<std::size_t>(&key - kKeys)];
}

Device NewDevice(DeviceType type, std::string_view organisation) {
    Device device = {type, {}, std::vector<StoredValue>(std::size(kKeys))};
    Settings& settings = device.Settings;
    settings.Type = TypeWord(type);
    settings.ClassPriority = ClassOrder::Class1First;
    settings.DialType = DialMethod::Tone;
    settings.IgnoreCTS = true;
    settings.Organisation = organisation;
    if (type == DeviceType::Modem) settings.Port = "COM1";
    return device;
}

bool ReadDeviceSettings(std::string_view name, DeviceType type, Device& device) {
    const std::string path = PathOf(ServerFile::Setup);
    ShowStatus(kReadingDeviceSettings);
    ShowStatus(kUsingFile, path);
    ControlStream setup = OpenForReading(path);
    if (!setup) return false;
    device = NewDevice(type);
    ControlLine line;
    Position body = 0;
    if (!FindParagraph(setup, Header(name), line, &body) || !FindKeyLine(setup, {}, line)) return WasRead(setup);
    device.Settings = {};
    for (std::size_t i = 0; i < std::size(kKeys); ++i) {
        if (kKeys[i].IsOf(type)) device.AsRead[i] = ReadField(setup, body, kKeys[i].Field, device.Settings);
    }
    return WasRead(setup);
}

std::size_t CountChanged(const Device& device) {
    const auto isChanged = [&device](const DeviceKey& key) { return IsKeyChanged(device, key); };
    return static_cast<std::size_t>(std::ranges::count_if(kKeys, isChanged));
}

bool IsChanged(const Device& device) { return CountChanged(device) != 0; }

bool WriteDeviceSettings(std::string_view name, Device& device) {
    if (!IsChanged(device)) return true;
    Rewrite rewrite(PathOf(ServerFile::Setup));
    if (!CheckOpened(rewrite)) return false;
    Startup().SettingsChanged = true;
    return SaveRewrite(rewrite, [&] { return WriteChangedKeys(rewrite, Header(name), device); });
}

std::vector<std::string> OfferedPorts(DeviceType type) {
    switch (type) {
    case DeviceType::Modem: return NumberedPorts("COM%d", 1, 32);
    case DeviceType::GammaLink: return NumberedPorts("CHANNEL%d", 1, 24);
    case DeviceType::Brooktrout: return NumberedPorts("FAX%d", 0, 63);
    case DeviceType::Printer: break;
    }
    return {};
}

} // namespace bv
