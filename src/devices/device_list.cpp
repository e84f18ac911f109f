#include "devices/device_list.h"

#include <algorithm>
#include <string>
#include <utility>

#include "ctlfile/control_stream.h"
#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/saving.h"
#include "devices/device_messages.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {
namespace {

ControlStream OpenSetup() { return OpenForReading(PathOf(ServerFile::Setup)); }

const ListedDevice* FindIn(const std::vector<ListedDevice>& devices, std::string_view name) {
    const auto isNamed = [name](const ListedDevice& device) { return EqualFolded(device.Name, name); };
    const auto found = std::ranges::find_if(devices, isNamed);
    return found == devices.end() ? nullptr : &*found;
}

void ReadParagraph(ControlStream& setup, std::string_view name, FoundDevice& found) {
    ControlLine line;
    Position body = 0;
    setup.Rewind();
    found.HasParagraph = FindParagraph(setup, FormatText("[%s]", name), line, &body);
    if (!found.HasParagraph) return;
    if (found.Description.IsEmpty()) GetKeyString(setup, "Description:", found.Description, body);
    if (GetKeyString(setup, "Type:", line, body)) found.TypeText = line.String();
    found.Type = ParseDeviceType(found.TypeText);
}

// One of the three lists while the file is copied.
struct List {
    std::string_view Header;
    std::optional<std::string> NewLine = {};
    bool Seen = false;
};

// Adds the line cleaned, so that no control character in a description can break it.
void AppendLine(std::string& text, std::string_view line) { text.append(CleanLine(line)).append(kLineEnd); }

// Takes the lines up to the next header off the front of the text.
std::string_view TakeBody(std::string_view& text) {
    const std::string_view from = text;
    while (!text.empty() && !IsParagraphLine(text)) TakeLine(text);
    return from.substr(0, from.size() - text.size());
}

// The lines of a list without those of the name, and with the new line, if any, in its place.
std::string WithDeviceLine(std::string_view body, std::string_view name, const std::optional<std::string>& newLine) {
    std::string changed;
    std::size_t end = 0; // behind the last line that is not empty
    bool inserted = !newLine;
    while (!body.empty()) {
        const std::string line = CleanLine(TakeLine(body));
        const std::optional<ListedDevice> device = ParseDeviceLine(line);
        if (device && !IsNetworkDevice(device->Name)) {
            if (EqualFolded(device->Name, name)) continue;
            if (!inserted && CompareFolded(name, device->Name) < 0) {
                AppendLine(changed, *newLine);
                inserted = true;
            }
        }
        AppendLine(changed, line);
        if (!line.empty()) end = changed.size();
    }
    if (!inserted) changed.insert(end, CleanLine(*newLine).append(kLineEnd));
    return changed;
}

// The whole file with its lists changed.
std::string WithChangedLists(std::string_view text, std::string_view name, std::span<List> lists) {
    std::string changed;
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        const auto isHeaderOf = [line](const List& list) { return BeginsWith(CountingPart(line), list.Header); };
        const auto list = std::ranges::find_if(lists, isHeaderOf);
        if (list == lists.end()) {
            AppendLine(changed, line);
            continue;
        }
        const std::string_view body = TakeBody(text);
        if (list->Seen) continue;
        list->Seen = true;
        AppendLine(changed, line);
        changed += WithDeviceLine(body, name, list->NewLine);
    }
    for (const List& list : lists) {
        if (list.Seen) continue;
        AppendLine(changed, "");
        AppendLine(changed, list.Header);
        if (list.NewLine) AppendLine(changed, *list.NewLine);
    }
    return changed;
}

} // namespace

bool ReadDeviceList(std::vector<ListedDevice>& devices) {
    devices.clear();
    ControlStream setup = OpenSetup();
    if (!setup) return false;
    devices = ReadDevicesOf(setup, kDeviceList);
    return WasRead(setup);
}

bool FindDevice(std::string_view name, FoundDevice& found) {
    found = {};
    ControlStream setup = OpenSetup();
    if (!setup) return false;
    for (const auto& [header, isThere] : {std::pair(kDeviceList, &found.IsListed),
                                          {kPrinterList, &found.IsPrinter},
                                          {kScannerList, &found.IsScanner}}) {
        const std::vector<ListedDevice> devices = ReadDevicesOf(setup, header);
        const ListedDevice* device = FindIn(devices, name);
        *isThere = device != nullptr;
        if (device != nullptr) found.ListedAs.push_back(device->Description);
    }
    if (found.IsListed) found.Description = found.ListedAs.front();
    ReadParagraph(setup, name, found);
    return WasRead(setup);
}

bool CountDevices(std::size_t& count, CountedDevices which) {
    ShowStatus(kCheckingDevices);
    std::vector<ListedDevice> devices;
    if (!ReadDeviceList(devices)) return false;
    const auto counts = [which](const ListedDevice& device) {
        return which == CountedDevices::All || IsFaxDevice(device.Name);
    };
    count = static_cast<std::size_t>(std::ranges::count_if(devices, counts));
    return true;
}

bool FillDeviceList(ListTarget& list, const DeviceListView& view) {
    list.Clear();
    std::vector<ListedDevice> devices;
    if (!ReadDeviceList(devices)) return false;
    for (const auto& [name, description] : devices) {
        if (!view.IncludeNetwork && IsNetworkDevice(name)) continue;
        list.Add(view.WithDescription ? name.String().append("\t").append(description) : name.String());
    }
    return true;
}

bool UpdateDeviceList(std::string_view name, std::optional<std::string_view> description, DevicePlaces places) {
    Rewrite rewrite(PathOf(ServerFile::Setup));
    if (!CheckOpened(rewrite)) return false;
    List lists[] = {{kDeviceList}, {kPrinterList}, {kScannerList}};
    if (description) {
        const std::string line = FormatText("Device: %s \"%s\"", name, *description);
        lists[0].NewLine = line;
        if (places.Printers) lists[1].NewLine = line;
        if (places.Scanners) lists[2].NewLine = line;
    }
    Startup().SettingsChanged = true;
    const auto write = [&] { return ReplaceText(rewrite, WithChangedLists(rewrite.Control.Rest(), name, lists)); };
    return SaveRewrite(rewrite, write, AfterFailure::SayUpdated);
}

std::string_view OfferedStem(DeviceType type) { return type == DeviceType::Modem ? "MODEM" : TypeWord(type); }

DeviceType TypeOfName(std::string_view name) {
    for (const DeviceType type : {DeviceType::GammaLink, DeviceType::Brooktrout, DeviceType::Printer})
        if (StartsWithFolded(name, OfferedStem(type))) return type;
    return DeviceType::Modem;
}

bool IsValidDeviceName(std::string_view name) {
    const auto isUnfit = [](char c) { return IsControl(c) || c == ' ' || c == ',' || c == '"'; };
    return !name.empty() && name.size() <= DeviceName::kLimit && std::ranges::none_of(name, isUnfit);
}

std::string DeviceNameOf(std::string_view stem, int number) {
    std::string name = FormatText("%s-%d", stem, number);
    // The names in parentheses are the system's own, which are in lower case.
    std::ranges::transform(name, name.begin(), name.starts_with('(') ? ToLower : ToUpper);
    return name;
}

std::string_view StemOf(std::string_view name) { return name.substr(0, name.rfind('-')); }

std::optional<NameSet> ReadDeviceNames() {
    ControlStream setup = OpenSetup();
    if (!setup) return {};
    NameSet names;
    for (const std::string_view list : {kDeviceList, kPrinterList, kScannerList})
        for (const ListedDevice& device : ReadDevicesOf(setup, list)) names.Add(device.Name);
    if (!WasRead(setup)) return {};
    return names;
}

int OfferedNumber(const NameSet& taken, std::string_view stem) {
    int number = 1;
    while (number < kLastDeviceNumber && taken.Has(DeviceNameOf(stem, number))) ++number;
    return number;
}

std::optional<int> FreeNumbers(std::string_view stem, int count) {
    const std::optional<NameSet> taken = ReadDeviceNames();
    if (!taken) return {};
    int free = 0;
    for (int number = 1; number <= kLastDeviceNumber; ++number) {
        const std::string name = DeviceNameOf(stem, number);
        if (stem.empty() || !IsValidDeviceName(name)) {
            ShowError("Device name '%s' invalid", name);
            return {};
        }
        free = taken->Has(name) ? 0 : free + 1;
        if (free == count) return number - count + 1;
    }
    ShowError(count == 1 ? MessageWith<1>("All device numbers of '%s' are in use")
                         : MessageWith<1>("There are not so many free numbers of '%s' in a row"),
              stem);
    return {};
}

} // namespace bv
