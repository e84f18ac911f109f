// A WINSPOOL.DRV that has printers as it is told.
#include <windows.h>

#include <winspool.h>

#include <cwchar>

#include "printing/scene.h"

namespace {

constexpr std::size_t kName = 32;

bv::test::PrinterScene& Played() {
    static bv::test::PrinterScene scene;
    return scene;
}

struct Printer {
    PRINTER_INFO_2W Info;
    wchar_t Name[kName];
};

} // namespace

extern "C" {

BOOL WINAPI ListPrinters(DWORD flags, LPWSTR computer, DWORD level, LPBYTE room, DWORD size, LPDWORD needed,
                         LPDWORD count) {
    bv::test::PrinterScene& scene = Played();
    const bool isOfComputer = flags == PRINTER_ENUM_NAME;
    const bool isKnown = level == 2 && isOfComputer == (computer != nullptr);
    if (scene.Error != 0 || !isKnown) {
        SetLastError(scene.Error != 0 ? scene.Error : ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const DWORD all = scene.Printers * static_cast<DWORD>(sizeof(Printer));
    *needed = all - scene.NeededLie;
    if (size < all) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        if (scene.Grows > 0) {
            --scene.Grows;
            ++scene.Printers;
        }
        return FALSE;
    }
    auto* infos = reinterpret_cast<PRINTER_INFO_2W*>(room);
    auto* names = reinterpret_cast<wchar_t*>(infos + scene.Printers);
    static wchar_t driver[] = L"Laser";
    static wchar_t port[] = L"LPT1:";
    for (DWORD i = 0; i < scene.Printers; ++i, names += kName) {
        infos[i] = {};
        std::swprintf(names, kName, i == 1 ? L"\x0416 %lu" : L"Printer %lu", static_cast<unsigned long>(i + 1));
        infos[i].pPrinterName = names;
        infos[i].pDriverName = scene.HasBadNames && i == 0 ? reinterpret_cast<wchar_t*>(8) : driver;
        infos[i].pPortName = port;
    }
    *count = scene.Printers + scene.CountLie;
    return TRUE;
}

int WINAPI TellCapabilities(LPCWSTR, LPCWSTR port, WORD what, LPWSTR room, const DEVMODEW*) {
    constexpr std::size_t kBin = 24;
    if (what != DC_BINNAMES || std::wcscmp(port, L"LPT1:") != 0) return -1;
    if (room == nullptr) return Played().Bins;
    std::wmemset(room, L'U', kBin); // one that fills its place has no end
    std::wmemcpy(room + kBin, L"Lower", 6);
    return Played().BinsGiven;
}

void ScenePlayed(const bv::test::PrinterScene* scene) { Played() = *scene; }

} // extern "C"
