#include "devices/device_settings.h"

#include <gmock/gmock.h>

#include "devices/setup_text.h"
#include "platform/ascii.h"
#include "support/help_pages.h"

namespace bv {
namespace {

using test::Replaced;
using test::SetupServer;
using testing::ElementsAre;
using testing::IsEmpty;
using enum DeviceType;

const std::string kReading = "status 1: Reading device settings";
const std::string kUsing = "status 1: Using file " + test::kSetupFile;
const std::string kUpdating = "status 1: Updating file " + test::kSetupFile;
const std::string kUpdated = "status 1: Updated file " + test::kSetupFile;
const std::string kError = "error: Error updating file " + test::kSetupFile;

// Every key of a modem with a value that is neither the absent nor the new one.
const std::string kModemSet =
    "Description: Main \"line\"\nType: FCLASS\nClassPriority: 1.0,1,2,2.0,2.1\nBaudRate: 38400\n"
    "CheckInit1: AT&F\nCheckInit2: ATE0;V1\nConnectTries: 3\nDetectBusy: NO\nDetectDial: NO\n"
    "DialPrefix: 9,\nDialSuffix: #\nDialType: TONE\nIgnoreCTS: YES\nIgnoreDSR: NO\nIgnorePageErrors: NO\n"
    "MinSendRetryPages: 6\nPhoneNum: +44 20 1\nOrganisation: M\xFCller: Sons\nPort: COM32\n"
    "RecdUser: @SALES\nReceiveInit: ATS0=1\nReceiveOnly: YES\nReceiveSpeed: 65535\n"
    "RestartInitialPages: 7\nRestartSplitPages: 8\nSendInit: ATX4\nSendMsgTries: 9\nSpeaker: CONNECT\n"
    "SpeakerVolume: LOW\nTransmitSpeed: 14400\n";

const std::string kModemAbsent =
    "Description:\nType: FCLASS\nClassPriority: 2,2.0,2.1,1.0,1\nBaudRate: 19200\nCheckInit1:\n"
    "CheckInit2:\nConnectTries: 1\nDetectBusy: YES\nDetectDial: YES\nDialPrefix:\nDialSuffix:\n"
    "DialType: PULSE\nIgnoreCTS: NO\nIgnoreDSR: YES\nIgnorePageErrors: YES\nMinSendRetryPages: 5\n"
    "PhoneNum:\nOrganisation:\nPort:\nRecdUser:\nReceiveInit:\nReceiveOnly: NO\nReceiveSpeed: 0\n"
    "RestartInitialPages: 1\nRestartSplitPages: 1\nSendInit:\nSendMsgTries: 2\nSpeaker: OFF\n"
    "SpeakerVolume: MEDIUM\nTransmitSpeed: 0\n";

std::string WithoutKeys(const std::string& lines, const std::vector<std::string>& keys) {
    std::string kept;
    for (std::size_t at = 0; at < lines.size();) {
        const std::size_t end = lines.find('\n', at) + 1;
        const std::string line = lines.substr(at, end - at);
        if (std::ranges::find(keys, line.substr(0, line.find(':'))) == keys.end()) kept += line;
        at = end;
    }
    return kept;
}

// A board's are a modem's without what only a modem has.
std::string BoardLines(const std::string& modemLines, const std::string& type) {
    return Replaced(
        WithoutKeys(modemLines, {"ClassPriority", "BaudRate", "CheckInit1", "CheckInit2", "IgnoreCTS", "IgnoreDSR",
                                 "IgnorePageErrors", "ReceiveInit", "SendInit", "Speaker", "SpeakerVolume"}),
        "FCLASS", type);
}

const std::string kModemNew =
    Replaced(Replaced(Replaced(Replaced(kModemAbsent, "2,2.0,2.1,1.0,1", "1.0,1,2,2.0,2.1"), "PULSE", "TONE"),
                      "IgnoreCTS: NO", "IgnoreCTS: YES"),
             "Port:", "Port: COM1");
const std::string kGammaNew = Replaced(BoardLines(kModemNew, "GAMMA"), "Port: COM1", "Port:");

std::string SavedAgain(const std::string& before, DeviceType type) {
    SetupServer server(before);
    Device device;
    EXPECT_TRUE(ReadDeviceSettings("m-1", type, device));
    EXPECT_TRUE(WriteDeviceSettings("m-1", device));
    return server.GetSetup();
}

TEST(DeviceSettings, ReadingAndSavingMakesAParagraphComplete) {
    const std::string btrout = "BTConfigFile: C:\\BTROUT\\A.CFG\n";
    const std::string head = "[M-1]\n";
    const std::tuple<const char*, DeviceType, std::string, std::string> cases[] = {
        {"all set", Modem, head + kModemSet, head + kModemSet},
        {"all set", GammaLink, head + BoardLines(kModemSet, "GAMMA"), head + BoardLines(kModemSet, "GAMMA")},
        {"all set", Brooktrout, head + BoardLines(kModemSet, "BTROUT") + btrout,
         head + BoardLines(kModemSet, "BTROUT") + btrout},
        {"all set", Printer, head + "Type: PRINT\nDevice: P\nDescription: d\n",
         head + "Type: PRINT\nDevice: P\nDescription: d\n"},
        {"no paragraph", Modem, "", head + kModemNew},
        {"no paragraph", GammaLink, "[A]\n", "[A]\n\n" + head + kGammaNew},
        {"no line that counts", Brooktrout, head + "\n ; indented\n; comment\n[B]\nPort: X\n",
         head + " ; indented\n; comment\n" + Replaced(kGammaNew, "GAMMA", "BTROUT") +
             "BTConfigFile:\n\n[B]\nPort: X\n"},
        {"no paragraph", Printer, "", head + "Description:\nType: PRINT\n"},
        {"absent", Modem, head + "Type: FCLASS\n", head + "Type: FCLASS\n" + WithoutKeys(kModemAbsent, {"Type"})},
        {"absent, an unknown key", GammaLink, head + "type: GAMMA\nFoo: 1\n",
         head + "type: GAMMA\nFoo: 1\n" + WithoutKeys(BoardLines(kModemAbsent, "GAMMA"), {"Type"})},
        {"no type", Printer, head + "x\n", head + "x\nDescription:\nType:\n"},
    };
    for (const auto& [name, type, before, after] : cases)
        EXPECT_EQ(SavedAgain(before, type), after) << name << " " << TypeWord(type);
}

TEST(DeviceSettings, UnreadableValuesCountAsAbsentAndOthersAreKeptAsTheyStand) {
    const std::tuple<const char*, const char*, const char*, bool> cases[] = {
        {"Speaker", "LOUD", "OFF", false},
        {"Speaker", "connect", "CONNECT", true},
        {"Speaker", "", "OFF", false},
        {"SpeakerVolume", "HIGHER", "MEDIUM", false},
        {"SpeakerVolume", "high", "HIGH", true},
        {"DialType", "T", "PULSE", false},
        {"DialType", "tone", "TONE", true},
        {"DetectBusy", "maybe", "YES", false},
        {"DetectBusy", "Off", "NO", true},
        {"IgnoreCTS", "", "YES", true},
        {"BaudRate", "", "19200", false},
        {"BaudRate", "fast", "0", true},
        {"BaudRate", "65537", "1", true},
        {"BaudRate", " 0009600 bits", "9600", true},
        {"ClassPriority", "1", "1.0,1,2,2.0,2.1", true},
        {"ClassPriority", "10", "2,2.0,2.1,1.0,1", true},
        {"ClassPriority", "none", "2,2.0,2.1,1.0,1", true},
        {"ClassPriority", "", "2,2.0,2.1,1.0,1", false},
        {"RecdUser", "NINECHARS", "NINECHAR", true},
        {"Type", "fclass", "fclass", true},
        {"PhoneNum", "", "", true},
    };
    for (const auto& [key, value, text, found] : cases) {
        SetupServer server("[M-1]\nPort: COM1\n" + std::string(key) + ": " + value + "\n" + key + ": 17\n");
        Device device;
        ASSERT_TRUE(ReadDeviceSettings("M-1", Modem, device));
        const DeviceKey& row = *FindDeviceKey(Modem, UpperText(key));
        EXPECT_EQ(row.Field.Text(device.Settings), text) << key << ": " << value;
        EXPECT_EQ(StoredValueOf(device, row), found ? StoredValue(text) : std::nullopt) << key << ": " << value;
    }
    SetupServer server("[M-1]\nDescription: " + std::string(60, 'd') + "\nPort: " + std::string(200, 'p') + "\n");
    Device device;
    ASSERT_TRUE(ReadDeviceSettings("M-1", Modem, device));
    EXPECT_EQ(device.Settings.Description.Size() * 1000 + device.Settings.Port.Size(), 50100U);
}

TEST(DeviceSettings, SavingWritesWhatWasChangedOneRewriteAKey) {
    const std::string before = "; top\n[M-1]\n" + kModemSet + "\n\n[M-2]\nPort: COM2\n";
    const auto change = [](const std::string& keys) {
        return [keys] {
            Device device;
            if (!ReadDeviceSettings("M-1", Modem, device)) return false;
            if (keys.find('p') != std::string::npos) device.Settings.Port = "COM7";
            if (keys.find('b') != std::string::npos) device.Settings.BaudRate = 9600;
            if (keys.find('s') != std::string::npos) device.Settings.Speaker = SpeakerMode::Off;
            return WriteDeviceSettings("M-1", device) && !IsChanged(device);
        };
    };
    const std::string clean = Replaced(before, "\n\n\n", "\n\n"); // one empty line behind the paragraph that is changed
    const std::string one = Replaced(clean, "38400", "9600");
    const std::string two = Replaced(one, "COM32", "COM7");
    const std::string three = Replaced(two, "Speaker: CONNECT", "Speaker: OFF");
    EXPECT_THAT(test::TextsLeftByFaults(before, change("")), ElementsAre(before));
    EXPECT_THAT(test::TextsLeftByFaults(before, change("b")), ElementsAre(before, one));
    EXPECT_THAT(test::TextsLeftByFaults(before, change("spb")), ElementsAre(before, one, two, three));
}

TEST(DeviceSettings, SayWhatTheyDo) {
    SetupServer server("[M-1]\n" + kModemSet);
    Device device;
    EXPECT_TRUE(ReadDeviceSettings("M-1", Modem, device));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(kReading, kUsing));
    EXPECT_TRUE(WriteDeviceSettings("M-1", device));
    EXPECT_THAT(server.Front.TakeSaid(), IsEmpty());
    EXPECT_FALSE(Startup().SettingsChanged);
    device.Settings.Port = "COM2";
    EXPECT_TRUE(WriteDeviceSettings("M-1", device));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(kUpdating, kUpdated));
    EXPECT_TRUE(Startup().SettingsChanged);
    EXPECT_EQ(server.Get(test::kSetupTemporary), "(none)");

    device.Settings.Port = "COM3";
    {
        test::FaultyFiles full(server.Files, {test::FaultKind::ShortWrite, 3});
        const platform::Substitute<platform::FileSystem> use(full);
        EXPECT_FALSE(WriteDeviceSettings("M-1", device));
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(kUpdating, kError));
    }
    const ControlStream other = OpenShared(test::kSetupFile, "r+b");
    EXPECT_FALSE(WriteDeviceSettings("M-1", device));
    EXPECT_FALSE(ReadDeviceSettings("M-1", Modem, device));
    const std::string refused = "error: Unable to open file " + test::kSetupFile;
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(refused, kReading, kUsing, refused));
}

TEST(DeviceSettings, AValueThatAPersonMayNotGiveIsRefusedWithItsReason) {
    const std::string tooLong(101, 'x');
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"Speaker", "connect", ""},
        {"Speaker", "LOUD", "Speaker: \"LOUD\" is not ON, OFF or CONNECT"},
        {"Speaker", "", "Speaker: \"\" is not ON, OFF or CONNECT"},
        {"BaudRate", "65534", ""},
        {"BaudRate", "65535", "BaudRate: \"65535\" is not a number from 0 to 65534"},
        {"BaudRate", "-1", "BaudRate: \"-1\" is not a number from 0 to 65534"},
        {"BaudRate", "", "BaudRate: \"\" is not a number from 0 to 65534"},
        {"BaudRate", "9600 ", "BaudRate: \"9600 \" ends with a blank"},
        {"ReceiveOnly", "on", ""},
        {"ReceiveOnly", "", "ReceiveOnly: \"\" is not YES or NO"},
        {"ReceiveOnly", "2", "ReceiveOnly: \"2\" is not YES or NO"},
        {"ClassPriority", "2,2.0,2.1,1.0,1", ""},
        {"ClassPriority", "1", "ClassPriority: \"1\" is not 1.0,1,2,2.0,2.1 or 2,2.0,2.1,1.0,1"},
        {"Type", "GAMMA", ""},
        {"Type", "FAX", "Type: \"FAX\" is not FCLASS, GAMMA, BTROUT or PRINT"},
        {"PhoneNum", std::string(100, 'x'), ""},
        {"PhoneNum", tooLong, "PhoneNum: \"" + tooLong + "\" is not a text of at most 100 characters"},
        {"PhoneNum", "1\r\n[X]", "PhoneNum: \"1  [X]\" holds a control character"},
        {"PhoneNum", " 1", "PhoneNum: \" 1\" begins with a blank"},
        {"Description", "a \"b\"", "Description: \"a \"b\"\" is not a text of at most 50 characters without quotes"},
        {"BTConfigFile", std::string(266, 'x'), ""},
        {"BTConfigFile", std::string(267, 'x'),
         "BTConfigFile: \"" + std::string(267, 'x') + "\" is too long for a line of the file"},
    };
    for (const auto& [key, text, fault] : cases) {
        const DeviceType type = std::string_view(key) == "BTConfigFile" ? Brooktrout : Modem;
        EXPECT_EQ(FindDeviceKey(type, key)->Field.FaultOf(text).value_or(""), fault);
    }
    EXPECT_EQ(FindDeviceKey(Printer, "Port"), nullptr);
    EXPECT_EQ(FindDeviceKey(GammaLink, "BTConfigFile"), nullptr);
    EXPECT_EQ(FindDeviceKey(Modem, "Por"), nullptr);
    EXPECT_EQ(OfferedPorts(Modem).back() + OfferedPorts(GammaLink).back() + OfferedPorts(Brooktrout).front(),
              "COM32CHANNEL24FAX0");
}

TEST(DeviceSettings, TheHelpPagesSayOfEachKeyWhatTheTableSays) {
    std::vector<std::string> expected;
    for (const DeviceKey& key : DeviceKeys())
        if (key.Field.Name() != "Type") // which is chosen when it is added
            expected.push_back(HelpRowOf(HelpOf(key, key.IsOf(Modem) ? Modem : Brooktrout)));
    EXPECT_THAT(test::HelpRows(303, 307), testing::UnorderedElementsAreArray(expected));
}

} // namespace
} // namespace bv
