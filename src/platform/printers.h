// The printers that the system itself knows.
#pragma once

#include <string>
#include <vector>

#include "platform/service.h"

namespace bv::platform {

// Its name is what the system is asked by: of another computer's printer "\\COMPUTER\NAME". Texts are in the code page,
// with "?" for what that lacks.
struct InstalledPrinter {
    std::string Name;
    std::string Driver;
    std::string Port;
    std::string Location; // as its administrator describes it
};

struct PrinterListing {
    unsigned long Error = 0; // the system's own number; the printers are then those that could be read
    std::vector<InstalledPrinter> Printers;
};

class Printers {
  public:
    virtual ~Printers() = default;

    // Whether the system has a part that knows of printers; without it nothing is found.
    virtual bool IsThere() = 0;

    // The workstation's own printers and those that it is connected to.
    virtual PrinterListing Installed() = 0;

    // Those of another computer, "\\NAME". May take as long as that computer takes to answer.
    virtual PrinterListing Of(const std::string& computer) = 0;

    // The names of a printer's paper bins and papers; none of a printer that is not known.
    virtual std::vector<std::string> Bins(const std::string& name) = 0;
    virtual std::vector<std::string> Papers(const std::string& name) = 0;
};

template <>
Printers& Service<Printers>::System();

inline Printers& ThePrinters() { return Service<Printers>::InUse(); }

} // namespace bv::platform
