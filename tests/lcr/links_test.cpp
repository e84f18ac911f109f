// Links and the router's settings: their files as they are read and written, the rules, and what faults leave.
#include "lcr/links.h"

#include <functional>

#include <gmock/gmock.h>

#include "devices/setup_text.h"
#include "lcr/router_settings.h"
#include "shell/startup.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kBase = "F:\\BRIVANE\\B-DB\\";
const std::string kHeader = "[BRIVANE]\nType: LinkDatabase\nRevision: A\n\n";
const std::string kLondon =
    "[LINK]\nRemoteServerID: LONDON, \"The City\"\nLinkType: WAN\n"
    "RemoteServerAddress: \\\\city\\lcrin\nBrivaneAccountName: ROUTER\nLinkPassword: s e=c:ret\n"
    "ReceiveEnabled: ON\nSendEnabled: OFF\nLinkDelay: 02: 5\nLocalWatchdogFreq: 00:30\n"
    "MaxOutboundPriority: NORMAL\nMaxInboundPriority: BACKGROUND\n"
    "RejectHigherPriorityMsg: YES\n";
const std::string kStatus = "; by hand\nRemoteLinkRunNumber: 3.7\nConnectionStatus: OFF\nUnknown: x\n";
const std::string kUnreadable = "[LINK]\nRemoteServerID: BAD\nLinkType: PIGEON\nRemoteServerAddress: roof\n\n";
const std::string kShort =
    "[LINK]\nremoteserverid: LON\nlinkdelay:   1:00 \nLINKTYPE: email\nRemoteServerAddress: a@b\n"
    "MaxInboundPriority: none\nSendEnabled: maybe\nLocalLinkStatus: UP\n\nlost\n";
const std::string kFile = kHeader + kUnreadable + kLondon + kStatus + "\n" + kShort;

struct LinkServer : MemoryServer {
    LinkServer() {
        Load();
        PutFile("Link.ini", kFile);
    }
    void PutFile(const std::string& name, const std::string& text) { Put(kBase + name, Replaced(text, "\n", "\r\n")); }
    std::string GetFile(const std::string& name) { return Replaced(Get(kBase + name), "\r\n", "\n"); }
};

TEST(Links, AreReadAndWrittenWithWhatTheServerKeepsInThem) {
    LinkServer server;
    LinkTable links;
    TextStamp stamp;
    ASSERT_TRUE(LoadLinks(links, stamp));
    ASSERT_EQ(links.size(), 2U);
    LinkRecord london = NewLink("LONDON");
    london.IsNew = london.WriteStatus = false;
    london.Place = 0;
    london.Description = "The City";
    london.Address = "\\\\city\\lcrin";
    london.AccountName = "ROUTER";
    london.Password = "s e=c:ret";
    london.SendEnabled = false;
    london.Delay = {5, 2};
    london.WatchdogFrequency = {30, 0};
    london.MaxOutboundPriority = kNormalPriority;
    london.MaxInboundPriority = kBackgroundPriority;
    london.RejectsHigherPriority = true;
    EXPECT_EQ(links[0], london);
    EXPECT_EQ(links[1].Description, "LON");
    EXPECT_EQ(links[1].Type, LinkType::Email);
    EXPECT_EQ(links[1].Delay, (HourMinute{0, 1}));
    EXPECT_EQ(links[1].SendEnabled, std::nullopt);
    EXPECT_EQ(links[1].MaxOutboundPriority, kUrgentPriority);
    EXPECT_EQ(links[1].MaxInboundPriority, 0);
    EXPECT_EQ(links[1].RejectsHigherPriority, false);

    links.push_back(NewLink("PARIS"));
    Startup().SettingsChanged = false;
    EXPECT_FALSE(SaveLinks(links, {}));
    EXPECT_EQ(server.GetFile("Link.ini"), kFile);
    EXPECT_FALSE(Startup().SettingsChanged);
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(HasSubstr("was changed by somebody else")));
    const auto noted = [](const std::string& text) { return Replaced(text, "Number: 3.7", "Number: 3.8"); };
    server.PutFile("Link.ini", noted(kFile)); // what the server notes is nobody's change
    EXPECT_TRUE(SaveLinks(links, stamp));
    EXPECT_THAT(server.Front.TakeSaid(), IsEmpty());
    EXPECT_TRUE(Startup().SettingsChanged);
    EXPECT_EQ(server.GetFile("Link.ini"),
              kHeader + kLondon + noted(kStatus) + "\n" +
                  "[LINK]\nRemoteServerID: LON, \"LON\"\nLinkType: EMAIL\nRemoteServerAddress: a@b\nLinkPassword: \n"
                  "LinkDelay: 01:  \nMaxOutboundPriority: URGENT\nRejectHigherPriorityMsg: NO\nLocalLinkStatus: UP\n\n"
                  "[LINK]\nRemoteServerID: PARIS, \"PARIS\"\nLinkType: WAN\nRemoteServerAddress: \nLinkPassword: \n"
                  "ReceiveEnabled: ON\nSendEnabled: ON\nMaxOutboundPriority: URGENT\nMaxInboundPriority: URGENT\n"
                  "RemoteLinkRunNumber: 0.0\nLocalLinkRunNumber: 0.0\nLocalLinkStatus: LINKSHUTDOWN\n"
                  "ConnectionStatus: ON\n\n" +
                  kUnreadable);
    EXPECT_EQ(server.GetFile("Link.new"), "(none)");
}

TEST(Links, HaveTheStateThatTheServerNotes) {
    LinkServer server;
    NotedLinks noted;
    EXPECT_TRUE(ReadLinkNotes(noted));
    ASSERT_EQ(noted.Notes.size(), 2U);
    EXPECT_EQ(noted.Unreadable, 1U);
    EXPECT_EQ(noted.Notes[0], (LinkNotes{"3.7", "", "", "", "OFF"}));
    EXPECT_EQ(DescribeState(noted.Notes[0]), "connection OFF");
    EXPECT_EQ(DescribeState({"", "", "DOWN", "UP", "ON"}), "UP");
    EXPECT_EQ(DescribeState({}), "-");
}

TEST(Links, KeepOrGiveUpTheirStatusAsAsked) {
    LinkRecord link;
    link.Identifier = link.Description = "A";
    link.RejectsHigherPriority = false;
    const std::string old = "[LINK]\r\nLinkType: WAN\r\nRemoteLinkRunNumber: 1.1\r\nConnectionStatus: OFF\r\nX: y";
    const auto tail = [&] {
        const std::string text = LinkParagraph(link, old);
        return text.substr(text.find("RejectHigher"));
    };
    const std::string reject = "RejectHigherPriorityMsg: NO\r\n";
    EXPECT_EQ(tail(), reject + "RemoteLinkRunNumber: 1.1\r\nConnectionStatus: OFF\r\nX: y\r\n\r\n");
    link.ConnectionIsOn = true;
    EXPECT_EQ(tail(), reject + "RemoteLinkRunNumber: 1.1\r\nX: y\r\nConnectionStatus: ON\r\n\r\n");
    link.ResetStatus = true;
    EXPECT_EQ(tail(), reject + "X: y\r\nConnectionStatus: ON\r\n\r\n");
}

TEST(Links, OfOneNameKeepEachItsOwnLines) {
    LinkServer server;
    const std::string file = kHeader + kLondon + "First: 1\n\n" + Replaced(kLondon, "LONDON", "\"NEW YORK\"") + "\n" +
                             kLondon + "Second: 2\n\n";
    server.PutFile("Link.ini", file);
    LinkTable links;
    TextStamp stamp;
    EXPECT_TRUE(LoadLinks(links, stamp) && SaveLinks(links, stamp));
    EXPECT_EQ(server.GetFile("Link.ini"), file);
    links.erase(links.begin(), links.begin() + 2);
    EXPECT_TRUE(SaveLinks(links, stamp));
    EXPECT_EQ(server.GetFile("Link.ini"), kHeader + kLondon + "Second: 2\n\n");
}

TEST(Links, WithoutAFileBeginWithAnEmptyOne) {
    LinkServer server;
    server.Files.Delete(kBase + "Link.ini");
    LinkTable links;
    EXPECT_TRUE(ReadLinks(links));
    TextStamp stamp;
    EXPECT_FALSE(SaveLinks(links, stamp));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: File error: couldn't open " + kBase + "Link.ini"));
    EXPECT_TRUE(LoadLinks(links, stamp));
    EXPECT_EQ(server.GetFile("Link.ini"), kHeader);
    EXPECT_THAT(links, IsEmpty());

    server.Files.Delete(kBase + "Link.ini");
    server.PutFile("Link.new", kFile);
    for (const bool answer : {false, true}) {
        server.Front.Answer = answer;
        EXPECT_EQ(LoadLinks(links, stamp), answer);
        EXPECT_EQ(server.GetFile("Link.ini"), answer ? kFile : "(none)");
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(HasSubstr("Put it in place now?")));
    }
    EXPECT_EQ(links.size(), 2U);
}

const std::string kInterval = "All intervals must be between 00:01 and 23:59";

TEST(Links, BreakTheFirstRuleThatTheyBreak) {
    RouterSettings router;
    router.WanEnabled = true;
    const LinkTable others = {NewLink("Other")};
    LinkRecord good = NewLink("A");
    good.Address = "x";
    good.AccountName = "U";
    good.RejectsHigherPriority = false;
    EXPECT_EQ(FaultOfLink(good, others, router), std::nullopt);
    struct Case {
        std::function<void(LinkRecord&)> Break;
        std::string Key;
        std::string Message;
    };
    // Each breaks its own rule beside all that come before.
    const Case cases[] = {
        {[&](LinkRecord&) { router.WanEnabled = false; }, "LinkType",
         "To use WAN links, they must first be enabled under 'General Settings'"},
        {[](LinkRecord& link) { link.Type = LinkType::FastEmail; }, "LinkType",
         "To use Email links, they must first be enabled under 'General Settings'"},
        {[](LinkRecord& link) { link.RejectsHigherPriority.reset(); }, "RejectHigherPriorityMsg",
         "You must select the action to be taken for high priority faxes received from remote servers"},
        {[](LinkRecord& link) {
             link.WatchdogFrequency = {0, 0};
         },
         "LocalWatchdogFreq", kInterval},
        {[](LinkRecord& link) {
             link.Delay = {60, 23};
         },
         "LinkDelay", "Link Delay must be between 00:00 and 23:59"},
        {[](LinkRecord& link) { link.AccountName.clear(); }, "BrivaneAccountName",
         "You must specify a Brivane account for sending faxes received from remote servers"},
        {[](LinkRecord& link) { link.Address.clear(); }, "RemoteServerAddress",
         "You must specify an address for the remote server"},
        {[](LinkRecord& link) { link.Type = LinkType::SharedDirectory; }, "RemoteServerAddress",
         "You must enter the remote server's address"},
        {[](LinkRecord& link) { link.Identifier = "oTHER"; }, "RemoteServerID",
         "This ID is in use already.  Please enter a unique ID"},
        {[](LinkRecord& link) { link.Identifier.clear(); }, "RemoteServerID",
         "You must enter the Remote server's unique ID"},
    };
    for (const Case& one : cases) {
        one.Break(good);
        EXPECT_EQ(FaultOfLink(good, others, router), (SettingFault{one.Key, one.Message}));
    }
    EXPECT_TRUE((HourMinute{59, 23}.IsInterval()));
    EXPECT_TRUE((HourMinute{0, 0}.IsTimeOfDay()));
    EXPECT_FALSE((HourMinute{0, 24}.IsTimeOfDay()));
}

const std::string kRouter =
    "[Router]\nEmailDeleteInvalidMsg: YES\nLocalServerID: \"RIGHT HERE\", \"This one\"\nKept: 1\n"
    "EmailType: something\nEmailLoginName: \"Fax Mail\"\n; kept\n"
    "WANInboxDirectory: \\\\here\\LCRIN\nWANInboxPollFreq: 0:5\n\n";

TEST(RouterSettings, AreReadAndWrittenAmongTheOtherLines) {
    SetupServer server("[OPTIONS]\nLCR: YES\n\n" + kRouter + "[NEXT]\nLocalServerID: no");
    RouterSettings settings;
    ASSERT_EQ(ReadRouterSettings(settings), RouterReading::Done);
    RouterSettings expected;
    expected.LocalServerId = "\"RIGHT HERE\"";
    expected.LocalServerDescription = "This one";
    expected.EmailEnabled = expected.WanEnabled = true;
    expected.Email = EmailType::OtherMapi;
    expected.EmailLoginName = "Fax Mail";
    expected.DeleteInvalidMessages = true;
    expected.WanInboxDirectory = "\\\\here\\LCRIN";
    expected.WanPollInterval = {5, 0};
    EXPECT_EQ(settings, expected);

    settings.Email = EmailType::LotusNotes;
    settings.NotesIdFile = "C:\\my.id";
    settings.EmailLoginParams = "p w";
    settings.EmailPollInterval = {7, 12};
    EXPECT_TRUE(WriteRouterSettings(settings));
    EXPECT_EQ(server.GetSetup(), "[OPTIONS]\nLCR: YES\n\n[ROUTER]\nLocalServerID: \"RIGHT HERE\", \"This one\"\n"
                                 "EmailType: LOTUS_NOTES_API\nEmailLoginName: \"Fax Mail\", \"C:\\my.id\"\n"
                                 "EmailLoginParams: p w\nEmailInboxPollFreq: 12:07\n"
                                 "WanInboxDirectory: \\\\here\\LCRIN\nWanInboxPollFreq: 00:05\n"
                                 "Kept: 1\n; kept\n\n[NEXT]\nLocalServerID: no");
    RouterSettings again;
    ReadRouterSettings(again);
    settings.DeleteInvalidMessages = false;
    EXPECT_EQ(again, settings);
}

TEST(RouterSettings, ComeAtTheEndWhenTheyAreNew) {
    SetupServer server("[OPTIONS]\nLCR: YES");
    RouterSettings settings;
    EXPECT_EQ(ReadRouterSettings(settings), RouterReading::NotConfigured);
    settings.LocalServerId = "X";
    Startup().SettingsChanged = false;
    EXPECT_TRUE(WriteRouterSettings(settings));
    EXPECT_TRUE(Startup().SettingsChanged);
    EXPECT_EQ(server.GetSetup(), "[OPTIONS]\nLCR: YES\n\n[ROUTER]\nLocalServerID: X, \"\"\n");
}

TEST(RouterSettings, BelowAHeaderWithMoreTextAreReadAndLeftAlone) {
    SetupServer server("[router] old\nLocalServerID: OLD\n");
    RouterSettings settings;
    EXPECT_EQ(ReadRouterSettings(settings), RouterReading::Done);
    EXPECT_EQ(settings.LocalServerId, "OLD");
    settings.LocalServerId = "NEW";
    EXPECT_TRUE(WriteRouterSettings(settings));
    EXPECT_EQ(server.GetSetup(), "[router] old\nLocalServerID: OLD\n\n[ROUTER]\nLocalServerID: NEW, \"\"\n");
    ReadRouterSettings(settings);
    EXPECT_EQ(settings.LocalServerId, "NEW");
}

TEST(RouterSettings, BreakTheFirstRuleThatTheyBreak) {
    RouterSettings settings;
    const auto fault = [&] { return FaultOfRouter(settings).value_or(SettingFault{}); };
    EXPECT_EQ(fault(), (SettingFault{"EmailEnabled", "You must enable Email and / or WAN links"}));
    settings.WanEnabled = true;
    settings.WanPollInterval = {1, 0};
    EXPECT_EQ(fault(), (SettingFault{"WanInboxDirectory", "You must enter a WAN inbox folder"}));
    settings.EmailEnabled = true;
    settings.EmailPollInterval = {1, 0};
    EXPECT_EQ(fault(), (SettingFault{"EmailLoginName", "You must enter an Email account name"}));
    settings.WanPollInterval = {0, 0};
    EXPECT_EQ(fault(), (SettingFault{"WanInboxPollFreq", kInterval}));
    settings.EmailPollInterval = {0, 24};
    EXPECT_EQ(fault(), (SettingFault{"EmailInboxPollFreq", kInterval}));
}

TEST(WanInbox, IsThereByItsNetworkNameAndUsable) {
    SetupServer server("");
    server.Put("\\\\srv\\share\\in\\x", "");
    const std::pair<const char*, const char*> cases[] = {
        {"\\\\srv\\share\\in\\", "status 1: Tested WAN inbox successfully"},
        {"\\\\srv\\share\\out", "error: Can't find specified directory"},
        {"\\\\srv\\share\\in\\x", "error: This path specifies a file not a directory"},
        {"in", "error: Unable to resolve network drive mapping to Universal (UNC) address (e.g. "
               "\\\\server\\folder\\LCRIN)"},
    };
    for (const auto& [directory, said] : cases) {
        EXPECT_EQ(TestWanInbox(directory), said[0] == 's');
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(said));
    }
    for (int call = 1; call <= 2; ++call) {
        const CallKind kind = call == 1 ? CallKind::Changes : CallKind::Looks;
        FaultyFiles faulty(server.Files, {FaultKind::FailOnce, call, kind});
        const platform::Substitute<platform::FileSystem> use(faulty);
        EXPECT_FALSE(TestWanInbox("\\\\srv\\share\\in"));
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Unable to read or write in directory"));
    }
    EXPECT_THAT(server.Files.List("\\\\srv\\share\\in", "*"), ElementsAre("x"));
}

} // namespace
} // namespace bv::test
