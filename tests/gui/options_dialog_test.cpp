// The dialog of the server's settings inside this process, on a copy of the sample server.
#include <windows.h>

#include <commctrl.h>

#include <filesystem>
#include <map>
#include <optional>

#include "gui/dialog_fixture.h"
#include "options/options_dialog_dlg.h"
#include "options/options_dlg.h"
#include "platform/clock.h"
#include "resources/ids.h"
#include "shell/front_dlg.h"
#include "support/texts.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv::gui {
namespace {

using testing::_;
using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::Ge;
using testing::HasSubstr;
using testing::Pair;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* kTitle = "Brivane - server settings";
constexpr const char* kSetup = "B-DB\\SETUP.INI";
using enum OptionPage;

class OptionDialogs : public DialogFixture {
  protected:
    OptionDialogs() : DialogFixture(kSetup) {}

    void WithOptions(const std::function<void(HWND, const Windows&)>& drive) {
        RunDriven([] { ConfigureOptions(nullptr); },
                  [&](const Windows& windows) { drive(windows.Wait(kTitle), windows); });
    }
};

// Brings a page to the front from the list, as a click does.
HWND ShowPage(HWND dialog, OptionPage page) {
    if (Selection(dialog, ID_OPTIONS_LIST) != static_cast<int>(page))
        Select(dialog, ID_OPTIONS_LIST, static_cast<int>(page));
    Until([&] { return Text(dialog, ID_OPTIONS_TITLE) == TitleOf(page); });
    return FrontPage(dialog);
}

// A change of a control, and the line of the file that comes of it.
struct Setting {
    OptionPage Page;
    int Control;
    const char* Text; // of an edit control; none: a click, or the choice of that number
    const char* From; // in the file
    const char* To;
    int Choice = -1;
};

constexpr Setting kSettings[] = {
    {General, ID_GENERAL_LOG_DAYS, "14", "LogKeepDays: 30", "LogKeepDays: 14"},
    {Sending, ID_QUEUE_TRIES, "7", "SendTries: 5", "SendTries: 7"},
    {Sending, ID_QUEUE_WAIT, "60", "SendRetryWait: 300", "SendRetryWait: 60"},
    {Sending, ID_QUEUE_QUALITY + 1, nullptr, "QualityFax: HIGH", "QualityFax: DRAFT"},
    {Sending, ID_QUEUE_REMOVE, nullptr, "RemoveFailedDevice: YES", "RemoveFailedDevice: NO"},
    {Sending, ID_QUEUE_IGNORE, nullptr, "IgnorePrintFiles: NO", "IgnorePrintFiles: YES"},
    {Archiving, ID_ARCHIVE_RECD, nullptr, "ArchiveRecd: YES", "ArchiveRecd: STATUS", 2},
    {Archiving, ID_ARCHIVE_RECD_PATH, "D:\\R\\", "ArchiveRecdPath:", "ArchiveRecdPath: D:\\R\\"},
    {Archiving, ID_ARCHIVE_SENT, nullptr, "ArchiveSent: STATUS", "ArchiveSent: NO", 0},
    {Archiving, ID_ARCHIVE_SENT_PATH + 2, nullptr, "ArchiveSentPath: F:\\BRIVANE\\ARCHIVE\\SENT\\", "ArchiveSentPath:"},
    {Archiving, ID_ARCHIVE_ATTRIBUTE, nullptr, "UseArchiveAttribute: YES", "UseArchiveAttribute: NO"},
    {OffpeakTimes, ID_OFFPEAK + 2, "1900", "AFTER 18:00 BEFORE", "AFTER 19:00 BEFORE"},
    {InwardRouting, ID_ROUTE_SENDER, nullptr, "RouteSenderID: YES", "RouteSenderID: NO"},
    {InwardRouting, ID_ROUTE_SUB_ADDRESS, nullptr, "RouteSubAddr: YES", "RouteSubAddr: NO"},
    {InwardRouting, ID_ROUTE_CSID, nullptr, "RouteExtCSID: NO", "RouteExtCSID: YES"},
    {InwardRouting, ID_ROUTE_DTMF, nullptr, "RouteDTMF: YES", "RouteDTMF: NO"},
    {Printing, ID_PRINT_PRINTER, "PRINT-2", "PrintSentDevice: PRINT-1", "PrintSentDevice: PRINT-2"},
    {Printing, ID_PRINT_BIN, "Manual", "PrintSentBin: Upper tray", "PrintSentBin: Manual"},
    {Printing, ID_PRINT_PAPER, "A5", "PrintSentPaper: A4 210 x 297 mm", "PrintSentPaper: A5"},
    {Printing, ID_PRINT_SQUASH, nullptr, "PrintSentSquash: NO", "PrintSentSquash: YES", 2},
    {Printing, ID_PRINT_SENT_WORDS, nullptr, "PrintSentOptions: STATUS MESSAGE", "PrintSentOptions: MESSAGE"},
    {Printing, ID_PRINT_RECD_WORDS + 2, nullptr, "PrintRecdOptions: STATUS MESSAGE",
     "PrintRecdOptions: STATUS MESSAGE DELETE"},
    {PrintLayout, ID_LAYOUT_SENT_PAGES, nullptr, "PrintSentPagesUp: 1", "PrintSentPagesUp: 4", 2},
    {PrintLayout, ID_LAYOUT_SENT_BORDER, nullptr, "PrintSentBorder: NO", "PrintSentBorder: YES"},
    {PrintLayout, ID_LAYOUT_SENT_SHADOW, nullptr, "PrintSentShadow: NO", "PrintSentShadow: YES"},
    {PrintLayout, ID_LAYOUT_RECD_PAGES, nullptr, "PrintRecdPagesUp: 2", "PrintRecdPagesUp: 1", 0},
    {PrintLayout, ID_LAYOUT_RECD_BORDER, nullptr, "PrintRecdBorder: YES", "PrintRecdBorder: NO"},
    {PrintLayout, ID_LAYOUT_RECD_SHADOW, nullptr, "PrintRecdShadow: NO", "PrintRecdShadow: YES"},
    {PrintLayout, ID_LAYOUT_SEPARATE, nullptr, "PrintSentSeparate: YES", "PrintSentSeparate: NO"},
    {PrintLayout, ID_LAYOUT_SPOOL, "D:\\S", "PrintSpoolPath:", "PrintSpoolPath: D:\\S"},
    {TextConversion, ID_TEXT_LINES, "66", "AsciiFormLength: 72", "AsciiFormLength: 66"},
    {TextConversion, ID_TEXT_TOP, "4", "AsciiTopMargin: 2", "AsciiTopMargin: 4"},
    {TextConversion, ID_TEXT_BOTTOM, "3", "AsciiBottomMargin: 2", "AsciiBottomMargin: 3"},
    {SubmitDirectory, ID_SUBMIT_DIRECTORY, "D:\\J\\", "Directory: F:\\BRIVANE\\SUBMIT\\", "Directory: D:\\J\\"},
    {SubmitDirectory, ID_SUBMIT_FILES, "*.JOB", "File: *.SUB", "File: *.JOB"},
    {SubmitDirectory, ID_SUBMIT_USER, "BEN", "User: ANNA", "User: BEN"},
    {SubmitDirectory, ID_SUBMIT_TIMER, "11", "SpoolCheckTimer: 10", "SpoolCheckTimer: 11"},
    {SubmitDirectory, ID_SUBMIT_WAIT, "6", "SubmitWait: 5", "SubmitWait: 6"},
    {SubmitDirectory, ID_SUBMIT_MOST, "2", "MaxActive: 4", "MaxActive: 2"},
    {SubmitDirectory, ID_SUBMIT_TIDY, nullptr, "MessageTidy: YES\r\nOther", "MessageTidy: NO\r\nOther"},
    {SubmitDirectory, ID_SUBMIT_OTHERS, nullptr, "OtherUsers: NO", "OtherUsers: YES"},
    {ScannerInput, ID_SCAN_DIRECTORY, "D:\\K\\", "Directory: F:\\BRIVANE\\SCAN\\", "Directory: D:\\K\\"},
    {ScannerInput, ID_SCAN_USER, "BEN", "User: RECEPT", "User: BEN"},
    {ScannerInput, ID_SCAN_TIMER, "16", "SpoolCheckTimer: 15", "SpoolCheckTimer: 16"},
    {ScannerInput, ID_SCAN_WAIT, "9", "SubmitWait: 5", "SubmitWait: 9"},
    {ScannerInput, ID_SCAN_TIDY, nullptr, "MessageTidy: YES\r\nSpool", "MessageTidy: NO\r\nSpool"},
    {ScannerInput, ID_SCAN_ON, nullptr, "HPScan: YES", "HPScan: NO"},
    {Workstations, ID_CLIENT_CHARGE, nullptr, "ChargeCode: OPTIONAL", "ChargeCode: NO", 0},
    {Workstations, ID_CLIENT_LENGTH, "61", "CoverLineLen: 60", "CoverLineLen: 61"},
    {Workstations, ID_CLIENT_LINES, "11", "CoverMaxLine: 10", "CoverMaxLine: 11"},
    {Workstations, ID_CLIENT_ENTRIES, "999", "SendListEntries: 1000", "SendListEntries: 999"},
    {Workstations, ID_CLIENT_ORGANISATION, nullptr, "ViewAskOrganisation: YES", "ViewAskOrganisation: NO"},
};

// Each of them alone, so that no control is taken for another's: what is replaced stands once behind its paragraph.
TEST_F(OptionDialogs, EachControlChangesItsLineAndNoOther) {
    std::string file = Before;
    WithOptions([&](HWND dialog, const Windows&) {
        for (const Setting& setting : kSettings) {
            Make(ShowPage(dialog, setting.Page), {setting.Control, setting.Text, setting.Choice});
            const std::size_t at =
                file.find(setting.From,
                          setting.Page == ScannerInput && setting.Control != ID_SCAN_ON ? file.find("[HPSCAN]") : 0);
            EXPECT_NE(at, file.npos) << setting.From;
            if (at != file.npos) file.replace(at, std::string(setting.From).size(), setting.To);
        }
        EXPECT_TRUE(Until([&] { return IsEnabled(dialog, ID_OPTIONS_APPLY); }));
        Click(dialog, ID_OPTIONS_APPLY);
        EXPECT_TRUE(Until([&] { return File() == file && !IsEnabled(dialog, ID_OPTIONS_APPLY); }));
        EXPECT_EQ(File(), file);
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_TRUE(Startup().SettingsChanged);
    for (const OptionKey& key : OptionKeys()) {
        if (key.Page > Workstations || key.Trait == OptionKey::Traits::OnlyRead) continue;
        const std::string path =
            std::string(key.Paragraph.substr(1, key.Paragraph.size() - 2)) + "/" + std::string(key.Field.Name());
        EXPECT_NE(ControlOfOption(key.Page, path), 0) << path;
    }
}

TEST_F(OptionDialogs, TheOffpeakWeekIsInWordsAsTheTimesAreTyped) {
    WithOptions([&](HWND dialog, const Windows&) {
        const HWND page = ShowPage(dialog, OffpeakTimes);
        const auto says = [&](const char* words) {
            return Until([&] {
                return Text(page, ID_OFFPEAK + kTimeWords) == words && Text(page, ID_OFFPEAK + kTimePicture) == words;
            });
        };
        EXPECT_TRUE(says("MON-FRI 00:00-08:00 18:00-24:00, SAT-SUN all day"));
        Click(page, ID_OFFPEAK + kTimeMonday + 1);
        SetTextOf(page, ID_OFFPEAK + kTimeAfter, "1930");
        EXPECT_TRUE(says("MON 00:00-08:00 19:30-24:00, TUE all day, WED-FRI 00:00-08:00 19:30-24:00, SAT-SUN all day"));
        SetTextOf(page, ID_OFFPEAK + kTimeAfter, "19:");
        EXPECT_TRUE(says("not known"));
        Click(page, ID_OFFPEAK + kTimeAny);
        EXPECT_TRUE(says("never"));
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
}

TEST_F(OptionDialogs, OkWithoutAChangeAndCancelWriteNothing) {
    WithOptions([&](HWND dialog, const Windows&) {
        for (int page = 0; page <= static_cast<int>(TelephoneNumbers); ++page)
            ShowPage(dialog, static_cast<OptionPage>(page));
        EXPECT_FALSE(IsEnabled(dialog, ID_OPTIONS_APPLY));
        Front.Said.clear();
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_THAT(Front.Said, Each(AnyOf(StartsWith("wait cursor"), "status 2: ")));
    WithOptions([&](HWND dialog, const Windows&) {
        EXPECT_EQ(Text(dialog, ID_OPTIONS_TITLE), TitleOf(TelephoneNumbers)) << "as the dialog was left";
        const HWND page = ShowPage(dialog, Printing);
        Select(page, ID_PRINT_SLOTS, 2);
        EXPECT_TRUE(Until([&] { return Text(page, ID_PRINT_BIN) == "Lower tray"; }));
        Click(dialog, IDCANCEL);
        EXPECT_TRUE(IsClosed(dialog)) << "to look at a printer is no change";
    });
    WithOptions([&](HWND dialog, const Windows&) {
        SetTextOf(ShowPage(dialog, Sending), ID_QUEUE_TRIES, "9");
        Click(dialog, IDCANCEL);
        EXPECT_TRUE(Says("Lose changes?"));
        EXPECT_TRUE(IsWindow(dialog)) << "although the answer was No";
        Front.Answer = true;
        Click(dialog, IDCANCEL);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_EQ(File(), Before);
    EXPECT_FALSE(Startup().SettingsChanged);
}

TEST_F(OptionDialogs, FaultsKeepTheirPageAndGetTheFocus) {
    constexpr struct {
        Setting Wrong;
        const char* Message;
    } kFaults[] = {
        {{Sending, ID_QUEUE_TRIES, "65535", nullptr, nullptr},
         "error: SendTries: \"65535\" is not a number from 0 to 65534"},
        {{Sending, ID_QUEUE_WAIT, "", nullptr, nullptr}, "error: SendRetryWait: \"\" is not"},
        {{OffpeakTimes, ID_OFFPEAK + 2, "25:00", nullptr, nullptr}, "error: Offpeak: "},
        {{SubmitDirectory, ID_SUBMIT_USER, "NOBODY", nullptr, nullptr}, "error: Brivane user NOBODY not found"},
        {{ScannerInput, ID_SCAN_DIRECTORY, "", nullptr, nullptr}, "error: Directory: scanner input needs"},
        {{TextConversion, ID_TEXT_TOP, "70", nullptr, nullptr}, "ask question: Margins of 72 lines"},
    };
    for (const auto& [wrong, message] : kFaults) {
        Front.Said.clear();
        Front.Answer = false;
        WithOptions([&](HWND dialog, const Windows&) {
            Make(ShowPage(dialog, wrong.Page), {wrong.Control, wrong.Text, wrong.Choice});
            Click(dialog, IDOK);
            EXPECT_TRUE(Says(message)) << message;
            EXPECT_TRUE(Until([&] { return FocusOf(FrontPage(dialog)) == wrong.Control; })) << message;
            EXPECT_EQ(Text(dialog, ID_OPTIONS_TITLE), TitleOf(wrong.Page));
            Front.Answer = true; // to lose the changes
        });
        EXPECT_EQ(File(), Before);
    }
}

// A second goes by between any two looks at it, so that the system gets each turn that it can have.
struct HastyClock final : platform::Clock {
    std::int64_t Time = platform::TheClock().Ticks();
    std::int64_t Now() override { return Time; }
    std::int64_t Ticks() override { return Time += 1000; }
    void Sleep(std::int64_t milliseconds) override { Time += milliseconds; }
};

TEST_F(OptionDialogs, TheWindowAnswersWhileManySettingsAreSaved) {
    std::string others = "[OTHER]\r\n"; // without any of the settings, so that all are written
    for (int line = 0; line < 5000; ++line) others += FormatText("Key%d: something\r\n", line);
    Write(others);
    MainWindow banner;
    ASSERT_TRUE(banner.Open(SW_SHOWNORMAL));
    WindowsFront speaker(banner);
    const UseFront use(speaker);
    HastyClock clock;
    std::optional<platform::Substitute<platform::Clock>> useClock(std::in_place, clock);
    std::map<std::uintmax_t, std::string> answers; // by the length of the file, which grows with each setting
    WithOptions([&](HWND dialog, const Windows&) {
        Click(dialog, IDOK);
        EXPECT_TRUE(Until([&] {
            const std::string status = Text(dialog, ID_STATUS_LINE);
            std::error_code held;
            const std::uintmax_t length = std::filesystem::file_size(Server.Files().HostPath(kSetup), held);
            if (IsWindow(dialog) && !held) answers[length] = status;
            return !IsWindow(dialog);
        }));
    });
    useClock.reset();
    YieldToSystem(true); // so that the next turn is counted from the real time again
    EXPECT_THAT(answers, SizeIs(Ge(5u)));
    EXPECT_THAT(answers, Contains(Pair(_, StartsWith("Updating file " + Server.Files().Path(kSetup)))));
    EXPECT_THAT(File(), HasSubstr("SendTries: 5\r\n"));
}

TEST_F(OptionDialogs, PagesAreFoundByWordsAndWorkedByKeyboard) {
    WithOptions([&](HWND dialog, const Windows&) {
        EXPECT_TRUE(Until([&] { return FocusOf(dialog) == ID_OPTIONS_LIST; }));
        Key(VK_DOWN);
        EXPECT_TRUE(Until([&] { return Text(dialog, ID_OPTIONS_TITLE) == "Sending"; }));
        Key('F', VK_CONTROL);
        Type("coverline");
        EXPECT_TRUE(
            Until([&] { return Entries(dialog, ID_OPTIONS_LIST) == std::vector<std::string>{"Workstations"}; }));
        Key(VK_RETURN);
        EXPECT_TRUE(Until([&] { return FocusOf(FrontPage(dialog)) == ID_CLIENT_LENGTH; }));
        Key(VK_UP); // the arrow beside the number
        EXPECT_TRUE(Until([&] { return Text(FrontPage(dialog), ID_CLIENT_LENGTH) == "61"; }));
        Key(VK_TAB, VK_CONTROL);
        EXPECT_TRUE(Until([&] { return Text(dialog, ID_OPTIONS_TITLE) == "Telephone numbers"; }));
        EXPECT_EQ(Entries(dialog, ID_OPTIONS_LIST).size(), 12u);
        Key('F', VK_CONTROL);
        Type("qqq");
        EXPECT_TRUE(Says("Nothing fits the filter \"qqq\""));
        Key(VK_ESCAPE);
        EXPECT_TRUE(Until([&] { return Entries(dialog, ID_OPTIONS_LIST).size() == 12; }));
        Key(VK_RETURN); // with nothing to look for it goes to the first page
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_EQ(File(), test::Replaced(Before, "CoverLineLen: 60", "CoverLineLen: 61"));
}

TEST_F(OptionDialogs, TypesOfTelephoneNumberAreAddedMovedAndDeleted) {
    WithOptions([&](HWND dialog, const Windows& windows) {
        const HWND page = ShowPage(dialog, TelephoneNumbers);
        const auto count = [&] { return Entries(page, ID_TYPES_LIST).size(); };
        EXPECT_EQ(count(), 7u);
        EXPECT_THAT(Entries(page, ID_TYPES_LIST), Contains(StartsWith("International1\tM")));
        Click(page, ID_TYPES_ADD);
        HWND box = windows.Wait("Telephone-number type");
        EXPECT_EQ(Text(box, ID_TYPE_WORD), "National4") << "the first that has no description";
        SetTextOf(box, ID_TYPE_DESCRIPTION, "Mobile");
        Click(box, IDOK);
        EXPECT_TRUE(Until([&] { return count() == 8 && Selection(page, ID_TYPES_LIST) == 7; }));
        Click(page, ID_TYPES_UP);
        EXPECT_TRUE(Until([&] { return Selection(page, ID_TYPES_LIST) == 6; }));
        Select(page, ID_TYPES_LIST, 4);
        FocusControlOf(page, ID_TYPES_LIST);
        Key(VK_DELETE);
        EXPECT_TRUE(Until([&] { return count() == 7; }));
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_THAT(File(), HasSubstr("TelnumType: International2  \"Other European countries\"\r\n"
                                  "TelnumType: National4       \"Mobile\"\r\n"
                                  "TelnumType: International3  \"Rest of the world\"\r\n"));

    Write(test::Replaced(Before, "TelnumType: Local ", "TelnumType: Lokal "));
    WithOptions([&](HWND dialog, const Windows&) {
        const HWND page = ShowPage(dialog, TelephoneNumbers);
        EXPECT_THAT(Text(page, ID_TYPES_HINT), StartsWith("The list of telephone-number types could not be read"));
        for (const int control : {ID_TYPES_LIST, ID_TYPES_ADD}) EXPECT_FALSE(IsEnabled(page, control));
        SetTextOf(ShowPage(dialog, Sending), ID_QUEUE_TRIES, "9");
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_THAT(File(), HasSubstr("TelnumType: Lokal "));
}

TEST_F(OptionDialogs, ASaveThatFailsKeepsWhatWasTyped) {
    WithOptions([&](HWND dialog, const Windows&) {
        SetTextOf(ShowPage(dialog, Sending), ID_QUEUE_TRIES, "9");
        const std::string inTheWay = Server.Files().Path("B-DB\\SETUP.TMP");
        CreateDirectoryA(inTheWay.c_str(), nullptr);
        Click(dialog, IDOK);
        EXPECT_TRUE(Says("error: Unable to open file"));
        EXPECT_TRUE(Until([&] { return Text(FrontPage(dialog), ID_QUEUE_TRIES) == "9" && IsWindow(dialog); }));
        RemoveDirectoryA(inTheWay.c_str());
        Click(dialog, IDOK);
        EXPECT_TRUE(IsClosed(dialog));
    });
    EXPECT_EQ(File(), test::Replaced(Before, "SendTries: 5", "SendTries: 9"));
}

} // namespace
} // namespace bv::gui
