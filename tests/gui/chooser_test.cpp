// Choosing printers and adding network users, inside this process, with a printing system and a network of the tests'.
#include <windows.h>

#include <commctrl.h>
#include <gmock/gmock.h>

#include "gui/disk_server.h"
#include "gui/gui.h"
#include "resources/ids.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "support/fakes.h"
#include "support/recording_front.h"
#include "support/texts.h"
#include "users/network_users_dlg.h"
#include "users/printers.h"
#include "users/user_details_dlg.h"
#include "users/user_list_dlg.h"

namespace bv::gui {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Whether such a text is in one of the lines, soon.
bool Shows(const std::function<std::vector<std::string>()>& lines, const std::string& text) {
    return Until([&] {
        const std::vector<std::string> now = lines();
        return std::ranges::any_of(now, [&](const std::string& line) { return line.find(text) != line.npos; });
    });
}

class Choosers : public testing::Test {
  protected:
    void SetUp() override {
        Startup() = {};
        ASSERT_EQ(LoadServerPaths(), kDone);
        System.Lists[""].Printers = {{"Office laser", "PCL 6", "LPT1:", ""}};
        for (const char* name : {"kim", "anna", "lee", "robin"})
            Network.Accounts.push_back({name, std::string("Full ") + name, false, true});
        Network.Accounts.push_back({"\?\?", "\?", false, false});
    }
    void TearDown() override { ForgetPrinters(); }

    [[nodiscard]] std::string List() const { return Server.Files().Read("B-DB\\USERLIST.INI"); }

    [[nodiscard]] bool Says(const std::string& text) const {
        return Shows([&] { return Front.Said; }, text);
    }

    DiskServer Server;
    test::RecordingFront Front;
    test::FakePrinters System;
    test::FakeNetworkUsers Network;
    platform::Substitute<platform::Printers> UsePrinters{System};
    platform::Substitute<platform::NetworkUsers> UseNetwork{Network};
};

TEST_F(Choosers, APrinterIsChosenFromEachSource) {
    constexpr struct {
        int Source;
        const char* Row;
        const char* Trays;
    } kSources[] = {
        {ID_PRINTERS_OF_FAX_SERVER, "PRINT-1\tLaser printer, post room\t\\\\QUILL\\POSTROOM", "\\\\QUILL\\POSTROOM"},
        {ID_PRINTERS_OF_WORKSTATION, "Office laser\tPCL 6\tLPT1:", "Office laser"},
    };
    for (const auto& [source, row, trays] : kSources) {
        RunDriven([] { EditUserByDialog(nullptr, RecordKind::User, "ANNA"); },
                  [&](const Windows& windows) {
                      const HWND details = windows.Wait("Brivane user details - ANNA");
                      SendTo(details, ID_USER_PAGES, TCM_SETCURFOCUS, 4);
                      const HWND page = FrontPage(details);
                      Click(page, ID_PRINT_CHOOSE);
                      const HWND box = windows.Wait("Choose a printer");
                      Click(box, source);
                      EXPECT_TRUE(Shows([&] { return Entries(box, ID_PRINTERS_LIST); }, row)) << row;
                      Select(box, ID_PRINTERS_LIST, 0);
                      EXPECT_TRUE(
                          Until([&] { return Text(box, ID_PRINTERS_BINS) == std::string("Bins: upper of ") + trays; }));
                      EXPECT_EQ(Text(box, ID_PRINTERS_HINT).empty(), source == ID_PRINTERS_OF_FAX_SERVER);
                      EXPECT_FALSE(IsEnabled(box, ID_PRINTERS_OF_COMPUTER)) << "the server's files lie here";
                      Click(box, IDOK);
                      EXPECT_TRUE(Until([&] { return !IsWindow(box); }));
                      const std::string name = std::string(row).substr(0, std::string(row).find('\t'));
                      EXPECT_EQ(Text(page, ID_PRINT_PRINTER), name);
                      SendTo(page, ID_PRINT_PAPER, CB_SHOWDROPDOWN, TRUE);
                      EXPECT_THAT(Entries(page, ID_PRINT_PAPER), ElementsAre(std::string("A4 of ") + trays));
                      SendTo(page, ID_PRINT_PAPER, CB_SHOWDROPDOWN, FALSE);
                      Click(details, IDOK);
                      EXPECT_TRUE(Until([&] { return !IsWindow(details); }));
                      EXPECT_THAT(List(), HasSubstr("PrintSentDevice: " + name + "\r\n"));
                  });
    }
}

TEST_F(Choosers, NetworkUsersAreTickedNamedAndAdded) {
    RunDriven([] { AddNetworkUsersByDialog(nullptr); },
              [&](const Windows& windows) {
                  const HWND box = windows.Wait("Add network users", ID_NETWORK_LIST);
                  const auto counts = [&](const char* text) {
                      return Until([&] { return IsWindowEnabled(box) && Text(box, ID_NETWORK_COUNT) == text; });
                  };
                  EXPECT_TRUE(counts("4 of 4 shown, 0 ticked")) << Text(box, ID_NETWORK_COUNT); // anna is listed
                  EXPECT_EQ(Text(box, ID_NETWORK_FROM), "Domain QUILLNET");
                  EXPECT_THAT(Network.Asked, ElementsAre("\\\\DC1"));
                  Click(box, IDOK);
                  EXPECT_TRUE(Says("error: Tick the users to be added."));
                  FocusControlOf(box, ID_NETWORK_LIST);
                  Key('A', VK_CONTROL);
                  Key(VK_SPACE);
                  EXPECT_TRUE(counts("4 of 4 shown, 3 ticked")) << "one cannot be written";
                  Key(VK_SPACE);
                  EXPECT_TRUE(counts("4 of 4 shown, 0 ticked"));
                  Click(box, ID_NETWORK_TICK_ALL);
                  EXPECT_TRUE(counts("4 of 4 shown, 3 ticked"));
                  SetTextOf(box, ID_NETWORK_FILTER, "robin");
                  EXPECT_TRUE(counts("1 of 4 shown, 3 ticked"));
                  EXPECT_TRUE(Until([&] { return Text(box, ID_NETWORK_NAME) == "ROBIN"; }));
                  SetTextOf(box, ID_NETWORK_NAME, "LEE");
                  Click(box, IDOK);
                  EXPECT_TRUE(Says("two of the users would have this"));
                  EXPECT_TRUE(Until([&] { return FocusOf(box) == ID_NETWORK_NAME; }));
                  SetTextOf(box, ID_NETWORK_NAME, "ROB");
                  SetTextOf(box, ID_NETWORK_GROUP, "@SALES");
                  SetTextOf(box, ID_NETWORK_LIKE, "ANNA");
                  Click(box, IDOK);
                  EXPECT_TRUE(Says("status 1: Added 3, changed 0"));
                  Click(box, ID_NETWORK_UNLISTED);
                  EXPECT_TRUE(
                      Shows([&] { return Entries(box, ID_NETWORK_LIST); }, "robin\tFull robin\tROB\tis listed as ROB"));
              });
    EXPECT_THAT(List(), HasSubstr("Name: ROB\r\nFullname: Full robin\r\nGroup: @SALES\r\nUsername: robin\r\n"));
    EXPECT_TRUE(Server.Files().Has("USERS\\KIM"));
}

TEST_F(Choosers, AServerWithoutUsersBeginsWithThoseOfTheNetwork) {
    static constexpr DialogServices kServices{};
    const auto readSwitches = [] {
        ControlStream setup;
        ASSERT_EQ(LoadServerPaths(&setup), kDone);
        ReadServerSwitches(setup);
    };
    const std::string setup = Server.Files().Read("B-DB\\SETUP.INI");
    Server.Files().Write("B-DB\\SETUP.INI", test::Replaced(setup, "EnableAutoAdd: NO", "EnableAutoAdd: YES"));
    Server.Files().Write("B-DB\\USERLIST.INI", "[USER]\r\nName: (default)\r\n");
    readSwitches();
    RunDriven([] { ConfigureUsers(nullptr, kServices); },
              [&](const Windows& windows) {
                  const HWND box = windows.Wait("Add network users", ID_NETWORK_LIST);
                  EXPECT_TRUE(Until([&] { return Text(box, ID_NETWORK_COUNT) == "5 of 5 shown, 4 ticked"; }));
                  Click(box, IDCANCEL);
                  const HWND list = windows.Wait("Brivane - users and user groups");
                  EXPECT_TRUE(IsEnabled(list, ID_USERS_NETWORK));
                  Click(list, ID_USERS_SHOW_GROUPS);
                  EXPECT_TRUE(Until([&] { return !IsEnabled(list, ID_USERS_NETWORK); }));
              });
    Server.Files().Write("B-DB\\SETUP.INI", setup);
    readSwitches();
}

} // namespace
} // namespace bv::gui
