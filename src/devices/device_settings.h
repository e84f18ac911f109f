// The settings of the server's devices: a paragraph "[NAME]" of SETUP.INI for each.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/fixed_text.h"
#include "ctlfile/key_fields.h"
#include "ctlfile/key_help.h"
#include "shell/device_lists.h"

namespace bv {

enum class DeviceType {
    Modem,      // FCLASS: fax modem on a serial port
    GammaLink,  // GAMMA: fax board channel
    Brooktrout, // BTROUT: fax board channel
    Printer,    // PRINT: Windows printer that the server prints to
};

// The word of a type as "Type:" has it, and the type of a word in any case.
std::string_view TypeWord(DeviceType type);
std::optional<DeviceType> ParseDeviceType(std::string_view word);

// The type as a person reads it: "Fax modem".
std::string_view TypeTitle(DeviceType type);

enum class ClassOrder { Class1First, Class2First };
enum class DialMethod { Tone, Pulse };
enum class SpeakerMode { On, Off, Connect };
enum class SpeakerLevel { Low, Medium, High };

template <>
struct ChoiceWords<ClassOrder> {
    static constexpr std::string_view kWords[] = {"1.0,1,2,2.0,2.1", "2,2.0,2.1,1.0,1"};
};
template <>
struct ChoiceWords<DialMethod> {
    static constexpr std::string_view kWords[] = {"TONE", "PULSE"};
};
template <>
struct ChoiceWords<SpeakerMode> {
    static constexpr std::string_view kWords[] = {"ON", "OFF", "CONNECT"};
};
template <>
struct ChoiceWords<SpeakerLevel> {
    static constexpr std::string_view kWords[] = {"LOW", "MEDIUM", "HIGH"};
};

// What is not in the paragraph has the value given here: the server's historical behaviour. A new device differs in a
// few (NewDevice).
struct DeviceSettings {
    DeviceDescription Description;
    FixedText<100> Type;
    ClassOrder ClassPriority = ClassOrder::Class2First;
    std::uint16_t BaudRate = 19200;
    FixedText<100> CheckInit1; // modem command
    FixedText<100> CheckInit2; // modem command
    std::uint16_t ConnectTries = 1;
    bool DetectBusy = true;
    bool DetectDial = true;
    FixedText<100> DialPrefix;
    FixedText<100> DialSuffix;
    DialMethod DialType = DialMethod::Pulse;
    bool IgnoreCTS = false;
    bool IgnoreDSR = true;
    bool IgnorePageErrors = true;
    std::uint16_t MinSendRetryPages = 5;
    FixedText<100> PhoneNum; // the device's own
    FixedText<100> Organisation;
    FixedText<100> Port;
    FixedText<8> RecdUser;      // user or group that gets what the device receives; empty: nobody
    FixedText<100> ReceiveInit; // modem command
    bool ReceiveOnly = false;
    std::uint16_t ReceiveSpeed = 0; // bits per second; 0: no limit
    std::uint16_t RestartInitialPages = 1;
    std::uint16_t RestartSplitPages = 1;
    FixedText<100> SendInit; // modem command
    std::uint16_t SendMsgTries = 2;
    SpeakerMode Speaker = SpeakerMode::Off;
    SpeakerLevel SpeakerVolume = SpeakerLevel::Medium;
    std::uint16_t TransmitSpeed = 0; // bits per second; 0: no limit
    FixedText<268> BTConfigFile;     // path of the board's configuration file
    friend bool operator==(const DeviceSettings&, const DeviceSettings&) = default;
};

// The keys in the order in which they are read and written, each with the types of device that have it.
struct DeviceKey {
    KeyField<DeviceSettings> Field;
    unsigned Types; // bits by DeviceType
    [[nodiscard]] bool IsOf(DeviceType type) const { return (Types >> static_cast<unsigned>(type) & 1U) != 0; }
};
std::span<const DeviceKey> DeviceKeys();

// The key of that name, without separator and in any case, if devices of the type have it.
const DeviceKey* FindDeviceKey(DeviceType type, std::string_view name);

// What a person is told of the key of a device of the type.
KeyHelp HelpOf(const DeviceKey& key, DeviceType type);

// A device as it is edited: the settings, and beside them what SETUP.INI held for each of DeviceKeys.
struct Device {
    DeviceType Type = DeviceType::Modem;
    DeviceSettings Settings;
    std::vector<StoredValue> AsRead;
    bool IsDescribed = false; // a person has given the description, which then is the lists', too
    bool IsPortGiven = false; // and the port, about which then may be asked
};

// Takes a value that a person gives for a key of the device's type; the fault, in a sentence, when it cannot.
std::optional<std::string> TakeDeviceValue(Device& device, const DeviceKey& key, std::string_view text);

// The same for the key of that name. False after a message.
bool EnterDeviceValue(Device& device, std::string_view keyName, std::string_view text);

// What the file holds for one of DeviceKeys.
const StoredValue& StoredValueOf(const Device& device, const DeviceKey& key);

// A device that is not in the file. An organisation is that of the server.
Device NewDevice(DeviceType type, std::string_view organisation = {});

// Fills a device of that name and type; one without a paragraph, or with one without any line that counts, is a new
// one. Status 468 and 469. False after 413 or 9011.
bool ReadDeviceSettings(std::string_view name, DeviceType type, Device& device);

// How many keys saving would write, and whether any.
std::size_t CountChanged(const Device& device);
bool IsChanged(const Device& device);

// Writes the keys whose values are not those in the file, by one rewrite of SETUP.INI each; without any, does nothing.
// Status 470 and 471. False after 413, or 5000 at the first key that cannot be written: those before it are saved.
bool WriteDeviceSettings(std::string_view name, Device& device);

// What the editor offers for "Port:": COM1 to COM32, CHANNEL1 to CHANNEL24 or FAX0 to FAX63; nothing for a printer.
std::vector<std::string> OfferedPorts(DeviceType type);

} // namespace bv
