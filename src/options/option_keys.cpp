#include "options/option_keys.h"

#include <algorithm>
#include <iterator>

#include "options/option_values.h"
#include "platform/ascii.h"

namespace bv {
namespace {

using Options = ServerOptions;
using Field = KeyField<Options>;
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
    {kOptions, NumberOf<&Options::LogKeepDays>("LogKeepDays:")},
    {kOptions, FieldOf<&Options::UseArchiveAttribute>("UseArchiveAttribute:")},
    {kOptions, FieldOf<&Options::MailGatewayV6>("MailGatewayV6:"), OnlyRead},
    {kOptions, FieldOf<&Options::LCR>("LCR:")},
    {kQueueMan, FieldOf<&Options::ArchiveRecd>("ArchiveRecd:")},
    {kQueueMan, FieldOf<&Options::ArchiveRecdPath>("ArchiveRecdPath:"), None, "B-RECD\\", true},
    {kQueueMan, FieldOf<&Options::ArchiveSent>("ArchiveSent:")},
    {kQueueMan, FieldOf<&Options::ArchiveSentPath>("ArchiveSentPath:"), None, "B-SENT\\", true},
    {kQueueMan, FieldOf<&Options::IgnorePrintFiles>("IgnorePrintFiles:")},
    {kQueueMan, FieldOf<&Options::Offpeak>("Offpeak:")},
    {kQueueMan, FieldOf<&Options::QualityFax>("QualityFax:")},
    {kQueueMan, FieldOf<&Options::RemoveFailedDevice>("RemoveFailedDevice:")},
    {kQueueMan, NumberOf<&Options::SendRetryWait>("SendRetryWait:")},
    {kQueueMan, NumberOf<&Options::SendTries>("SendTries:")},
    {kQueueMan, FieldOf<&Options::RouteSenderID>("RouteSenderID:")},
    {kQueueMan, FieldOf<&Options::RouteSubAddr>("RouteSubAddr:")},
    {kQueueMan, FieldOf<&Options::RouteExtCSID>("RouteExtCSID:")},
    {kQueueMan, FieldOf<&Options::RouteDTMF>("RouteDTMF:")},
    {kQueueMan, FieldOf<&Options::MailType>("MailType:")},
    {kQueueMan, FieldOf<&Options::MailLoginName>("MailLoginName:")},
    {kQueueMan, FieldOf<&Options::MailLoginParams>("MailLoginParams:", {ValueRule::Form::ScrambledPassword})},
    {kQueueMan, FieldOf<&Options::MailPermanentLogin>("MailPermanentLogin:")},
    {kPrinting, FieldOf<&Options::PrintSentDevice>("PrintSentDevice:")},
    {kPrinting, FieldOf<&Options::PrintRecdDevice>("PrintRecdDevice:")},
    {kPrinting, FieldOf<&Options::PrintSentDevice2>("PrintSentDevice2:")},
    {kPrinting, FieldOf<&Options::PrintRecdDevice2>("PrintRecdDevice2:")},
    {kPrinting, FieldOf<&Options::PrintSentBin>("PrintSentBin:")},
    {kPrinting, FieldOf<&Options::PrintRecdBin>("PrintRecdBin:")},
    {kPrinting, FieldOf<&Options::PrintSentBin2>("PrintSentBin2:")},
    {kPrinting, FieldOf<&Options::PrintRecdBin2>("PrintRecdBin2:")},
    {kPrinting, FieldOf<&Options::PrintSentPaper>("PrintSentPaper:")},
    {kPrinting, FieldOf<&Options::PrintRecdPaper>("PrintRecdPaper:")},
    {kPrinting, FieldOf<&Options::PrintSentPaper2>("PrintSentPaper2:")},
    {kPrinting, FieldOf<&Options::PrintRecdPaper2>("PrintRecdPaper2:")},
    {kPrinting, FieldOf<&Options::PrintSentSquash>("PrintSentSquash:")},
    {kPrinting, FieldOf<&Options::PrintRecdSquash>("PrintRecdSquash:")},
    {kPrinting, FieldOf<&Options::PrintSentSquash2>("PrintSentSquash2:")},
    {kPrinting, FieldOf<&Options::PrintRecdSquash2>("PrintRecdSquash2:")},
    {kPrinting, FieldOf<&Options::PrintSentOptions>("PrintSentOptions:")},
    {kPrinting, FieldOf<&Options::PrintRecdOptions>("PrintRecdOptions:")},
    {kPrinting, FieldOf<&Options::PrintSentSeparate>("PrintSentSeparate:")},
    {kPrinting, FieldOf<&Options::PrintSpoolPath>("PrintSpoolPath:"), None, "B-PRINT\\"},
    {kPrinting, FieldOf<&Options::PrintSentPagesUp>("PrintSentPagesUp:")},
    {kPrinting, FieldOf<&Options::PrintRecdPagesUp>("PrintRecdPagesUp:")},
    {kPrinting, FieldOf<&Options::PrintSentBorder>("PrintSentBorder:")},
    {kPrinting, FieldOf<&Options::PrintRecdBorder>("PrintRecdBorder:")},
    {kPrinting, FieldOf<&Options::PrintSentShadow>("PrintSentShadow:")},
    {kPrinting, FieldOf<&Options::PrintRecdShadow>("PrintRecdShadow:")},
    {kEpsTiff, NumberOf<&Options::AsciiBottomMargin>("AsciiBottomMargin:")},
    {kEpsTiff, NumberOf<&Options::AsciiFormLength>("AsciiFormLength:")},
    {kEpsTiff, NumberOf<&Options::AsciiTopMargin>("AsciiTopMargin:")},
    {kBSubmit, FieldOf<&Options::BSubmitDirectory>("Directory:"), None, "B-TEMP\\"},
    {kBSubmit, kSubmitFile},
    {kBSubmit, NumberOf<&Options::BSubmitMaxActive>("MaxActive:")},
    {kBSubmit, FieldOf<&Options::BSubmitMessageTidy>("MessageTidy:")},
    {kBSubmit, FieldOf<&Options::BSubmitOtherUsers>("OtherUsers:")},
    {kBSubmit, NumberOf<&Options::BSubmitSpoolCheckTimer>("SpoolCheckTimer:")},
    {kBSubmit, NumberOf<&Options::BSubmitSubmitWait>("SubmitWait:")},
    {kBSubmit, FieldOf<&Options::BSubmitUser>("User:"), Receiver},
    {kOptions, FieldOf<&Options::HPScan>("HPScan:")},
    {kHPScan, FieldOf<&Options::HPScanDirectory>("Directory:")},
    {kHPScan, FieldOf<&Options::HPScanMessageTidy>("MessageTidy:")},
    {kHPScan, NumberOf<&Options::HPScanSpoolCheckTimer>("SpoolCheckTimer:")},
    {kHPScan, NumberOf<&Options::HPScanSubmitWait>("SubmitWait:")},
    {kHPScan, FieldOf<&Options::HPScanUser>("User:"), Receiver},
    {kWorkstation, FieldOf<&Options::ChargeCode>("ChargeCode:")},
    {kWorkstation, NumberOf<&Options::CoverLineLen>("CoverLineLen:")},
    {kWorkstation, NumberOf<&Options::CoverMaxLine>("CoverMaxLine:")},
    {kWorkstation, NumberOf<&Options::SendListEntries>("SendListEntries:")},
    {kWorkstation, FieldOf<&Options::ViewAskOrganisation>("ViewAskOrganisation:")},
};

} // namespace

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
