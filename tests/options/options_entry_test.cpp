// The settings while a person edits them: what others write meanwhile, saves that fail, and what is asked first.
#include "options/options_entry.h"

#include <gmock/gmock.h>

#include "devices/setup_text.h"
#include "options/server_facts.h"
#include "support/help_pages.h"
#include "voice/format.h"

namespace bv {
namespace {

using test::Replaced;
using test::SetupServer;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const OptionKey& Key(const std::string& path) {
    const std::size_t slash = path.find('/');
    return *FindOptionKey(path.substr(0, slash), path.substr(slash + 1));
}

// A file with every key.
std::string Complete() {
    SetupServer server("");
    ServerOptions options;
    SavedOptions saved;
    LoadServerOptions(options, saved);
    WriteServerOptions(options, saved);
    return server.GetSetup();
}

void Enter(OptionsEntry& entry, const std::string& path, const std::string& text) {
    EXPECT_EQ(entry.Enter(Key(path), text), std::nullopt);
}

TEST(OptionsEntry, ReadsTheFileOnceAndSavesNothingUnchanged) {
    const std::string before = Complete() + "\n[ROUTER]\nx\n";
    SetupServer server(before);
    const auto calls = [&](const std::function<bool()>& load) {
        test::FaultyFiles counting(server.Files, {});
        const platform::Substitute<platform::FileSystem> use(counting);
        EXPECT_TRUE(load());
        return counting.Calls(test::CallKind::Looks);
    };
    ServerOptions options;
    SavedOptions saved;
    OptionsEntry entry;
    EXPECT_EQ(calls([&] { return entry.Load(); }), calls([&] { return LoadServerOptions(options, saved); }));
    server.Front.TakeSaid();
    EXPECT_TRUE(entry.Save());
    EXPECT_EQ(server.GetSetup(), before);
    EXPECT_THAT(server.Front.Said, IsEmpty());

    server.PutSetup("[OPTIONS]\nLCR: NO\n");
    EXPECT_TRUE(entry.Load());
    entry.SayAbsent();
    EXPECT_THAT(server.Front.TakeSaid().back(), HasSubstr("does not have yet and that saving writes: 68"));
    EXPECT_FALSE(entry.IsChanged());
    EXPECT_TRUE(entry.Save()) << "which completes the file";
    EXPECT_EQ(entry.CountAbsent(), 0u);
}

TEST(OptionsEntry, PutsItsChangesOnTopOfThoseOfOthers) {
    const std::string types = "TelnumType: Local           \"Here\"\n";
    const std::string before = Complete() + types;
    const std::string theirs =
        Replaced(Replaced(before, "SendTries: 5", "SendTries: 9"), "CoverMaxLine: 10", "CoverMaxLine: 7");
    for (const bool mine : {false, true}) {
        SetupServer server(before);
        OptionsEntry entry;
        ASSERT_TRUE(entry.Load());
        Enter(entry, "QUEUEMAN/SendTries", "3");
        Enter(entry, "OPTIONS/LogKeepDays", "14");
        server.PutSetup(theirs);
        server.Front.Answer = mine;
        server.Front.TakeSaid();
        EXPECT_TRUE(entry.Save());
        EXPECT_EQ(server.Front.Said.front(), "ask warning: " + test::kSetupFile +
                                                 " was changed by somebody else meanwhile: SendTries: \"9\".\n\n"
                                                 "Overwrite it with your value?");
        const std::string merged = Replaced(theirs, "LogKeepDays: 0", "LogKeepDays: 14");
        EXPECT_EQ(server.GetSetup(), mine ? Replaced(merged, "SendTries: 9", "SendTries: 3") : merged);
        EXPECT_EQ(entry.After().CoverMaxLine, 7);
        EXPECT_FALSE(entry.IsChanged());
    }
}

TEST(OptionsEntry, TypesAreSavedAsAListOrNotAtAll) {
    const std::string queue =
        "\n[QUEUEMAN]\nTelnumType: National        \"Inland\"\nTelnumType: International   \"Far\"\n";
    const std::string complete = Complete();
    const std::string before = Replaced(complete, "\n[QUEUEMAN]\n", queue);
    SetupServer server(before);
    OptionsEntry entry;
    ASSERT_TRUE(entry.Load());
    TelephoneTypes types = *entry.Types();
    std::swap(types[0], types[1]);
    entry.SetTypes(types);
    server.Front.TakeSaid();
    EXPECT_TRUE(entry.Save());
    EXPECT_THAT(server.Front.Said.front(), HasSubstr("\"Far\" will be read as International2 from now on"));
    EXPECT_THAT(server.GetSetup(),
                HasSubstr("\nTelnumType: International1  \"Far\"\nTelnumType: National1       \"Inland\"\n"));

    entry.SetTypes({});
    server.PutSetup(Replaced(before, "National ", "Nowhere  "));
    EXPECT_FALSE(entry.Save()) << "on top of a list that cannot be read by now";
    ASSERT_TRUE(entry.Load());
    EXPECT_EQ(entry.Types(), std::nullopt);
    Enter(entry, "QUEUEMAN/SendTries", "3");
    EXPECT_TRUE(entry.Save());
    EXPECT_THAT(server.GetSetup(), HasSubstr("TelnumType: Nowhere"));
}

TEST(OptionsEntry, ASaveThatFailsInItsMiddleSaysWhatWasSavedAndKeepsTheRest) {
    SetupServer server(Complete());
    OptionsEntry entry;
    ASSERT_TRUE(entry.Load());
    Enter(entry, "OPTIONS/LogKeepDays", "14");
    Enter(entry, "QUEUEMAN/SendTries", "3");
    Enter(entry, "WORKSTATION/CoverMaxLine", "7");
    std::string said;
    for (int call = 1; said.find("OPTIONS/LogKeepDays\n") == said.npos && call < 40; ++call) {
        test::FaultyFiles failing(server.Files, {test::FaultKind::FailFromThenOn, call});
        const platform::Substitute<platform::FileSystem> use(failing);
        EXPECT_FALSE(entry.Save());
        ASSERT_TRUE(entry.IsChanged());
        said = server.Front.TakeSaid().back();
    }
    EXPECT_EQ(said, "warning: These settings were saved:\nOPTIONS/LogKeepDays\n\nThese were not:\n"
                    "QUEUEMAN/SendTries, WORKSTATION/CoverMaxLine");
    EXPECT_TRUE(entry.Save());
    for (const char* line : {"LogKeepDays: 14\n", "SendTries: 3\n", "CoverMaxLine: 7\n"})
        EXPECT_THAT(server.GetSetup(), HasSubstr(line));
}

TEST(OptionsEntry, WhatDoesNotGoTogetherIsToldOrAskedAbout) {
    struct Case {
        std::vector<std::pair<std::string, std::string>> Entered;
        const char* Wrong; // none: nothing is
        std::string Said;  // "" nothing
    };
    const Case cases[] = {
        {{{"OPTIONS/HPScan", "YES"}}, "HPSCAN/Directory", "error: Directory: scanner input needs a directory."},
        {{{"BSUBMIT/User", "NOBODY"}}, "BSUBMIT/User", "error: Brivane user NOBODY not found"},
        {{{"QUEUEMAN/ArchiveSentPath", "D:\\NONE\\"}},
         nullptr,
         "ask question: Directory D:\\NONE\\ is not there.\n\nMake it now?"},
        {{{"QUEUEMAN/ArchiveSentPath", "F:\\BRIVANE\\B-DB\\"}}, nullptr, ""},
        {{{"EPSTIFF/AsciiTopMargin", "70"}},
         "EPSTIFF/AsciiTopMargin",
         "ask question: Margins of 72 lines leave no room on a page of 72 - Would you like to continue?"},
        {{{"EPSTIFF/AsciiTopMargin", "69"}}, nullptr, ""},
    };
    const std::string before = Complete();
    for (const auto& [entered, wrong, said] : cases) {
        SetupServer server(before);
        server.Put("F:\\BRIVANE\\B-DB\\USERLIST.INI", "");
        OptionsEntry entry;
        ASSERT_TRUE(entry.Load());
        server.Front.TakeSaid();
        for (const auto& [path, text] : entered) Enter(entry, path, text);
        EXPECT_EQ(entry.Check(), wrong == nullptr ? nullptr : &Key(wrong));
        EXPECT_EQ(server.Front.Said.empty() ? "" : server.Front.Said.back(), said);
    }
}

TEST(OptionsEntry, ATypeIsDescribedOnceAndByAWordThatIsKept) {
    const SetupServer server("");
    const TelephoneTypes types = {{1, "Here"}, {11, "Far"}};
    const std::tuple<std::size_t, const char*, const char*, const char*> cases[] = {
        {2, "National1", "Inland", ""},
        {2, "local", "There", "error: Type: there is a description of local already."},
        {0, "local", "There", ""},
        {1, "International1", "Very far", ""}, // as it was
        {0, "International1", "x", "error: International1 cannot be kept: International2 would come back"},
        {2, "International2", "a\"b", "error: TelnumType: \"a\"b\" is not"},
    };
    test::RecordingFront front;
    for (const auto& [place, word, description, said] : cases) {
        EXPECT_EQ(EnterType(types, place, word, description).has_value(), *said == '\0') << word;
        const std::vector<std::string> all = front.TakeSaid();
        EXPECT_THAT(all.empty() ? "" : all.back(), StartsWith(said));
    }
    EXPECT_FALSE(EnterType(TelephoneTypes(20, {1, "x"}), 20, "National1", ""));
    EXPECT_EQ(KeptTypeWords().size(), 18u);
}

TEST(OptionsEntry, OptionsAreFoundByTheirWords) {
    const std::tuple<const char*, std::size_t, const char*> cases[] = {
        {"", OptionKeys().size() + 7, "LogKeepDays"},
        {"sendtries", 1, "SendTries"},
        {"SENT directory", 1, "ArchiveSentPath"},
        {"groups", 1, "UserGroupIdentifier"},
        {"off-peak", 1, "Offpeak"},
        {"telnum", 1, "TelnumType"},
    };
    for (const auto& [words, count, first] : cases) {
        const std::vector<OptionHit> hits = FindOptions(words);
        EXPECT_EQ(hits.size(), count) << words;
        EXPECT_NE(std::ranges::find(hits, first, &OptionHit::Key), hits.end()) << words;
    }
    EXPECT_THAT(FindOptions("sent nothing"), IsEmpty());
}

TEST(OptionsEntry, FactsAreThoseOfTheServer) {
    SetupServer server("");
    server.Put("F:\\BRIVANE\\SERVER\\VERSION.DAT", "[VERSION]\r\nServer: 5.50a\r\n");
    std::string facts;
    for (const ServerFact& fact : ReadServerFacts({}))
        facts.append(fact.Source).append("=").append(fact.Value).append("\n");
    for (const char* fact : {"UserGroupIdentifier=@\n", "VERSION.DAT=5.50a\n", "BRIVANE.INI=F:\\BRIVANE\\SERVER\\\n"})
        EXPECT_THAT(facts, HasSubstr(fact));
}

TEST(OptionsEntry, TheHelpPagesSayOfEachKeyWhatTheTableSays) {
    std::vector<std::pair<int, int>> pages = {{static_cast<int>(OptionPage::MailGateway), 450}}; // and their contexts
    for (int page = 0; page <= static_cast<int>(OptionPage::TelephoneNumbers); ++page)
        pages.emplace_back(page, 401 + page);
    for (const auto& [page, context] : pages) {
        std::vector<std::string> expected;
        for (const OptionKey& key : OptionKeys())
            if (static_cast<int>(key.Page) == page && key.Trait != OptionKey::Traits::OnlyRead)
                expected.push_back(HelpRowOf(HelpOf(key)));
        EXPECT_THAT(test::HelpRows(context, context), testing::UnorderedElementsAreArray(expected));
    }
}

} // namespace
} // namespace bv
