#include "devices/device_rows.h"

#include <gmock/gmock.h>

#include "devices/setup_text.h"
#include "voice/format.h"

namespace bv {
namespace {

using test::SetupServer;
using testing::ElementsAre;

std::vector<std::string> Rows(NetworkDevices network) {
    RowTable table;
    if (!ReadDeviceRows(network, table)) return {"(unreadable)"};
    std::vector<std::string> rows;
    for (std::size_t row = 0; row < table.Count(); ++row) {
        std::string& text = rows.emplace_back(table.Text(row, 0));
        for (std::size_t column = 1; column < table.Columns(); ++column)
            text.append("|").append(table.Text(row, column));
    }
    return rows;
}

TEST(DeviceRows, ShowWhatTheFirstParagraphOfTheNameSays) {
    SetupServer server("[M-2] old\nType: ISDN\nPort: X\n[m-1]\nPort: COM1\nPort: COM9\nType: fclass\nPhoneNum: 1\n"
                       "[M-1]\nType: PRINT\nRecdUser: ANNA\n[EMPTY]\n[P-1]\nType: PRINT\n[G-1]\nType: GAMMA\n"
                       "RecdUser: @SALES\nPort: channel2\nOrganisation: Quill\n[NETWORK]\nPort: 7\n"
                       "[DEVICES]\nDevice: M-1 \"Main\"\nDevice: network \"n\"\nDevice: M-2 \"\"\nDevice: EMPTY \"\"\n"
                       "Device: G-1 \"\"\nDevice: P-1 \"\"\nDevice: NONE \"\"\n[DEVICES]\nDevice: SECOND \"\"\n");
    const std::vector<std::string> devices = {
        "M-1|Main|Fax modem|COM1|1|(disabled)",    "M-2||ISDN|X||",           "EMPTY||(no settings)|||",
        "G-1||GammaLink channel|channel2||@SALES", "P-1||Windows printer|||", "NONE||(no settings)|||"};
    EXPECT_EQ(Rows(NetworkDevices::Hidden), devices);
    std::vector<std::string> all = devices;
    all.insert(all.begin() + 1, "network|n|Network connection|7||");
    EXPECT_EQ(Rows(NetworkDevices::Shown), all);

    const auto summaries = ReadDeviceSummaries();
    ASSERT_TRUE(summaries);
    EXPECT_EQ(DefaultOrganisation(*summaries), "Quill");
    EXPECT_EQ(FirstFreePort(*summaries, DeviceType::Modem), "COM2");
    EXPECT_EQ(FirstFreePort(*summaries, DeviceType::GammaLink), "CHANNEL1");
    EXPECT_EQ(FirstFreePort(*summaries, DeviceType::Printer), "");
    EXPECT_EQ(FindByPort(*summaries, "com1", "M-1"), nullptr) << "which is its own";
    EXPECT_EQ(FindByPort(*summaries, "CHANNEL2", "M-1")->Name, "G-1");
    server.Files.Delete(test::kSetupFile);
    EXPECT_THAT(Rows(NetworkDevices::Hidden), ElementsAre("(unreadable)"));
}

// The calls to the file system do not grow with the devices, only with the length of the file.
TEST(DeviceRows, ManyAreReadInOnePass) {
    std::string listed = "[DEVICES]\n";
    std::string paragraphs;
    for (int i = 1; i <= 500; ++i) {
        listed += FormatText("Device: M-%d \"Modem\"\n", i);
        paragraphs += FormatText("\n[M-%d]\nType: FCLASS\nPort: COM%d\n", i, i);
    }
    const auto calls = [](const std::string& setup, std::size_t devices) {
        SetupServer server(setup);
        test::FaultyFiles counting(server.Files, {});
        const platform::Substitute<platform::FileSystem> use(counting);
        EXPECT_EQ(Rows(NetworkDevices::Hidden).size(), devices);
        return counting.Calls(test::CallKind::Looks);
    };
    EXPECT_EQ(calls(listed + paragraphs, 500), calls(test::Replaced(listed, "Device:", ";evice:") + paragraphs, 0));
}

TEST(DeviceRows, PortsAreCountedOn) {
    const std::tuple<const char*, int, const char*> cases[] = {
        {"COM9", 0, "COM9"},   {"COM9", 2, "COM11"}, {"LINE007", 1, "LINE008"}, {"LINE99", 1, "LINE100"},
        {"BOARD", 3, "BOARD"}, {"", 1, ""},          {"A1B", 1, "A1B"},         {"X99999999999", 1, "X99999999999"},
    };
    for (const auto& [port, places, behind] : cases) EXPECT_EQ(PortBehind(port, places), behind);
}

} // namespace
} // namespace bv
