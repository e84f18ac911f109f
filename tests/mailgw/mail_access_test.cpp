// The mail system's access layer, on libraries of the test's own.
#include "mailgw/mail_access.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>

#include <gmock/gmock.h>

#include "mailgw/notes_settings.h"
#include "platform/libraries.h"
#include "shell/format.h"
#include "support/memory_server.h"

namespace bv {
namespace {

using mapi::Error;
using mapi::Flags;
using mapi::Handle;
using test::MemoryServer;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

// What the libraries of the test answer, and what they were called with.
struct Answers {
    Texts Calls;
    std::map<std::string, Error> Fail; // by entry
    Texts Box = {"Old", "new", "OLD"}; // the subjects of the messages; a message's id is "m" and its index
    bool WalksInCircles = false;
    std::uint32_t Recipients = 1; // that a read message and the address book say they have
    bool GivesNothing = false;    // success without a result
    int Buffers = 0;              // handed out and not freed

    Error Call(const std::string& entry, const std::string& detail = {}) {
        Calls.push_back(detail.empty() ? entry : entry + " " + detail);
        const auto fail = Fail.find(entry);
        return fail == Fail.end() ? 0 : fail->second;
    }
    Texts TakeCalls() { return std::exchange(Calls, {}); }
};
Answers* answers = nullptr;

std::string OrNone(const char* text) { return text == nullptr ? "(none)" : text; }

mapi::RecipientDescription aRecipient;
mapi::FileDescription aFile;
mapi::Message aMessage;
char aName[] = "Ann A";
char anAddress[] = "SMTP:ann";
char anId[] = "id\0x";
char aText[] = "Hello";
char aPath[] = "C:\\T\\A.TIF";

mapi::RecipientDescription* Handed() {
    aRecipient = {0, 1, aName, anAddress, sizeof anId - 1, anId};
    ++answers->Buffers;
    return &aRecipient;
}

std::int32_t Initialize(void*) { return static_cast<std::int32_t>(answers->Call("Initialize")); }
void Uninitialize() { answers->Call("Uninitialize"); }
Error Logon(Handle window, char* profile, char* password, Flags flags, std::uint32_t, Handle* session) {
    *session = 77;
    return answers->Call("Logon", FormatText("%d %s %s %d", window, OrNone(profile), OrNone(password), flags));
}
Error Logoff(Handle session, Handle, Flags, std::uint32_t) { return answers->Call("Logoff", std::to_string(session)); }
Error SendMail(Handle session, Handle, mapi::Message* message, Flags, std::uint32_t) {
    std::string detail = FormatText("%d %s|%s|%s", session, OrNone(message->Subject), OrNone(message->NoteText),
                                    OrNone(message->MessageType));
    for (std::uint32_t i = 0; i < message->RecipientCount; ++i) {
        const mapi::RecipientDescription& to = message->Recipients[i];
        detail += FormatText(" to %d %s %s %d", to.Class, OrNone(to.Name), OrNone(to.Address), to.EntryIdSize);
    }
    for (std::uint32_t i = 0; i < message->FileCount; ++i) {
        const mapi::FileDescription& file = message->Files[i];
        detail += FormatText(" file %s %s %X", OrNone(file.PathName), OrNone(file.FileName), file.Position);
    }
    return answers->Call("SendMail", detail);
}
Error Address(Handle, Handle, char* caption, std::uint32_t, char*, std::uint32_t count, mapi::RecipientDescription*,
              Flags, std::uint32_t, std::uint32_t* chosenCount, mapi::RecipientDescription** chosen) {
    const Error error = answers->Call("Address", FormatText("%s %d", caption, count));
    *chosenCount = answers->Recipients;
    *chosen = answers->GivesNothing || error != 0 ? nullptr : Handed();
    return error;
}
Error FindNext(Handle session, Handle, char*, char* seed, Flags, std::uint32_t, char* id) {
    if (const Error error = answers->Call("FindNext", FormatText("%d %s", session, OrNone(seed)))) return error;
    const std::size_t next = seed == nullptr ? 0 : static_cast<std::size_t>(seed[1] - '0') + 1;
    if (next >= answers->Box.size() && !answers->WalksInCircles) return mapi::kNoMessages;
    id[0] = 'm';
    id[1] = static_cast<char>('0' + next % answers->Box.size());
    return 0;
}
Error ReadMail(Handle, Handle, char* id, Flags flags, std::uint32_t, mapi::Message** message) {
    if (const Error error = answers->Call("ReadMail", FormatText("%s %X", id, flags))) return error;
    if (answers->GivesNothing) return 0;
    aMessage = {};
    aMessage.Subject = answers->Box[static_cast<std::size_t>(id[1] - '0')].data();
    aMessage.NoteText = aText;
    aMessage.Originator = Handed();
    aMessage.RecipientCount = answers->Recipients;
    aMessage.Recipients = &aRecipient;
    aFile = {0, 0, 3, aPath, nullptr, nullptr};
    aMessage.FileCount = 1;
    aMessage.Files = &aFile;
    *message = &aMessage;
    return 0;
}
Error DeleteMail(Handle session, Handle, char* id, Flags, std::uint32_t) {
    return answers->Call("DeleteMail", FormatText("%d %s", session, id));
}
Error ResolveName(Handle, Handle, char* name, Flags flags, std::uint32_t, mapi::RecipientDescription** resolved) {
    const Error error = answers->Call("ResolveName", FormatText("%s %d", name, flags));
    if (error == 0 && !answers->GivesNothing) *resolved = Handed();
    return error;
}
Error FreeBuffer(void*) {
    --answers->Buffers;
    return 0;
}
std::uint32_t Release(mapi::ExtendedSession*) { return answers->Call("Release"); }
mapi::ExtendedSession::Methods extendedMethods = {nullptr, nullptr, Release};
mapi::ExtendedSession extendedSession = {&extendedMethods};
std::int32_t OpenExtended(Handle session, Flags, const void*, mapi::ExtendedSession** opened) {
    *opened = answers->GivesNothing ? nullptr : &extendedSession;
    return static_cast<std::int32_t>(answers->Call("OpenExtended", std::to_string(session)));
}

int NotesResult(const std::string& entry, const std::string& detail = {}) {
    return static_cast<int>(answers->Call(entry, detail));
}
int NotesInit(const char* profile, const char* password) {
    return NotesResult("Init", std::string(profile) + " " + password);
}
int NotesTerm() { return NotesResult("Term"); }
int NotesRead(char* id, mapi::Message** message) {
    const std::string after = id;
    id[0] = '\0';
    if (after != "m2") std::memcpy(id, "m2", 3);
    if (after != "m2" && !answers->GivesNothing) {
        ReadMail(0, 0, id, 0, 0, message);
        --answers->Buffers; // what the bridge hands out stays its own
    }
    return NotesResult("Read", after);
}
int NotesSend(mapi::Message* message) { return NotesResult("Send", message->Subject); }
int NotesDelete(const char* id) { return NotesResult("Delete", id); }
int NotesClear(const char* folder, const char* subject) {
    return NotesResult("Clear", std::string(folder) + " " + subject);
}
int NotesReopen() { return NotesResult("Reopen"); }
int NotesPreInit() { return NotesResult("PreInit"); }
int NotesPostTerm() { return NotesResult("PostTerm"); }

template <class Entry>
PlainEntry Plain(Entry* entry) {
    return reinterpret_cast<PlainEntry>(entry);
}

using EntryMap = std::map<std::string, PlainEntry>;
const EntryMap kMapi = {
    {"MAPIInitialize", Plain(Initialize)}, {"MAPIUninitialize", Plain(Uninitialize)},
    {"MAPILogon", Plain(Logon)},           {"MAPILogoff", Plain(Logoff)},
    {"MAPISendMail", Plain(SendMail)},     {"MAPIAddress", Plain(Address)},
    {"MAPIReadMail", Plain(ReadMail)},     {"MAPIDeleteMail", Plain(DeleteMail)},
    {"MAPIFreeBuffer", Plain(FreeBuffer)}, {"MAPIResolveName", Plain(ResolveName)},
    {"MAPIFindNext", Plain(FindNext)},     {"ScMAPIXFromSMAPI", Plain(OpenExtended)},
};
const EntryMap kNotes = {
    {"MailInitLNotesDLL", Plain(NotesInit)},
    {"MailTermLNotesDLL", Plain(NotesTerm)},
    {"MailReadMessageLNotesDLL", Plain(NotesRead)},
    {"MailSendMessageLNotesDLL", Plain(NotesSend)},
    {"MailDeleteMessageLNotesDLL", Plain(NotesDelete)},
    {"MailClearFolderBySubjectLNotesDLL", Plain(NotesClear)},
    {"MailLNotesDatabaseReopenDLL", Plain(NotesReopen)},
    {"MailLNotesPreInitDLL", Plain(NotesPreInit)},
    {"MailLNotesPostTermDLL", Plain(NotesPostTerm)},
};

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

class MailAccess : public testing::Test {
  protected:
    MailAccess() {
        answers = &answers_;
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
    const Texts plain = {"Logon 5 gate (none) 2", "Logoff 77"};
    const struct {
        const char* What;
        const char* Missing;
        std::map<std::string, Error> Fail;
        bool GivesNothing;
        Texts Calls;
    } rows[] = {
        {"all",
         "",
         {},
         false,
         {"Initialize", "Logon 5 gate (none) 2", "OpenExtended 77", "Release", "Logoff 77", "Uninitialize"}},
        {"no session",
         "",
         {},
         true,
         {"Initialize", "Logon 5 gate (none) 2", "OpenExtended 77", "Logoff 77", "Uninitialize"}},
        {"half a pair", "MAPIUninitialize", {}, false, plain},
        {"the other half", "MAPIInitialize", {}, false, plain},
        {"not initialised",
         "",
         {{"Initialize", 0x80004005}},
         false,
         {"Initialize", "Logon 5 gate (none) 2", "Logoff 77"}},
        {"refused",
         "",
         {{"OpenExtended", 0x80004005}},
         false,
         {"Initialize", "Logon 5 gate (none) 2", "OpenExtended 77", "Logoff 77", "Uninitialize"}},
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

TEST_F(MailAccess, SendsReadsAndDeletes) {
    Open(2);
    MailMessage message;
    message.Subject = "S";
    message.NoteText = "Text";
    message.Recipients = {{RecipientClass::To, "A", "", "ab"}, {RecipientClass::Copy, "B", "X:b", ""}};
    message.Files = {{"C:\\A", "", {}}, {"C:\\B", "B.TIF", 9}};
    EXPECT_EQ(MailSend(message), kDone);
    EXPECT_THAT(answers_.TakeCalls(), ElementsAre("SendMail 77 S|Text|(none) to 1 A (none) 2 to 2 B X:b 0 "
                                                  "file C:\\A (none) FFFFFFFF file C:\\B B.TIF 9"));
    std::string id;
    Texts subjects;
    for (;;) {
        ASSERT_EQ(MailReadNext(id, message), kDone);
        if (id.empty()) break;
        subjects.push_back(message.Subject);
    }
    EXPECT_THAT(subjects, ElementsAreArray(answers_.Box));
    EXPECT_EQ(message.NoteText, "Hello");
    EXPECT_EQ(message.Originator->Name, "Ann A");
    ASSERT_EQ(message.Recipients.size(), 1U);
    EXPECT_EQ(message.Recipients[0].EntryId, std::string("id\0x", 4));
    ASSERT_EQ(message.Files.size(), 1U);
    EXPECT_EQ(message.Files[0].Position, 3U);
    EXPECT_THAT(answers_.TakeCalls(), testing::Contains("ReadMail m1 80"));
    EXPECT_EQ(MailDelete("m1"), kDone);
    EXPECT_THAT(answers_.TakeCalls(), ElementsAre("DeleteMail 77 m1"));

    MailRecipient recipient;
    EXPECT_EQ(MailResolveName("Ann", true, recipient), kDone);
    EXPECT_EQ(recipient.Address, "SMTP:ann");
    std::vector<MailRecipient> chosen(3);
    EXPECT_EQ(MailPickAddresses("Users", chosen), kDone);
    EXPECT_EQ(chosen.size(), 1U);
    EXPECT_THAT(answers_.TakeCalls(), ElementsAre("ResolveName Ann 8", "Address Users 3"));
    EXPECT_THAT(server_.Front.TakeSaid(), IsEmpty());
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
                ElementsAre("Logon 5 gate (none) 2", "FindNext 77 (none)", "ReadMail m0 C0", "FindNext 77 m0",
                            "ReadMail m1 C0", "FindNext 77 m1", "ReadMail m2 C0", "FindNext 77 m2", "DeleteMail 77 m0",
                            "DeleteMail 77 m2", "Logoff 77"));
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

} // namespace
} // namespace bv
