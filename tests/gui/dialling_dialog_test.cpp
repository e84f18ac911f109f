// The dialog of the dialling properties inside this process, on a copy of the sample server.
#include <windows.h>

#include "dialling/dialling_dlg.h"
#include "dialling/dialling_page_dlg.h"
#include "dialling/fake_telephony.h"
#include "gui/dialog_fixture.h"
#include "options/options_dlg.h"
#include "resources/ids.h"

namespace bv::gui {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kTitle = "Dialling properties";
constexpr const char* kLondon = "Description: London office";

class DiallingDialogs : public DialogFixture {
  protected:
    DiallingDialogs() : DialogFixture("B-DB\\DIALLING.INI") {}
    static void WithDialling(const std::function<void(HWND, const Windows&)>& drive) {
        RunDriven([] { ConfigureDialling(nullptr); },
                  [&](const Windows& windows) { drive(windows.Wait(kTitle), windows); });
    }
};

bool Shows(HWND dialog, int control, const std::string& text) {
    return Until([&] { return Text(dialog, control) == text; });
}

TEST_F(DiallingDialogs, ChangeTheirLinesAndNothingElse) {
    const struct {
        std::vector<Entry> Entries;
        std::string From;
        std::string To;
    } kCases[] = {
        {{{ID_DIALLING_COUNTRY, "46"}}, "Country: 44", "Country: 46"},
        {{{ID_DIALLING_AREA, "171"}}, "Area: 20", "Area: 171"},
        {{{ID_DIALLING_NATIONAL, "9"}}, "NatlAccess: 0", "NatlAccess: 9"},
        {{{ID_DIALLING_INTERNATIONAL, "011"}}, "IntlAccess: 00", "IntlAccess: 011"},
        {{{ID_DIALLING_LONGEST, "7"}}, "MaxLen: 8", "MaxLen: 7"},
        {{{ID_DIALLING_AREA_CODE, nullptr}, {ID_DIALLING_LOCAL_PREFIX, nullptr}},
         "AreaCode: NO\r\nDialNatlAccessForLocal: NO",
         "AreaCode: YES\r\nDialNatlAccessForLocal: YES"},
        {{{ID_DIALLING_SHOW_PREFIX, nullptr}}, "DisplayNatlAccess: YES", "DisplayNatlAccess: NO"},
        {{{ID_DIALLING_AS_LOCAL, "1632\r\n5\r\n"}}, "DialAsLocal: 1634", "DialAsLocal: 5"},
        {{{ID_DIALLING_AS_NATIONAL, ""}}, "DialAsNatl: 7949\r\nDialAsNatl: 84\r\n", ""},
        {{{ID_DIALLING_AREA, "1"}, {ID_DIALLING_AREA, "20"}}, "", ""},
    };
    for (const auto& [entries, from, to] : kCases) {
        Write(Before);
        const std::string after = With(from, to, kLondon);
        WithDialling([&](HWND dialog, const Windows&) {
            EXPECT_EQ(IsEnabled(dialog, ID_DIALLING_LOCAL_PREFIX), false);
            Make(dialog, entries);
            Click(dialog, IDOK);
            EXPECT_TRUE(IsClosed(dialog)) << to;
        });
        EXPECT_EQ(File(), after);
    }
}

TEST_F(DiallingDialogs, FaultsKeepTheDialogAndWhatWasTyped) {
    const struct {
        std::vector<Entry> Entries;
        std::string Said;
        int Focus;
    } kFaults[] = {
        {{{ID_DIALLING_AREA, "\u0416"}}, "error: \"?\" holds characters", ID_DIALLING_AREA},
        {{{ID_DIALLING_NATIONAL, " 1"}}, "error: NatlAccess: ", ID_DIALLING_NATIONAL},
        {{{ID_DIALLING_LONGEST, ""}}, "error: NumberWithoutAreaMaxLen: ", ID_DIALLING_LONGEST},
        {{{ID_DIALLING_LONGEST, "65536"}}, "error: NumberWithoutAreaMaxLen: ", ID_DIALLING_LONGEST},
        {{{ID_DIALLING_AS_LOCAL, "1\r\n\r\n2"}}, "error: DialAsLocal: an empty prefix", ID_DIALLING_AS_LOCAL},
        {{{ID_DIALLING_AS_NATIONAL, "12345678901"}}, "error: DialAsNatl: ", ID_DIALLING_AS_NATIONAL},
    };
    WithDialling([&](HWND dialog, const Windows&) {
        for (const auto& [entries, said, focus] : kFaults) {
            const std::string before = Text(dialog, focus);
            Make(dialog, entries);
            for (const int button : {static_cast<int>(IDOK), ID_DIALLING_NO_EDITING, ID_DIALLING_NEW}) {
                Front.Said.clear();
                Click(dialog, button);
                EXPECT_TRUE(Says(said)) << said;
                EXPECT_TRUE(Until([&] { return FocusOf(dialog) == focus; })) << said;
                EXPECT_TRUE(IsChecked(dialog, ID_DIALLING_LOCATIONS));
            }
            EXPECT_EQ(Text(dialog, focus), entries[0].Text);
            Click(dialog, IDCANCEL);
            EXPECT_TRUE(Says("This will mean all changes will be lost")) << said;
            SetTextOf(dialog, focus, before);
        }
        SetTextOf(dialog, ID_DIALLING_AREA, "30");
        Write(With("Leeds", "Lyons"));
        Click(dialog, IDOK);
        EXPECT_TRUE(Says("was changed by somebody else since it was opened here"));
        EXPECT_EQ(Text(dialog, ID_DIALLING_AREA), "30");
        Front.Said.clear();
        Click(dialog, IDCANCEL);
        EXPECT_TRUE(Says("This will mean all changes will be lost"));
        EXPECT_TRUE(IsWindow(dialog));
        Front.Answer = true;
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_THAT(File(), HasSubstr("Lyons"));
    EXPECT_THAT(File(), HasSubstr("Area: 30"));
}

TEST_F(DiallingDialogs, LocationsComeAndGoByKeyboard) {
    WithDialling([&](HWND dialog, const Windows& windows) {
        FocusControlOf(dialog, ID_DIALLING_LOCATION);
        EXPECT_EQ(Selection(dialog, ID_DIALLING_LOCATION), 1);
        Key(VK_UP);
        EXPECT_TRUE(Shows(dialog, ID_DIALLING_AREA, "113"));
        Key('C', VK_MENU);
        HWND box = windows.Wait("Add new location");
        Key(VK_RETURN);
        EXPECT_TRUE(Says("There is a location named Leeds stores already."));
        SetTextOf(box, ID_LOCATION_NAME, "York");
        Click(box, IDOK);
        EXPECT_TRUE(Until([&] { return Selection(dialog, ID_DIALLING_LOCATION) == 3; }));
        EXPECT_EQ(Text(dialog, ID_DIALLING_AREA), "113");
        Key('R', VK_MENU);
        box = windows.Wait("Rename location");
        Type("Hull");
        Key(VK_RETURN);
        EXPECT_TRUE(Until([&] { return Entries(dialog, ID_DIALLING_LOCATION).back() == "Hull"; }));
        Front.Answer = true;
        Select(dialog, ID_DIALLING_LOCATION, 0);
        EXPECT_TRUE(Until([&] { return Selection(dialog, ID_DIALLING_LOCATION) == 0; }));
        Click(dialog, ID_DIALLING_DELETE);
        EXPECT_TRUE(Shows(dialog, ID_DIALLING_WARNING, "Please select a location, or make a new one."));
        EXPECT_FALSE(IsEnabled(dialog, ID_DIALLING_AREA));
        Click(dialog, IDOK);
        EXPECT_TRUE(Says("error: Please select a location"));
        Select(dialog, ID_DIALLING_LOCATION, 2);
        EXPECT_TRUE(Until([&] { return IsEnabled(dialog, ID_DIALLING_AREA); }));
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_THAT(File(), HasSubstr("Location: Hull\r\n"));
    EXPECT_THAT(File(), HasSubstr("[LOCATION]\r\nDescription: Hull\r\nCountry: 44\r\nArea: 113\r\n"));
    EXPECT_EQ(File().find("Leeds"), std::string::npos);
}

TEST_F(DiallingDialogs, ANumberIsTriedByWhatIsTyped) {
    WithDialling([&](HWND dialog, const Windows&) {
        SetTextOf(dialog, ID_DIALLING_TRY, "0181 123 4567:22");
        EXPECT_TRUE(Shows(dialog, ID_DIALLING_TRY_SHOWN, "+441811234567:22"));
        EXPECT_TRUE(Shows(dialog, ID_DIALLING_TRY_DIALLED, "01811234567:22"));
        EXPECT_THAT(Entries(dialog, ID_DIALLING_STEPS),
                    Contains(StartsWith("> dialled\t5b: a number of another area")));
        EXPECT_TRUE(Shows(dialog, ID_DIALLING_STEP, "5b: a number of another area: NatlAccess goes before"));
        SetTextOf(dialog, ID_DIALLING_AREA, "181");
        EXPECT_TRUE(Shows(dialog, ID_DIALLING_TRY_DIALLED, "1234567:22"));
        Make(dialog, {{ID_DIALLING_AREA_CODE, nullptr}});
        EXPECT_TRUE(Shows(dialog, ID_DIALLING_TRY_DIALLED, "1811234567:22"));
        SetTextOf(dialog, ID_DIALLING_INTERNATIONAL, "");
        EXPECT_TRUE(Shows(dialog, ID_DIALLING_WARNING, "Empty, and so the beginning of every number: IntlAccess"));
        Make(dialog, {{ID_DIALLING_NO_EDITING, nullptr}});
        EXPECT_THAT(Text(dialog, ID_DIALLING_WARNING), StartsWith("Programs are told not to edit numbers."));
        EXPECT_EQ(Text(dialog, ID_DIALLING_TRY_SHOWN), "+01811234567:22");
        EXPECT_EQ(Text(dialog, ID_DIALLING_AREA), "");
        Make(dialog, {{ID_DIALLING_LOCATIONS, nullptr}});
        EXPECT_EQ(Text(dialog, ID_DIALLING_AREA), "181");
        Front.Answer = true;
        Click(dialog, IDCANCEL);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_EQ(File(), Before);
}

TEST_F(DiallingDialogs, TheTelephonyOfWindowsIsShownAndTakenOver) {
    test::FakeTelephonyLibrary telephony;
    telephony.Locations = {{.Name = "Desk", .TollPrefixes = "555"}};
    telephony.Dialled = {{"+44(171)1234567", "123-4567"}};
    WithDialling([&](HWND dialog, const Windows&) {
        Click(dialog, ID_DIALLING_FILL);
        EXPECT_TRUE(Shows(dialog, ID_DIALLING_AS_NATIONAL, "555"));
        SetTextOf(dialog, ID_DIALLING_TRY, "1234567");
        Make(dialog, {{ID_DIALLING_TELEPHONY, nullptr}});
        EXPECT_EQ(Entries(dialog, ID_DIALLING_LOCATION), std::vector<std::string>{"Desk"});
        EXPECT_EQ(Text(dialog, ID_DIALLING_AREA), "171");
        EXPECT_FALSE(IsEnabled(dialog, ID_DIALLING_AREA));
        EXPECT_TRUE(Shows(dialog, ID_DIALLING_TRY_DIALLED, "1234567"));
        telephony.Current = 9; // is gone
        Click(dialog, ID_DIALLING_WINDOWS);
        EXPECT_TRUE(
            Shows(dialog, ID_DIALLING_WARNING, "Unable to retrieve TAPI dialling properties - general TAPI error"));
        EXPECT_TRUE(Shows(dialog, ID_DIALLING_TRY_DIALLED, "The telephony service does not translate this number"));
        Click(dialog, IDOK);
        EXPECT_TRUE(Says("[LOCATION] Leeds stores\n[LOCATION] London office\n[LOCATION] B"));
        Front.Answer = true;
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_TRUE(File().ends_with("[DIALPROPERTIES]\r\nLocation: TAPI\r\n\r\n")) << File();
    EXPECT_EQ(telephony.Calls.back(), "freed");
}

TEST_F(DiallingDialogs, APageOfTheSettingsOpensThem) {
    constexpr AreaPageMaker kPages[] = {MakeDiallingPage};
    RunDriven([&] { ConfigureOptions(nullptr, kPages); },
              [&](const Windows& windows) {
                  const HWND options = windows.Wait("Brivane - server settings");
                  SetTextOf(options, ID_OPTIONS_FIND, "Dialling location");
                  FocusControlOf(options, ID_OPTIONS_FIND);
                  Key(VK_RETURN);
                  EXPECT_TRUE(Until([&] { return GetDlgItem(FrontPage(options), ID_DIALLING_PAGE_TEXT) != nullptr; }));
                  const HWND page = FrontPage(options);
                  EXPECT_EQ(Text(page, ID_DIALLING_PAGE_TEXT), "Numbers are dialled by: London office (+44 20)");
                  Click(page, ID_DIALLING_PAGE_OPEN);
                  const HWND dialog = windows.Wait(kTitle);
                  SetTextOf(dialog, ID_DIALLING_AREA, "");
                  Click(dialog, IDOK);
                  EXPECT_TRUE(Shows(page, ID_DIALLING_PAGE_TEXT, "Numbers are dialled by: London office (+44)"));
              });
}

} // namespace
} // namespace bv::gui
