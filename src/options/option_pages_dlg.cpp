// The pages of the server's settings: a row for each option, and what a page has beside such rows.
#include <algorithm>

#include "options/option_messages.h"
#include "options/option_values.h"
#include "options/options_dialog_dlg.h"
#include "options/server_facts.h"
#include "resources/ids.h"
#include "users/print_words.h"
#include "voice/messages.h"

namespace bv {
namespace {

using Context = OptionsDialog;

const OptionKey& KeyOf(std::string_view path) {
    const std::size_t slash = path.find('/');
    return *FindOptionKey(path.substr(0, slash), path.substr(slash + 1));
}

// A directory among the rows of a page: its place in OptionsDialog, and what its dialog says.
struct DirectoryRow {
    std::size_t Place;
    int Edit;
    std::string_view Path;
    const char* Title;
};
struct UserRow {
    std::size_t Place;
    int Combo;
    int Button;
    std::string_view Path;
};

struct OptionRows {
    OptionPage Page;
    const char* Template;
    const char* Icon;
    std::span<const FieldControl> Fields;
    std::span<const DirectoryRow> Directories = {};
    std::span<const UserRow> Users = {};
    std::span<const DialogCommand<Context>> Commands = {};
    void (*Fill)(HWND page, Context& context) = nullptr; // what is not among the rows
    int (*Take)(HWND page, Context& context) = nullptr;
    int First = 0; // the control for what is not among the rows
};

void FillRows(HWND page, Context& context, const OptionRows& rows) {
    ShowFields(page, rows.Fields, context.Fields);
    AddTooltips(page, rows.Fields, context.Fields);
    for (const DirectoryRow& row : rows.Directories)
        context.Directories.at(row.Place).Begin(page, row.Edit, row.Title, DefaultText(KeyOf(row.Path)));
    for (const UserRow& row : rows.Users) {
        NameField& user = context.Users.at(row.Place);
        user.Begin(page, row.Combo, row.Button, kUserAndGroupNames, {});
        user.Put(context.Fields.TextOf(row.Path));
        const FieldControl combo{row.Combo, row.Path};
        AddTooltips(page, {&combo, 1}, context.Fields);
    }
    if (rows.Fill != nullptr) rows.Fill(page, context);
}

// Returns the control, after the fault's message, or 0.
int TakeValue(Context& context, std::string_view path, const std::string& text, int control) {
    if (text == context.Fields.TextOf(path)) return 0;
    const std::optional<std::string> fault = context.Fields.Enter(path, text);
    if (fault) ShowError("%s", *fault);
    return fault ? control : 0;
}

int TakeRows(HWND page, Context& context, const OptionRows& rows) {
    if (const int fault = TakeFields(page, rows.Fields, context.Fields)) return fault;
    for (const UserRow& row : rows.Users) {
        std::string name;
        if (!context.Users.at(row.Place).Take(name)) return row.Combo;
        if (const int fault = TakeValue(context, row.Path, name, row.Combo)) return fault;
    }
    return rows.Take == nullptr ? 0 : rows.Take(page, context);
}

template <const OptionRows& kRows>
INT_PTR CALLBACK PageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    static constexpr auto kFill = [](HWND filled, Context& context) { FillRows(filled, context, kRows); };
    static constexpr DialogPlan<Context> kPlan{HELP_OPTIONS + 1 + static_cast<int>(kRows.Page), kFill, kRows.Commands};
    return FollowPlan(kPlan, {page, message, wParam, lParam});
}

template <const OptionRows& kRows>
int TakePageRows(HWND page, Context& context) {
    return TakeRows(page, context, kRows);
}

template <const OptionRows& kRows>
Page PageOf() {
    return {kRows.Template, TitleOf(kRows.Page), PageProcedure<kRows>, TakePage<Context, TakePageRows<kRows>>,
            kRows.Icon};
}

using Values = std::span<const std::string_view>;

// --- General ---

constexpr FieldControl kGeneralFields[] = {{ID_GENERAL_LOG_DAYS, "OPTIONS/LogKeepDays", FieldForm::Number}};
constexpr ListColumn kFactColumns[] = {{"What", 90}, {"Value", 100}, {"From", 76}};
constexpr ListPlan kFactPlan{.List = ID_GENERAL_FACTS, .Columns = kFactColumns, .IsSorted = false};

void FillGeneral(HWND page, Context& context) {
    context.Facts.Begin(std::size(kFactColumns));
    for (const ServerFact& fact : ReadServerFacts(context.Entry.After()))
        for (const std::string_view text : {fact.Name, std::string_view(fact.Value), fact.Source})
            context.Facts.Add(text);
    context.FactList = std::make_unique<ListView>(context.Facts, kFactPlan);
    context.FactList->Begin(page);
    context.FactList->Refill([] { return true; });
}

constexpr OptionRows kGeneral{.Page = OptionPage::General,
                              .Template = "OptionsGeneralBox",
                              .Icon = "PageGeneral",
                              .Fields = kGeneralFields,
                              .Fill = FillGeneral,
                              .First = ID_GENERAL_FACTS};

// --- Sending ---

constexpr FieldControl kSendingFields[] = {
    {ID_QUEUE_TRIES, "QUEUEMAN/SendTries", FieldForm::Number},
    {ID_QUEUE_WAIT, "QUEUEMAN/SendRetryWait", FieldForm::Number},
    {ID_QUEUE_QUALITY, "QUEUEMAN/QualityFax", FieldForm::Radio, Values(ChoiceWords<FaxQuality>::kWords)},
    {ID_QUEUE_REMOVE, "QUEUEMAN/RemoveFailedDevice", FieldForm::Check},
    {ID_QUEUE_IGNORE, "QUEUEMAN/IgnorePrintFiles", FieldForm::Check},
};
constexpr OptionRows kSending{
    .Page = OptionPage::Sending, .Template = "OptionsQueueBox", .Icon = "PageSending", .Fields = kSendingFields};

// --- Archiving ---

constexpr const char* kArchiveTitles[] = {"No", "Yes", "Status only"};
constexpr Values kArchiveModes = ChoiceWords<ArchiveMode>::kWords;
constexpr FieldControl kArchiveFields[] = {
    {ID_ARCHIVE_RECD, "QUEUEMAN/ArchiveRecd", FieldForm::Choice, kArchiveModes, kArchiveTitles},
    {ID_ARCHIVE_RECD_PATH, "QUEUEMAN/ArchiveRecdPath"},
    {ID_ARCHIVE_SENT, "QUEUEMAN/ArchiveSent", FieldForm::Choice, kArchiveModes, kArchiveTitles},
    {ID_ARCHIVE_SENT_PATH, "QUEUEMAN/ArchiveSentPath"},
    {ID_ARCHIVE_ATTRIBUTE, "OPTIONS/UseArchiveAttribute", FieldForm::Check},
};
constexpr DirectoryRow kArchiveDirectories[] = {
    {0, ID_ARCHIVE_RECD_PATH, "QUEUEMAN/ArchiveRecdPath", "Directory of received faxes"},
    {1, ID_ARCHIVE_SENT_PATH, "QUEUEMAN/ArchiveSentPath", "Directory of sent faxes"},
};
constexpr OptionRows kArchiving{.Page = OptionPage::Archiving,
                                .Template = "OptionsArchiveBox",
                                .Icon = "PageArchive",
                                .Fields = kArchiveFields,
                                .Directories = kArchiveDirectories};

// --- Off-peak times ---

constexpr std::string_view kOffpeakPath = "QUEUEMAN/Offpeak";
constexpr std::string_view kNightsAndWeekend = "AFTER 18:00 BEFORE 08:00  SAT SUN";

void FillOffpeak(HWND page, Context& context) {
    context.Offpeak.Begin(page, ID_OFFPEAK, context.Fields.TextOf(kOffpeakPath), kNightsAndWeekend);
    context.OffpeakShown = context.Offpeak.Text();
    constexpr FieldControl kLine{ID_OFFPEAK + kTimeLine, kOffpeakPath};
    AddTooltips(page, {&kLine, 1}, context.Fields);
}

int TakeOffpeak(HWND, Context& context) {
    const std::string text = context.Offpeak.Text();
    if (text == context.OffpeakShown) return 0; // however the file has put it
    const int fault = TakeValue(context, kOffpeakPath, text, context.Offpeak.Fault());
    if (fault == 0) context.OffpeakShown = text;
    return fault;
}

constexpr OptionRows kOffpeak{.Page = OptionPage::OffpeakTimes,
                              .Template = "OptionsOffpeakBox",
                              .Icon = "PageOffpeak",
                              .Fields = {},
                              .Fill = FillOffpeak,
                              .Take = TakeOffpeak,
                              .First = ID_OFFPEAK};

// --- Inward routing ---

constexpr FieldControl kRoutingFields[] = {
    {ID_ROUTE_SENDER, "QUEUEMAN/RouteSenderID", FieldForm::Check},
    {ID_ROUTE_SUB_ADDRESS, "QUEUEMAN/RouteSubAddr", FieldForm::Check},
    {ID_ROUTE_CSID, "QUEUEMAN/RouteExtCSID", FieldForm::Check},
    {ID_ROUTE_DTMF, "QUEUEMAN/RouteDTMF", FieldForm::Check},
};
constexpr OptionRows kRouting{.Page = OptionPage::InwardRouting,
                              .Template = "OptionsRoutingBox",
                              .Icon = "PageRouting",
                              .Fields = kRoutingFields};

// --- Printing ---

constexpr Values kSquash = ChoiceWords<SquashMode>::kWords;
constexpr PrinterSlot kSlots[] = {
    {"Sent", "PRINTING/PrintSentDevice", "PRINTING/PrintSentBin", "PRINTING/PrintSentPaper", "PRINTING/PrintSentSquash",
     kSquash},
    {"Sent, 2nd", "PRINTING/PrintSentDevice2", "PRINTING/PrintSentBin2", "PRINTING/PrintSentPaper2",
     "PRINTING/PrintSentSquash2", kSquash},
    {"Received", "PRINTING/PrintRecdDevice", "PRINTING/PrintRecdBin", "PRINTING/PrintRecdPaper",
     "PRINTING/PrintRecdSquash", kSquash},
    {"Received, 2nd", "PRINTING/PrintRecdDevice2", "PRINTING/PrintRecdBin2", "PRINTING/PrintRecdPaper2",
     "PRINTING/PrintRecdSquash2", kSquash},
};
constexpr std::string_view kSentWords[] = {kPrintStatus, kPrintMessage};
constexpr std::string_view kRecdWords[] = {kPrintStatus, kPrintMessage, kPrintDelete};
constexpr FieldControl kPrintFields[] = {
    {ID_PRINT_SENT_WORDS, "PRINTING/PrintSentOptions", FieldForm::Words, kSentWords},
    {ID_PRINT_RECD_WORDS, "PRINTING/PrintRecdOptions", FieldForm::Words, kRecdWords},
};

void FillPrinters(HWND page, Context& context) {
    context.Printers.Begin(page, kSlots, context.Fields, FillMessage(kPrintsNowhere));
}
int TakePrinters(HWND, Context& context) { return context.Printers.Take(); }

// What the controls said of the printer until now has been taken; to look at another one is no change.
void SelectSlot(HWND page, Context& context) {
    if (TakeFields(page, kPrintFields, context.Fields) == 0 && context.Printers.Take() == 0)
        context.Pages.NoteAsFilled(page);
}

constexpr DialogCommand<Context> kPrintCommands[] = {
    {ID_PRINT_SLOTS, kListSelected, SelectSlot},
};
constexpr OptionRows kPrinting{.Page = OptionPage::Printing,
                               .Template = "OptionsPrintBox",
                               .Icon = "PagePrinting",
                               .Fields = kPrintFields,
                               .Commands = kPrintCommands,
                               .Fill = FillPrinters,
                               .Take = TakePrinters,
                               .First = ID_PRINT_SLOTS};

// --- Print layout ---

constexpr Values kSheetPages = ChoiceWords<SheetPages>::kWords;
constexpr FieldControl kLayoutFields[] = {
    {ID_LAYOUT_SENT_PAGES, "PRINTING/PrintSentPagesUp", FieldForm::Choice, kSheetPages},
    {ID_LAYOUT_SENT_BORDER, "PRINTING/PrintSentBorder", FieldForm::Check},
    {ID_LAYOUT_SENT_SHADOW, "PRINTING/PrintSentShadow", FieldForm::Check},
    {ID_LAYOUT_RECD_PAGES, "PRINTING/PrintRecdPagesUp", FieldForm::Choice, kSheetPages},
    {ID_LAYOUT_RECD_BORDER, "PRINTING/PrintRecdBorder", FieldForm::Check},
    {ID_LAYOUT_RECD_SHADOW, "PRINTING/PrintRecdShadow", FieldForm::Check},
    {ID_LAYOUT_SEPARATE, "PRINTING/PrintSentSeparate", FieldForm::Check},
    {ID_LAYOUT_SPOOL, "PRINTING/PrintSpoolPath"},
};
constexpr DirectoryRow kLayoutDirectories[] = {{2, ID_LAYOUT_SPOOL, "PRINTING/PrintSpoolPath", "Spool directory"}};
constexpr OptionRows kLayout{.Page = OptionPage::PrintLayout,
                             .Template = "OptionsLayoutBox",
                             .Icon = "PageLayout",
                             .Fields = kLayoutFields,
                             .Directories = kLayoutDirectories};

// --- Text conversion ---

constexpr FieldControl kTextFields[] = {
    {ID_TEXT_LINES, "EPSTIFF/AsciiFormLength", FieldForm::Number},
    {ID_TEXT_TOP, "EPSTIFF/AsciiTopMargin", FieldForm::Number},
    {ID_TEXT_BOTTOM, "EPSTIFF/AsciiBottomMargin", FieldForm::Number},
};

void ShowLinesOfText(HWND page, Context&) {
    const auto number = [page](int control) { return static_cast<int>(GetDlgItemInt(page, control, nullptr, FALSE)); };
    const int lines = number(ID_TEXT_LINES) - number(ID_TEXT_TOP) - number(ID_TEXT_BOTTOM);
    SetText(page, ID_TEXT_COUNT, FillMessage(kLinesOfText, std::max(lines, 0)));
}

constexpr DialogCommand<Context> kTextCommands[] = {{ID_TEXT_LINES, EN_CHANGE, ShowLinesOfText},
                                                    {ID_TEXT_TOP, EN_CHANGE, ShowLinesOfText},
                                                    {ID_TEXT_BOTTOM, EN_CHANGE, ShowLinesOfText}};
constexpr OptionRows kText{.Page = OptionPage::TextConversion,
                           .Template = "OptionsTextBox",
                           .Icon = "PageText",
                           .Fields = kTextFields,
                           .Commands = kTextCommands,
                           .Fill = ShowLinesOfText};

// --- Submit directory ---

constexpr FieldControl kSubmitFields[] = {
    {ID_SUBMIT_DIRECTORY, "BSUBMIT/Directory"},
    {ID_SUBMIT_FILES, "BSUBMIT/File"},
    {ID_SUBMIT_TIMER, "BSUBMIT/SpoolCheckTimer", FieldForm::Number},
    {ID_SUBMIT_WAIT, "BSUBMIT/SubmitWait", FieldForm::Number},
    {ID_SUBMIT_MOST, "BSUBMIT/MaxActive", FieldForm::Number},
    {ID_SUBMIT_TIDY, "BSUBMIT/MessageTidy", FieldForm::Check},
    {ID_SUBMIT_OTHERS, "BSUBMIT/OtherUsers", FieldForm::Check},
};
constexpr DirectoryRow kSubmitDirectories[] = {{3, ID_SUBMIT_DIRECTORY, "BSUBMIT/Directory", "Submit directory"}};
constexpr UserRow kSubmitUsers[] = {{0, ID_SUBMIT_USER, ID_SUBMIT_CHOOSE, "BSUBMIT/User"}};
constexpr OptionRows kSubmit{.Page = OptionPage::SubmitDirectory,
                             .Template = "OptionsSubmitBox",
                             .Icon = "PageSubmit",
                             .Fields = kSubmitFields,
                             .Directories = kSubmitDirectories,
                             .Users = kSubmitUsers};

// --- Scanner input ---

constexpr FieldControl kScanFields[] = {
    {ID_SCAN_ON, "OPTIONS/HPScan", FieldForm::Check},
    {ID_SCAN_DIRECTORY, "HPSCAN/Directory"},
    {ID_SCAN_TIMER, "HPSCAN/SpoolCheckTimer", FieldForm::Number},
    {ID_SCAN_WAIT, "HPSCAN/SubmitWait", FieldForm::Number},
    {ID_SCAN_TIDY, "HPSCAN/MessageTidy", FieldForm::Check},
};
constexpr DirectoryRow kScanDirectories[] = {{4, ID_SCAN_DIRECTORY, "HPSCAN/Directory", "Directory of the scanner"}};
constexpr UserRow kScanUsers[] = {{1, ID_SCAN_USER, ID_SCAN_CHOOSE, "HPSCAN/User"}};

void EnableScanner(HWND page, Context&) {
    const bool isOn = IsDlgButtonChecked(page, ID_SCAN_ON) == BST_CHECKED;
    for (int control = ID_SCAN_DIRECTORY; control <= ID_SCAN_TIDY; ++control) EnableControl(page, control, isOn);
}

constexpr DialogCommand<Context> kScanCommands[] = {{ID_SCAN_ON, BN_CLICKED, EnableScanner}};
constexpr OptionRows kScanner{.Page = OptionPage::ScannerInput,
                              .Template = "OptionsScanBox",
                              .Icon = "PageScanner",
                              .Fields = kScanFields,
                              .Directories = kScanDirectories,
                              .Users = kScanUsers,
                              .Commands = kScanCommands,
                              .Fill = EnableScanner};

// --- Workstations ---

constexpr const char* kChargeTitles[] = {"No", "Yes", "Optional"};
constexpr FieldControl kClientFields[] = {
    {ID_CLIENT_CHARGE, "WORKSTATION/ChargeCode", FieldForm::Choice, Values(ChoiceWords<ChargeCodeUse>::kWords),
     kChargeTitles},
    {ID_CLIENT_LENGTH, "WORKSTATION/CoverLineLen", FieldForm::Number},
    {ID_CLIENT_LINES, "WORKSTATION/CoverMaxLine", FieldForm::Number},
    {ID_CLIENT_ENTRIES, "WORKSTATION/SendListEntries", FieldForm::Number},
    {ID_CLIENT_ORGANISATION, "WORKSTATION/ViewAskOrganisation", FieldForm::Check},
};
constexpr OptionRows kClients{
    .Page = OptionPage::Workstations, .Template = "OptionsClientBox", .Icon = "PageClients", .Fields = kClientFields};

// In the order of OptionPage.
constexpr const OptionRows* kAllRows[] = {&kGeneral, &kSending, &kArchiving, &kOffpeak, &kRouting, &kPrinting,
                                          &kLayout,  &kText,    &kSubmit,    &kScanner, &kClients};

} // namespace

std::vector<Page> PagesOfOptions() {
    return {PageOf<kGeneral>(), PageOf<kSending>(),  PageOf<kArchiving>(), PageOf<kOffpeak>(),
            PageOf<kRouting>(), PageOf<kPrinting>(), PageOf<kLayout>(),    PageOf<kText>(),
            PageOf<kSubmit>(),  PageOf<kScanner>(),  PageOf<kClients>(),   TelephoneTypesPage()};
}

int ControlOfOption(OptionPage page, std::string_view path) {
    const auto place = static_cast<std::size_t>(page);
    if (place >= std::size(kAllRows)) return ID_TYPES_LIST;
    const OptionRows& rows = *kAllRows[place];
    const auto field = std::ranges::find(rows.Fields, path, &FieldControl::Key);
    if (field != rows.Fields.end()) return field->Control;
    const auto user = std::ranges::find(rows.Users, path, &UserRow::Path);
    return user != rows.Users.end() ? user->Combo : rows.First;
}

std::string OptionFields::TextOf(std::string_view path) const { return KeyOf(path).Field.Text(entry_.After()); }

std::optional<std::string> OptionFields::Enter(std::string_view path, std::string_view text) {
    return entry_.Enter(KeyOf(path), text);
}

std::size_t OptionFields::LimitOf(std::string_view path) const { return KeyOf(path).Field.Rule.Limit; }

std::string OptionFields::Describe(std::string_view path) const { return TooltipOf(HelpOf(KeyOf(path))); }

} // namespace bv
