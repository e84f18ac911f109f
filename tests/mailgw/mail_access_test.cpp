// The mail system's access layer, on libraries of the test's own.
#include "mailgw/mail_access.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <set>
#include <thread>

#include <gmock/gmock.h>

#include "ctlfile/scramble.h"
#include "mailgw/fake_mail.h"
#include "mailgw/mail_login.h"
#include "mailgw/notes_settings.h"
#include "platform/libraries.h"
#include "support/memory_server.h"

namespace bv {
namespace {

using mapi::Error;
using test::MemoryServer;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Texts = std::vector<std::string>;
using Faults = std::map<std::string, Error>;
using EntryMap = std::map<std::string, PlainEntry>;

// What the libraries of the test answer, and what they were called with.
struct Answers : test::MailPartner {
    Texts Calls;
    Faults Fail; // by entry
    std::function<void()> WhileLoggingOn = [] {};

    Texts TakeCalls() { return std::exchange(Calls, {}); }
};
Answers* answers = nullptr;

Error NoteCall(const char* entry, const char* details) {
    answers->Calls.push_back(*details == '\0' ? entry : entry + std::string(" ") + details);
    if (entry == std::string("Logon")) answers->WhileLoggingOn();
    const auto fail = answers->Fail.find(entry);
    return fail == answers->Fail.end() ? 0 : fail->second;
}

EntryMap MapOf(const std::vector<test::MailEntry>& entries) {
    EntryMap map;
    for (const auto& [name, entry] : entries) map[name] = entry;
    return map;
}
const EntryMap kMapi = MapOf(test::MapiEntries());
const EntryMap kNotes = MapOf(test::NotesEntries());

class TestLibraries final : public platform::Libraries {
  public:
    std::map<std::string, EntryMap> There;
    Texts Asked;
    int Loaded = 0;

    std::unique_ptr<platform::Library> Load(const std::string& name) override {
        Asked.push_back(name);
        const auto found = There.find(name);
        return found == There.end() ? nullptr : std::make_unique<Library>(*this, found->second);
    }
    unsigned long LastError() override { return 126; }

  private:
    class Library final : public platform::Library {
      public:
        Library(TestLibraries& all, EntryMap entries) : all_(all), entries_(std::move(entries)) { ++all_.Loaded; }
        ~Library() override { --all_.Loaded; }
        Library(const Library&) = delete;
        Library& operator=(const Library&) = delete;
        PlainEntry Entry(const std::string& name) override {
            const auto found = entries_.find(name);
            return found == entries_.end() ? nullptr : found->second;
        }

      private:
        TestLibraries& all_;
        EntryMap entries_;
    };
};

// Who waits for a session over window 5, and gives up when that is called for.
class OverWindow final : public MailWait {
  public:
    bool GivesUp = false;
    std::uintptr_t Begin(const std::string&) override { return 5; }
    bool GoesOn() override { return !GivesUp; }
};

class MailAccess : public testing::Test {
  protected:
    MailAccess() {
        answers = &answers_;
        answers_.Call = NoteCall;
        UseMailPartner(&answers_);
        server_.Put("F:\\BRIVANE\\nNOTES.DLL", "");
        libraries_.There = {{"MAPI32.DLL", kMapi}, {"BVLNAPI.DLL", kNotes}, {"VIM32.DLL", {}}, {"CMC32.DLL", {}}};
        ConfiguredMailType() = 2;
    }
    ~MailAccess() override {
        answers_.Fail.clear();
        MailTerm();
        EXPECT_EQ(libraries_.Loaded, 0);
        EXPECT_EQ(answers_.Buffers, 0);
        ConfiguredMailType() = 2;
    }

    void Open(int type) {
        ConfiguredMailType() = type;
        ASSERT_EQ(MailInit(5, "gate", "", false), kDone);
        answers_.TakeCalls();
    }

    Answers answers_;
    OverWindow wait_;
    MemoryServer server_;
    TestLibraries libraries_;
    platform::Substitute<platform::Libraries> use_{libraries_};
};

TEST_F(MailAccess, LoadsTheLibraryThatWinIniNames) {
    const std::string all = "[other]\nMAPIDLL32=NO.DLL\n[MAIL]\r\nvimdllname32 = \"V.DLL\" \nMAPIDLLName32=\r\n"
                            "MAPIDLL32=M.DLL\n;MAPIDLLName32=X\nCMCDLLName32='C.DLL'\n[Mail]\nMAPIDLLName32=LATE.DLL\n";
    const struct {
        int Type;
        std::string WinIni;
        std::string Library;
    } rows[] = {
        {1, "", "VIM32.DLL"},
        {2, "", "MAPI32.DLL"},
        {3, "[Mail]\r\n", "CMC32.DLL"},
        {4, all, "BVLNAPI.DLL"},
        {1, all, "V.DLL"},
        {2, all, "M.DLL"},
        {3, all, "C.DLL"},
        {2, "[Mail]\nMAPIDLL32=M.DLL\nMAPIDLLName32= N.DLL", "N.DLL"},
        {2, "[Mail]\nMAPIDLLName32=" + std::string(300, 'N'), std::string(268, 'N')},
        {2, std::string("[Mail]\0\nMAPIDLLName32\n=\n[", 26), "MAPI32.DLL"},
    };
    libraries_.There.clear();
    for (const auto& [type, winIni, library] : rows) {
        server_.Put("C:\\WINDOWS\\WIN.INI", winIni);
        ConfiguredMailType() = type;
        EXPECT_EQ(MailInit(0, "", "", false), kMailLibraryFailed);
        EXPECT_EQ(libraries_.Asked.back(), library);
        EXPECT_THAT(server_.Front.TakeSaid(),
                    ElementsAre("error: Unable to load mail DLL " + library + " (error #126)"));
    }
    for (const int type : {0, 5, 7, -1}) {
        ConfiguredMailType() = type;
        EXPECT_EQ(MailInit(0, "", "", false), kMailTypeInvalid);
        EXPECT_THAT(server_.Front.TakeSaid(), ElementsAre("error: Invalid mail type " + std::to_string(type)));
    }
}

TEST_F(MailAccess, NeedsEveryEntryButTheOptionalOnes) {
    const std::set<std::string> optional = {"MAPIInitialize", "MAPIUninitialize", "ScMAPIXFromSMAPI",
                                            "MailLNotesDatabaseReopenDLL"};
    for (const int type : {2, 4}) {
        ConfiguredMailType() = type;
        for (const auto& [missing, entry] : type == 2 ? kMapi : kNotes) {
            EntryMap& there = libraries_.There[type == 2 ? "MAPI32.DLL" : "BVLNAPI.DLL"];
            there.erase(missing);
            const bool isOptional = optional.contains(missing);
            EXPECT_EQ(MailInit(0, "", "", false), isOptional ? kDone : kMailLibraryFailed) << missing;
            const std::string name = type == 2 ? missing : missing.substr(0, missing.size() - 3);
            const Texts said = {"status 1: Function " + name + " missing from mail DLL"};
            EXPECT_THAT(server_.Front.TakeSaid(), ElementsAreArray(isOptional ? Texts() : said));
            EXPECT_EQ(libraries_.Loaded, isOptional ? 1 : 0);
            MailTerm();
            there[missing] = entry;
        }
    }
}

TEST_F(MailAccess, LogsOnAndOffWithExtendedMapiWhereItCan) {
    const Texts plain = {"Logon 5 gate (none) 2", "Logoff 7777777777"};
    const struct {
        const char* What;
        const char* Missing;
        Faults Fail;
        bool GivesNothing;
        Texts Calls;
    } rows[] = {
        {"all", "", Faults{}, false,
         Texts{"Initialize", "Logon 5 gate (none) 2", "OpenExtended 7777777777", "Release", "Logoff 7777777777",
               "Uninitialize"}},
        {"no session", "", Faults{}, true,
         Texts{"Initialize", "Logon 5 gate (none) 2", "OpenExtended 7777777777", "Logoff 7777777777", "Uninitialize"}},
        {"half a pair", "MAPIUninitialize", {}, false, plain},
        {"the other half", "MAPIInitialize", {}, false, plain},
        {"not initialised", "", Faults{{"Initialize", 0x80004005}}, false,
         Texts{"Initialize", "Logon 5 gate (none) 2", "Logoff 7777777777"}},
        {"refused", "", Faults{{"OpenExtended", 0x80004005}}, false,
         Texts{"Initialize", "Logon 5 gate (none) 2", "OpenExtended 7777777777", "Logoff 7777777777", "Uninitialize"}},
    };
    for (const auto& [what, missing, fail, givesNothing, calls] : rows) {
        libraries_.There["MAPI32.DLL"] = kMapi;
        libraries_.There["MAPI32.DLL"].erase(missing);
        answers_.Fail = fail;
        answers_.GivesNothing = givesNothing;
        EXPECT_EQ(MailInit(5, "gate", "secret", false), kDone) << what;
        EXPECT_EQ(MailInit(6, "other", "", true), kDone) << "at once";
        EXPECT_EQ(MailTerm(), kDone);
        EXPECT_THAT(answers_.TakeCalls(), ElementsAreArray(calls)) << what;
        EXPECT_THAT(server_.Front.TakeSaid(), IsEmpty());
        EXPECT_EQ(libraries_.Loaded, 0);
    }
    answers_.Fail = {{"Logon", 3}};
    EXPECT_EQ(MailInit(0, "", "", true), kMailLogonFailed);
    EXPECT_THAT(answers_.TakeCalls(), ElementsAre("Initialize", "Logon 0 (none) (none) 3", "Uninitialize"));
    EXPECT_THAT(server_.Front.TakeSaid(), ElementsAre("status 1: Logon to MAPI failed (3)"));
    EXPECT_EQ(libraries_.Loaded, 0);
    answers_.Fail = {{"Logoff", 4}};
    EXPECT_EQ(MailInit(0, "", "", true), kDone);
    EXPECT_EQ(MailTerm(), kMailFailed);
    EXPECT_THAT(server_.Front.TakeSaid(), ElementsAre("status 1: Logoff from MAPI failed (4)"));
    EXPECT_EQ(MailTerm(), kMailNotInitialised);
}

TEST_F(MailAccess, SurvivesWhatALibraryShouldNotDo) {
    Open(2);
    MailMessage message;
    std::string id;
    std::vector<MailRecipient> chosen(2);
    MailRecipient recipient;
    const auto expectRefused = [&](const char* what) {
        id.clear();
        EXPECT_EQ(MailReadNext(id, message), kMailFailed) << what;
        EXPECT_EQ(id, "") << what;
        EXPECT_EQ(MailPickAddresses("Users", chosen), kMailFailed) << what;
        EXPECT_EQ(chosen.size(), 2U) << what;
    };
    answers_.Recipients = 0xFFFFFFFF;
    expectRefused("nonsense counts");
    answers_.Recipients = 1;
    answers_.GivesNothing = true;
    expectRefused("no results");
    EXPECT_EQ(MailResolveName("Ann", false, recipient), kMailFailed);
    answers_.GivesNothing = false;
    answers_.Fail = {{"FindNext", 2}, {"Address", 2}, {"ResolveName", 14}, {"SendMail", 2}, {"DeleteMail", 2}};
    expectRefused("errors");
    EXPECT_EQ(MailResolveName("Ann", false, recipient), kMailFailed);
    EXPECT_EQ(server_.Front.TakeSaid().back(), "status 1: Mail name could not be resolved (14)");
    EXPECT_EQ(MailSend({}), kMailFailed);
    EXPECT_EQ(MailDelete("x"), kMailFailed);
    answers_.Fail.clear();
    answers_.WalksInCircles = true;
    EXPECT_EQ(MailTidyFolder(0, "old"), kMailFailed);
}

TEST_F(MailAccess, TidiesAFolder) {
    const std::string logon = "status 1: Mail logon failed while doing mail system maintenance";
    const std::string logoff = "status 1: Mail logoff failed while doing mail system maintenance";
    const std::string other = "status 1: Error doing mail system maintenance";
    Open(2);
    EXPECT_EQ(MailTidyFolder(2, "old"), kDone);
    EXPECT_THAT(answers_.TakeCalls(),
                ElementsAre("Logon 5 gate (none) 2", "FindNext 7777777777 (none)", "ReadMail m0 C0",
                            "FindNext 7777777777 m0", "ReadMail m1 C0", "FindNext 7777777777 m1", "ReadMail m2 C0",
                            "FindNext 7777777777 m2", "DeleteMail 7777777777 m0", "DeleteMail 7777777777 m2",
                            "Logoff 7777777777"));
    const std::tuple<std::string, StatusCode, std::string> faults[] = {{"Logon", kMailLogonFailed, logon},
                                                                       {"Logoff", kMailFailed, logoff},
                                                                       {"FindNext", kMailFailed, other},
                                                                       {"ReadMail", kMailFailed, other},
                                                                       {"DeleteMail", kMailFailed, other}};
    for (const auto& [entry, status, said] : faults) {
        answers_.Fail = {{entry, 2}};
        EXPECT_EQ(MailTidyFolder(0, "old"), status) << entry;
        EXPECT_THAT(server_.Front.TakeSaid(), ElementsAre(said));
    }
    answers_.Fail.clear();
    MailTerm();

    Open(4);
    EXPECT_EQ(MailTidyFolder(1, "old"), kDone);
    EXPECT_THAT(answers_.TakeCalls(), ElementsAre("Reopen", "Clear Waste old"));
    answers_.Fail = {{"Reopen", 1}};
    EXPECT_EQ(MailTidyFolder(1, "old"), kMailLogonFailed);
    answers_.Fail = {{"Clear", 1}};
    EXPECT_EQ(MailTidyFolder(9, "old"), kMailFailed);
    EXPECT_EQ(answers_.Calls.back(), "Clear Unknown old");
    EXPECT_THAT(server_.Front.TakeSaid(), ElementsAre(logon, other));
    answers_.Fail.clear();
    EXPECT_EQ(MailFolderName(0), "Outbox");
}

TEST_F(MailAccess, WhatIsNotSupportedSaysSo) {
    MailMessage message;
    MailRecipient recipient;
    std::vector<MailRecipient> chosen;
    std::string id;
    const auto operations = [&] {
        return std::vector<StatusCode>{MailSend(message),
                                       MailReadNext(id, message),
                                       MailDelete("m0"),
                                       MailTidyFolder(0, "old"),
                                       MailResolveName("A", false, recipient),
                                       MailPickAddresses("A", chosen)};
    };
    EXPECT_THAT(operations(), testing::Each(kMailNotInitialised));
    EXPECT_THAT(server_.Front.TakeSaid(), IsEmpty());
    for (const int type : {1, 3}) {
        Open(type);
        EXPECT_THAT(operations(), testing::Each(kMailNotSupported));
        const std::string said = std::string(type == 1 ? "VIM" : "CMC") + " support not fully implemented yet";
        EXPECT_THAT(server_.Front.TakeSaid(), ElementsAreArray(Texts(6, "status 1: " + said)));
        EXPECT_EQ(MailTerm(), kDone);
    }
    Open(4);
    EXPECT_THAT(operations(), ElementsAre(kDone, kDone, kDone, kDone, kMailNotSupported, kMailNotSupported));
    EXPECT_THAT(server_.Front.TakeSaid(),
                ElementsAreArray(Texts(2, "status 1: Lotus Notes API support not fully implemented yet")));
}

TEST_F(MailAccess, ReachesNotesByItsBridge) {
    ConfiguredMailType() = 4;
    EXPECT_EQ(MailInit(0, "gate", "pw", false), kNotesPasswordRefused);
    EXPECT_THAT(server_.Front.TakeSaid(),
                ElementsAre("status 1: Unable to logon to Lotus Notes accounts with passwords on non-NT systems"));
    EXPECT_THAT(answers_.TakeCalls(), IsEmpty());
    server_.Environment.Variables["OS"] = "Windows_NT";
    EXPECT_EQ(MailInit(0, "gate", "pw", false), kDone);
    EXPECT_THAT(answers_.TakeCalls(), ElementsAre("PreInit", "Init gate pw"));
    std::string id;
    MailMessage message;
    EXPECT_EQ(MailReadNext(id, message), kDone);
    EXPECT_EQ(id + message.Subject, "m2OLD");
    EXPECT_EQ(MailReadNext(id, message), kDone);
    EXPECT_EQ(id, "");
    answers_.GivesNothing = true;
    EXPECT_EQ(MailReadNext(id, message), kMailFailed);
    answers_.TakeCalls();
    EXPECT_EQ(MailTerm(), kDone);
    EXPECT_THAT(answers_.TakeCalls(), ElementsAre("Term", "PostTerm"));
    answers_.Fail = {{"Init", 1}};
    EXPECT_EQ(MailInit(0, "gate", "", false), kMailLogonFailed);
    EXPECT_THAT(answers_.TakeCalls(), ElementsAre("PreInit", "Init gate ", "PostTerm"));
}

TEST_F(MailAccess, LooksForNotesAlsoInItsOwnDirectory) {
    ConfiguredMailType() = 4;
    server_.Files.Delete("F:\\BRIVANE\\nNOTES.DLL");
    server_.Environment.Variables["PATH"] = "C:\\A;;D:\\B";
    EXPECT_EQ(MailInit(0, "", "", false), kNotesNotFound);
    EXPECT_THAT(server_.Front.TakeSaid(), ElementsAre("error: Could not find file 'nNOTES.DLL'. Try modifying your "
                                                      "path environment variable manually"));
    EXPECT_THAT(libraries_.Asked, IsEmpty());
    EXPECT_EQ(server_.Environment.Variables["PATH"], "C:\\A;;D:\\B");
    server_.Put("C:\\WINDOWS\\NOTES.INI", "[Notes]\r\nDirectory=C:\\Notes\r\n");
    server_.Put("C:\\Notes\\nNOTES.DLL", "");
    EXPECT_EQ(MailInit(0, "", "", false), kDone);
    EXPECT_EQ(server_.Environment.Variables["PATH"], "C:\\A;;D:\\B;C:\\Notes");
}

TEST_F(MailAccess, ReadsTheSettingsOfNotes) {
    server_.Put("C:\\WINDOWS\\NOTES.INI", "[NOTES]\r\nLocation=Office, 2A,CN=Ann\r\nKeyFileName=ann.id\r\n"
                                          "MailFile=mail\\ann.nsf\r\nMailServer=CN=Post/OU=N/O=Org\r\n");
    const struct {
        std::optional<std::string_view> File;
        std::optional<std::string_view> Server;
        bool Matches;
    } rows[] = {
        {{}, {}, true},          {"MAIL\\ann.nsf", {}, true},           {"ann.nsf", {}, false},
        {{}, "post/ou=n", true}, {{}, "cn=POST/ou=N/o=Other", true},    {{}, "Post", false},
        {"", {}, false},         {"mail\\ann.nsf", "Post/OU=M", false},
    };
    for (const auto& [file, server, matches] : rows) {
        FixedText<100> keyFile;
        FixedText<3> location;
        EXPECT_EQ(ReadNotesSettings(keyFile, location, file, server), matches);
        EXPECT_EQ(keyFile, "ann.id");
        EXPECT_EQ(location, "Off");
    }
    EXPECT_EQ(CommonServerName("CN=Post/O=Org/X"), "Post");
    EXPECT_EQ(CommonServerName("Post/O=Org"), "Post/O=Org");
}

TEST_F(MailAccess, ALogInIsTestedAndEndsAgain) {
    const std::string stored = *ScrambleForPage("secret");
    const struct {
        MailLogin Login;
        Faults Fail;
        Texts Calls;
        Texts Said;
    } rows[] = {
        {{"EXCHANGE", "gate", {"typed", false}},
         {},
         {"Initialize", "Logon 5 gate (none) 2", "OpenExtended 7777777777", "Release", "Logoff 7777777777",
          "Uninitialize"},
         {"status 1: Logging into mail system", "status 1: Logged into the mail system, and out again"}},
        {{"lotus_notes_api", "gate", {stored, true}},
         {},
         {"PreInit", "Init gate secret", "Term", "PostTerm"},
         {"status 1: Logging into mail system", "status 1: Logged into the mail system, and out again"}},
        {{"MSMAIL", "", {}},
         {{"Logon", 2}},
         {"Initialize", "Logon 5 (none) (none) 2", "Uninitialize"},
         {"status 1: Logging into mail system", "status 1: Logon to MAPI failed (2)"}},
        {{"MAPI", "", {"*", true}},
         {},
         {},
         {"error: Error with initialisation file settings - please re-enter password"}},
        {{"CCMAIL", "x", {}}, {}, {}, {"warning: Mail system CCMAIL cannot be tested from this workstation."}},
        {{"GATEWAY", "x", {}}, {}, {}, {"warning: Mail system GATEWAY cannot be tested from this workstation."}},
        {{"", "x", {}}, {}, {}, {"error: No mail system is chosen"}},
    };
    server_.Environment.Variables["OS"] = "Windows_NT";
    ConfiguredMailType() = 3;
    for (const auto& [login, fail, called, said] : rows) {
        answers_.Fail = fail;
        EXPECT_EQ(TestMailLogin(login, wait_), said.back().ends_with("out again")) << login.System;
        EXPECT_THAT(answers_.TakeCalls(), ElementsAreArray(called)) << login.System;
        EXPECT_THAT(server_.Front.TakeSaid(), ElementsAreArray(said)) << login.System;
        EXPECT_EQ(ConfiguredMailType(), 3) << "as it was before";
    }
    libraries_.There.erase("MAPI32.DLL");
    EXPECT_FALSE(TestMailLogin({"MAPI", "", {}}, wait_));
    EXPECT_THAT(server_.Front.TakeSaid(), ElementsAre("error: Unable to load mail DLL MAPI32.DLL (error #126)"));
}

TEST_F(MailAccess, FoldersAreClearedAndNamesPickedInASessionOfTheirOwn) {
    const MailLogin login{"MAPI", "gate", {}};
    EXPECT_FALSE(ClearMailFolder(login, 1, "new", wait_));
    EXPECT_THAT(answers_.TakeCalls(), IsEmpty()) << "not agreed";
    server_.Front.Answer = true;
    EXPECT_TRUE(ClearMailFolder(login, 1, "new", wait_));
    EXPECT_THAT(answers_.TakeCalls(), testing::Contains(testing::StartsWith("DeleteMail")));
    EXPECT_EQ(server_.Front.TakeSaid().back(),
              "status 1: Deleted the messages with the subject \"new\" from folder Waste");
    EXPECT_EQ(PickMailNames(login, wait_).size(), 1U);
    answers_.Fail = {{"Address", 1}};
    EXPECT_THAT(PickMailNames(login, wait_), IsEmpty()) << "cancelled";
    EXPECT_EQ(MailTerm(), kMailNotInitialised);
}

TEST_F(MailAccess, ALogInThatHangsCanBeGivenUp) {
    const MailLogin login{"MAPI", "gate", {}};
    std::atomic<bool> isBack = false;
    answers_.WhileLoggingOn = [&isBack] {
        while (!isBack) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    };
    server_.Front.Answer = true;
    wait_.GivesUp = true;
    EXPECT_FALSE(ClearMailFolder(login, 1, "new", wait_));
    EXPECT_EQ(server_.Front.TakeSaid().back().find("status 1: Given up"), 0U);
    EXPECT_FALSE(TestMailLogin(login, wait_)) << "while the first one is in the library";
    EXPECT_EQ(server_.Front.TakeSaid().back().find("error: The mail system has not come back yet"), 0U);
    isBack = true;
    wait_.GivesUp = false;
    while (!TestMailLogin(login, wait_)) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const Texts once = {"Initialize", "Logon 5 gate (none) 3", "OpenExtended 7777777777",
                        "Release",    "Logoff 7777777777",     "Uninitialize"};
    Texts all = once; // without the work
    all.insert(all.end(), once.begin(), once.end());
    all[7] = "Logon 5 gate (none) 2";
    EXPECT_THAT(answers_.TakeCalls(), ElementsAreArray(all));
}

TEST_F(MailAccess, TheLibraryOfThisWorkstationIsDescribed) {
    server_.Put("C:\\WINDOWS\\WIN.INI", "[Mail]\r\nVIMDLLName32=V.DLL\r\n");
    server_.Put("C:\\WINDOWS\\NOTES.INI", "[Notes]\r\nLocation=Office,2\r\nKeyFileName=ann.id\r\n");
    const std::pair<const char*, const char*> rows[] = {
        {"", "No mail system is chosen"},
        {"GATEWAY", "Mail system GATEWAY cannot be tested from this workstation."},
        {"EXCHANGE", "MAPI32.DLL, the usual one (WIN.INI names none, [Mail] MAPIDLL32): found"},
        {"CCMAIL", "V.DLL, as WIN.INI has it ([Mail] VIMDLLName32): cannot be loaded (error 126)"},
        {"LOTUS_NOTES_API", "BVLNAPI.DLL: found. NOTES.INI: Location Office, KeyFileName ann.id"},
    };
    for (const auto& [system, text] : rows) EXPECT_EQ(DescribeMailLibrary(system), text);
}

} // namespace
} // namespace bv
