// The dialogs of devices inside this process, on a copy of the sample server.
#include <windows.h>

#include <commctrl.h>

#include "devices/add_device_dlg.h"
#include "devices/device_details_dlg.h"
#include "devices/device_list_dlg.h"
#include "gui/dialog_fixture.h"
#include "resources/ids.h"
#include "support/texts.h"
#include "whereused/where_used_dlg.h"

namespace bv::gui {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kListTitle = "Brivane - devices";
constexpr const char* kSetup = "B-DB\\SETUP.INI";

class DeviceDialogs : public DialogFixture {
  protected:
    DeviceDialogs() : DialogFixture(kSetup) {}

    void WithList(const std::function<void(HWND, const Windows&)>& drive) {
        static constexpr DialogServices kServices{ShowUses, DeleteByDialog};
        RunDriven([] { ConfigureDevices(nullptr, kServices); },
                  [&](const Windows& windows) { drive(windows.Wait(kListTitle), windows); });
    }
    void WithDevice(const std::string& name, const std::function<void(HWND)>& drive) {
        RunDriven([&] { EditDeviceByDialog(nullptr, name); },
                  [&](const Windows& windows) { drive(windows.Wait("Brivane device details - " + name)); });
    }

    void Replace(const std::string& from, const std::string& to) const { Write(test::Replaced(File(), from, to)); }

    // The lines of one paragraph.
    [[nodiscard]] std::string Paragraph(const std::string& name) const {
        const std::string file = File();
        const std::size_t start = file.find("[" + name + "]\r\n");
        return start == file.npos ? "(none)" : file.substr(start, file.find("\r\n[", start) + 2 - start);
    }
};

enum PageNumber { kLine, kDial, kRetry, kModem, kCommands };

struct Setting {
    PageNumber Page;
    int Control;
    const char* Text; // none: a click
    const char* From; // the line of the paragraph, and what it becomes
    const char* To;
};

TEST_F(DeviceDialogs, EachControlWritesItsKeyAndNothingElse) {
    constexpr Setting kSettings[] = {
        {kLine, ID_DEVICE_PORT, "COM7", "Port: COM1", "Port: COM7"},
        {kLine, ID_DEVICE_PHONE, "+44 1", "PhoneNum: +44 20 7946 0101", "PhoneNum: +44 1"},
        {kLine, ID_DEVICE_ORGANISATION, "Quill", "Organisation: Quillmere Instruments", "Organisation: Quill"},
        {kLine, ID_DEVICE_RECEIVER, "(disabled)", "RecdUser: RECEPT", "RecdUser:"},
        {kLine, ID_DEVICE_RECEIVE_ONLY, nullptr, "ReceiveOnly: NO", "ReceiveOnly: YES"},
        {kDial, ID_DEVICE_DIAL_TYPE + 1, nullptr, "DialType: TONE", "DialType: PULSE"},
        {kDial, ID_DEVICE_DIAL_PREFIX, "0,", "DialPrefix: 9,", "DialPrefix: 0,"},
        {kDial, ID_DEVICE_DIAL_SUFFIX, "#", "DialSuffix:", "DialSuffix: #"},
        {kDial, ID_DEVICE_DETECT_DIAL, nullptr, "DetectDial: YES", "DetectDial: NO"},
        {kDial, ID_DEVICE_DETECT_BUSY, nullptr, "DetectBusy: YES", "DetectBusy: NO"},
        {kDial, ID_DEVICE_CONNECT_TRIES, "3", "ConnectTries: 2", "ConnectTries: 3"},
        {kRetry, ID_DEVICE_SEND_TRIES, "65534", "SendMsgTries: 2", "SendMsgTries: 65534"},
        {kRetry, ID_DEVICE_RETRY_PAGES, "6", "MinSendRetryPages: 5", "MinSendRetryPages: 6"},
        {kRetry, ID_DEVICE_INITIAL_PAGES, "7", "RestartInitialPages: 1", "RestartInitialPages: 7"},
        {kRetry, ID_DEVICE_SPLIT_PAGES, "8", "RestartSplitPages: 1", "RestartSplitPages: 8"},
        {kRetry, ID_DEVICE_TRANSMIT_SPEED, "0", "TransmitSpeed: 14400", "TransmitSpeed: 0"},
        {kRetry, ID_DEVICE_RECEIVE_SPEED, "9600", "ReceiveSpeed: 0", "ReceiveSpeed: 9600"},
        {kModem, ID_DEVICE_BAUD_RATE, "57600", "BaudRate: 38400", "BaudRate: 57600"},
        {kModem, ID_DEVICE_CLASS + 1, nullptr, "ClassPriority: 1.0,1,2,2.0,2.1", "ClassPriority: 2,2.0,2.1,1.0,1"},
        {kModem, ID_DEVICE_SPEAKER, nullptr, "Speaker: CONNECT", "Speaker: ON"},
        {kModem, ID_DEVICE_VOLUME + 2, nullptr, "SpeakerVolume: LOW", "SpeakerVolume: HIGH"},
        {kModem, ID_DEVICE_IGNORE_CTS, nullptr, "IgnoreCTS: YES", "IgnoreCTS: NO"},
        {kModem, ID_DEVICE_IGNORE_DSR, nullptr, "IgnoreDSR: YES", "IgnoreDSR: NO"},
        {kModem, ID_DEVICE_IGNORE_PAGES, nullptr, "IgnorePageErrors: YES", "IgnorePageErrors: NO"},
        {kCommands, ID_DEVICE_CHECK_1, "AT", "CheckInit1: AT&F", "CheckInit1: AT"},
        {kCommands, ID_DEVICE_CHECK_2, "ATZ", "CheckInit2: ATE0Q0V1", "CheckInit2: ATZ"},
        {kCommands, ID_DEVICE_SEND_COMMAND, "ATX3", "SendInit: ATX4", "SendInit: ATX3"},
        {kCommands, ID_DEVICE_RECEIVE_COMMAND, "ATS0=2", "ReceiveInit: ATS0=1", "ReceiveInit: ATS0=2"},
    };
    std::string paragraph = Paragraph("MODEM-1");
    WithDevice("MODEM-1", [&](HWND dialog) {
        for (const Setting& setting : kSettings)
            Make(ShowPage(dialog, ID_DEVICE_PAGES, setting.Page), {setting.Control, setting.Text});
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    std::string after = paragraph;
    for (const Setting& setting : kSettings)
        after = test::Replaced(after, std::string("\r\n") + setting.From + "\r\n",
                               std::string("\r\n") + setting.To + "\r\n");
    EXPECT_EQ(File(), test::Replaced(Before, paragraph, after));
    EXPECT_THAT(Front.Said, Contains("status 1: Modified device MODEM-1"));
}

TEST_F(DeviceDialogs, FaultsKeepTheirPageAndGetTheFocus) {
    constexpr struct {
        Setting Wrong;
        const char* Message;
    } kFaults[] = {
        {{kLine, ID_DEVICE_DESCRIPTION, "a \"b\"", "", ""}, "error: Description: \"a \"b\"\" is not"},
        {{kLine, ID_DEVICE_RECEIVER, "NOBODY", "", ""}, "error: Brivane user NOBODY not found"},
        {{kLine, ID_DEVICE_PHONE, "Ж", "", ""}, "error: \"?\" holds characters"},
        {{kDial, ID_DEVICE_CONNECT_TRIES, "65535", "", ""}, "error: ConnectTries: \"65535\" is not"},
        {{kModem, ID_DEVICE_BAUD_RATE, "fast", "", ""}, "error: BaudRate: \"fast\" is not"},
    };
    for (const auto& [wrong, message] : kFaults) {
        Front.Said.clear();
        Front.Answer = false;
        WithDevice("MODEM-1", [&](HWND dialog) {
            const HWND page = ShowPage(dialog, ID_DEVICE_PAGES, wrong.Page);
            Make(page, {wrong.Control, wrong.Text});
            Click(dialog, IDOK);
            EXPECT_TRUE(Until([&] { return !Front.Said.empty() && FocusOf(FrontPage(dialog)) == wrong.Control; }))
                << message;
            Click(dialog, IDCANCEL);
            EXPECT_TRUE(Says("Lose changes?"));
            Front.Answer = true;
        });
        EXPECT_THAT(Front.Said, Contains(StartsWith(message)));
    }
    EXPECT_EQ(File(), Before);
}

// MODEM-2 has few of its keys, a word that is none, and a line that is not ours.
TEST_F(DeviceDialogs, WithoutAChangeNothingIsWrittenAndWithOneWhatIsMissing) {
    WithDevice("MODEM-2", [&](HWND dialog) {
        EXPECT_EQ(Text(dialog, ID_DEVICE_HINT),
                  "Settings that file SETUP.INI does not have yet and that saving writes: 25");
        for (int page = kLine; page <= kCommands; ++page) ShowPage(dialog, ID_DEVICE_PAGES, page);
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_EQ(File(), Before);
    EXPECT_FALSE(Startup().SettingsChanged);
    WithDevice("MODEM-2", [&](HWND dialog) {
        SetTextOf(FrontPage(dialog), ID_DEVICE_PHONE, "7");
        Replace("Port: COM2", "Port: COM5");
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_THAT(Paragraph("MODEM-2"), HasSubstr("Port: COM5\r\nRecdUser: @ACCTS\r\nSpeaker: OFF\r\nCallLog: YES\r\n"));
    EXPECT_THAT(Paragraph("MODEM-2"), HasSubstr("PhoneNum: 7\r\n"));
    EXPECT_THAT(Paragraph("MODEM-2"), HasSubstr("DialType: PULSE\r\n"));
    WithDevice("GAMMA-1", [&](HWND dialog) {
        SetTextOf(FrontPage(dialog), ID_DEVICE_PHONE, "8");
        Replace("Device: GAMMA-1 \"GammaLink channel, drawing office\"\r\n", "");
        Click(dialog, IDOK);
        EXPECT_TRUE(Says("error: Device GAMMA-1 not found"));
        EXPECT_TRUE(IsWindow(dialog));
        Front.Answer = true;
    });
}

TEST_F(DeviceDialogs, TheListIsWorkedByKeyboard) {
    WithList([&](HWND list, const Windows& windows) {
        const auto counts = [&](const std::string& text) {
            return Until([&] { return Text(list, ID_DEVICES_COUNT) == text; });
        };
        EXPECT_TRUE(counts("6 of 6 shown, 1 selected"));
        EXPECT_THAT(Entries(list, ID_DEVICES_LIST)[1],
                    StartsWith("GAMMA-1\tGammaLink channel, drawing office\tGammaLink channel\tCHANNEL1\t"));
        FocusControlOf(list, ID_DEVICES_LIST);
        Key(VK_INSERT);
        HWND add = windows.Wait("Add new device");
        EXPECT_EQ(Text(add, ID_NEW_DEVICE_NAME), "MODEM-3");
        EXPECT_EQ(Text(add, ID_NEW_DEVICE_PORT), "COM3");
        Key(VK_DOWN); // to the next type
        EXPECT_TRUE(Until([&] { return Text(add, ID_NEW_DEVICE_NAME) == "GAMMA-2"; }));
        SetTextOf(add, ID_NEW_DEVICE_NUMBER, "1");
        Key(VK_RETURN);
        EXPECT_TRUE(Says("error: Device GAMMA-1 is already installed"));
        SetTextOf(add, ID_NEW_DEVICE_NUMBER, "2");
        SetTextOf(add, ID_NEW_DEVICE_COUNT, "2");
        EXPECT_TRUE(Until([&] { return Text(add, ID_NEW_DEVICE_NAME) == "GAMMA-2 to GAMMA-3"; }));
        Key(VK_RETURN);
        const HWND details = windows.Wait("Add new device - GAMMA-2 to GAMMA-3");
        EXPECT_EQ(Text(FrontPage(details), ID_DEVICE_ORGANISATION), "Quillmere Instruments");
        Type("Line");
        Key(VK_RETURN);
        EXPECT_TRUE(counts("8 of 8 shown, 1 selected"));
        EXPECT_EQ(Selection(list, ID_DEVICES_LIST), 2);
        EXPECT_THAT(Paragraph("GAMMA-3"), HasSubstr("Description: Line 2\r\nType: GAMMA\r\n"));
        EXPECT_THAT(Paragraph("GAMMA-3"), HasSubstr("Port: CHANNEL3\r\n"));

        Front.Said.clear();
        Key(VK_DELETE);
        EXPECT_TRUE(Says("Deleting device GAMMA-2 - Line 1"));
        EXPECT_TRUE(counts("8 of 8 shown, 1 selected")) << "although the answer was No";
        Front.Answer = true;
        Key(VK_DOWN, VK_SHIFT);
        EXPECT_TRUE(counts("8 of 8 shown, 2 selected"));
        Key(VK_DELETE);
        EXPECT_TRUE(counts("6 of 6 shown, 1 selected"));
        EXPECT_THAT(Front.Said, Contains("status 1: Deleted 2 devices"));

        Click(list, ID_DEVICES_NETWORK);
        EXPECT_TRUE(counts("7 of 7 shown, 1 selected"));
        Select(list, ID_DEVICES_LIST, 4);
        EXPECT_TRUE(Says("status 1: NETWORK is the network connection and is not changed here"));
        EXPECT_FALSE(IsEnabled(list, ID_DEVICES_EDIT) || IsEnabled(list, ID_DEVICES_DELETE));
        Key(VK_ESCAPE);
        EXPECT_TRUE(IsClosed(list));
    });
}

TEST_F(DeviceDialogs, ADeviceWithoutSettingsGetsATypeFirst) {
    Replace("[PRINT-2]\r\n", "[PRINT-9]\r\n");
    WithList([&](HWND list, const Windows& windows) {
        EXPECT_THAT(Entries(list, ID_DEVICES_LIST)[5], HasSubstr("\t(no settings)\t"));
        Select(list, ID_DEVICES_LIST, 5);
        Click(list, ID_DEVICES_EDIT);
        const HWND type = windows.Wait("Type of device PRINT-2");
        EXPECT_TRUE(IsChecked(type, ID_NEW_DEVICE_TYPE + 3)) << "as its name says";
        Click(type, IDOK);
        const HWND details = windows.Wait("Brivane device details - PRINT-2");
        EXPECT_THAT(Paragraph("PRINT-2"), HasSubstr("Type: PRINT\r\n"));
        Click(details, IDCANCEL);
        EXPECT_TRUE(
            Until([&] { return Entries(list, ID_DEVICES_LIST)[5].find("Windows printer") != std::string::npos; }));
    });
}

TEST_F(DeviceDialogs, APrinterThatIsUsedIsDeletedWithWhatBecomesOfItsPlaces) {
    WithList([&](HWND list, const Windows& windows) {
        SetTextOf(list, ID_DEVICES_FILTER, "PRINT-2");
        EXPECT_TRUE(Until([&] { return IsEnabled(list, ID_DEVICES_WHERE_USED); }));
        Click(list, ID_DEVICES_DELETE);
        const HWND uses = windows.Wait("Where PRINT-2 is used", ID_USES_LEAVE);
        EXPECT_THAT(Text(uses, ID_USES_COUNT), StartsWith("Places where printer PRINT-2 is used: "));
        Send(GetDlgItem(uses, ID_USES_REPLACE), BM_CLICK);
        EXPECT_THAT(Entries(uses, ID_USES_BY), ElementsAre("PRINT-1", "PRINT-2"));
        SetTextOf(uses, ID_USES_BY, "print-1");
        Click(uses, IDOK);
        EXPECT_TRUE(IsClosed(uses));
        EXPECT_TRUE(Until([&] { return Entries(list, ID_DEVICES_LIST).empty(); }));
    });
    EXPECT_THAT(File(), HasSubstr("PrintRecdDevice2: PRINT-1\r\n"));
    EXPECT_THAT(File(), Not(HasSubstr("Device: PRINT-2 ")));
    EXPECT_THAT(Front.Said, Contains("status 1: Deleted device PRINT-2"));
}

} // namespace
} // namespace bv::gui
