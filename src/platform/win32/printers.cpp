// WINSPOOL.DRV, which is looked up when it is first needed: a workstation without a printing system runs this program,
// too.
#include "platform/printers.h"

#include <windows.h>

#include <winspool.h>

#include <algorithm>
#include <map>

#include "platform/libraries.h"
#include "platform/win32/foreign_memory.h"
#include "platform/win32/wide_text.h"

namespace bv::platform {
namespace {

using EnumPrintersCall = BOOL(WINAPI*)(DWORD, LPWSTR, DWORD, LPBYTE, DWORD, LPDWORD, LPDWORD);
using DeviceCapabilitiesCall = int(WINAPI*)(LPCWSTR, LPCWSTR, WORD, LPWSTR, const DEVMODEW*);

constexpr std::size_t kNameLimit = 260; // letters of a name that a list gives
constexpr int kMostNames = 1024;        // bins or papers of a printer

// Names in a row, each of so many letters, and without an end when it fills them.
std::vector<std::string> NamesIn(const std::wstring& letters, std::size_t length, std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        const std::wstring name = letters.substr(i * length, length);
        const FittedText fitted = FitIntoCodePage(std::wstring_view(name).substr(0, name.find(L'\0')));
        if (fitted.IsWhole && !fitted.Text.empty()) names.push_back(fitted.Text);
    }
    return names;
}

class WindowsPrinters final : public Printers {
  public:
    bool IsThere() override { return Find(); }

    PrinterListing Installed() override { return List(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS, {}); }
    PrinterListing Of(const std::string& computer) override { return List(PRINTER_ENUM_NAME, computer); }

    std::vector<std::string> Bins(const std::string& name) override {
        constexpr std::size_t kBinName = 24;
        return Ask(name, DC_BINNAMES, kBinName);
    }
    std::vector<std::string> Papers(const std::string& name) override {
        constexpr std::size_t kPaperName = 64;
        return Ask(name, DC_PAPERNAMES, kPaperName);
    }

  private:
    bool Find() {
        if (!library_) library_ = TheLibraries().Load("WINSPOOL.DRV");
        if (!library_) return false;
        enumerate_ = reinterpret_cast<EnumPrintersCall>(library_->Entry("EnumPrintersW"));
        capabilities_ = reinterpret_cast<DeviceCapabilitiesCall>(library_->Entry("DeviceCapabilitiesW"));
        return enumerate_ != nullptr;
    }

    PrinterListing List(DWORD flags, const std::string& computer) {
        if (!Find()) return {TheLibraries().LastError(), {}};
        std::wstring name = Widened(computer, CP_ACP);
        LPWSTR const where = computer.empty() ? nullptr : name.data();
        std::vector<PRINTER_INFO_2W> room; // aligned for the records at its front
        constexpr int kTries = 5;          // the list can grow between two calls
        for (int turn = 0; turn < kTries; ++turn) {
            const auto size = static_cast<DWORD>(room.size() * sizeof(PRINTER_INFO_2W));
            DWORD needed = 0;
            DWORD count = 0;
            if (enumerate_(flags, where, 2, reinterpret_cast<LPBYTE>(room.data()), size, &needed, &count) != FALSE) {
                room.resize(std::min<std::size_t>(count, room.size()));
                return {0, TakePrinters(room)};
            }
            const DWORD error = GetLastError();
            if (error != ERROR_INSUFFICIENT_BUFFER || needed <= size || needed > kMostBytes) return {error, {}};
            room.resize(needed / sizeof(PRINTER_INFO_2W) + 1);
        }
        return {ERROR_INSUFFICIENT_BUFFER, {}};
    }

    // A printer whose name the code page lacks cannot be named in a file, and is passed over.
    std::vector<InstalledPrinter> TakePrinters(const std::vector<PRINTER_INFO_2W>& infos) {
        const auto text = [](const wchar_t* from) { return FitIntoCodePage(ForeignText(from, kNameLimit)).Text; };
        std::vector<InstalledPrinter> printers;
        for (const PRINTER_INFO_2W& info : infos) {
            const FittedText name = FitIntoCodePage(ForeignText(info.pPrinterName, kNameLimit));
            if (!name.IsWhole || name.Text.empty()) continue;
            printers.push_back({name.Text, text(info.pDriverName), text(info.pPortName), text(info.pLocation)});
            ports_[name.Text] = printers.back().Port;
        }
        return printers;
    }

    // The driver first says how many names it has; room for some more protects against one that gives more then.
    std::vector<std::string> Ask(const std::string& printer, WORD what, std::size_t length) {
        if (!Find() || capabilities_ == nullptr) return {};
        const std::wstring name = Widened(printer, CP_ACP);
        const auto known = ports_.find(printer);
        const std::wstring port = known == ports_.end() ? std::wstring() : Widened(known->second, CP_ACP);
        const int count = capabilities_(name.c_str(), port.c_str(), what, nullptr, nullptr);
        if (count <= 0 || count > kMostNames) return {};
        std::wstring letters(kMostNames * length, L'\0');
        const int given = capabilities_(name.c_str(), port.c_str(), what, letters.data(), nullptr);
        return NamesIn(letters, length, static_cast<std::size_t>(std::clamp(given, 0, count)));
    }

    static constexpr DWORD kMostBytes = 64 * 1024 * 1024;

    std::unique_ptr<Library> library_;
    EnumPrintersCall enumerate_ = nullptr;
    DeviceCapabilitiesCall capabilities_ = nullptr;
    std::map<std::string, std::string> ports_; // by the printer's name
};

} // namespace

template <>
Printers& Service<Printers>::System() {
    static WindowsPrinters printers;
    return printers;
}

} // namespace bv::platform
