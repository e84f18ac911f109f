// Editing the links together with the rules that name them.
#include "lcr/link_session.h"
#include "lcr/router_actions.h"

#include <gmock/gmock.h>

#include "platform/ascii.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/texts.h"
#include "voice/format.h"

namespace bv::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using Change = UseChange::Kind;

const std::string kBase = "F:\\BRIVANE\\B-DB\\";
const std::string kLinks = "[BRIVANE]\nType: LCRLinks\nRevision: A\n\n[LINK]\nRemoteServerID: A, \"A\"\nLinkType: WAN\n"
                           "RemoteServerAddress: x\nBrivaneAccountName: U\nRejectHigherPriorityMsg: NO\n\n[LINK]\n"
                           "RemoteServerID: B, \"B\"\nLinkType: WAN\nRemoteServerAddress: y\nBrivaneAccountName: U\n"
                           "RejectHigherPriorityMsg: NO\n\n";
const std::string kRules =
    "[BRIVANE]\nType: LCRRules\nRevision: A\n\n[RULE]\nDescription: One\nServer: A\nServer: B\n\n"
    "[RULE]\nDescription: Two\nServer: a\n\n[RULE]\nDescription: Here\nServer: A\nServer: *\n\n";

struct LinkServer : MemoryServer {
    LinkServer() {
        Load();
        Front.Answer = true;
        PutFile("SETUP.INI", "[ROUTER]\nLocalServerID: HERE\nWanInboxDirectory: D:\\IN\nWanInboxPollFreq: 00:05\n");
        PutFile("USERLIST.INI", "[USER]\nName: U\n");
        Restore();
    }
    void Restore() {
        PutFile("LINK.INI", kLinks);
        PutFile("LCRRULES.INI", kRules);
        Files.Delete(kBase + "LCRRULES.NEW");
    }
    void PutFile(const std::string& name, const std::string& text) { Put(kBase + name, Replaced(text, "\n", "\r\n")); }
    std::string GetFile(const std::string& name) { return Replaced(Get(kBase + name), "\r\n", "\n"); }
};

// Answers with the change, and notes the places.
AskAboutUses Answering(std::optional<UseChange> change, std::vector<std::string>& asked) {
    return [change, &asked](const std::vector<Use>& uses) {
        for (const Use& use : uses) asked.push_back(use.Where + (use.Widens ? "!" : "") + (use.CanChange ? "" : "-"));
        return change;
    };
}

bool Rename(LinkSession& session, const AskAboutUses& ask, const std::string& name) {
    LinkRecord link = session.Edit().Links[0];
    link.Identifier = name;
    return session.Put(0, link, ask);
}

struct LinkCase {
    const char* Name;
    std::function<bool(LinkSession&, const AskAboutUses&)> Do;
    std::optional<UseChange> Answer;
    std::vector<std::pair<std::string, std::string>> InRules;
    const char* Identifiers; // of the links that are saved
};

const auto kRename = [](LinkSession& session, const AskAboutUses& ask) { return Rename(session, ask, "NEW"); };
const auto kDelete = [](LinkSession& session, const AskAboutUses& ask) { return session.Remove(0, ask); };

const LinkCase kCases[] = {
    {"the rules follow",
     kRename,
     UseChange{Change::Replace, "NEW"},
     {{"Server: A\n", "Server: NEW\n"}, {"Server: a\n", "Server: NEW\n"}},
     "NEW B"},
    {"through several names",
     [](LinkSession& session, const AskAboutUses& ask) {
         return Rename(session, ask, "X") && Rename(session, ask, "Y");
     },
     UseChange{Change::Replace, "of the last question"},
     {{"Server: A\n", "Server: Y\n"}, {"Server: a\n", "Server: Y\n"}},
     "Y B"},
    {"or stay", kRename, UseChange{}, {}, "NEW B"},
    {"or nothing happens", kRename, std::nullopt, {}, "A B"},
    {"other letters are no other name",
     [](LinkSession& session, const AskAboutUses& ask) { return Rename(session, ask, "a") && session.Remove(0, ask); },
     UseChange{Change::TakeOut},
     {{"Server: A\n", ""}, {"Server: a\n", ""}},
     "B"},
    {"taken out", kDelete, UseChange{Change::TakeOut}, {{"Server: A\n", ""}, {"Server: a\n", ""}}, "B"},
    {"or the rule goes that nobody would send by",
     kDelete,
     UseChange{Change::TakeOut, "", true},
     {{"[RULE]\nDescription: Two\nServer: a\n\n", ""}, {"Server: A\n", ""}},
     "B"},
    {"or stay", kDelete, UseChange{}, {}, "B"},
};

// "A B".
std::string Identifiers() {
    LinkTable links;
    ReadLinks(links);
    std::string text;
    for (const LinkRecord& link : links) text.append(text.empty() ? "" : " ").append(link.Identifier);
    return text;
}

TEST(LinkSession, ChangesLinksWithTheRulesThatNameThem) {
    LinkServer server;
    for (const LinkCase& one : kCases) {
        server.Restore();
        LinkSession session;
        ASSERT_TRUE(session.Begin());
        std::vector<std::string> asked;
        EXPECT_EQ(one.Do(session, Answering(one.Answer, asked)), one.Answer.has_value()) << one.Name;
        asked.resize(3);
        EXPECT_THAT(asked, testing::ElementsAre("rule 1 \"One\"", "rule 2 \"Two\"!", "rule 3 \"Here\"")) << one.Name;
        EXPECT_EQ(server.GetFile("LINK.INI") + server.GetFile("LCRRULES.INI"), kLinks + kRules) << "before it is saved";
        EXPECT_TRUE(session.Commit()) << one.Name;
        std::string expected = kRules;
        for (const auto& [from, to] : one.InRules) expected = Replaced(expected, from, to);
        EXPECT_EQ(server.GetFile("LCRRULES.INI"), expected) << one.Name;
        EXPECT_EQ(Identifiers(), one.Identifiers) << one.Name;
        EXPECT_THAT(server.Files.List(kBase, "*.NE?"), testing::IsEmpty()) << one.Name;
    }
}

TEST(ChangeLinks, LetsNobodyElseInFromReadingToSaving) {
    using platform::Access;
    using platform::Deny;
    LinkServer server;
    const std::string gate = kBase + "LINK.LCK";
    int changes = 0;
    const auto change = [&](LinkEdit& edit) {
        ++changes;
        EXPECT_EQ(server.Files.Open(gate, {}).Error, platform::FileError::AccessDenied);
        return RemoveLink(edit, "B");
    };
    {
        server.Put(gate, "");
        const auto other = server.Files.Open(gate, {Access::ReadWrite, Deny::ReadingAndWriting});
        EXPECT_FALSE(ChangeLinks(change));
        EXPECT_EQ(changes, 0);
        EXPECT_THAT(server.Front.TakeSaid(), testing::ElementsAre(HasSubstr("Link.ini")));
    }
    EXPECT_TRUE(ChangeLinks(change));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(Identifiers(), "A");
}

TEST(LinkSession, KeepsRulesAndLinksTogether) {
    LinkServer server;
    std::vector<std::string> asked;
    const AskAboutUses ask = Answering(UseChange{Change::Replace, "NEW"}, asked);
    {
        LinkSession session; // the rules wait for their save
        server.PutFile("LCRRULES.NEW", kRules);
        ASSERT_TRUE(session.Begin() && Rename(session, ask, "NEW") && session.Commit());
        EXPECT_EQ(asked.front(), "rule 1 \"One\"-");
        EXPECT_EQ(server.GetFile("LCRRULES.INI") + server.GetFile("LCRRULES.NEW"), kRules + kRules);
        EXPECT_THAT(server.Front.TakeSaid(), testing::Contains(HasSubstr("the rules are not changed with the links")));
        server.Restore();
    }
    LinkSession session;
    ASSERT_TRUE(session.Begin() && Rename(session, ask, "NEW"));
    server.PutFile("LCRRULES.INI", kRules + "; changed\n");
    EXPECT_FALSE(session.Commit()) << "by others";
    EXPECT_EQ(server.GetFile("LINK.INI"), kLinks);
    server.PutFile("LCRRULES.INI", kRules);
    using platform::Access;
    using platform::Deny;
    {
        const auto held = server.Files.Open(kBase + "LINK.INI", {Access::Read, Deny::Nothing});
        EXPECT_FALSE(session.Commit()) << "the links cannot be replaced";
    }
    EXPECT_EQ(server.GetFile("LINK.INI") + server.GetFile("LCRRULES.INI"), kLinks + kRules);
    EXPECT_EQ(server.GetFile("LCRRULES.NEW"), "(none)") << "and no rules are left waiting";
    {
        const auto held = server.Files.Open(kBase + "LCRRULES.INI", {Access::Read, Deny::Nothing});
        EXPECT_FALSE(session.Commit()) << "the rules cannot be replaced";
    }
    EXPECT_EQ(Identifiers(), "NEW B");
    EXPECT_THAT(server.GetFile("LCRRULES.NEW"), HasSubstr("Server: NEW")) << "for when the program ends here";
    EXPECT_TRUE(session.IsChanged());
    const std::string address = "RemoteServerAddress: x\n";
    server.PutFile("LINK.INI", Replaced(server.GetFile("LINK.INI"), address, address + "Noted: 1\n"));
    ASSERT_TRUE(session.Commit());
    EXPECT_THAT(server.GetFile("LCRRULES.INI"), testing::AllOf(HasSubstr("Server: NEW"), Not(HasSubstr("Server: A"))));
    EXPECT_THAT(server.GetFile("LINK.INI"), HasSubstr("Noted: 1")) << "the links are not written twice";
    EXPECT_EQ(server.GetFile("LCRRULES.NEW"), "(none)");
}

TEST(RouterEdit, ANewNameOfThisServerTakesTheRulesAlong) {
    const std::string rules = Replaced(kRules, "Server: B\n", "Server: here\n");
    const struct {
        std::optional<UseChange> Answer;
        const char* Pending;
        const char* InRules;
    } cases[] = {{std::nullopt, nullptr, "here"},
                 {UseChange{Change::Leave}, nullptr, "here"},
                 {UseChange{Change::Replace}, nullptr, "THERE"},
                 {UseChange{Change::Replace}, kRules.c_str(), "here"}};
    for (const auto& [answer, pending, inRules] : cases) {
        LinkServer server;
        server.PutFile("LCRRULES.INI", rules);
        if (pending != nullptr) server.PutFile("LCRRULES.NEW", pending);
        RouterEdit edit;
        ASSERT_TRUE(BeginRouterEdit(edit));
        edit.Entered.LocalServerId = "THERE";
        std::vector<std::string> asked;
        EXPECT_EQ(SaveRouterEdit(edit, Answering(answer, asked)), answer.has_value());
        EXPECT_EQ(asked.size(), pending == nullptr ? 1u : 0u);
        EXPECT_THAT(server.GetFile("LCRRULES.INI"), HasSubstr(FormatText("Server: %s\n", inRules)));
        EXPECT_THAT(server.GetFile("SETUP.INI"), HasSubstr(answer ? "LocalServerID: THERE" : "LocalServerID: HERE"));
    }
}

TEST(RouterEdit, NeverHasANewNameWithoutItsRules) {
    std::vector<std::string> asked;
    const AskAboutUses ask = Answering(UseChange{Change::Replace}, asked);
    const auto begin = [](LinkServer& server, RouterEdit& edit) {
        server.PutFile("LCRRULES.INI", Replaced(kRules, "Server: B\n", "Server: here\n"));
        const bool isRead = BeginRouterEdit(edit);
        edit.Entered.LocalServerId = "THERE";
        return isRead;
    };
    for (int call = 1;; ++call) {
        LinkServer server;
        RouterEdit edit;
        ASSERT_TRUE(begin(server, edit));
        FaultyFiles files(server.Files, {FaultKind::Kill, call});
        {
            const platform::Substitute<platform::FileSystem> use(files);
            SaveRouterEdit(edit, ask);
        }
        if (!files.Fired()) break;
        const auto has = [&](const char* name) { return server.GetFile(name).find("THERE") != std::string::npos; };
        EXPECT_TRUE(has("LCRRULES.INI") || has("LCRRULES.NEW") || !has("SETUP.INI")) << "ended at change " << call;
    }
    LinkServer server;
    RouterEdit edit;
    ASSERT_TRUE(begin(server, edit));
    {
        const auto held = server.Files.Open(kBase + "LCRRULES.INI", {platform::Access::Read, platform::Deny::Nothing});
        EXPECT_FALSE(SaveRouterEdit(edit, ask)) << "the rules cannot be replaced";
    }
    EXPECT_THAT(server.GetFile("SETUP.INI") + server.GetFile("LCRRULES.NEW"),
                testing::AllOf(HasSubstr("LocalServerID: THERE"), HasSubstr("Server: THERE")));
    edit.Entered.LocalServerId = "ELSEWHERE";
    ASSERT_TRUE(SaveRouterEdit(edit, ask)) << "and once more";
    EXPECT_THAT(server.GetFile("SETUP.INI") + server.GetFile("LCRRULES.INI"),
                testing::AllOf(HasSubstr("LocalServerID: ELSEWHERE"), HasSubstr("Server: ELSEWHERE"),
                               Not(HasSubstr("THERE\n"))));
    EXPECT_EQ(server.GetFile("LCRRULES.NEW"), "(none)");
}

} // namespace
} // namespace bv::test
