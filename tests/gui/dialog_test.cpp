// The dialogs of the areas inside this process, on a server directory of the test's own. What the engine says is
// written down instead of shown.
#include <gmock/gmock.h>

#include <filesystem>

#include "covlet/catalogue_dlg.h"
#include "gui/disk_server.h"
#include "gui/gui.h"
#include "resources/ids.h"
#include "shell/menu_dlg.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "support/recording_front.h"

namespace bv::gui {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kCatalogueTitle = "Brivane - coversheets and letterheads";
constexpr const char* kMenuTitle = "Brivane configuration";

class Dialogs : public testing::Test {
  protected:
    void SetUp() override {
        Startup() = {};
        ASSERT_EQ(LoadServerPaths(), kDone);
    }

    // The catalogue's dialog, driven.
    void WithCatalogue(const std::function<void(HWND, const Windows&)>& drive) {
        RunDriven([] { ConfigureCoversheets(nullptr); },
                  [&](const Windows& windows) { drive(windows.Wait(kCatalogueTitle), windows); });
    }

    void WithMenu(const std::function<void(HWND)>& drive) {
        RunDriven([] { RunStartFunction(nullptr); }, [&](const Windows& windows) { drive(windows.Wait(kMenuTitle)); });
    }

    [[nodiscard]] std::string Catalogue() const { return Server.Files().Read(kCoverCatalogue); }

    DiskServer Server;
    test::RecordingFront Front;
};

// What can be pressed: add, rename, delete, edit.
std::vector<bool> EnabledButtons(HWND dialog) {
    return {IsEnabled(dialog, ID_COVLET_ADD), IsEnabled(dialog, ID_COVLET_RENAME), IsEnabled(dialog, ID_COVLET_DELETE),
            IsEnabled(dialog, ID_COVLET_EDIT)};
}

TEST_F(Dialogs, CatalogueShowsEachKindAndEnablesWhatCanAct) {
    WithCatalogue([](HWND dialog, const Windows&) {
        EXPECT_THAT(Entries(dialog, ID_COVLET_LIST),
                    ElementsAre("ORDER\tOrder to a supplier", "PRICES\tPrice list, all prices in £",
                                "SHORT\tShort note, only in the editor's form", "STANDARD\tStandard coversheet",
                                "URGENT\tUrgent, bitte sofort zustellen an Büro"));
        EXPECT_EQ(Selection(dialog, ID_COVLET_LIST), 0);
        EXPECT_EQ(FocusOf(dialog), ID_COVLET_LIST);
        EXPECT_EQ(Text(dialog, ID_COVLET_COUNT), "5 of 5 shown, 1 selected");
        EXPECT_THAT(EnabledButtons(dialog), ElementsAre(true, true, true, true));
        Key('C', VK_CONTROL);
        EXPECT_TRUE(Until([] { return ClipboardText() == "ORDER\tOrder to a supplier\r\n"; }));
        Click(dialog, ID_COVLET_LETTERHEADS);
        EXPECT_TRUE(Until([&] { return Entries(dialog, ID_COVLET_LIST).size() == 2; }));
        EXPECT_THAT(Entries(dialog, ID_COVLET_LIST), ElementsAre("LONDON\tLondon office", "MUNICH\tZweigbüro München"));
    });
}

TEST_F(Dialogs, CatalogueThatCannotBeReadIsSaidOnceUntilF5) {
    std::filesystem::remove(Server.Files().HostPath(kCoverCatalogue));
    WithCatalogue([&](HWND dialog, const Windows&) {
        const auto counts = [&](const std::string& text) {
            return Until([&] { return Text(dialog, ID_COVLET_COUNT) == text; });
        };
        EXPECT_TRUE(counts("The list could not be read. F5 reads it again"));
        EXPECT_THAT(EnabledButtons(dialog), ElementsAre(false, false, false, false));
        Click(dialog, ID_COVLET_LETTERHEADS);
        EXPECT_TRUE(counts("2 of 2 shown, 1 selected"));
        Click(dialog, ID_COVLET_COVERSHEETS);
        EXPECT_TRUE(counts("The list could not be read. F5 reads it again"));
        EXPECT_EQ(std::ranges::count_if(Front.Said, [](const auto& said) { return said.starts_with("error"); }), 1);
        Server.Files().Write(kCoverCatalogue, "[DIRECTORY]\r\n");
        FocusControlOf(dialog, ID_COVLET_LIST);
        Key(VK_F5);
        EXPECT_TRUE(counts("The list is empty. Add makes the first entry"));
        EXPECT_TRUE(IsEnabled(dialog, ID_COVLET_ADD));
    });
}

TEST_F(Dialogs, AddingRefusesWhatTheEngineRefusesAndKeepsTheFocusThere) {
    WithCatalogue([&](HWND dialog, const Windows& windows) {
        Click(dialog, ID_COVLET_ADD);
        const HWND box = windows.Wait("Add new coversheet");
        EXPECT_THAT(Entries(box, ID_ITEM_FILE), ElementsAre("DRAFT"));
        EXPECT_EQ(Entries(box, ID_ITEM_INSTALLED).size(), 5u);
        const std::pair<const char*, const char*> refusals[] = {
            {"", "error: Please specify a coversheet file name"},
            {"nowhere", "error: NOWHERE coversheet files (*.EPN, *.G3N, *.G3F) not found in "},
            {"order", "error: Coversheet ORDER is already installed"},
            {"\u0416", "error: \"?\" holds characters that the workstation's code page does not have."},
        };
        for (const auto& [name, message] : refusals) {
            SetTextOf(box, ID_ITEM_FILE, name);
            SetFocus(GetDlgItem(box, IDOK));
            Front.Said.clear();
            Click(box, IDOK);
            EXPECT_TRUE(Until([&] { return !Front.Said.empty() && FocusOf(box) == ID_ITEM_FILE; })) << name;
            EXPECT_THAT(Front.Said, Contains(HasSubstr(message)));
        }
        EXPECT_TRUE(IsWindow(box));
    });
}

TEST_F(Dialogs, RenamingWritesOnlyAChangedDescriptionOfFiftyCharacters) {
    const std::string before = Catalogue();
    const std::string fifty = "12345678901234567890123456789012345678901234567890";
    WithCatalogue([&](HWND dialog, const Windows& windows) {
        Select(dialog, ID_COVLET_LIST, 0);
        Click(dialog, ID_COVLET_RENAME);
        HWND box = windows.Wait("Brivane coversheet details");
        EXPECT_EQ(Text(box, ID_ITEM_NAME), "ORDER");
        EXPECT_EQ(Text(box, ID_ITEM_DESCRIPTION), "Order to a supplier");
        Click(box, IDOK);
        EXPECT_TRUE(Until([&] { return !IsWindow(box); }));
        EXPECT_EQ(Catalogue(), before);

        FocusControlOf(dialog, ID_COVLET_LIST);
        Key(VK_RETURN);
        box = windows.Wait("Brivane coversheet details");
        EXPECT_EQ(SendTo(box, ID_ITEM_DESCRIPTION, EM_GETLIMITTEXT), 50);
        SetWindowTextA(GetDlgItem(box, ID_ITEM_DESCRIPTION), (fifty + "X").c_str());
        Click(box, IDOK);
        EXPECT_TRUE(Until([&] { return Entries(dialog, ID_COVLET_LIST)[0] == "ORDER\t" + fifty; }));
        EXPECT_EQ(Selection(dialog, ID_COVLET_LIST), 0);
    });
    EXPECT_THAT(Catalogue(), HasSubstr("File: ORDER \"" + fifty + "\"\r\n"));
    EXPECT_THAT(Front.Said, Contains("status 1: Modified coversheet ORDER"));
}

TEST_F(Dialogs, DeletingAsksAndSelectsTheNextEntry) {
    const std::string before = Catalogue();
    WithCatalogue([&](HWND dialog, const Windows&) {
        const auto remaining = [&] { return Entries(dialog, ID_COVLET_LIST).size(); };
        Select(dialog, ID_COVLET_LIST, 0);
        Click(dialog, ID_COVLET_DELETE);
        EXPECT_TRUE(Until([&] { return !Front.Captions.empty(); }));
        EXPECT_THAT(Front.Captions, ElementsAre("Delete Brivane"));
        EXPECT_THAT(Front.Said,
                    Contains("ask question: Deleting coversheet ORDER - Order to a supplier\n\nAre you sure?"));
        EXPECT_EQ(Catalogue(), before) << "although the answer was No";

        Front.Answer = true;
        FocusControlOf(dialog, ID_COVLET_LIST);
        Key(VK_DELETE);
        EXPECT_TRUE(Until([&] { return remaining() == 4; }));
        EXPECT_EQ(Selection(dialog, ID_COVLET_LIST), 0);
        EXPECT_EQ(Entries(dialog, ID_COVLET_LIST)[0], "PRICES\tPrice list, all prices in £");
        for (std::size_t left = 3; left + 1 > 0; --left) {
            Click(dialog, ID_COVLET_DELETE);
            EXPECT_TRUE(Until([&] { return remaining() == left; })) << left;
        }
        EXPECT_TRUE(Until([&] { return !IsEnabled(dialog, ID_COVLET_DELETE); }));
        EXPECT_TRUE(Until([&] { return FocusOf(dialog) == ID_HELP_BUTTON; })) << "the next button that can act";
    });
    EXPECT_THAT(Catalogue(), HasSubstr("[DIRECTORY]\r\n; offered to everybody\r\n"));
    EXPECT_THAT(Catalogue(), Not(HasSubstr("File:")));
}

TEST_F(Dialogs, TypingFindsTheEntryThatBeginsSo) {
    Server.Files().Write(kCoverCatalogue, "[DIRECTORY]\r\nFile: ALPHA \"\"\r\nFile: BETA \"\"\r\nFile: BERTA \"\"\r\n"
                                          "File: BERND \"\"\r\n");
    WithCatalogue([&](HWND dialog, const Windows&) {
        const auto selects = [&](int index) {
            return Until([&] { return Selection(dialog, ID_COVLET_LIST) == index; });
        };
        FocusControlOf(dialog, ID_COVLET_LIST);
        Type("b");
        EXPECT_TRUE(selects(1));
        Type("er");
        EXPECT_TRUE(selects(2));
        Type("n");
        EXPECT_TRUE(selects(3));
        EXPECT_TRUE(Until([&] { return IsEnabled(dialog, ID_COVLET_RENAME); }));
    });
}

TEST_F(Dialogs, MenuOffersWhatIsThereAndLeavesThroughQuit) {
    Server.Files().Write("B-DB\\LOCAL.TMP", "left over");
    Startup().SettingsChanged = true;
    WithMenu([&](HWND menu) {
        EXPECT_EQ(Text(menu, ID_MENU_USERS), "&Users and user groups");
        std::vector<int> enabled;
        for (int id : {ID_MENU_USERS, ID_MENU_DEVICES, ID_MENU_SETTINGS, ID_MENU_ROUTING, ID_MENU_COVLET, ID_MENU_QUIT})
            if (IsEnabled(menu, id)) enabled.push_back(id);
        EXPECT_THAT(enabled, ElementsAre(ID_MENU_USERS, ID_MENU_DEVICES, ID_MENU_SETTINGS, ID_MENU_ROUTING,
                                         ID_MENU_COVLET, ID_MENU_QUIT));
        EXPECT_TRUE(IsChecked(menu, ID_MENU_USERS));
        EXPECT_EQ(FocusOf(menu), ID_MENU_USERS);
        Click(menu, ID_MENU_COVLET);
        Click(menu, IDOK);
        const HWND catalogue = Windows().Wait(kCatalogueTitle);
        EXPECT_FALSE(IsWindowEnabled(menu)) << "the area's dialog is modal";
        Click(catalogue, IDOK);
        EXPECT_TRUE(Until([&] { return IsChecked(menu, ID_MENU_QUIT) && FocusOf(menu) == ID_MENU_QUIT; }));
        EXPECT_TRUE(Server.Files().Has("B-DB\\LOCAL.TMP"));
        Click(menu, IDOK);
        EXPECT_TRUE(Until([&] { return !IsWindow(menu); }));
    });
    EXPECT_FALSE(Server.Files().Has("B-DB\\LOCAL.TMP"));
    EXPECT_THAT(Front.Said, Contains(HasSubstr("warning: Brivane server settings have been altered.")));
}

} // namespace
} // namespace bv::gui
