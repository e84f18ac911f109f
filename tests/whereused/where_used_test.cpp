#include "whereused/where_used.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>

#include "lcr/edit_lock.h"
#include "lcr/lcr_messages.h"
#include "mailgw/mail_actions.h"
#include "support/memory_server.h"
#include "support/texts.h"
#include "voice/messages.h"

namespace bv {
namespace {

using test::MemoryServer;
using testing::ElementsAre;

const std::string kArea = "F:\\BRIVANE\\B-DB\\";

TEST(WhereUsed, NamesEveryPlaceAndAsks) {
    MemoryServer server;
    server.Load();
    EXPECT_THAT(FindUses(NamedThing::User, {"ann"}), testing::Optional(testing::IsEmpty()));
    EXPECT_TRUE(AgreeToDeletion(NamedThing::User, {"ann"}));

    server.Put(kArea + "LCRRules.ini", "[RULE]\nDescription: One\nUser: Ann\n\n[RULE]\nUser: ANN\nUser: BEN\n");
    server.Put(kArea + "LINK.INI", "[LINK]\nRemoteServerID: LON\nLinkType: WAN\nRemoteServerAddress: x\n"
                                   "BrivaneAccountName: ANN\n");
    server.Put(kArea + "ROUTING.INI", "[BRIVANE]\nType: RoutingInit\nRevision: A\n[SENDERID]\n@44: \"+44\"\nANN: BEN\n"
                                      "[FORWARD]\nBEN: LAN-ANY \"ANN\"\nANNE: LAN-ANY \"BEN\"\n");
    server.Put(kArea + "MAILLIST.INI", "[USER]\nBrivname: ANN\nEmailname: Ann A\n");
    server.Put(kArea + "SETUP.INI", "[MODEM-1]\nRecdUser: ann\nUserName: ANN\n[HPSCAN]\nUser: ANNE\n");
    server.Front.TakeSaid();
    EXPECT_FALSE(AgreeToDeletion(NamedThing::User, {"ANN"}));
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("ask warning: ANN is used in:\nLCRRULES.INI: rule 1 \"One\", which then takes more faxes\n"
                            "LCRRULES.INI: rule 2 \"\"\nLINK.INI: link LON\nROUTING.INI: sender +44 for ANN\n"
                            "ROUTING.INI: forwarding from BEN to ANN\nMAILLIST.INI: mail user Ann A\n"
                            "SETUP.INI: [MODEM-1] RecdUser: ann\n\nGo on?"));

    server.Files.Delete(kArea + "LINK.INI");
    server.Files.MakeDirectory(kArea + "LINK.INI");
    server.Front.Answer = true;
    EXPECT_FALSE(AgreeToDeletion(NamedThing::User, {"ANN"}));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: File error: couldn't open " + kArea + "Link.ini"));
}

const std::string kAnn =
    "[USER]\r\nName: ANN\r\nFullname: \r\nGroup: @S\r\nUsername: \r\nNetware: \r\nLanManager: \r\nMailInbox: YES\r\n"
    "MailName: Ann A\r\n\r\n";
const std::string kGroupS = "[GROUP]\r\nName: @S\r\n\r\n";

// A server on which every file names ANN, whose own mail user is Ann A, and the group @S.
struct Scene {
    MemoryServer Server;

    Scene() {
        Server.Load();
        for (const auto& [name, text] : kFiles) Server.Put(kArea + name, text);
        Server.Front.TakeSaid();
    }
    std::string Get(const std::string& name) { return Server.Get(kArea + name); }

    inline static const std::map<std::string, std::string> kFiles = {
        {"USERLIST.INI", kAnn + "[USER]\r\nName: BEN\r\nGroup: @T\r\n\r\n[USER]\r\nName: CARL\r\n\r\n" + kGroupS +
                             "[GROUP]\r\nName: @T\r\n"},
        {"LCRRULES.INI", "[BRIVANE]\r\nType: LCRRules\r\nRevision: A\r\n\r\n[RULE]\r\nDescription: One\r\nUser: "
                         "Ann\r\n\r\n[RULE]\r\nDescription: Two\r\nUser: ANN\r\n"
                         "User: BEN\r\n\r\n"},
        {"LINK.INI",
         "[BRIVANE]\r\nType: LinkDatabase\r\nRevision: A\r\n\r\n[LINK]\r\nRemoteServerID: LON, \"LON\"\r\n"
         "LinkType: WAN\r\nRemoteServerAddress: x\r\nBrivaneAccountName: ANN\r\nLinkPassword: \r\n"
         "MaxOutboundPriority: URGENT\r\nMaxInboundPriority: URGENT\r\nRejectHigherPriorityMsg: NO\r\n\r\n"},
        {"ROUTING.INI",
         "[BRIVANE]\r\nType: RoutingInit\r\nRevision: A\r\n[SENDERID]\r\n@44: \"+44\"\r\n; hers\r\nANN: BEN\r\n"
         "CARL: ann\r\n\\@S: BEN\r\n[SUBADDR]\r\n7:  ANN  x\r\n[FORWARD]\r\nBEN: \"q\" LAN-ANY \"ANN\" DELETE\r\n"
         "Ann: LAN-ANY \"CARL\"\r\nodd\r\n"},
        {"MAILLIST.INI",
         "[USER]\r\nBrivname: ANN\r\nEmailname: Ann A\r\nX: 1\r\n\r\n[USER]\r\nBrivname: P\r\nEmailname: Q\r\n"
         "EmailBrivname: ann\r\nProfile: YES\r\n\r\n"},
        {"SETUP.INI", "[MODEM-1]\r\n  odd\r\nRecdUser:   ann\r\n[BSUBMIT]\r\nUser: ANN\r\n[OTHER]\r\nUser: ANN"},
    };
};

struct Replacement {
    std::string File;
    std::vector<std::pair<std::string, std::string>> Changes;
};
struct ChangeCase {
    const char* What;
    NamedThing Kind;
    Names Which;
    UseChange Change;
    std::vector<Replacement> After; // of the scene's files; the others are as before
};

using enum UseChange::Kind;
constexpr auto kUser = NamedThing::User;
constexpr auto kGroup = NamedThing::UserGroup;
const std::pair<std::string, std::string> kRuleGoes = {"[RULE]\r\nDescription: One\r\nUser: Ann\r\n\r\n", ""};
const std::pair<std::string, std::string> kRuleWidens = {"One\r\nUser: Ann\r\n", "One\r\n"};
const std::vector<Replacement> kTakenOut = {
    {"LINK.INI", {{"BrivaneAccountName: ANN\r\n", ""}}},
    {"ROUTING.INI",
     {{"ANN: BEN\r\n", ""},
      {"CARL: ann\r\n", ""},
      {"7:  ANN  x\r\n", ""},
      {"BEN: \"q\" LAN-ANY \"ANN\" DELETE\r\n", ""},
      {"Ann: LAN-ANY \"CARL\"\r\n", ""}}},
    {"MAILLIST.INI", {{"[USER]\r\nBrivname: P\r\nEmailname: Q\r\nEmailBrivname: ann\r\nProfile: YES\r\n\r\n", ""}}},
    {"SETUP.INI", {{"RecdUser:   ann", "RecdUser:"}, {"[BSUBMIT]\r\nUser: ANN", "[BSUBMIT]\r\nUser:"}}},
};

std::vector<Replacement> With(std::vector<Replacement> all, const Replacement& one) {
    all.push_back(one);
    return all;
}

const ChangeCase kChanges[] = {
    {"left", kUser, {"ANN"}, {}, {}},
    {"taken out", kUser, {"ann"}, {TakeOut}, With(kTakenOut, {"LCRRULES.INI", {kRuleWidens, {"User: ANN\r\n", ""}}})},
    {"and rules go",
     kUser,
     {"ANN"},
     {TakeOut, {}, true},
     With(kTakenOut, {"LCRRULES.INI", {kRuleGoes, {"User: ANN\r\n", ""}}})},
    // CARL has a rule of that sender already, and no faxes are forwarded from CARL to CARL
    {"replaced",
     kUser,
     {"ANN"},
     {Replace, "carl"},
     {{"LCRRULES.INI", {{"User: Ann", "User: CARL"}, {"User: ANN", "User: CARL"}}},
      {"LINK.INI", {{"AccountName: ANN", "AccountName: CARL"}}},
      {"ROUTING.INI",
       {{"ANN: BEN\r\n", ""},
        {"CARL: ann", "CARL: CARL"},
        {"7:  ANN  x", "7:  CARL  x"},
        {"\"ANN\" DELETE", "\"CARL\" DELETE"},
        {"Ann: LAN-ANY \"CARL\"\r\n", ""}}},
      {"MAILLIST.INI", {{"Brivname: ANN", "Brivname: CARL"}, {"EmailBrivname: ann", "EmailBrivname: CARL"}}},
      {"SETUP.INI", {{"RecdUser:   ann", "RecdUser: CARL"}, {"[BSUBMIT]\r\nUser: ANN", "[BSUBMIT]\r\nUser: CARL"}}}}},
    {"a group",
     kGroup,
     {"@S"},
     {Replace, "@t"},
     {{"ROUTING.INI", {{"\\@S: BEN", "\\@T: BEN"}}}, {"USERLIST.INI", {{"Group: @S", "Group: @T"}}}}},
    {"both of a rule",
     kUser,
     {"ANN", "BEN"},
     {TakeOut, {}, true},
     {{"LCRRULES.INI", {{kRuleGoes.first + "[RULE]\r\nDescription: Two\r\nUser: ANN\r\nUser: BEN\r\n\r\n", ""}}},
      kTakenOut[0],
      {"ROUTING.INI",
       {{"ANN: BEN\r\nCARL: ann\r\n\\@S: BEN\r\n", ""},
        {"7:  ANN  x\r\n", ""},
        {"BEN: \"q\" LAN-ANY \"ANN\" DELETE\r\nAnn: LAN-ANY \"CARL\"\r\n", ""}}},
      kTakenOut[2],
      kTakenOut[3]}},
};

TEST(WhereUsed, ChangesThePlacesAndNothingElse) {
    for (const ChangeCase& one : kChanges) {
        SCOPED_TRACE(one.What);
        Scene scene;
        auto expected = Scene::kFiles;
        for (const auto& [file, changes] : one.After)
            for (const auto& [from, to] : changes) expected[file] = test::Replaced(expected[file], from, to);
        EXPECT_TRUE(ChangeUses(one.Kind, one.Which, one.Change));
        for (const auto& [file, text] : expected) EXPECT_EQ(scene.Get(file), text) << file;
    }
}

TEST(WhereUsed, ChecksEverythingFirstAndSaysWhatStaysChanged) {
    const UseChange kTakeOut{TakeOut};
    const struct {
        UseChange Change;
        std::function<void(Scene&)> Spoil;
        std::vector<std::string> Said; // the last of it
        bool IsRulesFileChanged = false;
    } cases[] = {
        {{Replace, "ann"}, {}, {"error: Replace by: \"ann\" - that one is being deleted."}},
        {{Replace, "@S"}, {}, {"error: Brivane user @S not found"}},
        {kTakeOut,
         [](Scene& scene) { scene.Server.Put(kArea + "LCRRULES.NEW", "[BRIVANE]\nType: LCRRules\nRevision: A\n"); },
         {FillMessage(kUnsavedRuleChanges, kArea + "LCRRules.new").insert(0, "error: ")}},
        {kTakeOut,
         [](Scene& scene) {
             scene.Server.Files.Delete(LcrLockPath());
             scene.Server.Files.MakeDirectory(LcrLockPath());
         },
         {"error: LCR settings are being edited by another user.  Please try again later"}},
        {kTakeOut,
         [](Scene& scene) { scene.Server.Files.MakeDirectory(kArea + "ROUTING.TMP"); },
         {"status 1: Places changed in file LCRRULES.INI: 2", "status 1: Places changed in file LINK.INI: 1",
          "error: The references in file ROUTING.INI cannot be changed. ANN is not deleted."},
         true},
    };
    for (const auto& [change, spoil, said, isChanged] : cases) {
        SCOPED_TRACE(said.back());
        Scene scene;
        if (spoil) spoil(scene);
        scene.Server.Front.TakeSaid();
        EXPECT_FALSE(DeleteWithUses(kUser, {"ANN"}, change, [](std::size_t) { return true; }));
        const auto all = scene.Server.Front.TakeSaid();
        EXPECT_THAT(all, testing::IsSupersetOf(said));
        EXPECT_EQ(scene.Get("LCRRULES.INI") != Scene::kFiles.at("LCRRULES.INI"), isChanged);
        for (const char* file : {"USERLIST.INI", "SETUP.INI", "ROUTING.INI", "MAILLIST.INI"})
            EXPECT_EQ(scene.Get(file), Scene::kFiles.at(file));
    }
}

TEST(WhereUsed, DeletesManyInOneRewrite) {
    Scene scene;
    FollowUserList();
    scene.Server.Front.Answer = true;
    EXPECT_TRUE(DeleteWithUses(kUser, {"ann", "CARL"}, {Replace, "BEN"}, [](std::size_t) { return true; }));
    EXPECT_EQ(scene.Get("USERLIST.INI"),
              "[USER]\r\nName: BEN\r\nGroup: @T\r\n\r\n" + kGroupS + "[GROUP]\r\nName: @T\r\n");
    EXPECT_THAT(scene.Get("MAILLIST.INI"), testing::HasSubstr("Brivname: BEN\r\nEmailname: Ann A\r\nX: 1\r\n"));
    EXPECT_THAT(scene.Server.Front.TakeSaid(), testing::Contains("status 1: Deleted 2 users"));

    const std::string before = scene.Get("USERLIST.INI");
    const std::vector<std::string> gone[] = {{"BEN", "NOBODY"}, {"BEN", "(default)"}};
    for (const auto& names : gone) EXPECT_FALSE(DeleteUsers(names, RecordKind::User, [](std::size_t) { return true; }));
    EXPECT_EQ(scene.Get("USERLIST.INI"), before);
    SetMailListHook({});
}

TEST(WhereUsed, FollowsPrintersThroughUsersGroupsAndOptions) {
    const std::string user = "[USER]\r\nName: ANN\r\nPrintSentDevice: P-1\r\nPrintRecdDevice2: p-1\r\n\r\n";
    const std::string group = "[GROUP]\r\nName: @S\r\nPrintRecdDevice: P-1\r\n";
    const std::string setup =
        "[DEVICES]\r\nDevice: P-1 \"One\"\r\nDevice: P-2 \"Two\"\r\n[PRINTERS]\r\nDevice: P-1 \"One\"\r\n"
        "Device: P-2 \"Two\"\r\n[SCANNERS]\r\n[PRINTING]\r\nPrintRecdDevice: P-1\r\nPrintSentBin: P-1\r\n"
        "[QUEUEMAN]\r\nPrintSentDevice: P-1\r\n[MODEM]\r\nPrintSentDevice: P-1\r\n";
    const struct {
        UseChange Change;
        std::string By;
    } cases[] = {{{TakeOut}, ""}, {{Replace, "p-2"}, "P-2"}};
    for (const auto& [change, by] : cases) {
        MemoryServer server;
        server.Load();
        server.Put(kArea + "USERLIST.INI", user + group);
        server.Put(kArea + "SETUP.INI", setup);
        const auto uses = FindUses(NamedThing::Printer, {"P-1"});
        ASSERT_TRUE(uses);
        EXPECT_EQ(uses->size(), 5U);
        EXPECT_EQ(uses->front().Where, "user ANN, PrintSentDevice: P-1");
        EXPECT_FALSE(DeleteWithUses(NamedThing::Printer, {"P-1", "P-3"}, change, {})) << "as one is not there";
        EXPECT_EQ(server.Get(kArea + "USERLIST.INI"), user + group);
        EXPECT_FALSE(DeleteWithUses(NamedThing::Printer, {"P-1"}, {Replace, "P-9"}, {}));
        EXPECT_TRUE(DeleteWithUses(NamedThing::Printer, {"P-1"}, change, {}));
        const std::string users = server.Get(kArea + "USERLIST.INI");
        EXPECT_EQ(users.find("P-1"), users.npos);
        EXPECT_EQ(users.find("PrintSentDevice: P-2") != users.npos, !by.empty());
        std::string after = test::Replaced(setup, "Device: P-1 \"One\"\r\n", "");
        after.replace(after.find("RecdDevice: P-1"), 15, by.empty() ? "RecdDevice:" : "RecdDevice: P-2");
        after.replace(after.find("SentDevice: P-1"), 15, by.empty() ? "SentDevice:" : "SentDevice: P-2");
        EXPECT_EQ(server.Get(kArea + "SETUP.INI"), after);
    }
}

} // namespace
} // namespace bv
