#include "devices/device_rows.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <unordered_map>

#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/records.h"
#include "devices/device_messages.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {
namespace {

enum Key : std::size_t { kType, kPort, kPhoneNum, kOrganisation, kRecdUser, kKeyCount };
constexpr std::array<std::string_view, kKeyCount> kKeys = {"Type:", "Port:", "PhoneNum:", "Organisation:", "RecdUser:"};

// A paragraph's header as names are looked up: "[MODEM-1]", in upper case.
std::string HeaderKey(std::string_view header) { return UpperText(header.substr(0, header.find(']') + 1)); }

// The paragraphs by their headers; of two the first counts.
using Summaries = std::unordered_map<std::string, DeviceSummary>;

Summaries ReadParagraphs(ControlStream& setup) {
    Summaries summaries;
    RecordWalker walker(setup, "[", kKeys);
    while (walker.Next()) {
        DeviceSummary summary;
        FixedText<kMaxLine> text;
        if (walker.Get(kType, text)) summary.Type = text.String();
        walker.Get(kPort, summary.Port);
        walker.Get(kPhoneNum, summary.PhoneNum);
        walker.Get(kOrganisation, summary.Organisation);
        walker.Get(kRecdUser, summary.RecdUser);
        setup.Seek(walker.Start());
        ControlLine header;
        ReadControlLine(setup, header);
        summaries.emplace(HeaderKey(header), std::move(summary));
    }
    return summaries;
}

std::string TypeColumn(const DeviceSummary& device) {
    if (device.Type.empty()) return FillMessage(kNoSettingsWords);
    const std::optional<DeviceType> type = ParseDeviceType(device.Type);
    return type ? std::string(TypeTitle(*type)) : device.Type;
}

std::string ReceiverColumn(const DeviceSummary& device) {
    const std::optional<DeviceType> type = ParseDeviceType(device.Type);
    const bool receives = type && *type != DeviceType::Printer;
    return receives && device.RecdUser.IsEmpty() ? FillMessage(kDisabledWords) : device.RecdUser.String();
}

} // namespace

std::optional<std::vector<DeviceSummary>> ReadDeviceSummaries() {
    ControlStream setup = OpenForReading(PathOf(ServerFile::Setup));
    if (!setup) return {};
    const Summaries summaries = ReadParagraphs(setup);
    std::vector<DeviceSummary> devices;
    for (const auto& [name, description] : ReadDevicesOf(setup, kDeviceList)) {
        const auto found = summaries.find(FormatText("[%s]", UpperText(name)));
        DeviceSummary& device = devices.emplace_back(found == summaries.end() ? DeviceSummary() : found->second);
        device.Name = name;
        device.Description = description;
    }
    if (!WasRead(setup)) return {};
    return devices;
}

bool ReadDeviceRows(NetworkDevices network, RowTable& rows) {
    rows.Begin(kDeviceColumns);
    const auto devices = ReadDeviceSummaries();
    if (!devices) return false;
    for (const DeviceSummary& device : *devices) {
        const bool isNetwork = IsNetworkDevice(device.Name);
        if (isNetwork && network == NetworkDevices::Hidden) continue;
        rows.Add(device.Name);
        rows.Add(device.Description);
        rows.Add(isNetwork ? "Network connection" : TypeColumn(device));
        rows.Add(device.Port);
        rows.Add(device.PhoneNum);
        rows.Add(ReceiverColumn(device));
    }
    return true;
}

std::string DefaultOrganisation(const std::vector<DeviceSummary>& devices) {
    const auto found = std::ranges::find_if(devices, [](const DeviceSummary& device) {
        return IsFaxDevice(device.Name) && !device.Organisation.IsEmpty();
    });
    return found == devices.end() ? std::string() : found->Organisation.String();
}

const DeviceSummary* FindByPort(const std::vector<DeviceSummary>& devices, std::string_view port,
                                std::string_view except) {
    const auto found = std::ranges::find_if(devices, [=](const DeviceSummary& device) {
        return EqualFolded(device.Port, port) && !EqualFolded(device.Name, except);
    });
    return port.empty() || found == devices.end() ? nullptr : &*found;
}

std::string FirstFreePort(const std::vector<DeviceSummary>& devices, DeviceType type) {
    for (const std::string& port : OfferedPorts(type))
        if (FindByPort(devices, port, {}) == nullptr) return port;
    return {};
}

std::string PortBehind(std::string_view port, int places) {
    const std::size_t start = port.find_last_not_of("0123456789") + 1;
    int number = 0;
    const auto [end, error] = std::from_chars(port.data() + start, port.data() + port.size(), number);
    constexpr int kLargest = 1'000'000; // beyond which no port is counted
    if (error != std::errc() || number > kLargest) return std::string(port);
    const std::string digits = std::to_string(number + places);
    const std::size_t width = port.size() - start; // with the zeros at its front
    return std::string(port.substr(0, start)).append(width - std::min(width, digits.size()), '0').append(digits);
}

} // namespace bv
