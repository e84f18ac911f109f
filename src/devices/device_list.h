// Looking into the lists of devices in SETUP.INI (shell/device_lists.h) and keeping them in order.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "devices/device_settings.h"
#include "shell/device_lists.h"
#include "shell/name_set.h"
#include "voice/list_target.h"

namespace bv {

// The devices of "[DEVICES]" in file order. False after 413 or 9011.
bool ReadDeviceList(std::vector<ListedDevice>& devices);

// What SETUP.INI says of a device, beside its settings.
struct FoundDevice {
    bool IsListed = false;
    bool IsPrinter = false; // listed in "[PRINTERS]"
    bool IsScanner = false; // listed in "[SCANNERS]"
    bool HasParagraph = false;
    DeviceDescription Description;           // as listed; when that is empty, its paragraph's
    std::vector<DeviceDescription> ListedAs; // by each list that has it
    std::optional<DeviceType> Type;
    std::string TypeText; // as its paragraph has it
};

// Looks for a device by its name in any case. False after 413 or 9011.
bool FindDevice(std::string_view name, FoundDevice& found);

enum class CountedDevices { All, FaxOnly };

// Counts the listed devices. Status 472. False after 413 or 9011.
bool CountDevices(std::size_t& count, CountedDevices which);

struct DeviceListView {
    bool IncludeNetwork = false;
    bool WithDescription = false; // behind a tab
};

// Fills the emptied list with the devices in file order. False after 413 or 9011.
bool FillDeviceList(ListTarget& list, const DeviceListView& view);

// In which lists beside "[DEVICES]" a device is put.
struct DevicePlaces {
    bool Printers = false;
    bool Scanners = false;
};

// Takes every line of that name out of the three lists and, with a description, puts a new one before the first device
// with a later name. Lines of network devices stay where they are. Of a list that is there twice the first stays, and
// one that is missing is added at the file's end; the file's lines are cleaned on the way. Status 470 and 471. False
// after 413, or after 5000 and, all the same, 471.
bool UpdateDeviceList(std::string_view name, std::optional<std::string_view> description, DevicePlaces places = {});

// What a stem is offered as when a device of the type is added: MODEM, GAMMA, BTROUT or PRINT.
std::string_view OfferedStem(DeviceType type);

// The type whose stem a name begins with, or a modem: the best guess for a device that has none.
DeviceType TypeOfName(std::string_view name);

// A name that a list can hold: of 1 to 11 characters, without blanks, commas, quotes and control characters.
bool IsValidDeviceName(std::string_view name);

// The numbers of devices of one stem.
inline constexpr int kLastDeviceNumber = 99;

// STEM-NUMBER in upper case, or in lower case when it begins with "("; it may be too long, or invalid otherwise.
std::string DeviceNameOf(std::string_view stem, int number);

// The stem of such a name: what stands before its last hyphen, or the whole of a name without one.
std::string_view StemOf(std::string_view name);

// The first of so many numbers in a row under whose names none of the lists has a device. None after 413 or 9011, or
// after a message: a name is not valid, or there are not so many.
std::optional<int> FreeNumbers(std::string_view stem, int count);

// The number that is offered for a device of the stem: the first whose name is not among them.
int OfferedNumber(const NameSet& taken, std::string_view stem);

// The names that any of the three lists has. None after 413 or 9011.
std::optional<NameSet> ReadDeviceNames();

} // namespace bv
