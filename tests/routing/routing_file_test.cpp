#include "routing/routing_file.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv {
namespace {

using test::Replaced;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

const std::string kPath = "F:\\BRIVANE\\B-DB\\ROUTING.INI";
const std::string kHead = "[BRIVANE]\nType: RoutingInit\nRevision: A\n\n";
const std::string kEmpty = kHead + "[SENDERID]\n\n[SUBADDR]\n\n[FORWARD]\n";
const std::string kRules = kHead +
                           "[SENDERID]\n; ours\n@44181: \"+44 181\" \"Smith, \"\nANN: BOB\n\\(unaddressed): CARL\n"
                           "@49: \"\"\n\n[SUBADDR]\n\\*1: ann\n22: BOB\n\n[FORWARD]\nANN: \"\" LAN-ANY \"BOB\"\n"
                           "BOB: \"x y\" lan-any \"carl\" delete\n";

struct RoutingServer : test::MemoryServer {
    RoutingServer() { Load(); }
    explicit RoutingServer(const std::string& text) : RoutingServer() { PutRules(text); }
    void PutRules(const std::string& text) { Put(kPath, Replaced(text, "\n", "\r\n")); }
    // A CR that does not belong to a line end stays, and so shows.
    std::string Rules() { return Replaced(Get(kPath), "\r\n", "\n"); }
};

// Every rule of the file as one line of text, and "failed" after a reader that failed.
std::vector<std::string> Listed() {
    std::vector<std::string> lines;
    ControlStream file = OpenRoutingFile();
    if (!file) return {"no file"};
    const auto take = [&lines](std::initializer_list<std::string> parts) {
        std::string line;
        for (const std::string& part : parts) line += (line.empty() ? "" : "|") + part;
        lines.push_back(line);
    };
    if (!ReadSenderIdRules(file, [&](const SenderIdRule& rule) {
            take({rule.RecordKey, rule.Sender, rule.Organisation, rule.Addressee, rule.User});
        }))
        lines.emplace_back("failed");
    if (!ReadSubAddressRules(file, [&](const SubAddressRule& rule) { take({rule.SubAddress, rule.User}); }))
        lines.emplace_back("failed");
    if (!ReadForwardRules(file, [&](const ForwardRule& rule) {
            take({rule.User, rule.Target, rule.Deletes ? "moves" : "copies"});
        }))
        lines.emplace_back("failed");
    return lines;
}

TEST(RoutingFile, IsMadeWhenThereIsNone) {
    RoutingServer server;
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_EQ(server.Get(kPath), "[BRIVANE]\r\nType: RoutingInit\r\nRevision: A\r\n\r\n[SENDERID]\r\n\r\n"
                                 "[SUBADDR]\r\n\r\n[FORWARD]\r\n");
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("status 1: Created new routing rules file (ROUTING.INI)"));
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_THAT(server.Front.TakeSaid(), IsEmpty());
}

TEST(RoutingFile, IsRefusedUnlessItsHeaderIsThatOfOne) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "[BRIVANE] paragraph not found in routing rules file"},
        {"[SUBADDR]\nType: RoutingInit\nRevision: A\n", "[BRIVANE] paragraph not found in routing rules file"},
        {"[BRIVANE]\nRevision: A\n", "Invalid [BRIVANE] Type: line in routing rules file"},
        {"[BRIVANE]\nType: RoutingInits\n", "Invalid [BRIVANE] Type: line in routing rules file"},
        {"[BRIVANE]\n[X]\nType: RoutingInit\n", "Invalid [BRIVANE] Type: line in routing rules file"},
        {"[BRIVANE]\nType: routinginit\nRevision: B\n", "Unknown routing rules file revision (B)"},
        {"[BRIVANE]\nType: routinginit\nRevision: a\n", "Unknown routing rules file revision (a)"},
        {"[BRIVANE]\nType: ROUTINGINIT\n", "Unknown routing rules file revision ()"},
    };
    for (const auto& [text, message] : cases) {
        RoutingServer server(text);
        EXPECT_THAT(Listed(), ElementsAre("no file"));
        EXPECT_FALSE(WriteSubAddressRule({"1", "ANN"}));
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: " + message, "error: " + message));
        EXPECT_EQ(server.Rules(), text);
    }
    RoutingServer server(kEmpty);
    const ControlStream other = OpenShared(kPath, "r+b");
    EXPECT_FALSE(OpenRoutingFile());
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Unable to open routing rules file (" + kPath + ")"));
}

TEST(RoutingFile, GivesItsRulesInTheirOrderAndSkipsWhatIsNone) {
    struct Case {
        std::string Paragraph;
        std::string Lines;
        std::vector<std::string> Rules;
    };
    const Case cases[] = {
        {"[SENDERID]\n", "A: B\n@44: \"+44\" \"Smith, Ltd\"\n\\(un): ANN\nBOB:CARL \n",
         Texts{"44|+44|Smith, Ltd|(un)|ANN", "44|+44|Smith, Ltd|BOB|CARL"}},
        {"[SENDERID]\n", "@44: \"\" \"S\"\n@45: \"x\"\nA: B\n@46: \"\n", {"44|44|S||", "45|x||A|B", "46|46|||"}},
        {"[SENDERID]\n", "@44 \"x\" \"y\"\nA: B\n@45: x \"y\"\nA: B\n@46:\nA: B\n@\n", {}},
        {"[SENDERID]\n", "@44: \"x\" y z\nno entry\nA=B\n: B\n\\: B\n ; C: D\n;E: F\nG:\n", {"44|x|y|G|"}},
        {"[SUBADDR]\n", "\\*1: ann bob\n22: BOB\n2 2: BOB\n:\n7 ANN\n\\: ANN\n\\\\9:\tz\n3:\n",
         Texts{"*1|ANN", "22|BOB", "\\9|Z", "3|"}},
        {"[FORWARD]\n",
         "A: \"\" LAN-ANY \"b\"\nC: lan-any \"D e\" delete x\nF: \"\" \"\" LAN-ANY \"G\"\nH: \"\" LAN-ONE \"I\"\n",
         Texts{"A|B|copies", "C|D E|moves"}},
        {"[FORWARD]\n", "A: \"\" LAN-ANY b DELETE\nC: \"\" LAN-ANY\n\\(x): \"a b\",LAN-ANY,\"D\",DELETED\nE:\n",
         Texts{"(x)|D|copies"}},
    };
    for (const Case& one : cases) {
        RoutingServer server(Replaced(kEmpty, one.Paragraph, one.Paragraph + one.Lines));
        EXPECT_EQ(Listed(), one.Rules) << one.Lines;
        EXPECT_THAT(server.Front.TakeSaid(), IsEmpty());
    }
}

TEST(RoutingFile, AMissingParagraphIsSaidAndTheOthersStillCome) {
    const std::tuple<std::string, std::string, std::vector<std::string>> cases[] = {
        {"SENDERID", "Sender ID", {"failed", "1|A", "B|C|copies"}},
        {"SUBADDR", "Sub-address", {"9|9||A|B", "failed", "B|C|copies"}},
        {"FORWARD", "Automatic forwarding", {"9|9||A|B", "1|A", "failed"}},
    };
    const std::string all = kHead + "[FORWARD]\nB: LAN-ANY \"C\"\n[SUBADDR]\n1: A\n[SENDERID]\n@9: \"\"\nA: B\n";
    for (const auto& [name, kind, listed] : cases) {
        RoutingServer server(Replaced(all, "[" + name + "]", "[OTHER]"));
        EXPECT_EQ(Listed(), listed);
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: No " + kind + " rules in routing file.  Add [" + name +
                                                         "] paragraph to F:\\BRIVANE\\B-DB\\ROUTING.INI"));
    }
}

TEST(RoutingFile, ASenderIsFiledUnderItsLettersAndDigits) {
    EXPECT_EQ(SenderRecordKey("+44 (181) 123-4567"), "441811234567");
    EXPECT_EQ(SenderRecordKey("fax@Smith \xC4"), "FAX@SMITH");
    EXPECT_EQ(SenderRecordKey("+- "), "");
}

SenderIdRule Sender(const char* number, const char* organisation, const char* addressee, const char* user) {
    return {"", number, organisation, addressee, user};
}
SubAddressRule SubAddress(const char* number, const char* user) { return {number, user}; }
ForwardRule Forward(const char* user, const char* target, bool deletes) { return {user, target, deletes}; }

struct Change {
    std::string Name;
    std::function<bool()> Make;
    std::string From; // of kRules
    std::string To;
};

const Change kChanges[] = {
    {"a new sender", [] { return WriteSenderIdRule(Sender("+1-x", "", "ANN", "BOB")); }, "@49: \"\"\n",
     "@49: \"\"\n@1X: \"+1-x\" \"\"\nANN: BOB\n"},
    {"a new addressee", [] { return WriteSenderIdRule(Sender("49", "O", "(u)", "BOB")); }, "@49: \"\"\n",
     "@49: \"49\" \"O\"\n\\(u): BOB\n"},
    {"an addressee again", [] { return WriteSenderIdRule(Sender("44 181", "S", "(UNADDRESSED)", "ANN")); },
     "@44181: \"+44 181\" \"Smith, \"\nANN: BOB\n\\(unaddressed): CARL\n",
     "@44181: \"44 181\" \"S\"\nANN: BOB\n\\(UNADDRESSED): ANN\n"},
    {"an addressee less", [] { return DeleteSenderIdRule(Sender("44181", "Smith, ", "(unaddressed)", "")); },
     "\\(unaddressed): CARL\n", ""},
    {"a sub-address", [] { return WriteSubAddressRule(SubAddress("#2", "ANN")); }, "22: BOB\n", "22: BOB\n\\#2: ANN\n"},
    {"a sub-address again", [] { return WriteSubAddressRule(SubAddress("*1", "BOB")); }, "\\*1: ann\n", "\\*1: BOB\n"},
    {"a sub-address less", [] { return DeleteSubAddressRule("*1"); }, "\\*1: ann\n", ""},
    {"a copy", [] { return WriteForwardRule(Forward("BOB", "ANN", false)); }, "BOB: \"x y\" lan-any \"carl\" delete\n",
     "BOB: \"\" LAN-ANY \"ANN\" \n"},
    {"a forwarding", [] { return WriteForwardRule(Forward("(x)", "ANN", true)); }, "\"carl\" delete\n",
     "\"carl\" delete\n\\(x): \"\" LAN-ANY \"ANN\" DELETE\n"},
    {"a forwarding less", [] { return DeleteForwardRule("ann"); }, "ANN: \"\" LAN-ANY \"BOB\"\n", ""},
};

TEST(RoutingFile, AChangeTouchesOneRule) {
    for (const Change& change : kChanges) {
        SCOPED_TRACE(change.Name);
        RoutingServer server(kRules);
        EXPECT_TRUE(change.Make());
        EXPECT_EQ(server.Rules(), Replaced(kRules, change.From.empty() ? "\x01" : change.From, change.To));
        EXPECT_THAT(server.Front.TakeSaid(),
                    ElementsAre("status 1: Updating file " + kPath, "status 1: Updated file " + kPath));
    }
}

TEST(RoutingFile, AKeyEscapedOtherwiseIsTheSameKey) {
    RoutingServer server(kHead +
                         "[SENDERID]\n@+4: \"\" \"\"\n(u): ANN\n\\BOB: ANN\n[SUBADDR]\n*1: ANN\n\\22: ANN\n"
                         "\\\\3: ANN\n@W: ANN\n@X: ANN\n[FORWARD]\n\\ANN: LAN-ANY \"BOB\"\n@W: LAN-ANY \"BOB\"\n");
    EXPECT_TRUE(WriteSenderIdRule({"+4", "+4", "", "BOB", "BOB"}));
    EXPECT_TRUE(DeleteSenderIdRule({"+4", "+4", "", "(u)", ""}));
    EXPECT_TRUE(DeleteSubAddressRule("*1"));
    EXPECT_TRUE(WriteSubAddressRule({"22", "BOB"}));
    EXPECT_TRUE(WriteSubAddressRule({"3", "BOB"}));
    EXPECT_TRUE(WriteForwardRule({"ANN", "CARL", true}));
    EXPECT_TRUE(WriteSubAddressRule({"@W", "BOB"}));
    EXPECT_TRUE(DeleteSubAddressRule("@x"));
    EXPECT_TRUE(DeleteForwardRule("@W"));
    server.Front.TakeSaid();
    for (const bool deleted : {DeleteSubAddressRule("@X"), DeleteSubAddressRule("2"), DeleteForwardRule("@W"),
                               DeleteSenderIdRule({"+4", "+4", "", "CARL", ""})})
        EXPECT_FALSE(deleted);
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: File " + kPath + " has no rule for @X any more",
                                                     "error: File " + kPath + " has no rule for 2 any more",
                                                     "error: File " + kPath + " has no rule for @W any more",
                                                     "error: File " + kPath + " has no rule for CARL any more"));
    EXPECT_EQ(server.Rules(),
              kHead + "[SENDERID]\n@+4: \"+4\" \"\"\nBOB: BOB\n\n[SUBADDR]\n\\\\3: ANN\n22: BOB\n3: BOB\n\\@W: BOB\n\n"
                      "[FORWARD]\nANN: \"\" LAN-ANY \"CARL\" DELETE\n");
}

TEST(RoutingFile, AMalformedRecordIsNotTheOneOfItsKey) {
    const std::string head = kHead + "[SENDERID]\n@44: x y\nANN: BOB\n";
    RoutingServer server(head + "@44: \"+44\" \"S\"\nANN: BOB\n");
    EXPECT_TRUE(WriteSenderIdRule({"44", "+44", "S", "ANN", "CARL"}));
    EXPECT_TRUE(WriteSenderIdRule({"44", "+44", "S", "BOB", "CARL"}));
    EXPECT_EQ(server.Rules(), head + "@44: \"+44\" \"S\"\nANN: CARL\nBOB: CARL\n");
    EXPECT_TRUE(DeleteSenderIdRule({"44", "+44", "S", "ANN", ""}));
    EXPECT_EQ(server.Rules(), head + "@44: \"+44\" \"S\"\nBOB: CARL\n");
    EXPECT_TRUE(DeleteSenderRecord({"44", "+44", "S", "", ""}));
    EXPECT_EQ(server.Rules(), head);
    EXPECT_TRUE(WriteSenderIdRule({"", "+44", "", "ANN", "CARL"}));
    EXPECT_EQ(server.Rules(), head + "@44: \"+44\" \"\"\nANN: CARL\n");
}

TEST(RoutingFile, WhatWouldComeBackDifferentlyIsTold) {
    const std::string long268(268, 'x');
    EXPECT_TRUE(CanBeKept(SenderIdRule{"", "+44 1, x:=", "O: 1", "(u)", "ANN"}));
    for (const SenderIdRule& rule : {
             SenderIdRule{"", "+", "", "A", "B"},
             SenderIdRule{"", "4\"4", "", "A", "B"},
             SenderIdRule{"", "4\t4", "", "A", "B"},
             SenderIdRule{"", long268, "", "A", "B"},
             SenderIdRule{"", "44", "a\"", "A", "B"},
             SenderIdRule{"", "44", "", "", "B"},
             SenderIdRule{"", "44", "", "A:", "B"},
             SenderIdRule{"", "44", "", "A=", "B"},
             SenderIdRule{"", "44", "", "A", "B "},
         })
        EXPECT_FALSE(CanBeKept(rule)) << testing::PrintToString(rule.Sender + '|' + rule.Addressee);
    EXPECT_TRUE(CanBeKept(SubAddressRule{std::string(276, '1'), "A"}));
    for (const std::string& number : {std::string(), std::string("1 2"), std::string("1,2"), std::string("1:2"),
                                      std::string(278, '1'), std::string("1\n2")})
        EXPECT_FALSE(CanBeKept(SubAddressRule{number, "A"})) << number;
    EXPECT_FALSE(CanBeKept(SubAddressRule{"1", "a"})) << "a reader upper-cases";
    EXPECT_TRUE(CanBeKept(ForwardRule{"(x)", "B C", true}));
    EXPECT_FALSE(CanBeKept(ForwardRule{"A B", "C", true}));
    EXPECT_FALSE(CanBeKept(ForwardRule{"A", "C\"", true}));
}

TEST(RoutingFile, AFaultWhileMakingItLeavesNone) {
    RoutingServer server;
    test::FaultyFiles full(server.Files, {test::FaultKind::ShortWrite, 2});
    const platform::Substitute<platform::FileSystem> use(full);
    EXPECT_FALSE(OpenRoutingFile());
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Unable to create file " + kPath));
    EXPECT_EQ(server.Get(kPath), "(none)");
}

} // namespace
} // namespace bv
