#include "options/option_keys.h"

#include <algorithm>
#include <iterator>

#include "options/option_values.h"
#include "platform/ascii.h"

namespace bv {
namespace {

using Options = ServerOptions;
using Field = KeyField<Options>;
using Page = OptionPage;
using enum OptionKey::Traits;

template <auto Member>
constexpr Field NumberOf(std::string_view key) {
    return FieldOf<Member>(key, kSettingNumber);
}

constexpr Field kSubmitFile = [] {
    Field field = FieldOf<&Options::BSubmitFile>("File:");
    field.Store = [](Options& options, std::string_view text) {
        options.BSubmitFile = UpperText(text);
        return true;
    };
    return field;
}();

constexpr std::string_view kOptions = "[OPTIONS]";
constexpr std::string_view kQueueMan = "[QUEUEMAN]";
constexpr std::string_view kPrinting = "[PRINTING]";
constexpr std::string_view kEpsTiff = "[EPSTIFF]";
constexpr std::string_view kBSubmit = "[BSUBMIT]";
constexpr std::string_view kHPScan = "[HPSCAN]";
constexpr std::string_view kWorkstation = "[WORKSTATION]";

constexpr OptionKey kKeys[] = {
    {kOptions, NumberOf<&Options::LogKeepDays>("LogKeepDays:"), Page::General, "Days of log to keep"},
    {kOptions, FieldOf<&Options::UseArchiveAttribute>("UseArchiveAttribute:"), Page::Archiving,
     "Use the files' archive attribute"},
    {kOptions, FieldOf<&Options::MailGatewayV6>("MailGatewayV6:"), Page::General, "Newer mail gateway", OnlyRead},
    {kOptions, FieldOf<&Options::LCR>("LCR:"), Page::LeastCostRouting, "Least-cost routing"},
    {kQueueMan, FieldOf<&Options::ArchiveRecd>("ArchiveRecd:"), Page::Archiving, "Received faxes"},
    {kQueueMan, FieldOf<&Options::ArchiveRecdPath>("ArchiveRecdPath:"), Page::Archiving, "Directory of received faxes",
     Directory, "B-RECD\\", true},
    {kQueueMan, FieldOf<&Options::ArchiveSent>("ArchiveSent:"), Page::Archiving, "Sent faxes"},
    {kQueueMan, FieldOf<&Options::ArchiveSentPath>("ArchiveSentPath:"), Page::Archiving, "Directory of sent faxes",
     Directory, "B-SENT\\", true},
    {kQueueMan, FieldOf<&Options::IgnorePrintFiles>("IgnorePrintFiles:"), Page::Sending, "Ignore print files"},
    {kQueueMan, FieldOf<&Options::Offpeak>("Offpeak:"), Page::OffpeakTimes, "Off-peak times"},
    {kQueueMan, FieldOf<&Options::QualityFax>("QualityFax:"), Page::Sending, "Resolution"},
    {kQueueMan, FieldOf<&Options::RemoveFailedDevice>("RemoveFailedDevice:"), Page::Sending,
     "Remove failing devices from service"},
    {kQueueMan, NumberOf<&Options::SendRetryWait>("SendRetryWait:"), Page::Sending, "Wait between tries"},
    {kQueueMan, NumberOf<&Options::SendTries>("SendTries:"), Page::Sending, "Send tries"},
    {kQueueMan, FieldOf<&Options::RouteSenderID>("RouteSenderID:"), Page::InwardRouting, "By sender identifier"},
    {kQueueMan, FieldOf<&Options::RouteSubAddr>("RouteSubAddr:"), Page::InwardRouting, "By sub-address"},
    {kQueueMan, FieldOf<&Options::RouteExtCSID>("RouteExtCSID:"), Page::InwardRouting,
     "By extended called-station identifier"},
    {kQueueMan, FieldOf<&Options::RouteDTMF>("RouteDTMF:"), Page::InwardRouting, "By DTMF digits"},
    {kQueueMan, FieldOf<&Options::MailType>("MailType:"), Page::MailGateway, "Mail system"},
    {kQueueMan, FieldOf<&Options::MailLoginName>("MailLoginName:"), Page::MailGateway, "Log-in name"},
    {kQueueMan, FieldOf<&Options::MailLoginParams>("MailLoginParams:", {ValueRule::Form::ScrambledPassword}),
     Page::MailGateway, "Log-in password"},
    {kQueueMan, FieldOf<&Options::MailPermanentLogin>("MailPermanentLogin:"), Page::MailGateway, "Stay logged in"},
    {kPrinting, FieldOf<&Options::PrintSentDevice>("PrintSentDevice:"), Page::Printing, "Printer of sent faxes"},
    {kPrinting, FieldOf<&Options::PrintRecdDevice>("PrintRecdDevice:"), Page::Printing, "Printer of received faxes"},
    {kPrinting, FieldOf<&Options::PrintSentDevice2>("PrintSentDevice2:"), Page::Printing, "Printer of sent faxes, 2nd"},
    {kPrinting, FieldOf<&Options::PrintRecdDevice2>("PrintRecdDevice2:"), Page::Printing,
     "Printer of received faxes, 2nd"},
    {kPrinting, FieldOf<&Options::PrintSentBin>("PrintSentBin:"), Page::Printing, "Bin of sent faxes"},
    {kPrinting, FieldOf<&Options::PrintRecdBin>("PrintRecdBin:"), Page::Printing, "Bin of received faxes"},
    {kPrinting, FieldOf<&Options::PrintSentBin2>("PrintSentBin2:"), Page::Printing, "Bin of sent faxes, 2nd"},
    {kPrinting, FieldOf<&Options::PrintRecdBin2>("PrintRecdBin2:"), Page::Printing, "Bin of received faxes, 2nd"},
    {kPrinting, FieldOf<&Options::PrintSentPaper>("PrintSentPaper:"), Page::Printing, "Paper of sent faxes"},
    {kPrinting, FieldOf<&Options::PrintRecdPaper>("PrintRecdPaper:"), Page::Printing, "Paper of received faxes"},
    {kPrinting, FieldOf<&Options::PrintSentPaper2>("PrintSentPaper2:"), Page::Printing, "Paper of sent faxes, 2nd"},
    {kPrinting, FieldOf<&Options::PrintRecdPaper2>("PrintRecdPaper2:"), Page::Printing, "Paper of received faxes, 2nd"},
    {kPrinting, FieldOf<&Options::PrintSentSquash>("PrintSentSquash:"), Page::Printing, "Squash of sent faxes"},
    {kPrinting, FieldOf<&Options::PrintRecdSquash>("PrintRecdSquash:"), Page::Printing, "Squash of received faxes"},
    {kPrinting, FieldOf<&Options::PrintSentSquash2>("PrintSentSquash2:"), Page::Printing, "Squash of sent faxes, 2nd"},
    {kPrinting, FieldOf<&Options::PrintRecdSquash2>("PrintRecdSquash2:"), Page::Printing,
     "Squash of received faxes, 2nd"},
    {kPrinting, FieldOf<&Options::PrintSentOptions>("PrintSentOptions:"), Page::Printing,
     "What is printed of sent faxes"},
    {kPrinting, FieldOf<&Options::PrintRecdOptions>("PrintRecdOptions:"), Page::Printing,
     "What is printed of received faxes"},
    {kPrinting, FieldOf<&Options::PrintSentSeparate>("PrintSentSeparate:"), Page::PrintLayout,
     "Make a job of each sent fax"},
    {kPrinting, FieldOf<&Options::PrintSpoolPath>("PrintSpoolPath:"), Page::PrintLayout, "Spool directory", Directory,
     "B-PRINT\\"},
    {kPrinting, FieldOf<&Options::PrintSentPagesUp>("PrintSentPagesUp:"), Page::PrintLayout, "Sent faxes on a sheet"},
    {kPrinting, FieldOf<&Options::PrintRecdPagesUp>("PrintRecdPagesUp:"), Page::PrintLayout,
     "Received faxes on a sheet"},
    {kPrinting, FieldOf<&Options::PrintSentBorder>("PrintSentBorder:"), Page::PrintLayout, "Border of sent faxes"},
    {kPrinting, FieldOf<&Options::PrintRecdBorder>("PrintRecdBorder:"), Page::PrintLayout, "Border of received faxes"},
    {kPrinting, FieldOf<&Options::PrintSentShadow>("PrintSentShadow:"), Page::PrintLayout, "Shadow of sent faxes"},
    {kPrinting, FieldOf<&Options::PrintRecdShadow>("PrintRecdShadow:"), Page::PrintLayout, "Shadow of received faxes"},
    {kEpsTiff, NumberOf<&Options::AsciiBottomMargin>("AsciiBottomMargin:"), Page::TextConversion, "Bottom margin"},
    {kEpsTiff, NumberOf<&Options::AsciiFormLength>("AsciiFormLength:"), Page::TextConversion, "Lines on a page"},
    {kEpsTiff, NumberOf<&Options::AsciiTopMargin>("AsciiTopMargin:"), Page::TextConversion, "Top margin"},
    {kBSubmit, FieldOf<&Options::BSubmitDirectory>("Directory:"), Page::SubmitDirectory, "Directory", Directory,
     "B-TEMP\\"},
    {kBSubmit, kSubmitFile, Page::SubmitDirectory, "Files"},
    {kBSubmit, NumberOf<&Options::BSubmitMaxActive>("MaxActive:"), Page::SubmitDirectory, "Most at a time"},
    {kBSubmit, FieldOf<&Options::BSubmitMessageTidy>("MessageTidy:"), Page::SubmitDirectory, "Tidy up messages"},
    {kBSubmit, FieldOf<&Options::BSubmitOtherUsers>("OtherUsers:"), Page::SubmitDirectory, "Files of other users, too"},
    {kBSubmit, NumberOf<&Options::BSubmitSpoolCheckTimer>("SpoolCheckTimer:"), Page::SubmitDirectory,
     "Spool check timer"},
    {kBSubmit, NumberOf<&Options::BSubmitSubmitWait>("SubmitWait:"), Page::SubmitDirectory, "Wait before submitting"},
    {kBSubmit, FieldOf<&Options::BSubmitUser>("User:"), Page::SubmitDirectory, "User", Receiver},
    {kOptions, FieldOf<&Options::HPScan>("HPScan:"), Page::ScannerInput, "Scanner input"},
    {kHPScan, FieldOf<&Options::HPScanDirectory>("Directory:"), Page::ScannerInput, "Directory", Directory},
    {kHPScan, FieldOf<&Options::HPScanMessageTidy>("MessageTidy:"), Page::ScannerInput, "Tidy up messages"},
    {kHPScan, NumberOf<&Options::HPScanSpoolCheckTimer>("SpoolCheckTimer:"), Page::ScannerInput, "Spool check timer"},
    {kHPScan, NumberOf<&Options::HPScanSubmitWait>("SubmitWait:"), Page::ScannerInput, "Wait before submitting"},
    {kHPScan, FieldOf<&Options::HPScanUser>("User:"), Page::ScannerInput, "User", Receiver},
    {kWorkstation, FieldOf<&Options::ChargeCode>("ChargeCode:"), Page::Workstations, "Charge code"},
    {kWorkstation, NumberOf<&Options::CoverLineLen>("CoverLineLen:"), Page::Workstations, "Length of coversheet lines"},
    {kWorkstation, NumberOf<&Options::CoverMaxLine>("CoverMaxLine:"), Page::Workstations, "Most coversheet lines"},
    {kWorkstation, NumberOf<&Options::SendListEntries>("SendListEntries:"), Page::Workstations,
     "Entries in send lists"},
    {kWorkstation, FieldOf<&Options::ViewAskOrganisation>("ViewAskOrganisation:"), Page::Workstations,
     "Ask for the organisation when viewing"},
};

// In the order of OptionPage.
constexpr const char* kPageTitles[] = {
    "General",      "Sending",           "Archiving",          "Off-peak times",      "Inward routing",
    "Printing",     "Print layout",      "Text conversion",    "Submit directory",    "Scanner input",
    "Workstations", "Telephone numbers", "Least-cost routing", "Dialling properties", "Mail gateway"};

// What can be looked for beside the keys of the table.
constexpr OptionHit kOthers[] = {
    {Page::General, kOptions, "LogFile", "Log file"},
    {Page::General, kOptions, "Language", "Language"},
    {Page::General, kOptions, "EnableRouting", "Routing in the menu"},
    {Page::General, kOptions, "UserGroupIdentifier", "Mark of user groups"},
    {Page::General, kOptions, "EnableAutoAdd", "Users from the network"},
    {Page::TelephoneNumbers, kQueueMan, "TelnumType", "Types"},
    {Page::DiallingProperties, "[LOCATION]", "Location", "Dialling location"},
};

bool HoldsFolded(std::string_view text, std::string_view word) {
    const auto isSame = [](char a, char b) { return ToLower(a) == ToLower(b); };
    return std::search(text.begin(), text.end(), word.begin(), word.end(), isSame) != text.end();
}

bool IsHit(const OptionHit& option, std::string_view words) {
    for (words = TrimBlanks(words); !words.empty(); words = SkipBlanks(words)) {
        const std::string_view word = words.substr(0, words.find(' '));
        const std::string_view texts[] = {TitleOf(option.Page), option.Paragraph, option.Key, option.Title};
        if (std::ranges::none_of(texts, [&](std::string_view text) { return HoldsFolded(text, word); })) return false;
        words.remove_prefix(word.size());
    }
    return true;
}

} // namespace

const char* TitleOf(OptionPage page) { return kPageTitles[static_cast<std::size_t>(page)]; }

std::vector<OptionHit> FindOptions(std::string_view words) {
    std::vector<OptionHit> hits(std::begin(kOthers), std::end(kOthers));
    for (const OptionKey& key : kKeys) hits.push_back({key.Page, key.Paragraph, key.Field.Name(), key.Title});
    std::erase_if(hits, [&](const OptionHit& hit) { return !IsHit(hit, words); });
    std::ranges::stable_sort(hits, {}, &OptionHit::Page);
    return hits;
}

std::span<const OptionKey> OptionKeys() { return kKeys; }

const OptionKey* FindOptionKey(std::string_view paragraph, std::string_view name) {
    const auto isWanted = [&](const OptionKey& key) {
        const std::string_view header = key.Paragraph.substr(1, key.Paragraph.size() - 2);
        return EqualFolded(header, paragraph) && EqualFolded(key.Field.Name(), name);
    };
    const auto* found = std::ranges::find_if(kKeys, isWanted);
    return found == std::end(kKeys) ? nullptr : found;
}

} // namespace bv
