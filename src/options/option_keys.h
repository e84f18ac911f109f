// The server's options as a record, and the one table of their keys in SETUP.INI.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/fixed_text.h"
#include "ctlfile/key_fields.h"
#include "users/permissions.h"
#include "users/user_record.h"

namespace bv {

enum class ArchiveMode { No, Yes, StatusOnly };
enum class FaxQuality { High, Draft };
enum class MailSystem { None, MsMail, Exchange, CcMail, Mapi, Gateway };
enum class SheetPages { One, Two, Four };
enum class ChargeCodeUse { No, Yes, Optional };

// What is printed of a sent or a received fax, and whether it is then deleted.
// Words of other versions are kept until somebody changes the key.
struct SentPrint {
    bool Status = false;
    bool Message = false;
    std::string Others = {};
    friend bool operator==(const SentPrint&, const SentPrint&) = default;
};
struct RecdPrint {
    bool Status = false;
    bool Message = false;
    bool Delete = false;
    std::string Others = {};
    friend bool operator==(const RecdPrint&, const RecdPrint&) = default;
};

using OptionDirectory = FixedText<256>;

// Fields have the defaults of what is absent, but for the directories in the server area and MailGatewayV6, which the
// reader knows. The keys of the paragraphs for input are called after these.
struct ServerOptions {
    // [OPTIONS]
    std::uint16_t LogKeepDays = 0;
    bool UseArchiveAttribute = true;
    bool MailGatewayV6 = false; // only read; without the key as the gateway's version says
    bool LCR = false;           // least-cost routing is switched on
    bool HPScan = false;        // scanner input is switched on

    // [QUEUEMAN]
    ArchiveMode ArchiveRecd = ArchiveMode::No;
    OptionDirectory ArchiveRecdPath;
    ArchiveMode ArchiveSent = ArchiveMode::No;
    OptionDirectory ArchiveSentPath;
    bool IgnorePrintFiles = false;
    std::optional<SendTimeRange> Offpeak;
    FaxQuality QualityFax = FaxQuality::High;
    bool RemoveFailedDevice = false;
    std::uint16_t SendRetryWait = 300;
    std::uint16_t SendTries = 5;
    bool RouteSenderID = true;
    bool RouteSubAddr = true;
    bool RouteExtCSID = true;
    bool RouteDTMF = true;
    MailSystem MailType = MailSystem::None;
    FixedText<100> MailLoginName;
    FixedText<100> MailLoginParams; // as it is stored, which is scrambled
    bool MailPermanentLogin = false;

    // [PRINTING]
    FixedText<100> PrintSentDevice;
    FixedText<100> PrintRecdDevice;
    FixedText<100> PrintSentDevice2;
    FixedText<100> PrintRecdDevice2;
    FixedText<34> PrintSentBin;
    FixedText<34> PrintRecdBin;
    FixedText<34> PrintSentBin2;
    FixedText<34> PrintRecdBin2;
    FixedText<74> PrintSentPaper;
    FixedText<74> PrintRecdPaper;
    FixedText<74> PrintSentPaper2;
    FixedText<74> PrintRecdPaper2;
    SquashMode PrintSentSquash = SquashMode::None;
    SquashMode PrintRecdSquash = SquashMode::None;
    SquashMode PrintSentSquash2 = SquashMode::None;
    SquashMode PrintRecdSquash2 = SquashMode::None;
    SentPrint PrintSentOptions;
    RecdPrint PrintRecdOptions;
    bool PrintSentSeparate = false;
    FixedText<100> PrintSpoolPath;
    SheetPages PrintSentPagesUp = SheetPages::One;
    SheetPages PrintRecdPagesUp = SheetPages::One;
    bool PrintSentBorder = false;
    bool PrintRecdBorder = false;
    bool PrintSentShadow = false;
    bool PrintRecdShadow = false;

    // [EPSTIFF], lines of a page that text is converted to
    std::uint16_t AsciiBottomMargin = 2;
    std::uint16_t AsciiFormLength = 72;
    std::uint16_t AsciiTopMargin = 2;

    // [BSUBMIT], the directory that the server polls for submission files
    OptionDirectory BSubmitDirectory;
    FixedText<12> BSubmitFile = "*.SUB"; // upper case
    std::uint16_t BSubmitMaxActive = 0;
    bool BSubmitMessageTidy = false;
    bool BSubmitOtherUsers = false;
    std::uint16_t BSubmitSpoolCheckTimer = 10;
    std::uint16_t BSubmitSubmitWait = 0;
    RecordName BSubmitUser;

    // [HPSCAN], the directory of the scanner
    OptionDirectory HPScanDirectory;
    bool HPScanMessageTidy = false;
    std::uint16_t HPScanSpoolCheckTimer = 10;
    std::uint16_t HPScanSubmitWait = 5;
    RecordName HPScanUser;

    // [WORKSTATION]
    ChargeCodeUse ChargeCode = ChargeCodeUse::No;
    std::uint16_t CoverLineLen = 60;
    std::uint16_t CoverMaxLine = 10;
    std::uint16_t SendListEntries = 1000;
    bool ViewAskOrganisation = true;

    friend bool operator==(const ServerOptions&, const ServerOptions&) = default;
};

// What belongs together for a person: the pages on which the options are shown.
enum class OptionPage {
    General,
    Sending,
    Archiving,
    OffpeakTimes,
    InwardRouting,
    Printing,
    PrintLayout,
    TextConversion,
    SubmitDirectory,
    ScannerInput,
    Workstations,
    TelephoneNumbers,
    LeastCostRouting,
    DiallingProperties,
    MailGateway
};
const char* TitleOf(OptionPage page);

// The keys in the order in which they are read and written.
struct OptionKey {
    std::string_view Paragraph; // its header
    KeyField<ServerOptions> Field;
    OptionPage Page;
    std::string_view Title; // what a person calls it

    enum class Traits { None, OnlyRead, Receiver, Directory }; // Receiver: the name of a user or group
    Traits Trait = Traits::None;
    std::string_view DefaultBelowServer = {}; // the default is this directory of the server area
    bool EmptyIsDefault = false;              // the file has nothing in place of the default
};
std::span<const OptionKey> OptionKeys();

// The key of that name in that paragraph, both in any case and without brackets and separator; none without one.
const OptionKey* FindOptionKey(std::string_view paragraph, std::string_view name);

// An option that somebody looks for: one of OptionKeys, or another one that has a place on the pages.
struct OptionHit {
    OptionPage Page;
    std::string_view Paragraph; // its header
    std::string_view Key;       // without its separator
    std::string_view Title;
};

// The options, page by page, in whose titles or keys each of the words stands somewhere, in any case; all of them
// without a word.
std::vector<OptionHit> FindOptions(std::string_view words);

} // namespace bv
