// The printers that can be chosen from.
#include "users/printers.h"

#include <gmock/gmock.h>

#include "devices/setup_text.h"
#include "platform/drives.h"

namespace bv {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kSetup = "[PRINTERS]\nDevice: LASER \"Laser, post room\"\nDevice: PLAIN \"Office printer\"\n"
                           "Device: TWELVELETTER \"too long\"\nDevice: BARE\n\n"
                           "[LASER]\nType: PRINT\nDevice: \\\\QUILL\\POST\n\n[PLAIN]\nType: PRINT\n";

class Printers : public testing::Test {
  protected:
    ~Printers() override { ForgetPrinters(); }

    static std::vector<std::string> Names(PrinterSource source, PrinterReading reading = PrinterReading::Kept) {
        std::vector<std::string> names;
        for (const OfferedPrinter& printer : OfferPrinters(source, reading))
            names.push_back(printer.Name + "|" + printer.Description + "|" + printer.Place);
        return names;
    }

    test::SetupServer Server{kSetup};
    test::FakePrinters System;
    platform::Substitute<platform::Printers> Use{System};
};

TEST_F(Printers, OfTheServerAreTheLinesThatCountWithTheirSystemNames) {
    EXPECT_THAT(Names(PrinterSource::FaxServer),
                ElementsAre("LASER|Laser, post room|\\\\QUILL\\POST", "PLAIN|Office printer|"));
    EXPECT_THAT(System.Asked, IsEmpty());
}

TEST_F(Printers, OfTheSystemAreReadOnceAndAnewOnRequest) {
    System.Lists[""].Printers = {{"Office printer", "PCL 6", "LPT1:", "second floor"}, {"Fax", "G3", "", ""}};
    std::vector<std::string> saidBefore; // a printing system can take its time
    System.WhileAsked = [&] { saidBefore = Server.Front.Said; };
    const std::vector<std::string> office = {"Office printer|PCL 6|LPT1:, second floor", "Fax|G3|"};
    EXPECT_EQ(Names(PrinterSource::Workstation), office);
    System.Lists[""].Printers.pop_back();
    EXPECT_EQ(Names(PrinterSource::Workstation), office);
    EXPECT_THAT(Names(PrinterSource::Workstation, PrinterReading::Anew), ElementsAre(office.front()));
    EXPECT_THAT(System.Asked, ElementsAre("", ""));
    EXPECT_THAT(saidBefore, Contains("status 1: Asking for the printers of this workstation"));
}

TEST_F(Printers, ThatAreRefusedAreSaidOnce) {
    System.Lists[""].Error = 1722;
    for (int turn = 0; turn < 2; ++turn) EXPECT_THAT(Names(PrinterSource::Workstation), IsEmpty());
    const std::string refused = "error: The printers of this workstation cannot be listed (error 1722).";
    EXPECT_EQ(std::ranges::count(Server.Front.Said, refused), 1);
    System.There = false;
    std::vector<OfferedPrinter> printers;
    EXPECT_FALSE(ListPrintersOf("\\\\QUILL", printers));
    EXPECT_EQ(Server.Front.Said.back(), "error: This workstation has no printing system.");
    EXPECT_FALSE(HasPrinters(PrinterSource::Workstation));
    EXPECT_TRUE(HasPrinters(PrinterSource::FaxServer));
}

TEST_F(Printers, TraysAreThoseOfThePrinterThatIsMeant) {
    System.Lists[""].Printers = {{"Office printer", "PCL 6", "LPT1:", ""}};
    constexpr struct {
        const char* Typed;
        const char* Asked; // none: nothing is
    } kNames[] = {{"laser", "\\\\QUILL\\POST"}, {"PLAIN", "Office printer"}, {"Other", "Other"}, {"", nullptr}};
    for (const auto& [typed, asked] : kNames) {
        const PrinterTrays trays = TraysOf(typed);
        if (asked == nullptr)
            EXPECT_THAT(trays.Bins, IsEmpty());
        else
            EXPECT_THAT(trays.Papers, ElementsAre(std::string("A4 of ") + asked));
    }
    EXPECT_FALSE(CheckPrinterName(std::string(101, 'x')));
    EXPECT_THAT(Server.Front.Said.back(), StartsWith("error: Printer: \"xxx"));
}

} // namespace
} // namespace bv
