// The dialogs of the destinations inside this process, on a copy of the sample server.
#include <windows.h>

#include <commctrl.h>

#include "gui/dialog_fixture.h"
#include "lcr/destinations_dlg.h"
#include "lcr/edit_lock.h"
#include "resources/ids.h"

namespace bv::gui {
namespace {

using testing::Contains;
using testing::HasSubstr;

constexpr const char* kCountries = "B-DB\\COUNTRY.INI";
constexpr const char* kRegions = "B-DB\\REGION.INI";
constexpr const char* kAreas = "B-DB\\Area44.ini";
constexpr const char* kRules = "B-DB\\LCRRULES.INI";

std::string TextOfItem(HWND tree, HTREEITEM item) {
    wchar_t text[300] = L"";
    TVITEMW what{};
    what.mask = TVIF_TEXT;
    what.hItem = item;
    what.pszText = text;
    what.cchTextMax = 300;
    Send(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&what));
    std::string narrow;
    for (const wchar_t* c = text; *c != 0; ++c) narrow += static_cast<char>(*c);
    return narrow;
}

HTREEITEM Next(HWND tree, WPARAM which, HTREEITEM item) {
    return reinterpret_cast<HTREEITEM>(Send(tree, TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(item)));
}

// The item whose text begins so, below the item; all of the tree is opened on the way.
HTREEITEM Find(HWND tree, const std::string& beginning, HTREEITEM below = nullptr) {
    for (HTREEITEM item = Next(tree, below == nullptr ? TVGN_ROOT : TVGN_CHILD, below); item != nullptr;
         item = Next(tree, TVGN_NEXT, item)) {
        if (TextOfItem(tree, item).rfind(beginning, 0) == 0) return item;
        Send(tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
        if (const HTREEITEM found = Find(tree, beginning, item)) return found;
    }
    return nullptr;
}

void Choose(HWND dialog, const std::string& beginning) {
    const HWND tree = GetDlgItem(dialog, ID_PLACES_TREE);
    Send(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(Find(tree, beginning)));
}

std::string Chosen(HWND dialog) {
    const HWND tree = GetDlgItem(dialog, ID_PLACES_TREE);
    return TextOfItem(tree, Next(tree, TVGN_CARET, nullptr));
}

class DestinationDialogs : public DialogFixture {
  protected:
    DestinationDialogs() : DialogFixture(kCountries) {}
    void SetUp() override {
        DialogFixture::SetUp();
        Before = All();
    }
    bool WithTree(const std::function<void(HWND, const Windows&)>& drive) {
        bool isSaved = false;
        RunDriven([&] { isSaved = RunLcrEditor([] { return EditDestinations(nullptr); }); },
                  [&](const Windows& windows) { drive(windows.Wait("Destinations", ID_PLACES_TREE), windows); });
        return isSaved;
    }
    [[nodiscard]] std::string All() const { return File(kCountries) + File(kRegions) + File(kAreas) + File(kRules); }
};

TEST_F(DestinationDialogs, AreWorkedByKeyboardAndWriteNothingBeforeOk) {
    EXPECT_FALSE(WithTree([&](HWND dialog, const Windows& windows) {
        Choose(dialog, "LDS");
        EXPECT_EQ(Text(dialog, ID_PLACES_INFO),
                  "Area UK/LDS \"Leeds\": 113...; used by rule 2 \"Long faxes to Leeds\", region HOME");
        SetTextOf(dialog, ID_PLACES_NUMBER, "+44 20 7946 0018");
        EXPECT_TRUE(Until([&] {
            return Text(dialog, ID_PLACES_RESULT) ==
                   "+442079460018: UK/LON (20...), London, United Kingdom; region HOME";
        })) << Text(dialog, ID_PLACES_RESULT);
        FocusControlOf(dialog, ID_PLACES_TREE);
        Key(VK_INSERT);
        HWND box = windows.Wait("Add new area of United Kingdom");
        for (const char* text : {"YORK", "York"}) {
            Type(text);
            Key(VK_TAB);
        }
        Type("1904");
        Key(VK_RETURN);
        EXPECT_TRUE(Until([&] { return Entries(box, ID_AREA_NUMBERS) == std::vector<std::string>{"1904..."}; }));
        Key(VK_RETURN);
        EXPECT_TRUE(Until([&] { return !IsWindow(box) && Chosen(dialog) == "YORK  York  1904..."; }));
        for (const WORD key : {WORD{VK_F2}, WORD{VK_RETURN}}) {
            Key(key);
            box = windows.Wait("Area of United Kingdom");
            EXPECT_EQ(Text(box, ID_AREA_ID), "YORK");
            Key(VK_ESCAPE);
            EXPECT_TRUE(Until([&] { return !IsWindow(box); }));
        }
        Key(VK_DELETE);
        EXPECT_TRUE(Says("Deleting area YORK - York, United Kingdom"));
        EXPECT_EQ(Chosen(dialog), "YORK  York  1904...") << "although the answer was No";
        SetTextOf(dialog, ID_PLACES_FILTER, "york");
        EXPECT_TRUE(Until([&] { return Find(GetDlgItem(dialog, ID_PLACES_TREE), "Countries (1)") != nullptr; }));
        Key(VK_ESCAPE);
        Front.Answer = true;
        Click(dialog, IDCANCEL);
        EXPECT_TRUE(Says("This will mean all changes will be lost."));
    }));
    EXPECT_EQ(All(), Before);
    EXPECT_FALSE(Startup().SettingsChanged);
    EXPECT_TRUE(WithTree([](HWND dialog, const Windows&) { Click(dialog, IDOK); })) << "unchanged";
    EXPECT_EQ(All(), Before);
}

struct BoxCase {
    const char* Entry; // to be edited
    const char* Title;
    std::vector<std::pair<int, const char*>> Values; // none: a click
    const char* File;
    std::string From;
    std::string To;
};

TEST_F(DestinationDialogs, BoxesChangeTheirEntryAlone) {
    const BoxCase cases[] = {
        {"FR",
         "Country",
         {{ID_COUNTRY_DESCRIPTION, "La France"}, {ID_COUNTRY_LAST_FIELD, "9"}},
         kCountries,
         "\"France\", 1",
         "\"La France\", 9"},
        {"MAN",
         "Area of United Kingdom",
         {{ID_AREA_NUMBER, "1614960"}, {ID_AREA_WHOLE, nullptr}, {ID_AREA_ADD, nullptr}},
         kAreas,
         "Match: 161*\r\n",
         "Match: 161*\r\nMatch: 1614960\r\n"},
        {"EU ",
         "Region",
         {{ID_REGION_FILTER, "sterr"}, {ID_REGION_TAKE, nullptr}},
         kRegions,
         "Match: FR\r\nMatch: IE\r\nRegion: EUROPE",
         "Match: FR\r\nMatch: IE\r\nMatch: AT\r\nRegion: EUROPE"},
        {"ALPS", "Region", {{ID_REGION_REMOVE_ALL, nullptr}}, kRegions, "Match: AT\r\nMatch: DE/MUC\r\n", ""},
        {"GB", "Other name", {{ID_SYNONYM_REFERENCE, "UK/LON"}}, kCountries, "GB: UK", "GB: UK/LON"},
    };
    for (const BoxCase& one : cases) {
        const std::string before = File(one.File);
        EXPECT_TRUE(WithTree([&](HWND dialog, const Windows& windows) {
            Choose(dialog, one.Entry);
            Click(dialog, ID_PLACES_EDIT);
            const HWND box = windows.Wait(one.Title);
            for (const auto& [control, text] : one.Values) {
                if (text != nullptr)
                    SetTextOf(box, control, text);
                else
                    Send(GetDlgItem(box, control), BM_CLICK);
            }
            Click(box, IDOK);
            EXPECT_TRUE(Until([&] { return !IsWindow(box); })) << one.Entry;
            EXPECT_EQ(File(one.File), before) << one.Entry << ": not before OK";
            Click(dialog, IDOK);
        }));
        std::string after = before;
        EXPECT_THAT(before, HasSubstr(one.From));
        EXPECT_EQ(File(one.File), after.replace(after.find(one.From), one.From.size(), one.To)) << one.Entry;
        Write(one.File, before);
    }
}

TEST_F(DestinationDialogs, MembersOfARegionArePickedByKeyboard) {
    EXPECT_FALSE(WithTree([&](HWND dialog, const Windows& windows) {
        Choose(dialog, "HOME");
        Click(dialog, ID_PLACES_EDIT);
        const HWND box = windows.Wait("Region");
        const auto members = [&](const std::vector<std::string>& names) {
            return Until([&] {
                std::vector<std::string> shown;
                for (const std::string& row : Entries(box, ID_REGION_MEMBERS))
                    shown.push_back(row.substr(0, row.find('\t')));
                return shown == names;
            });
        };
        SendTo(box, ID_REGION_SHOW, CB_SETCURSEL, 1);
        Send(box, WM_COMMAND, MAKEWPARAM(ID_REGION_SHOW, CBN_SELCHANGE));
        EXPECT_EQ(Entries(box, ID_REGION_AVAILABLE).size(), 6U) << "the countries";
        FocusControlOf(box, ID_REGION_FILTER);
        Type("ire");
        Key(VK_RIGHT, VK_MENU);
        EXPECT_TRUE(members({"UK/LON", "UK/LDS", "IE"}));
        EXPECT_EQ(Text(box, ID_REGION_COUNT), "Nothing fits the filter \"ire\"");
        FocusControlOf(box, ID_REGION_MEMBERS);
        Key(VK_LEFT, VK_MENU);
        EXPECT_TRUE(members({"UK/LON", "UK/LDS"})) << "the one that came last was selected";
        EXPECT_EQ(Entries(box, ID_REGION_AVAILABLE), std::vector<std::string>{"IE\tIreland"});
        Key(VK_DELETE);
        EXPECT_TRUE(members({"UK/LON"}));
        Click(box, IDCANCEL);
        EXPECT_TRUE(Until([&] { return !IsWindow(box); }));
        Click(dialog, IDCANCEL);
    }));
}

TEST_F(DestinationDialogs, RenamedAndDeletedEntriesTakeTheirReferencesAlong) {
    EXPECT_TRUE(WithTree([&](HWND dialog, const Windows& windows) {
        Choose(dialog, "LDS");
        Click(dialog, ID_PLACES_EDIT);
        const HWND box = windows.Wait("Area of United Kingdom");
        SetTextOf(box, ID_AREA_ID, "LEEDS");
        Click(box, IDOK);
        HWND uses = windows.Wait("Where LDS is used");
        EXPECT_THAT(Entries(uses, ID_PLACE_USES_LIST),
                    Contains("\tLCRRULES.INI\trule 2 \"Long faxes to Leeds\"\tbecomes LEEDS"));
        Click(uses, IDOK);
        EXPECT_TRUE(Until([&] { return !IsWindow(box) && Chosen(dialog).rfind("LEEDS", 0) == 0; }));
        Choose(dialog, "ALPS");
        Click(dialog, ID_PLACES_DELETE);
        uses = windows.Wait("Where ALPS is used");
        EXPECT_THAT(Entries(uses, ID_PLACE_USES_LIST), Contains(HasSubstr("loses ALPS")));
        Click(uses, IDOK);
        EXPECT_TRUE(Until([&] { return !IsWindow(uses) && Chosen(dialog).rfind("EUROPE", 0) == 0; }));
        Click(dialog, IDOK);
    }));
    EXPECT_THAT(File(kRegions), HasSubstr("Match: UK/LON\r\nMatch: UK/LEEDS\r\n"));
    EXPECT_THAT(File(kRules), HasSubstr("Area: UK/LEEDS\r\nArea: UK/STORES\r\n"));
    EXPECT_THAT(File(kRules), testing::Not(HasSubstr("ALPS")));
}

TEST_F(DestinationDialogs, FaultsKeepTheBoxAndGetTheFocus) {
    const struct {
        const char* Entry;
        const char* Title;
        int Control;
        const char* Text;
        std::string Said;
    } kFaults[] = {
        {"FR", "Country", ID_COUNTRY_ID, "UK", "error: Identifier: \"UK\" - there is a country of that name already"},
        {"UK", "Country", ID_COUNTRY_CODE, "45",
         "error: DiallingCode: \"45\" - the areas of country UK are kept under 44"},
        {"FR", "Country", ID_COUNTRY_DESCRIPTION, "Ж", "error: \"?\" holds characters"},
        {"LON", "Area of United Kingdom", ID_AREA_ID, "A/B", "error: Identifier: \"A/B\" is not a name of 1 to 29"},
        {"EU ", "Region", ID_REGION_ID, "", "error: Identifier: \"\" is not a name of 1 to 29"},
        {"GB", "Other name", ID_SYNONYM_REFERENCE, "XX", "error: Stands for: \"XX\" is no country"},
    };
    EXPECT_FALSE(WithTree([&](HWND dialog, const Windows& windows) {
        for (const auto& [entry, title, control, text, said] : kFaults) {
            Front.Said.clear();
            Choose(dialog, entry);
            Click(dialog, ID_PLACES_EDIT);
            const HWND box = windows.Wait(title);
            SetTextOf(box, control, text);
            Click(box, IDOK);
            EXPECT_TRUE(Says(said)) << said;
            EXPECT_TRUE(Until([&] { return FocusOf(box) == control; })) << said;
            Click(box, IDCANCEL);
            EXPECT_TRUE(Until([&] { return !IsWindow(box); }));
        }
        Click(dialog, IDCANCEL);
    }));
    EXPECT_EQ(All(), Before);
}

} // namespace
} // namespace bv::gui
