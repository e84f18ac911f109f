// The printers that a person can choose from: the fax server's own, the workstation's and the server computer's.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bv {

enum class PrinterSource { FaxServer, Workstation, ServerComputer };

struct OfferedPrinter {
    std::string Name;        // what the server's files say
    std::string Description; // or its driver
    std::string Place;       // its port, and where it stands
    std::string Installed;   // the name by which the printing system knows it; empty: it does not
};

// The characters that a printer's name has at most where it is chosen.
inline constexpr std::size_t kPrinterNameLimit = 100;

// The fax server's: "[PRINTERS]" of SETUP.INI in file order, each with the `Device:` of its own paragraph, which is
// what the printing system knows it by. False after 413 or 9011.
bool ReadServerPrinters(std::vector<OfferedPrinter>& printers);

// The computer of the server's files, "\\NAME"; empty when they are on no other computer.
std::string ServerComputer();

// Whether a source can be asked at all: one but the fax server's needs a printing system, the last one a computer, too.
bool HasPrinters(PrinterSource source);

// The printers of a source; status 9251 while a printing system is asked. Its list is kept until the program ends,
// unless it is to be read anew; the fax server's is always read. Empty after 413, 9011 or 9250, which is not said again
// for a list that is kept.
enum class PrinterReading { Kept, Anew };
std::vector<OfferedPrinter> OfferPrinters(PrinterSource source, PrinterReading reading);

// The printers of any computer, "NAME" or "\\NAME"; false after 9257 or 9250. The workstation's own for an empty name.
bool ListPrintersOf(const std::string& name, std::vector<OfferedPrinter>& printers);

// What papers a printer has, and in which bins; of one that the server's list has only by its description, those of the
// workstation's printer of that name.
struct PrinterTrays {
    std::vector<std::string> Bins;
    std::vector<std::string> Papers;
};
PrinterTrays TraysOf(const OfferedPrinter& printer);
PrinterTrays TraysOf(std::string_view name); // as it was typed: one of the server's, or one of the workstation's

// False, after 9252, for a name that no file keeps whole.
bool CheckPrinterName(std::string_view name);

// Forgets the lists that are kept.
void ForgetPrinters();

} // namespace bv
