// What the tests' own WINSPOOL.DRV plays.
#pragma once

#include <windows.h>

namespace bv::test {

struct PrinterScene {
    DWORD Printers = 2;       // "Printer 1" ...; the second one's name is Cyrillic
    DWORD Error = 0;          // of every list
    DWORD Grows = 0;          // so often there is one more printer when the list is asked for again
    DWORD NeededLie = 0;      // bytes by which it says less, or with the top bit set far too much, than it needs
    DWORD CountLie = 0;       // more printers than it gives
    bool HasBadNames = false; // the first one's driver lies nowhere
    int Bins = 2;             // as the driver counts them at first
    int BinsGiven = 2;        // and as it says later; it gives two
};

} // namespace bv::test
