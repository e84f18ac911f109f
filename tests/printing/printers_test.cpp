// Reading printers through a library that is missing, refuses, grows and lies.
#include "platform/printers.h"

#include <gmock/gmock.h>

#include "platform/libraries.h"
#include "printing/scene.h"

namespace bv::test {
namespace {

using testing::ElementsAre;

void Play(const PrinterScene& scene) {
    static const HMODULE module = LoadLibraryA("WINSPOOL.DRV");
    using Call = void (*)(const PrinterScene*);
    reinterpret_cast<Call>(reinterpret_cast<void (*)()>(GetProcAddress(module, "ScenePlayed")))(&scene);
}

struct NoLibraries final : platform::Libraries {
    std::unique_ptr<platform::Library> Load(const std::string&) override { return nullptr; }
    unsigned long LastError() override { return ERROR_MOD_NOT_FOUND; }
};

// The first test, as a library that was found stays.
TEST(Printers, AreNoneWithoutAPrintingSystem) {
    NoLibraries none;
    const platform::Substitute<platform::Libraries> use(none);
    EXPECT_FALSE(platform::ThePrinters().IsThere());
    EXPECT_EQ(platform::ThePrinters().Installed().Error, ERROR_MOD_NOT_FOUND);
    EXPECT_TRUE(platform::ThePrinters().Bins("Printer 1").empty());
}

TEST(Printers, AreReadAsFarAsTheLibraryCanBeBelieved) {
    const struct {
        const char* Name;
        PrinterScene Played;
        std::size_t Read; // the Cyrillic one excepted
        unsigned long Error;
    } cases[] = {
        {"none", {.Printers = 0}, 0, 0},
        {"many", {.Printers = 300}, 299, 0},
        {"refused", {.Error = ERROR_ACCESS_DENIED}, 0, ERROR_ACCESS_DENIED},
        {"one more meanwhile", {.Grows = 2}, 3, 0},
        {"one more each time", {.Printers = 300, .Grows = 100}, 0, ERROR_INSUFFICIENT_BUFFER},
        {"needs less than it needs", {.NeededLie = 300}, 0, ERROR_INSUFFICIENT_BUFFER},
        {"needs more than there is", {.NeededLie = 0x80000000}, 0, ERROR_INSUFFICIENT_BUFFER},
        {"a count that lies", {.CountLie = 100000}, 1, 0},
        {"a driver that lies nowhere", {.HasBadNames = true}, 1, 0},
    };
    for (const auto& [name, played, read, error] : cases) {
        SCOPED_TRACE(name);
        Play(played);
        const platform::PrinterListing own = platform::ThePrinters().Installed();
        EXPECT_EQ(own.Error, error);
        EXPECT_EQ(own.Printers.size(), read);
        if (read == 0) continue;
        EXPECT_EQ(own.Printers.front().Name, "Printer 1");
        EXPECT_EQ(own.Printers.front().Driver, played.HasBadNames ? "" : "Laser");
    }
    Play({});
    EXPECT_EQ(platform::ThePrinters().Of("\\\\QUILL").Printers.size(), 1U);
}

TEST(Printers, TellTheirBinsWithinTheirRoom) {
    const std::string whole(24, 'U');
    Play({});
    platform::ThePrinters().Installed(); // which says where the printer is
    EXPECT_THAT(platform::ThePrinters().Bins("Printer 1"), ElementsAre(whole, "Lower"));
    EXPECT_TRUE(platform::ThePrinters().Papers("Printer 1").empty());
    for (const auto& [bins, given] : {std::pair(2, 5000), std::pair(2, 1), std::pair(100000, 2), std::pair(2, -1)}) {
        Play({.Bins = bins, .BinsGiven = given});
        const std::size_t told = platform::ThePrinters().Bins("Printer 1").size();
        EXPECT_EQ(told, bins == 2 ? std::clamp<std::size_t>(given < 0 ? 0 : given, 0, 2) : 0U) << bins << " " << given;
    }
}

} // namespace
} // namespace bv::test
