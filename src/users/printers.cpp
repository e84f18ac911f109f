#include "users/printers.h"

#include <algorithm>
#include <map>
#include <optional>

#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "platform/ascii.h"
#include "platform/drives.h"
#include "platform/file_names.h"
#include "platform/printers.h"
#include "shell/device_lists.h"
#include "shell/server_files.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr const char* kWorkstation = "this workstation";

using PrinterLists = std::map<std::string, std::vector<OfferedPrinter>>; // by their computers

PrinterLists& Kept() {
    static PrinterLists lists;
    return lists;
}

OfferedPrinter Offered(const platform::InstalledPrinter& printer) {
    const bool hasBoth = !printer.Port.empty() && !printer.Location.empty();
    return {printer.Name, printer.Driver, printer.Port + (hasBoth ? ", " : "") + printer.Location, printer.Name};
}

const OfferedPrinter* FindNamed(const std::vector<OfferedPrinter>& printers, std::string_view name) {
    const auto isNamed = [name](const OfferedPrinter& printer) { return EqualFolded(printer.Name, name); };
    const auto found = std::ranges::find_if(printers, isNamed);
    return found == printers.end() ? nullptr : &*found;
}

// The lists of the workstation's printers and of the server computer's.
const std::vector<OfferedPrinter>& KeptPrinters(const std::string& computer) {
    const auto kept = Kept().find(computer);
    if (kept != Kept().end()) return kept->second;
    std::vector<OfferedPrinter> printers;
    ListPrintersOf(computer, printers);
    return Kept()[computer] = std::move(printers);
}

} // namespace

bool ReadServerPrinters(std::vector<OfferedPrinter>& printers) {
    printers.clear();
    ControlStream setup = OpenForReading(PathOf(ServerFile::Setup));
    if (!setup) return false;
    for (const auto& [name, description] : ReadDevicesOf(setup, kPrinterList)) {
        OfferedPrinter& printer = printers.emplace_back();
        printer.Name = name.String();
        printer.Description = description.String();
        ControlLine value;
        Position body = 0;
        setup.Rewind();
        const bool hasParagraph = FindParagraph(setup, FormatText("[%s]", name), value, &body);
        if (hasParagraph && GetKeyString(setup, kDeviceKey, value, body)) printer.Place = value.String();
        printer.Installed = printer.Place;
    }
    return WasRead(setup);
}

std::string ServerComputer() {
    const std::string area = Paths().SystemArea.String();
    const std::string path = platform::ToNetworkPath(area).value_or("");
    if (!path.starts_with("\\\\")) return {};
    return path.substr(0, path.find('\\', 2));
}

bool HasPrinters(PrinterSource source) {
    if (source == PrinterSource::FaxServer) return true;
    if (source == PrinterSource::ServerComputer && ServerComputer().empty()) return false;
    return platform::ThePrinters().IsThere();
}

std::vector<OfferedPrinter> OfferPrinters(PrinterSource source, PrinterReading reading) {
    std::vector<OfferedPrinter> printers;
    if (source == PrinterSource::FaxServer) {
        ReadServerPrinters(printers);
        return printers;
    }
    if (!HasPrinters(source)) return {};
    const std::string computer = source == PrinterSource::ServerComputer ? ServerComputer() : std::string();
    if (reading == PrinterReading::Anew) Kept().erase(computer);
    return KeptPrinters(computer);
}

bool ListPrintersOf(const std::string& name, std::vector<OfferedPrinter>& printers) {
    const std::string computer = platform::NetworkComputer(name);
    printers.clear();
    platform::Printers& system = platform::ThePrinters();
    if (!system.IsThere()) {
        ShowError(kNoPrintingSystem);
        return false;
    }
    const std::string shown = computer.empty() ? kWorkstation : computer;
    ShowStatus(kAskingForPrinters, shown);
    const platform::PrinterListing listing = computer.empty() ? system.Installed() : system.Of(computer);
    SetStatusLine("", 1);
    for (const platform::InstalledPrinter& printer : listing.Printers) printers.push_back(Offered(printer));
    if (listing.Error != 0) ShowError(kPrintersUnlisted, shown, listing.Error);
    return listing.Error == 0;
}

PrinterTrays TraysOf(const OfferedPrinter& printer) {
    platform::Printers& system = platform::ThePrinters();
    if (!system.IsThere()) return {};
    std::string name = printer.Installed;
    if (name.empty()) {
        const OfferedPrinter* installed = FindNamed(KeptPrinters({}), printer.Description);
        if (installed == nullptr) return {};
        name = installed->Name;
    }
    return {system.Bins(name), system.Papers(name)};
}

PrinterTrays TraysOf(std::string_view name) {
    if (name.empty()) return {};
    std::vector<OfferedPrinter> printers;
    ReadServerPrinters(printers);
    if (const OfferedPrinter* printer = FindNamed(printers, name)) return TraysOf(*printer);
    return TraysOf({std::string(name), {}, {}, std::string(name)});
}

bool CheckPrinterName(std::string_view name) {
    if (name.size() <= kPrinterNameLimit) return true;
    ShowError(kPrinterNameTooLong, name);
    return false;
}

void ForgetPrinters() { Kept().clear(); }

} // namespace bv
