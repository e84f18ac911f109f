#include "options/server_options.h"

#include <gmock/gmock.h>

#include "devices/setup_text.h"
#include "platform/ascii.h"

namespace bv {
namespace {

using test::Replaced;
using test::SetupServer;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kUpdating = "status 1: Updating file " + test::kSetupFile;
const std::string kUpdated = "status 1: Updated file " + test::kSetupFile;
const std::string kError = "error: Error updating file " + test::kSetupFile;
const std::string kWait = "wait cursor on";
const std::string kReady = "wait cursor off";

// What the first save makes of an empty file: each key with its default.
const std::string kDefaults =
    "[OPTIONS]\nLogKeepDays: 0\nUseArchiveAttribute: YES\nLCR: NO\nHPScan: NO\n\n[QUEUEMAN]\n"
    "ArchiveRecd: NO\nArchiveRecdPath:\nArchiveSent: NO\nArchiveSentPath:\nIgnorePrintFiles: NO\n"
    "Offpeak:\nQualityFax: HIGH\nRemoveFailedDevice: NO\nSendRetryWait: 300\nSendTries: 5\n"
    "RouteSenderID: YES\nRouteSubAddr: YES\nRouteExtCSID: YES\nRouteDTMF: YES\nMailType:\n"
    "MailLoginName:\nMailLoginParams:\nMailPermanentLogin: NO\n\n[PRINTING]\nPrintSentDevice:\n"
    "PrintRecdDevice:\nPrintSentDevice2:\nPrintRecdDevice2:\nPrintSentBin:\nPrintRecdBin:\n"
    "PrintSentBin2:\nPrintRecdBin2:\nPrintSentPaper:\nPrintRecdPaper:\nPrintSentPaper2:\n"
    "PrintRecdPaper2:\nPrintSentSquash: NO\nPrintRecdSquash: NO\nPrintSentSquash2: NO\n"
    "PrintRecdSquash2: NO\nPrintSentOptions:\nPrintRecdOptions:\nPrintSentSeparate: NO\n"
    "PrintSpoolPath: F:\\BRIVANE\\SERVER\\B-PRINT\\\nPrintSentPagesUp: 1\nPrintRecdPagesUp: 1\n"
    "PrintSentBorder: NO\nPrintRecdBorder: NO\nPrintSentShadow: NO\nPrintRecdShadow: NO\n\n[EPSTIFF]\n"
    "AsciiBottomMargin: 2\nAsciiFormLength: 72\nAsciiTopMargin: 2\n\n[BSUBMIT]\n"
    "Directory: F:\\BRIVANE\\SERVER\\B-TEMP\\\nFile: *.SUB\nMaxActive: 0\nMessageTidy: NO\n"
    "OtherUsers: NO\nSpoolCheckTimer: 10\nSubmitWait: 0\nUser:\n\n[HPSCAN]\nDirectory:\nMessageTidy: NO\n"
    "SpoolCheckTimer: 10\nSubmitWait: 5\nUser:\n\n[WORKSTATION]\nChargeCode: NO\nCoverLineLen: 60\n"
    "CoverMaxLine: 10\nSendListEntries: 1000\nViewAskOrganisation: YES\n";

// Each key with another value than its default, words in any case and keys in another order.
const std::string kAllSet = "[OPTIONS]\nLCR: yes\nHPScan:\nUseArchiveAttribute: 0\nLogKeepDays: 30\n"
                            "[QUEUEMAN]\nMailPermanentLogin: on\nMailLoginParams: ebgf: x\nMailLoginName: Fax Gateway\n"
                            "MailType: exchange\nRouteDTMF: n\nRouteExtCSID: false\nRouteSubAddr: NO\n"
                            "RouteSenderID: OFF\nSendTries: 7\nSendRetryWait: 65534\nRemoveFailedDevice: Y\n"
                            "QualityFax: draft\nOffpeak: after 18:00, BEFORE 8:00 saturday\nIgnorePrintFiles: TRUE\n"
                            "ArchiveSentPath: D:\\S\\\nArchiveSent: status\nArchiveRecdPath: D:\\R\nArchiveRecd: Yes\n"
                            "[PRINTING]\nPrintSentDevice: P-1\nPrintRecdDevice: P-2\nPrintSentDevice2: P-3\n"
                            "PrintRecdDevice2: P-4\nPrintSentBin: b1\nPrintRecdBin: b2\nPrintSentBin2: b3\n"
                            "PrintRecdBin2: b4\nPrintSentPaper: p1\nPrintRecdPaper: p2\nPrintSentPaper2: p3\n"
                            "PrintRecdPaper2: p4\nPrintSentSquash: vertical\nPrintRecdSquash: YES\n"
                            "PrintSentSquash2: YES\nPrintRecdSquash2: VERTICAL\nPrintSentOptions: message, status\n"
                            "PrintRecdOptions: DELETE\nPrintSentSeparate: YES\nPrintSpoolPath:\nPrintSentPagesUp: 2\n"
                            "PrintRecdPagesUp: 4\nPrintSentBorder: YES\nPrintRecdBorder: YES\nPrintSentShadow: YES\n"
                            "PrintRecdShadow: YES\n"
                            "[EPSTIFF]\nAsciiBottomMargin: 3\nAsciiFormLength: 70\nAsciiTopMargin: 4\n"
                            "[BSUBMIT]\nDirectory: D:\\SUB\nFile: *.job\nMaxActive: 1\nMessageTidy: YES\n"
                            "OtherUsers: YES\nSpoolCheckTimer: 11\nSubmitWait: 2\nUser: ANNA\n"
                            "[HPSCAN]\nDirectory: D:\\SCAN\nMessageTidy: YES\nSpoolCheckTimer: 12\nSubmitWait: 6\n"
                            "User: RECEPTION\n"
                            "[WORKSTATION]\nChargeCode: optional\nCoverLineLen: 61\nCoverMaxLine: 11\n"
                            "SendListEntries: 999\nViewAskOrganisation: NO\n";

// The same as the program writes it.
const std::string kAllSetWritten =
    "[OPTIONS]\nLogKeepDays: 30\nUseArchiveAttribute: NO\nLCR: YES\nHPScan: YES\n"
    "\n[QUEUEMAN]\nArchiveRecd: YES\nArchiveRecdPath: D:\\R\nArchiveSent: STATUS\nArchiveSentPath: D:\\S\\\n"
    "IgnorePrintFiles: YES\nOffpeak: AFTER 18:00 BEFORE 08:00  SAT\nQualityFax: DRAFT\nRemoveFailedDevice: YES\n"
    "SendRetryWait: 65534\nSendTries: 7\nRouteSenderID: NO\nRouteSubAddr: NO\nRouteExtCSID: NO\nRouteDTMF: NO\n"
    "MailType: EXCHANGE\nMailLoginName: Fax Gateway\nMailLoginParams: ebgf: x\nMailPermanentLogin: YES\n"
    "\n[PRINTING]\nPrintSentDevice: P-1\nPrintRecdDevice: P-2\nPrintSentDevice2: P-3\nPrintRecdDevice2: P-4\n"
    "PrintSentBin: b1\nPrintRecdBin: b2\nPrintSentBin2: b3\nPrintRecdBin2: b4\nPrintSentPaper: p1\n"
    "PrintRecdPaper: p2\nPrintSentPaper2: p3\nPrintRecdPaper2: p4\nPrintSentSquash: VERTICAL\nPrintRecdSquash: YES\n"
    "PrintSentSquash2: YES\nPrintRecdSquash2: VERTICAL\nPrintSentOptions: STATUS MESSAGE\nPrintRecdOptions: DELETE\n"
    "PrintSentSeparate: YES\nPrintSpoolPath:\nPrintSentPagesUp: 2\nPrintRecdPagesUp: 4\nPrintSentBorder: YES\n"
    "PrintRecdBorder: YES\nPrintSentShadow: YES\nPrintRecdShadow: YES\n"
    "\n[EPSTIFF]\nAsciiBottomMargin: 3\nAsciiFormLength: 70\nAsciiTopMargin: 4\n"
    "\n[BSUBMIT]\nDirectory: D:\\SUB\nFile: *.JOB\nMaxActive: 1\nMessageTidy: YES\nOtherUsers: YES\n"
    "SpoolCheckTimer: 11\nSubmitWait: 2\nUser: ANNA\n"
    "\n[HPSCAN]\nDirectory: D:\\SCAN\nMessageTidy: YES\nSpoolCheckTimer: 12\nSubmitWait: 6\nUser: RECEPTIO\n"
    "\n[WORKSTATION]\nChargeCode: OPTIONAL\nCoverLineLen: 61\nCoverMaxLine: 11\nSendListEntries: 999\n"
    "ViewAskOrganisation: NO\n";

struct Loaded {
    ServerOptions Options;
    SavedOptions Saved;
    OptionsFound Found;
    Loaded() { EXPECT_TRUE(LoadServerOptions(Options, Saved, &Found)); }
};

const OptionKey& Key(const std::string& path) {
    const std::size_t slash = path.find('/');
    const OptionKey* key = FindOptionKey(path.substr(0, slash), path.substr(slash + 1));
    if (key == nullptr) throw std::runtime_error(path);
    return *key;
}

void Set(ServerOptions& options, const std::string& path, const std::string& text) {
    EXPECT_TRUE(Key(path).Field.Store(options, text)) << path;
}

TEST(ServerOptions, TheFirstSaveWritesEveryKey) {
    SetupServer server("");
    Loaded loaded;
    EXPECT_TRUE(SaveServerOptions(loaded.Options, loaded.Saved));
    EXPECT_EQ(server.GetSetup(), kDefaults);
    const Loaded again;
    EXPECT_EQ(again.Options, loaded.Options);
    EXPECT_EQ(again.Saved[0], "0");
}

TEST(ServerOptions, EveryKeyIsReadAndAnUnchangedSaveWritesNothing) {
    SetupServer server(kAllSet);
    Loaded loaded;
    server.Front.TakeSaid();
    EXPECT_TRUE(SaveServerOptions(loaded.Options, loaded.Saved));
    EXPECT_EQ(server.GetSetup(), kAllSet);
    EXPECT_THAT(server.Front.Said, IsEmpty());
    EXPECT_FALSE(Startup().SettingsChanged);
    server.PutSetup("");
    SavedOptions nothing;
    EXPECT_TRUE(SaveServerOptions(loaded.Options, nothing));
    EXPECT_EQ(server.GetSetup(), kAllSetWritten);
}

TEST(ServerOptions, UnreadableValuesAreDefaultsThatTheNextSaveWrites) {
    const std::tuple<const char*, const char*, const char*, bool> cases[] = {
        {"OPTIONS/LCR", "perhaps", "NO", false},
        {"OPTIONS/UseArchiveAttribute", "-", "YES", false},
        {"OPTIONS/HPScan", "2", "NO", false},
        {"OPTIONS/LogKeepDays", "", "0", false},
        {"OPTIONS/LogKeepDays", "many", "0", true},
        {"QUEUEMAN/SendTries", "", "5", false},
        {"QUEUEMAN/SendRetryWait", "65546 s", "10", true},
        {"QUEUEMAN/ArchiveRecd", "STATUSES", "NO", false},
        {"QUEUEMAN/ArchiveSent", "", "NO", false},
        {"QUEUEMAN/ArchiveRecdPath", "", "F:\\BRIVANE\\SERVER\\B-RECD\\", true},
        {"QUEUEMAN/QualityFax", "LOW", "HIGH", false},
        {"QUEUEMAN/Offpeak", "AFTER", "", false},
        {"QUEUEMAN/Offpeak", "NOW", "", false},
        {"QUEUEMAN/Offpeak", "", "", true},
        {"QUEUEMAN/Offpeak", "mon, FRIDAY", "AFTER 00:00 BEFORE 00:00  MON FRI", true},
        {"QUEUEMAN/Offpeak", "AFTER 18:00", "AFTER 18:00", true},
        {"QUEUEMAN/MailType", "SMTP", "", false},
        {"QUEUEMAN/MailType", "", "", true},
        {"PRINTING/PrintSentSquash", "2", "NO", false},
        {"PRINTING/PrintRecdPagesUp", "3", "1", false},
        {"PRINTING/PrintSentPagesUp", "", "1", false},
        {"PRINTING/PrintSentOptions", "STATUS DELETE", "STATUS DELETE", true},
        {"PRINTING/PrintRecdOptions", "delete\tstatus", "STATUS DELETE", true},
        {"PRINTING/PrintRecdOptions", "", "", true},
        {"PRINTING/PrintSentBin", "0123456789012345678901234567890123456789", "0123456789012345678901234567890123",
         true},
        {"BSUBMIT/File", "", "", true},
        {"WORKSTATION/ChargeCode", "MAYBE", "NO", false},
    };
    for (const auto& [path, value, text, found] : cases) {
        SCOPED_TRACE(std::string(path) + ": " + value);
        const OptionKey& key = Key(path);
        const std::string header(key.Paragraph);
        const std::string before = header + "\n" + std::string(key.Field.Key) + " " + value + "\n";
        SetupServer server(before);
        Loaded loaded;
        EXPECT_EQ(key.Field.Text(loaded.Options), text);
        EXPECT_EQ(StoredValueOf(loaded.Saved, key), found ? StoredValue(text) : std::nullopt);
    }
}

TEST(ServerOptions, OnlyWhatWasChangedIsWrittenOneRewriteAKey) {
    const auto change = [](const std::vector<std::pair<std::string, std::string>>& values) {
        return [values] {
            Loaded loaded;
            for (const auto& [path, text] : values) Set(loaded.Options, path, text);
            return SaveServerOptions(loaded.Options, loaded.Saved);
        };
    };
    const std::string before = kDefaults + "\n[ROUTER]\nx\n";
    const std::string lcr = Replaced(before, "\nLCR: NO", "\nLCR: YES");
    const std::string status = Replaced(lcr, "ArchiveRecd: NO", "ArchiveRecd: STATUS");
    const std::string user = Replaced(status, "SubmitWait: 0\nUser:", "SubmitWait: 0\nUser: ANNA");
    EXPECT_THAT(test::TextsLeftByFaults(before, change({})), ElementsAre(before));
    EXPECT_THAT(test::TextsLeftByFaults(before, change({{"OPTIONS/LCR", "YES"}})), ElementsAre(before, lcr));
    EXPECT_THAT(
        test::TextsLeftByFaults(
            before, change({{"BSUBMIT/User", "ANNA"}, {"QUEUEMAN/ArchiveRecd", "status"}, {"OPTIONS/LCR", "1"}})),
        ElementsAre(before, lcr, status, user));
}

TEST(ServerOptions, AnArchiveThatIsTheDefaultIsWrittenAsNothing) {
    SetupServer server("[QUEUEMAN]\nArchiveRecdPath: D:\\R\nArchiveSentPath:\n");
    Loaded loaded;
    EXPECT_EQ(loaded.Options.ArchiveSentPath, "F:\\BRIVANE\\SERVER\\B-SENT\\");
    Set(loaded.Options, "QUEUEMAN/ArchiveRecdPath", "f:\\brivane\\SERVER\\b-recd\\");
    Set(loaded.Options, "QUEUEMAN/ArchiveSentPath", "D:\\S");
    EXPECT_TRUE(SaveServerOptions(loaded.Options, loaded.Saved));
    EXPECT_THAT(server.GetSetup(), testing::StartsWith("[QUEUEMAN]\nArchiveRecdPath:\nArchiveSentPath: D:\\S\n"));
}

TEST(ServerOptions, TheOlderPrintLayoutIsTakenOver) {
    const std::string older = "[QUEUEMAN]\nPrintSent: STATUS\nPrintRecd: YES\nPrintSentDevice: P-1\n"
                              "PrintRecdDevice: P-2\nPrintSentSeparate: YES\nPrintSpoolPath: D:\\SPOOL\n"
                              "[P-1]\nDevice: Laser\nPrintBorder: YES\nPrintPagesUp: 2\nPrintSentBin: no\n"
                              "[P-2]\nPrintShadow: YES\nPrintPagesUp: 3\n";
    SetupServer server(older);
    Loaded loaded;
    EXPECT_TRUE(SaveServerOptions(loaded.Options, loaded.Saved));
    const std::string after = server.GetSetup();
    EXPECT_THAT(after, testing::StartsWith("[QUEUEMAN]\nPrintSent: STATUS\n")) << "what is old stays";
    const auto paragraph = [](const std::string& text) {
        const std::size_t at = text.find("[PRINTING]");
        return text.substr(at, text.find("\n\n", at) - at);
    };
    std::string expected = paragraph(kDefaults);
    for (const auto& [from, to] : {
             std::pair("SentDevice:", "SentDevice: Laser"),
             std::pair("RecdDevice:", "RecdDevice: P-2"),
             std::pair("SentSeparate: NO", "SentSeparate: YES"),
             std::pair("F:\\BRIVANE\\SERVER\\B-PRINT\\", "D:\\SPOOL"),
             std::pair("SentPagesUp: 1", "SentPagesUp: 2"),
             std::pair("SentBorder: NO", "SentBorder: YES"),
             std::pair("RecdShadow: NO", "RecdShadow: YES"),
         })
        expected = Replaced(expected, from, to);
    EXPECT_EQ(paragraph(after), expected);
    server.PutSetup(older + "[PRINTING]\n");
    EXPECT_EQ(Loaded().Options.PrintSentDevice, "") << "the newer layout, though empty, is the one";
}

TEST(ServerOptions, TheMailGatewaysGenerationIsReadAndNeverWritten) {
    const std::tuple<const char*, const char*, bool> cases[] = {{"", "5.99", false},
                                                                {"", "6.00", true},
                                                                {"MailGatewayV6: NO\n", "6.00", false},
                                                                {"MailGatewayV6:\n", "5", true}};
    for (const auto& [line, version, isV6] : cases) {
        SetupServer server(std::string("[OPTIONS]\n") + line + "[ROUTER]\n");
        server.Put("F:\\BRIVANE\\B-MAIL\\VERSION.DAT", std::string("[VERSION]\r\nMailGateway: ") + version + "\r\n");
        Loaded loaded;
        EXPECT_EQ(loaded.Options.MailGatewayV6, isV6) << line << version;
        EXPECT_TRUE(loaded.Found.HasRouter);
        EXPECT_TRUE(SaveServerOptions(loaded.Options, loaded.Saved));
        loaded.Options.MailGatewayV6 = !isV6;
        server.Front.TakeSaid();
        EXPECT_TRUE(SaveServerOptions(loaded.Options, loaded.Saved));
        EXPECT_THAT(server.Front.Said, IsEmpty());
        EXPECT_EQ(server.GetSetup().find("MailGatewayV6") != std::string::npos, *line != '\0');
    }
}

TEST(ServerOptions, SayWhatTheyDo) {
    SetupServer server(kDefaults);
    Loaded loaded;
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("status 1: Reading current settings", "status 1: Using file " + test::kSetupFile));
    EXPECT_FALSE(loaded.Found.HasRouter);
    loaded.Options.LCR = true;
    EXPECT_TRUE(SaveServerOptions(loaded.Options, loaded.Saved));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(kWait, kUpdating, kUpdated, kReady));
    EXPECT_TRUE(Startup().SettingsChanged);
    EXPECT_EQ(server.Get(test::kSetupTemporary), "(none)");
    loaded.Options.LCR = false;
    {
        test::FaultyFiles full(server.Files, {test::FaultKind::ShortWrite, 3});
        const platform::Substitute<platform::FileSystem> use(full);
        EXPECT_FALSE(SaveServerOptions(loaded.Options, loaded.Saved));
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(kWait, kUpdating, kError, kUpdated, kReady));
        EXPECT_TRUE(SaveServerOptions(loaded.Options, loaded.Saved)) << "what failed counts as saved";
    }
    loaded.Options.LCR = true;
    Startup().SettingsChanged = false;
    {
        const ControlStream other = OpenShared(test::kSetupTemporary, "w+b");
        const std::int64_t start = server.Clock.Ticks();
        EXPECT_FALSE(SaveServerOptions(loaded.Options, loaded.Saved));
        EXPECT_EQ((server.Clock.Ticks() - start) / 1000, 10);
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Unable to open file " + test::kSetupTemporary));
    }
    const ControlStream other = OpenShared(test::kSetupFile, "r+b");
    EXPECT_FALSE(SaveServerOptions(loaded.Options, loaded.Saved));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Unable to open file " + test::kSetupFile));
    EXPECT_FALSE(Startup().SettingsChanged);
}

TEST(ServerOptions, AValueThatAPersonMayNotGiveIsRefusedWithItsReason) {
    const std::string period = " is not a part of the day such as AFTER 18:00 BEFORE 08:00 SAT SUN, or nothing";
    const std::tuple<const char*, const char*, std::string> cases[] = {
        {"QUEUEMAN/SendTries", "65535", "SendTries: \"65535\" is not a number from 0 to 65534"},
        {"queueman/mailtype", "", ""},
        {"QUEUEMAN/MailType", "SMTP", "MailType: \"SMTP\" is not nothing, MSMAIL, EXCHANGE, CCMAIL, MAPI or GATEWAY"},
        {"QUEUEMAN/Offpeak", "", ""},
        {"QUEUEMAN/Offpeak", "AFTER 18:00 BEFORE 08:00 SAT SUN", ""},
        {"QUEUEMAN/Offpeak", "AFTER 25:00", "Offpeak: \"AFTER 25:00\"" + period},
        {"QUEUEMAN/Offpeak", "AFTER 00:00 SAT", "Offpeak: \"AFTER 00:00 SAT\"" + period},
        {"PRINTING/PrintSentPagesUp", "3", "PrintSentPagesUp: \"3\" is not 1, 2 or 4"},
        {"PRINTING/PrintSentOptions", "message status", ""},
        {"PRINTING/PrintSentOptions", "DELETE", "PrintSentOptions: \"DELETE\" is not any of STATUS and MESSAGE"},
        {"PRINTING/PrintRecdOptions", "ALL", "PrintRecdOptions: \"ALL\" is not any of STATUS, MESSAGE and DELETE"},
        {"BSUBMIT/User", "NINECHARS", "User: \"NINECHARS\" is not a text of at most 8 characters"},
    };
    for (const auto& [path, text, fault] : cases) EXPECT_EQ(Key(path).Field.FaultOf(text).value_or(""), fault);
    EXPECT_EQ(FindOptionKey("OPTIONS", "SendTries"), nullptr);
    EXPECT_EQ(FindOptionKey("[OPTIONS]", "LCR:"), nullptr);
}

} // namespace
} // namespace bv
