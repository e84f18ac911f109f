// What a person sees of inward routing and does to it: remarks, traces, changes and their questions, files of
// comma-separated values. The file before, what is done, what is said, the lines after.
#include <gmock/gmock.h>

#include <functional>

#include "routing/inward_actions.h"
#include "routing/inward_import.h"
#include "routing/inward_trace.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv {
namespace {

using test::Replaced;
using testing::ElementsAre;

const std::string kArea = "F:\\BRIVANE\\B-DB\\";
const std::string kHead = "[BRIVANE]\nType: RoutingInit\nRevision: A\n\n";
const std::string kRules = kHead +
                           "[SENDERID]\n@44181: \"+44 181\" \"Smith\"\nANN: BOB\n; both\n\\(unaddressed): CARL\n"
                           "@49: \"+49\" \"\"\nBOB: ANN\n\n"
                           "[SUBADDR]\n1: ANN\n2: ann\n2: BOB\n\n"
                           "[FORWARD]\nANN: \"\" LAN-ANY \"BOB\" \nLEN: \"\" TELEPHONE \"+44\"\n"
                           "BOB: \"\" LAN-ANY \"CARL\" DELETE\n\n[X]\nkept";

struct RoutingScene : test::MemoryServer {
    explicit RoutingScene(const std::string& rules = kRules) {
        Load();
        std::string users;
        for (const char* name : {"ANN", "BOB", "CARL", "LEN"})
            users.append("[USER]\nName: ").append(name).append("\n\n");
        Put(kArea + "USERLIST.INI", users + "[GROUP]\nName: @S\n");
        Put(kArea + "ROUTING.INI", Replaced(rules, "\n", "\r\n"));
        Front.Answer = true;
    }
    std::string Rules() { return Replaced(Get(kArea + "ROUTING.INI"), "\r\n", "\n"); }
    // Questions, errors and the last status.
    std::vector<std::string> Told() {
        std::vector<std::string> told = Front.TakeSaid();
        std::erase_if(told, [](const std::string& line) {
            return line.find("dat") == 12 || line.starts_with("status 1: Updat");
        });
        return told;
    }
};

InwardRules Listed() {
    InwardRules rules;
    EXPECT_TRUE(ReadInwardRules(rules));
    return rules;
}

TEST(InwardRules, RemarkOnWhatWillNotWork) {
    RoutingScene scene(
        kHead + "[SENDERID]\n@44: \"+44\" \"\"\nANN: BOB\nann: NOBODY\n\\(u): @s\n@4-4: \"4-4\"\nX: \n@1: \"1\"\n"
                "[SUBADDR]\n7A: ANN\n7a: ZOE\n"
                "[FORWARD]\nANN: LAN-ANY \"BOB\"\nBOB: LAN-ANY \"CARL\"\nCARL: LAN-ANY \"BOB\"\n");
    NameSet names;
    ASSERT_TRUE(ReadRoutingNames(names));
    const std::pair<RoutingKind, std::vector<std::string>> cases[] = {
        {RoutingKind::Sender,
         {"one of 2 records with this key; ANN has another rule",
          "one of 2 records with this key; ann has another rule; no such user NOBODY", "one of 2 records with this key",
          "one of 2 records with this key; no such user X; routes to nobody", ""}},
        {RoutingKind::SubAddress, {"7A has another rule", "7a has another rule; no such user ZOE"}},
        {RoutingKind::Forward, {"", "comes back: BOB -> CARL -> BOB", "comes back: CARL -> BOB -> CARL"}},
    };
    for (const auto& [kind, remarks] : cases) {
        InwardRows rows;
        rows.Fill(kind, Listed(), &names);
        std::vector<std::string> found;
        for (std::size_t row = 0; row < rows.Count(); ++row) found.emplace_back(rows.Text(row, rows.Columns() - 1));
        EXPECT_EQ(found, remarks);
    }
    EXPECT_EQ(SpecialWords(Listed()), (std::vector<std::string>{"(unaddressed)", "(u)"}));
    scene.Put(kArea + "SETUP.INI", "[QUEUEMAN]\nRouteSenderID: NO\n");
    EXPECT_EQ(WhyUnused(RoutingKind::Sender),
              "The server does not use these rules: RouteSenderID is NO in the server settings");
    EXPECT_EQ(WhyUnused(RoutingKind::SubAddress), "");
}

TEST(InwardRules, TellWhoGetsAFax) {
    const std::pair<ReceivedFax, std::string> cases[] = {
        {{"44-181", "1", ""}, "By sub-address 1: ANN. ANN copies to BOB. BOB forwards to CARL. By sender: CARL."},
        {{"+44 181", "", "ann"}, "By sender: BOB. BOB forwards to CARL."},
        {{"+49", "", "CARL"}, "No rule routes it: CARL, whom it names."},
        {{"+", "3", "(x)"}, "No rule routes it."},
    };
    const RoutingScene scene;
    for (const auto& [fax, text] : cases) EXPECT_EQ(TraceText(TraceInward(Listed(), fax)), text);
    const RoutingScene circle(Replaced(kRules, "\n\n[X]", "\nCARL: LAN-ANY \"BOB\"\n\n[X]"));
    EXPECT_EQ(TraceText(TraceInward(Listed(), {"", "1", ""})),
              "By sub-address 1: ANN. ANN copies to BOB. BOB forwards to CARL. CARL copies to BOB. "
              "It comes back: BOB -> CARL -> BOB.");
}

struct Change {
    std::string Name;
    std::function<bool()> Make;
    std::string From; // of kRules
    std::string To;
    std::vector<std::string> Told;
};

SenderIdRule SenderAt(std::size_t row) { return Listed().Senders.at(row); }
bool ChangeSender(std::size_t row, const std::function<void(SenderIdRule&)>& change) {
    SenderIdRule rule = SenderAt(row);
    change(rule);
    return SaveSenderRule(SenderAt(row), rule, Replacing::Asked) == RuleField::Nothing;
}
bool ChangeForward(std::size_t row, const ForwardRule& rule) {
    return SaveForwardRule(Listed().Forwards.at(row), rule, Replacing::Asked) == RuleField::Nothing;
}
bool ChangeSubAddress(std::size_t row, const SubAddressRule& rule) {
    return SaveSubAddressRule(Listed().SubAddresses.at(row), rule, Replacing::Asked) == RuleField::Nothing;
}

const Change kChanges[] = {
    {"nothing", [] { return ChangeSender(0, [](SenderIdRule&) {}); }, "", "", {}},
    {"an addressee, in its place",
     [] { return ChangeSender(0, [](SenderIdRule& rule) { rule.Addressee = "@s"; }); },
     "ANN: BOB\n",
     "\\@S: BOB\n",
     {"status 1: Modified sender rule +44 181"}},
    {"the identifier of a sender with two rules",
     [] { return ChangeSender(1, [](SenderIdRule& rule) { rule.Sender = "+45"; }); },
     "@44181: \"+44 181\"",
     "@45: \"+45\"",
     {"ask question: Sender +44 181 has 2 rules.\n\nChange the identifier for all of them?",
      "status 1: Modified sender rule +45"}},
    {"a rule that goes to another sender",
     [] { return ChangeSender(2, [](SenderIdRule& rule) { rule.Sender = "44181", rule.Addressee = "ANN"; }); },
     "\"+44 181\" \"Smith\"\nANN: BOB\n; both\n\\(unaddressed): CARL\n@49: \"+49\" \"\"\nBOB: ANN\n",
     "\"44181\" \"\"\nANN: ANN\n; both\n\\(unaddressed): CARL\n",
     {"ask question: There is a rule for ANN already: it routes to BOB.\n\nReplace it?",
      "ask question: This is the last rule of sender +49.\n\nDelete the sender, too?",
      "status 1: Modified sender rule 44181"}},
    {"another sub-address, in its place",
     [] {
         return ChangeSubAddress(0, {"*3", "bob"});
     },
     "1: ANN\n",
     "\\*3: BOB\n",
     {"status 1: Modified sub-address rule *3"}},
    {"one of two with one key",
     [] {
         return ChangeSubAddress(2, {"2", "CARL"});
     },
     "2: ann\n2: BOB\n",
     "2: CARL\n",
     {"ask question: There is a rule for 2 already: it routes to ANN.\n\nReplace it?",
      "status 1: Modified sub-address rule 2"}},
    {"another user, over a line that is not understood",
     [] {
         return ChangeForward(0, {"len", "CARL", true});
     },
     "ANN: \"\" LAN-ANY \"BOB\" \nLEN: \"\" TELEPHONE \"+44\"\n",
     "LEN: \"\" LAN-ANY \"CARL\" DELETE\n",
     {"ask question: File " + kArea +
          "ROUTING.INI has another line for LEN, which this program does not understand:\n\n"
          "LEN: \"\" TELEPHONE \"+44\"\n\nReplace it?",
      "status 1: Modified forwarding rule LEN"}},
    {"faxes that come back",
     [] {
         return ChangeForward(1, {"BOB", "ann", false});
     },
     "\"CARL\" DELETE",
     "\"ANN\" ",
     {"ask question: Faxes would come back: BOB -> ANN -> BOB.\n\nKeep this rule?",
      "status 1: Modified forwarding rule BOB"}},
    {"a rule less, and its sender",
     [] { return DeleteSenderRules({SenderAt(2)}); },
     "@49: \"+49\" \"\"\nBOB: ANN\n",
     "",
     {"ask question: Deleting sender rule +49 - to ANN\n\nAre you sure?",
      "ask question: This is the last rule of sender +49.\n\nDelete the sender, too?",
      "status 1: Deleted sender rule +49"}},
    {"one of two with one key less",
     [] { return DeleteSubAddressRules({Listed().SubAddresses[1]}); },
     "2: ann\n",
     "",
     {"ask question: Deleting sub-address rule 2 - to ANN\n\nAre you sure?", "status 1: Deleted sub-address rule 2"}},
    {"all forwardings less",
     [] { return DeleteForwardRules(Listed().Forwards); },
     "ANN: \"\" LAN-ANY \"BOB\" \nLEN: \"\" TELEPHONE \"+44\"\nBOB: \"\" LAN-ANY \"CARL\" DELETE\n",
     "LEN: \"\" TELEPHONE \"+44\"\n",
     {"ask question: Deleting 2 forwarding rules\n\nAre you sure?", "status 1: Deleted 2 forwarding rules"}},
};

TEST(InwardRules, ChangeInOneRewriteAndNothingElse) {
    for (const Change& change : kChanges) {
        SCOPED_TRACE(change.Name);
        RoutingScene scene;
        EXPECT_TRUE(change.Make());
        EXPECT_EQ(scene.Told(), change.Told);
        EXPECT_EQ(scene.Rules(), change.From.empty() ? kRules : Replaced(kRules, change.From, change.To));
        RoutingScene refusing;
        refusing.Front.Answer = false;
        const bool asks = !change.Told.empty() && change.Told.front().starts_with("ask");
        EXPECT_EQ(change.Make(), !asks);
        if (asks) EXPECT_EQ(refusing.Rules(), kRules);
    }
}

TEST(InwardRules, FaultsNameTheirField) {
    using Field = RuleField;
    const auto sender = [](const char* id, const char* organisation, const char* addressee, const char* user) {
        return SaveSenderRule({}, {"", id, organisation, addressee, user}, Replacing::Asked);
    };
    const auto forward = [](const char* user, const char* target) {
        return SaveForwardRule({}, {user, target, false}, Replacing::Asked);
    };
    const struct {
        std::function<Field()> Save;
        Field Where;
        std::string Message;
    } kFaults[] = {
        {[&] { return sender("+-", "", "ANN", "BOB"); }, Field::Key,
         "Sender identifier: \"+-\" - an identifier has a letter or a digit."},
        {[&] { return sender("4", "a\"b", "ANN", "BOB"); }, Field::Organisation,
         "Organisation: \"a\"b\" cannot be kept in the routing file"},
        {[&] { return sender("4", "", "", "BOB"); }, Field::Addressee, "Brivane user  not found"},
        {[&] { return sender("4", "", "(x)", "ZOE"); }, Field::User, "Brivane user ZOE not found"},
        {[&] {
             return SaveSubAddressRule({}, {"", "ANN"}, Replacing::Asked);
         },
         Field::Key, "Sub-address: please enter one."},
        {[&] {
             return SaveSubAddressRule({}, {"1 2", "ANN"}, Replacing::Asked);
         },
         Field::Key, "Sub-address: \"1 2\" cannot be kept in the routing file"},
        {[&] { return forward("ANN", "(x)"); }, Field::User, "Brivane user (x) not found"},
        {[&] { return forward("ann", "ANN"); }, Field::User,
         "Forward to: \"ANN\" - a user's faxes cannot be forwarded to the same user."},
        {[] {
             return SaveSubAddressRule(SubAddressRule{"1", "CARL"}, {"1", "BOB"}, Replacing::Asked);
         },
         Field::File, "The rule for 1 was changed by somebody else meanwhile, and is not overwritten."},
    };
    RoutingScene scene;
    for (const auto& [save, where, message] : kFaults) {
        EXPECT_EQ(save(), where) << message;
        EXPECT_THAT(scene.Told(), ElementsAre("error: " + message));
    }
    EXPECT_FALSE(DeleteForwardRules({Listed().Forwards[0], {"LEN", "+44", false}}));
    EXPECT_THAT(scene.Told(),
                ElementsAre("ask question: Deleting 2 forwarding rules\n\nAre you sure?",
                            "error: The rule for LEN was changed by somebody else meanwhile, and is not overwritten."));
    EXPECT_EQ(scene.Rules(), kRules);
    EXPECT_EQ(FiledText(Listed().Senders, "44 (181)", kNewRecord), "filed as 44181, as is +44 181");
    EXPECT_EQ(FiledText(Listed().Senders, "44 (181)", 0), "filed as 44181");
}

TEST(InwardRules, AreExportedAndImportedAgain) {
    RoutingScene scene;
    const std::string exported = InwardRulesAsCsv(Listed());
    const auto check = [](InwardImport& import, const std::string& text) {
        const CsvTable table = ReadCsvTable(text, import.Columns(), import.Title());
        const auto verdicts = import.Check(table);
        std::vector<std::string> found;
        for (const RowVerdict& verdict : verdicts.value_or(std::vector<RowVerdict>()))
            found.push_back(std::to_string(static_cast<int>(verdict.State)) +
                            (verdict.Notes.empty() ? "" : " " + verdict.Notes.front().Text));
        return found;
    };
    InwardImport import;
    EXPECT_THAT(check(import, exported), testing::AllOf(testing::SizeIs(8), testing::Each("2"))) << exported;
    EXPECT_THAT(check(import, "Kind,Sender,Addressee,Number,User,Target,Delete\nx,,,,,,\nsender,-,A,,ANN,,\n"
                              "subaddr,,,5,ZOE,,\nsubaddr,,,6,ANN,,\nsubaddr,,,6,BOB,,\nforward,,,,ANN,BOB,q\n"
                              "forward,,,,LEN,ANN,\nforward,,,,CARL,ANN,\n"),
                ElementsAre("3 Kind: \"x\" is not sender, subaddr or forward",
                            "3 Sender identifier: \"-\" - an identifier has a letter or a digit.", "3 no such user ZOE",
                            "0", "3 Number: \"6\" is there twice", "3 Delete: \"q\" is not YES or NO",
                            "3 User: \"LEN\" has a line that this program does not understand",
                            "3 comes back: CARL -> ANN -> BOB -> CARL"));
    EXPECT_THAT(check(import, "Kind,Sender,Addressee,Number,User,Target,Delete\nSENDER,44 181,ann,,carl,,\n"
                              "sender,+7,(u),,ANN,,\nsender,+7,BOB,,ANN,,\nsender,+8,,,,,\nsubaddr,,,1,BOB,,\n"
                              "subaddr,,,*9,@s,,\nforward,,,,ANN,BOB,yes\n"),
                ElementsAre("1 Sender: \"+44 181\" -> \"44 181\"", "0", "0", "0", "1 User: \"ANN\" -> \"BOB\"", "0",
                            "1 Delete: \"NO\" -> \"YES\""));
    scene.Front.TakeSaid();
    EXPECT_EQ(import.Apply([](std::size_t) { return true; }), (ImportCounts{4, 3}));
    EXPECT_EQ(scene.Front.TakeSaid().size(), 2U) << "one rewrite";
    std::string after = Replaced(kRules, "\"+44 181\" \"Smith\"\nANN: BOB\n", "\"44 181\" \"Smith\"\nANN: CARL\n");
    after = Replaced(after, "BOB: ANN\n", "BOB: ANN\n@7: \"+7\" \"\"\n\\(u): ANN\nBOB: ANN\n@8: \"+8\" \"\"\n");
    after = Replaced(after, "1: ANN\n2: ann\n2: BOB\n", "1: BOB\n2: ann\n2: BOB\n\\*9: @S\n");
    EXPECT_EQ(scene.Rules(), Replaced(after, "\"BOB\" \n", "\"BOB\" DELETE\n"));
}

TEST(InwardRules, APlaceIsMadeForTheFirstOfAKind) {
    RoutingScene scene(kHead + "[X]\nkept\n");
    RoutingChanges changes;
    changes.Senders.push_back({{}, SenderIdRule{"", "+4", "", "ANN", "BOB", kNewRecord}});
    changes.SubAddresses.push_back({{}, SubAddressRule{"1", "ANN"}});
    EXPECT_TRUE(ChangeRoutingRules(changes));
    EXPECT_EQ(scene.Rules(), kHead + "[X]\nkept\n\n[SENDERID]\n@4: \"+4\" \"\"\nANN: BOB\n\n[SUBADDR]\n1: ANN\n");
}

} // namespace
} // namespace bv
