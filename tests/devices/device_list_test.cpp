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
    const std::tuple<std::string, const char*, int, const char*, const char*> cases[] = {
        {"", "modem", 1, "MODEM-1", ""},
        {"Device: modem-1 \"\"\nDevice: MODEM-3 \"\"\nDevice: MODEM-2\n", "Modem", 1, "MODEM-2", ""},
        {"Device: modem-1 \"\"\nDevice: MODEM-3 \"\"\n", "Modem", 2, "MODEM-4", ""},
        {"Device: (x-1 \"\"\n", "(X", 1, "(x-2", ""},
        {"", "NINECHARS", 1, "NINECHARS-1", ""},
        {"", "NINECHARS", 10, "", "Device name 'NINECHARS-10' invalid"},
        {"", "TENCHARS90", 1, "", "Device name 'TENCHARS90-1' invalid"},
        {ones, "longstem", 1, "LONGSTEM-10", ""},
        {all, "M", 1, "", "All device numbers of 'M' are in use"},
        {"Device: M-50 \"\"\n", "M", 50, "", "There are not so many free numbers of 'M' in a row"},
        {"", "", 1, "", "Device name '-1' invalid"},
        {"", "a b", 1, "", "Device name 'A B-1' invalid"},
        {"", "a,b", 1, "", "Device name 'A,B-1' invalid"},
        {"", "\"a", 1, "", "Device name '\"A-1' invalid"},
    };
    for (const auto& [lines, stem, count, name, fault] : cases) {
        SetupServer server("[DEVICES]\n" + lines + "[M-1]\n");
        const std::optional<int> number = FreeNumbers(stem, count);
        EXPECT_EQ(number ? DeviceNameOf(stem, *number) : "", name) << stem;
        const std::string said = std::string("error: ") + fault;
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAreArray(&said, *fault == '\0' ? 0U : 1U)) << stem;
    }
}

const std::string kUsers = "[USER]\r\nName: ANNA\r\n[GROUP]\r\nName: @SALES\r\n";
const std::string kPrinterOnly =
    "[DEVICES]\nDevice: NETWORK \"n\"\nDevice: P-1 \"Old\"\n\n[PRINTERS]\nDevice: P-1 \"Old\"\n\n"
    "[SCANNERS]\nDevice: P-1 \"Old\"\n\n[P-1]\nDescription: Old\nType: PRINT\n";

bool AddOne(const char* stem, const Device& device, int number = 1) {
    NewDevices devices{stem, number};
    return AddDevices(devices, device, [](int) { return true; });
}

TEST(DeviceActions, AddWritesTheSettingsAndThenTheLists) {
    SetupServer server("[DEVICES]\n\n[PRINTERS]\n\n[SCANNERS]\n");
    server.Put("F:\\BRIVANE\\B-DB\\USERLIST.INI", kUsers);
    Device printer = NewDevice(Printer);
    printer.Settings.Description = "Post room";
    EXPECT_TRUE(AddOne("P", printer));
    EXPECT_EQ(server.GetSetup(), "[DEVICES]\nDevice: P-1 \"Post room\"\n\n[PRINTERS]\nDevice: P-1 \"Post room\"\n\n"
                                 "[SCANNERS]\n\n[P-1]\nDescription: Post room\nType: PRINT\n");
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre(kUpdating, kUpdated, kUpdating, kUpdated, "status 1: Added device P-1"));
    EXPECT_TRUE(Startup().SettingsChanged);

    const std::string before = server.GetSetup();
    Device modem = NewDevice(Modem, "Quillmere");
    EXPECT_EQ(modem.Settings.Organisation, "Quillmere");
    EXPECT_FALSE(AddOne("p", modem) || AddOne("NETWORK", modem) || AddOne("TWELVE-CHAR", modem));
    modem.Settings.RecdUser = "NOBODY";
    EXPECT_FALSE(AddOne("M", modem));
    modem.Settings.RecdUser = "@sales";
    modem.Settings.Type = "GAMMA";
    EXPECT_FALSE(AddOne("M", modem));
    EXPECT_EQ(server.GetSetup(), before);
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("error: Device P-1 is already installed", "error: Device name 'NETWORK-1' invalid",
                            "error: Device name 'TWELVE-CHAR-1' invalid", "error: Brivane user NOBODY not found",
                            "error: The type of device M-1 cannot be changed"));
    modem.Settings.Type.Clear();
    EXPECT_TRUE(AddOne("M", modem));
    FoundDevice found;
    EXPECT_TRUE(FindDevice("M-1", found) && found.IsListed && !found.IsPrinter && found.Type == Modem);
}

TEST(DeviceActions, ADeviceWhoseSettingsCannotBeWrittenIsNotListed) {
    const std::string before = "[DEVICES]\n[PRINTERS]\n[SCANNERS]\n";
    const std::vector<std::string> texts = test::TextsLeftByFaults(before, [] {
        Device printer = NewDevice(Printer);
        return AddOne("P", printer);
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

const std::string kLines = "[DEVICES]\nDevice: G-1 \"First\"\n[PRINTERS]\n[SCANNERS]\n[G-1]\nType: GAMMA\n"
                           "Organisation: Quill\nPort: CHANNEL1\nSpeaker: ON\n[G-3]\nType: GAMMA\nPort: earlier\n";

TEST(DeviceActions, SeveralGetTheNextNumbersAndPorts) {
    SetupServer server(kLines);
    server.Front.Answer = true;
    std::optional<Device> device = BeginningOf(GammaLink, "G-1");
    ASSERT_TRUE(device && EnterDeviceValue(*device, "Description", "Line"));
    EXPECT_EQ(device->Settings.Port, "CHANNEL2");
    EXPECT_EQ(BeginningOf(Modem, "")->Settings.Organisation, "Quill");
    server.Front.TakeSaid();
    NewDevices taken{"g", 1, 2};
    EXPECT_FALSE(AddDevices(taken, *device, [](int) { return true; }));
    NewDevices beyond{"g", 99, 2};
    EXPECT_FALSE(AddDevices(beyond, *device, [](int) { return true; }));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Numbers 1 to 2 of g are not all free.",
                                                     "error: Number: \"100\" - a device number is from 1 to 99."));
    NewDevices devices{"g", 2, 3};
    EXPECT_FALSE(AddDevices(devices, *device, [](int done) { return done < 1; }));
    EXPECT_EQ(devices.Done, 1);
    EXPECT_TRUE(AddDevices(devices, *device, [](int) { return true; })) << "and goes on where it stopped";
    EXPECT_THAT(server.GetSetup(), testing::HasSubstr("Device: G-2 \"Line 1\"\nDevice: G-3 \"Line 2\"\n"));
    EXPECT_THAT(server.GetSetup(), testing::HasSubstr("Port: CHANNEL3\n")) << "in place of what was there";
    FoundDevice last;
    EXPECT_TRUE(FindDevice("G-4", last));
    EXPECT_EQ(last.Type, GammaLink);
    EXPECT_THAT(server.Front.Said, testing::Contains("status 1: Added device G-4"));
    Device another = NewDevice(GammaLink);
    EXPECT_TRUE(EnterDeviceValue(another, "Port", "channel4"));
    server.Front.TakeSaid();
    server.Front.Answer = false;
    EXPECT_FALSE(AddOne("G", another, 9));
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre(testing::HasSubstr("Port channel4 is used by device G-4 as well")));
}

TEST(DeviceActions, EarlierSettingsAreTakenUpOnlyWhenAgreedTo) {
    SetupServer server(kLines);
    for (const bool agrees : {false, true}) {
        server.Front.Answer = agrees;
        Device device = NewDevice(GammaLink);
        EXPECT_TRUE(OfferEarlierSettings("G-3", device));
        EXPECT_EQ(device.Settings.Port, agrees ? "earlier" : "");
        EXPECT_THAT(server.Front.TakeSaid(), testing::Contains(testing::HasSubstr("an earlier device G-3")));
    }
    Device modem = NewDevice(Modem);
    EXPECT_TRUE(OfferEarlierSettings("G-3", modem)) << "which were another type's";
    EXPECT_THAT(server.Front.Said, IsEmpty());
}

TEST(DeviceActions, AChangeGoesOnTopOfWhatSomebodyElseHasChanged) {
    Device opened;
    const auto change = [&](bool overwrites) {
        SetupServer server(kPrinterOnly + "[M-1]\nType: FCLASS\nPort: COM1\nDialPrefix: 9\nSendMsgTries: 4\n");
        server.PutSetup(test::Replaced(server.GetSetup(), "P-1 \"Old\"", "M-1 \"Old\""));
        EXPECT_TRUE(ReadDeviceSettings("M-1", Modem, opened));
        Device mine = opened;
        EXPECT_TRUE(ChangeDevice("M-1", opened, mine)) << "although keys are missing";
        EXPECT_TRUE(EnterDeviceValue(mine, "Port", "COM2") && EnterDeviceValue(mine, "DialPrefix", "0"));
        EXPECT_TRUE(EnterDeviceValue(mine, "Speaker", "ON"));
        server.PutSetup(test::Replaced(test::Replaced(server.GetSetup(), "COM1", "COM3"), "Tries: 4", "Tries: 7"));
        server.Front.TakeSaid();
        server.Front.Answer = overwrites;
        EXPECT_TRUE(ChangeDevice("M-1", opened, mine));
        EXPECT_THAT(server.Front.Said,
                    testing::Contains("ask warning: Device M-1 was changed by somebody else meanwhile: "
                                      "Port: \"COM3\".\n\nOverwrite it with your value?"));
        EXPECT_THAT(server.GetSetup(), testing::HasSubstr("DialPrefix: 0\nSendMsgTries: 7\n"));
        EXPECT_THAT(server.GetSetup(), testing::HasSubstr("Speaker: ON\n"));
        return server.GetSetup();
    };
    EXPECT_THAT(change(false), testing::HasSubstr("Port: COM3\n"));
    EXPECT_THAT(change(true), testing::HasSubstr("Port: COM2\n"));
    SetupServer server(kPrinterOnly);
    Device gone = opened;
    gone.Settings.Port = "COM9";
    EXPECT_FALSE(ChangeDevice("M-1", opened, gone));
    EXPECT_THAT(server.Front.Said, ElementsAre("error: Device M-1 not found"));
}

TEST(DeviceActions, ASaveThatFailedHalfWayGoesOnWithTheRest) {
    const std::string before = "[DEVICES]\nDevice: M-1 \"\"\n[M-1]\nType: FCLASS\nPort: COM1\nPhoneNum: 1\n";
    std::size_t halves = 0;
    for (int call = 1;; ++call) {
        SetupServer server(before);
        Device opened;
        ASSERT_TRUE(ReadDeviceSettings("M-1", Modem, opened));
        Device mine = opened;
        EXPECT_TRUE(EnterDeviceValue(mine, "Port", "COM2") && EnterDeviceValue(mine, "PhoneNum", "2"));
        EXPECT_TRUE(EnterDeviceValue(mine, "Description", "D"));
        bool done = false;
        {
            test::FaultyFiles faulty(server.Files, {test::FaultKind::FailOnce, call});
            const platform::Substitute<platform::FileSystem> use(faulty);
            done = ChangeDevice("M-1", opened, mine);
            if (!faulty.Fired()) break;
        }
        const std::string left = server.GetSetup();
        if (!done && left != before) ++halves;
        server.Front.TakeSaid();
        EXPECT_TRUE(ChangeDevice("M-1", opened, mine));
        EXPECT_THAT(server.GetSetup(), testing::HasSubstr("Device: M-1 \"D\"\n"));
        EXPECT_THAT(server.GetSetup(), testing::HasSubstr("Type: FCLASS\nPort: COM2\nPhoneNum: 2\n"));
        EXPECT_THAT(server.Front.Said, testing::Not(testing::Contains(testing::HasSubstr("somebody else"))));
    }
    EXPECT_GT(halves, 3U);
}

} // namespace
} // namespace bv
