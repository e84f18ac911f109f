// The printers that faxes can go to.
#include "console/commands.h"
#include "console/located.h"
#include "console/output.h"
#include "users/printers.h"

namespace bv::console {
namespace {

int Print(const Session& session, const std::vector<OfferedPrinter>& printers) {
    std::vector<Record> records;
    for (const OfferedPrinter& printer : printers)
        records.push_back({{"Name", printer.Name}, {"Description", printer.Description}, {"Place", printer.Place}});
    PrintRecords(session, records);
    return kExitDone;
}

int ListServers(Session& session, const Arguments&) {
    std::vector<OfferedPrinter> printers;
    return ReadServerPrinters(printers) ? Print(session, printers) : kExitRefused;
}

int List(Session& session, const Arguments& arguments) {
    const bool isOfComputer = arguments.Has("--of");
    if (isOfComputer && arguments.Has("--installed")) {
        session.Streams.PrintNotice("--installed and --of cannot be given together\n");
        return kExitWrongUsage;
    }
    if (!isOfComputer && !arguments.Has("--installed")) return Located<ListServers>(session, arguments);
    session.SayWhatIsDone(false);
    std::vector<OfferedPrinter> printers;
    return ListPrintersOf(arguments["--of"], printers) ? Print(session, printers) : kExitRefused;
}

constexpr Verb kVerbs[] = {
    {.Name = "list",
     .Help = "List the fax server's printers, with the printing system's names for them",
     .Parameters = {{{"--installed", "Those of this workstation instead", ParameterKind::Flag},
                     {"--of", "Those of another computer instead", ParameterKind::Option, "COMPUTER"}}},
     .Example = "--installed",
     .Run = List},
};

} // namespace

const Area kPrinterArea = {"printer", "The printers that faxes can go to", kVerbs};

} // namespace bv::console
