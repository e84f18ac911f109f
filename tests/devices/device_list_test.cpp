#include "devices/device_list.h"

#include <gmock/gmock.h>

#include "devices/device_actions.h"
#include "devices/setup_text.h"

namespace bv {
namespace {

using test::SetupServer;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using enum DeviceType;

const std::string kUpdating = "status 1: Updating file " + test::kSetupFile;
const std::string kUpdated = "status 1: Updated file " + test::kSetupFile;
const std::string kError = "error: Error updating file " + test::kSetupFile;
const std::string kRefused = "error: Unable to open file " + test::kSetupFile;

const std::string kLists = "[OPTIONS]\n"
                           "Device: WRONG-1 \"in another paragraph\"\n"
                           "[devices] of the server\n"
                           "Device: Network \"The net\"\n"
                           "; Device: GONE \"x\"\n"
                           "device: MODEM-2, \"Two\"\n"
                           "Device: TWELVE-CHARS \"x\"\n"
                           "Device: BARE\n"
                           "Device:\n"
                           "Device: PRINT-1 \"\"\n"
                           "Device: hpprint word\n"
                           "Device: G-1 \"0123456789 0123456789 0123456789 0123456789 0123456789\"\n"
                           "[DEVICES]\n"
                           "Device: SECOND-1 \"in a second list\"\n"
                           "[PRINTERS]\n"
                           "Device: PRINT-1 \"One\"\n"
                           "[PRINT-1]\n"
                           "Description: Post room\n"
                           "Type: print\n"
                           "[M-9]\n"
                           "Type: FCLASSY\n";

TEST(DeviceList, IsReadWithoutTheLinesThatDoNotCount) {
    SetupServer server(kLists);
    test::VectorList list;
    list.Add("old");
    EXPECT_TRUE(FillDeviceList(list, {.IncludeNetwork = true, .WithDescription = true}));
    EXPECT_THAT(list.Entries, ElementsAre("Network\tThe net", "MODEM-2\tTwo", "PRINT-1\t", "hpprint\tword",
                                          "G-1\t0123456789 0123456789 0123456789 0123456789 012345"));
    EXPECT_TRUE(FillDeviceList(list, {}));
    EXPECT_THAT(list.Entries, ElementsAre("MODEM-2", "PRINT-1", "hpprint", "G-1"));
    std::size_t all = 0;
    std::size_t fax = 0;
    EXPECT_TRUE(CountDevices(all, CountedDevices::All) && CountDevices(fax, CountedDevices::FaxOnly));
    EXPECT_EQ(all * 10 + fax, 52U);
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("status 1: Checking devices", "status 1: Checking devices"));
}

TEST(DeviceList, FindsADevice) {
    const std::tuple<const char*, const char*, const char*, std::optional<DeviceType>> cases[] = {
        {"modem-2", "listed", "Two", {}}, {"Print-1", "listed printer paragraph", "Post room", Printer},
        {"m-9", "paragraph", "", {}},     {"M-", "", "", {}},
        {"SECOND-1", "", "", {}},         {"BARE", "", "", {}},
    };
    SetupServer server(kLists);
    for (const auto& [name, words, description, type] : cases) {
        FoundDevice found;
        EXPECT_TRUE(FindDevice(name, found));
        std::string what = found.IsListed ? "listed" : "";
        for (const auto& [is, word] : {std::pair(found.IsPrinter, "printer"), std::pair(found.IsScanner, "scanner"),
                                       std::pair(found.HasParagraph, "paragraph")})
            if (is) what += what.empty() ? word : " " + std::string(word);
        EXPECT_EQ(what, words) << name;
        EXPECT_EQ(found.Description, description) << name;
        EXPECT_EQ(found.Type, type) << name;
    }
    EXPECT_THAT(server.Front.Said, IsEmpty());
}

struct ListChange {
    std::string Before;
    const char* Name;
    std::optional<std::string_view> Description;
    DevicePlaces Places;
    std::string After;
};

const ListChange kListChanges[] = {
    {"", "M-1", "One", {}, "\n[DEVICES]\nDevice: M-1 \"One\"\n\n[PRINTERS]\n\n[SCANNERS]\n"},
    {"[A]\nk: v", "P-1", "P", DevicePlaces{true, true},
     "[A]\nk: v\n\n[DEVICES]\nDevice: P-1 \"P\"\n\n[PRINTERS]\nDevice: P-1 \"P\"\n\n[SCANNERS]\nDevice: P-1 \"P\"\n"},
    {"[PRINTERS]\n[SCANNERS]\n\n", "A-1", {}, {true, true}, "[PRINTERS]\n[SCANNERS]\n\n\n[DEVICES]\n"},
    // text order, and the line at the end before the empty lines
    {"[DEVICES]\nDevice: FAX1 \"1\"\nDevice: FAX2 \"2\"\n\n\n[PRINTERS]\n\n[SCANNERS]\n", "FAX10", "10", DevicePlaces{},
     "[DEVICES]\nDevice: FAX1 \"1\"\nDevice: FAX10 \"10\"\nDevice: FAX2 \"2\"\n\n\n[PRINTERS]\n\n[SCANNERS]\n"},
    {"[DEVICES]\nDevice: FAX1 \"1\"\n\n; end\n\n\n[PRINTERS]\n\n[SCANNERS]\nDevice: S \"s\"", "FAX3", "3",
     DevicePlaces{true, true},
     "[DEVICES]\nDevice: FAX1 \"1\"\n\n; end\nDevice: FAX3 \"3\"\n\n\n[PRINTERS]\nDevice: FAX3 \"3\"\n\n[SCANNERS]\n"
     "Device: FAX3 \"3\"\nDevice: S \"s\"\n"},
    // the network and lines that are no device stand where they are and are no place to stop at
    {"[DEVICES]\nDevice: NETWORK \"n\"\nDevice: ZZZZZZZZZZZZ \"x\"\nDevice: ZZ\n; c\nZone: 1\nDevice: c \"c\"\n"
     "[PRINTERS]\nDevice: NETWORK \"n\"\n[SCANNERS]\n",
     "B", "b", DevicePlaces{},
     "[DEVICES]\nDevice: NETWORK \"n\"\nDevice: ZZZZZZZZZZZZ \"x\"\nDevice: ZZ\n; c\nZone: 1\nDevice: B \"b\"\n"
     "Device: c \"c\"\n[PRINTERS]\nDevice: NETWORK \"n\"\n[SCANNERS]\n"},
    {"[DEVICES]\nDevice: NETWORK \"n\"\n[PRINTERS]\n[SCANNERS]\n", "network", std::nullopt, DevicePlaces{},
     "[DEVICES]\nDevice: NETWORK \"n\"\n[PRINTERS]\n[SCANNERS]\n"},
    // every line of the name goes, in all lists, and what readers pass over stays
    {"[DEVICES]\nDevice: b \"1\"\nDevice: C \"c\"\nDevice: B \"2\"\nDevice: B\n[printers]\nDevice: B "
     "\"p\"\n[SCANNERS]\n"
     "Device: B \"s\"\n[OTHER]\nDevice: B \"o\"\n",
     "B", std::nullopt, DevicePlaces{},
     "[DEVICES]\nDevice: C \"c\"\nDevice: B\n[printers]\n[SCANNERS]\n[OTHER]\nDevice: B \"o\"\n"},
    // a second list goes with all its lines, and lines are cleaned
    {"[DEVICES]\nDevice: A\t\"a\" \n[X]\n[DEVICES]\nDevice: Y \"y\"\nk: v\n\n[PRINTERS]\n[SCANNERS]\n[DEVICES]\n[Z]\n",
     "B", "b\nc", DevicePlaces{}, "[DEVICES]\nDevice: A \"a\"\nDevice: B \"b c\"\n[X]\n[PRINTERS]\n[SCANNERS]\n[Z]\n"},
};

TEST(DeviceList, IsRewrittenInOrder) {
    for (const auto& [before, name, description, places, after] : kListChanges) {
        SCOPED_TRACE(before);
        SetupServer server(before);
        EXPECT_TRUE(UpdateDeviceList(name, description, places));
        EXPECT_EQ(server.GetSetup(), after);
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(kUpdating, kUpdated));
        EXPECT_TRUE(Startup().SettingsChanged);
        EXPECT_TRUE(UpdateDeviceList(name, description, places));
        EXPECT_EQ(server.GetSetup(), after) << "the second time";
    }
}

TEST(DeviceList, NamesANewDevice) {
    std::string ones;
    for (int i = 1; i <= 9; ++i) ones += "Device: longstem-" + std::to_string(i) + " \"x\"\n";
    std::string all;
    for (int i = 1; i <= 99; ++i) all += "Device: M-" + std::to_string(i) + " \"x\"\n";
    const std::tuple<std::string, const char*, const char*, const char*> cases[] = {
        {"", "modem", "MODEM-1", ""},
        {"Device: modem-1 \"\"\nDevice: MODEM-3 \"\"\nDevice: MODEM-2\n", "Modem", "MODEM-2", ""},
        {"Device: (x-1 \"\"\n", "(X", "(x-2", ""},
        {"", "NINECHARS", "NINECHARS-1", ""},
        {"", "TENCHARS90", "", "Device name 'TENCHARS90-1' invalid"},
        {ones, "longstem", "LONGSTEM-10", ""},
        {test::Replaced(ones, "longstem", "ninechars"), "ninechars", "", "Device name 'NINECHARS-10' invalid"},
        {all, "M", "", "All device numbers of 'M' are in use"},
        {"", "", "", "Device name '-1' invalid"},
        {"", "a b", "", "Device name 'A B-1' invalid"},
        {"", "a,b", "", "Device name 'A,B-1' invalid"},
        {"", "\"a", "", "Device name '\"A-1' invalid"},
    };
    for (const auto& [lines, stem, name, fault] : cases) {
        SetupServer server("[DEVICES]\n" + lines + "[M-1]\n");
        EXPECT_EQ(NextDeviceName(stem).value_or("").String(), name) << stem;
        const std::string said = std::string("error: ") + fault;
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAreArray(&said, *fault == '\0' ? 0U : 1U)) << stem;
    }
}

const std::string kUsers = "[USER]\r\nName: ANNA\r\n[GROUP]\r\nName: @SALES\r\n";
const std::string kPrinterOnly =
    "[DEVICES]\nDevice: NETWORK \"n\"\nDevice: P-1 \"Old\"\n\n[PRINTERS]\nDevice: P-1 \"Old\"\n\n"
    "[SCANNERS]\nDevice: P-1 \"Old\"\n\n[P-1]\nDescription: Old\nType: PRINT\n";

TEST(DeviceActions, AddWritesTheSettingsAndThenTheLists) {
    SetupServer server("[DEVICES]\n\n[PRINTERS]\n\n[SCANNERS]\n");
    server.Put("F:\\BRIVANE\\B-DB\\USERLIST.INI", kUsers);
    Device printer = NewDevice(Printer);
    printer.Settings.Description = "Post room";
    EXPECT_TRUE(AddDevice("P-1", printer));
    EXPECT_EQ(server.GetSetup(), "[DEVICES]\nDevice: P-1 \"Post room\"\n\n[PRINTERS]\nDevice: P-1 \"Post room\"\n\n"
                                 "[SCANNERS]\n\n[P-1]\nDescription: Post room\nType: PRINT\n");
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre(kUpdating, kUpdated, kUpdating, kUpdated, "status 1: Added device P-1"));
    EXPECT_TRUE(Startup().SettingsChanged);

    const std::string before = server.GetSetup();
    Device modem = NewDevice(Modem, "Quillmere");
    EXPECT_EQ(modem.Settings.Organisation, "Quillmere");
    EXPECT_FALSE(AddDevice("p-1", modem) || AddDevice("NETWORK-1", modem) || AddDevice("TWELVE-CHARS", modem));
    modem.Settings.RecdUser = "NOBODY";
    EXPECT_FALSE(AddDevice("M-1", modem));
    modem.Settings.RecdUser = "@sales";
    modem.Settings.Type = "GAMMA";
    EXPECT_FALSE(AddDevice("M-1", modem));
    EXPECT_EQ(server.GetSetup(), before);
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("error: Device p-1 is already installed", "error: Device name 'NETWORK-1' invalid",
                            "error: Device name 'TWELVE-CHARS' invalid", "error: Brivane user NOBODY not found",
                            "error: The type of device M-1 cannot be changed"));
    modem.Settings.Type.Clear();
    EXPECT_TRUE(AddDevice("M-1", modem));
    FoundDevice found;
    EXPECT_TRUE(FindDevice("M-1", found) && found.IsListed && !found.IsPrinter && found.Type == Modem);
}

TEST(DeviceActions, ADeviceWhoseSettingsCannotBeWrittenIsNotListed) {
    const std::string before = "[DEVICES]\n[PRINTERS]\n[SCANNERS]\n";
    const std::vector<std::string> texts = test::TextsLeftByFaults(before, [] {
        Device printer = NewDevice(Printer);
        return AddDevice("P-1", printer);
    });
    const std::string described = before + "\n[P-1]\nDescription:\n";
    EXPECT_THAT(texts, ElementsAre(before, described, described + "Type: PRINT\n",
                                   "[DEVICES]\nDevice: P-1 \"\"\n[PRINTERS]\nDevice: P-1 \"\"\n[SCANNERS]\n\n[P-1]\n"
                                   "Description:\nType: PRINT\n"));
}

TEST(DeviceActions, ChangeKeepsTheDeviceInItsLists) {
    SetupServer server(kPrinterOnly);
    Device printer;
    ASSERT_TRUE(ReadDeviceSettings("P-1", Printer, printer));
    server.Front.TakeSaid();
    EXPECT_TRUE(ChangeDevice("p-1", printer));
    EXPECT_THAT(server.Front.TakeSaid(), IsEmpty());
    EXPECT_FALSE(Startup().SettingsChanged);
    printer.Settings.Description = "New";
    EXPECT_TRUE(ChangeDevice("P-1", printer));
    EXPECT_EQ(server.GetSetup(), test::Replaced(kPrinterOnly, "Old", "New"));
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre(kUpdating, kUpdated, kUpdating, kUpdated, "status 1: Modified device P-1"));

    printer.Settings.Description = "Newer";
    EXPECT_FALSE(ChangeDevice("NETWORK", printer) || ChangeDevice("P-2", printer));
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("error: Device NETWORK is the network connection and cannot be changed",
                            "error: Device P-2 not found"));
    test::FaultyFiles faulty(server.Files, {test::FaultKind::FailOnce, 3});
    const platform::Substitute<platform::FileSystem> use(faulty);
    EXPECT_FALSE(ChangeDevice("P-1", printer));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(kUpdating, kError, "status 1: Unable to modify device P-1"));
}

TEST(DeviceActions, AListedDescriptionThatNobodyEditedStays) {
    SetupServer server(
        "[DEVICES]\nDevice: M-1 \"Listed\"\n[PRINTERS]\n[SCANNERS]\n[M-1]\nType: PRINT\nRecdUser: GONE\n");
    server.Put("F:\\BRIVANE\\B-DB\\USERLIST.INI", kUsers);
    Device device;
    ASSERT_TRUE(ReadDeviceSettings("M-1", Modem, device));
    device.Settings.Type = "FCLASS";
    EXPECT_TRUE(ChangeDevice("M-1", device)) << "a receiver that was there is not looked for";
    EXPECT_THAT(server.GetSetup(), testing::StartsWith("[DEVICES]\nDevice: M-1 \"Listed\"\n[PRINTERS]\n[SCANNERS]\n"
                                                       "[M-1]\nType: FCLASS\nRecdUser: GONE\nDescription:\n"));
}

TEST(DeviceActions, DeleteAsksAndTakesTheDeviceOutOfTheLists) {
    SetupServer server(kPrinterOnly);
    const std::string question = "ask question: Deleting device P-1 - Old\n\nAre you sure?";
    EXPECT_FALSE(DeleteDevice("P-1"));
    EXPECT_EQ(server.GetSetup(), kPrinterOnly);
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(question));
    server.Front.Answer = true;
    EXPECT_FALSE(DeleteDevice("NETWORK") || DeleteDevice("P-2"));
    server.Front.TakeSaid();
    {
        test::FaultyFiles faulty(server.Files, {test::FaultKind::FailOnce, 3});
        const platform::Substitute<platform::FileSystem> use(faulty);
        EXPECT_FALSE(DeleteDevice("P-1"));
        EXPECT_THAT(server.Front.TakeSaid(),
                    ElementsAre(question, kUpdating, kError, kUpdated, "status 1: Unable to delete device P-1"));
    }
    EXPECT_TRUE(DeleteDevice("P-1"));
    EXPECT_EQ(server.GetSetup(), "[DEVICES]\nDevice: NETWORK \"n\"\n\n[PRINTERS]\n\n[SCANNERS]\n\n[P-1]\n"
                                 "Description: Old\nType: PRINT\n");
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(question, kUpdating, kUpdated, "status 1: Deleted device P-1"));
}

} // namespace
} // namespace bv
