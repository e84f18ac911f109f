#include "shell/device_lists.h"

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"

namespace bv {

std::optional<ListedDevice> ParseDeviceLine(std::string_view line) {
    if (!BeginsWith(line, kDeviceKey)) return {};
    const QuotedToken name = ParseQuotedToken(KeyValue(line));
    if (!name.Token || name.Token->size() > DeviceName::kLimit) return {};
    const std::optional<std::string_view> description = ParseQuotedToken(name.Rest).Token;
    if (!description) return {};
    return ListedDevice{*name.Token, StripQuotes(*description)};
}

std::vector<ListedDevice> ReadDevicesOf(ControlStream& setup, std::string_view header) {
    std::vector<ListedDevice> devices;
    ControlLine line;
    setup.Rewind();
    if (!FindParagraph(setup, header, line)) return devices;
    while (FindKeyLine(setup, kDeviceKey, line)) {
        if (const auto device = ParseDeviceLine(line)) devices.push_back(*device);
    }
    return devices;
}

} // namespace bv
